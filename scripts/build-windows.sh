#!/usr/bin/env bash
# Cross-builds the library for Windows with MinGW-w64 (GCC 12, the `-posix` compilers, static):
#   build-windows-x86_64/  everything, the test programs too (they run under wine64: ctest there)
#   build-windows-i686/    the libraries and the COM server DLL (the build that ships)
# Installs what is missing (apt-get), builds the Windows dependencies into the cache
# ${FNRK_WINDOWS_DEPS:-/var/cache/fennrick/windows-deps} (scripts/windows-deps.sh), keeps one
# wineserver running for the Wine prefix there while test programs are listed.
set -euo pipefail
top=$(cd "$(dirname "$0")/.." && pwd)
export FNRK_WINDOWS_DEPS=${FNRK_WINDOWS_DEPS:-/var/cache/fennrick/windows-deps}

as_root() {
    if [ "$(id -u)" -eq 0 ]; then "$@"; else sudo "$@"; fi
}

# The cross compilers, Wine, the tools that fetch and unpack Debian source packages (with a
# deb-src entry when the apt sources have none) and the packages whose sources or headers the
# Windows build takes.
install_packages() {
    local packages=(cmake ninja-build g++-mingw-w64-x86-64-posix g++-mingw-w64-i686-posix wine64
                    dpkg-dev tcl googletest libfmt-dev libcli11-dev nlohmann-json3-dev)
    local missing=()
    for package in "${packages[@]}"; do
        dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q "install ok installed" \
            || missing+=("$package")
    done
    local update=${#missing[@]}
    if ! grep -rqs '^Types:.*deb-src\|^deb-src ' /etc/apt/sources.list /etc/apt/sources.list.d/; then
        as_root tee /etc/apt/sources.list.d/fennrick-deb-src.sources >/dev/null <<'EOF'
Types: deb-src
URIs: http://deb.debian.org/debian
Suites: bookworm bookworm-updates
Components: main
Signed-By: /usr/share/keyrings/debian-archive-keyring.gpg

Types: deb-src
URIs: http://deb.debian.org/debian-security
Suites: bookworm-security
Components: main
Signed-By: /usr/share/keyrings/debian-archive-keyring.gpg
EOF
        update=1
    fi
    [ "$update" -eq 0 ] || as_root apt-get update -qq
    if [ ${#missing[@]} -gt 0 ]; then
        echo "Installing: ${missing[*]}"
        DEBIAN_FRONTEND=noninteractive as_root apt-get install -y -qq --no-install-recommends \
            "${missing[@]}"
    fi
}

install_packages
as_root mkdir -p "$FNRK_WINDOWS_DEPS"
[ -w "$FNRK_WINDOWS_DEPS" ] || as_root chown "$(id -u):$(id -g)" "$FNRK_WINDOWS_DEPS"

# Wine for the x86_64 test programs, which CMake lists at build time by running them.
source "$top/scripts/wine-environment.sh"
start_wineserver

for arch in x86_64 i686; do
    "$top/scripts/windows-deps.sh" "$arch"
    build=$top/build-windows-$arch
    options=(-DCMAKE_TOOLCHAIN_FILE="$top/cmake/toolchains/mingw-w64-$arch.cmake"
             -DFNRK_WINDOWS_PREFIX="$FNRK_WINDOWS_DEPS/$arch"
             -DCMAKE_BUILD_TYPE=Release -DFNRK_BENCHMARKS=OFF)
    [ "$arch" != x86_64 ] || options+=("-DCMAKE_CROSSCOMPILING_EMULATOR=$FNRK_WINE_EMULATOR")
    launcher=()
    if command -v ccache >/dev/null; then
        launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache -DCMAKE_C_COMPILER_LAUNCHER=ccache)
    fi
    echo "== Windows build ($arch)"
    cmake -S "$top" -B "$build" -G Ninja "${options[@]}" "${launcher[@]}" >/dev/null
    if [ "$arch" = x86_64 ]; then
        cmake --build "$build" -j "$(nproc)"
    else
        # Only what ships: the libraries under the COM server, and its DLL once it exists.
        targets=(fnrk_facade)
        # Not `ninja | grep -q`: grep leaving early fails the pipe under pipefail.
        if ninja -C "$build" -t targets all | grep -c '^fennrickfct: ' >/dev/null; then
            targets=(fennrickfct)
        fi
        cmake --build "$build" -j "$(nproc)" --target "${targets[@]}"
    fi
done
