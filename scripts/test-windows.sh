#!/usr/bin/env bash
# Tests the automation server under Wine, both architectures in one 64-bit prefix: registers
# both DLLs, runs the script host's checks (cscript) and the compiled client's (records,
# written-back arguments, a host strategy, a design equal bit for bit to the native one, a chart
# on SQLite), registers for one user, unregisters and checks that no key is left.
#   scripts/test-windows.sh [NATIVE-BUILD-DIR]     (after build-windows.sh; the native build
#                                                   gives the databases and the reference design)
set -euo pipefail
cd "$(dirname "$0")/.."
NATIVE=${1:-build}
OUT=$PWD/build-windows
WORK=$OUT/work
export WINEPREFIX=$OUT/prefix WINEARCH=win64 WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml="
failures=0

wine_run() { timeout "$1" wine "${@:2}"; }
# `wine C:\windows\system32\x.exe` starts the 32-bit program: the 64-bit ones need wine64.
WINE64=/usr/lib/wine/wine64
[ -x "$WINE64" ] || WINE64=wine
wine_arch() {
  local arch=$1 seconds=$2
  shift 2
  if [ "$arch" = x86_64 ]; then timeout "$seconds" "$WINE64" "$@"; else timeout "$seconds" wine "$@"; fi
}
winpath() { timeout 60 winepath -w "$1"; }
fail() { echo "FAIL: $*"; failures=$((failures + 1)); }

# Runs a test program under Wine: it must exit 0 and end with "N passed, 0 failed".
run_checks() {
  local what=$1 log
  shift
  if [ "$1" = wine_arch ]; then
    log=$("$@" 2>&1 | tr -d '\r') || true
  else
    log=$(wine_run 900 "$@" 2>&1 | tr -d '\r') || true
  fi
  echo "$log" | sed "s/^/  [$what] /"
  echo "$log" | grep -Eq '^[0-9]+ passed, 0 failed$' || fail "$what"
}

if [ ! -f "$WINEPREFIX/system.reg" ]; then
  wine_run 300 wineboot -i >/dev/null 2>&1
fi
timeout 120 wineserver -w || true

rm -rf "$WORK"
mkdir -p "$WORK"
"$NATIVE/apps/caudalis/caudalis" init "$WORK" >/dev/null
"$NATIVE/tests/caudalis_reference_design" "$WORK/catalogue.db" >"$WORK/reference.txt"
cat "$OUT/i686/generated/Classes.vbs" platform/tests/server.vbs >"$WORK/server.vbs"
printf 'Set S = CreateObject("Caudalis.Statics")\r\nWScript.Echo TypeName(S.Tramos)\r\nWScript.Quit 0\r\n' >"$WORK/warm.vbs"

system_dir() { [ "$1" = x86_64 ] && echo 'C:\windows\system32' || echo 'C:\windows\syswow64'; }

for arch in x86_64 i686; do
  sys=$(system_dir $arch)
  dll=$(winpath "$OUT/$arch/Caudalis.dll")
  wine_arch $arch 120 "$sys\\regsvr32.exe" /s "$dll" || fail "$arch: regsvr32 $dll"
done
# The first script run in a new prefix may fail every call once: warm it.
wine_arch x86_64 300 "$(system_dir x86_64)\\cscript.exe" //nologo "$(winpath "$WORK/warm.vbs")" >/dev/null 2>&1 || true

for arch in x86_64 i686; do
  sys=$(system_dir $arch)
  mkdir -p "$WORK/$arch"
  cp "$WORK/catalogue.db" "$WORK/project.db" "$WORK/$arch/"
  mkdir -p "$WORK/$arch/script"
  cp "$WORK/catalogue.db" "$WORK/project.db" "$WORK/$arch/script/"
  run_checks "$arch cscript" wine_arch $arch 900 "$sys\\cscript.exe" //nologo "$(winpath "$WORK/server.vbs")" "$(winpath "$WORK/$arch/script")" \
    "$([ $arch = x86_64 ] && echo AMD64 || echo x86)"
  run_checks "$arch client" "$OUT/$arch/caudalis_com_client.exe" design "$(winpath "$WORK/$arch/catalogue.db")" \
    "$(winpath "$WORK/$arch/project.db")" "$(winpath "$WORK/reference.txt")"
done

for arch in x86_64 i686; do
  sys=$(system_dir $arch)
  dll=$(winpath "$OUT/$arch/Caudalis.dll")
  wine_arch $arch 120 "$sys\\regsvr32.exe" /s /u "$dll" || fail "$arch: regsvr32 /u"
  # Registration for one user, without administrator rights.
  wine_arch $arch 120 "$sys\\regsvr32.exe" /s /n /i:user "$dll" || fail "$arch: regsvr32 /n /i:user"
  run_checks "$arch per-user" "$OUT/$arch/caudalis_com_client.exe" user
  wine_arch $arch 120 "$sys\\regsvr32.exe" /s /u /n /i:user "$dll" || fail "$arch: regsvr32 /u /n /i:user"
done
run_checks "unregistered" "$OUT/x86_64/caudalis_com_client.exe" unregistered

timeout 120 wineserver -k || true
if [ "$failures" -ne 0 ]; then
  echo "Windows server: $failures test programs failed"
  exit 1
fi
echo "Windows server: every test program passed"
