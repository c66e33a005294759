#!/usr/bin/env bash
# Times the command line designing a machine of 30,000 outlets end to end with best match over
# a catalogue of 5,000 nozzles (made by scripts/large-design.py).
# Usage: scripts/time-large-design.sh [PROGRAM] (default: build/apps/caudalis/caudalis)
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
program="${1:-$root/build/apps/caudalis/caudalis}"
work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT

python3 "$root/scripts/large-design.py" "$work"
"$program" init "$work/db" --data-dir "$root/data" > /dev/null
"$program" catalogue import "$work/nozzles.csv" --catalogue "$work/db/catalogue.db" > /dev/null
TIMEFORMAT='design of 30,000 outlets over 5,000 nozzles: %R s (user %U s, system %S s)'
time "$program" design "$work/design.json" --catalogue "$work/db/catalogue.db" \
    --project "$work/db/project.db" > "$work/chart.txt"
