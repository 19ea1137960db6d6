#!/usr/bin/python3
"""Compares the code explorer's structure (zvtool outline) with Universal Ctags on real files
that Debian packages install: C, C++, Python, Java, JavaScript, PHP and Go.

For each language the functions, methods and classes ctags reports are matched with ours by
name and line. Over all files of a language at least 95% of ctags' entries must be found, and
at most 5% of ours may be missing from ctags. Exit 77 (skipped) without ctags.

usage: ctags_oracle.py ZVTOOL
"""
import glob
import json
import shutil
import subprocess
import sys

CTAGS = shutil.which("ctags")
if not CTAGS:
    print("skipped: ctags is not installed (Debian package universal-ctags)")
    sys.exit(77)

FILES_PER_LANGUAGE = 4
EXTRA_LIMIT = 0.05
# (language, ctags kinds compared, our kinds compared, candidate globs)
CALLABLE = {"function", "method", "constructor", "destructor", "local"}
CASES = [
    ("C", {"function"}, CALLABLE,
     ["/usr/share/doc/zlib1g-dev/examples/gun.c", "/usr/share/doc/zlib1g-dev/examples/gzlog.c",
      "/usr/share/doc/zlib1g-dev/examples/enough.c", "/usr/share/doc/zlib1g-dev/examples/gzjoin.c",
      "/usr/share/doc/zlib1g-dev/examples/*.c"]),
    ("C++", {"function", "class"}, CALLABLE | {"class"},
     ["/usr/include/c++/*/bits/stl_vector.h", "/usr/include/c++/*/bits/stl_list.h",
      "/usr/include/c++/*/bits/shared_ptr_base.h", "/usr/include/c++/*/bits/stl_deque.h"]),
    ("Python", {"function", "member", "class"}, CALLABLE | {"class"},
     ["/usr/lib/python3*/textwrap.py", "/usr/lib/python3*/argparse.py",
      "/usr/lib/python3*/json/decoder.py", "/usr/lib/python3*/shlex.py"]),
    ("Java", {"method", "class", "interface"}, CALLABLE | {"class"},
     ["/usr/lib/erlang/lib/jinterface-*/java_src/com/ericsson/otp/erlang/OtpConnection.java",
      "/usr/lib/erlang/lib/jinterface-*/java_src/com/ericsson/otp/erlang/OtpOutputStream.java",
      "/usr/lib/erlang/lib/jinterface-*/java_src/com/ericsson/otp/erlang/OtpErlangList.java",
      "/usr/lib/erlang/lib/jinterface-*/java_src/com/ericsson/otp/erlang/AbstractConnection.java"]),
    ("JavaScript", {"function", "class", "method"}, CALLABLE | {"class"},
     ["/usr/share/doc/python3/_static/doctools.js", "/usr/share/javascript/underscore/underscore.js",
      "/usr/share/doc/python3/_static/sphinx_highlight.js", "/usr/share/doc/python3/_static/searchtools.js"]),
    ("PHP", {"function", "class", "interface", "trait"}, CALLABLE | {"class"},
     ["/usr/share/php/PEAR.php", "/usr/share/php/PEAR/Config.php",
      "/usr/share/php/Archive/Tar.php", "/usr/share/php/PEAR/Downloader.php"]),
    ("Go", {"func", "struct", "interface"}, CALLABLE | {"struct"},
     ["/usr/lib/go*/src/strings/builder.go", "/usr/lib/go*/src/bufio/scan.go",
      "/usr/lib/go*/src/sort/sort.go", "/usr/lib/go*/src/bytes/buffer.go"]),
]


def files_of(globs):
    found = []
    for pattern in globs:
        for path in sorted(glob.glob(pattern)):
            if path not in found:
                found.append(path)
    return found[:FILES_PER_LANGUAGE]


def is_object_literal(tag, lines):
    """ctags calls an object literal given to a variable a class; it is none. A function with
    methods on its prototype is a class to ctags and a function to us: both list it."""
    if tag["kind"] != "class":
        return False
    text = lines[tag["line"] - 1] if 0 < tag["line"] <= len(lines) else ""
    return "class" not in text and "function" not in text


def ctags_entries(path, language, kinds):
    with open(path, encoding="utf-8", errors="replace") as f:
        lines = f.read().splitlines()
    out = subprocess.run([CTAGS, "--output-format=json", "--fields=+nK", "--language-force=" + language,
                          "-o", "-", path], capture_output=True, text=True, check=True).stdout
    entries = set()
    for line in out.splitlines():
        tag = json.loads(line)
        if tag.get("_type") == "tag" and tag.get("kind") in kinds and "line" in tag:
            if tag["name"].startswith(("AnonymousFunction", "__anon")) or (
                    language == "JavaScript" and is_object_literal(tag, lines)):
                continue  # ctags' own names for what has none
            name = tag["name"].split(".")[-1].split("::")[-1].replace(" ", "")
            entries.add((name, tag["line"]))
    return entries


def our_entries(zvtool, path, language, kinds):
    syntax = ["--syntax", "C++"] if language == "C++" else []  # headers without extension
    out = subprocess.run([zvtool, "outline"] + syntax + [path], capture_output=True, text=True,
                         check=True).stdout
    entries = set()
    for line in out.splitlines():
        item = json.loads(line)
        if item["kind"] in kinds:
            name = item["name"].split(".")[-1].split("::")[-1]
            entries.add((name, item["line"]))
    return entries


def main():
    zvtool = sys.argv[1]
    failed = []
    compared = 0
    for language, theirs_kinds, ours_kinds, globs in CASES:
        paths = files_of(globs)
        if not paths:
            failed.append(f"{language}: none of the expected files is installed")
            continue
        theirs_all = ours_all = matched = 0
        for path in paths:
            theirs = ctags_entries(path, language, theirs_kinds)
            ours = our_entries(zvtool, path, language, ours_kinds)
            both = theirs & ours
            theirs_all += len(theirs)
            ours_all += len(ours)
            matched += len(both)
            if "-v" in sys.argv:
                for e in sorted(theirs - ours, key=lambda e: e[1]):
                    print(f"  missed {path}:{e[1]} {e[0]}")
                for e in sorted(ours - theirs, key=lambda e: e[1]):
                    print(f"  extra  {path}:{e[1]} {e[0]}")
        found = matched / theirs_all if theirs_all else 1.0
        extra = (ours_all - matched) / ours_all if ours_all else 0.0
        compared += theirs_all
        print(f"{language}: {len(paths)} files, ctags {theirs_all}, ours {ours_all}, "
              f"found {found:.1%}, extra {extra:.1%}")
        if theirs_all < 20:
            failed.append(f"{language}: only {theirs_all} entries to compare")
        if found < 0.95:
            failed.append(f"{language}: found {found:.1%} of ctags' entries (at least 95%)")
        if extra > EXTRA_LIMIT:
            failed.append(f"{language}: {extra:.1%} of ours are not in ctags "
                          f"(at most {EXTRA_LIMIT:.0%})")
    for f in failed:
        print("FAIL " + f)
    print(f"{len(CASES) - len(failed)} passed, {len(failed)} failed")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
