#!/usr/bin/env bash
# Makes a Debian bookworm machine ready to build and test Velmora: the
# i686 MinGW-w64 cross compiler, CMake, Wine with Mesa's software OpenGL,
# Xvfb, ImageMagick, xdotool, the GoogleTest sources and the header-only
# JSON library.
#
# Where the machine can run 32-bit x86 code this is 32-bit Wine, which
# runs Velmora.exe itself. Some virtual machines run 64-bit user code
# only; there the tests run on a 64-bit build of the same sources under
# 64-bit Wine (scripts/test.sh), so the x86_64 cross compiler and 64-bit
# Wine are installed instead.
# Idempotent: when everything is there it only checks and returns.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
source "$root/scripts/wine-env.sh"

packages=(
  cmake make
  g++-mingw-w64-i686 binutils-mingw-w64-i686
  xvfb x11-utils xdotool imagemagick
  googletest nlohmann-json3-dev
)
if velmora_runs_i386; then
  packages+=(wine wine32:i386 libgl1:i386 libglx-mesa0:i386 libgl1-mesa-dri:i386
             libgstreamer-plugins-base1.0-0:i386)
else
  packages+=(wine wine64 libgl1 libglx-mesa0 libgl1-mesa-dri libgstreamer-plugins-base1.0-0
             g++-mingw-w64-x86-64 binutils-mingw-w64-x86-64)
fi

missing=()
if velmora_runs_i386 && ! dpkg --print-foreign-architectures | grep -qx i386; then
  missing=("${packages[@]}")
else
  for p in "${packages[@]}"; do
    dpkg-query -W -f='${Status}\n' "$p" 2>/dev/null | grep -q '^install ok installed$' || missing+=("$p")
  done
fi

if [ ${#missing[@]} -eq 0 ]; then
  echo "setup: everything is installed"
  exit 0
fi

if [ "$(id -u)" -ne 0 ]; then SUDO=sudo; else SUDO=; fi
export DEBIAN_FRONTEND=noninteractive

echo "setup: installing ${missing[*]}"
velmora_runs_i386 && $SUDO dpkg --add-architecture i386
# The security suite's index is sometimes caught mid-sync; the install
# below copes with that, so a failed update is not fatal here.
$SUDO apt-get update -q || echo "setup: apt-get update reported errors; going on"

install() { $SUDO apt-get install -y -q --no-install-recommends "$@" "${missing[@]}"; }

if ! install; then
  # When the security suite lags behind the main one, a library that Wine
  # needs cannot match the version that is installed. Taking the packages
  # of the main suite for this one command resolves it without leaving a
  # pinning file behind.
  echo "setup: plain install failed; retrying with the packages of the main bookworm suite (-t bookworm)"
  $SUDO apt-get install -y -q --no-install-recommends --allow-downgrades -t bookworm "${missing[@]}"
fi
echo "setup: done"
