#!/usr/bin/env bash
# The main job: builds the release programs, imports the bundled example (a cantilever in
# two static steps and a dynamic step, computed by CalculiX) into a database, and shows it
# through the server the way a user wants to see it first: the model, the steps and frames,
# and the values of one field output; it ends by writing the viewer file of the example
# (a .pvd series for ParaView) and a picture of its last frame.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh
cmake -S . -B build/release -DCMAKE_BUILD_TYPE=Release >/dev/null
cmake --build build/release -j"$(nproc)" --target odb_server odb_cli ccx_import odb_fields odb_export
bin=build/release/bin
db=build/release/example/beam_steps.odb
mkdir -p "$(dirname "$db")"

echo
echo "== import: examples/beam_steps.inp with its solver results"
"$bin/ccx_import" examples/beam_steps.inp "$db" \
  --frd tests/data/ccx/beam_steps.frd --dat tests/data/ccx/beam_steps.dat

echo
echo "== the model, through odb_server (command g)"
"$bin/odb_cli" model "$db"

echo
echo "== steps and frames, through odb_server (command fd; the catalogue is cached)"
"$bin/odb_cli" steps "$db" --cache "${db%.odb}.catalogue"

echo
echo "== displacements U at the end of Step-1, read from the database"
"$bin/odb_fields" "$db" --step Step-1 --field U --values 8

echo
echo "== stresses S of the same frame, through odb_server (commands d and rs)"
"$bin/odb_cli" fields "$db" --field S --step 1 --frame 3 --values 8

echo
echo "== the viewer file: every frame of every step for ParaView and VTK (docs/export.md)"
"$bin/odb_export" "$db" "${db%.odb}.pvd"
if /usr/bin/python3 -c "import vtk" 2>/dev/null; then
  bash scripts/render_frame.sh "${db%.odb}.pvd" U "${db%.odb}.png"
fi
echo "Open ${db%.odb}.pvd in ParaView (File > Open, Apply; the time controls walk the frames)."
