#include "testsupport/testsupport.h"

#include <GL/gl.h>

#include "win32/ui.h"

namespace testsupport {

MsgBoxRecorder::MsgBoxRecorder() {
  win32::SetMsgBoxHook([this](HWND, const std::string& text, const std::string& title, UINT style) {
    calls_.push_back({text, title, style});
    if (answers_.empty()) return IDOK;
    int id = answers_.front();
    answers_.pop_front();
    return id;
  });
}

MsgBoxRecorder::~MsgBoxRecorder() { win32::SetMsgBoxHook(nullptr); }

PlainWindow::PlainWindow(int width, int height, bool visible) {
  static const bool registered = [] {
    WNDCLASSA wc{};
    wc.style = CS_OWNDC;
    wc.lpfnWndProc = DefWindowProcA;
    wc.hInstance = GetModuleHandleA(nullptr);
    wc.lpszClassName = "VelmoraTestPlain";
    return RegisterClassA(&wc) != 0;
  }();
  (void)registered;
  wnd_ = CreateWindowA("VelmoraTestPlain", "test", WS_POPUP | (visible ? WS_VISIBLE : 0), 10, 10,
                       width, height, nullptr, nullptr, GetModuleHandleA(nullptr), nullptr);
  dc_ = wnd_ ? GetDC(wnd_) : nullptr;
}

PlainWindow::~PlainWindow() {
  if (dc_) ReleaseDC(wnd_, dc_);
  if (wnd_) DestroyWindow(wnd_);
}

void Pump(int ms) {
  DWORD end = GetTickCount() + static_cast<DWORD>(ms);
  do {
    MSG msg;
    while (PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE)) {
      TranslateMessage(&msg);
      DispatchMessageA(&msg);
    }
    if (ms > 0) Sleep(5);
  } while (static_cast<LONG>(end - GetTickCount()) > 0);
}

Rgb ReadPixel(int x, int y) {
  GLubyte px[4] = {};
  glPixelStorei(GL_PACK_ALIGNMENT, 1);
  glReadPixels(x, y, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, px);
  return {px[0], px[1], px[2]};
}

}  // namespace testsupport
