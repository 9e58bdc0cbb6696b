#!/usr/bin/env bash
# Renders one frame of an odb_export series to a PNG (scripts/render_frame.py) with Debian's
# VTK. Without a display, VTK's window needs an X server: xvfb-run provides a virtual one.
#   render_frame.sh SERIES.pvd FIELD OUTPUT.png [FRAME]
set -euo pipefail
script="$(dirname "$0")/render_frame.py"
if [ -z "${DISPLAY:-}" ] && command -v xvfb-run >/dev/null; then
  exec xvfb-run -a -s "-screen 0 1024x768x24" /usr/bin/python3 "$script" "$@"
fi
exec /usr/bin/python3 "$script" "$@"
