#!/usr/bin/env bash
# Runs the whole suite through CTest and prints its summary.
set -eu
build=$1
export QT_QPA_PLATFORM=offscreen
ctest --test-dir "$build" --output-on-failure -j "$(nproc)" --timeout 600
