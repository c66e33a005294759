#!/usr/bin/env bash
# Installs the Debian packages that building, testing and running Caudalis need.
set -euo pipefail
SUDO=""
if [ "$(id -u)" -ne 0 ]; then SUDO="sudo"; fi
export DEBIAN_FRONTEND=noninteractive
$SUDO apt-get update
$SUDO apt-get install -y --no-install-recommends \
  build-essential cmake pkg-config ccache git \
  libgtest-dev libgmock-dev libbenchmark-dev \
  libsqlite3-dev sqlite3 python3 \
  nlohmann-json3-dev libcli11-dev libfmt-dev libplplot-dev plplot-driver-cairo \
  clang-format
