#pragma once

// What the COM tests share: COM started in a single-threaded apartment for the whole program,
// VARIANTs of text and numbers, the server DLL loaded from beside the test program through its
// exports, and calls by name through IDispatch.

#include <gtest/gtest.h>

#include <oaidl.h>

#include <string>
#include <vector>

#include "com/owned_variant.hpp"

namespace fnrk::com::testing {

OwnedVariant TextVariant(const wchar_t* text);
OwnedVariant LongVariant(LONG number);
// A by-reference argument (VT_BYREF | type) to the caller's variable at `target`.
OwnedVariant ReferenceTo(VARTYPE type, void* target);

// Fennrickfct.dll, loaded once for the program.
class ServerDll {
  public:
    static ServerDll& Loaded();

    HRESULT GetClassObject(REFCLSID clsid, REFIID iid, void** out) const;
    HRESULT CanUnloadNow() const;
    // A new FnrkRoutines through the DLL's class factory.
    IDispatch* NewRoutines() const;

  private:
    ServerDll();
    template <typename Export>
    Export ExportNamed(const char* name) const;

    HMODULE module_ = nullptr;
};

struct CallOutcome {
    HRESULT result = S_OK;
    OwnedVariant value;
    EXCEPINFO error{};
    ~CallOutcome();
};

// Calls `name` of `object` with `args` in their own order (sent last first, as COM does); a put
// names its value DISPID_PROPERTYPUT. The outcome's HRESULT says how the call went.
void Call(IDispatch* object, const std::wstring& name, WORD flags, std::vector<VARIANT*> args,
          CallOutcome& outcome);

}  // namespace fnrk::com::testing
