#!/usr/bin/env bash
# Configures (warnings as errors), builds (two jobs) and runs every test. Usage: scripts/test.sh [build-dir] [extra cmake args]
set -euo pipefail
cd "$(dirname "$0")/.."
BUILD_DIR="${1:-build}"
shift || true
cmake -S . -B "$BUILD_DIR" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DCAUDALIS_WERROR=ON "$@"
cmake --build "$BUILD_DIR" -j2
ctest --test-dir "$BUILD_DIR" --output-on-failure -j2
