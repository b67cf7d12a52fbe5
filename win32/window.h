#pragma once
// Base of every window of the program: the static procedure binds the
// object at WM_NCCREATE and forwards to HandleMessage.
#include <windows.h>

#include <string>

#include "win32/handle.h"

namespace win32 {

class Window {
 public:
  Window() = default;
  virtual ~Window();
  Window(const Window&) = delete;
  Window& operator=(const Window&) = delete;

  HWND hwnd() const { return hwnd_; }

  // Registers a window class once per process; false when that fails.
  static bool RegisterClassOnce(const char* name, UINT style, HBRUSH background,
                                HICON icon = nullptr);

 protected:
  bool Create(DWORD exStyle, const char* cls, const std::string& title, DWORD style, int x, int y,
              int width, int height, HWND parent, int id = 0);
  virtual LRESULT HandleMessage(UINT msg, WPARAM wp, LPARAM lp);
  LRESULT Default(UINT msg, WPARAM wp, LPARAM lp) {
    return DefWindowProcA(hwnd_, msg, wp, lp);
  }

 private:
  static LRESULT CALLBACK Proc(HWND wnd, UINT msg, WPARAM wp, LPARAM lp);
  HWND hwnd_ = nullptr;
};

// A window made only to be drawn on: a plain window of a CS_OWNDC class
// with its device context, both gone with the object (the device context
// is released before the window is destroyed).
class DrawingWindow {
 public:
  // `parent` null: a top-level popup window.
  DrawingWindow(HWND parent, RECT placeInPixels, DWORD style);
  DrawingWindow(const DrawingWindow&) = delete;
  DrawingWindow& operator=(const DrawingWindow&) = delete;
  HWND hwnd() const { return wnd_.get(); }
  HDC dc() const { return dc_.get(); }

 private:
  OwnedWindow wnd_;
  WindowDC dc_;
};

// Shows `wnd` and runs a nested message loop until it is destroyed, with the
// owner disabled meanwhile. The window must call EndModal before it goes, so
// that the owner is enabled again while the window still exists (focus then
// returns to the owner).
void RunModal(HWND wnd, HWND owner);
void EndModal(HWND wnd);

// Runs the messages that are waiting now, without blocking.
void PumpMessages();

}  // namespace win32
