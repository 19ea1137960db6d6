#!/usr/bin/env bash
# Runs every benchmark program of the build.
set -eu
build=$1
for b in "$build"/bench/*; do
  [ -x "$b" ] && [ -f "$b" ] || continue
  echo "== $(basename "$b")"
  "$b" "${@:2}"
done
