#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# The sanitizer lane (CI runs it after `make test`; `make sanitize` here): one clang build under the address and
# undefined-behaviour sanitizers (the fuzz preset, build/fuzz) serves both the fuzz harnesses, each run briefly
# over its seed corpus, and every module's suite, the window's included. Prints when each phase ended and ends with
# CTest's summary line; exits non-zero when a harness crashed or a test failed.
# LUMARO_FUZZ_SECONDS sets each harness's run (default 5; `make fuzz SECONDS=N` is the long run).
set -euo pipefail
cd "$(dirname "$0")/.."
started=${LUMARO_LANE_STARTED:-$(date +%s)}
phase() { echo "ci: $1 done after $(($(date +%s) - started)) s"; }

bash scripts/install-deps.sh --fuzz
cmake --preset fuzz >/dev/null
# Listing each suite's tests at build time must not stop on a third-party leak; the suite run below checks leaks.
ASAN_OPTIONS=detect_leaks=0 cmake --build build/fuzz -j "$(nproc)"
phase "sanitizer build"

bash scripts/run-fuzzers.sh "${LUMARO_FUZZ_SECONDS:-5}"
phase "fuzzing"

ctest --preset fuzz -LE network
