#include "win32/window.h"

#include "win32/ui.h"

namespace win32 {

Window::~Window() {
  if (hwnd_) {
    SetWindowLongPtrA(hwnd_, GWLP_USERDATA, 0);
    HWND wnd = hwnd_;
    hwnd_ = nullptr;
    DestroyWindow(wnd);
  }
}

bool Window::RegisterClassOnce(const char* name, UINT style, HBRUSH background, HICON icon) {
  WNDCLASSEXA existing{};
  existing.cbSize = sizeof existing;
  if (GetClassInfoExA(GetModuleHandleA(nullptr), name, &existing)) return true;
  WNDCLASSEXA wc{};
  wc.cbSize = sizeof wc;
  wc.style = style;
  wc.lpfnWndProc = &Window::Proc;
  wc.hInstance = GetModuleHandleA(nullptr);
  wc.hCursor = LoadCursorA(nullptr, reinterpret_cast<LPCSTR>(IDC_ARROW));
  wc.hbrBackground = background;
  wc.hIcon = icon;
  wc.lpszClassName = name;
  return RegisterClassExA(&wc) != 0;
}

bool Window::Create(DWORD exStyle, const char* cls, const std::string& title, DWORD style, int x,
                    int y, int width, int height, HWND parent, int id) {
  HWND wnd = CreateWindowExA(exStyle, cls, title.c_str(), style, x, y, width, height, parent,
                             reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)),
                             GetModuleHandleA(nullptr), this);
  return wnd != nullptr;
}

LRESULT Window::HandleMessage(UINT msg, WPARAM wp, LPARAM lp) { return Default(msg, wp, lp); }

LRESULT CALLBACK Window::Proc(HWND wnd, UINT msg, WPARAM wp, LPARAM lp) {
  Window* self = nullptr;
  if (msg == WM_NCCREATE) {
    self = static_cast<Window*>(reinterpret_cast<CREATESTRUCTA*>(lp)->lpCreateParams);
    self->hwnd_ = wnd;
    SetWindowLongPtrA(wnd, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(self));
  } else {
    self = reinterpret_cast<Window*>(GetWindowLongPtrA(wnd, GWLP_USERDATA));
  }
  if (!self) return DefWindowProcA(wnd, msg, wp, lp);
  LRESULT r = self->HandleMessage(msg, wp, lp);
  if (msg == WM_NCDESTROY) {
    SetWindowLongPtrA(wnd, GWLP_USERDATA, 0);
    self->hwnd_ = nullptr;
  }
  return r;
}

DrawingWindow::DrawingWindow(HWND parent, RECT r, DWORD style) {
  static const bool registered = RegisterSimpleClass("Velmora_DrawingWindow");
  if (!registered) return;
  wnd_.reset(CreateWindowExA(0, "Velmora_DrawingWindow", "", (parent ? WS_CHILD : WS_POPUP) | style,
                             r.left, r.top, r.right - r.left, r.bottom - r.top, parent, nullptr,
                             GetModuleHandleA(nullptr), nullptr));
  dc_ = WindowDC(wnd_.get());
}

void RunModal(HWND wnd, HWND owner) {
  if (!wnd) return;
  if (owner) {
    EnableWindow(owner, FALSE);
    SetPropA(wnd, "Velmora_ModalOwner", owner);
  }
  ShowWindow(wnd, SW_SHOW);
  UpdateWindow(wnd);
  MSG msg;
  while (IsWindow(wnd)) {
    BOOL got = GetMessageA(&msg, nullptr, 0, 0);
    if (got == 0) {
      PostQuitMessage(static_cast<int>(msg.wParam));
      break;
    }
    if (got < 0) break;
    if (IsWindow(wnd) && IsDialogMessageA(wnd, &msg)) continue;
    TranslateMessage(&msg);
    DispatchMessageA(&msg);
  }
  if (owner && !IsWindowEnabled(owner)) EnableWindow(owner, TRUE);
}

void EndModal(HWND wnd) {
  HWND owner = static_cast<HWND>(RemovePropA(wnd, "Velmora_ModalOwner"));
  if (owner) {
    EnableWindow(owner, TRUE);
    SetActiveWindow(owner);
  }
}

void PumpMessages() {
  MSG msg;
  while (PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE)) {
    if (msg.message == WM_QUIT) {
      PostQuitMessage(static_cast<int>(msg.wParam));
      return;
    }
    TranslateMessage(&msg);
    DispatchMessageA(&msg);
  }
}

}  // namespace win32
