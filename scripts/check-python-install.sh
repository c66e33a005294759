#!/usr/bin/env bash
# Checks the README's Python installation without touching /usr/local: configures a Release tree
# the way the README's command does (when it does not exist yet), installs it into a temporary
# prefix, and checks that
#   - the package lands in the folder below the prefix that Debian's /usr/bin/python3 reads for
#     the default prefix /usr/local (its sys.path holds /usr/local/lib/python3.X/dist-packages),
#   - /usr/bin/python3 imports the installed package from there and designs an example with it
#     (the extension finds the installed library by its relative run path);
# then installs the package with pip as the README says (pyproject.toml, offline, Debian's pip),
# building in the same tree, into a second temporary prefix, and checks that it imports from
# there with its stubs and the library beside the extension, and designs the same example.
# Usage: scripts/check-python-install.sh [build-dir] (default build-python-install)
set -euo pipefail
cd "$(dirname "$0")/.."
BUILD_DIR="${1:-build-python-install}"
PYTHON=/usr/bin/python3
PREFIX="$(mktemp -d)"
trap 'rm -rf "$PREFIX"' EXIT
if [ ! -f "$BUILD_DIR/CMakeCache.txt" ]; then
    cmake -S . -B "$BUILD_DIR" -DCMAKE_BUILD_TYPE=Release -DCAUDALIS_BUILD_TESTS=OFF -DCAUDALIS_BUILD_BENCHMARKS=OFF
fi
cmake --build "$BUILD_DIR" -j2
cmake --install "$BUILD_DIR" --prefix "$PREFIX" > /dev/null
SITE="$(sed -n 's/^CAUDALIS_PYTHON_INSTALL_DIR:[A-Z]*=//p' "$BUILD_DIR/CMakeCache.txt")"
test -f "$PREFIX/$SITE/caudalis/__init__.py" || { echo "no package in $PREFIX/$SITE" >&2; exit 1; }
"$PYTHON" - "/usr/local/$SITE" <<'PY'
import sys
wanted = sys.argv[1]
if wanted not in sys.path:
    sys.exit(f"{sys.executable} does not read {wanted}: the default install would not be found")
print(f"{sys.executable} reads {wanted}")
PY
WORK="$PREFIX/work"
"$PREFIX/bin/caudalis" init "$WORK" > /dev/null
(cd "$PREFIX" && env -u LD_LIBRARY_PATH PYTHONPATH="$PREFIX/$SITE" "$PYTHON" - "$PWD" "$OLDPWD" "$WORK" <<'PY'
import sys
prefix, source, work = sys.argv[1:]
import caudalis
assert caudalis.__file__.startswith(prefix), caudalis.__file__
result = caudalis.design(f"{source}/examples/designs/small.json", catalogue=f"{work}/catalogue.db")
print(f"installed package {caudalis.__file__}: {result!r}")
PY
)

PIP_PREFIX="$PREFIX/pip"
CAUDALIS_CMAKE_BUILD_DIR="$PWD/$BUILD_DIR" "$PYTHON" -m pip install --no-build-isolation --no-deps --quiet --root-user-action=ignore \
    --prefix "$PIP_PREFIX" .
cmake "$BUILD_DIR" -DCAUDALIS_PYTHON_BUNDLE_LIBRARY=OFF > /dev/null  # the tree as it was
PIP_SITE="$("$PYTHON" -c 'import sys, sysconfig; print(sysconfig.get_path("purelib", sys.argv[1], vars={"base": sys.argv[2]}))' \
    posix_local "$PIP_PREFIX")"
(cd "$PREFIX" && env -u LD_LIBRARY_PATH PYTHONPATH="$PIP_SITE" "$PYTHON" - "$PIP_SITE" "$OLDPWD" "$WORK" <<'PY'
import pathlib
import sys
site, source, work = sys.argv[1:]
import caudalis
package = pathlib.Path(caudalis.__file__).parent
assert str(package).startswith(site), caudalis.__file__
assert (package / "_caudalis.pyi").is_file() and (package / "py.typed").is_file(), "no stubs"
assert list(package.glob("libcaudalis.so*")), "no library beside the extension"
result = caudalis.design(f"{source}/examples/designs/small.json", catalogue=f"{work}/catalogue.db")
print(f"pip-installed package {caudalis.__file__}: {result!r}")
PY
)
