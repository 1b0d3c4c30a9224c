#pragma once

// The COM object FnrkRoutines: IDispatch over the façade's member table, one FnrkRoutines per
// object. Names are matched without regard to case; methods and property gets and puts are
// called with their arguments converted from VARIANTs, by-reference arguments written back, and
// a member's error raised to the caller through EXCEPINFO.

#include "facade/fnrk_routines.hpp"

#include "com/dispatch_base.hpp"

namespace fnrk::com {

class RoutinesDispatch : public DispatchBase {
  public:
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID locale,
                                            DISPID* ids) override;
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID iid, LCID locale, WORD flags,
                                     DISPPARAMS* params, VARIANT* result, EXCEPINFO* info,
                                     UINT* argumentError) override;

  private:
    facade::FnrkRoutines routines_;
};

}  // namespace fnrk::com
