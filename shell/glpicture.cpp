#include "shell/glpicture.h"

#include "gl/mopengl.h"
#include "win32/ui.h"

namespace shell {

GLPicture::~GLPicture() {
  if (dc() && wglGetCurrentDC() == dc()) mOpenGL::DeleteGLContext();
}

bool OpenGLOrTell(HWND owner, std::string_view title) {
  if (mOpenGL::OpenGLAvailable()) return true;
  win32::MsgBox(owner, kOpenGLMissingText, title, MB_OK | MB_ICONEXCLAMATION);
  return false;
}

}  // namespace shell
