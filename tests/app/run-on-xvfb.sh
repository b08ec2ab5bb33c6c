#!/bin/sh
# Runs a widget test on a real X display: a private Xvfb server started by xvfb-run, with Qt's
# xcb platform. Without xvfb-run the test still starts, offscreen, and skips what needs the
# display, saying why (KESTRUM_NO_XVFB). A failing Xvfb fails the test.
set -eu
if command -v xvfb-run >/dev/null 2>&1; then
    export QT_QPA_PLATFORM=xcb
    # -a looks for a free display from -n upwards; starting away from the usual 99 keeps
    # parallel runs on this machine from racing for the same number.
    exec xvfb-run -a -n "$((100 + $$ % 400))" -s "-screen 0 1280x900x24 -nolisten tcp" "$@"
fi
echo "xvfb-run not found: running $1 offscreen" >&2
export QT_QPA_PLATFORM=offscreen
export KESTRUM_NO_XVFB=1
exec "$@"
