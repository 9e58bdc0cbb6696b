#!/usr/bin/env bash
# Every speed and memory figure of the server and the database library in one run, each as
# a ratio measured within the same run (the machine may be shared and loaded; ratios carry
# over between machines, absolute figures do not):
#   M against the raw pipe (two dd processes), m against the framed-record limit (M: the
#   same pending-buffer writes without composing records), g warm and cold (first g after
#   o on a fresh server) and S against m of the same record count and size, fd with and
#   without T, the replay from the catalogue file, rs against m, hr against m, a field
#   read through the library against plain HDF5, the import against a line loop, and each
#   peak memory against its largest array.
#
#   bench/run_all.sh            moderate sizes (a few minutes on an idle machine)
#   BENCH_FULL=1 bench/run_all.sh   the sizes the goals were set at (1M elements, 10M values)
#
# BUILD_DIR (default build/release) is configured as a Release build when it has none and
# the benchmark programs are built there. The generated databases are written once into
# $BUILD_DIR/bench_data and reused by later runs. Prints figures; never fails: a program
# that fails is reported and the run goes on.
set -u
cd "$(dirname "$0")/.." || exit 0
build=${BUILD_DIR:-build/release}
data=$build/bench_data
full=${BENCH_FULL:-0}
runs=${BENCH_RUNS:-5}
mkdir -p "$data"

if [ "$full" = 1 ]; then
  n=100 values_elements=1250000 regions=1000 import_elements=190000 scale=1
else
  n=60 values_elements=125000 regions=200 import_elements=40000 scale=0.5
fi

echo "== odb_server benchmarks, $(date -u '+%Y-%m-%d %H:%M UTC')"
echo "machine: $(uname -m), $(nproc) cores, $(grep -m1 'model name' /proc/cpuinfo | cut -d: -f2 | sed 's/^ *//')"
echo "load before: $(uptime | sed 's/.*load average/load average/')"

[ -f "$build/CMakeCache.txt" ] ||
  cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=Release >/dev/null
targets="odb_server pipe_throughput model_throughput catalogue_bench field_stream_bench
  history_throughput odb_results_bench ccx_bench_deck ccx_import_bench"
# shellcheck disable=SC2086
if ! cmake --build "$build" -j2 --target $targets >"$data/build.log" 2>&1; then
  echo "build failed (see $data/build.log); figures of programs already built follow"
fi
bin=$build/bin

# Runs one program, prints its output under a heading and keeps it for the summary.
run() {
  local name=$1
  shift
  echo
  echo "== $name: $*"
  "$@" 2>/dev/null | tee "$data/$name.out"
  [ "${PIPESTATUS[0]}" = 0 ] || echo "($name failed; its figures may be missing)"
}

# The raw pipe: dd writes blocks of the pending buffer's size into a pipe, dd reads them.
raw_pipe() {
  local blocks best=0
  blocks=$(awk -v s="$scale" 'BEGIN { print int(2000 * s) }')
  for _ in 1 2 3; do
    local mbs
    mbs=$(dd if=/dev/zero bs=40950 count="$blocks" 2>/dev/null |
      dd of=/dev/null bs=40950 2>&1 | awk '/copied/ { for (i = 1; i <= NF; ++i) if ($i ~ /^s,?$/) print $1 / $(i - 1) / 1e6 }')
    best=$(awk -v a="$best" -v b="${mbs:-0}" 'BEGIN { print (b > a ? b : a) }')
  done
  echo "$best"
}

echo
echo "== raw pipe (dd | dd, 40950-byte writes)"
raw=$(raw_pipe)
printf '  raw pipe      %10.0f MB/s (best of 3)\n' "$raw"
run pipe "$bin/pipe_throughput" --runs "$runs" --scale "$scale"
run model "$bin/model_throughput" --runs "$runs" --n "$n" --sets 10000
run catalogue "$bin/catalogue_bench" --runs 3 --steps 100 --frames 1000 --dir "$data" --keep
field_db=$data/field_${values_elements}.odb
run values "$bin/field_stream_bench" --runs "$runs" --elements "$values_elements" --db "$field_db"
run field_read "$bin/odb_results_bench" --field "$field_db"
run history "$bin/history_throughput" --runs 3 --regions "$regions" --samples 10000
run import env BUILD_DIR="$build" BENCH_ELEMENTS="$import_elements" BENCH_RUNS=3 \
  bench/ccx/run_import_bench.sh

# One line per ratio, from the outputs above.
field() { # field FILE PATTERN N: the Nth word of the first line matching PATTERN
  awk -v n="$3" "/$2/ { print \$n; exit }" "$data/$1.out" 2>/dev/null
}
nth() { # nth FILE PATTERN K N: the Nth word of the Kth line matching PATTERN
  awk -v k="$3" -v n="$4" "/$2/ && ++seen == k { print \$n; exit }" "$data/$1.out" 2>/dev/null
}
ratio() { # ratio A B: A / B with two decimals, "-" when either is missing
  awk -v a="${1:-}" -v b="${2:-}" 'BEGIN { if (a == "" || b == "" || b + 0 == 0) print "-"; else printf "%.2f", a / b }'
}
times_plain() { # the figure before "x plain" on the catalogue line matching $1
  awk "/$1/"' { for (i = 1; i < NF; ++i) if ($(i + 1) == "x") print $i; exit }' "$data/catalogue.out" 2>/dev/null
}
line() { printf '  %-44s %s\n' "$1" "${2:--}"; }

M=$(field pipe '^  M ' 7)
m8=$(nth pipe '^  m ' 1 5)
m100=$(nth pipe '^  m ' 2 5)
echo
echo "== summary (ratios; load after: $(uptime | sed 's/.*load average: //'))"
line "M / raw pipe" "$(ratio "$M" "$raw")"
line "m (8-byte bodies) / M (framed-record limit)" "$(ratio "$m8" "$M")"
line "m (100-byte bodies) / M" "$(ratio "$m100" "$M")"
line "g warm / m" "$(nth model 'reply \/ m' 1 4)"
line "g first after o / m" "$(field model 'first \/ m' 4)"
line "g server peak / largest array" "$(field model 'the largest array' 10)"
line "S / m" "$(nth model 'reply \/ m' 2 4)"
line "fd with T / fd without T" "$(times_plain '^walk')"
line "fd replay / fd without T" "$(times_plain '^replay')"
line "rs / m" "$(field values 'reply \/ m' 4)"
line "rs server peak / field arrays" "$(field values 'the field.s arrays' 6)"
line "hr / m" "$(field history 'ratio hr' 5)"
line "hr server peak / the history's samples" "$(field history 'the samples' 11)"
line "field read: library / plain HDF5" "$(field field_read 'library \/ plain' 5)"
line "import / line loop" "$(field import 'import speed' 7)"
line "import / line loop, processor time" "$(awk '/^processor time/ { print $NF; exit }' "$data/import.out" 2>/dev/null)"
line "import peak / result file" "$(field import 'peak memory' 6)"
exit 0
