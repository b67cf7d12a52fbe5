// The floor for the start-up benchmark: one plain window, painted, nothing
// else.
#include <windows.h>

static LRESULT CALLBACK Proc(HWND wnd, UINT msg, WPARAM wp, LPARAM lp) {
  switch (msg) {
    case WM_PAINT: {
      PAINTSTRUCT ps;
      HDC dc = BeginPaint(wnd, &ps);
      TextOutA(dc, 10, 10, "floor", 5);
      EndPaint(wnd, &ps);
      return 0;
    }
    case WM_CLOSE:
      DestroyWindow(wnd);
      return 0;
    case WM_DESTROY:
      PostQuitMessage(0);
      return 0;
  }
  return DefWindowProcA(wnd, msg, wp, lp);
}

int WINAPI WinMain(HINSTANCE inst, HINSTANCE, LPSTR, int show) {
  WNDCLASSA wc{};
  wc.lpfnWndProc = Proc;
  wc.hInstance = inst;
  wc.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
  wc.lpszClassName = "Velmora_Floor";
  RegisterClassA(&wc);
  HWND wnd = CreateWindowA("Velmora_Floor", "Floor", WS_OVERLAPPEDWINDOW, CW_USEDEFAULT,
                           CW_USEDEFAULT, 646, 510, nullptr, nullptr, inst, nullptr);
  ShowWindow(wnd, show);
  UpdateWindow(wnd);
  MSG msg;
  while (GetMessageA(&msg, nullptr, 0, 0) > 0) {
    TranslateMessage(&msg);
    DispatchMessageA(&msg);
  }
  return 0;
}
