#pragma once

// What the COM tests share: COM started in a single-threaded apartment for the whole program,
// VARIANTs that clear themselves, the server DLL loaded from beside the test program through its
// exports, and calls by name through IDispatch.

#include <gtest/gtest.h>

#include <oaidl.h>

#include <string>
#include <vector>

namespace fnrk::com::testing {

class ComVariant {
  public:
    ComVariant() { VariantInit(&value); }
    ~ComVariant() { VariantClear(&value); }
    ComVariant(ComVariant&& other) noexcept : value(other.value) { VariantInit(&other.value); }
    ComVariant(const ComVariant&) = delete;
    ComVariant& operator=(const ComVariant&) = delete;

    static ComVariant Text(const wchar_t* text);
    static ComVariant Long(LONG number);

    VARIANT value;
};

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
    ComVariant value;
    EXCEPINFO error{};
    ~CallOutcome();
};

// Calls `name` of `object` with `args` in their own order (sent last first, as COM does); a put
// names its value DISPID_PROPERTYPUT. The outcome's HRESULT says how the call went.
void Call(IDispatch* object, const std::wstring& name, WORD flags, std::vector<VARIANT*> args,
          CallOutcome& outcome);

}  // namespace fnrk::com::testing
