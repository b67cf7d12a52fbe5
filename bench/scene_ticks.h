#pragma once
// A test scene's timer ticks delivered back to back (the timer taken out):
// the time the scene's own frames take, both views drawn and swapped.
#include "bench/bench_util.h"
#include "tests/catalogue.h"
#include "tests/gltest_frm.h"
#include "win32/window.h"

namespace bench {

// Milliseconds for `ticks` ticks of test `mode`, its views prepared first.
inline double SceneTicksMs(int mode, int ticks) {
  tests::GLTest_frm window;
  window.mode(mode);
  window.Init(tests::kTestCaptions[mode]);
  HWND wnd = window.hwnd();
  KillTimer(wnd, 1);
  ShowWindow(wnd, SW_SHOWNOACTIVATE);
  UpdateWindow(wnd);
  win32::PumpMessages();
  double t0 = NowMs();
  for (int i = 0; i < ticks && IsWindow(wnd); ++i) SendMessageA(wnd, WM_TIMER, 1, 0);
  return NowMs() - t0;
}

}  // namespace bench
