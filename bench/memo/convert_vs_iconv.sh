#!/bin/sh
# Compares `zvtool convert` with glibc's iconv on the same generated 100 MB, 2-million-line
# UTF-8 file, in one run: UTF-8 to UTF-16LE, and UTF-8 to UTF-8 (load and save unchanged).
# Prints the best of three wall-clock times of each and their ratio, and the peak memory of
# opening the file.
# Usage: bench/memo/convert_vs_iconv.sh [path/to/zvtool]
set -eu
tool=${1:-build/Zevrit/bin/zvtool}
work=${TMPDIR:-/tmp}/zv_convert_bench
mkdir -p "$work"
src=$work/source_100mb.txt
if [ ! -s "$src" ]; then
    python3 - "$src" <<'PY'
import random, sys
random.seed(1)
words = ["int", "return", "value", "if", "else", "for", "while", "static", "const", "auto",
         "std::string", "=", "+", "(", ")", "{", "}", ";", "//", "name", "count", "size_t",
         "\u00fcbung", "na\u00efve"]
with open(sys.argv[1], "w", encoding="utf-8", newline="") as out:
    for line in range(2_000_000):
        text = " " * (4 * random.randrange(4)) + " ".join(
            random.choice(words) for _ in range(random.randrange(4, 13)))
        out.write(text.ljust(49, "x") + "\n")
PY
fi
best() { # best wall time in seconds of three runs of "$@"
    b=""
    for _ in 1 2 3; do
        s=$(date +%s.%N)
        "$@" >/dev/null
        e=$(date +%s.%N)
        t=$(echo "$e - $s" | bc)
        if [ -z "$b" ] || [ "$(echo "$t < $b" | bc)" = 1 ]; then b=$t; fi
    done
    echo "$b"
}
size=$(stat -c %s "$src")
z16=$(best "$tool" convert --from utf-8 --to 1200 "$src" "$work/out16.txt")
i16=$(best sh -c "iconv -f UTF-8 -t UTF-16LE '$src' > '$work/iconv16.txt'")
cmp -s "$work/out16.txt" "$work/iconv16.txt" && same16=identical || same16=DIFFERENT
z8=$(best "$tool" convert --to utf-8 "$src" "$work/out8.txt")
i8=$(best sh -c "iconv -f UTF-8 -t UTF-8 '$src' > '$work/iconv8.txt'")
cmp -s "$work/out8.txt" "$src" && same8=identical || same8=DIFFERENT
load=$(best "$tool" info "$src")
iload=$(best sh -c "iconv -f UTF-8 -t UTF-16LE '$src' > /dev/null")
# Peak resident memory of opening the file (GNU time's %M, in KiB), against the file's size.
rss_kb=$(/usr/bin/time -f %M "$tool" info "$src" 2>&1 >/dev/null | tail -n 1)
printf 'file: %s (%s bytes)\n' "$src" "$size"
printf 'UTF-8 -> UTF-16LE  zvtool %6.3f s  iconv %6.3f s  ratio %5.2f  output %s\n' \
    "$z16" "$i16" "$(echo "$z16 / $i16" | bc -l)" "$same16"
printf 'UTF-8 -> UTF-8     zvtool %6.3f s  iconv %6.3f s  ratio %5.2f  output %s\n' \
    "$z8" "$i8" "$(echo "$z8 / $i8" | bc -l)" "$same8"
printf 'load only (info)   zvtool %6.3f s  iconv %6.3f s  ratio %5.2f  (iconv to /dev/null)\n' \
    "$load" "$iload" "$(echo "$load / $iload" | bc -l)"
printf 'peak memory (info)  %d KiB = %.2f x the file size\n' "$rss_kb" \
    "$(echo "$rss_kb * 1024 / $size" | bc -l)"
rm -f "$work/out16.txt" "$work/iconv16.txt" "$work/out8.txt" "$work/iconv8.txt"
