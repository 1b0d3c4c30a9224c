#include "com_test_support.hpp"

#include <objbase.h>

#include <filesystem>

#include "com/com_identity.hpp"

namespace fnrk::com::testing {
namespace {

class ApartmentEnvironment : public ::testing::Environment {
  public:
    void SetUp() override {
        ASSERT_HRESULT_SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED));
    }
    void TearDown() override { CoUninitialize(); }
};

// Registered before main runs the tests.
[[maybe_unused]] ::testing::Environment* const apartment =
    ::testing::AddGlobalTestEnvironment(new ApartmentEnvironment);

std::filesystem::path ProgramFolder() {
    std::wstring path(MAX_PATH, L'\0');
    path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
    return std::filesystem::path(path).parent_path();
}

}  // namespace

OwnedVariant TextVariant(const wchar_t* text) {
    OwnedVariant made;
    V_VT(&made.value) = VT_BSTR;
    V_BSTR(&made.value) = SysAllocString(text);
    return made;
}

OwnedVariant LongVariant(LONG number) {
    OwnedVariant made;
    V_VT(&made.value) = VT_I4;
    V_I4(&made.value) = number;
    return made;
}

OwnedVariant ReferenceTo(VARTYPE type, void* target) {
    OwnedVariant made;
    V_VT(&made.value) = VT_BYREF | type;
    V_BYREF(&made.value) = target;
    return made;
}

ServerDll::ServerDll() {
    module_ = LoadLibraryW((ProgramFolder() / L"Fennrickfct.dll").c_str());
}

ServerDll& ServerDll::Loaded() {
    static ServerDll dll;
    return dll;
}

template <typename Export>
Export ServerDll::ExportNamed(const char* name) const {
    // Through void*: FARPROC has no arguments, and GCC warns of a cast to another signature.
    return reinterpret_cast<Export>(reinterpret_cast<void*>(GetProcAddress(module_, name)));
}

HRESULT ServerDll::GetClassObject(REFCLSID clsid, REFIID iid, void** out) const {
    auto get = ExportNamed<HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**)>("DllGetClassObject");
    return get == nullptr ? E_UNEXPECTED : get(clsid, iid, out);
}

HRESULT ServerDll::CanUnloadNow() const {
    auto can = ExportNamed<HRESULT(STDAPICALLTYPE*)()>("DllCanUnloadNow");
    return can == nullptr ? E_UNEXPECTED : can();
}

IDispatch* ServerDll::NewRoutines() const {
    IClassFactory* factory = nullptr;
    if (FAILED(GetClassObject(kFnrkRoutinesClsid, IID_IClassFactory,
                              reinterpret_cast<void**>(&factory)))) {
        return nullptr;
    }
    IDispatch* routines = nullptr;
    const HRESULT made =
        factory->CreateInstance(nullptr, IID_IDispatch, reinterpret_cast<void**>(&routines));
    factory->Release();
    return SUCCEEDED(made) ? routines : nullptr;
}

CallOutcome::~CallOutcome() {
    SysFreeString(error.bstrSource);
    SysFreeString(error.bstrDescription);
    SysFreeString(error.bstrHelpFile);
}

void Call(IDispatch* object, const std::wstring& name, WORD flags, std::vector<VARIANT*> args,
          CallOutcome& outcome) {
    std::wstring named = name;
    LPOLESTR names[] = {named.data()};
    DISPID id = DISPID_UNKNOWN;
    outcome.result = object->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id);
    if (FAILED(outcome.result)) return;
    std::vector<VARIANT> sent;
    for (auto arg = args.rbegin(); arg != args.rend(); ++arg) sent.push_back(**arg);
    DISPID putId = DISPID_PROPERTYPUT;
    const bool put = (flags & DISPATCH_PROPERTYPUT) != 0;
    DISPPARAMS params{sent.data(), put ? &putId : nullptr, static_cast<UINT>(sent.size()),
                      put ? 1u : 0u};
    outcome.result = object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &params,
                                    &outcome.value.value, &outcome.error, nullptr);
}

}  // namespace fnrk::com::testing
