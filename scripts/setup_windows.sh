#!/usr/bin/env bash
# Installs what the Windows cross build and its tests under Wine need: the mingw-w64 compilers
# (posix thread model: the win32 one has no std::thread in GCC 12), zlib for mingw, Wine and
# the GoogleTest sources, and dpkg-dev to unpack HDF5's source package. A no-op when all
# are there. The Linux build needs none of this.
set -euo pipefail
exec bash "$(dirname "$0")/setup.sh" g++-mingw-w64-x86-64-posix gcc-mingw-w64-x86-64-posix \
  libz-mingw-w64-dev wine64 wine googletest dpkg-dev cmake make nlohmann-json3-dev libcli11-dev \
  libfast-float-dev
