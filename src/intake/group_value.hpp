#pragma once

// Group values: one company parameter holding several sub-keys as "KEY=value" items separated
// by ",". Keys are compared exactly (letter case counts).

#include <string>
#include <string_view>

namespace fnrk::intake {

// The value of `key` in `group`, trimmed; empty when the key is absent or its item ends with
// the "=".
std::string GroupValueItem(std::string_view group, std::string_view key);

// `group` with `key` set to `value`: a present item is replaced in place by trimmed key "="
// trimmed value; an absent one is appended after a "," (none when the group is empty). Values
// cannot hold ",": the group would not read back.
std::string WithGroupValueItem(std::string_view group, std::string_view key,
                               std::string_view value);

}  // namespace fnrk::intake
