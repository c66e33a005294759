#!/usr/bin/env bash
# Tests the automation server under Wine, both architectures in one 64-bit prefix: registers
# both DLLs, runs the script host's checks (cscript: VBScript and JScript) and the compiled
# client's (records, written-back arguments, a host strategy, a design equal bit for bit to the
# native one, a chart on SQLite), unregisters one architecture at a time and checks that the
# other still works, registers for one user, and checks that no key is left.
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

# Runs a test program: it must exit 0 and print "N passed, 0 failed" as its last line (a
# program that crashes after its tally, or a script host that stops at an unhandled error and
# exits 0 without one, fails). Commands other than wine_arch run under wine with a time limit.
checks_pass() {
  local what=$1 log status=0
  shift
  if [ "$1" != wine_arch ] && [ "$1" != sh ]; then
    set -- wine_run 900 "$@"
  fi
  log=$("$@" 2>&1 | tr -d '\r') || status=$?
  echo "$log" | sed "s/^/  [$what] /"
  if [ "$status" -ne 0 ]; then
    echo "  [$what] exit status $status"
    return 1
  fi
  echo "$log" | tail -n 1 | grep -Eq '^[0-9]+ passed, 0 failed$'
}
run_checks() { checks_pass "$@" || fail "$1"; }

# The harness itself: a passing tally does not hide a failing exit status or a later line.
checks_pass "harness: exit 3 after a passing tally" sh -c 'echo "1 passed, 0 failed"; exit 3' >/dev/null &&
  fail "harness: an exit status after a passing tally went unnoticed"
checks_pass "harness: a crash after the tally" sh -c 'echo "1 passed, 0 failed"; echo "wine: Unhandled page fault"' >/dev/null &&
  fail "harness: output after a passing tally went unnoticed"
checks_pass "harness: exit 0 without a tally" sh -c 'exit 0' >/dev/null &&
  fail "harness: a program without a tally went unnoticed"

if [ ! -f "$WINEPREFIX/system.reg" ]; then
  wine_run 300 wineboot -i >/dev/null 2>&1
fi
timeout 120 wineserver -w || true

rm -rf "$WORK"
mkdir -p "$WORK"
"$NATIVE/apps/caudalis/caudalis" init "$WORK" >/dev/null
"$NATIVE/tests/caudalis_reference_design" "$WORK/catalogue.db" >"$WORK/reference.txt"
cat platform/tests/Checks.vbs "$OUT/i686/generated/Classes.vbs" platform/tests/server.vbs >"$WORK/server.vbs"
cat platform/tests/Checks.vbs platform/tests/registered.vbs >"$WORK/registered.vbs"
cp platform/tests/server.js "$WORK/"
printf 'Set S = CreateObject("Caudalis.Statics")\r\nWScript.Echo TypeName(S.Tramos)\r\nWScript.Quit 0\r\n' >"$WORK/warm.vbs"

system_dir() { [ "$1" = x86_64 ] && echo 'C:\windows\system32' || echo 'C:\windows\syswow64'; }
host_arch() { [ "$1" = x86_64 ] && echo AMD64 || echo x86; }
other_arch() { [ "$1" = x86_64 ] && echo i686 || echo x86_64; }
regsvr() {
  local arch=$1
  shift
  wine_arch $arch 120 "$(system_dir $arch)\\regsvr32.exe" /s "$@" "$(winpath "$OUT/$arch/Caudalis.dll")" ||
    fail "$arch: regsvr32 $*"
}

for arch in x86_64 i686; do
  regsvr $arch
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
    "$(host_arch $arch)"
  run_checks "$arch jscript" wine_arch $arch 600 "$sys\\cscript.exe" //nologo "$(winpath "$WORK/server.js")" "$(winpath "$WORK/$arch/script")"
  run_checks "$arch client" "$OUT/$arch/caudalis_com_client.exe" design "$(winpath "$WORK/$arch/catalogue.db")" \
    "$(winpath "$WORK/$arch/project.db")" "$(winpath "$WORK/reference.txt")"
done

# Both registered, one unregistered: the program identifiers are shared by the two registry
# views, and the other architecture's macros keep working. Then the other way round.
for arch in x86_64 i686; do
  other=$(other_arch $arch)
  regsvr $arch /u
  run_checks "$other after unregistering $arch" wine_arch $other 300 "$(system_dir $other)\\cscript.exe" //nologo \
    "$(winpath "$WORK/registered.vbs")" "$(host_arch $other)"
  regsvr $arch
done

for arch in x86_64 i686; do
  regsvr $arch /u
done
for arch in x86_64 i686; do
  # Registration for one user, without administrator rights.
  regsvr $arch /n /i:user
  run_checks "$arch per-user" "$OUT/$arch/caudalis_com_client.exe" user
  regsvr $arch /u /n /i:user
done
run_checks "unregistered" "$OUT/x86_64/caudalis_com_client.exe" unregistered

timeout 120 wineserver -k || true
if [ "$failures" -ne 0 ]; then
  echo "Windows server: $failures test programs failed"
  exit 1
fi
echo "Windows server: every test program passed"
