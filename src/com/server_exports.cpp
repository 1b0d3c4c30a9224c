// The four exports of the in-process server (listed undecorated in fennrickfct.def: the i686
// build would otherwise export them with their stdcall decoration, and COM looks them up plain).

#include <objbase.h>
#include <windows.h>

#include <filesystem>
#include <new>
#include <string>

#include "com/class_factory.hpp"
#include "com/com_identity.hpp"
#include "com/registration.hpp"
#include "com/server_counts.hpp"
#include "com/utf16_text.hpp"
#include "platform/message_box.hpp"
#include "platform/paths.hpp"

namespace {

using namespace fnrk::com;

HRESULT ThisDllPath(std::wstring& path) {
    HMODULE self = nullptr;
    if (!GetModuleHandleExW(
            GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
            reinterpret_cast<LPCWSTR>(&ThisDllPath), &self)) {
        return HRESULT_FROM_WIN32(GetLastError());
    }
    path.assign(MAX_PATH, L'\0');
    for (;;) {
        const DWORD length = GetModuleFileNameW(self, path.data(), static_cast<DWORD>(path.size()));
        if (length == 0) return HRESULT_FROM_WIN32(GetLastError());
        if (length < path.size()) {
            path.resize(length);
            return S_OK;
        }
        path.resize(path.size() * 2);
    }
}

// The current user's classes, where a user without administrator rights registers.
template <typename Work>
HRESULT WithUserClasses(Work work) {
    HKEY classes = nullptr;
    const LSTATUS opened =
        RegCreateKeyExW(HKEY_CURRENT_USER, L"Software\\Classes", 0, nullptr,
                        REG_OPTION_NON_VOLATILE, KEY_ALL_ACCESS, nullptr, &classes, nullptr);
    if (opened != ERROR_SUCCESS) return HRESULT_FROM_WIN32(opened);
    const HRESULT done = work(classes);
    RegCloseKey(classes);
    return done;
}

}  // namespace

STDAPI DllCanUnloadNow() {
    return ServerInUse() ? S_FALSE : S_OK;
}

STDAPI DllGetClassObject(REFCLSID clsid, REFIID iid, LPVOID* out) {
    if (clsid != kFnrkRoutinesClsid) {
        if (out != nullptr) *out = nullptr;
        return CLASS_E_CLASSNOTAVAILABLE;
    }
    try {
        // The installation is where the DLL lies, not where the host program does.
        std::wstring path;
        if (SUCCEEDED(ThisDllPath(path))) {
            fnrk::platform::SetProgramFolder(
                Utf8FromUtf16(std::filesystem::path(path).parent_path().wstring()));
        }
        // Messages go to the user in message boxes, unless the host has chosen where they go.
        if (fnrk::platform::MessageSink* chosen =
                fnrk::platform::SetMessageSink(&fnrk::platform::MessageBoxes())) {
            fnrk::platform::SetMessageSink(chosen);
        }
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    }
    return CreateAs<RoutinesFactory>(iid, out);
}

// Machine-wide under HKEY_CLASSES_ROOT; when that is refused (no administrator rights), for the
// current user under HKCU\Software\Classes, which HKEY_CLASSES_ROOT shows that user as well.
STDAPI DllRegisterServer() {
    try {
        std::wstring path;
        const HRESULT found = ThisDllPath(path);
        if (FAILED(found)) return found;
        const HRESULT machine = RegisterServer(HKEY_CLASSES_ROOT, path);
        if (machine != HRESULT_FROM_WIN32(ERROR_ACCESS_DENIED)) return machine;
        return WithUserClasses([&](HKEY classes) { return RegisterServer(classes, path); });
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    }
}

// Removes the keys wherever DllRegisterServer may have put them.
STDAPI DllUnregisterServer() {
    const HRESULT user = WithUserClasses([](HKEY classes) { return UnregisterServer(classes); });
    const HRESULT machine = UnregisterServer(HKEY_CLASSES_ROOT);
    // Refused machine-wide keys are no failure for a user who registered only for himself.
    if (machine == HRESULT_FROM_WIN32(ERROR_ACCESS_DENIED)) return user;
    return FAILED(machine) ? machine : user;
}
