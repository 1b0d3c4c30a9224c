#pragma once

// The type names of CreateTable's field list ("NAME,TYPE,LENGTH,DECIMALS;...") for the engine's
// field type numbers, for whoever builds a table like one it has read.

#include <cstdint>
#include <string_view>

#include "engine/constants.hpp"

namespace fnrk::engine {

// The name CreateTable takes for a field type; empty for a type it cannot create.
constexpr std::string_view FieldListTypeName(std::uint16_t type) {
    switch (type) {
        case ADS_STRING:
            return "C";
        case ADS_NUMERIC:
            return "N";
        case ADS_DATE:
            return "D";
        case ADS_LOGICAL:
            return "L";
        case ADS_MEMO:
            return "M";
        case ADS_BINARY:
            return "BINARY";
        case ADS_DOUBLE:
            return "DOUBLE";
        case ADS_INTEGER:
            return "INTEGER";
        case ADS_MONEY:
            return "CURRENCY";
        case ADS_TIMESTAMP:
            return "TIMESTAMP";
        case ADS_IMAGE:
            return "GENERAL";
        default:
            return {};
    }
}

}  // namespace fnrk::engine
