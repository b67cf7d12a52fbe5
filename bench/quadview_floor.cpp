// The floor of the quad-view benchmark: the same scene list drawn into four
// OpenGL views as directly as a program can, with nothing else around it.
//   quadview_floor <view width> <view height> <pixel format> <redraws>
// prints the median milliseconds of one redraw of all four views.
#include <windows.h>
#include <GL/gl.h>

#include <cstdio>
#include <cstdlib>
#include <vector>

#include "bench/bench_util.h"
#include "quadview/scene.h"

namespace {

LRESULT CALLBACK ViewProc(HWND wnd, UINT msg, WPARAM wp, LPARAM lp) {
  if (msg == WM_ERASEBKGND) return 1;
  if (msg == WM_PAINT) {
    ValidateRect(wnd, nullptr);
    return 0;
  }
  return DefWindowProcA(wnd, msg, wp, lp);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 5) return 2;
  const int w = std::atoi(argv[1]), h = std::atoi(argv[2]), format = std::atoi(argv[3]),
            redraws = std::atoi(argv[4]);
  WNDCLASSA wc{};
  wc.style = CS_OWNDC;
  wc.lpfnWndProc = ViewProc;
  wc.hInstance = GetModuleHandleA(nullptr);
  wc.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
  wc.lpszClassName = "Velmora_QuadFloor";
  if (!RegisterClassA(&wc)) return 3;
  HWND top = CreateWindowA("Velmora_QuadFloor", "floor", WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN, 0,
                           0, 2 * w + 60, 2 * h + 80, nullptr, nullptr, wc.hInstance, nullptr);
  HWND views[4];
  HDC dcs[4];
  HGLRC rcs[4];
  GLuint lists[4];
  for (int k = 0; k < 4; ++k) {
    views[k] = CreateWindowA("Velmora_QuadFloor", "", WS_CHILD | WS_VISIBLE, 10 + (k / 2) * (w + 10),
                             10 + (k % 2) * (h + 10), w, h, top, nullptr, wc.hInstance, nullptr);
    dcs[k] = GetDC(views[k]);
    PIXELFORMATDESCRIPTOR pfd{};
    DescribePixelFormat(dcs[k], format, sizeof pfd, &pfd);
    if (!SetPixelFormat(dcs[k], format, &pfd)) return 4;
    rcs[k] = wglCreateContext(dcs[k]);
    if (!rcs[k] || !wglMakeCurrent(dcs[k], rcs[k])) return 5;
    lists[k] = quadview::CompileSceneList();
  }
  ShowWindow(top, SW_SHOW);
  UpdateWindow(top);

  auto redrawAll = [&] {
    for (int k = 0; k < 4; ++k) {
      wglMakeCurrent(dcs[k], rcs[k]);
      glClearColor(1, 1, 1, 0);
      glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
      glEnable(GL_DEPTH_TEST);
      glViewport(0, 0, w, h);
      glLoadIdentity();
      const quadview::ViewRotation& r = quadview::kViewRotations[k];
      glRotatef(r.z, 0, 0, 1);
      glRotatef(r.y, 0, 1, 0);
      glRotatef(r.x, 1, 0, 0);
      glPointSize(3);
      glCallList(lists[k]);
      glFlush();
      SwapBuffers(dcs[k]);
    }
  };
  for (int i = 0; i < 3; ++i) redrawAll();
  std::vector<double> times;
  for (int i = 0; i < redraws; ++i) {
    double t = bench::NowMs();
    redrawAll();
    times.push_back(bench::NowMs() - t);
  }
  std::printf("%.3f\n", bench::Median(times));
  for (int k = 0; k < 4; ++k) {
    wglMakeCurrent(nullptr, nullptr);
    wglDeleteContext(rcs[k]);
    ReleaseDC(views[k], dcs[k]);
  }
  DestroyWindow(top);
  return 0;
}
