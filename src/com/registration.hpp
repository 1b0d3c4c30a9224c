#pragma once

// The registry keys of the server: the ProgID "Fennrickfct.FnrkRoutines" (its CLSID and CurVer),
// the versioned ProgID, and CLSID\{...} with ProgID, VersionIndependentProgID and InprocServer32
// (the DLL's full path, ThreadingModel=Apartment). `classes` is where they go: HKEY_CLASSES_ROOT,
// the current user's Software\Classes, or a key a test stands in for either.

#include <windows.h>

#include <string>

namespace fnrk::com {

// S_OK, or the HRESULT of the first key that could not be written (nothing is left half-written:
// the keys already made are removed).
HRESULT RegisterServer(HKEY classes, const std::wstring& dllPath);
// Removes exactly the keys RegisterServer writes; keys already gone are no failure.
HRESULT UnregisterServer(HKEY classes);

}  // namespace fnrk::com
