#!/usr/bin/env bash
# Starts the program from the portable build tree. Without a display the program can only
# hand its files to a window that already runs; otherwise this says how to run headless.
set -eu
program=$1
shift
if [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ] && [ -z "${QT_QPA_PLATFORM:-}" ]; then
  "$program" "$@" 2>/dev/null && exit 0
  cat >&2 <<MSG
No display found (neither DISPLAY nor WAYLAND_DISPLAY is set), so the Zevrit window cannot open.
Run it headless instead:
  $program -headless FILE...                  (loads and saves each file, no window)
  QT_QPA_PLATFORM=offscreen $program FILE...  (the window, drawn off screen)
  xvfb-run -a $program FILE...                (the window on a virtual X display)
MSG
  exit 1
fi
exec "$program" "$@"
