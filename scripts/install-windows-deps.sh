#!/usr/bin/env bash
# Installs what building and testing the Windows automation server needs (scripts/deps/windows.txt)
# and unpacks the IDL files of libwine-dev for widl into build-windows/wine-idl.
#   scripts/install-windows-deps.sh [--allow-changes] [IDL_DIR]
#
# Wine's 32-bit half needs i386 twins of amd64 libraries. When the i386 index of the security
# suite cannot be read, an amd64 library already upgraded from security has no i386 twin of the
# same version and apt refuses ("... Depends: libpcre2-8-0:i386 ... not going to be installed").
# Each failed attempt is read: a named i386 library whose amd64 twin is installed at a version
# the i386 index lacks is pinned, both architectures, to the i386 candidate (with the amd64
# packages built beside it, such as its -dev package, so they stay); any other named
# i386 dependency is asked for explicitly so the next attempt names what blocks it. Then retry.
#
# The attempts are apt's simulations (apt-get -s): nothing is installed until a plan is found,
# and a plan that removes or downgrades any package of this machine (a pin to the i386
# candidate does so to a library upgraded from security, and a -dev package that needs that
# upgrade is then removed) is shown and refused unless --allow-changes is given, as CI does on
# its throwaway machine. Upgrades are listed. At the end the script reports what it installed
# and the disk space that took.
set -euo pipefail
cd "$(dirname "$0")/.."
# shellcheck source=apt-plan.sh
source scripts/apt-plan.sh
SUDO=""
if [ "$(id -u)" -ne 0 ]; then SUDO="sudo"; fi
export DEBIAN_FRONTEND=noninteractive
allow_changes=0
idl_dir=build-windows/wine-idl
for option in "$@"; do
  case "$option" in
    --allow-changes) allow_changes=1 ;;
    -*) echo "install-windows-deps.sh: unknown option $option (use --allow-changes)" >&2; exit 2 ;;
    *) idl_dir=$option ;;
  esac
done

mapfile -t wanted < <(sed -e 's/#.*//' -e 's/[[:space:]]//g' scripts/deps/windows.txt | grep -v '^$')

already_there() {
  command -v wine >/dev/null && command -v i686-w64-mingw32-widl >/dev/null &&
    command -v x86_64-w64-mingw32-g++ >/dev/null && dpkg -s wine32:i386 >/dev/null 2>&1
}

i386_candidate() { apt-cache policy "$1:i386" | awk '/Candidate:/ {print $2}'; }
amd64_installed() { dpkg-query -W -f '${Version}' "$1:amd64" 2>/dev/null || true; }

# Prints a pin to `version` for each installed amd64 sibling of `name` (same source package and
# version, such as its -dev package) that apt can install at that version, so the pin of the
# library does not remove them.
sibling_pins() {
  local name=$1 version=$2 sibling
  apt_installed_siblings "$name" | while read -r sibling; do
    if apt-cache madison "$sibling" | awk -F'|' '{gsub(/ /, "", $2); print $2}' | grep -qxF "$version"; then
      echo "$sibling:amd64=$version"
    fi
  done
}

# Reads apt's refusal on stdin; prints the arguments to add for the next attempt.
repairs_for() {
  local name cand inst
  grep -o '[A-Za-z0-9.+-]*:i386' | sed 's/:i386$//' | sort -u | while read -r name; do
    cand=$(i386_candidate "$name")
    inst=$(amd64_installed "$name")
    if [ -z "$cand" ] || [ "$cand" = "(none)" ]; then continue; fi
    if [ -n "$inst" ] && [ "$inst" != "$cand" ]; then
      echo "$name:amd64=$cand" "$name:i386=$cand"
      sibling_pins "$name" "$cand"
    else
      echo "$name:i386=$cand"
    fi
  done
}

# Simulates the installation until apt finds a plan; prints the arguments of the plan found.
plan_toolchain() {
  local extra=() attempt out
  for attempt in 1 2 3 4 5 6 7 8 9 10 11 12; do
    if out=$(apt-get -s install --no-install-recommends --allow-downgrades -t bookworm \
      "${wanted[@]}" "${extra[@]}" 2>&1); then
      printf '%s\n' "${wanted[@]}" "${extra[@]}"
      return 0
    fi
    echo "$out" | tail -n 15 >&2
    mapfile -t -O "${#extra[@]}" extra < <(echo "$out" | repairs_for | tr ' ' '\n')
    mapfile -t extra < <(printf '%s\n' "${extra[@]}" | awk -F= '!seen[$1]++')
    echo "install-windows-deps: simulation $attempt failed; trying again with: ${extra[*]}" >&2
  done
  echo "install-windows-deps: apt found no plan for the Windows toolchain; nothing was installed" >&2
  return 1
}

install_toolchain() {
  local added_i386=0 arguments before used_before
  if ! dpkg --print-foreign-architectures | grep -qx i386; then
    echo "install-windows-deps: adding the i386 architecture to dpkg (wine32 needs it)"
    $SUDO dpkg --add-architecture i386
    added_i386=1
  fi
  if ! $SUDO apt-get update; then
    echo "install-windows-deps: WARNING: apt-get update failed (see above); going on with the package" \
      "lists there are (the security suite's i386 index is known to fail; apt's plan below shows" \
      "what that does to this machine)" >&2
  fi
  mapfile -t arguments < <(plan_toolchain)
  [ "${#arguments[@]}" -gt 0 ] || return 1
  if ! apt-get -s install --no-install-recommends --allow-downgrades -t bookworm "${arguments[@]}" |
    apt_plan_check; then
    if [ "$allow_changes" -eq 0 ]; then
      if [ "$added_i386" -eq 1 ]; then $SUDO dpkg --remove-architecture i386; fi
      echo "install-windows-deps: the plan above removes or downgrades packages of this machine;" \
        "nothing was installed. Run again with --allow-changes to accept it (on a machine of" \
        "your own, better in a container or a throwaway virtual machine)." >&2
      return 1
    fi
    echo "install-windows-deps: --allow-changes given: going ahead with the removals and downgrades above" >&2
  fi
  before=$(mktemp)
  apt_installed_packages >"$before"
  used_before=$(apt_disk_used_kib)
  local allow=()
  if [ "$allow_changes" -eq 1 ]; then allow=(--allow-downgrades); fi
  $SUDO apt-get install -y --no-install-recommends "${allow[@]}" -t bookworm "${arguments[@]}"
  apt_report_installation "$before" "$used_before" install-windows-deps
  rm -f "$before"
}

unpack_wine_idl() {
  [ -f "$idl_dir/oaidl.idl" ] && return 0
  local tmp
  tmp=$(mktemp -d)
  (cd "$tmp" && apt-get download libwine-dev >/dev/null)
  dpkg -x "$tmp"/libwine-dev_*.deb "$tmp/x"
  mkdir -p "$idl_dir"
  cp "$tmp"/x/usr/include/wine/wine/windows/*.idl "$idl_dir/"
  rm -rf "$tmp"
}

if already_there; then
  echo "install-windows-deps: the Windows toolchain is already installed; nothing to do"
else
  install_toolchain
fi
unpack_wine_idl
