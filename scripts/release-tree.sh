# Sourced by the scripts that use the Release build tree. `release_tree DIR` configures DIR as a
# Release tree without tests and benchmarks when it has not been configured yet; a tree that
# exists (CI's Release test build) is used as it is, so nothing is compiled twice.
release_tree() {
    if [ ! -f "$1/CMakeCache.txt" ]; then
        cmake -S . -B "$1" -DCMAKE_BUILD_TYPE=Release -DCAUDALIS_BUILD_TESTS=OFF -DCAUDALIS_BUILD_BENCHMARKS=OFF
    fi
}
