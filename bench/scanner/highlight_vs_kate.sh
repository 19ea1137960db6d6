#!/bin/sh
# Compares `zvtool highlight` with kate-syntax-highlighter (Debian package
# libkf5syntaxhighlighting-tools, installed by `scripts/setup.sh bench`) in one run: both turn
# the same C file of about SIZE_MB megabytes (default 90, made by make_c_corpus.sh) into an
# HTML page. Prints the best wall-clock time of RUNS runs of each (default 2), the throughput
# and the ratio of the reference time to ours.
# Usage: bench/scanner/highlight_vs_kate.sh [path/to/zvtool] [SIZE_MB] [RUNS]
set -eu
here=$(cd "$(dirname "$0")" && pwd)
tool=${1:-build/Zevrit/bin/zvtool}
size_mb=${2:-90}
runs=${3:-2}
if ! command -v kate-syntax-highlighter >/dev/null; then
    echo "kate-syntax-highlighter is missing: scripts/setup.sh bench" >&2
    exit 1
fi
work=${TMPDIR:-/tmp}/zv_highlight_bench
mkdir -p "$work"
src=$work/corpus_${size_mb}mb.c
"$here/make_c_corpus.sh" "$src" "$size_mb"
best() { # best wall time in seconds of $runs runs of "$@", output to $work/out.html
    b=""
    i=0
    while [ "$i" -lt "$runs" ]; do
        i=$((i + 1))
        s=$(date +%s.%N)
        "$@" >"$work/out.html"
        e=$(date +%s.%N)
        t=$(echo "$e - $s" | bc)
        if [ -z "$b" ] || [ "$(echo "$t < $b" | bc)" = 1 ]; then b=$t; fi
    done
    echo "$b"
}
bytes=$(stat -c %s "$src")
zv=$(best "$tool" highlight --syntax c "$src")
zv_out=$(stat -c %s "$work/out.html")
kate=$(best kate-syntax-highlighter --syntax C "$src")
kate_out=$(stat -c %s "$work/out.html")
mb=$(echo "$bytes / 1048576" | bc -l)
printf 'file: %s (%s bytes)\n' "$src" "$bytes"
printf 'zvtool highlight          %7.2f s  %7.1f MB/s  html %s bytes\n' \
    "$zv" "$(echo "$mb / $zv" | bc -l)" "$zv_out"
printf 'kate-syntax-highlighter   %7.2f s  %7.1f MB/s  html %s bytes\n' \
    "$kate" "$(echo "$mb / $kate" | bc -l)" "$kate_out"
printf 'ratio (kate / zvtool)     %7.2f\n' "$(echo "$kate / $zv" | bc -l)"
rm -f "$work/out.html"
