#!/usr/bin/env bash
# Builds the release programs and runs the main job: starts odb_server through the
# command-line client and shows what a user wants first.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh
cmake -S . -B build/release -DCMAKE_BUILD_TYPE=Release -DODB_BUILD_TESTS=OFF >/dev/null
cmake --build build/release -j"$(nproc)" --target odb_server odb_cli
bin=build/release/bin

echo "== server process id, then a framed-record throughput run (bytes on stderr)"
"$bin/odb_cli" raw p "m 3 4"
