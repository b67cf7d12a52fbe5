#!/usr/bin/env bash
# Installs what is missing, builds Velmora.exe and starts it under Wine.
# Without a display it runs on a private Xvfb: it then saves a screenshot
# of the main window, prints where it is, and quits the program.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
cd "$root"

"$root/scripts/setup.sh"
source "$root/scripts/wine-env.sh"
# The i686 program, or its x86_64 twin where 32-bit code cannot run.
preset=$(velmora_preset)
cmake --preset "$preset" >/dev/null
cmake --build --preset "$preset" --target Velmora velmora_ctl
exe="$root/build/$preset/Velmora.exe"
run_dir="$root/build/run"
if [ -n "${DISPLAY:-}" ]; then
  # A display of the user's own: the program stays until it is closed.
  export VELMORA_KEEP_DISPLAY=1
  velmora_env_start "$run_dir"
  exec wine "$exe"
fi

trap 'velmora_env_stop' EXIT
velmora_env_start "$run_dir"
wine "$exe" >"$run_dir/velmora.log" 2>&1 &
wine_pid=$!
window=
for _ in $(seq 1 150); do
  window=$(xdotool search --onlyvisible --name '^Velmora$' 2>/dev/null | head -n 1 || true)
  [ -n "$window" ] && break
  sleep 0.2
done
if [ -z "$window" ]; then
  echo "run: the main window did not appear (see $run_dir/velmora.log)" >&2
  exit 1
fi
sleep 1
shot="$run_dir/velmora-main.png"
import -window "$window" "$shot"
echo "run: screenshot of the main window: $shot"
wine "$root/build/$preset/e2e/velmora_ctl.exe" quit >"$run_dir/ctl.log" 2>&1 || true
cat "$run_dir/ctl.log"
for _ in $(seq 1 50); do
  kill -0 "$wine_pid" 2>/dev/null || break
  sleep 0.2
done
wait "$wine_pid" 2>/dev/null || true
echo "run: Velmora ended"
