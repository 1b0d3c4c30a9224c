#!/usr/bin/env bash
# Sets everything up, builds, and runs `fennrick demo` on the built-in sample dossier.
set -euo pipefail
top=$(cd "$(dirname "$0")/.." && pwd)
"$top/scripts/setup.sh"
"$top/scripts/build.sh" build -DCMAKE_BUILD_TYPE=Release
"$top/build/src/cli/fennrick" demo "$@"
