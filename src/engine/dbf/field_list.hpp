#pragma once

// The field list text of CreateTable: "NAME,TYPE,LENGTH,DECIMALS;..." with type names in any
// letter case, long or short (CHARACTER / CHAR / C, NUMERIC / N, DATE / D, LOGICAL / L, MEMO / M,
// BINARY, DOUBLE, INTEGER). Length and decimals may be left out where the type fixes them.

#include <string>
#include <string_view>
#include <vector>

#include "engine/dbf/field.hpp"

namespace fnrk::engine::dbf {

// Empty string on success, else what is wrong (`fields` is then unspecified).
std::string ParseFieldList(std::string_view text, std::vector<Field>& fields);

}  // namespace fnrk::engine::dbf
