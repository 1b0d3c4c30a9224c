#pragma once

// Façade values as JSON, for `fennrick run` and `fennrick call`. JSON null, booleans, numbers,
// strings and arrays map to the plain values; the other kinds are one-member objects:
// {"date": "DD/MM/YYYY"}, {"currency": 12.5}, {"bytes": "BASE64"}, {"null": true},
// {"user": {"Name", "Password", "Rights", "language"}}, {"font": {"Name", "Size"}},
// {"registry": [{"Alias", "ActiveIndexHandle", "Order"}, ...]}, {"collection": [...]}; any other
// object comes back as {"object": CLASS, "properties": {...}}.

#include <nlohmann/json.hpp>

#include "facade/variant.hpp"

namespace fnrk::cli {

// CommandFailure naming `where` when the JSON is no value the façade takes.
facade::Variant VariantFromJson(const nlohmann::json& json, const std::string& where);
// Ordered as the value's own order (an object's properties as it lists them).
nlohmann::ordered_json JsonFromVariant(const facade::Variant& value);

}  // namespace fnrk::cli
