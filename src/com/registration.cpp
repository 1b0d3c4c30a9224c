#include "com/registration.hpp"

#include <string_view>

#include "com/com_identity.hpp"

namespace fnrk::com {
namespace {

const std::wstring kClsidKey = std::wstring(L"CLSID\\") + kFnrkRoutinesClsidText;

// Sets the value `name` (the default value when empty) of `subkey`, creating the key.
LSTATUS SetText(HKEY classes, const std::wstring& subkey, const wchar_t* name,
                std::wstring_view value) {
    HKEY key = nullptr;
    LSTATUS status = RegCreateKeyExW(classes, subkey.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE,
                                     KEY_SET_VALUE, nullptr, &key, nullptr);
    if (status != ERROR_SUCCESS) return status;
    status = RegSetValueExW(key, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(value.data()),
                            static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t)));
    RegCloseKey(key);
    return status;
}

struct KeyValue {
    std::wstring subkey;
    const wchar_t* name;
    std::wstring value;
};

LSTATUS DeleteTree(HKEY classes, const std::wstring& subkey) {
    const LSTATUS status = RegDeleteTreeW(classes, subkey.c_str());
    return status == ERROR_FILE_NOT_FOUND ? ERROR_SUCCESS : status;
}

}  // namespace

HRESULT RegisterServer(HKEY classes, const std::wstring& dllPath) {
    const std::wstring progId = kProgId;
    const std::wstring versioned = kVersionedProgId;
    const KeyValue values[] = {
        {progId, nullptr, kClassDescription},
        {progId + L"\\CLSID", nullptr, kFnrkRoutinesClsidText},
        {progId + L"\\CurVer", nullptr, versioned},
        {versioned, nullptr, kClassDescription},
        {versioned + L"\\CLSID", nullptr, kFnrkRoutinesClsidText},
        {kClsidKey, nullptr, kClassDescription},
        {kClsidKey + L"\\ProgID", nullptr, versioned},
        {kClsidKey + L"\\VersionIndependentProgID", nullptr, progId},
        {kClsidKey + L"\\InprocServer32", nullptr, dllPath},
        {kClsidKey + L"\\InprocServer32", L"ThreadingModel", L"Apartment"},
    };
    for (const KeyValue& value : values) {
        const LSTATUS status = SetText(classes, value.subkey, value.name, value.value);
        if (status != ERROR_SUCCESS) {
            UnregisterServer(classes);
            return HRESULT_FROM_WIN32(status);
        }
    }
    return S_OK;
}

HRESULT UnregisterServer(HKEY classes) {
    LSTATUS first = ERROR_SUCCESS;
    for (const std::wstring& subkey :
         {kClsidKey, std::wstring(kVersionedProgId), std::wstring(kProgId)}) {
        const LSTATUS status = DeleteTree(classes, subkey);
        if (first == ERROR_SUCCESS) first = status;
    }
    return HRESULT_FROM_WIN32(first);
}

}  // namespace fnrk::com
