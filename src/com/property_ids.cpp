#include "com/property_ids.hpp"

#include "platform/text.hpp"

#include <algorithm>
#include <mutex>
#include <vector>

namespace fnrk::com {
namespace {

// The first DISPID given: below it lie DISPID_VALUE and the other reserved numbers.
constexpr DISPID kFirstId = 1;

struct PropertyNames {
    std::mutex mutex;  // objects of several apartments ask at once
    std::vector<std::string> names;
};

PropertyNames& Names() {
    static PropertyNames names;
    return names;
}

}  // namespace

DISPID PropertyId(std::string_view name) {
    PropertyNames& known = Names();
    std::lock_guard lock(known.mutex);
    const auto found =
        std::find_if(known.names.begin(), known.names.end(),
                     [&](const std::string& n) { return platform::EqualsNoCase(n, name); });
    if (found != known.names.end())
        return kFirstId + static_cast<DISPID>(found - known.names.begin());
    known.names.emplace_back(name);
    return kFirstId + static_cast<DISPID>(known.names.size() - 1);
}

bool PropertyNameOf(DISPID id, std::string& name) {
    PropertyNames& known = Names();
    std::lock_guard lock(known.mutex);
    if (id < kFirstId || static_cast<std::size_t>(id - kFirstId) >= known.names.size())
        return false;
    name = known.names[static_cast<std::size_t>(id - kFirstId)];
    return true;
}

}  // namespace fnrk::com
