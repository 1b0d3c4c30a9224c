#!/usr/bin/env bash
# Sets everything up, runs every fuzz target briefly, then the whole test suite three times: a
# normal build, the Windows build under wine64 (scripts/test-windows.sh), then the same suite
# under AddressSanitizer and UndefinedBehaviorSanitizer (its summary closes the output).
set -euo pipefail
top=$(cd "$(dirname "$0")/.." && pwd)
"$top/scripts/setup.sh"

echo "== fuzz targets (clang, libFuzzer): every fuzz_* program, about 20 s each"
CC=clang CXX=clang++ cmake -S "$top" -B "$top/build-fuzz" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
    -DFNRK_FUZZERS=ON -DFNRK_BENCHMARKS=OFF >/dev/null
fuzzers=$(ninja -C "$top/build-fuzz" -t targets all | sed -n 's/^\(fuzz_[A-Za-z0-9_]*\): phony$/\1/p')
cmake --build "$top/build-fuzz" -j "$(nproc)" --target $fuzzers
for fuzzer in $fuzzers; do
    binary=$(find "$top/build-fuzz/src" -type f -perm -u+x -name "$fuzzer" | head -n 1)
    corpus="$top/build-fuzz/corpus/$fuzzer"
    mkdir -p "$corpus"
    echo "-- $fuzzer"
    "$binary" -max_total_time=20 -max_len=8192 "$corpus"
done

echo "== normal build"
"$top/scripts/build.sh" build -DCMAKE_BUILD_TYPE=Release
(cd "$top/build" && ctest --output-on-failure -j "$(nproc)" --timeout 600)

echo "== Windows build (MinGW-w64 cross build; its tests under wine64)"
"$top/scripts/test-windows.sh"

echo "== sanitizer build (address, undefined behaviour)"
# No debug information: the sanitizers name the functions, and the build is much faster without it.
"$top/scripts/build.sh" build-sanitize -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS_DEBUG=-O0 \
    -DFNRK_SANITIZE=ON -DFNRK_BENCHMARKS=OFF
(cd "$top/build-sanitize" && ctest --output-on-failure -j "$(nproc)" --timeout 900)
