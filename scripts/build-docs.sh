#!/usr/bin/env bash
# Builds the documentation site with MkDocs (Debian's `mkdocs` package, its built-in theme) into
# BUILD/docs/site, with warnings as errors. The reference pages are written first from the
# program's --help, the design file's schema, the Python module's docstrings, the headers and the
# library's error table, so they always say what this build does.
# Usage: scripts/build-docs.sh [build-dir]      (the Release build of scripts/test.sh)
set -euo pipefail
cd "$(dirname "$0")/.."
BUILD_DIR="$(realpath "${1:-build}")"
OUT="$BUILD_DIR/docs"
SRC="$OUT/src"
mkdir -p "$OUT"
PYTHON="${PYTHON:-/usr/bin/python3}"   # Debian's interpreter, the one the package is built for
"$PYTHON" scripts/docs/stage.py . "$SRC"
"$PYTHON" scripts/docs/commands.py "$BUILD_DIR/apps/caudalis/caudalis" "$SRC/reference/commands.md"
"$PYTHON" scripts/docs/design_file.py docs/design-file.schema.json "$SRC/reference/design-fields.md"
PYTHONPATH="$BUILD_DIR/python" "$PYTHON" scripts/docs/python_api.py "$SRC/reference/python-api.md"
"$PYTHON" scripts/docs/cpp_api.py include/caudalis "$SRC/reference/cpp-api.md"
"$PYTHON" scripts/docs/errors.py . "$SRC/reference/errors.md"
sed -e "s|^docs_dir:.*|docs_dir: src|" -e "s|^site_dir:.*|site_dir: site|" mkdocs.yml > "$OUT/mkdocs.yml"
mkdocs build --strict --quiet --config-file "$OUT/mkdocs.yml"
echo "documentation site: $OUT/site/index.html"
