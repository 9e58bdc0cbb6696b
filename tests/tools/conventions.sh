#!/usr/bin/env bash
# Every command-line program follows the same conventions:
#   --help prints the usage on standard output and exits 0 (and does nothing else: odb_gen
#   --help writes no database); --version prints "NAME VERSION" and exits 0; an unknown
#   option, a missing argument or a bad number exits 2 with the reason on standard error and
#   nothing on standard output; options may come before or after the positional arguments.
# usage: conventions.sh BIN_DIR WORK_DIR
set -uo pipefail
bin=$1
work=$2
rm -rf "$work" && mkdir -p "$work" && cd "$work" || exit 1
failures=0
fail() {
  echo "FAIL: $*"
  failures=$((failures + 1))
}

# expect STATUS PROGRAM ARGS...: runs the program, checks its exit status; leaves its
# output in out.txt and err.txt.
expect() {
  local want=$1
  shift
  "$@" >out.txt 2>err.txt
  local got=$?
  [ "$got" -eq "$want" ] || fail "$* exited $got, not $want: $(head -c 300 err.txt)"
}

programs=(odb_cli odb_fields odb_build ccx_import odb_export odb_gen)
for p in "${programs[@]}"; do
  exe="$bin/$p"
  [ -x "$exe" ] || { [ "$p" = odb_gen ] && continue; fail "$p not built"; continue; }
  expect 0 "$exe" --help
  grep -qi "usage" out.txt || fail "$p --help: no usage on standard output"
  [ -s err.txt ] && fail "$p --help wrote to standard error"
  expect 0 "$exe" --version
  grep -q "^$p [0-9]" out.txt || fail "$p --version: $(cat out.txt)"
  expect 2 "$exe" --no-such-option
  [ -s out.txt ] && fail "$p: a bad command line wrote to standard output"
  grep -q -- "--help" err.txt || fail "$p: no pointer to --help"
  # With its arguments given, the unknown option is what the message names.
  if [ "$p" = odb_cli ]; then
    expect 2 "$exe" steps db.odb --no-such-option
  else
    expect 2 "$exe" in.x out.pvd --no-such-option
  fi
  grep -q -- "--no-such-option" err.txt || fail "$p: the bad option is not named"
  grep -q -- "--help" err.txt || fail "$p: no pointer to --help"
done
[ -e ./--help ] || [ -e "$work/--help" ] && fail "odb_gen --help wrote a file named --help"
expect 2 "$bin/odb_build"  # arguments missing

# A small database for the programs that read one.
cat >tiny.json <<'JSON'
{"title": "tiny", "instances": [{"name": "P", "nodes": [[1, 0, 0, 0], [2, 1, 0, 0]],
 "elements": [{"type": "T3D2", "label": 1, "nodes": [1, 2]}]}],
 "steps": [{"name": "S1", "frames": [{"value": 1, "fieldOutputs": [
   {"name": "U", "type": "VECTOR", "componentLabels": ["U1", "U2", "U3"],
    "blocks": [{"instance": "P", "nodeLabels": [1, 2],
                "data": [[0.1, 0, 0], [1.00000012, 0, 1e-30]]}]}]}]}]}
JSON
expect 0 "$bin/odb_build" tiny.json tiny.odb

# Bad numbers are refused, never read as 0 (odb_fields: tool_faults_test.cpp).
expect 2 "$bin/odb_fields" tiny.odb --format xml
expect 2 "$bin/odb_cli" steps tiny.odb --timeout 10s
if [ -x "$bin/odb_gen" ]; then
  expect 2 "$bin/odb_gen" gen.odb --elements many
  [ -e gen.odb ] && fail "odb_gen wrote a database after a bad number"
fi
# Options in any order give the same output.
expect 0 "$bin/odb_fields" --format csv tiny.odb --field U
cp out.txt before.csv
expect 0 "$bin/odb_fields" tiny.odb --field U --format csv
cmp -s before.csv out.txt || fail "odb_fields: option order changes the output"
# Every digit of the stored single-precision values; empty cells where a location has none.
grep -qx "instance,position,element,integration_point,node,section_point,U1,U2,U3" before.csv ||
  fail "odb_fields csv header: $(head -1 before.csv)"
grep -qx "P,nodal,,,2,,1.0000001,0,1e-30" before.csv || fail "odb_fields csv row: $(cat before.csv)"
expect 0 "$bin/odb_fields" tiny.odb --format json --values 1
grep -q '^{"instance":"P","position":"nodal","element":null,"integration_point":null,"node":1,"section_point":null,"U1":0.1,"U2":0.0,"U3":0.0}$' out.txt ||
  fail "odb_fields json: $(cat out.txt)"
expect 0 "$bin/odb_cli" steps tiny.odb --format json
expect 0 "$bin/odb_cli" --format json steps tiny.odb

if [ "$failures" -ne 0 ]; then
  echo "$failures failures"
  exit 1
fi
echo "conventions: all checks passed"
