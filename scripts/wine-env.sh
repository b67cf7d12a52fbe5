# Sourced by the run and test scripts: a private X display (Xvfb) and a
# private Wine prefix for this run only. Stops only what it started.
#   velmora_env_start DIR   -> exports DISPLAY and WINEPREFIX
#   velmora_env_stop        -> stops the Wine server of the prefix and Xvfb

velmora_env_start() {
  local dir=$1
  mkdir -p "$dir"
  export WINEDEBUG=${WINEDEBUG:--all}
  export WINEDLLOVERRIDES="mscoree,mshtml="
  export WINEARCH=win32
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
