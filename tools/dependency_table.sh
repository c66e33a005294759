#!/usr/bin/env bash
# Prints the dependency table of docs/dependencies.md: for each install list of scripts/deps,
# what apt would install for it on a minimal Debian 12 (the whole closure, without recommends):
# the number of packages, the download and the disk space, as apt's simulation reports them.
#   tools/dependency_table.sh ROOT
# ROOT is a minimal Debian 12 made with
#   debootstrap --variant=minbase bookworm ROOT http://deb.debian.org/debian
# with the bookworm, bookworm-updates and bookworm-security suites in its sources.list, the i386
# architecture added (dpkg --add-architecture i386) and `apt-get update` run. Nothing is installed.
set -euo pipefail
root=$1
deps=$(cd "$(dirname "$0")/../scripts/deps" && pwd)

packages_of() { cat "$@" | sed -e 's/#.*//' -e 's/[[:space:]]//g' | grep -v '^$' | sort -u; }

# "packages | download MB | disk MB" of an install of the given packages into ROOT.
closure() {
  local out count download disk
  out=$(chroot "$root" apt-get install --no-install-recommends --assume-no "$@" 2>&1 || true)
  count=$(grep -oE '^[0-9]+ upgraded, [0-9]+ newly installed' <<<"$out" | awk '{print $3}')
  download=$(grep -oE 'Need to get [0-9.,]+ [kMG]B' <<<"$out" | awk '{print $4 " " $5}')
  disk=$(grep -oE 'After this operation, [0-9.,]+ [kMG]B' <<<"$out" | awk '{print $4 " " $5}')
  if [ -z "$count" ]; then
    echo "apt found no plan: $(grep '^E:' <<<"$out" | head -n 1)"
    return
  fi
  echo "$count | $download | $disk"
}

row() { # label, list files...
  local label=$1
  shift
  mapfile -t wanted < <(packages_of "$@")
  echo "| $label | $(closure "${wanted[@]}") |"
}

echo "| install list | packages | download | disk space |"
echo "|---|---|---|---|"
row "\`install-deps.sh\` (build.txt)" "$deps/build.txt"
row "\`install-deps.sh --python\` (+ python.txt)" "$deps/build.txt" "$deps/python.txt"
row "\`install-deps.sh --tests\` (+ test*.txt)" "$deps/build.txt" "$deps/python.txt" "$deps"/test*.txt
row "\`install-windows-deps.sh\` (windows.txt) alone" "$deps/windows.txt"
row "\`install-deps.sh --tests\` and \`install-windows-deps.sh\` (CI)" "$deps/build.txt" "$deps/python.txt" "$deps"/test*.txt "$deps/windows.txt"
