#!/usr/bin/env bash
# Builds the project and runs its test suite.
#
#   scripts/run-tests.sh              the normal build, in build/
#   scripts/run-tests.sh --sanitize   the same suite under AddressSanitizer and
#                                     UndefinedBehaviorSanitizer, in build-asan/
#
# On a fresh Debian 12 machine it first installs the Debian packages it needs
# (as root), or prints the one line that installs them.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
build_dir=${NVB_BUILD_DIR:-$root/build}
cmake_args=(-DCMAKE_BUILD_TYPE=RelWithDebInfo)

case "${1:-}" in
    --sanitize)
        build_dir=${NVB_BUILD_DIR:-$root/build-asan}
        cmake_args=(-DCMAKE_BUILD_TYPE=Debug -DNVB_SANITIZE=address,undefined -DNVB_BUILD_BENCH=OFF)
        # Qt's own allocations at exit are not ours to fix; leaks in our code
        # still fail through the tests' own checks.
        export ASAN_OPTIONS=${ASAN_OPTIONS:-detect_leaks=0:abort_on_error=1}
        export UBSAN_OPTIONS=${UBSAN_OPTIONS:-print_stacktrace=1:halt_on_error=1}
        ;;
    "") ;;
    *)
        echo "usage: $0 [--sanitize]" >&2
        exit 2
        ;;
esac

"$root/scripts/install-deps.sh"

# Let ccache share objects between checkouts at different paths.
export CCACHE_BASEDIR=${CCACHE_BASEDIR:-$root}
export CCACHE_NOHASHDIR=${CCACHE_NOHASHDIR:-1}

jobs=$(nproc 2>/dev/null || echo 2)
cmake -S "$root" -B "$build_dir" -G Ninja "${cmake_args[@]}"
cmake --build "$build_dir" -j"$jobs"
ctest --test-dir "$build_dir" --output-on-failure -j"$jobs"
