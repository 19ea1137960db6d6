#!/usr/bin/python3
"""Long lines colour as if they were never cut into rows.

Lines over 4096 characters are cut into rows when a file is read; the scanner reads the rows
of a line as that one line. Two checks, on real minified JavaScript installed by Debian
packages and on a file of our own whose comments, strings and words straddle the cuts:

1. zvtool's token dump of the file equals, character by character, the dump of the same text
   with its lines broken at blanks outside comments and strings (short lines, never cut).
2. On the real files, of the characters either zvtool or Pygments calls a comment (a string),
   both do for the share pygments_oracle.py asks of every file.

Exit 77 (skipped) without Pygments or without a minified file.

usage: long_lines_oracle.py ZVTOOL
"""
import glob
import os
import subprocess
import sys
import tempfile

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import pygments_oracle as oracle  # noqa: E402  (exits 77 without Pygments)
from pygments import lex  # noqa: E402
from pygments.lexers import get_lexer_by_name  # noqa: E402
from pygments.token import Comment, String  # noqa: E402

CUT = 4096
# Minified files of Debian packages (libjs-popper.js, golang-1.19-src, libjs-bootstrap5).
MINIFIED = ["/usr/share/nodejs/popper.js/dist/popper.min.js",
            "/usr/share/go-*/src/cmd/trace/static/webcomponents.min.js",
            "/usr/share/bootstrap-html/js/bootstrap.bundle.min.js"]


def kinds(zvtool, path, text):
    """The dump's kind of each UTF-16 unit of the text (line ends: None)."""
    lines = text.split("\n")
    starts, at = [], 0
    for line in lines:
        starts.append(at)
        at += len(line.encode("utf-16-le")) // 2 + 1
    out = subprocess.run([zvtool, "highlight", "--syntax", "javascript", "--tokens", path],
                         capture_output=True, check=True, timeout=120).stdout.decode()
    result = [None] * at
    for record in out.splitlines():
        row, col, length, kind = record.split("\t")
        base = starts[int(row)] + int(col)
        result[base:base + int(length)] = [kind] * int(length)
    return result


def quiet_blanks(text):
    """Offsets of the blanks Pygments puts outside comments and strings (ASCII text)."""
    offsets, at = [], 0
    for tok, value in lex(text, get_lexer_by_name("javascript", stripnl=False,
                                                 ensurenl=False)):
        if tok not in Comment and tok not in String:
            offsets += [at + i for i, ch in enumerate(value) if ch == " "]
        at += len(value)
    return offsets


def write(directory, name, text):
    path = os.path.join(directory, name)
    with open(path, "w", encoding="utf-8", newline="") as f:
        f.write(text)
    return path


def same_when_broken(zvtool, directory, name, text):
    """Check 1; returns the number of differing characters (printed)."""
    blanks = quiet_blanks(text)
    broken = list(text)
    for offset in blanks:
        broken[offset] = "\n"
    long_kinds = kinds(zvtool, write(directory, name, text), text)
    short_kinds = kinds(zvtool, write(directory, "broken-" + name, "".join(broken)),
                        "".join(broken))
    skip = set(blanks)
    bad = [i for i in range(len(text)) if i not in skip and text[i] != "\n"
           and long_kinds[i] != short_kinds[i]]
    longest = max(len(line) for line in text.split("\n"))
    print(f"{'ok  ' if not bad else 'FAIL'} {name}: longest line {longest}, "
          f"{len(blanks)} breaks, {len(bad)} characters coloured otherwise")
    for i in bad[:3]:
        print(f"       offset {i}: long {long_kinds[i]}, broken {short_kinds[i]}: "
              f"{text[max(i - 30, 0):i + 30]!r}")
    return len(bad)


def straddling_text():
    """Lines over 3 cuts long whose tokens straddle the cuts at every offset."""
    tokens = ["/* a comment */", '"a \\" quote"', "'it\\'s'", "return", "0x1F", "/* ** */"]
    lines = []
    for token in tokens:
        for shift in range(len(token) + 1):
            line, cut = "", CUT
            while cut < 3 * CUT + 1:
                filler = "a = 1; "
                while len(line) + len(filler) < cut - shift:
                    line += filler
                line += " " * (cut - shift - len(line)) + token + " "
                cut += CUT
            lines.append(line + "x = 2; // the end")
    return "\n".join(lines) + "\n"


def main():
    if len(sys.argv) != 2:
        print(__doc__)
        return 2
    zvtool = sys.argv[1]
    files = [path for pattern in MINIFIED for path in sorted(glob.glob(pattern))[:1]]
    files = [path for path in files if max(map(len, open(path, encoding="utf-8"))) > CUT]
    if not files:
        print("skipped: no minified file with a line over 4096 characters is installed")
        return 77
    failures = 0
    with tempfile.TemporaryDirectory() as directory:
        failures += same_when_broken(zvtool, directory, "straddling.js", straddling_text()) > 0
        for path in files:
            with open(path, encoding="utf-8", newline="") as f:
                text = f.read().replace("\r\n", "\n")
            failures += same_when_broken(zvtool, directory, os.path.basename(path), text) > 0
            lines = text.split("\n")
            counts, samples = oracle.compare(oracle.zv_classes(zvtool, "javascript", path, lines),
                                             oracle.py_classes("javascript", text, lines), lines)
            for cls in oracle.GATED:
                either, both = counts[cls]
                share, ok = oracle.gate(cls, either, both)
                print(f"{'ok  ' if ok else 'FAIL'} pygments {cls:7} {share:7.2%} of {either:6} "
                      f"chars  {path}")
                if not ok:
                    failures += 1
                    for s in samples[cls]:
                        print("       " + s)
    print(f"{len(files)} minified files, {failures} failures")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
