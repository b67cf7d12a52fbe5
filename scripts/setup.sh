#!/usr/bin/env bash
# Makes a Debian bookworm machine ready to build and test Velmora:
# the i686 MinGW-w64 cross compiler, CMake, 32-bit Wine with Mesa's
# software OpenGL, Xvfb, ImageMagick, the GoogleTest sources and the
# header-only JSON library.
# Idempotent: when everything is there it only checks and returns.
set -euo pipefail

packages=(
  cmake make
  g++-mingw-w64-i686 binutils-mingw-w64-i686
  wine wine32:i386
  libgl1:i386 libglx-mesa0:i386 libgl1-mesa-dri:i386
  libgstreamer-plugins-base1.0-0:i386
  xvfb x11-utils xdotool imagemagick
  googletest nlohmann-json3-dev
)

missing=()
if ! dpkg --print-foreign-architectures | grep -qx i386; then
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
$SUDO dpkg --add-architecture i386
# The i386 index of the security suite is sometimes caught mid-sync; the
# install below copes with that, so a failed update is not fatal here.
$SUDO apt-get update -q || echo "setup: apt-get update reported errors; going on"

install() { $SUDO apt-get install -y -q --no-install-recommends "$@" "${missing[@]}"; }

if ! install; then
  # When the security suite's i386 index lags behind its amd64 one, the
  # i386 half of a multi-arch pair cannot match the amd64 version that is
  # installed. Taking both halves from the main suite for this one command
  # resolves it without leaving a pinning file behind.
  echo "setup: plain install failed; retrying with the packages of the main bookworm suite (-t bookworm)"
  $SUDO apt-get install -y -q --no-install-recommends --allow-downgrades -t bookworm "${missing[@]}"
fi
echo "setup: done"
