// Data dictionaries of a SQL-kept dossier: the same dictionary file as the engine's, beside
// the dossier, read afresh on each use. Its handle is a connection to the database of the
// dictionary's folder that knows the dictionary and its user.

#include <filesystem>

#include "backend/frc_database.hpp"

namespace fnrk::backend {

using namespace engine;  // status numbers and option constants

namespace {

std::optional<dictionary::DataDictionary> LoadDictionary(const std::string& path) {
    dictionary::DataDictionary loaded;
    std::string message;
    if (path.empty() || dictionary::DataDictionary::Load(path, loaded, message) != AE_SUCCESS)
        return std::nullopt;
    return loaded;
}

bool SameFolder(const std::string& a, const std::string& b) {
    auto normal = [](const std::string& folder) {
        std::string text = std::filesystem::path(folder).lexically_normal().string();
        while (text.size() > 1 && (text.back() == '/' || text.back() == '\\')) text.pop_back();
        return text;
    };
    return normal(a) == normal(b);
}

}  // namespace

Status FRCDatabase::ConnectDictionary(const std::string& path, std::string_view user,
                                      std::string_view password, Handle& connection) {
    connection = 0;
    dictionary::DataDictionary loaded;
    std::string message;
    if (Status status = dictionary::DataDictionary::Load(path, loaded, message);
        status != AE_SUCCESS)
        return Report(status, message);
    if (Status status = loaded.CheckLogin(user, password); status != AE_SUCCESS)
        return Report(status, "login to " + loaded.path() + " refused for " + std::string(user));
    // The database is the one this backend reaches for the dictionary's folder already (a
    // server's, named by the dossier), else the folder's own.
    std::string where = loaded.folder();
    for (const auto& [handle, open] : connections_) {
        if (!open->target.folder.empty() && SameFolder(open->target.folder, where)) {
            where = open->path;
            break;
        }
    }
    if (Status status = Connect(where, ADS_LOCAL_SERVER, connection); status != AE_SUCCESS)
        return status;
    Connection& opened = *connections_.at(connection);
    opened.dictionary = loaded.path();
    opened.user = std::string(user);
    return AE_SUCCESS;
}

std::optional<std::string> FRCDatabase::DictionaryView(Handle connection, std::string_view name) {
    const Connection* open = FindConnection(connection);
    const auto loaded = open ? LoadDictionary(open->dictionary) : std::nullopt;
    const dictionary::DictionaryView* view = loaded ? loaded->FindView(name) : nullptr;
    if (view == nullptr) return std::nullopt;
    return view->sql;
}

std::optional<std::string> FRCDatabase::DictionaryTable(Handle connection, std::string_view name) {
    const Connection* open = FindConnection(connection);
    if (!open || open->dictionary.empty()) return std::nullopt;
    const auto loaded = LoadDictionary(open->dictionary);
    const dictionary::DictionaryTable* table = loaded ? loaded->FindTable(name) : nullptr;
    if (table == nullptr) return std::nullopt;
    return table->path;
}

Status FRCDatabase::OnDictionary(
    Handle dictionary,
    const std::function<Status(dictionary::DataDictionary&, std::string&)>& body) {
    return Guarded([&] {
        const Connection* open = FindConnection(dictionary);
        if (!open || open->dictionary.empty()) return Report(AE_INVALID_DICTIONARY_HANDLE);
        if (!dictionary::DataDictionary::IsAdministrator(open->user))
            return Report(AE_PERMISSION_DENIED, "only the administrator changes a data dictionary");
        dictionary::DataDictionary loaded;
        std::string message;
        Status status = dictionary::DataDictionary::Load(open->dictionary, loaded, message);
        if (status == AE_SUCCESS) status = body(loaded, message);
        return Report(status, message);
    });
}

Status FRCDatabase::DDCreate(std::string_view dictionaryPath, std::uint16_t encrypt,
                             std::string_view description, Handle& dictionary) {
    dictionary = 0;
    dictionary::DataDictionary created;
    std::string message;
    if (Status status = dictionary::DataDictionary::Create(
            std::string(dictionaryPath), encrypt != 0, description, created, message);
        status != AE_SUCCESS)
        return Report(status, message);
    // A new dictionary lets its administrator in without a password.
    return ConnectDictionary(created.path(), dictionary::kAdministrator, "", dictionary);
}

Status FRCDatabase::DDAddTable(Handle dictionary, std::string_view tableName,
                               std::string_view tablePath, std::uint16_t tableType,
                               std::uint16_t charType, std::string_view indexFiles,
                               std::string_view comments) {
    if (tableType != ADS_CDX && tableType != ADS_VFP && tableType != ADS_DEFAULT)
        return Report(AE_INVALID_TABLETYPE);
    if (charType != ADS_ANSI && charType != ADS_DEFAULT) return Report(AE_INVALID_CHARSETTYPE);
    return OnDictionary(dictionary, [&](dictionary::DataDictionary& loaded, std::string& message) {
        // The table must be one of the database's.
        bool exists = false;
        if (TableExists(dictionary, tablePath, exists) != AE_SUCCESS || !exists) {
            message = "no table " + std::string(tablePath) + " in the database";
            return AE_TABLE_NOT_FOUND;
        }
        return loaded.AddDatabaseTable({std::string(tableName), std::string(tablePath), tableType,
                                        charType, std::string(indexFiles), std::string(comments)},
                                       message);
    });
}

Status FRCDatabase::DDAddView(Handle dictionary, std::string_view name, std::string_view comments,
                              std::string_view sql) {
    return OnDictionary(dictionary, [&](dictionary::DataDictionary& loaded, std::string& message) {
        // A view that cannot run is refused now, with the statement's own reason.
        if (Status status = Statements().Check(dictionary, sql, message); status != AE_SUCCESS) {
            message = "view " + std::string(name) + ": " + message;
            return status;
        }
        return loaded.AddView({std::string(name), std::string(sql), std::string(comments)},
                              message);
    });
}

Status FRCDatabase::DDCreateUser(Handle dictionary, std::string_view groupName,
                                 std::string_view userName, std::string_view password,
                                 std::string_view description) {
    return OnDictionary(dictionary, [&](dictionary::DataDictionary& loaded, std::string& message) {
        return loaded.CreateUser(groupName, userName, password, description, message);
    });
}

Status FRCDatabase::DDSetDatabaseProperty(Handle dictionary, std::uint16_t propertyId,
                                          std::string_view value) {
    return OnDictionary(dictionary, [&](dictionary::DataDictionary& loaded, std::string& message) {
        return loaded.SetDatabaseProperty(propertyId, value, message);
    });
}

Status FRCDatabase::DDSetUserProperty(Handle dictionary, std::string_view userName,
                                      std::uint16_t propertyId, std::string_view value) {
    return OnDictionary(dictionary, [&](dictionary::DataDictionary& loaded, std::string& message) {
        return loaded.SetUserProperty(userName, propertyId, value, message);
    });
}

}  // namespace fnrk::backend
