#!/usr/bin/env bash
# Cross-builds the automation server Caudalis.dll and its test client for 32-bit and 64-bit
# Windows into build-windows/i686 and build-windows/x86_64.
#   scripts/build-windows.sh        (after scripts/install-windows-deps.sh)
set -euo pipefail
cd "$(dirname "$0")/.."
OUT=build-windows
export CCACHE_BASEDIR=${CCACHE_BASEDIR:-$PWD}
bash scripts/windows-sqlite.sh "$OUT/sqlite"
for arch in i686 x86_64; do
  cmake -S platform -B "$OUT/$arch" -DCMAKE_TOOLCHAIN_FILE="$PWD/platform/cmake/mingw.cmake" -DCAUDALIS_ARCH=$arch \
    -DCAUDALIS_SQLITE_DIR="$PWD/$OUT/sqlite" -DCAUDALIS_WINE_IDL="$PWD/$OUT/wine-idl" >/dev/null
  cmake --build "$OUT/$arch" -j2
done
