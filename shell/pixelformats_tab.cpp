// The "Pixel Formats" tab opens the pixel-format browser.
#include "pfbrowser/fpixelformat.h"
#include "shell/main_window.h"

namespace shell {

// Like every OpenGL surface, the browser's opener sets up OpenGL_Pbx(1)
// for the best format of the mode first. Failures along the way are not
// reported here: the browser lists the formats of its own window whatever
// happened to the picture.
void VelmoraMain::CheckPixelFormats_SetLbl_Click() {
  if (!OpenGLOrTell(hwnd(), "Pixel Formats")) return;
  std::unique_ptr<GLPicture> picture = LoadOpenGLPicture();  // OpenGL_Pbx(1)
  pfbrowser::FPixelFormat browser;
  browser.SetPixelFormatDC(picture->dc());
  mOpenGL::Surface surface(picture->dc());
  SetCurrentOGLPixelFormat(0);
  mOpenGL::InitRC();
  browser.Show(hwnd());
  // Leaving the scope unloads OpenGL_Pbx(1) and the context made on it.
}

}  // namespace shell
