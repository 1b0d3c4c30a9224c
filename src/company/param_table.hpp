#pragma once

// What the parts of SocParamColClassApi share about the parameter table and its values.

#include <cstdint>
#include <string_view>

namespace fnrk::company {

inline constexpr std::string_view kParamAlias = "PARAM";
// The keyed view every reader of the parameter table shares: "PARAM" in key order.
inline constexpr std::string_view kSeekParamQuery = "SEEKPARAM";
inline constexpr std::int32_t kSeekParamForm = 0;

// A switch value: "TRUE", "T", ".T.", "Y", "YES" or "1", trimmed, any case.
bool IsSwitchOn(std::string_view value);

// A number rounded half to even and held to the range of a 16-bit integer.
std::int16_t AsShort(double number);

}  // namespace fnrk::company
