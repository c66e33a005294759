#!/usr/bin/env bash
# Builds the caudalis program (Release, two jobs; see scripts/release-tree.sh), creates a project
# database and a catalogue database with the sample catalogue in out/demo, and designs the
# realistic example machine against them, printing its sprinkler chart.
# Usage: scripts/run-design.sh [design-file] (default examples/designs/realistic.json)
set -euo pipefail
cd "$(dirname "$0")/.."
BUILD_DIR="${BUILD_DIR:-build-release}"
WORK_DIR="${WORK_DIR:-out/demo}"
DESIGN="${1:-examples/designs/realistic.json}"
source scripts/release-tree.sh
release_tree "$BUILD_DIR"
cmake --build "$BUILD_DIR" --target caudalis_app -j2
CAUDALIS="$BUILD_DIR/apps/caudalis/caudalis"
"$CAUDALIS" init "$WORK_DIR"
"$CAUDALIS" design "$DESIGN" --project "$WORK_DIR/project.db" --catalogue "$WORK_DIR/catalogue.db"
