#!/usr/bin/env bash
# Re-runs CalculiX on every example deck in examples/ and stores its result file (.frd) and
# print file (.dat) under tests/data/ccx/, where the tests read them. A deck is a .inp file
# with at least one *STEP; the other .inp files are meshes that decks include.
# Usage: scripts/run_ccx_examples.sh [deck-name ...]   (default: every deck)
set -euo pipefail
cd "$(dirname "$0")/.."
command -v ccx >/dev/null || { echo "run_ccx_examples: ccx not found (apt-get install calculix-ccx)" >&2; exit 1; }
out=tests/data/ccx
mkdir -p "$out"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cp examples/*.inp "$work"/
decks=("$@")
if [ ${#decks[@]} -eq 0 ]; then
  for f in examples/*.inp; do
    grep -qi '^\*STEP' "$f" && decks+=("$(basename "$f" .inp)")
  done
fi
for deck in "${decks[@]}"; do
  echo "run_ccx_examples: $deck" >&2
  start=$(date +%s.%N)
  if ! (cd "$work" && OMP_NUM_THREADS=1 timeout 300 ccx -i "$deck" >"$deck.log" 2>&1) ||
     grep -q '\*ERROR' "$work/$deck.log"; then
    tail -n 20 "$work/$deck.log" >&2
    echo "run_ccx_examples: CalculiX failed on $deck" >&2
    exit 1
  fi
  end=$(date +%s.%N)
  cp "$work/$deck.frd" "$work/$deck.dat" "$out"/
  printf 'run_ccx_examples: %s done in %.2f s (%s bytes .frd)\n' "$deck" \
    "$(echo "$end - $start" | bc)" "$(stat -c %s "$out/$deck.frd")" >&2
  # Decks with a binary twin: the same deck asking for *NODE OUTPUT and *ELEMENT OUTPUT, which
  # make the solver write the result file in binary, stored as <deck>.binary.frd.
  if [ "$deck" = frame_beams ]; then
    sed -e 's/^\*NODE FILE/*NODE OUTPUT/' -e 's/^\*EL FILE/*ELEMENT OUTPUT/' \
      "$work/$deck.inp" >"$work/${deck}_binary.inp"
    if ! (cd "$work" && OMP_NUM_THREADS=1 timeout 300 ccx -i "${deck}_binary" >"$deck.log" 2>&1); then
      echo "run_ccx_examples: CalculiX failed on the binary twin of $deck" >&2
      exit 1
    fi
    cp "$work/${deck}_binary.frd" "$out/$deck.binary.frd"
  fi
done
