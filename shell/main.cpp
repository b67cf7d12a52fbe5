// Velmora.exe: the wizard window and its message loop.
#include <windows.h>
#include <commctrl.h>

#include "shell/main_window.h"

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int show) {
  INITCOMMONCONTROLSEX icc{sizeof icc, ICC_STANDARD_CLASSES | ICC_LISTVIEW_CLASSES};
  InitCommonControlsEx(&icc);
  shell::VelmoraMain main;
  if (!main.Create()) {
    MessageBoxA(nullptr, "The main window could not be created.", "Velmora", MB_OK | MB_ICONHAND);
    return 1;
  }
  ShowWindow(main.hwnd(), show);
  UpdateWindow(main.hwnd());
  MSG msg;
  while (GetMessageA(&msg, nullptr, 0, 0) > 0) {
    if (main.hwnd() && IsDialogMessageA(main.hwnd(), &msg)) continue;
    TranslateMessage(&msg);
    DispatchMessageA(&msg);
  }
  return static_cast<int>(msg.wParam);
}
