#!/usr/bin/env bash
# Installs the Debian packages that building and testing need. A no-op when all are there.
# With arguments, installs those packages instead (scripts/setup_windows.sh).
set -euo pipefail
# libcli11-dev: the command-line parser of every program. python3-vtk9 reads the viewer
# export back in a test and renders a frame of it to PNG; xvfb and xauth give VTK's window
# an X server on a machine without a display (about 50 MB to fetch, 230 MB installed).
packages=(cmake g++ clang libclang-rt-14-dev make pkg-config zlib1g-dev libhdf5-dev hdf5-tools
          nlohmann-json3-dev libcli11-dev ccache libgtest-dev libgmock-dev libbenchmark-dev
          calculix-ccx python3-vtk9 xvfb xauth
          calculix-ccx-test libfast-float-dev)
[ $# -gt 0 ] && packages=("$@")
missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
[ ${#missing[@]} -eq 0 ] && exit 0
echo "setup: installing ${missing[*]}" >&2
SUDO=""
[ "$(id -u)" -ne 0 ] && SUDO="sudo"
$SUDO apt-get update -qq
DEBIAN_FRONTEND=noninteractive $SUDO apt-get install -y -qq --no-install-recommends "${missing[@]}" >&2
