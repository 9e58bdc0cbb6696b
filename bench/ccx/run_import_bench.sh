#!/usr/bin/env bash
# Import speed of CalculiX results. Makes a deck of BENCH_ELEMENTS bricks (default 190000,
# about 200000 nodes) with an ASCII result file in the solver's layout (BENCH_INCREMENTS
# increments of displacements, stresses and forces, default 1: about 65 MB) and prints the
# import speed against a plain line loop over the file and the peak memory.
# BENCH_SOLVER=1 runs CalculiX on the deck instead (once; kept in build/bench/bench_ccx) and
# BENCH_BINARY=1 then asks it for a binary result file. Prints figures; never fails on
# timing.
set -euo pipefail
cd "$(dirname "$0")/../.."
elements=${BENCH_ELEMENTS:-190000}
form=$([ "${BENCH_BINARY:-0}" = 1 ] && echo binary || echo text)
build=${BUILD_DIR:-build/bench}
# An optimised build without sanitizers: figures of a checked build say little.
[ -f "$build/CMakeCache.txt" ] ||
  cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=Release -DODB_BUILD_TESTS=OFF >/dev/null
cmake --build "$build" -j2 --target ccx_bench_deck ccx_import_bench >/dev/null
work=$build/bench_ccx/${elements}_$form
mkdir -p "$work"
if [ "${BENCH_SOLVER:-0}" != 1 ]; then
  work=$build/bench_ccx/${elements}_generated
  mkdir -p "$work"
  [ -s "$work/block.frd" ] ||
    "$build/bin/ccx_bench_deck" "$elements" "$work/block.inp" text "$work/block.frd" \
      "${BENCH_INCREMENTS:-1}" >/dev/null
  exec "$build/bin/ccx_import_bench" "$work/block.inp" "$work/block.frd" "$work/block.odb" \
    "${BENCH_RUNS:-3}"
fi
if [ ! -s "$work/block.frd" ] || [ ! -s "$work/ccx_seconds" ]; then
  "$build/bin/ccx_bench_deck" "$elements" "$work/block.inp" "$([ "$form" = binary ] && echo binary)" >/dev/null
  echo "bench: running CalculiX on $elements elements (once; kept in $work)" >&2
  start=$(date +%s.%N)
  (cd "$work" && OMP_NUM_THREADS=1 nice -n 10 timeout 3600 ccx -i block >ccx.log 2>&1) || { tail -n 20 "$work/ccx.log"; exit 1; }
  end=$(date +%s.%N)
  echo "$end - $start" | bc > "$work/ccx_seconds"
fi
printf 'CalculiX: %s elements, %s result file of %.1f MB written in %.1f s (whole solver run)\n' \
  "$elements" "$form" "$(echo "$(stat -c %s "$work/block.frd") / 1000000" | bc -l)" \
  "$(cat "$work/ccx_seconds")"
"$build/bin/ccx_import_bench" "$work/block.inp" "$work/block.frd" "$work/block.odb" "${BENCH_RUNS:-3}"
