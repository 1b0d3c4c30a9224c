#pragma once

#include <cstdint>

namespace fnrk::engine {

// The engine's field type number (ADS_STRING, ADS_NUMERIC, ...) of a one-letter table field
// type; ADS_TYPE_UNKNOWN for a letter the engine does not know.
std::uint16_t FieldTypeCode(char type);

}  // namespace fnrk::engine
