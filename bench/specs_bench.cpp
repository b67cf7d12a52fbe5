// "Check Specifications" from press to report shown, beside a floor that
// only makes a window, a context on it and reads the four OpenGL strings.
#include <cstdio>
#include <string>

#include <GL/gl.h>

#include "bench/bench_util.h"
#include "shell/main_window.h"
#include "win32/ui.h"

namespace {

double FloorOnce() {
  double t0 = bench::NowMs();
  HWND wnd = CreateWindowA("STATIC", "", WS_POPUP, 0, 0, 20, 20, nullptr, nullptr,
                           GetModuleHandleA(nullptr), nullptr);
  HDC dc = GetDC(wnd);
  PIXELFORMATDESCRIPTOR pfd{};
  DescribePixelFormat(dc, 1, sizeof pfd, &pfd);
  SetPixelFormat(dc, 1, &pfd);
  HGLRC rc = wglCreateContext(dc);
  wglMakeCurrent(dc, rc);
  size_t total = 0;
  for (GLenum name : {GL_VENDOR, GL_RENDERER, GL_VERSION, GL_EXTENSIONS})
    total += std::string(reinterpret_cast<const char*>(glGetString(name))).size();
  wglMakeCurrent(nullptr, nullptr);
  wglDeleteContext(rc);
  ReleaseDC(wnd, dc);
  DestroyWindow(wnd);
  double elapsed = bench::NowMs() - t0;
  return total ? elapsed : -1;
}

// The floor plus showing the same report text in an edit box of the same
// size, font and tab stops: what any program showing this text pays.
double FloorShownOnce(HWND edit, const std::string& text) {
  double t0 = bench::NowMs();
  double ctx = FloorOnce();
  SetWindowTextA(edit, text.c_str());
  UpdateWindow(edit);
  return ctx < 0 ? -1 : bench::NowMs() - t0;
}

}  // namespace

int main(int argc, char** argv) {
  int runs = argc > 1 ? std::atoi(argv[1]) : 15;
  char dir[MAX_PATH];
  GetTempPathA(MAX_PATH, dir);
  shell::VelmoraMain main(std::string(dir) + "velmora_bench_none.ini");
  if (!main.Create()) return 1;
  ShowWindow(main.hwnd(), SW_SHOW);
  win32::PumpMessages();
  HWND button = main.Control(shell::kSpecsCbt);
  // Warm both paths once: the first context of a process loads the driver.
  SendMessageA(button, BM_CLICK, 0, 0);
  FloorOnce();
  HWND box = main.Control(shell::kSpecsTbx);
  RECT rc{};
  GetClientRect(box, &rc);
  HWND host = CreateWindowA("STATIC", "", WS_POPUP | WS_VISIBLE, 0, 0, rc.right + 40, rc.bottom + 40,
                            nullptr, nullptr, GetModuleHandleA(nullptr), nullptr);
  HWND edit = CreateWindowExA(WS_EX_CLIENTEDGE, "EDIT", "", GetWindowLongA(box, GWL_STYLE) & ~WS_TABSTOP,
                              0, 0, rc.right, rc.bottom, host, nullptr, GetModuleHandleA(nullptr), nullptr);
  SendMessageA(edit, WM_SETFONT, SendMessageA(box, WM_GETFONT, 0, 0), FALSE);
  int stops[2] = {0, 28};
  SendMessageA(edit, EM_SETTABSTOPS, 2, reinterpret_cast<LPARAM>(stops));
  std::string text = win32::GetText(box);

  std::vector<double> ours, floor, floorShown;
  for (int i = 0; i < runs; ++i) {
    double t0 = bench::NowMs();
    SendMessageA(button, BM_CLICK, 0, 0);
    win32::PumpMessages();
    ours.push_back(bench::NowMs() - t0);
    floor.push_back(FloorOnce());
    floorShown.push_back(FloorShownOnce(edit, text));
  }
  std::printf("Check Specifications, median of %d presses\n", runs);
  bench::Report("press to report shown", bench::Median(ours), bench::Median(floor), 1.2);
  bench::Report("same, floor also shows the text", bench::Median(ours), bench::Median(floorShown),
                1.2);
  return 0;
}
