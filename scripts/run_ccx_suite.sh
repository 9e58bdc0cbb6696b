#!/usr/bin/env bash
# Runs CalculiX and then ccx_import over the solver's own test decks (Debian package
# calculix-ccx-test) and reports, per deck and in total: imported, refused (with the
# reason), crashed, hung, and imported with values lost (warnings that say values are not
# imported). Decks the solver itself rejects or does not finish in time are counted apart:
# the importer only has to take what the solver accepts.
#
# Usage: scripts/run_ccx_suite.sh --importer PATH [--subset FILE] [--timeout SECONDS]
#                                 [--refusals FILE] [deck ...]
#   --subset FILE    decks to run, one name a line ('#' comments); default: every deck
#   --timeout S      time limit of one solver run (default 30); the importer gets 60 s
#   --refusals FILE  decks whose refusal is known and documented ("name  reason" lines);
#                    any other refusal fails the run
# Environment: CCX_SUITE_DIR (default /usr/share/doc/calculix-ccx-test/examples/test).
# Exit status 0 when nothing crashed or hung and every refusal is a documented one.
set -uo pipefail
suite=${CCX_SUITE_DIR:-/usr/share/doc/calculix-ccx-test/examples/test}
importer="" subset="" refusals="" limit=30
decks=()
while [ $# -gt 0 ]; do
  case "$1" in
    --importer) importer=$2; shift 2 ;;
    --subset) subset=$2; shift 2 ;;
    --timeout) limit=$2; shift 2 ;;
    --refusals) refusals=$2; shift 2 ;;
    -*) echo "run_ccx_suite: unknown option $1" >&2; exit 2 ;;
    *) decks+=("$1"); shift ;;
  esac
done
[ -x "$importer" ] || { echo "run_ccx_suite: --importer must name the ccx_import program" >&2; exit 2; }
command -v ccx >/dev/null || { echo "run_ccx_suite: ccx not found (apt-get install calculix-ccx)" >&2; exit 2; }
[ -d "$suite" ] || { echo "run_ccx_suite: $suite not found (apt-get install calculix-ccx-test)" >&2; exit 2; }
importer=$(cd "$(dirname "$importer")" && pwd)/$(basename "$importer")

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
# The decks and the files they include, unpacked; the reference results are not needed.
for f in "$suite"/*; do
  case "$f" in
    *.ref.gz | *.ref) ;;
    *.gz) gzip -dc "$f" >"$work/$(basename "$f" .gz)" ;;
    *) cp "$f" "$work/" ;;
  esac
done
if [ -n "$subset" ]; then
  while read -r name _; do
    case "$name" in '' | '#'*) ;; *) decks+=("$name") ;; esac
  done <"$subset"
fi
if [ ${#decks[@]} -eq 0 ]; then
  for f in "$work"/*.inp; do
    grep -qi '^ *\*STEP' "$f" && decks+=("$(basename "$f" .inp)")
  done
fi
declare -A known
if [ -n "$refusals" ]; then
  while read -r name reason; do
    case "$name" in '' | '#'*) ;; *) known[$name]=$reason ;; esac
  done <"$refusals"
fi

imported=0 refused=0 crashed=0 hung=0 lost=0 solverFailed=0 solverSlow=0 unexpected=0
declare -A reasons
for deck in "${decks[@]}"; do
  if [ ! -f "$work/$deck.inp" ]; then
    echo "$deck: no such deck"
    unexpected=$((unexpected + 1))
    continue
  fi
  (cd "$work" && OMP_NUM_THREADS=1 timeout "$limit" nice ccx -i "$deck" >"$deck.solver" 2>&1)
  rc=$?
  if [ $rc -eq 124 ]; then
    solverSlow=$((solverSlow + 1)); echo "$deck: solver not done in $limit s"; continue
  fi
  if [ $rc -ne 0 ] || grep -q '\*ERROR' "$work/$deck.solver" || [ ! -s "$work/$deck.frd" ]; then
    solverFailed=$((solverFailed + 1)); echo "$deck: solver failed"; continue
  fi
  (cd "$work" && timeout 60 "$importer" "$deck.inp" "$deck.odb" >"$deck.import" 2>&1)
  rc=$?
  if [ $rc -eq 0 ]; then
    imported=$((imported + 1))
    losses=$(grep -E 'values .*not imported|not mapped|expanded instance only|result block .* is not imported' "$work/$deck.import")
    if [ -n "$losses" ]; then
      lost=$((lost + 1))
      echo "$deck: imported, values lost:"
      echo "$losses" | sed "s|$work/||g; s/^/    /"
    else
      echo "$deck: imported"
    fi
  elif [ $rc -eq 1 ]; then
    refused=$((refused + 1))
    message=$(grep -v 'no database written\|warning:' "$work/$deck.import" | tail -n 1 | sed "s|$work/||g")
    # The reason without places and numbers, to count refusals by kind.
    reason=$(echo "$message" | sed -E 's/^ccx_import: //; s/^[^ :]*:[0-9]*: //; s/[0-9]+/N/g' | cut -c1-90)
    reasons[$reason]=$((${reasons[$reason]:-0} + 1))
    if [ -n "${known[$deck]+x}" ]; then
      echo "$deck: refused (documented: ${known[$deck]}): $message"
    else
      unexpected=$((unexpected + 1))
      echo "$deck: refused: $message"
    fi
  elif [ $rc -eq 124 ]; then
    hung=$((hung + 1)); echo "$deck: importer HUNG (no end in 60 s)"
  else
    crashed=$((crashed + 1)); echo "$deck: importer CRASHED (status $rc)"
    tail -n 3 "$work/$deck.import" | sed 's/^/    /'
  fi
  rm -f "$work/$deck.odb" "$work/$deck.frd" "$work/$deck.dat"
done

echo
echo "decks: ${#decks[@]}, solver failed: $solverFailed, solver not done in $limit s: $solverSlow"
echo "imported: $imported (values lost: $lost), refused: $refused, crashed: $crashed, hung: $hung"
if [ $refused -gt 0 ]; then
  echo "refused by reason:"
  for r in "${!reasons[@]}"; do printf '  %3d  %s\n' "${reasons[$r]}" "$r"; done | sort -rn
fi
[ $crashed -eq 0 ] && [ $hung -eq 0 ] && [ $unexpected -eq 0 ]
