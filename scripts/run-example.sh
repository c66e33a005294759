#!/usr/bin/env bash
# Builds the library, installs it into a local prefix and runs the example host program
# built against the installed package.
set -euo pipefail
cd "$(dirname "$0")/.."
PREFIX="${PREFIX:-$PWD/out/install}"
cmake -S . -B build-release -DCMAKE_BUILD_TYPE=Release -DCAUDALIS_BUILD_TESTS=OFF -DCAUDALIS_BUILD_BENCHMARKS=OFF
cmake --build build-release -j2
cmake --install build-release --prefix "$PREFIX"
cmake -S examples/host -B build-example -DCMAKE_PREFIX_PATH="$PREFIX"
cmake --build build-example -j2
LD_LIBRARY_PATH="$PREFIX/lib:${LD_LIBRARY_PATH:-}" ./build-example/caudalis_example_host
