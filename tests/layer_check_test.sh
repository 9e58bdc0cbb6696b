#!/usr/bin/env bash
# The layering check must fail on an upward include: copies the project's layer folders to
# a scratch folder, confirms the copy passes, plants one upward include (the database
# library including the dispatcher), one sideways include (a model handler including the
# registry) and an operating-system header outside platform/ (windows.h in the server), and
# expects the check to name all three and fail.
set -euo pipefail

root=$(cd "${1:?usage: layer_check_test.sh <project root>}" && pwd)
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

for folder in platform wire odb context access model results server client tools bench; do
  [[ -d $root/$folder ]] && cp -r "$root/$folder" "$scratch/"
done
"$root/scripts/check_layers.sh" "$scratch" || { echo "clean copy failed the check"; exit 1; }

odb_file=$(ls "$scratch"/odb/*.cpp | head -n 1)
model_file=$(ls "$scratch"/model/*.h | head -n 1)
echo '#include "server/dispatcher.h"' >>"$odb_file"
echo '#include "access/registry.h"' >>"$model_file"
server_file=$(ls "$scratch"/server/*.cpp | head -n 1)
echo '#include <windows.h>' >>"$server_file"
if out=$("$root/scripts/check_layers.sh" "$scratch" 2>&1); then
  echo "planted includes passed the check"
  exit 1
fi
grep -q "odb/ must not include server/" <<<"$out" || { echo "missed odb -> server: $out"; exit 1; }
grep -q "model/ must not include access/" <<<"$out" || { echo "missed model -> access: $out"; exit 1; }
grep -q "server/.*operating-system header outside platform/" <<<"$out" ||
  { echo "missed windows.h in server/: $out"; exit 1; }
echo "planted includes caught"
