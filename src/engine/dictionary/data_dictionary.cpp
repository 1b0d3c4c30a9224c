#include "engine/dictionary/data_dictionary.hpp"

#include <algorithm>
#include <filesystem>

#include "engine/constants.hpp"
#include "engine/dictionary/view_rules.hpp"
#include "platform/text.hpp"

namespace fnrk::engine::dictionary {

namespace {

template <class Entry>
const Entry* FindByName(const std::vector<Entry>& entries, std::string_view name) {
    const std::string trimmed = platform::Trim(name);
    const auto found = std::find_if(entries.begin(), entries.end(), [&](const Entry& entry) {
        return platform::EqualsNoCase(entry.name, trimmed);
    });
    return found == entries.end() ? nullptr : &*found;
}

bool IsCommonProperty(std::uint16_t property) {
    return property == ADS_DD_COMMENT || property == ADS_DD_USER_DEFINED_PROP;
}

}  // namespace

std::string DataDictionary::folder() const {
    return std::filesystem::path(path_).parent_path().string();
}

bool DataDictionary::IsAdministrator(std::string_view user) {
    return platform::EqualsNoCase(platform::Trim(user), kAdministrator);
}

Status DataDictionary::CheckLogin(std::string_view user, std::string_view password) const {
    if (IsAdministrator(user)) {
        if (!administratorPassword_ || crypt::PasswordMatches(*administratorPassword_, password))
            return AE_SUCCESS;
        return AE_INVALID_PASSWORD;
    }
    const DictionaryUser* found = FindUser(user);
    if (found == nullptr) return AE_INVALID_USERNAME;
    return crypt::PasswordMatches(found->password, password) ? AE_SUCCESS : AE_INVALID_PASSWORD;
}

bool DataDictionary::NameTaken(std::string_view name) const {
    return FindTable(name) != nullptr || FindView(name) != nullptr;
}

Status DataDictionary::AddDatabaseTable(DictionaryTable table, std::string& message) {
    table.name = platform::Trim(table.name);
    if (Status status = CheckTableName(table.name, message); status != AE_SUCCESS) return status;
    tables_.push_back(std::move(table));
    return Save(message);
}

Status DataDictionary::CheckTableName(const std::string& name, std::string& message) const {
    if (!name.empty() && !NameTaken(name)) return AE_SUCCESS;
    message = "table name \"" + name + "\" is empty or taken";
    return AE_INVALID_OBJECT_NAME;
}

Status DataDictionary::AddTable(DictionaryTable table, std::string& message) {
    table.name = platform::Trim(table.name);
    if (Status status = CheckTableName(table.name, message); status != AE_SUCCESS) return status;
    std::filesystem::path file(platform::Trim(table.path));
    if (file.is_relative()) file = std::filesystem::path(folder()) / file;
    if (!std::filesystem::is_regular_file(file)) {
        message = "no table file " + file.string();
        return AE_FILE_NOT_FOUND;
    }
    const std::filesystem::path relative =
        std::filesystem::weakly_canonical(file).lexically_relative(
            std::filesystem::weakly_canonical(folder()));
    const bool inside = !relative.empty() && *relative.begin() != "..";
    table.path = inside ? relative.string() : std::filesystem::absolute(file).string();
    tables_.push_back(std::move(table));
    return Save(message);
}

Status DataDictionary::AddView(DictionaryView view, std::string& message) {
    view.name = platform::Trim(view.name);
    if (std::string problem = ViewNameProblem(view.name); !problem.empty()) {
        message = std::move(problem);
        return AE_INVALID_OBJECT_NAME;
    }
    if (NameTaken(view.name)) {
        message = "view name \"" + view.name + "\" is taken";
        return AE_INVALID_OBJECT_NAME;
    }
    if (std::string problem = ViewStatementProblem(view.sql); !problem.empty()) {
        message = "view " + view.name + ": " + problem;
        return AE_INVALID_STATEMENT;
    }
    views_.push_back(std::move(view));
    return Save(message);
}

Status DataDictionary::CreateUser(std::string_view group, std::string_view name,
                                  std::string_view password, std::string_view description,
                                  std::string& message) {
    const std::string trimmed = platform::Trim(name);
    if (trimmed.empty() || IsAdministrator(trimmed) || FindUser(trimmed) != nullptr) {
        message = "user name \"" + trimmed + "\" is empty or taken";
        return AE_INVALID_USERNAME;
    }
    DictionaryUser user{trimmed,
                        platform::Trim(group),
                        std::string(description),
                        crypt::HashPassword(password),
                        {}};
    users_.push_back(std::move(user));
    return Save(message);
}

Status DataDictionary::SetDatabaseProperty(std::uint16_t property, std::string_view value,
                                           std::string& message) {
    if (!IsCommonProperty(property) &&
        (property < ADS_DD_DEFAULT_TABLE_PATH || property > ADS_DD_LAST_DATABASE_PROPERTY))
        return AE_INVALID_PROPERTY_ID;
    // Passwords are kept as hashes, so they can be checked but never read back.
    if (property == ADS_DD_ADMIN_PASSWORD) {
        administratorPassword_ = crypt::HashPassword(value);
    } else if (property == ADS_DD_ENCRYPT_TABLE_PASSWORD) {
        tablePassword_ = crypt::HashPassword(value);
    } else {
        properties_[property] = std::string(value);
    }
    return Save(message);
}

Status DataDictionary::SetUserProperty(std::string_view user, std::uint16_t property,
                                       std::string_view value, std::string& message) {
    auto found = std::find_if(users_.begin(), users_.end(), [&](const DictionaryUser& entry) {
        return platform::EqualsNoCase(entry.name, platform::Trim(user));
    });
    if (found == users_.end()) {
        message = "no user " + std::string(user);
        return AE_INVALID_USERNAME;
    }
    if (!IsCommonProperty(property) &&
        (property < ADS_DD_USER_PASSWORD || property > ADS_DD_LAST_USER_PROPERTY))
        return AE_INVALID_PROPERTY_ID;
    if (property == ADS_DD_USER_PASSWORD) {
        found->password = crypt::HashPassword(value);
    } else if (property == ADS_DD_USER_GROUP_MEMBERSHIP) {
        found->group = platform::Trim(value);
    } else {
        found->properties[property] = std::string(value);
    }
    return Save(message);
}

const DictionaryTable* DataDictionary::FindTable(std::string_view name) const {
    return FindByName(tables_, name);
}

const DictionaryView* DataDictionary::FindView(std::string_view name) const {
    return FindByName(views_, name);
}

const DictionaryUser* DataDictionary::FindUser(std::string_view name) const {
    return FindByName(users_, name);
}

std::string DataDictionary::TablePath(const DictionaryTable& table) const {
    const std::filesystem::path stored(table.path);
    return stored.is_absolute() ? table.path : (std::filesystem::path(folder()) / stored).string();
}

std::optional<std::string> DataDictionary::DatabaseProperty(std::uint16_t property) const {
    const auto found = properties_.find(property);
    if (found == properties_.end()) return std::nullopt;
    return found->second;
}

}  // namespace fnrk::engine::dictionary
