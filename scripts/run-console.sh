#!/usr/bin/env bash
# Builds and starts the console; it starts its own engine when none answers.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
"$root/scripts/install-deps.sh"
build_dir=${NVB_BUILD_DIR:-$root/build}
cmake -S "$root" -B "$build_dir" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo
cmake --build "$build_dir" -j"$(nproc)" --target nvbgui nvbengine
exec "$build_dir/bin/nvbgui" "$@"
