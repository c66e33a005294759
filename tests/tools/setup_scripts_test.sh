#!/usr/bin/env bash
# The set-up scripts change nothing that the user has not seen: apt's plan is read before an
# installation, a plan that removes or downgrades a package is refused, and a failed
# `apt-get update` stops install-deps.sh before anything is installed, unless only a foreign
# architecture's index failed and no package asked for comes from it. Runs apt for real
# (simulations, and an update from a source that cannot be reached); needs root, as apt-get
# update does.
set -euo pipefail
root=$(cd "$(dirname "$0")/../.." && pwd)
# shellcheck source=../../scripts/apt-plan.sh
source "$root/scripts/apt-plan.sh"
failures=0
fail() { echo "FAIL: $*" >&2; failures=$((failures + 1)); }
expect_rc() { # expected actual what
  if [ "$1" != "$2" ]; then fail "$3: exit status $2, expected $1"; fi
}
expect_text() { # text fragment what
  if ! grep -qF -- "$2" <<<"$1"; then fail "$3: no \"$2\" in: $1"; fi
}

# A package that is not installed: a plan that only installs passes.
rc=0
out=$(apt-get -s install --no-install-recommends hello | apt_plan_check) || rc=$?
expect_rc 0 "$rc" "installing hello"
expect_text "$out" "apt's plan: 1 new, 0 upgraded, 0 downgraded, 0 removed" "installing hello"

# Removing an installed package is refused, and named.
rc=0
out=$(apt-get -s remove sqlite3 | apt_plan_check) || rc=$?
expect_rc 3 "$rc" "removing sqlite3"
expect_text "$out" "REMOVE:    sqlite3" "removing sqlite3"

# Going back to an older version of an installed library is refused, and named.
downgrade=""
arch=$(dpkg --print-architecture)
for package in libssl3 libcurl4 libsystemd0 libudev1 libexpat1 libgnutls30 libpng16-16 libtiff6 liblzma5 libsqlite3-0 libpq5 tzdata; do
  installed=$(dpkg-query -W -f '${Version}' "$package:$arch" 2>/dev/null || true)
  [ -n "$installed" ] || continue
  for version in $(apt-cache madison "$package" | awk -F'|' '{gsub(/ /, "", $2); print $2}'); do
    if dpkg --compare-versions "$version" lt "$installed"; then
      downgrade="$package:$arch=$version"
      break 2
    fi
  done
done
if [ -z "$downgrade" ]; then
  fail "no installed library has an older version in apt's lists to try a downgrade with"
else
  rc=0
  out=$(apt-get -s install --allow-downgrades "$downgrade" | apt_plan_check) || rc=$?
  expect_rc 3 "$rc" "downgrading $downgrade"
  expect_text "$out" "DOWNGRADE: ${downgrade%%:*} " "downgrading $downgrade"
fi

# An unknown option is refused before apt runs.
rc=0
out=$(bash "$root/scripts/install-deps.sh" --nonsense 2>&1) || rc=$?
expect_rc 2 "$rc" "install-deps.sh --nonsense"
expect_text "$out" "unknown option --nonsense" "install-deps.sh --nonsense"
rc=0
out=$(bash "$root/scripts/install-windows-deps.sh" --nonsense 2>&1) || rc=$?
expect_rc 2 "$rc" "install-windows-deps.sh --nonsense"

# apt-get update failing (its only source cannot be reached) stops install-deps.sh, and nothing
# is installed.
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
chmod 755 "$scratch"
mkdir -p "$scratch/lists/partial" "$scratch/cache/archives/partial"
echo "deb http://127.0.0.1:9/debian bookworm main" >"$scratch/sources.list"
cat >"$scratch/apt.conf" <<CONF
Dir::Etc::sourcelist "$scratch/sources.list";
Dir::Etc::sourceparts "$scratch/none";
Dir::State::Lists "$scratch/lists";
Dir::Cache "$scratch/cache";
CONF
before=$(apt_installed_packages | md5sum)
rc=0
out=$(CAUDALIS_APT_UPDATE_TRIES=1 APT_CONFIG="$scratch/apt.conf" bash "$root/scripts/install-deps.sh" 2>&1) || rc=$?
expect_rc 1 "$rc" "install-deps.sh with a failing apt-get update"
expect_text "$out" "apt-get update failed" "install-deps.sh with a failing apt-get update"
expect_text "$out" "nothing was installed" "install-deps.sh with a failing apt-get update"
if [ "$(apt_installed_packages | md5sum)" != "$before" ]; then
  fail "install-deps.sh changed the installed packages although apt-get update failed"
fi

# The failures of an update are read by architecture. The log below is what a mirror in the middle
# of a sync printed: only the security suite's i386 index failed, which spares amd64 packages but
# not an i386 one; an unreachable mirror spares nothing.
native=$(dpkg --print-architecture)
cat >"$scratch/i386.log" <<'LOG'
Get:3 http://deb.debian.org/debian-security bookworm-security InRelease [34.8 kB]
Err:4 http://deb.debian.org/debian-security bookworm-security/main i386 Packages
  File has unexpected size (346968 != 366648). Mirror sync in progress? [IP: 203.0.113.80 80]
E: Failed to fetch http://deb.debian.org/debian-security/dists/bookworm-security/main/binary-i386/Packages.xz  File has unexpected size (346968 != 366648). Mirror sync in progress? [IP: 203.0.113.80 80]
E: Some index files failed to download. They have been ignored, or old ones used instead.
LOG
expect_text "$(apt_failed_index_architectures <"$scratch/i386.log")" "i386" "architectures of a failed i386 index"
if [ "$native" != i386 ]; then
  apt_update_failures_spare_packages "$scratch/i386.log" cmake libsqlite3-dev ||
    fail "a failed i386 index stopped an installation of $native packages"
  if apt_update_failures_spare_packages "$scratch/i386.log" cmake wine32:i386; then
    fail "a failed i386 index let an installation of wine32:i386 go on"
  fi
fi
sed "s/binary-i386/binary-$native/" "$scratch/i386.log" >"$scratch/native.log"
if apt_update_failures_spare_packages "$scratch/native.log" cmake; then
  fail "a failed $native index let an installation of $native packages go on"
fi
echo "E: Failed to fetch http://127.0.0.1:9/debian/dists/bookworm/InRelease  Could not connect" >"$scratch/down.log"
expect_text "$(apt_failed_index_architectures <"$scratch/down.log")" "all" "architectures of an unreachable mirror"
if apt_update_failures_spare_packages "$scratch/down.log" cmake; then
  fail "an unreachable mirror let an installation go on"
fi
echo "Hit:1 http://deb.debian.org/debian bookworm InRelease" >"$scratch/clean.log"
if apt_update_failures_spare_packages "$scratch/clean.log" cmake; then
  fail "an update without failures was taken for one with spared failures"
fi

# A library's installed siblings are the packages built beside it at its version: SQLite's
# library has its -dev package and its shell beside it (both installed for the tests).
siblings=$(apt_installed_siblings libsqlite3-0)
expect_text "$siblings" "libsqlite3-dev" "siblings of libsqlite3-0"
if grep -qx "libsqlite3-0" <<<"$siblings"; then fail "libsqlite3-0 was listed among its own siblings"; fi
if [ -n "$(apt_installed_siblings no-such-package-here)" ]; then fail "a package not installed has siblings"; fi

if [ "$failures" -gt 0 ]; then
  echo "$failures failures" >&2
  exit 1
fi
echo "set-up scripts: every check passed"
