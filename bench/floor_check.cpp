// The floor of VelmoraCheck --no-tests: a console program that makes a
// window, a context on it, reads the four OpenGL strings and prints them.
#include <windows.h>
#include <GL/gl.h>

#include <cstdio>
#include <initializer_list>

int main() {
  HWND wnd = CreateWindowA("STATIC", "", WS_POPUP, 0, 0, 20, 20, nullptr, nullptr,
                           GetModuleHandleA(nullptr), nullptr);
  HDC dc = GetDC(wnd);
  PIXELFORMATDESCRIPTOR pfd{};
  DescribePixelFormat(dc, 1, sizeof pfd, &pfd);
  SetPixelFormat(dc, 1, &pfd);
  HGLRC rc = wglCreateContext(dc);
  wglMakeCurrent(dc, rc);
  int missing = 0;
  for (GLenum name : {GL_VENDOR, GL_RENDERER, GL_VERSION, GL_EXTENSIONS}) {
    const GLubyte* text = glGetString(name);
    if (text)
      std::printf("%s\r\n", reinterpret_cast<const char*>(text));
    else
      ++missing;
  }
  wglMakeCurrent(nullptr, nullptr);
  wglDeleteContext(rc);
  ReleaseDC(wnd, dc);
  DestroyWindow(wnd);
  return missing;
}
