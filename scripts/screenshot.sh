#!/usr/bin/env bash
# Pictures of the console under a real X server (Xvfb): the main window with a
# plan made through the wizard and run, and the pages of the backup wizard it
# passed. The pictures come from the console's own end-to-end test, run on the
# xcb platform with a demo data directory of its own, so what they show was
# really done.
#
#   scripts/screenshot.sh [OUTPUT_DIR]     (default: docs/screenshots)
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
out=$(realpath -m "${1:-$root/docs/screenshots}")
build_dir=${NVB_BUILD_DIR:-$root/build}

"$root/scripts/install-deps.sh"
if ! command -v Xvfb >/dev/null; then
    echo "Xvfb is missing: apt-get install -y xvfb xauth" >&2
    exit 1
fi

if [ ! -f "$build_dir/CMakeCache.txt" ]; then
    cmake -S "$root" -B "$build_dir" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
fi
cmake --build "$build_dir" -j"$(nproc)" --target nvbgui nvbengine tst_console

display=:97
Xvfb "$display" -screen 0 1280x1024x24 -nolisten tcp >/dev/null 2>&1 &
xvfb=$!
trap 'kill "$xvfb" 2>/dev/null || true' EXIT
sleep 1

mkdir -p "$out"
export DISPLAY=$display QT_QPA_PLATFORM=xcb NVB_SCREENSHOT_DIR="$out"
"$build_dir/tests/console/tst_console" >/dev/null

ls -1 "$out"/*.png
