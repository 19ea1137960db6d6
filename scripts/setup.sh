#!/usr/bin/env bash
# Installs the Debian 12 packages that building, running and testing Zevrit need, when missing.
# Usage: scripts/setup.sh [build|test|bench]   (test adds the servers and tools the tests start,
# bench the reference tools of the benchmark scripts)
set -euo pipefail

build_pkgs=(
  cmake ninja-build ccache g++ pkg-config
  qt6-base-dev qt6-declarative-dev libgl-dev
  libicu-dev libpcre2-dev nlohmann-json3-dev libpugixml-dev nettle-dev libssl-dev libssh-dev
  libhunspell-dev hunspell-en-us
  googletest libgtest-dev libgmock-dev libbenchmark-dev
)
# What the tests start or compare with: a virtual display, encoding and line-end oracles
# (uconv, iconv of libc-bin, dos2unix, file, xxd, cmp), setfattr for extended attributes,
# xmllint for the XML files the program writes, pcre2grep for regular-expression hits,
# Python with Pygments and its CJK samples, and the language tools whose keyword lists check
# the shipped syntax files; packages that install sources of further languages (Erlang, Nim, R
# demos, Objective-C headers, Fortran modules, Pascal examples, LaTeX classes, SCSS, Less and
# nginx files) for the comparison with Pygments; a minified script (libjs-popper.js) for the
# long-line colouring; Universal Ctags and the packages whose sources the code explorer is
# compared on (PEAR's PHP, Erlang's Java interface, underscore.js, Python's and zlib's headers);
# column (bsdextrautils) lays out the tables aligned text is compared with.
test_pkgs=(
  xvfb xauth icu-devtools dos2unix file diffutils xxd attr libxml2-utils pcre2-utils bsdextrautils
  python3 python3-pygments libpython3.11-testsuite
  nodejs rustc default-jdk-headless perl lua5.4 ruby php-cli golang-go
  erlang-src nim r-base-core libgnustep-base-dev gfortran fp-compiler fp-units-fcl texlive-latex-base
  fonts-font-awesome node-bootstrap libjs-bootstrap nginx-common libjs-popper.js
  universal-ctags php-pear libjs-underscore python3-dev zlib1g-dev
)
# Reference tools the benchmark scripts under bench/ run side by side with zvtool.
bench_pkgs=(
  bc python3 libkf5syntaxhighlighting-tools pcre2-utils
)

wanted=("${build_pkgs[@]}")
[ "${1:-build}" = test ] && wanted+=("${test_pkgs[@]}")
[ "${1:-build}" = bench ] && wanted+=("${bench_pkgs[@]}")

missing=()
for p in "${wanted[@]}"; do
  status=$(dpkg-query -W -f='${Status}' "$p" 2>/dev/null || true)
  [ "$status" = "install ok installed" ] || missing+=("$p")
done
[ ${#missing[@]} -eq 0 ] && exit 0

echo "Installing: ${missing[*]}"
sudo=()
[ "$(id -u)" -eq 0 ] || sudo=(sudo)
export DEBIAN_FRONTEND=noninteractive
"${sudo[@]}" apt-get update -qq
"${sudo[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}"
