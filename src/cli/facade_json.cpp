#include "cli/facade_json.hpp"

#include <cmath>
#include <limits>
#include <optional>

#include "cli/command_registry.hpp"
#include "facade/facade_error.hpp"
#include "facade/table_registry.hpp"
#include "facade/user_object.hpp"
#include "facade/variant_object.hpp"
#include "platform/base64.hpp"

namespace fnrk::cli {
namespace {

using facade::Variant;
using facade::VariantType;
using nlohmann::json;

[[noreturn]] void Fail(const std::string& where, const std::string& problem) {
    throw CommandFailure(where + ": " + problem);
}

std::string Base64Encode(const facade::VariantBytes& bytes) {
    return platform::Base64Encode(
        std::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size()));
}

facade::VariantBytes Base64Decode(const std::string& text, const std::string& where) {
    const std::optional<std::string> bytes = platform::Base64Decode(text);
    if (!bytes) Fail(where, "not base64");
    return facade::VariantBytes(bytes->begin(), bytes->end());
}

const json& Member(const json& object, const char* key, const std::string& where) {
    const auto found = object.find(key);
    if (found == object.end()) Fail(where, std::string("missing \"") + key + "\"");
    return *found;
}

std::string Text(const json& object, const char* key, const std::string& where) {
    const auto found = object.find(key);
    if (found == object.end() || found->is_null()) return {};
    if (!found->is_string()) Fail(where + "." + key, "must be text");
    return found->get<std::string>();
}

Variant RegistryFromJson(const json& entries, const std::string& where) {
    if (!entries.is_array()) Fail(where, "a registry is an array of entries");
    auto registry = std::make_shared<facade::TableRegistry>();
    for (std::size_t i = 0; i < entries.size(); ++i) {
        const std::string at = where + "[" + std::to_string(i) + "]";
        const json& entry = entries[i];
        if (!entry.is_object()) Fail(at, "an entry is an object");
        registry->Add(facade::AdsPropertyClass(
            Text(entry, "Alias", at),
            VariantFromJson(entry.value("ActiveIndexHandle", json(0)), at).ToLong(),
            VariantFromJson(entry.value("Order", json(0)), at).ToDouble()));
    }
    return Variant(registry);
}

Variant TaggedFromJson(const json& object, const std::string& where) {
    if (object.size() != 1) Fail(where, "an object value has exactly one member");
    const std::string& tag = object.begin().key();
    const json& body = object.begin().value();
    const std::string at = where + "." + tag;
    if (tag == "date") return Variant(facade::DateFromText(body.get<std::string>()));
    if (tag == "currency")
        return Variant(
            facade::VariantCurrency{std::llround(VariantFromJson(body, at).ToDouble() * 10000.0)});
    if (tag == "bytes") return Variant(Base64Decode(body.get<std::string>(), at));
    if (tag == "null") return Variant(facade::VariantNull{});
    if (tag == "registry") return RegistryFromJson(body, at);
    if (tag == "user") {
        return Variant(facade::MakeUserObject(Text(body, "Name", at), Text(body, "Password", at),
                                              Text(body, "Rights", at),
                                              Text(body, "language", at)));
    }
    if (tag == "font") {
        return Variant(facade::MakeFont(Text(body, "Name", at),
                                        VariantFromJson(Member(body, "Size", at), at).ToDouble()));
    }
    if (tag == "collection") {
        if (!body.is_array()) Fail(at, "a collection is an array");
        auto collection = std::make_shared<facade::VariantCollection>();
        for (std::size_t i = 0; i < body.size(); ++i) {
            collection->Add(VariantFromJson(body[i], at + "[" + std::to_string(i) + "]"));
        }
        return Variant(collection);
    }
    Fail(where, "unknown kind of value \"" + tag + "\"");
}

nlohmann::ordered_json ObjectToJson(const facade::VariantObject& object) {
    using json = nlohmann::ordered_json;
    if (const auto* registry = dynamic_cast<const facade::TableRegistry*>(&object)) {
        json entries = json::array();
        for (const auto& entry : registry->Entries()) {
            entries.push_back({{"Alias", entry->Alias},
                               {"ActiveIndexHandle", entry->ActiveIndexHandle},
                               {"Order", entry->Order}});
        }
        return {{"registry", entries}};
    }
    if (const auto* collection = dynamic_cast<const facade::VariantCollection*>(&object)) {
        json items = json::array();
        for (const Variant& item : collection->Items()) items.push_back(JsonFromVariant(item));
        return {{"collection", items}};
    }
    json properties = json::object();
    for (const std::string& name : object.PropertyNames()) {
        properties[name] = JsonFromVariant(object.GetProperty(name));
    }
    if (object.ClassName() == "Font") return {{"font", properties}};
    if (object.ClassName() == "user") return {{"user", properties}};
    return {{"object", std::string(object.ClassName())}, {"properties", properties}};
}

}  // namespace

Variant VariantFromJson(const json& value, const std::string& where) {
    try {
        switch (value.type()) {
            case json::value_t::null:
                return Variant();
            case json::value_t::boolean:
                return Variant(value.get<bool>());
            case json::value_t::number_integer:
            case json::value_t::number_unsigned: {
                const double number = value.get<double>();
                if (number >= std::numeric_limits<std::int32_t>::min() &&
                    number <= std::numeric_limits<std::int32_t>::max()) {
                    return Variant(static_cast<std::int32_t>(value.get<std::int64_t>()));
                }
                return Variant(number);
            }
            case json::value_t::number_float:
                return Variant(value.get<double>());
            case json::value_t::string:
                return Variant(value.get<std::string>());
            case json::value_t::array: {
                facade::VariantArray items;
                for (std::size_t i = 0; i < value.size(); ++i) {
                    items.push_back(
                        VariantFromJson(value[i], where + "[" + std::to_string(i) + "]"));
                }
                return Variant(std::move(items));
            }
            case json::value_t::object:
                return TaggedFromJson(value, where);
            default:
                Fail(where, "not a value");
        }
    } catch (const json::exception& error) {
        Fail(where, error.what());
    } catch (const facade::FacadeError& error) {
        Fail(where, error.what());
    }
}

nlohmann::ordered_json JsonFromVariant(const Variant& value) {
    using json = nlohmann::ordered_json;
    switch (value.Type()) {
        case VariantType::Empty:
            return nullptr;
        case VariantType::Null:
            return {{"null", true}};
        case VariantType::Boolean:
            return value.ToBoolean();
        case VariantType::Integer:
            return value.ToInteger();
        case VariantType::Long:
            return value.ToLong();
        case VariantType::Double:
            return value.ToDouble();
        case VariantType::Currency:
            return {{"currency", value.ToDouble()}};
        case VariantType::Date:
            return {{"date", value.ToString()}};
        case VariantType::String:
            return value.ToString();
        case VariantType::Object:
            return ObjectToJson(*value.ToObject());
        case VariantType::Bytes:
            return {{"bytes", Base64Encode(value.ToBytes())}};
        case VariantType::Array: {
            json items = json::array();
            for (const Variant& item : value.ToArray()) items.push_back(JsonFromVariant(item));
            return items;
        }
    }
    return nullptr;
}

}  // namespace fnrk::cli
