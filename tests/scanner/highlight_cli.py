#!/usr/bin/python3
"""Checks `zvtool highlight` from the outside: the HTML page, read back by Python's own HTML
parser, holds exactly the file's text with the span, anchor and "<" markup the export
promises; the token dump has one run per line, ROW<TAB>COLUMN<TAB>LENGTH<TAB>KIND, whose
runs tile every row in UTF-16 columns; `--syntax` overrides the file name; a user's file in
Syntax/User defined/ of the data root replaces the shipped one until it is gone; bad calls fail.

usage: highlight_cli.py ZVTOOL
"""
import html.parser
import os
import re
import shutil
import subprocess
import sys
import tempfile

C_TEXT = ("/* note: see https://example.org/a?b=1&c=2 */\n"
          "#include <stdio.h>\n"
          "int main(void) {\n"
          "\tif (1 < 2 && 3 > 2) return printf(\"str \\\" <b>\", 42);\n"
          "\treturn 'c'; // caf\u00e9 \u4e2d \U0001F600\n"
          "}\n")
PY_TEXT = "def f(x):\n    return 0x1F  # done\n"

SPAN = re.compile(r'<span style="(?:background-color: #[0-9a-f]{6};)?color: #[0-9a-f]{6};">')
RECORD = re.compile(r"^(\d+)\t(\d+)\t(\d+)\t([a-z]+\d*)$")

failures = []


def check(ok, what):
    if not ok:
        failures.append(what)
        print("FAIL " + what)


class PreText(html.parser.HTMLParser):
    """The text inside the page's <pre>, as a browser shows it."""

    def __init__(self):
        super().__init__(convert_charrefs=True)
        self.depth, self.text = 0, []

    def handle_starttag(self, tag, attrs):
        self.depth += tag == "pre"

    def handle_endtag(self, tag):
        self.depth -= tag == "pre"

    def handle_data(self, data):
        if self.depth:
            self.text.append(data)


def run(zvtool, *args, env=None):
    return subprocess.run([zvtool, "highlight", *args], capture_output=True, timeout=60, env=env)


def check_page(zvtool, path):
    r = run(zvtool, path)
    check(r.returncode == 0, f"highlight exits 0, got {r.returncode}: {r.stderr!r}")
    page = r.stdout.decode("utf-8")
    parser = PreText()
    parser.feed(page)
    parser.close()
    text = "".join(parser.text)
    # The page starts the text on the line after <pre ...> and ends it before </pre>.
    check(text.strip("\n") == C_TEXT.strip("\n"), "the page's text is the file's text")
    body = page[page.index("<pre"):page.index("</pre>")]
    for tag in re.findall(r"<span[^>]*>", body):
        check(SPAN.fullmatch(tag) is not None, f"span markup: {tag}")
    check(body.count("<span") == body.count("</span>"), "every span is closed")
    check(body.count("<samp><</samp>") == C_TEXT.count("<"), "'<' is written as <samp><</samp>")
    check("&amp;&amp;" in body, "'&' is written as &amp;")
    url = "https://example.org/a?b=1&amp;c=2"
    check(re.search(f'<a href="{re.escape(url)}"><span[^>]*>{re.escape(url)}</span></a>', body)
          is not None, "a URL is an anchor")


def records(zvtool, *args, env=None):
    r = run(zvtool, "--tokens", *args, env=env)
    check(r.returncode == 0, f"--tokens exits 0, got {r.returncode}")
    out = []
    for line in r.stdout.decode("ascii").splitlines():
        m = RECORD.match(line)
        check(m is not None, f"dump record format: {line!r}")
        if m:
            out.append((int(m[1]), int(m[2]), int(m[3]), m[4]))
    return out


def kind_of(runs, rows, row, needle):
    """The kind of the run holding the first character of `needle` in `row`."""
    col = len(rows[row][:rows[row].index(needle)].encode("utf-16-le")) // 2
    return [k for r, c, n, k in runs if r == row and c <= col < c + n]


def check_tokens(zvtool, path, text, syntax=None):
    runs = records(zvtool, *(["--syntax", syntax] if syntax else []), path)
    rows = text.split("\n")
    for row, line in enumerate(rows):
        mine = sorted((c, n) for r, c, n, _ in runs if r == row)
        at = 0
        for c, n in mine:
            check(c == at and n > 0, f"row {row}: runs tile the row (run at {c}, expected {at})")
            at = c + n
        check(at == len(line.encode("utf-16-le")) // 2, f"row {row}: runs end at the row's end")
    return runs, rows


def check_user_folder(zvtool, tmp):
    """The user's file is found whatever its letter case; the shipped "c.syx" returns after."""
    root = os.path.join(tmp, "root")
    shutil.copytree(os.path.join(os.environ["ZEVRIT_ROOT"], "Syntax"), os.path.join(root, "Syntax"))
    env = dict(os.environ, ZEVRIT_ROOT=root)
    text = "int main(void) { return frobnicate; }\n"
    doc = os.path.join(tmp, "doc.c")
    with open(doc, "w", encoding="utf-8") as f:
        f.write(text)
    mine = os.path.join(root, "Syntax", "User defined", "C.Syx")

    def kinds(what):
        runs = records(zvtool, doc, env=env)
        got = tuple(kind_of(runs, text.split("\n"), 0, w) for w in ("return", "frobnicate"))
        expected = (["text"], ["keyword"]) if os.path.exists(mine) else (["keyword"], ["text"])
        check(got == expected, f"{what}: return, frobnicate: {expected}, got {got}")

    kinds("shipped file")
    os.makedirs(os.path.dirname(mine), exist_ok=True)
    with open(mine, "w", encoding="utf-8") as f:
        f.write("[Options]\nNumbers=0123456789\n\n[Keywords]\nMine=frobnicate\n")
    kinds("user's file")
    os.remove(mine)
    kinds("user's file removed")


def main():
    if len(sys.argv) != 2:
        print(__doc__)
        return 2
    zvtool = sys.argv[1]
    with tempfile.TemporaryDirectory() as tmp:
        c_file = os.path.join(tmp, "sample.c")
        with open(c_file, "w", encoding="utf-8", newline="") as f:
            f.write(C_TEXT)
        check_page(zvtool, c_file)
        runs, rows = check_tokens(zvtool, c_file, C_TEXT)
        for row, needle, kind in [(0, "note", "comment"), (2, "int", "keyword2"),
                                  (3, "\"str", "string"), (3, "<b>", "string"),
                                  (3, "42", "number"), (4, "'c'", "char"),
                                  (4, "// caf", "comment"), (4, "\U0001F600", "comment")]:
            got = kind_of(runs, rows, row, needle)
            check(got == [kind], f"row {row} {needle!r}: {kind}, got {got}")
        # A file name that selects no syntax, coloured as Python by name.
        py_file = os.path.join(tmp, "script.txt")
        with open(py_file, "w", encoding="utf-8") as f:
            f.write(PY_TEXT)
        runs, rows = check_tokens(zvtool, py_file, PY_TEXT, "python")
        for row, needle, kind in [(0, "def", "keyword"), (1, "0x1F", "number"),
                                  (1, "# done", "comment")]:
            got = kind_of(runs, rows, row, needle)
            check(got == [kind], f"python row {row} {needle!r}: {kind}, got {got}")
        check(run(zvtool).returncode == 2, "no file: usage error 2")
        r = run(zvtool, "--syntax", "no-such-syntax", c_file)
        check(r.returncode == 1 and b"unknown syntax" in r.stderr, "an unknown syntax fails")
        check(run(zvtool, os.path.join(tmp, "missing.c")).returncode == 1, "a missing file fails")
        check_user_folder(zvtool, tmp)
    print(f"{len(failures)} failures")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
