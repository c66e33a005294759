#!/usr/bin/env bash
# Installs the library and the program into a local prefix (from the Release tree, configured
# here when it does not exist yet), then checks what a user of the installed package relies on:
# a host built with CMake (find_package), a host built with pkg-config, and the installed
# `caudalis` program starting without LD_LIBRARY_PATH.
set -euo pipefail
cd "$(dirname "$0")/.."
BUILD_DIR="${BUILD_DIR:-build-release}"
PREFIX="${PREFIX:-$PWD/out/install}"
source scripts/release-tree.sh
release_tree "$BUILD_DIR"
cmake --build "$BUILD_DIR" --target caudalis caudalis_app -j2
rm -rf "$PREFIX"
cmake --install "$BUILD_DIR" --prefix "$PREFIX"

echo "host built with CMake (find_package):"
cmake -S examples/host -B build-example -DCMAKE_PREFIX_PATH="$PREFIX"
cmake --build build-example -j2
./build-example/caudalis_example_host

echo "host built with pkg-config:"
export PKG_CONFIG_PATH="$PREFIX/lib/pkgconfig:$PREFIX/share/pkgconfig${PKG_CONFIG_PATH:+:$PKG_CONFIG_PATH}"
LIBDIR="$(pkg-config --variable=libdir caudalis)"
# shellcheck disable=SC2046  # pkg-config prints separate flags
c++ -std=c++20 examples/host/main.cpp -o build-example/caudalis_example_host_pc \
    $(pkg-config --cflags --libs caudalis) -Wl,-rpath,"$LIBDIR"
./build-example/caudalis_example_host_pc

echo "installed program without LD_LIBRARY_PATH:"
env -u LD_LIBRARY_PATH "$PREFIX/bin/caudalis" --version
