#pragma once

// Looking up one record of a list the installation supplies as a table file (labels, bank
// codes), read-only and without index: the table is opened for the look-up and closed again.

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace fnrk::tables {

class AdsClass;

// Opens the table file `path` read-only under `alias` (unless that alias is open already),
// finds its first live record for which the xBase `condition` holds, lets `read` take what it
// needs from it, and closes the table again when it opened it. The caller's current table is
// kept. False when the file is missing or does not open, or no record fits.
bool LookUpTableFile(AdsClass& tables, std::string_view alias, const std::string& path,
                     const std::string& condition, const std::function<void(AdsClass&)>& read);

// The condition "the field, without trailing blanks, equals `value` exactly"; nothing when the
// value cannot be written as an xBase literal.
std::optional<std::string> FieldEquals(std::string_view field, std::string_view value);

}  // namespace fnrk::tables
