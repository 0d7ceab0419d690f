#!/usr/bin/env bash
# Takes the pictures of the windows shown in README.md: the environment settings of a first
# start, then the main window with the bundled sample log converted, one picture per tab of
# both tab groups. The window program draws under Xvfb (a virtual X display) and writes the
# pictures itself (--screenshot-dir), so no window manager is needed.
#
# Usage: scripts/screenshots.sh BUILD_DIR OUT_DIR
set -euo pipefail

build=${1:-build}
out=${2:-docs/screenshots}
program="$build/src/ui/vornhale"
if [[ ! -x "$program" ]]; then
    echo "no window program at $program (make run-gui builds it)" >&2
    exit 1
fi

# A fixed place, so that the pictures show the same path at every run.
work="${TMPDIR:-/tmp}/vornhale-screenshots"
rm -rf "$work"
mkdir -p "$work"
trap 'rm -rf "$work"' EXIT
cp data/sample/SAMPLE2026.ALL "$work/SAMPLE2026.ALL"
mkdir -p "$out"

# A fresh program folder: the first start shows the environment settings as a new user sees
# them; the pictures of the main window follow with the sample log opened and converted.
xvfb-run --auto-servernum --server-args="-screen 0 1400x1000x24" \
    env QT_QPA_PLATFORM=xcb VORNHALE_HOME="$work/home" \
    "$program" --home "$work/home" --open "$work/SAMPLE2026.ALL" --screenshot-dir "$out"

ls -1 "$out"
