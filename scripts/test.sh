#!/usr/bin/env bash
# Installs what is missing, builds the product (the i686 cross preset) and
# runs every test under Wine on a private X display with a private Wine
# prefix.
#
# On a machine that cannot run 32-bit x86 code the tests run on the
# x86_64 build of the same sources (preset cross64) under 64-bit Wine; the
# i686 product is still built, and its own checks (imports, subsystem,
# source layout) run on it.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
cd "$root"

"$root/scripts/setup.sh"
source "$root/scripts/wine-env.sh"
cmake --preset cross >/dev/null
cmake --build --preset cross
preset=$(velmora_preset)
if [ "$preset" != cross ]; then
  echo "tests: this machine runs 64-bit code only; the tests run on the x86_64 build of the same sources"
  ctest --preset cross -R '^(executable_imports|check_executable_imports|source_layout)$'
  cmake --preset "$preset" >/dev/null
  cmake --build --preset "$preset"
fi

run_dir=$(mktemp -d "${TMPDIR:-/tmp}/velmora-test.XXXXXX")
trap 'velmora_env_stop; rm -rf "$run_dir"' EXIT
velmora_env_start "$run_dir"
echo "tests: DISPLAY=$DISPLAY WINEPREFIX=$WINEPREFIX preset=$preset"
ctest --preset "$preset" "$@"
