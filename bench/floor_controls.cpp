// The second floor of the start-up benchmark: the controls the main window
// shows at start (page tabs, the Library page, the navigation buttons),
// made with plain CreateWindowEx calls in one window and shown, with the
// same manifest and common controls. What Velmora costs above this is its
// own work, not the controls'.
#include <windows.h>
#include <commctrl.h>

namespace {

struct Control {
  bool onPage;  // on the page panel, else on the window
  const char* cls;
  const char* text;
  DWORD style;
  DWORD exStyle;
  int x, y, w, h;  // twips
};

constexpr DWORD kButton = WS_VISIBLE | WS_TABSTOP | BS_PUSHBUTTON;
constexpr DWORD kTab = WS_VISIBLE | SS_LEFT | SS_NOTIFY | SS_CENTER | SS_CENTERIMAGE | WS_BORDER;

const Control kControls[] = {
    {false, "STATIC", "Library", kTab, 0, 120, 120, 1380, 330},
    {false, "STATIC", "General", kTab, 0, 1560, 120, 1380, 330},
    {false, "STATIC", "Save Log", kTab, 0, 3000, 120, 1380, 330},
    {false, "STATIC", "Drivers", kTab, 0, 4440, 120, 1380, 330},
    {false, "STATIC", "Pixel Formats", kTab, 0, 7920, 120, 1560, 330},
    {true, "BUTTON", "OpenGL Settings [Default]", WS_VISIBLE | BS_GROUPBOX, 0, 0, 0, 3600, 3180},
    {true, "BUTTON", "Best software format", WS_VISIBLE | WS_TABSTOP | WS_GROUP | BS_AUTORADIOBUTTON, 0,
     180, 300, 3240, 300},
    {true, "BUTTON", "Best hardware format", WS_VISIBLE | BS_AUTORADIOBUTTON, 0, 180, 660, 3240, 300},
    {true, "BUTTON", "Pixel Format :", WS_VISIBLE | BS_AUTORADIOBUTTON, 0, 180, 1020, 1500, 300},
    {true, "EDIT", "0", WS_VISIBLE | WS_TABSTOP | WS_GROUP | ES_AUTOHSCROLL, WS_EX_CLIENTEDGE, 1740, 1005,
     720, 330},
    {true, "BUTTON", "<", kButton, 0, 2520, 1005, 420, 330},
    {true, "BUTTON", ">", kButton, 0, 3000, 1005, 420, 330},
    {true, "BUTTON", "Force Redraw", WS_VISIBLE | WS_TABSTOP | BS_AUTOCHECKBOX, 0, 180, 1500, 3240, 300},
    {true, "BUTTON", "Use VORA Settings", WS_VISIBLE | WS_TABSTOP | BS_AUTOCHECKBOX, 0, 180, 1860, 3240, 300},
    {true, "BUTTON", "Set VORA to these settings", kButton, 0, 180, 2400, 3240, 480},
    {true, "BUTTON", "Check Specifications", kButton, 0, 0, 3360, 3600, 480},
    {true, "EDIT", "Select Software or Hardware mode to test; Then\r\nPress \"Check Specifications\" to update",
     WS_VISIBLE | WS_TABSTOP | WS_VSCROLL | ES_MULTILINE | ES_READONLY | ES_AUTOVSCROLL, WS_EX_CLIENTEDGE,
     3720, 0, 5640, 5640},
    {false, "BUTTON", "<< Back", kButton, 0, 5160, 6240, 1335, 420},
    {false, "BUTTON", "Next >>", kButton, 0, 6600, 6240, 1335, 420},
    {false, "BUTTON", "Quit", kButton, 0, 8145, 6240, 1335, 420},
    {false, "STATIC", "", WS_VISIBLE | SS_LEFT, 0, 120, 6780, 6960, 300},
    {false, "STATIC", "Vs.1.0.0.1  ", WS_VISIBLE | SS_LEFT | SS_RIGHT, 0, 7200, 6720, 2280, 360},
};

LRESULT CALLBACK Proc(HWND wnd, UINT msg, WPARAM wp, LPARAM lp) {
  switch (msg) {
    case WM_CLOSE:
      DestroyWindow(wnd);
      return 0;
    case WM_DESTROY:
      PostQuitMessage(0);
      return 0;
  }
  return DefWindowProcA(wnd, msg, wp, lp);
}

}  // namespace

int WINAPI WinMain(HINSTANCE inst, HINSTANCE, LPSTR, int show) {
  INITCOMMONCONTROLSEX icc{sizeof icc, ICC_STANDARD_CLASSES | ICC_LISTVIEW_CLASSES};
  InitCommonControlsEx(&icc);
  HDC screen = GetDC(nullptr);
  const int dpiX = GetDeviceCaps(screen, LOGPIXELSX), dpiY = GetDeviceCaps(screen, LOGPIXELSY);
  ReleaseDC(nullptr, screen);
  auto px = [&](int twips) { return MulDiv(twips, dpiX, 1440); };
  auto py = [&](int twips) { return MulDiv(twips, dpiY, 1440); };
  NONCLIENTMETRICSA ncm{};
  ncm.cbSize = sizeof ncm;
  SystemParametersInfoA(SPI_GETNONCLIENTMETRICS, sizeof ncm, &ncm, 0);
  HFONT font = CreateFontIndirectA(&ncm.lfMessageFont);

  WNDCLASSA wc{};
  wc.lpfnWndProc = Proc;
  wc.hInstance = inst;
  wc.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
  wc.lpszClassName = "Velmora_FloorControls";
  RegisterClassA(&wc);
  const DWORD style = WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU | WS_MINIMIZEBOX | WS_CLIPCHILDREN;
  RECT rc{0, 0, px(9600), py(7200)};
  AdjustWindowRectEx(&rc, style, FALSE, WS_EX_CONTROLPARENT);
  HWND wnd = CreateWindowExA(WS_EX_CONTROLPARENT, wc.lpszClassName, "Floor", style, CW_USEDEFAULT,
                             CW_USEDEFAULT, rc.right - rc.left, rc.bottom - rc.top, nullptr, nullptr,
                             inst, nullptr);
  HWND page = CreateWindowExA(WS_EX_CONTROLPARENT, "STATIC", "", WS_CHILD | WS_VISIBLE, px(120), py(480),
                              px(9360), py(5640), wnd, nullptr, inst, nullptr);
  for (const Control& c : kControls) {
    HWND ctl = CreateWindowExA(c.exStyle, c.cls, c.text, WS_CHILD | c.style, px(c.x), py(c.y), px(c.w),
                               py(c.h), c.onPage ? page : wnd, nullptr, inst, nullptr);
    SendMessageA(ctl, WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
  }
  ShowWindow(wnd, show);
  UpdateWindow(wnd);
  MSG msg;
  while (GetMessageA(&msg, nullptr, 0, 0) > 0) {
    if (IsDialogMessageA(wnd, &msg)) continue;
    TranslateMessage(&msg);
    DispatchMessageA(&msg);
  }
  DeleteObject(font);
  return 0;
}
