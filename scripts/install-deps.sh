#!/usr/bin/env bash
# Installs the Debian packages that Caudalis needs.
#   scripts/install-deps.sh           what building the library and the command line needs
#   scripts/install-deps.sh --tests   that, and everything the test suites need
# The package lists live in scripts/deps/: build.txt always, and test*.txt with --tests.
set -euo pipefail
cd "$(dirname "$0")"
SUDO=""
if [ "$(id -u)" -ne 0 ]; then SUDO="sudo"; fi
export DEBIAN_FRONTEND=noninteractive

lists=(deps/build.txt)
if [ "${1:-}" = "--tests" ]; then
  lists+=(deps/test*.txt)
fi
mapfile -t packages < <(cat "${lists[@]}" | sed -e 's/#.*//' -e 's/[[:space:]]//g' | grep -v '^$' | sort -u)
$SUDO apt-get update || true
$SUDO apt-get install -y --no-install-recommends "${packages[@]}"
