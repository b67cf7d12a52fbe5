# Sourced by the set-up, run, test and benchmark scripts: a private X
# display (Xvfb) and a private Wine prefix for this run only. Stops only
# what it started.
#   velmora_runs_i386       -> true when this machine can run 32-bit x86 code
#   velmora_preset          -> the CMake preset whose programs run here:
#                              cross (i686), or cross64 where 32-bit code
#                              cannot run
#   velmora_env_start DIR   -> exports DISPLAY and WINEPREFIX
#   velmora_env_stop        -> stops the Wine server of the prefix and Xvfb

# Some virtual machines run 64-bit user code only: the kernel refuses any
# 32-bit program (and with it 32-bit Wine). A 93-byte static i386 program
# that only exits tells.
velmora_runs_i386() {
  if [ -z "${VELMORA_RUNS_I386:-}" ]; then
    local probe
    probe=$(mktemp "${TMPDIR:-/tmp}/velmora-i386.XXXXXX")
    printf '\177\105\114\106\001\001\001\000\000\000\000\000\000\000\000\000\002\000\003\000\001\000\000\000\124\200\004\010\064\000\000\000\000\000\000\000\000\000\000\000\064\000\040\000\001\000\000\000\000\000\000\000\001\000\000\000\000\000\000\000\000\200\004\010\000\200\004\010\135\000\000\000\135\000\000\000\005\000\000\000\000\020\000\000\270\001\000\000\000\061\333\315\200' > "$probe"
    chmod +x "$probe"
    if "$probe" 2>/dev/null; then VELMORA_RUNS_I386=yes; else VELMORA_RUNS_I386=no; fi
    rm -f "$probe"
    export VELMORA_RUNS_I386
  fi
  [ "$VELMORA_RUNS_I386" = yes ]
}

velmora_preset() {
  if velmora_runs_i386; then echo cross; else echo cross64; fi
}

velmora_env_start() {
  local dir=$1
  mkdir -p "$dir"
  export WINEDEBUG=${WINEDEBUG:--all}
  export WINEDLLOVERRIDES="mscoree,mshtml="
  if velmora_runs_i386; then export WINEARCH=win32; else export WINEARCH=win64; fi
  export WINEPREFIX="$dir/prefix"

  if [ -z "${VELMORA_KEEP_DISPLAY:-}" ] || [ -z "${DISPLAY:-}" ]; then
    local fdfile="$dir/xvfb.display"
    : > "$fdfile"
    Xvfb -displayfd 3 -screen 0 1280x1024x24 -nolisten tcp 3>"$fdfile" >"$dir/xvfb.log" 2>&1 &
    VELMORA_XVFB_PID=$!
    local i
    for i in $(seq 1 100); do
      [ -s "$fdfile" ] && break
      sleep 0.1
    done
    [ -s "$fdfile" ] || { echo "Xvfb did not start (see $dir/xvfb.log)" >&2; return 1; }
    export DISPLAY=":$(tr -d '[:space:]' < "$fdfile")"
  fi

  if [ ! -f "$WINEPREFIX/system.reg" ]; then
    echo "wine: preparing prefix $WINEPREFIX (first start takes a while)"
    wineboot -i >"$dir/wineboot.log" 2>&1 || true
  fi
  # Without a window manager Wine waits ~2 s for every destroyed managed
  # window; unmanaged windows close at once.
  wine reg add 'HKCU\Software\Wine\X11 Driver' /v Managed /t REG_SZ /d N /f >"$dir/reg.log" 2>&1
  wineserver -w 2>/dev/null || true
}

velmora_env_stop() {
  [ -n "${WINEPREFIX:-}" ] && wineserver -k 2>/dev/null || true
  if [ -n "${VELMORA_XVFB_PID:-}" ]; then
    kill "$VELMORA_XVFB_PID" 2>/dev/null || true
    wait "$VELMORA_XVFB_PID" 2>/dev/null || true
    VELMORA_XVFB_PID=
  fi
}
