#!/usr/bin/env bash
# The Windows stage of CI: installs the cross compilers and Wine, builds the automation server
# for 32-bit and 64-bit Windows, and tests both under Wine against the native build in build/.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/install-windows-deps.sh --allow-changes  # CI runs on a throwaway machine
bash scripts/build-windows.sh
bash scripts/test-windows.sh "${1:-build}"
