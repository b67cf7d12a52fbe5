#!/usr/bin/env bash
# Builds and runs the benchmarks under Wine on a private display; each
# prints its figures beside a floor program of our own measured in the
# same run. The output also goes to build/bench-results.txt.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
cd "$root"

"$root/scripts/setup.sh"
source "$root/scripts/wine-env.sh"
# The i686 build, or its x86_64 twin where 32-bit code cannot run.
preset=$(velmora_preset)
cmake --preset "$preset" >/dev/null
cmake --build --preset "$preset"
run_dir=$(mktemp -d "${TMPDIR:-/tmp}/velmora-bench.XXXXXX")
trap 'velmora_env_stop; rm -rf "$run_dir"' EXIT
velmora_env_start "$run_dir"
out="$root/build/bench-results.txt"
: > "$out"
for b in "$root"/build/$preset/bench/*_bench.exe; do
  echo "== $(basename "$b" .exe)" | tee -a "$out"
  wine "$b" > "$run_dir/bench.out" 2>&1 || echo "$(basename "$b") failed" >> "$run_dir/bench.out"
  tee -a "$out" < "$run_dir/bench.out"
done
echo "bench: results in $out"
