// Start-up time: from process start to the main window shown, painted and
// idle, for Velmora.exe and for a plain one-window program built alongside.
#include <cstdio>
#include <string>

#include "bench/bench_util.h"
#include "e2e/driver.h"
#include "win32/ui.h"

namespace {

double StartOnce(const std::string& exe, const char* cls) {
  double t0 = bench::NowMs();
  e2e::Program program(exe, win32::ModuleDirectory());
  if (!program.Started()) return -1;
  // Input idle comes once the window is shown and painted: both programs
  // create and paint their window before they first wait for messages.
  HANDLE process = OpenProcess(SYNCHRONIZE | PROCESS_QUERY_INFORMATION, FALSE, program.Id());
  if (process) WaitForInputIdle(process, 30000);
  double elapsed = bench::NowMs() - t0;
  HWND wnd = program.WaitWindow(cls, nullptr, 30000);
  if (process) CloseHandle(process);
  if (!wnd) return -1;
  PostMessageA(wnd, WM_CLOSE, 0, 0);
  program.WaitExit(10000);
  return elapsed;
}

}  // namespace

int main(int argc, char** argv) {
  int runs = argc > 1 ? std::atoi(argv[1]) : 10;
  std::string dir = win32::ModuleDirectory();
  std::string velmora = dir + "\\..\\Velmora.exe";
  std::string floor = dir + "\\floor_window.exe";
  std::string controls = dir + "\\floor_controls.exe";
  // One start each first, so that none pays for a cold file cache.
  StartOnce(velmora, "Velmora_Main");
  StartOnce(floor, "Velmora_Floor");
  StartOnce(controls, "Velmora_FloorControls");
  std::vector<double> ours, base, same;
  for (int i = 0; i < runs; ++i) {
    ours.push_back(StartOnce(velmora, "Velmora_Main"));
    base.push_back(StartOnce(floor, "Velmora_Floor"));
    same.push_back(StartOnce(controls, "Velmora_FloorControls"));
  }
  std::printf("start-up, median of %d starts each\n", runs);
  bench::Report("Velmora.exe start to main window painted", bench::Median(ours), bench::Median(base),
                1.3);
  bench::Report("  beside the same controls made plainly", bench::Median(ours), bench::Median(same),
                1.1);
  return 0;
}
