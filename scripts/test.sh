#!/usr/bin/env bash
# Configures (Release, warnings as errors), builds (two jobs) and runs every test.
# Usage: scripts/test.sh [build-dir] [extra cmake args]   e.g. -DCMAKE_BUILD_TYPE=RelWithDebInfo
set -euo pipefail
cd "$(dirname "$0")/.."
BUILD_DIR="${1:-build}"
shift || true
cmake -S . -B "$BUILD_DIR" -DCMAKE_BUILD_TYPE=Release -DCAUDALIS_WERROR=ON "$@"
cmake --build "$BUILD_DIR" -j2
ctest --test-dir "$BUILD_DIR" --output-on-failure -j2
