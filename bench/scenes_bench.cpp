// Frames per second of every test scene with the timer taken out: each
// tick (both views drawn and swapped) is delivered as soon as the last one
// is done.
#include <cstdio>

#include "bench/bench_util.h"
#include "tests/catalogue.h"
#include "tests/gltest_frm.h"
#include "win32/window.h"

namespace {

// Ticks per second over the 50 ticks before the window closes itself.
double TicksPerSecond(int mode) {
  tests::GLTest_frm window;
  window.mode(mode);
  window.Init(tests::kTestCaptions[mode]);
  HWND wnd = window.hwnd();
  KillTimer(wnd, 1);
  ShowWindow(wnd, SW_SHOWNOACTIVATE);
  UpdateWindow(wnd);
  win32::PumpMessages();
  const int ticks = 50;
  double t0 = bench::NowMs();
  for (int i = 0; i < ticks && IsWindow(wnd); ++i) SendMessageA(wnd, WM_TIMER, 1, 0);
  double elapsed = bench::NowMs() - t0;
  return ticks * 1000.0 / elapsed;
}

}  // namespace

int main() {
  std::printf("scene frames per second (each frame draws and swaps both views)\n");
  for (int mode = 0; mode < tests::kInteractionTest; ++mode) {
    std::vector<double> runs;
    for (int i = 0; i < 3; ++i) runs.push_back(TicksPerSecond(mode));
    std::printf("%-16s %8.1f frames/s\n", tests::kTestCaptions[mode], bench::Median(runs));
    std::fflush(stdout);
  }
  return 0;
}
