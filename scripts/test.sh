#!/usr/bin/env bash
# Installs what is missing, builds the cross preset and runs every test
# under Wine on a private X display with a private Wine prefix.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
cd "$root"

"$root/scripts/setup.sh"
cmake --preset cross >/dev/null
cmake --build --preset cross

source "$root/scripts/wine-env.sh"
run_dir=$(mktemp -d "${TMPDIR:-/tmp}/velmora-test.XXXXXX")
trap 'velmora_env_stop; rm -rf "$run_dir"' EXIT
velmora_env_start "$run_dir"
echo "tests: DISPLAY=$DISPLAY WINEPREFIX=$WINEPREFIX"
ctest --preset cross "$@"
