#!/usr/bin/env bash
# Configures and builds one build folder: build.sh FOLDER [extra CMake arguments...]
set -euo pipefail
top=$(cd "$(dirname "$0")/.." && pwd)
folder=$1
shift
cmake -S "$top" -B "$top/$folder" -G Ninja "$@" >/dev/null
cmake --build "$top/$folder" -j "$(nproc)"
