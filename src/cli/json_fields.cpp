#include "cli/json_fields.hpp"

#include <fstream>

namespace fnrk::cli {

using nlohmann::json;

json ReadJsonFile(const std::string& file) {
    std::ifstream in(file, std::ios::binary);
    if (!in) throw CommandFailure("cannot read " + file);
    try {
        return json::parse(in);
    } catch (const json::parse_error& error) {
        throw CommandFailure(file + " is not valid JSON: " + error.what());
    }
}

JsonFields::JsonFields(const json& object, std::string path)
    : object_(object), path_(std::move(path)) {
    if (!object_.is_object()) {
        throw CommandFailure((path_.empty() ? std::string("the document") : path_) +
                             " must be a JSON object");
    }
}

std::string JsonFields::PathOf(const std::string& key) const {
    return path_.empty() ? key : path_ + "." + key;
}

std::string JsonFields::PathOf(const std::string& key, std::size_t index) const {
    return PathOf(key) + "[" + std::to_string(index) + "]";
}

void JsonFields::Fail(const std::string& key, const std::string& problem) const {
    throw CommandFailure("field " + PathOf(key) + ": " + problem);
}

const json* JsonFields::Find(const std::string& key, bool required) {
    known_.insert(key);
    const auto found = object_.find(key);
    if (found == object_.end() || found->is_null()) {
        if (required) Fail(key, "missing");
        return nullptr;
    }
    return &*found;
}

std::string JsonFields::Text(const std::string& key, bool required) {
    const json* value = Find(key, required);
    if (value == nullptr) return {};
    if (!value->is_string()) Fail(key, "must be a text");
    if (required && value->get<std::string>().find_first_not_of(' ') == std::string::npos) {
        Fail(key, "must not be empty");
    }
    return value->get<std::string>();
}

double JsonFields::Number(const std::string& key, bool required) {
    const json* value = Find(key, required);
    if (value == nullptr) return 0.0;
    if (!value->is_number()) Fail(key, "must be a number");
    return value->get<double>();
}

bool JsonFields::Flag(const std::string& key) {
    const json* value = Find(key, false);
    if (value == nullptr) return false;
    if (!value->is_boolean()) Fail(key, "must be true or false");
    return value->get<bool>();
}

const json* JsonFields::Object(const std::string& key, bool required) {
    const json* value = Find(key, required);
    if (value != nullptr && !value->is_object()) Fail(key, "must be an object");
    return value;
}

const json* JsonFields::Array(const std::string& key, bool required) {
    const json* value = Find(key, required);
    if (value != nullptr && !value->is_array()) Fail(key, "must be an array");
    return value;
}

void JsonFields::RejectUnknown() const {
    for (const auto& [key, value] : object_.items()) {
        if (!known_.contains(key)) Fail(key, "unknown field");
    }
}

}  // namespace fnrk::cli
