#pragma once
// A loaded element of the main window's OpenGL picture box: a hidden child
// window with its own device context that the device layer can set a pixel
// format on (a window takes a pixel format only once, so each use loads a
// fresh one). Unloading it deletes a context still current on it.
#include <windows.h>

#include <string_view>

#include "win32/window.h"

namespace shell {

class GLPicture {
 public:
  GLPicture(HWND parent, RECT placeInPixels) : surface_(parent, placeInPixels, WS_CLIPSIBLINGS) {}
  ~GLPicture();
  GLPicture(const GLPicture&) = delete;
  GLPicture& operator=(const GLPicture&) = delete;

  HWND hwnd() const { return surface_.hwnd(); }
  HDC dc() const { return surface_.dc(); }

 private:
  win32::DrawingWindow surface_;
};

inline constexpr char kOpenGLMissingText[] =
    "OpenGL is not available on this computer (opengl32.dll could not be loaded), "
    "so this check cannot be run.";

// True when OpenGL can be used; otherwise tells the user so in a box with
// this title and returns false, and the caller runs nothing.
bool OpenGLOrTell(HWND owner, std::string_view title);

}  // namespace shell
