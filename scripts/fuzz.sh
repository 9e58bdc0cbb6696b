#!/usr/bin/env bash
# Builds the libFuzzer targets with clang and runs each for FUZZ_SECONDS (default 30).
# Any crash, leak or sanitizer finding fails the script; the input is kept in build/fuzz.
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${FUZZ_SECONDS:-30}
CC=clang CXX=clang++ cmake -S . -B build/fuzz -DCMAKE_BUILD_TYPE=RelWithDebInfo -DODB_FUZZ=ON \
  -DODB_BUILD_BENCH=OFF >/dev/null
cmake --build build/fuzz -j"$(nproc)" --target fuzz_targets
for target in build/fuzz/bin/fuzz_*; do
  [ -x "$target" ] || continue
  name=$(basename "$target")
  corpus=build/fuzz/corpus/$name
  mkdir -p "$corpus"
  seeds=tests/fuzz/seeds/${name#fuzz_}
  [ -d "$seeds" ] || seeds=""
  echo "fuzz: $name for ${seconds}s"
  (cd build/fuzz && "../../$target" -max_total_time="$seconds" -print_final_stats=0 \
     "corpus/$name" ${seeds:+"../../$seeds"} 2>"$name.log") || {
    tail -n 60 "build/fuzz/$name.log"; echo "fuzz: $name found a fault"; exit 1; }
done
