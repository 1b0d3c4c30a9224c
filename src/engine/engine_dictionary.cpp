// Engine operations on data dictionaries (dictionary/): a dictionary's handle is a connection
// to its folder that knows the dictionary, its user and that user's password. The file is read
// afresh on each use, so that connections (and processes) always see each other's changes.

#include <filesystem>

#include "engine/dictionary/data_dictionary.hpp"
#include "engine/engine.hpp"
#include "engine/sql/statement_registry.hpp"

namespace fnrk::engine {

Status Engine::ConnectDictionary(std::string_view path, std::string_view user,
                                 std::string_view password, Handle& connection) {
    connection = 0;
    dictionary::DataDictionary loaded;
    std::string message;
    if (Status status = dictionary::DataDictionary::Load(std::string(path), loaded, message);
        status != AE_SUCCESS)
        return Report(status, message);
    if (Status status = loaded.CheckLogin(user, password); status != AE_SUCCESS)
        return Report(status, "login to " + loaded.path() + " refused for " + std::string(user));
    connection = nextHandle_++;
    connections_[connection] = Connection{loaded.folder(), ADS_LOCAL_SERVER, loaded.path(),
                                          std::string(user), std::string(password)};
    return AE_SUCCESS;
}

namespace {

// The dictionary of a connection to one, as its file holds it now.
std::optional<dictionary::DataDictionary> LoadDictionary(const std::string& path) {
    dictionary::DataDictionary loaded;
    std::string message;
    if (path.empty() || dictionary::DataDictionary::Load(path, loaded, message) != AE_SUCCESS)
        return std::nullopt;
    return loaded;
}

}  // namespace

std::optional<std::string> Engine::DictionaryTablePath(Handle connection, std::string_view name) {
    const auto found = connections_.find(connection);
    if (found == connections_.end()) return std::nullopt;
    const auto loaded = LoadDictionary(found->second.dictionary);
    const dictionary::DictionaryTable* table = loaded ? loaded->FindTable(name) : nullptr;
    if (table == nullptr) return std::nullopt;
    return loaded->TablePath(*table);
}

std::optional<std::string> Engine::DictionaryView(Handle connection, std::string_view name) {
    const auto found = connections_.find(connection);
    if (found == connections_.end()) return std::nullopt;
    const auto loaded = LoadDictionary(found->second.dictionary);
    const dictionary::DictionaryView* view = loaded ? loaded->FindView(name) : nullptr;
    if (view == nullptr) return std::nullopt;
    return view->sql;
}

void Engine::ApplyConnectionPassword(Handle table) {
    const OpenedTable& opened = tables_.at(table);
    const auto connection = connections_.find(opened.connection);
    if (connection == connections_.end() || connection->second.password.empty()) return;
    if (!opened.cursor->file().locked()) return;
    // A table under another password stays locked until it is given (EnableEncryption).
    const Status lastError = lastError_;
    const std::string lastText = lastErrorText_;
    if (EnableEncryption(table, connection->second.password) != AE_SUCCESS) {
        lastError_ = lastError;
        lastErrorText_ = lastText;
    }
}

Status Engine::OnDictionary(
    Handle dictionary,
    const std::function<Status(dictionary::DataDictionary&, std::string&)>& body) {
    const auto found = connections_.find(dictionary);
    if (found == connections_.end() || found->second.dictionary.empty())
        return Report(AE_INVALID_DICTIONARY_HANDLE);
    if (!dictionary::DataDictionary::IsAdministrator(found->second.user))
        return Report(AE_PERMISSION_DENIED, "only the administrator changes a data dictionary");
    dictionary::DataDictionary loaded;
    std::string message;
    Status status = dictionary::DataDictionary::Load(found->second.dictionary, loaded, message);
    if (status == AE_SUCCESS) status = body(loaded, message);
    return Report(status, message);
}

Status Engine::DDCreate(std::string_view dictionaryPath, std::uint16_t encrypt,
                        std::string_view description, Handle& dictionary) {
    dictionary = 0;
    dictionary::DataDictionary created;
    std::string message;
    if (Status status = dictionary::DataDictionary::Create(
            std::string(dictionaryPath), encrypt != 0, description, created, message);
        status != AE_SUCCESS)
        return Report(status, message);
    dictionary = nextHandle_++;
    connections_[dictionary] = Connection{created.folder(), ADS_LOCAL_SERVER, created.path(),
                                          std::string(dictionary::kAdministrator), ""};
    return AE_SUCCESS;
}

Status Engine::DDAddTable(Handle dictionary, std::string_view tableName, std::string_view tablePath,
                          std::uint16_t tableType, std::uint16_t charType,
                          std::string_view indexFiles, std::string_view comments) {
    if (tableType != ADS_CDX && tableType != ADS_VFP && tableType != ADS_DEFAULT)
        return Report(AE_INVALID_TABLETYPE);
    if (charType != ADS_ANSI && charType != ADS_DEFAULT) return Report(AE_INVALID_CHARSETTYPE);
    return OnDictionary(dictionary, [&](dictionary::DataDictionary& loaded, std::string& message) {
        return loaded.AddTable({std::string(tableName), std::string(tablePath), tableType, charType,
                                std::string(indexFiles), std::string(comments)},
                               message);
    });
}

Status Engine::DDAddView(Handle dictionary, std::string_view name, std::string_view comments,
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

Status Engine::DDCreateUser(Handle dictionary, std::string_view groupName,
                            std::string_view userName, std::string_view password,
                            std::string_view description) {
    return OnDictionary(dictionary, [&](dictionary::DataDictionary& loaded, std::string& message) {
        return loaded.CreateUser(groupName, userName, password, description, message);
    });
}

Status Engine::DDSetDatabaseProperty(Handle dictionary, std::uint16_t propertyId,
                                     std::string_view value) {
    return OnDictionary(dictionary, [&](dictionary::DataDictionary& loaded, std::string& message) {
        return loaded.SetDatabaseProperty(propertyId, value, message);
    });
}

Status Engine::DDSetUserProperty(Handle dictionary, std::string_view userName,
                                 std::uint16_t propertyId, std::string_view value) {
    return OnDictionary(dictionary, [&](dictionary::DataDictionary& loaded, std::string& message) {
        return loaded.SetUserProperty(userName, propertyId, value, message);
    });
}

}  // namespace fnrk::engine
