#pragma once

// The class the library's COM server offers and the names it is registered under. The CLSID was
// generated once for this class and never changes: registrations and callers that refer to the
// class by CLSID depend on it.

#include <guiddef.h>

namespace fnrk::com {

// {CE661153-407A-40C6-AD7E-5A05B8D3C00E}
inline constexpr CLSID kFnrkRoutinesClsid = {
    0xce661153, 0x407a, 0x40c6, {0xad, 0x7e, 0x5a, 0x05, 0xb8, 0xd3, 0xc0, 0x0e}};
inline constexpr wchar_t kFnrkRoutinesClsidText[] = L"{CE661153-407A-40C6-AD7E-5A05B8D3C00E}";

inline constexpr wchar_t kProgId[] = L"Fennrickfct.FnrkRoutines";
inline constexpr wchar_t kVersionedProgId[] = L"Fennrickfct.FnrkRoutines.1";
inline constexpr wchar_t kClassDescription[] = L"FnrkRoutines";
// The source an error names to the caller (Err.Source).
inline constexpr char kErrorSource[] = "Fennrickfct.FnrkRoutines";

}  // namespace fnrk::com
