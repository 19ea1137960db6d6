#!/bin/sh
# Compares `zvtool highlight` with kate-syntax-highlighter (Debian package
# libkf5syntaxhighlighting-tools, installed by `scripts/setup.sh bench`) in one run: both turn
# the same C file of about SIZE_MB megabytes (default 90, made by make_c_corpus.sh) into an
# HTML page. Prints the best wall-clock and the best CPU time (user + system) of RUNS runs of
# each (default 2), the throughput and the ratios of the reference's times to ours; the CPU
# ratio is the steadier one on a machine busy with other work.
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
best() { # best wall time and best CPU time (user + system) in seconds of $runs runs of "$@"
    bw=""
    bc=""
    i=0
    while [ "$i" -lt "$runs" ]; do
        i=$((i + 1))
        /usr/bin/time -f "%e %U %S" -o "$work/time.txt" "$@" >"$work/out.html"
        read -r w u s <"$work/time.txt"
        c=$(echo "$u + $s" | bc)
        if [ -z "$bw" ] || [ "$(echo "$w < $bw" | bc)" = 1 ]; then bw=$w; fi
        if [ -z "$bc" ] || [ "$(echo "$c < $bc" | bc)" = 1 ]; then bc=$c; fi
    done
    echo "$bw $bc"
}
bytes=$(stat -c %s "$src")
set -- $(best "$tool" highlight --syntax c "$src")
zv=$1 zv_cpu=$2
zv_out=$(stat -c %s "$work/out.html")
set -- $(best kate-syntax-highlighter --syntax C "$src")
kate=$1 kate_cpu=$2
kate_out=$(stat -c %s "$work/out.html")
mb=$(echo "$bytes / 1048576" | bc -l)
printf 'file: %s (%s bytes)\n' "$src" "$bytes"
printf '                          %7s  %10s  %7s\n' wall MB/s CPU
printf 'zvtool highlight          %7.2f s  %7.1f MB/s  %7.2f s  html %s bytes\n' \
    "$zv" "$(echo "$mb / $zv" | bc -l)" "$zv_cpu" "$zv_out"
printf 'kate-syntax-highlighter   %7.2f s  %7.1f MB/s  %7.2f s  html %s bytes\n' \
    "$kate" "$(echo "$mb / $kate" | bc -l)" "$kate_cpu" "$kate_out"
printf 'ratio (kate / zvtool)     %7.2f wall  %7.2f CPU\n' "$(echo "$kate / $zv" | bc -l)" \
    "$(echo "$kate_cpu / $zv_cpu" | bc -l)"
rm -f "$work/out.html" "$work/time.txt"
