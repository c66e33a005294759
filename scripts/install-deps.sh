#!/usr/bin/env bash
# Installs the Debian packages that Caudalis needs.
#   scripts/install-deps.sh           what building the library and the command line needs
#   scripts/install-deps.sh --python  that, and what the Python package needs to build
#   scripts/install-deps.sh --tests   that, the Python package's, and everything the test suites need
#   --allow-changes (with any of the above) accepts a plan that removes or downgrades packages
# The package lists live in scripts/deps/: build.txt always, python.txt with --python or --tests,
# and test*.txt with --tests.
#
# Nothing is changed unless the package indexes were brought up to date and apt's plan (simulated
# first) only installs and upgrades; a plan that would remove or downgrade anything is shown and
# refused. At the end the script reports what it installed and the disk space that took.
set -euo pipefail
cd "$(dirname "$0")"
# shellcheck source=apt-plan.sh
source ./apt-plan.sh
SUDO=""
if [ "$(id -u)" -ne 0 ]; then SUDO="sudo"; fi
export DEBIAN_FRONTEND=noninteractive

lists=(deps/build.txt)
allow_changes=0
for option in "$@"; do
  case "$option" in
    --python) lists+=(deps/python.txt) ;;
    --tests) lists+=(deps/python.txt deps/test*.txt) ;;
    --allow-changes) allow_changes=1 ;;
    *) echo "install-deps.sh: unknown option $option (use --python, --tests or --allow-changes)" >&2; exit 2 ;;
  esac
done
mapfile -t packages < <(cat "${lists[@]}" | sed -e 's/#.*//' -e 's/[[:space:]]//g' | grep -v '^$' | sort -u)

# apt-get update alone reports a source it could not read as a warning and exits 0. A mirror in
# the middle of a sync serves an index of the wrong size for a minute or two: try a few times
# (CAUDALIS_APT_UPDATE_TRIES, default 3, 30 s apart) before giving up. An index that still fails
# stops the script unless it is a foreign architecture's (the security suite's i386 index, added
# for Wine) that none of the packages asked for comes from: apt then installs from fresh lists.
update_log=$(mktemp)
trap 'rm -f "$update_log"' EXIT
update_lists() {
  local try tries=${CAUDALIS_APT_UPDATE_TRIES:-3}
  for ((try = 1; try <= tries; try++)); do
    $SUDO apt-get update --error-on=any 2>&1 | tee "$update_log" && return 0
    if ((try < tries)); then
      echo "install-deps.sh: apt-get update failed (try $try of $tries); trying again in 30 s" >&2
      sleep 30
    fi
  done
  return 1
}
if ! update_lists; then
  if apt_update_failures_spare_packages "$update_log" "${packages[@]}"; then
    echo "install-deps.sh: WARNING: apt-get update could not read the index of architecture" \
      "$(apt_failed_index_architectures <"$update_log" | paste -sd, -); none of the packages" \
      "asked for comes from it, so the installation goes on from the fresh lists of" \
      "$(dpkg --print-architecture)." >&2
  else
    echo "install-deps.sh: apt-get update failed (see above), so apt would choose from stale or missing" \
      "package lists; nothing was installed. Fix the sources or the network and run it again." >&2
    exit 1
  fi
fi
plan=$(apt-get -s install --no-install-recommends "${packages[@]}")
if ! apt_plan_check <<<"$plan"; then
  if [ "$allow_changes" -eq 0 ]; then
    echo "install-deps.sh: the plan above removes or downgrades packages of this machine; nothing was" \
      "changed. Run again with --allow-changes to accept it." >&2
    exit 1
  fi
  echo "install-deps.sh: --allow-changes given: going ahead with the removals and downgrades above" >&2
fi
before=$(mktemp)
trap 'rm -f "$before" "$update_log"' EXIT
apt_installed_packages >"$before"
used_before=$(apt_disk_used_kib)
allow=()
if [ "$allow_changes" -eq 1 ]; then allow=(--allow-downgrades); fi
$SUDO apt-get install -y --no-install-recommends "${allow[@]}" "${packages[@]}"
apt_report_installation "$before" "$used_before" install-deps.sh
