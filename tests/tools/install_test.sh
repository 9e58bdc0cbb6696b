#!/usr/bin/env bash
# cmake --install into a fresh prefix, then two programs outside the project built against
# what was installed: one through find_package(odb), one through pkg-config. Both open a
# database written by the installed odb_build and print what they read.
# usage: install_test.sh BUILD_DIR SOURCE_DIR WORK_DIR [CONSUMER_FLAGS]
# CONSUMER_FLAGS go to the consumers' compile and link lines (the sanitizer runtimes when
# the installed library is instrumented).
set -euo pipefail
build=$1
source=$2
work=$3
extra=${4:-}
rm -rf "$work" && mkdir -p "$work"
prefix=$work/prefix
cmake --install "$build" --prefix "$prefix" >"$work/install.log"
for f in bin/odb_server bin/odb_cli bin/odb_export bin/odb_build include/odb/odb.h \
  lib/libodb.a lib/cmake/odb/odbConfig.cmake lib/pkgconfig/odb.pc; do
  [ -e "$prefix/$f" ] || { echo "FAIL: $f not installed"; exit 1; }
done

cat >"$work/tiny.json" <<'JSON'
{"title": "installed", "instances": [{"name": "P", "nodes": [[1, 0, 0, 0], [2, 1, 0, 0]],
 "elements": [{"type": "T3D2", "label": 1, "nodes": [1, 2]}]}],
 "steps": [{"name": "Pull", "frames": [{"value": 1}]}]}
JSON
"$prefix/bin/odb_build" "$work/tiny.json" "$work/tiny.odb"
expected=$'title installed\nnodes 2\nstep Pull'

# find_package(odb)
cmake -S "$source/tests/tools/install_consumer" -B "$work/consumer" \
  -DCMAKE_PREFIX_PATH="$prefix" -DCMAKE_BUILD_TYPE=Release \
  -DCMAKE_CXX_FLAGS="$extra" -DCMAKE_EXE_LINKER_FLAGS="$extra" >"$work/consumer.log"
cmake --build "$work/consumer" >>"$work/consumer.log"
got=$("$work/consumer/odb_consumer" "$work/tiny.odb")
[ "$got" = "$expected" ] || { echo "FAIL: find_package consumer printed: $got"; exit 1; }

# pkg-config
flags=$(PKG_CONFIG_PATH="$prefix/lib/pkgconfig" pkg-config --cflags --libs odb)
# shellcheck disable=SC2086 # both lists are word lists
c++ -std=c++17 $extra -o "$work/pc_consumer" "$source/tests/tools/install_consumer/main.cpp" $flags
got=$("$work/pc_consumer" "$work/tiny.odb")
[ "$got" = "$expected" ] || { echo "FAIL: pkg-config consumer printed: $got"; exit 1; }
echo "install: find_package(odb) and pkg-config both build and read a database"
