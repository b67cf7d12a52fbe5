// Pixel-format browser figures: the "Pixel Formats" tab click to the
// filled grid in the running program, the grid fill beside what
// DescribePixelFormat alone takes for all formats, and one column sort.
#include <windows.h>

#include <commctrl.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "bench/bench_util.h"
#include "e2e/driver.h"
#include "pfbrowser/fpixelformat.h"
#include "pfbrowser/listview.h"
#include "win32/handle.h"
#include "win32/ui.h"

namespace {

// A hidden window of its own device context to list the formats of.
HWND MakeWindow() {
  static const bool registered = win32::RegisterSimpleClass("VelmoraPfBench");
  if (!registered) return nullptr;
  return CreateWindowA("VelmoraPfBench", "bench", WS_OVERLAPPEDWINDOW, 0, 0, 640, 400, nullptr,
                       nullptr, GetModuleHandleA(nullptr), nullptr);
}

double DescribeAll(HDC dc, int count) {
  PIXELFORMATDESCRIPTOR pfd{};
  double t0 = bench::NowMs();
  for (int i = 1; i <= count; ++i) {
    pfd = {};
    DescribePixelFormat(dc, i, 40, &pfd);
  }
  return bench::NowMs() - t0;
}

void MakeGrid(pfbrowser::CListViewCtl& lv, HWND parent) {
  lv.SetFontName("Tahoma");
  lv.SetFontSize(8);
  lv.Create(parent, 8, 8, 600, 320, 0x5000000D, WS_EX_CLIENTEDGE);
  lv.SetExtendedStyle(lv.ExtendedStyle() | 0x4860);
}

// The browser's window: the grid filled, and visible.
bool GridShown(HWND browser, int columns) {
  if (!IsWindowVisible(browser)) return false;
  std::vector<HWND> views = e2e::FindControls(browser, "SysListView32");
  if (views.empty()) return false;
  HWND header = reinterpret_cast<HWND>(SendMessageA(views.front(), LVM_GETHEADER, 0, 0));
  return header && SendMessageA(header, HDM_GETITEMCOUNT, 0, 0) == columns;
}

struct BrowserSearch {
  DWORD pid;
  HWND found;
};

BOOL CALLBACK FindBrowserProc(HWND wnd, LPARAM lp) {
  auto* s = reinterpret_cast<BrowserSearch*>(lp);
  DWORD owner = 0;
  GetWindowThreadProcessId(wnd, &owner);
  char cls[64] = {};
  GetClassNameA(wnd, cls, sizeof cls);
  if (owner != s->pid || std::string(cls) != "FPixelFormat") return TRUE;
  s->found = wnd;
  return FALSE;
}

HWND FindBrowser(DWORD pid) {
  BrowserSearch s{pid, nullptr};
  EnumWindows(FindBrowserProc, reinterpret_cast<LPARAM>(&s));
  return s.found;
}

// From the tab click to the visible browser with every format's column,
// in Velmora.exe; -1 when it did not get there.
std::vector<double> TabClickToGrid(int runs, int formats) {
  std::vector<double> times;
  std::string dir = win32::ModuleDirectory();
  e2e::Program program(dir + "\\..\\Velmora.exe", dir + "\\..");
  HWND main = program.WaitWindow("Velmora_Main", "Velmora", 30000);
  if (!main) return times;
  e2e::WaitFor([&] { return e2e::FindControl(main, "Button", "Run All") != nullptr; }, 10000);
  HWND tab = e2e::FindControl(main, "Static", "Pixel Formats");
  for (int run = 0; run < runs; ++run) {
    double t0 = bench::NowMs();
    e2e::ClickAt(tab, 5, 5);
    HWND browser = nullptr;
    double end = t0 + 30000;
    while (bench::NowMs() < end) {
      if (!browser) browser = FindBrowser(program.Id());
      if (browser && GridShown(browser, formats + 1)) break;
      Sleep(1);
    }
    double elapsed = bench::NowMs() - t0;
    if (!browser) break;
    times.push_back(elapsed);
    PostMessageA(browser, WM_CLOSE, 0, 0);
    e2e::WaitFor([&] { return !IsWindow(browser) && IsWindowEnabled(main); }, 10000);
  }
  PostMessageA(main, WM_CLOSE, 0, 0);
  program.WaitExit(10000);
  return times;
}

}  // namespace

int main(int argc, char** argv) {
  int runs = argc > 1 ? std::atoi(argv[1]) : 7;
  HWND wnd = MakeWindow();
  if (!wnd) {
    std::printf("pfbrowser bench: no window\n");
    return 1;
  }
  HDC dc = GetDC(wnd);
  PIXELFORMATDESCRIPTOR pfd{};
  int formats = DescribePixelFormat(dc, 1, 40, &pfd);
  std::printf("pixel-format browser, %d formats, median of %d runs\n", formats, runs);

  // The fill beside DescribePixelFormat alone, each once before measuring.
  DescribeAll(dc, formats);
  std::vector<double> describe, fill;
  for (int run = 0; run <= runs; ++run) {
    describe.push_back(DescribeAll(dc, formats));
    pfbrowser::CListViewCtl lv;
    MakeGrid(lv, wnd);
    double t0 = bench::NowMs();
    pfbrowser::FillPixelFormatGrid(lv, dc, formats, pfd);
    fill.push_back(bench::NowMs() - t0);
  }
  describe.erase(describe.begin());
  fill.erase(fill.begin());
  bench::Report("grid fill, all formats", bench::Median(fill), bench::Median(describe), 2.0);

  // One column sort of the filled grid, by a format column and by "Flag".
  pfbrowser::CListViewCtl lv;
  MakeGrid(lv, wnd);
  pfbrowser::FillPixelFormatGrid(lv, dc, formats, pfd);
  for (int column : {1, 0}) {
    std::vector<double> sorts;
    int direction = 0;
    for (int run = 0; run < runs * 2; ++run) {
      direction = pfbrowser::ToggleSortDirection(direction);
      double t0 = bench::NowMs();
      lv.SortByColumn(column, direction);
      sorts.push_back(bench::NowMs() - t0);
    }
    std::printf("%-40s %9.2f ms\n",
                column == 0 ? "one sort by \"Flag\"" : "one sort by a format column",
                bench::Median(sorts));
  }
  std::fflush(stdout);
  ReleaseDC(wnd, dc);
  DestroyWindow(wnd);

  std::vector<double> open = TabClickToGrid(runs, formats);
  if (open.empty()) {
    std::printf("tab click to filled grid: the browser did not open\n");
    return 1;
  }
  std::printf("%-40s %9.2f ms   (first %.2f ms)\n", "tab click to filled grid", bench::Median(open),
              open.front());
  return 0;
}
