#!/usr/bin/python3
"""Compares zvtool's token dump with Pygments, character by character, on real files of the
system where Debian packages install them, and on files of our own (samples/) for languages
without such files.

Each character gets a class: comment, string, number, keyword or other. Characters where the
two tools follow different designs on purpose (see docs/scanner.md) are left out. For each
file, of the characters either tool calls a comment (a string), at least 99% (97%) must be
called so by both. The same share for numbers and keywords is printed per language, for
information only: the keyword lists of the two tools differ by design. Exit 77 (skipped)
without Pygments.

usage: pygments_oracle.py ZVTOOL [SYNTAX...]   (names limit the run to those syntaxes)
"""
import glob
import os
import re
import subprocess
import sys

try:
    from pygments import lex
    from pygments.lexers import get_lexer_by_name
    from pygments.util import ClassNotFound
    from pygments.token import (Comment, Error, Generic, Keyword, Name, Number, Operator,
                                Punctuation, String, Text, Whitespace)
except ImportError:
    print("skipped: Pygments is not installed (Debian package python3-pygments)")
    sys.exit(77)

# (syntax, Pygments lexer, candidate globs); the first FILES_PER_SYNTAX existing files of each
# are used, all of them installed by Debian packages.
CASES = [
    ("c", "c", ["/usr/include/stdio.h", "/usr/include/zlib.h",
                "/usr/share/doc/zlib1g-dev/examples/gun.c",
                "/usr/share/doc/zlib1g-dev/examples/zpipe.c", "/usr/include/pcre2.h",
                "/usr/include/x86_64-linux-gnu/bits/types.h", "/usr/include/*.h"]),
    ("python", "python", ["/usr/lib/python3*/textwrap.py", "/usr/lib/python3*/json/decoder.py",
                          "/usr/lib/python3*/argparse.py", "/usr/lib/python3*/string.py",
                          "/usr/lib/python3*/*.py"]),
    ("shell", "bash", ["/usr/bin/bzgrep", "/usr/bin/gettext.sh", "/usr/bin/zgrep",
                       "/usr/bin/bzdiff"]),
    ("css", "css", ["/usr/share/gitweb/static/gitweb.css", "/usr/share/doc/*/html/_static/*.css",
                    "/usr/share/doc/*/_static/*.css", "/usr/share/javascript/*/*.css"]),
    ("javascript", "javascript", ["/usr/share/gitweb/static/gitweb.js",
                                  "/usr/share/doc/python3/_static/searchtools.js",
                                  "/usr/share/javascript/*/*.js"]),
    ("json", "json", ["/usr/share/doc/nodejs/api/synopsis.json", "/usr/share/*/*.json",
                      "/usr/share/*/*/*.json"]),
    ("html", "html", ["/usr/share/doc/base-passwd/users-and-groups.html",
                      "/usr/share/doc/*/*.html", "/usr/share/doc/*/html/*.html"]),
    ("xml", "xml", ["/usr/share/xml/fontconfig/fonts.dtd", "/etc/fonts/fonts.conf",
                    "/usr/share/mime/packages/freedesktop.org.xml", "/usr/share/*/*.xml"]),
    ("cpp", "cpp", ["/usr/include/c++/*/bits/stl_vector.h", "/usr/include/c++/*/bits/stl_list.h",
                    "/usr/include/c++/*/bits/basic_string.tcc", "/usr/include/c++/*/bits/*.h"]),
    ("perl", "perl", ["/usr/share/perl/5*/Text/Wrap.pm", "/usr/share/perl/5*/File/Temp.pm",
                      "/usr/share/perl/5*/Getopt/Long.pm", "/usr/share/perl/5*/*.pm"]),
    ("ruby", "ruby", ["/usr/lib/ruby/3*/set.rb", "/usr/lib/ruby/3*/optparse.rb",
                      "/usr/lib/ruby/3*/ostruct.rb", "/usr/lib/ruby/3*/*.rb"]),
    ("go", "go", ["/usr/lib/go*/src/strings/builder.go", "/usr/lib/go*/src/bufio/scan.go",
                  "/usr/lib/go*/src/sort/sort.go", "/usr/lib/go*/src/*/*.go"]),
    ("cmake", "cmake", ["/usr/share/cmake*/Modules/FindZLIB.cmake",
                        "/usr/share/cmake*/Modules/FindThreads.cmake",
                        "/usr/share/cmake*/Modules/CheckCSourceCompiles.cmake"]),
    ("markdown", "markdown", ["/usr/share/doc/nodejs/api/readline.md",
                              "/usr/share/doc/nodejs/api/path.md", "/usr/share/doc/*/*.md"]),
    ("sql", "postgresql", ["/usr/share/postgresql/*/extension/*--1.0.sql",
                           "/usr/share/postgresql/*/*.sql"]),
    ("yaml", "yaml", ["/usr/share/doc/python3-yaml/examples/pygments-lexer/example.yaml",
                      "/usr/share/perl/5*/CPAN/Kwalify/distroprefs.yml", "/usr/share/doc/*/*/*.yml"]),
    ("ini", "ini", ["/lib/systemd/system/apt-daily.service", "/lib/systemd/system/*.service"]),
    ("nim", "nim", ["/usr/lib/nim/lib/pure/options.nim", "/usr/lib/nim/lib/pure/parseutils.nim",
                  "/usr/lib/nim/lib/pure/math.nim", "/usr/lib/nim/lib/pure/*.nim"]),
    ("r", "r", ["/usr/lib/R/library/base/demo/is.things.R", "/usr/lib/R/library/stats/demo/lm.glm.R",
              "/usr/lib/R/library/graphics/demo/graphics.R", "/usr/lib/R/library/*/demo/*.R"]),
    ("objectivec", "objective-c", [os.path.join(os.path.dirname(os.path.abspath(__file__)),
                                               "samples", "sample.m"),
                                  "/usr/include/GNUstep/Foundation/NSArray.h",
                                  "/usr/share/go-*/src/cmd/link/internal/ld/testdata/*/lib/ObjC.m",
                                  "/usr/include/GNUstep/Foundation/*.h"]),
    ("fortran", "fortran", ["/usr/lib/gcc/x86_64-linux-gnu/*/finclude/omp_lib.f90",
                          "/usr/lib/gcc/x86_64-linux-gnu/*/finclude/openacc.f90",
                          "/usr/share/cmake*/Modules/FortranCInterface/*.f90"]),
    ("fortranfixed", "fortranfixed", [os.path.join(os.path.dirname(os.path.abspath(__file__)),
                                                  "samples", "sample.f"),
                                     "/usr/share/cmake*/Modules/FortranCInterface/call_sub.f",
                                     "/usr/share/cmake*/Modules/FortranCInterface/Verify/*.f"]),
    ("pascal", "pascal", ["/usr/share/doc/fp-units-fcl/*/examples/fcl-base/htdump.pp",
                        "/usr/share/doc/fp-units-fcl/*/examples/fcl-base/cachetest.pp",
                        "/usr/share/doc/fp-units-fcl/*/examples/fcl-base/poolmm2.pp",
                        "/usr/share/doc/fp-units-fcl/*/examples/*/*.pp"]),
    ("latex", "tex", ["/usr/share/texlive/texmf-dist/tex/latex/base/article.cls",
                      "/usr/share/texlive/texmf-dist/tex/latex/base/fix-cm.sty",
                      "/usr/share/texlive/texmf-dist/tex/latex/base/testpage.tex",
                      "/usr/share/texlive/texmf-dist/tex/latex/base/*.cls"]),
    ("erlang", "erlang", ["/usr/lib/erlang/lib/stdlib-*/src/queue.erl",
                        "/usr/lib/erlang/lib/stdlib-*/src/proplists.erl",
                        "/usr/lib/erlang/lib/stdlib-*/src/gen_server.erl",
                        "/usr/lib/erlang/lib/*/src/*.erl"]),
    ("makefile", "make", ["/usr/share/doc/git/contrib/subtree/Makefile",
                          "/usr/share/doc/git/contrib/contacts/Makefile"]),
    ("scss", "scss", ["/usr/share/sass/font-awesome/_mixins.scss",
                      "/usr/share/nodejs/bootstrap/scss/_buttons.scss",
                      "/usr/share/nodejs/bootstrap/scss/mixins/_grid.scss"]),
    ("less", "less", ["/usr/share/fonts-font-awesome/less/mixins.less",
                      "/usr/share/javascript/bootstrap/less/mixins/grid-framework.less",
                      "/usr/share/javascript/bootstrap/less/buttons.less"]),
    ("gas", "gas", ["/usr/share/go-1*/src/runtime/cgo/gcc_amd64.S",
                    "/usr/share/go-1*/src/runtime/cgo/gcc_386.S"]),
    ("nginx", "nginx", ["/etc/nginx/nginx.conf", "/etc/nginx/sites-available/default",
                        "/etc/nginx/snippets/fastcgi-php.conf"]),
    ("apache", "apacheconf", ["/etc/apache2/conf-available/*.conf",
                              os.path.join(os.path.dirname(os.path.abspath(__file__)),
                                           "samples", "apache2.sample.conf")]),
]
# Languages without files from Debian packages on the machine: files of our own, written
# from the languages' references.
SAMPLES = os.path.join(os.path.dirname(os.path.abspath(__file__)), "samples")
CASES += [(syntax, lexer, [os.path.join(SAMPLES, name)]) for syntax, lexer, name in [
    ("php", "html+php", "sample.php"),
    ("lua", "lua", "sample.lua"),
    ("rust", "rust", "sample.rs"),
    ("java", "java", "Sample.java"),
    ("typescript", "typescript", "sample.ts"),
    ("csharp", "csharp", "Sample.cs"),
    ("diff", "diff", "sample.diff"),
    ("erb", "rhtml", "sample.erb"),
    ("dockerfile", "docker", "Dockerfile.sample"),
    ("toml", "toml", "sample.toml"),
    ("kotlin", "kotlin", "sample.kt"),
    ("swift", "swift", "sample.swift"),
    ("haskell", "haskell", "sample.hs"),
    ("protobuf", "protobuf", "sample.proto"),
    ("graphql", "graphql", "sample.graphql"),
    ("powershell", "powershell", "sample.ps1"),
    ("batch", "batch", "sample.bat"),
    ("scala", "scala", "sample.scala"),
    ("dart", "dart", "sample.dart"),
    ("elixir", "elixir", "sample.ex"),
    ("zig", "zig", "sample.zig"),
    ("julia", "julia", "sample.jl"),
    ("groovy", "groovy", "sample.groovy"),
    ("nasm", "nasm", "sample.asm"),
    ("hcl", "terraform", "sample.tf"),
    ("editorconfig", "ini", "sample.editorconfig"),
    ("tsx", "tsx", "sample.tsx"),
    ("jsx", "jsx", "sample.jsx"),
    ("jinja", "html+jinja", "sample.j2"),
    ("twig", "html+twig", "sample.twig"),
    ("aspx", "aspx-cs", "sample.aspx"),
    ("vbscript", "vbscript", "sample.vbs"),
    ("vue", "vue", "sample.vue"),
]]
FILES_PER_SYNTAX = 3
MAX_BYTES = 200_000


def pick(globs):
    seen = []
    for pattern in globs:
        for path in sorted(glob.glob(pattern)):
            if path in seen or not os.path.isfile(path) or os.path.getsize(path) > MAX_BYTES:
                continue
            try:
                with open(path, encoding="utf-8") as f:
                    f.read()
            except (UnicodeDecodeError, OSError):
                continue
            seen.append(path)
            if len(seen) == FILES_PER_SYNTAX:
                return seen
    return seen


def pygments_class(tok, lexer):
    """The class of a Pygments token; None for the parts left out on purpose."""
    if tok in Error:
        return None  # what this Pygments cannot read (older ones: CMake bracket comments)
    if lexer in ("cmake", "docker", "nginx", "apacheconf") and tok is String:
        return None  # unquoted arguments are plain text here (nginx: all arguments to Pygments)
    if lexer == "apacheconf" and tok in String.Other:
        return None  # unquoted paths, as above
    if lexer in ("ruby", "rhtml", "elixir", "julia") and tok in String.Symbol:
        return None  # symbols are plain text here
    if lexer == "nim" and tok in String.Other:
        return None  # pragmas ({. .}) are a block here; Pygments' rule runs on past their end
    if lexer == "tex" and tok in String:
        return None  # math delimiters: math is a block here, and TeX has no strings
    if lexer == "markdown" and tok in Generic.Heading:
        return None  # headings are a block of their own
    if lexer == "ini" and (tok in String or tok in Keyword):
        return None  # values are plain text, section headers a block here
    if tok in String.Doc and lexer in ("html+php", "rust", "powershell", "nim"):
        return "comment"  # documentation comments (/** */ in PHP, /// in Rust) are comments
    if tok in Comment.Preproc or tok in Comment.PreprocFile:
        return None  # preprocessor lines are a block, not a comment
    if tok in String.Affix or tok in String.Interpol or tok in String.Escape:
        return None  # prefixes and interpolations are plain text here
    if tok in Name.Entity:
        return None  # entities are a block of the HTML syntax
    if tok in Comment:
        return "comment"
    if tok in String:
        return "string"
    if tok in Number:
        return "number"
    if tok in Keyword:
        return "keyword"
    return "other"


ZV_CLASSES = {"comment": "comment", "string": "string", "char": "string",
              "attributevalue": "string", "number": "number"}


def zv_class(kind):
    if kind.startswith("keyword"):
        return "keyword"
    return ZV_CLASSES.get(kind, "other")


def zv_classes(zvtool, syntax, path, lines):
    out = subprocess.run([zvtool, "highlight", "--syntax", syntax, "--tokens", path],
                         capture_output=True, check=True, timeout=60).stdout.decode()
    classes = [["other"] * (len(line.encode("utf-16-le")) // 2) for line in lines]
    for record in out.splitlines():
        row, col, length, kind = record.split("\t")
        row, col, length = int(row), int(col), int(length)
        if row < len(classes):
            for i in range(col, min(col + length, len(classes[row]))):
                classes[row][i] = zv_class(kind)
    return classes


def markdown_rows(lines):
    """Rows of Markdown's fenced code, which is one string here and code to Pygments, and of
    HTML comments, which Pygments does not know in Markdown."""
    rows, fence, comment = set(), None, False
    for row, line in enumerate(lines):
        mark = line.lstrip()[:3]
        if comment or "<!--" in line:
            rows.add(row)
            comment = "-->" not in line[line.find("<!--") + 4 if "<!--" in line else 0:]
        elif fence is None and mark in ("```", "~~~"):
            fence = mark
        elif fence is not None and mark == fence:
            fence = None
        elif fence is not None:
            rows.add(row)
    return rows


SERVER_TAG_IN_VALUE = re.compile(r"=\s*\"[^\"]*<[%?]")
def cmake_rows(lines):
    """CMake rows Debian 12's Pygments (2.14) misreads: those with an escaped quote in a string
    (it ends the string there), and those of bracket comments and arguments and of strings over
    several rows after their first (it knows none of them)."""
    rows, close, in_string = set(), None, False
    for row, line in enumerate(lines):
        if close is not None or in_string or '\\"' in line:
            rows.add(row)
        if close is not None:
            close = None if close in line else close
            continue
        opener = re.search(r"\[(=*)\[", line)
        if opener and not in_string and "]" + opener.group(1) + "]" not in line[opener.end():]:
            close = "]" + opener.group(1) + "]"
            continue
        in_string = (line.replace('\\"', "").count('"') % 2 == 1) != in_string
    return rows


def triple_quoted_rows(lines):
    """Rows of multi-line strings after their first, which Pygments 2.14 misreads in TOML and
    Swift."""
    rows, inside = set(), False
    for row, line in enumerate(lines):
        if inside:
            rows.add(row)
        inside = (line.count('"""') % 2 == 1) != inside
    return rows


# Ruby rows where Pygments reads a percent literal behind an operator as operators.
RUBY_PERCENT_AFTER_OPERATOR = re.compile(r"[-+*/|&<>]=?\s*%[iwIWqQ]?[\[({<]")


# Lexers whose single-quoted strings interpolate ($name, ${expr}) as double-quoted ones do.
SINGLE_QUOTES_INTERPOLATE = ("dart",)
class JsxElements:
    """Follows Pygments' JSX tokens: inside() is true for those of an element (tags,
    attributes, the text and expressions inside), which this design colours as one block.
    A "<" right behind a name is a type's generic arguments (Array<T>), which Pygments reads
    as a tag."""

    def __init__(self):
        self.in_tag = self.closing = self.generic = self.word_before = False
        self.depth, self.last = 0, None

    def inside(self, tok, value):
        inside = self.in_tag or self.depth > 0
        blank = tok in Text and not value.strip()
        if tok in Name.Tag and not self.generic:
            self.in_tag, self.closing, inside = True, self.last == "</", True
        elif tok in Punctuation and value == ">" and self.in_tag:
            self.in_tag = False
            self.depth += -1 if self.closing or self.last == "/" else 1
        elif tok in Punctuation and value in ("<>", "</>"):
            self.depth, inside = self.depth + (1 if value == "<>" else -1), True
        self.depth = max(self.depth, 0)
        if tok in Punctuation and value == "<":
            self.generic = self.word_before
        elif not blank and tok not in Name.Tag:
            self.generic = False
        if tok in Punctuation:
            self.last = value
        if not blank:
            self.word_before = (tok in Name or tok in Keyword.Type) and not inside
        return inside


def delimited_rows(lines, opener, closer):
    """Rows of the regions from `opener` to `closer`."""
    rows, inside = set(), False
    for row, line in enumerate(lines):
        at = line.find(opener)
        if inside or at >= 0:
            rows.add(row)
            inside = closer not in line[at + len(opener) if not inside else 0:]
    return rows


def error_rows(lexer, text):
    """Rows holding a token Pygments could not read."""
    rows, row = set(), 0
    for tok, value in lex(text, get_lexer_by_name(lexer, stripnl=False, ensurenl=False)):
        if tok in Error:
            rows.add(row)
        row += value.count("\n")
    return rows


STRING_PREFIX = re.compile(r"[$@A-Za-z0-9]{1,3}(?=[\"'`#])")


def py_classes(lexer, text, lines):
    classes = [[None] * (len(line.encode("utf-16-le")) // 2) for line in lines]
    skipped = markdown_rows(lines) if lexer == "markdown" else set()
    if lexer in ("rhtml", "html+php"):  # a server tag inside an attribute value is the value
        skipped = {row for row, line in enumerate(lines) if SERVER_TAG_IN_VALUE.search(line)}
    if lexer in ("toml", "swift"):
        skipped = triple_quoted_rows(lines)
    if lexer == "nim":  # the values of a case branch ("of 'a'..'f':") are labels to Pygments
        skipped = {row for row, line in enumerate(lines) if line.lstrip().startswith("of ")}
    if lexer == "batch":  # "::" comments are labels to Pygments
        skipped = {row for row, line in enumerate(lines) if line.lstrip().startswith("::")}
    if lexer == "ruby":
        skipped = {row for row, line in enumerate(lines)
                   if RUBY_PERCENT_AFTER_OPERATOR.search(line)}
    if lexer == "cmake":
        skipped = cmake_rows(lines)
    if lexer.startswith("aspx"):  # server comments are code to Pygments, styles text
        skipped = delimited_rows(lines, "<%--", "--%>") | delimited_rows(lines, "<style", "</style>")
    if lexer in ("scss", "less"):  # rows where this Pygments lost its way (mixin calls)
        skipped = error_rows(lexer, text)
    row, col = 0, 0
    quote = None  # the open interpolating string's delimiter
    quotes = "\"`'" if lexer in SINGLE_QUOTES_INTERPOLATE else "\"`"
    code = 0  # depth of "#{...}" code inside a string, part of the string here
    pragma = False  # inside a Nim pragma as Pygments reads it
    slash_at, unread_row = None, -1  # a "/" operator's position; a row left out from there
    jsx = JsxElements()
    for tok, value in lex(text, get_lexer_by_name(lexer, stripnl=False, ensurenl=False)):
        cls = pygments_class(tok, lexer)
        if lexer in ("tsx", "jsx") and jsx.inside(tok, value):
            cls = None  # JSX elements are a block of their own here
        if lexer in ("scss", "less") and tok in Operator and value == "/":
            # Pygments 2.14 reads a "//" comment as two operators in Less, and in SCSS
            # behind a value or an interpolation: the row is left out from there on.
            if slash_at == (row, col - 1):
                classes[row][col - 1], unread_row = None, row
            slash_at = (row, col)
        if row == unread_row:
            cls = None
        if lexer == "json" and tok in Name.Tag:
            cls = None  # object keys are strings here
        if lexer in ("erlang", "r") and tok in Name and value[:1] in "'`":
            cls = None  # quoted atoms and names are blocks of one colour here
        if lexer == "terraform" and tok in Name and value.startswith('"'):
            cls = "string"  # a block's quoted labels are strings here
        if lexer == "terraform" and tok in String and '", "' in value:
            cls = None  # Pygments 2.14 runs the strings of a list into one
        if lexer == "css" and tok in String.Other:
            cls = None  # an unquoted url(...) argument is plain text here
        if lexer == "nim" and tok in String.Other:  # a pragma: all of it is left out
            pragma = not value.rstrip().endswith(".}")
        elif pragma:
            cls = None
        if quote and tok not in String:
            cls = None  # inside an interpolating string: its parts stay string here
        if tok in String.Interpol and value in ("#{", "${", "\\(", "}", ")"):
            code += 1 if value in ("#{", "${", "\\(") else -1 if code else 0
        elif code:
            cls = None
        # a string opened behind a prefix (Scala's s"...") interpolates too
        opener = value[STRING_PREFIX.match(value).end():] if tok in String and \
            STRING_PREFIX.match(value) and quote is None else value
        if tok in String and opener[:1] in quotes:
            if quote is None and opener.count(opener[0]) % 2 == 1:
                quote = opener[0]
            elif quote == opener[0] and opener.count(quote) % 2 == 1:
                quote = None
        elif quote and tok in String and value.count(quote) % 2 == 1 and value.endswith(quote):
            quote = None
        # a prefix in the string token (C#'s $ and @, Rust's b and r) is text here
        affix = STRING_PREFIX.match(value) if cls == "string" else None
        prefix = affix.end() if affix else 0
        for index, ch in enumerate(value):
            if ch == "\n":
                row, col = row + 1, 0
                continue
            width = 2 if ord(ch) > 0xFFFF else 1
            for _ in range(width):
                if row < len(classes) and col < len(classes[row]) and row not in skipped:
                    classes[row][col] = None if index < prefix else cls
                col += 1
    return classes


GATED = ("comment", "string")
# The share of the characters of a gated class both tools agree on, at the least.
MIN_SHARE = {"comment": 0.99, "string": 0.97}
# A file with fewer characters in a class is not judged on it: one token would decide.
MIN_CHARS = 20


def gate(cls, either, both):
    """The share of `cls` characters both tools agree on, and whether it passes."""
    share = both / either if either else 1.0
    return share, share >= MIN_SHARE[cls] or either < MIN_CHARS


# Gated classes a Pygments lexer does not have: HTML comments in Markdown are comments here;
# diff lines are inserted, deleted or headings to Pygments, blocks of strings here.
UNGATED = {("markdown", "comment"), ("diff", "string")}
CLASSES = GATED + ("number", "keyword")


def compare(zv, py, lines):
    counts = {c: [0, 0] for c in CLASSES}  # [either, both]
    samples = {c: [] for c in counts}
    for row, line in enumerate(lines):
        for col, ch in enumerate(line.encode("utf-16-le").decode("utf-16-le", "replace")):
            if col >= len(zv[row]) or col >= len(py[row]):
                break
            a, b = zv[row][col], py[row][col]
            if b is None or ch in " \t":
                continue
            for c in counts:
                if a == c or b == c:
                    counts[c][0] += 1
                    if a == b:
                        counts[c][1] += 1
                    elif len(samples[c]) < 3:
                        samples[c].append(f"row {row + 1} col {col + 1}: zv {a}, pygments {b}: "
                                          f"{line.strip()[:70]}")
    return counts, samples


def main():
    if len(sys.argv) < 2:
        print(__doc__)
        return 2
    zvtool, only = sys.argv[1], set(sys.argv[2:])
    failures, checked = 0, 0
    totals = {}  # (syntax, class) -> [either, both] over the files of a syntax
    for syntax, lexer, globs in CASES:
        if only and syntax not in only:
            continue
        files = pick(globs)
        try:
            get_lexer_by_name(lexer)
        except ClassNotFound:
            print(f"{syntax}: this Pygments has no lexer {lexer}, left out")
            continue
        if not files:
            print(f"{syntax}: no file found, left out")
            continue
        for path in files:
            with open(path, encoding="utf-8", newline="") as f:
                text = f.read().replace("\r\n", "\n").replace("\r", "\n")
            lines = text.split("\n")
            counts, samples = compare(zv_classes(zvtool, syntax, path, lines),
                                      py_classes(lexer, text, lines), lines)
            checked += 1
            for cls, (either, both) in counts.items():
                for key in ((syntax, cls), ("all", cls)):
                    total = totals.setdefault(key, [0, 0])
                    total[0] += either
                    total[1] += both
                if cls not in GATED or (syntax, cls) in UNGATED:
                    continue
                share, ok = gate(cls, either, both)
                print(f"{'ok  ' if ok else 'FAIL'} {syntax:10} {cls:7} {share:7.2%} "
                      f"of {either:6} chars  {path}")
                if not ok:
                    failures += 1
                    for s in samples[cls]:
                        print("       " + s)
    print("per language, share of the characters either tool puts in a class that both do:")
    print(f"{'':10} " + " ".join(f"{c:>17}" for c in CLASSES))
    for syntax in [s for s in dict.fromkeys(s for s, _ in totals) if s != "all"] + ["all"] * bool(totals):
        cells = []
        for cls in CLASSES:
            either, both = totals[(syntax, cls)]
            cells.append(f"{both / either if either else 1.0:7.2%} of {either:7}")
        print(f"{syntax:10} " + " ".join(cells))
    print(f"{checked} files compared, {failures} below the share")
    return 1 if failures or not checked else 0


if __name__ == "__main__":
    sys.exit(main())
