#!/usr/bin/env bash
# Builds everything with the address and undefined-behaviour sanitizers, runs each fuzz
# target for a bounded time (FUZZ_SECONDS, default 30), then runs every test with CTest.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh
jobs=$(nproc)
cmake -S . -B build/test -DCMAKE_BUILD_TYPE=RelWithDebInfo -DODB_SANITIZE=ON >/dev/null
cmake --build build/test -j"$jobs"
bash scripts/fuzz.sh
ctest --test-dir build/test --output-on-failure -j"$jobs"
