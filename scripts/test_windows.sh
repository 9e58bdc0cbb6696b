#!/usr/bin/env bash
# The Windows leg: cross-builds the programs and tests for Windows with mingw-w64 (HDF5 from
# Debian's source package, cached outside the work tree) and runs the tests under Wine,
# including the cross-platform database test against the Linux programs.
#   ODB_WIN_CACHE   where the HDF5 cross build and the Wine prefix are kept
#   ODB_LINUX_BIN   bin folder of a Linux build (default: build/test/bin from the Linux
#                   leg, else build/release/bin, building the programs it lacks)
set -euo pipefail
cd "$(dirname "$0")/.."
root=$(pwd)
start=$(date +%s)
jobs=$(nproc)
bash scripts/setup_windows.sh
prefix=$(bash scripts/build_hdf5_mingw.sh)

linux_bin=${ODB_LINUX_BIN:-}
if [ -z "$linux_bin" ]; then
  linux_bin=$root/build/test/bin
  for p in odb_server odb_cli odb_build ccx_import; do
    if [ ! -x "$linux_bin/$p" ]; then
      cmake -S . -B build/release -DCMAKE_BUILD_TYPE=Release >/dev/null
      cmake --build build/release -j"$jobs" --target odb_server odb_cli odb_build ccx_import
      linux_bin=$root/build/release/bin
      break
    fi
  done
fi

. scripts/wine_env.sh
wine_start
trap wine_stop EXIT
cmake -S . -B build/windows -DCMAKE_TOOLCHAIN_FILE=cmake/mingw-w64.cmake \
  -DCMAKE_BUILD_TYPE=Release -DODB_MINGW_PREFIX="$prefix" -DODB_LINUX_BIN="$linux_bin" >/dev/null
cmake --build build/windows -j"$jobs"
ctest --test-dir build/windows --output-on-failure -j"$jobs"
echo "test_windows: done in $(($(date +%s) - start)) s" >&2
