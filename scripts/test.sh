#!/usr/bin/env bash
# Sets everything up and runs the whole test suite twice: a normal build, then the same suite
# under AddressSanitizer and UndefinedBehaviorSanitizer.
set -euo pipefail
top=$(cd "$(dirname "$0")/.." && pwd)
"$top/scripts/setup.sh"

echo "== normal build"
"$top/scripts/build.sh" build -DCMAKE_BUILD_TYPE=RelWithDebInfo
(cd "$top/build" && ctest --output-on-failure -j "$(nproc)" --timeout 600)

echo "== sanitizer build (address, undefined behaviour)"
"$top/scripts/build.sh" build-sanitize -DCMAKE_BUILD_TYPE=Debug -DFNRK_SANITIZE=ON -DFNRK_BENCHMARKS=OFF
(cd "$top/build-sanitize" && ctest --output-on-failure -j "$(nproc)" --timeout 900)
