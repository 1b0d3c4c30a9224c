#include "utilities/cls_collection.hpp"

#include <algorithm>

#include "platform/text.hpp"

namespace fnrk::utilities {

bool clsCollection::IsItemExistsInCollection(const std::vector<std::string>& keys,
                                             std::string_view key) const {
    if (key.empty()) return false;
    return std::any_of(keys.begin(), keys.end(), [key](const std::string& candidate) {
        return platform::EqualsNoCase(candidate, key);
    });
}

}  // namespace fnrk::utilities
