#!/usr/bin/env bash
# Builds the libFuzzer targets with clang in build-fuzz and runs each for
# FUZZ_SECONDS (60 by default), at most FUZZ_JOBS (1 by default) at a time.
# Name targets as arguments to run only those. New crashing inputs land in
# build-fuzz/crashes; copy them to tests/fuzz/corpus/<corpus>/ after the fix
# so that tst_fuzzregressions and tst_enginefuzzregressions replay them in
# every build. Needs clang and libclang-rt-14-dev (apt-get install clang
# libclang-rt-14-dev); the normal build and CI do not.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=${FUZZ_BUILD_DIR:-$root/build-fuzz}
seconds=${FUZZ_SECONDS:-60}
jobs=${FUZZ_JOBS:-1}

# target:corpus folder
all="fuzz_planfactory:plan fuzz_diskinfo:diskinfo fuzz_repositoryrecords:repository
fuzz_framecodec:framecodec fuzz_enginerequest:enginerequest fuzz_pointtree:pointtree
fuzz_repositoryindex:repositoryindex"
if [ $# -gt 0 ]; then
    wanted=""
    for name in "$@"; do
        wanted="$wanted $(printf '%s\n' $all | grep "^$name:")"
    done
    all=$wanted
fi
targets=$(printf '%s\n' $all | cut -d: -f1 | tr '\n' ' ')

CC=clang CXX=clang++ cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
    -DNVB_SANITIZE=address,undefined -DNVB_BUILD_BENCH=OFF \
    -DCMAKE_CXX_FLAGS=-fsanitize=fuzzer-no-link >/dev/null
# shellcheck disable=SC2086
cmake --build "$build" --target $targets -j2

mkdir -p "$build/crashes"
run() {
    target=$1
    corpus=$2
    mkdir -p "$build/corpus/$corpus"
    echo "== $target for $seconds s"
    # Undefined behaviour is a finding too, not just a line in the output.
    UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1 LSAN_OPTIONS=suppressions="$root/tests/fuzz/lsan-qt.supp" \
    "$build/tests/fuzz/$target" -max_total_time="$seconds" -max_len=16384 -timeout=10 -rss_limit_mb=4096 \
        -artifact_prefix="$build/crashes/$target-" \
        "$build/corpus/$corpus" "$root/tests/fuzz/corpus/$corpus"
}
status=0
running=0
for entry in $all; do
    run "${entry%%:*}" "${entry#*:}" > "$build/${entry%%:*}.log" 2>&1 &
    running=$((running + 1))
    if [ "$running" -ge "$jobs" ]; then
        wait -n || status=1
        running=$((running - 1))
    fi
done
wait || status=1
for entry in $all; do
    target=${entry%%:*}
    if grep -q "Done [0-9]* runs" "$build/$target.log"; then
        echo "$target: $(grep "Done [0-9]* runs" "$build/$target.log" | tail -1)"
    else
        echo "$target: FAILED, see $build/$target.log"
        status=1
    fi
done
exit $status
