#!/usr/bin/env bash
# Cross-builds the HDF5 C library for mingw-w64 from Debian's own source package and installs
# it into a cache folder outside the work tree, where later runs on the same machine find it.
# Prints the install prefix on standard output. Does nothing but print it when the prefix
# is already complete.
#   ODB_WIN_CACHE   cache folder (default: $HOME/.cache/odb_server/mingw-w64)
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
cache=${ODB_WIN_CACHE:-$HOME/.cache/odb_server/mingw-w64}
# Bump when the recipe below changes, so that caches built the old way are rebuilt.
recipe=1
prefix=$cache/hdf5
stamp=$prefix/.odb_recipe
if [ -f "$stamp" ] && [ "$(cat "$stamp")" = "$recipe" ]; then
  echo "$prefix"
  exit 0
fi

work=$cache/hdf5-work
rm -rf "$work" "$prefix"
mkdir -p "$work/apt/lists/partial" "$work/apt/archives/partial" "$work/src"

# A private apt state with a deb-src entry: the system's apt configuration stays untouched.
suite=$(. /etc/os-release && echo "${VERSION_CODENAME:-bookworm}")
echo "deb-src http://deb.debian.org/debian $suite main" >"$work/apt/sources.list"
apt_opts=(-o "Dir::Etc::SourceList=$work/apt/sources.list" -o "Dir::Etc::SourceParts=-"
          -o "Dir::State::Lists=$work/apt/lists" -o "Dir::Cache=$work/apt"
          -o "Dir::Cache::Archives=$work/apt/archives" -o "APT::Sandbox::User=root")
echo "build_hdf5_mingw: fetching the hdf5 source package" >&2
apt-get "${apt_opts[@]}" -qq update >&2
(cd "$work/src" && apt-get "${apt_opts[@]}" -qq source hdf5 >&2)
src=$(find "$work/src" -maxdepth 1 -mindepth 1 -type d -name 'hdf5-*' | head -1)
[ -n "$src" ] || { echo "build_hdf5_mingw: no hdf5 source folder" >&2; exit 1; }

# mingw has no sys/wait.h; the one source that includes it needs it only on POSIX systems.
grep -rl '#include <sys/wait.h>' "$src/src" 2>/dev/null | while read -r f; do
  sed -i 's|^#include <sys/wait.h>|#ifndef _WIN32\n#include <sys/wait.h>\n#endif|' "$f"
done

# HDF5's generators (H5detect, H5make_libsettings) run under Wine.
. "$root/scripts/wine_env.sh"
wine_start
trap wine_stop EXIT

# HDF5's try-run checks write their result files into the current folder, so cmake runs
# from inside the build folder.
mkdir -p "$work/build"
cd "$work/build"
echo "build_hdf5_mingw: configuring" >&2
cmake "$src" -DCMAKE_TOOLCHAIN_FILE="$root/cmake/mingw-w64.cmake" \
  -DCMAKE_BUILD_TYPE=Release -DCMAKE_INSTALL_PREFIX="$prefix" \
  -DBUILD_SHARED_LIBS=OFF -DBUILD_STATIC_LIBS=ON -DONLY_SHARED_LIBS=OFF \
  -DBUILD_TESTING=OFF -DHDF5_BUILD_TOOLS=OFF -DHDF5_BUILD_EXAMPLES=OFF \
  -DHDF5_BUILD_UTILS=OFF -DHDF5_BUILD_CPP_LIB=OFF -DHDF5_BUILD_HL_LIB=OFF \
  -DHDF5_BUILD_FORTRAN=OFF -DHDF5_BUILD_JAVA=OFF -DHDF5_ENABLE_Z_LIB_SUPPORT=ON \
  -DHDF5_ENABLE_SZIP_SUPPORT=OFF -DHDF5_ENABLE_THREADSAFE=OFF >"$work/configure.log" 2>&1 ||
  { tail -40 "$work/configure.log" >&2; exit 1; }
echo "build_hdf5_mingw: building" >&2
cmake --build . -j"${ODB_JOBS:-2}" >"$work/build.log" 2>&1 || { tail -40 "$work/build.log" >&2; exit 1; }
cmake --install . >"$work/install.log" 2>&1 || { tail -40 "$work/install.log" >&2; exit 1; }
echo "$recipe" >"$stamp"
cd /
rm -rf "$work"
echo "$prefix"
