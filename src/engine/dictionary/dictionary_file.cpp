// The dictionary's file: JSON with a format name and version, read whole and written whole.

#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>

#include "engine/dictionary/data_dictionary.hpp"
#include "engine/dictionary/view_rules.hpp"

namespace fnrk::engine::dictionary {

namespace {

constexpr std::string_view kFormat = "fennrick data dictionary";
constexpr int kVersion = 1;

using Json = nlohmann::ordered_json;

Json HashJson(const crypt::PasswordHash& hash) {
    return {{"salt", hash.salt}, {"hash", hash.hash}};
}

crypt::PasswordHash HashFrom(const Json& json) {
    return {json.at("salt").get<std::string>(), json.at("hash").get<std::string>()};
}

Json PropertiesJson(const std::map<std::uint16_t, std::string>& properties) {
    Json json = Json::object();
    for (const auto& [id, value] : properties) json[std::to_string(id)] = value;
    return json;
}

std::map<std::uint16_t, std::string> PropertiesFrom(const Json& json) {
    std::map<std::uint16_t, std::string> properties;
    for (const auto& [id, value] : json.items())
        properties[static_cast<std::uint16_t>(std::stoul(id))] = value.get<std::string>();
    return properties;
}

}  // namespace

Status DataDictionary::Create(const std::string& path, bool encrypt, std::string_view description,
                              DataDictionary& created, std::string& message) {
    const std::filesystem::path file = std::filesystem::absolute(path);
    if (std::filesystem::exists(file)) {
        message = file.string() + " exists already";
        return AE_DICTIONARY_ALREADY_EXISTS;
    }
    if (!std::filesystem::is_directory(file.parent_path())) {
        message = "no folder " + file.parent_path().string();
        return AE_INVALID_PATH;
    }
    DataDictionary dictionary;
    dictionary.path_ = file.string();
    dictionary.description_ = std::string(description);
    dictionary.encrypt_ = encrypt;
    if (Status status = dictionary.Save(message); status != AE_SUCCESS) return status;
    created = std::move(dictionary);
    return AE_SUCCESS;
}

Status DataDictionary::Load(const std::string& path, DataDictionary& loaded, std::string& message) {
    const std::filesystem::path file = std::filesystem::absolute(path);
    std::ifstream in(file, std::ios::binary);
    if (!in) {
        message = "cannot read " + file.string();
        return AE_FILE_NOT_FOUND;
    }
    try {
        const Json json = Json::parse(in);
        if (json.at("format") != kFormat || json.at("version") != kVersion)
            throw std::runtime_error("not a data dictionary of version " +
                                     std::to_string(kVersion));
        DataDictionary dictionary;
        dictionary.path_ = file.string();
        dictionary.description_ = json.at("description").get<std::string>();
        dictionary.encrypt_ = json.at("encrypt").get<bool>();
        if (json.contains("administratorPassword"))
            dictionary.administratorPassword_ = HashFrom(json.at("administratorPassword"));
        if (json.contains("tablePassword"))
            dictionary.tablePassword_ = HashFrom(json.at("tablePassword"));
        dictionary.properties_ = PropertiesFrom(json.at("properties"));
        for (const Json& table : json.at("tables"))
            dictionary.tables_.push_back({table.at("name"), table.at("path"), table.at("tableType"),
                                          table.at("charType"), table.at("indexFiles"),
                                          table.at("comments")});
        for (const Json& view : json.at("views")) {
            DictionaryView read{view.at("name"), view.at("sql"), view.at("comments")};
            // The file may have been edited by hand: a view comes back only as it could be added.
            std::string problem = ViewNameProblem(read.name);
            if (problem.empty()) problem = ViewStatementProblem(read.sql);
            if (!problem.empty()) throw std::runtime_error("view " + read.name + ": " + problem);
            dictionary.views_.push_back(std::move(read));
        }
        for (const Json& user : json.at("users"))
            dictionary.users_.push_back({user.at("name"), user.at("group"), user.at("description"),
                                         HashFrom(user.at("password")),
                                         PropertiesFrom(user.at("properties"))});
        loaded = std::move(dictionary);
        return AE_SUCCESS;
    } catch (const std::exception& error) {
        message = file.string() + ": " + error.what();
        return AE_INVALID_DICTIONARY_FILE;
    }
}

Status DataDictionary::Save(std::string& message) const {
    Json json;
    json["format"] = kFormat;
    json["version"] = kVersion;
    json["description"] = description_;
    json["encrypt"] = encrypt_;
    if (administratorPassword_) json["administratorPassword"] = HashJson(*administratorPassword_);
    if (tablePassword_) json["tablePassword"] = HashJson(*tablePassword_);
    json["properties"] = PropertiesJson(properties_);
    json["tables"] = Json::array();
    for (const DictionaryTable& table : tables_)
        json["tables"].push_back({{"name", table.name},
                                  {"path", table.path},
                                  {"tableType", table.tableType},
                                  {"charType", table.charType},
                                  {"indexFiles", table.indexFiles},
                                  {"comments", table.comments}});
    json["views"] = Json::array();
    for (const DictionaryView& view : views_)
        json["views"].push_back(
            {{"name", view.name}, {"sql", view.sql}, {"comments", view.comments}});
    json["users"] = Json::array();
    for (const DictionaryUser& user : users_)
        json["users"].push_back({{"name", user.name},
                                 {"group", user.group},
                                 {"description", user.description},
                                 {"password", HashJson(user.password)},
                                 {"properties", PropertiesJson(user.properties)}});
    // Readers never see half a file: the new one replaces the old in one rename.
    const std::string temporary = path_ + ".tmp";
    {
        std::ofstream out(temporary, std::ios::binary | std::ios::trunc);
        out << json.dump(2) << "\n";
        if (!out.flush()) {
            message = "cannot write " + temporary;
            return AE_PERMISSION_DENIED;
        }
    }
    std::error_code error;
    std::filesystem::rename(temporary, path_, error);
    if (error) {
        message = "cannot replace " + path_ + ": " + error.message();
        return AE_PERMISSION_DENIED;
    }
    return AE_SUCCESS;
}

}  // namespace fnrk::engine::dictionary
