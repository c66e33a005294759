#!/usr/bin/env bash
# Installs what building and testing the Windows automation server needs (scripts/deps/windows.txt)
# and unpacks the IDL files of libwine-dev for widl into build-windows/wine-idl.
#
# Wine's 32-bit half needs i386 twins of amd64 libraries. When the i386 index of the security
# suite cannot be read, an amd64 library already upgraded from security has no i386 twin of the
# same version and apt refuses ("... Depends: libpcre2-8-0:i386 ... not going to be installed").
# Each failed attempt is read: a named i386 library whose amd64 twin is installed at a version
# the i386 index lacks is pinned, both architectures, to the i386 candidate; any other named
# i386 dependency is asked for explicitly so the next attempt names what blocks it. Then retry.
set -euo pipefail
cd "$(dirname "$0")/.."
SUDO=""
if [ "$(id -u)" -ne 0 ]; then SUDO="sudo"; fi
export DEBIAN_FRONTEND=noninteractive
idl_dir=${1:-build-windows/wine-idl}

mapfile -t wanted < <(sed -e 's/#.*//' -e 's/[[:space:]]//g' scripts/deps/windows.txt | grep -v '^$')

already_there() {
  command -v wine >/dev/null && command -v i686-w64-mingw32-widl >/dev/null &&
    command -v x86_64-w64-mingw32-g++ >/dev/null && dpkg -s wine32:i386 >/dev/null 2>&1
}

i386_candidate() { apt-cache policy "$1:i386" | awk '/Candidate:/ {print $2}'; }
amd64_installed() { dpkg-query -W -f '${Version}' "$1:amd64" 2>/dev/null || true; }

# Reads apt's refusal on stdin; prints the arguments to add for the next attempt.
repairs_for() {
  local name cand inst
  grep -o '[A-Za-z0-9.+-]*:i386' | sed 's/:i386$//' | sort -u | while read -r name; do
    cand=$(i386_candidate "$name")
    inst=$(amd64_installed "$name")
    if [ -z "$cand" ] || [ "$cand" = "(none)" ]; then continue; fi
    if [ -n "$inst" ] && [ "$inst" != "$cand" ]; then
      echo "$name:amd64=$cand" "$name:i386=$cand"
    else
      echo "$name:i386=$cand"
    fi
  done
}

install_toolchain() {
  if ! dpkg --print-foreign-architectures | grep -qx i386; then $SUDO dpkg --add-architecture i386; fi
  $SUDO apt-get update || true # the security suite's i386 index may fail; the main suite is enough
  local extra=() attempt out
  for attempt in 1 2 3 4 5 6 7 8 9 10 11 12; do
    if out=$($SUDO apt-get install -y --no-install-recommends --allow-downgrades -t bookworm \
      "${wanted[@]}" "${extra[@]}" 2>&1); then
      return 0
    fi
    echo "$out" | tail -n 15 >&2
    mapfile -t -O "${#extra[@]}" extra < <(echo "$out" | repairs_for | tr ' ' '\n')
    mapfile -t extra < <(printf '%s\n' "${extra[@]}" | awk -F= '!seen[$1]++')
    echo "install-windows-deps: attempt $attempt failed; retrying with: ${extra[*]}" >&2
  done
  echo "install-windows-deps: could not install the Windows toolchain" >&2
  return 1
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

already_there || install_toolchain
unpack_wine_idl
