#!/usr/bin/env bash
# A database crosses between the Linux and the Windows build unchanged: both builds write
# the same bytes from the same input (a JSON description; a CalculiX deck with its results),
# and each build's client shows the same model, sets and steps for the other's database.
#   cross_database.sh LINUX_BIN WINDOWS_BIN SOURCE_DIR WORK_DIR
# The Windows programs run under Wine (the caller has started Wine's server).
set -euo pipefail
linux=$1 windows=$2 src=$3 work=$4
rm -rf "$work"
mkdir -p "$work"
cd "$work"
fail=0
check() {  # check WHAT COMMAND...: runs the command, reports a failure and goes on
  local what=$1
  shift
  if ! "$@"; then
    echo "FAILED: $what" >&2
    fail=1
  fi
}
# The Windows client writes text with CR LF line ends; the records are the same.
win() { wine "$windows/$1.exe" "${@:2}" | tr -d '\r'; }

"$linux/odb_build" "$src/tests/odb/data/small_model.json" lin_json.odb
wine "$windows/odb_build.exe" "$src/tests/odb/data/small_model.json" win_json.odb
check "odb_build writes the same bytes on both" cmp lin_json.odb win_json.odb

deck=$src/examples/beam_steps.inp data=$src/tests/data/ccx
"$linux/ccx_import" "$deck" lin_ccx.odb --frd "$data/beam_steps.frd" --dat "$data/beam_steps.dat" 2>/dev/null
wine "$windows/ccx_import.exe" "$deck" win_ccx.odb --frd "$data/beam_steps.frd" \
  --dat "$data/beam_steps.dat" 2>/dev/null
check "ccx_import writes the same bytes on both" cmp lin_ccx.odb win_ccx.odb

for db in json ccx; do
  for cmd in model sets steps; do
    "$linux/odb_cli" "$cmd" --format json "lin_$db.odb" >"lin_reads_lin_$db.$cmd"
    "$linux/odb_cli" "$cmd" --format json "win_$db.odb" >"lin_reads_win_$db.$cmd"
    win odb_cli "$cmd" --format json "lin_$db.odb" >"win_reads_lin_$db.$cmd"
    check "Linux reads the Windows $db database ($cmd)" \
      cmp "lin_reads_lin_$db.$cmd" "lin_reads_win_$db.$cmd"
    check "Windows reads the Linux $db database ($cmd)" \
      cmp "lin_reads_lin_$db.$cmd" "win_reads_lin_$db.$cmd"
  done
done
exit $fail
