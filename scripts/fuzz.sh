#!/bin/sh
# Builds the libFuzzer targets with clang in build-fuzz and runs each for
# FUZZ_SECONDS (60 by default). New crashing inputs land in build-fuzz/crashes;
# copy them to tests/fuzz/corpus/<target>/ after the fix so that
# tst_fuzzregressions replays them in every build.
set -eu
root=$(cd "$(dirname "$0")/.." && pwd)
build=${FUZZ_BUILD_DIR:-$root/build-fuzz}
seconds=${FUZZ_SECONDS:-60}

CC=clang CXX=clang++ cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
    -DNVB_SANITIZE=address,undefined -DNVB_BUILD_BENCH=OFF \
    -DCMAKE_CXX_FLAGS=-fsanitize=fuzzer-no-link >/dev/null
cmake --build "$build" --target fuzz_planfactory fuzz_diskinfo -j2

mkdir -p "$build/crashes" "$build/corpus/plan" "$build/corpus/diskinfo"
run() {
    target=$1
    corpus=$2
    echo "== $target for $seconds s"
    "$build/tests/fuzz/$target" -max_total_time="$seconds" -max_len=16384 -timeout=10 \
        -artifact_prefix="$build/crashes/$target-" \
        "$build/corpus/$corpus" "$root/tests/fuzz/corpus/$corpus"
}
run fuzz_planfactory plan
run fuzz_diskinfo diskinfo
