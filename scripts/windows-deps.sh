#!/usr/bin/env bash
# Builds the libraries the Windows build links, from Debian's own sources, into a cache outside
# the clone: windows-deps.sh ARCH (x86_64 or i686). Each piece is rebuilt when its stamp is
# missing or names another source version. The prefix is
# ${FNRK_WINDOWS_DEPS:-/var/cache/fennrick/windows-deps}/ARCH (include/, lib/).
#   SQLite     the sqlite3 source package, made into its single-file form natively (tclsh), then
#              compiled with Debian's own compile options
#   libxml2    the libxml2 source package, static, without iconv, lzma, zlib, HTTP and FTP
#   GoogleTest the googletest package's sources (/usr/src/googletest), with GoogleMock
#   headers    fmt (used header-only), CLI11 and nlohmann-json from their Debian packages
set -euo pipefail
top=$(cd "$(dirname "$0")/.." && pwd)
arch=$1
triple=$arch-w64-mingw32
cache=${FNRK_WINDOWS_DEPS:-/var/cache/fennrick/windows-deps}
prefix=$cache/$arch
sources=$cache/src
toolchain=$top/cmake/toolchains/mingw-w64-$arch.cmake
jobs=$(nproc)
mkdir -p "$prefix/include" "$prefix/lib" "$sources"

# The source version of a Debian package, as `apt-get source` would fetch it.
source_version() {
    apt-cache showsrc "$1" | sed -n 's/^Version: //p' | sort -V | tail -n 1
}

# Fetches and unpacks a source package once per version; prints its folder.
unpacked_source() {
    local package=$1 version=$2
    local folder=$sources/$package-$version
    if [ ! -f "$folder/.unpacked" ]; then
        rm -rf "$folder" "$sources/download-$package"
        mkdir -p "$sources/download-$package"
        (cd "$sources/download-$package" && apt-get source -qq "$package=$version" >/dev/null 2>&1)
        mv "$(find "$sources/download-$package" -mindepth 1 -maxdepth 1 -type d | head -n 1)" "$folder"
        rm -rf "$sources/download-$package"
        touch "$folder/.unpacked"
    fi
    echo "$folder"
}

# True when the piece's stamp names this version (the piece is built and current).
is_current() {
    [ -f "$prefix/.$1" ] && [ "$(cat "$prefix/.$1")" = "$2" ]
}

# Configures a CMake project for this architecture, builds it and installs it into the prefix:
# cmake_install SOURCE [CMake options...]
cmake_install() {
    local source=$1
    shift
    local work=$prefix/work-cmake
    rm -rf "$work"
    cmake -S "$source" -B "$work" -G Ninja -DCMAKE_TOOLCHAIN_FILE="$toolchain" \
        -DCMAKE_BUILD_TYPE=Release -DCMAKE_INSTALL_PREFIX="$prefix" "$@" >/dev/null
    cmake --build "$work" -j "$jobs" >/dev/null
    cmake --install "$work" >/dev/null
    rm -rf "$work"
}

sqlite() {
    local version
    version=$(source_version sqlite3)
    is_current sqlite "$version" && return
    echo "-- SQLite $version for $arch"
    local folder
    folder=$(unpacked_source sqlite3 "$version")
    local single=$sources/sqlite3-single-$version
    if [ ! -f "$single/sqlite3.c" ]; then
        rm -rf "$single"
        mkdir -p "$single"
        (cd "$single" && "$folder/configure" --disable-tcl >/dev/null && make -s sqlite3.c >/dev/null)
    fi
    local work=$prefix/work-sqlite
    rm -rf "$work" && mkdir -p "$work"
    # The compile options of Debian's own libsqlite3 (debian/rules of the source package).
    "$triple-gcc-posix" -O2 -fno-strict-aliasing -DSQLITE_SECURE_DELETE \
        -DSQLITE_ENABLE_COLUMN_METADATA -DSQLITE_ENABLE_FTS3 -DSQLITE_ENABLE_FTS3_PARENTHESIS \
        -DSQLITE_ENABLE_RTREE=1 -DSQLITE_SOUNDEX=1 -DSQLITE_ENABLE_UNLOCK_NOTIFY \
        -DSQLITE_OMIT_LOOKASIDE=1 -DSQLITE_ENABLE_DBSTAT_VTAB -DSQLITE_ALLOW_ROWID_IN_VIEW \
        -DSQLITE_ENABLE_UPDATE_DELETE_LIMIT=1 -DSQLITE_ENABLE_JSON1 \
        -DSQLITE_LIKE_DOESNT_MATCH_BLOBS -DSQLITE_THREADSAFE=1 -DSQLITE_USE_URI=1 \
        -DSQLITE_MAX_SCHEMA_RETRY=25 -DSQLITE_ENABLE_STMTVTAB -DSQLITE_MAX_VARIABLE_NUMBER=250000 \
        -c "$single/sqlite3.c" -o "$work/sqlite3.o"
    rm -f "$prefix/lib/libsqlite3.a"
    "$triple-ar" rcs "$prefix/lib/libsqlite3.a" "$work/sqlite3.o"
    cp "$single/sqlite3.h" "$single/sqlite3ext.h" "$prefix/include/"
    rm -rf "$work"
    echo "$version" >"$prefix/.sqlite"
}

libxml2() {
    local version
    # "+static": built with LIBXML_STATIC, so that its functions carry no dllexport marks and a
    # DLL that links it exports nothing of libxml2's.
    version=$(source_version libxml2)+static
    is_current libxml2 "$version" && return
    echo "-- libxml2 $version for $arch"
    local folder
    folder=$(unpacked_source libxml2 "${version%+static}")
    cmake_install "$folder" -DBUILD_SHARED_LIBS=OFF -DCMAKE_C_FLAGS=-DLIBXML_STATIC \
        -DLIBXML2_WITH_ICONV=OFF -DLIBXML2_WITH_LZMA=OFF -DLIBXML2_WITH_ZLIB=OFF \
        -DLIBXML2_WITH_HTTP=OFF -DLIBXML2_WITH_FTP=OFF -DLIBXML2_WITH_PYTHON=OFF \
        -DLIBXML2_WITH_ICU=OFF -DLIBXML2_WITH_PROGRAMS=OFF -DLIBXML2_WITH_TESTS=OFF \
        -DLIBXML2_WITH_MODULES=OFF
    echo "$version" >"$prefix/.libxml2"
}

googletest() {
    local version
    version=$(dpkg-query -W -f='${Version}' googletest)
    is_current googletest "$version" && return
    echo "-- GoogleTest $version for $arch"
    cmake_install /usr/src/googletest -DBUILD_GMOCK=ON -DINSTALL_GTEST=ON
    echo "$version" >"$prefix/.googletest"
}

headers() {
    local version
    version=$(dpkg-query -W -f='${Version} ' libfmt-dev libcli11-dev nlohmann-json3-dev)
    is_current headers "$version" && return
    echo "-- fmt, CLI11, nlohmann-json headers for $arch"
    rm -rf "$prefix/include/fmt" "$prefix/include/CLI" "$prefix/include/nlohmann"
    cp -r /usr/include/fmt /usr/include/CLI /usr/include/nlohmann "$prefix/include/"
    echo "$version" >"$prefix/.headers"
}

sqlite
libxml2
googletest
headers
