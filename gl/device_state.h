#pragma once
// The device layer's own state. Only gl/ and the tests read it; the
// windows use gl/mopengl.h (Surface, Descriptor, RenderingContext).
#include "gl/mopengl.h"

namespace mOpenGL {

struct DeviceState {
  HDC ExtenderHdc = nullptr;
  HGLRC hGLRC = nullptr;
  PIXELFORMATDESCRIPTOR ModulePFD{};
  int PixelFormatCount = 0;
  HPALETTE hPalette = nullptr;
  std::string GLErrorText;
  // What GetLastError said right after the last call the layer tracked.
  DWORD LastDllError = 0;
  RuntimeError Err;
};
DeviceState& State();

}  // namespace mOpenGL
