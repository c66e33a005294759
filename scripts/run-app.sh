#!/usr/bin/env bash
# Builds the caudalis program (Release, two jobs; see scripts/release-tree.sh), creates a project
# database and a catalogue database with the sample catalogue in out/demo (unless they exist), and
# starts the design office's app on them at http://127.0.0.1:8080/ until Ctrl+C.
# Usage: scripts/run-app.sh [caudalis serve options, e.g. --port 8081]
set -euo pipefail
cd "$(dirname "$0")/.."
BUILD_DIR="${BUILD_DIR:-build-release}"
WORK_DIR="${WORK_DIR:-out/demo}"
source scripts/release-tree.sh
release_tree "$BUILD_DIR"
cmake --build "$BUILD_DIR" --target caudalis_app -j2
CAUDALIS="$BUILD_DIR/apps/caudalis/caudalis"
"$CAUDALIS" init "$WORK_DIR"
exec "$CAUDALIS" serve --project "$WORK_DIR/project.db" --catalogue "$WORK_DIR/catalogue.db" "$@"
