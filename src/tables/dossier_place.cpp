#include "tables/dossier_place.hpp"

#include <filesystem>
#include <regex>
#include <stdexcept>

namespace fnrk::tables {

namespace {

constexpr std::string_view kSqlitePrefix = "sqlite:";

bool IsPostgres(std::string_view text) {
    return text.starts_with("postgresql://") || text.starts_with("postgres://") ||
           text.find('=') != std::string_view::npos;
}

}  // namespace

DossierPlace ParseDossierPlace(std::string_view text) {
    if (text.starts_with(kSqlitePrefix)) {
        const std::string_view file = text.substr(kSqlitePrefix.size());
        if (file.empty()) throw std::invalid_argument("sqlite: needs the path of a database file");
        return {DossierPlace::Kind::Sqlite, std::filesystem::absolute(file).string(), {}};
    }
    if (IsPostgres(text)) {
        // The connection path separates its items with ";".
        if (text.find(';') != std::string_view::npos)
            throw std::invalid_argument("a PostgreSQL connection string holds no \";\"");
        return {DossierPlace::Kind::Postgres, std::string(text), {}};
    }
    // "/data/soc1/" is the folder "/data/soc1": its copy is staged beside it, not in it.
    std::filesystem::path folder = std::filesystem::absolute(text).lexically_normal();
    if (!folder.has_filename()) folder = folder.parent_path();
    return {DossierPlace::Kind::Folder, folder.string(), {}};
}

std::string ConnectionPath(const DossierPlace& place) {
    switch (place.kind) {
        case DossierPlace::Kind::Sqlite:
            return "<SQL>Driver=SQLite;Database=" + place.where;
        case DossierPlace::Kind::Postgres:
            return "<SQL>Driver=PostgreSQL;Database=" + place.where +
                   (place.schema.empty() ? "" : ";Schema=" + place.schema);
        default:
            return place.where;
    }
}

std::string Shown(const DossierPlace& place) {
    switch (place.kind) {
        case DossierPlace::Kind::Sqlite:
            return "SQLite database " + place.where;
        case DossierPlace::Kind::Postgres: {
            // user:password@ in a URI, password=... in a connection string.
            static const std::regex uriPassword(R"(://([^:/@]*):[^@]*@)");
            static const std::regex itemPassword(R"(password\s*=\s*('[^']*'|\S*))",
                                                 std::regex::icase);
            std::string shown = std::regex_replace(place.where, uriPassword, "://$1:***@");
            shown = std::regex_replace(shown, itemPassword, "password=***");
            return "PostgreSQL database " + shown;
        }
        default:
            return "folder " + place.where;
    }
}

}  // namespace fnrk::tables
