#!/usr/bin/env bash
# Unpacks the SQLite amalgamation (sqlite3.c, sqlite3.h) that the Windows server compiles in,
# from the npm package better-sqlite3, pinned by version and checksum.
#   scripts/windows-sqlite.sh DIR
set -euo pipefail
PACKAGE=better-sqlite3
VERSION=11.10.0        # ships SQLite 3.49.2
SHA256=71e2d66a44dafc35649ff82742cf4908557fc31841108d19703b74b7065c0293
dir=${1:?usage: windows-sqlite.sh DIR}
if [ -f "$dir/sqlite3.c" ] && [ -f "$dir/.version" ] && [ "$(cat "$dir/.version")" = "$VERSION" ]; then
  exit 0
fi
tmp=$(mktemp -d)
trap 'rm -rf "$tmp"' EXIT
(cd "$tmp" && npm pack --silent "$PACKAGE@$VERSION" >/dev/null)
echo "$SHA256  $tmp/$PACKAGE-$VERSION.tgz" | sha256sum --check --quiet
tar -xzf "$tmp/$PACKAGE-$VERSION.tgz" -C "$tmp" package/deps/sqlite3/sqlite3.c package/deps/sqlite3/sqlite3.h
mkdir -p "$dir"
cp "$tmp"/package/deps/sqlite3/sqlite3.[ch] "$dir/"
echo "$VERSION" > "$dir/.version"
