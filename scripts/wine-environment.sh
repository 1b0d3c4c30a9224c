# Sourced by the Windows scripts: the Wine prefix of the Windows build (under the dependency
# cache, outside the clone), quiet, and one persistent wineserver for it, so that each Windows
# program starts in milliseconds instead of starting a server of its own.
export WINEPREFIX=$FNRK_WINDOWS_DEPS/wine
export WINEDEBUG=-all
# No Mono or Gecko installer dialogs when the prefix is made.
export WINEDLLOVERRIDES="mscoree,mshtml="
# How CMake and CTest run a Windows program (CMAKE_CROSSCOMPILING_EMULATOR).
FNRK_WINE_EMULATOR="env;WINEPREFIX=$WINEPREFIX;WINEDEBUG=-all;WINEDLLOVERRIDES=$WINEDLLOVERRIDES;/usr/lib/wine/wine64"

start_wineserver() {
    mkdir -p "$WINEPREFIX"
    # Fails when a server runs for this prefix already, which is as good.
    /usr/lib/wine/wineserver64 -p 2>/dev/null || true
    # Makes the prefix on first use, then returns at once.
    /usr/lib/wine/wine64 cmd /c exit 0 >/dev/null 2>&1 || true
}

stop_wineserver() {
    /usr/lib/wine/wineserver64 -k 2>/dev/null || true
}
