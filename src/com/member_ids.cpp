#include "com/member_ids.hpp"

#include "platform/text.hpp"

#include <algorithm>

namespace fnrk::com {
namespace {

using facade::MemberKind;
using facade::MemberTable;

bool Has(std::string_view name, MemberKind kind) {
    return MemberTable::Instance().Find(name, kind) != nullptr;
}

}  // namespace

DISPID MemberId(std::string_view name) {
    const auto& members = MemberTable::Instance().Members();
    const auto found = std::find_if(members.begin(), members.end(), [&](const facade::Member& m) {
        return platform::EqualsNoCase(m.name, name);
    });
    if (found == members.end()) return DISPID_UNKNOWN;
    return static_cast<DISPID>(found - members.begin()) + 1;
}

const facade::Member* MemberOfId(DISPID id) {
    const auto& members = MemberTable::Instance().Members();
    if (id < 1 || static_cast<std::size_t>(id) > members.size()) return nullptr;
    return &members[static_cast<std::size_t>(id - 1)];
}

MemberKind KindOfCall(std::string_view name, WORD flags) {
    if ((flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0) {
        return MemberKind::PropertyPut;
    }
    if ((flags & DISPATCH_METHOD) != 0 && Has(name, MemberKind::Method)) return MemberKind::Method;
    if (Has(name, MemberKind::PropertyGet)) return MemberKind::PropertyGet;
    return MemberKind::Method;
}

}  // namespace fnrk::com
