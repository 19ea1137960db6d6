#!/bin/sh
# Writes a C file of about SIZE_MB megabytes (default 90) to OUT by concatenating the C
# headers and sources installed on this machine, repeated as needed.
# usage: make_c_corpus.sh OUT [SIZE_MB]
set -eu
out=$1
want=$(( ${2:-90} * 1024 * 1024 ))
[ -s "$out" ] && [ "$(stat -c %s "$out")" -ge "$want" ] && exit 0
list=$(mktemp)
find /usr/include /usr/share -type f \( -name '*.h' -o -name '*.c' \) -size -400k 2>/dev/null |
  sort > "$list"
if [ ! -s "$list" ]; then
  echo "make_c_corpus.sh: no C files under /usr/include or /usr/share" >&2
  exit 1
fi
: > "$out"
while [ "$(stat -c %s "$out")" -lt "$want" ]; do
  xargs cat < "$list" >> "$out"
done
truncate -s "$want" "$out"
rm -f "$list"
