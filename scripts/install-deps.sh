#!/usr/bin/env bash
# Installs the Debian packages that Caudalis needs.
#   scripts/install-deps.sh           what building the library and the command line needs
#   scripts/install-deps.sh --python  that, and what the Python package needs to build
#   scripts/install-deps.sh --tests   that, the Python package's, and everything the test suites need
# The package lists live in scripts/deps/: build.txt always, python.txt with --python or --tests,
# and test*.txt with --tests.
set -euo pipefail
cd "$(dirname "$0")"
SUDO=""
if [ "$(id -u)" -ne 0 ]; then SUDO="sudo"; fi
export DEBIAN_FRONTEND=noninteractive

lists=(deps/build.txt)
case "${1:-}" in
  --python) lists+=(deps/python.txt) ;;
  --tests) lists+=(deps/python.txt deps/test*.txt) ;;
  "") ;;
  *) echo "install-deps.sh: unknown option $1 (use --python or --tests)" >&2; exit 2 ;;
esac
mapfile -t packages < <(cat "${lists[@]}" | sed -e 's/#.*//' -e 's/[[:space:]]//g' | grep -v '^$' | sort -u)
$SUDO apt-get update || true
$SUDO apt-get install -y --no-install-recommends "${packages[@]}"
