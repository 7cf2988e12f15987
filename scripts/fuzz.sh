#!/bin/sh
# SPDX-License-Identifier: AGPL-3.0-or-later
# Fuzzes the engine under the address and undefined behaviour sanitizers:
#
#   scripts/fuzz.sh SECONDS [FOLDER]
#
# Starts from fuzz/seeds and from the files of FOLDER, if one is given. What the fuzzer finds worth
# keeping goes to build/fuzz/corpus, inputs that fail to build/fuzz/failures. CXX and CC choose the
# compiler: with clang 15 or newer the fuzzer is libFuzzer, otherwise a small one of our own
# (fuzz/plain_driver.cpp).
set -eu

seconds="${1:?usage: scripts/fuzz.sh SECONDS [FOLDER]}"
more="${2:-}"
[ -z "$more" ] || more="$(cd "$more" && pwd)"
root="$(cd "$(dirname "$0")/.." && pwd)"
build="${QUILLORA_FUZZ_BUILD:-$root/build/fuzz}"

cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
    -DCMAKE_DISABLE_PRECOMPILE_HEADERS=ON -DQUILLORA_BUILD_TESTS=OFF -DQUILLORA_FUZZ=ON -DQUILLORA_SANITIZE=address,undefined >/dev/null
cmake --build "$build" --target fuzz_engine ${QUILLORA_JOBS:+-j "$QUILLORA_JOBS"}

mkdir -p "$build/corpus" "$build/failures"
cd "$build/failures"
# Each run writes files; where there is a disk in memory they go there.
if [ -z "${TMPDIR:-}" ] && [ -d /dev/shm ]; then
    export TMPDIR=/dev/shm
fi
export QT_QPA_PLATFORM=offscreen
# MuPDF itself leaks on some broken files; the tests look for leaks of our own.
export ASAN_OPTIONS=detect_leaks=0:allocator_may_return_null=1
export UBSAN_OPTIONS=print_stacktrace=1
# shellcheck disable=SC2086 # an optional folder
"$build/fuzz/fuzz_engine" "-fork=${QUILLORA_JOBS:-$(nproc)}" -ignore_crashes=1 -ignore_ooms=1 \
    -ignore_timeouts=1 "-max_total_time=$seconds" -timeout=60 -rss_limit_mb=4096 \
    -max_len=65536 "-dict=$root/fuzz/pdf.dict" -print_final_stats=1 \
    "$build/corpus" "$root/fuzz/seeds" ${more:+"$more"}
