// The Drivers button from press to both lists and the notes shown, beside
// the legacy registry scan alone (what the button did before), paired
// press by press in one run.
#include <cstdio>
#include <cstdlib>
#include <string>

#include "bench/bench_util.h"
#include "shell/main_window.h"
#include "win32/ui.h"

int main(int argc, char** argv) {
  int runs = argc > 1 ? std::atoi(argv[1]) : 25;
  char dir[MAX_PATH];
  GetTempPathA(MAX_PATH, dir);
  shell::VelmoraMain main(std::string(dir) + "velmora_bench_none.ini");
  if (!main.Create()) return 1;
  ShowWindow(main.hwnd(), SW_SHOW);
  win32::PumpMessages();
  // The report's context makes the page name the module that ran, as after
  // a user's "Check Specifications".
  SendMessageA(main.Control(shell::kSpecsCbt), BM_CLICK, 0, 0);
  // Arriving at the page asks whether to save the log first: answer No.
  win32::SetMsgBoxHook([](HWND, const std::string&, const std::string&, UINT) { return IDNO; });
  main.Drivers_SetLbl_Click();
  win32::PumpMessages();
  HWND button = main.Control(shell::kDriversCbt);
  SendMessageA(button, BM_CLICK, 0, 0);  // warm both paths once
  win32::PumpMessages();

  std::vector<double> whole, legacy;
  for (int i = 0; i < runs; ++i) {
    double t0 = bench::NowMs();
    SendMessageA(button, BM_CLICK, 0, 0);
    win32::PumpMessages();
    whole.push_back(bench::NowMs() - t0);
    bool showProgress = false;
    t0 = bench::NowMs();
    main.Drivers().ReadOpenGLKey(showProgress);
    win32::PumpMessages();
    legacy.push_back(bench::NowMs() - t0);
  }
  std::printf("Drivers button, median of %d presses (%zu adapter lines)\n", runs,
              static_cast<size_t>(SendMessageA(main.Control(shell::kAdaptersLbx), LB_GETCOUNT, 0, 0)));
  bench::Report("press to lists and notes shown", bench::Median(whole), bench::Median(legacy), 1.5);
  return 0;
}
