#!/usr/bin/env bash
# The COM server as the desktop applications meet it, under wine64: `regsvr32` registers the
# DLL, a VBScript client (client.vbs, saved as Windows-1252) drives FnrkRoutines on the sample
# dossier of `fennrick demo` under `cscript`, the PEPPOL invoice it writes is validated here,
# and `regsvr32 /u` removes the keys again.
# Arguments: Fennrickfct.dll, fennrick.exe, the shared fixtures folder, then the command that
# runs a Windows program (CMAKE_CROSSCOMPILING_EMULATOR: env WINEPREFIX=... wine64).
set -euo pipefail
dll=$1 cli=$2 shared=$3
shift 3
emulator=("$@")
here=$(cd "$(dirname "$0")" && pwd)

fail() {
    echo "FAIL: $*" >&2
    exit 1
}

# The emulator's environment (the Wine prefix) for wineserver as well.
for word in "${emulator[@]}"; do
    case $word in WINE*=*) export "${word?}" ;; esac
done
# One persistent server for the prefix: each Wine program then starts in milliseconds.
/usr/lib/wine/wineserver64 -p 2>/dev/null || true

# Wine sees the Unix root as drive Z:.
windows_path() {
    local path
    path=$(realpath -m "$1")
    echo "Z:${path//\//\\}"
}
wine() {
    "${emulator[@]}" "$@"
}
clsid='{CE661153-407A-40C6-AD7E-5A05B8D3C00E}'
registered_keys=("HKCR\\Fennrickfct.FnrkRoutines" "HKCR\\Fennrickfct.FnrkRoutines.1"
                 "HKCR\\CLSID\\$clsid")

work=$(mktemp -d)
trap 'wine regsvr32 /u /s "$(windows_path "$dll")" >/dev/null 2>&1 || true; rm -rf "$work"' EXIT

# The sample installation of `fennrick demo`, made by the Windows build itself; its company SOC1
# is copied to a folder of its own for the client.
wine "$cli" demo --dir "$(windows_path "$work/demo")" >"$work/demo.log" 2>&1 ||
    fail "fennrick demo: $(tail -5 "$work/demo.log")"
[ -f "$work/demo/DATA/SOC1/SOC1_param.dbf" ] || fail "the demo made no company SOC1"
cp -r "$work/demo/DATA/SOC1" "$work/SOC1"
mkdir -p "$work/temp"

wine regsvr32 /s "$(windows_path "$dll")" || fail "regsvr32 could not register the DLL"
wine reg query "HKCR\\CLSID\\$clsid\\InprocServer32" /v ThreadingModel 2>/dev/null |
    grep -q Apartment || fail "no ThreadingModel=Apartment after registration"
wine reg query "HKCR\\Fennrickfct.FnrkRoutines\\CurVer" 2>/dev/null |
    grep -q "Fennrickfct.FnrkRoutines.1" || fail "no CurVer after registration"

invoice=$work/SOC1/INV-0001.xml
wine cscript //nologo "$(windows_path "$here/client.vbs")" "$(windows_path "$work/SOC1")" \
    "$(windows_path "$work/temp")" "$(windows_path "$invoice")" | tr -d '\r' | tee "$work/client.log"
grep -q '^CLIENT DONE$' "$work/client.log" || fail "the client did not run to its end"
if grep -q '^FAIL' "$work/client.log"; then fail "checks of the client failed"; fi

"$shared/tools/validate-invoice" --peppol "$invoice" || fail "the invoice does not validate"
# Windows-1252 in the script, UTF-8 in the invoice.
grep -q 'Étagère en chêne, 80 cm' "$invoice" || fail "the line description lost its accents"

wine regsvr32 /u /s "$(windows_path "$dll")" || fail "regsvr32 /u failed"
for key in "${registered_keys[@]}"; do
    if wine reg query "$key" >/dev/null 2>&1; then fail "$key is still there"; fi
done
echo "COM SERVER SCRIPT TEST PASSED"
