#!/usr/bin/env bash
# Installs what the Windows cross build and its tests under Wine need: the mingw-w64 compilers
# (posix thread model: the win32 one has no std::thread in GCC 12), zlib for mingw, Wine and
# the GoogleTest sources. A no-op when all are there. The Linux build needs none of this.
set -euo pipefail
packages=(g++-mingw-w64-x86-64-posix gcc-mingw-w64-x86-64-posix libz-mingw-w64-dev
          wine64 wine googletest dpkg-dev cmake make)
missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
[ ${#missing[@]} -eq 0 ] && exit 0
echo "setup_windows: installing ${missing[*]}" >&2
SUDO=""
[ "$(id -u)" -ne 0 ] && SUDO="sudo"
$SUDO apt-get update -qq
DEBIAN_FRONTEND=noninteractive $SUDO apt-get install -y -qq --no-install-recommends "${missing[@]}" >&2
