#pragma once

// DISPIDs of the property names of the library's objects. Objects have no fixed list of names a
// caller may ask for (a user's "Password" can be written but is not listed), so every name asked
// for gets one process-wide number, the same on every object, compared without regard to case;
// the object decides at the call whether it has that property.

#include <oaidl.h>

#include <string>
#include <string_view>

namespace fnrk::com {

DISPID PropertyId(std::string_view name);
// The name a DISPID was given; false when no name has that DISPID.
bool PropertyNameOf(DISPID id, std::string& name);

}  // namespace fnrk::com
