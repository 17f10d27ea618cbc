#!/usr/bin/env bash
# Smoke test of the main window: starts the real program under Xvfb on an
# example; `mirel --screenshot` lets it run, saves the window as a PNG and
# fails when the picture is not a window's (too small or nearly uniform).
# Usage: fenetre_capture.sh MIREL FILE.dat OUT.png
set -euo pipefail
mirel="$1"; programme="$2"; sortie="$3"
rm -f "$sortie"
export QT_QPA_PLATFORM=xcb
xvfb-run -a -s "-screen 0 1280x800x24" "$mirel" --screenshot "$sortie" "$programme"
test -s "$sortie" || { echo "no screenshot written" >&2; exit 1; }
echo "screenshot: $sortie"
