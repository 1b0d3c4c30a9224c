#include "com/routines_dispatch.hpp"

#include "facade/member_table.hpp"

#include "com/com_identity.hpp"
#include "com/dispatch_arguments.hpp"
#include "com/dispatch_errors.hpp"
#include "com/member_ids.hpp"
#include "com/utf16_text.hpp"
#include "com/variant_conversion.hpp"

namespace fnrk::com {

HRESULT STDMETHODCALLTYPE RoutinesDispatch::GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID,
                                                          DISPID* ids) {
    if (names == nullptr || ids == nullptr) return E_POINTER;
    try {
        ids[0] = MemberId(Utf8FromUtf16(names[0]));
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    }
    // The members take their arguments by position: argument names are unknown.
    for (UINT i = 1; i < count; ++i) ids[i] = DISPID_UNKNOWN;
    return ids[0] == DISPID_UNKNOWN || count > 1 ? DISP_E_UNKNOWNNAME : S_OK;
}

HRESULT STDMETHODCALLTYPE RoutinesDispatch::Invoke(DISPID id, REFIID iid, LCID, WORD flags,
                                                   DISPPARAMS* params, VARIANT* result,
                                                   EXCEPINFO* info, UINT*) {
    if (iid != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
    if (params == nullptr) return E_POINTER;
    const facade::Member* member = MemberOfId(id);
    if (member == nullptr) return DISP_E_MEMBERNOTFOUND;
    return GuardedCall(info, kErrorSource, [&] {
        const bool put = (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0;
        DispatchArguments arguments(*params, put);
        const facade::Variant answer = facade::MemberTable::Instance().Invoke(
            routines_, member->name, KindOfCall(member->name, flags), arguments.Values());
        arguments.WriteBack();
        if (result != nullptr) ToComVariant(answer, *result);
    });
}

}  // namespace fnrk::com
