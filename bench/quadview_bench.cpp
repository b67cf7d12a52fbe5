// Milliseconds per full redraw of the quad view's four views (the Redraw
// button's path), at two window sizes, beside the floor program drawing the
// same list into four views of the same size and pixel format.
#include <windows.h>

#include <cstdio>
#include <string>
#include <vector>

#include "bench/bench_util.h"
#include "quadview/quadview_frm.h"
#include "win32/ui.h"

namespace {

constexpr int kRedraws = 15;

void Pump() {
  MSG msg;
  while (PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE)) {
    TranslateMessage(&msg);
    DispatchMessageA(&msg);
  }
}

// Runs the floor program and reads the median it prints; 0 on failure.
double FloorMs(int w, int h, int format) {
  std::string exe = win32::ModuleDirectory() + "\\quadview_floor.exe";
  std::string cmd = "\"" + exe + "\" " + std::to_string(w) + " " + std::to_string(h) + " " +
                    std::to_string(format) + " " + std::to_string(kRedraws);
  SECURITY_ATTRIBUTES sa{sizeof sa, nullptr, TRUE};
  HANDLE readEnd = nullptr, writeEnd = nullptr;
  if (!CreatePipe(&readEnd, &writeEnd, &sa, 0)) return 0;
  SetHandleInformation(readEnd, HANDLE_FLAG_INHERIT, 0);
  STARTUPINFOA si{};
  si.cb = sizeof si;
  si.dwFlags = STARTF_USESTDHANDLES;
  si.hStdOutput = writeEnd;
  si.hStdError = writeEnd;
  PROCESS_INFORMATION pi{};
  BOOL started = CreateProcessA(exe.c_str(), cmd.data(), nullptr, nullptr, TRUE, 0, nullptr,
                                nullptr, &si, &pi);
  CloseHandle(writeEnd);
  std::string out;
  if (started) {
    char buf[256];
    DWORD n = 0;
    while (ReadFile(readEnd, buf, sizeof buf, &n, nullptr) && n > 0) out.append(buf, n);
    WaitForSingleObject(pi.hProcess, 60000);
    CloseHandle(pi.hThread);
    CloseHandle(pi.hProcess);
  }
  CloseHandle(readEnd);
  return std::atof(out.c_str());
}

}  // namespace

int main() {
  struct Size {
    const char* name;
    int width, height;
  };
  const Size sizes[] = {{"640 x 520 window", 640, 520}, {"1024 x 800 window", 1024, 800}};
  for (const Size& size : sizes) {
    quadview::QuadView_frm frm;
    if (!frm.Load()) {
      std::printf("quad view: the window could not be made\n");
      return 1;
    }
    SetWindowPos(frm.hwnd(), nullptr, 0, 0, size.width, size.height, SWP_NOZORDER);
    ShowWindow(frm.hwnd(), SW_SHOW);
    UpdateWindow(frm.hwnd());
    Pump();
    if (!frm.ViewContext(0)) {
      std::printf("quad view: no OpenGL context could be made\n");
      return 1;
    }
    for (int i = 0; i < 3; ++i) frm.Redraw_Cbt_Click();
    std::vector<double> times;
    for (int i = 0; i < kRedraws; ++i) {
      double t = bench::NowMs();
      frm.Redraw_Cbt_Click();
      times.push_back(bench::NowMs() - t);
      Pump();
    }
    RECT view{};
    GetClientRect(frm.MapPic(0)->hwnd(), &view);
    const int format = GetPixelFormat(frm.MapPic(0)->hDC());
    frm.Unload();
    Pump();
    double floor = FloorMs(view.right, view.bottom, format);
    std::string what = std::string("quad view redraw, ") + size.name + " (views " +
                       std::to_string(view.right) + "x" + std::to_string(view.bottom) + ")";
    bench::Report(what.c_str(), bench::Median(times), floor, 1.1);
  }
  return 0;
}
