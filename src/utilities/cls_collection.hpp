#pragma once

// clsCollection: membership of a keyed collection, asked without raising the error that looking
// up a missing key raises.

#include <string>
#include <string_view>
#include <vector>

namespace fnrk::utilities {

class clsCollection {
  public:
    // Whether one of `keys` equals `key`. Keys of a keyed collection are compared without regard
    // to case, as the collection itself compares them; an empty key is never present.
    bool IsItemExistsInCollection(const std::vector<std::string>& keys, std::string_view key) const;
};

}  // namespace fnrk::utilities
