#include "shell/glpicture.h"

#include "gl/mopengl.h"
#include "win32/ui.h"

namespace shell {

GLPicture::GLPicture(HWND parent, RECT r) {
  static const bool registered = win32::RegisterSimpleClass("Velmora_GLPicture");
  if (!registered) return;
  wnd_ = CreateWindowExA(0, "Velmora_GLPicture", "", WS_CHILD | WS_CLIPSIBLINGS, r.left, r.top,
                         r.right - r.left, r.bottom - r.top, parent, nullptr,
                         GetModuleHandleA(nullptr), nullptr);
  dc_ = wnd_ ? GetDC(wnd_) : nullptr;
}

GLPicture::~GLPicture() {
  if (dc_ && wglGetCurrentDC() == dc_) mOpenGL::DeleteGLContext();
  if (mOpenGL::State().ExtenderHdc == dc_) mOpenGL::State().ExtenderHdc = nullptr;
  if (dc_) ReleaseDC(wnd_, dc_);
  if (wnd_) DestroyWindow(wnd_);
}

bool OpenGLOrTell(HWND owner, std::string_view title) {
  if (mOpenGL::OpenGLAvailable()) return true;
  win32::MsgBox(owner, kOpenGLMissingText, title, MB_OK | MB_ICONEXCLAMATION);
  return false;
}

}  // namespace shell
