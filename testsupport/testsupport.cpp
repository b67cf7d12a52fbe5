#include "testsupport/testsupport.h"

#include <GL/gl.h>
#include <psapi.h>

#include <utility>

#include "gl/mopengl.h"
#include "gl/opengl32_entries.h"
#include "win32/ui.h"

namespace mOpenGL::slots {
extern decltype(&::glReadPixels) glReadPixels asm(VELMORA_GL_IMPORT_NAME(glReadPixels, 28));
}  // namespace mOpenGL::slots

namespace testsupport {
namespace {

PictureFault::Alter g_alter;
decltype(&::glReadPixels) g_readPixels = nullptr;  // the real entry point

void APIENTRY AlteredReadPixels(GLint x, GLint y, GLsizei width, GLsizei height, GLenum format,
                                GLenum type, GLvoid* pixels) {
  g_readPixels(x, y, width, height, format, type, pixels);
  if (format == GL_RGB && type == GL_UNSIGNED_BYTE && g_alter)
    g_alter(width, height, static_cast<unsigned char*>(pixels));
}

}  // namespace

// The slots are filled when OpenGL loads, so it is loaded before the wrap.
PictureFault::PictureFault(Alter alter) {
  mOpenGL::LoadOpenGL();
  g_alter = std::move(alter);
  g_readPixels = std::exchange(mOpenGL::slots::glReadPixels, &AlteredReadPixels);
}

PictureFault::~PictureFault() {
  mOpenGL::slots::glReadPixels = g_readPixels;
  g_alter = nullptr;
}

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

namespace {

BOOL CALLBACK CloseIfWaiting(HWND wnd, LPARAM) {
  if (!IsWindowVisible(wnd)) return TRUE;
  HWND close = FindWindowExA(wnd, nullptr, "Button", "Close");
  if (close && IsWindowVisible(close)) {
    HWND view = FindWindowExA(wnd, nullptr, "Velmora_GLView", nullptr);
    if (view) SendMessageA(view, WM_LBUTTONUP, 0, MAKELPARAM(3, 3));
    PostMessageA(close, BM_CLICK, 0, 0);
  }
  return TRUE;
}

void CALLBACK CloseWaitingWindows(HWND, UINT, UINT_PTR, DWORD) {
  EnumThreadWindows(GetCurrentThreadId(), CloseIfWaiting, 0);
}

}  // namespace

WaitingWindowCloser::WaitingWindowCloser() : timer_(SetTimer(nullptr, 0, 150, CloseWaitingWindows)) {}

WaitingWindowCloser::~WaitingWindowCloser() { KillTimer(nullptr, timer_); }

namespace {
ModalDeadline* g_deadline = nullptr;

// A window whose owner is disabled is what a modal loop waits for.
BOOL CALLBACK DestroyIfModal(HWND wnd, LPARAM) {
  HWND owner = GetWindow(wnd, GW_OWNER);
  if (IsWindowVisible(wnd) && (!owner || !IsWindowEnabled(owner))) DestroyWindow(wnd);
  return TRUE;
}
}  // namespace

ModalDeadline::ModalDeadline(UINT ms) : timer_(SetTimer(nullptr, 0, ms, Fire)) { g_deadline = this; }

ModalDeadline::~ModalDeadline() {
  KillTimer(nullptr, timer_);
  g_deadline = nullptr;
}

void CALLBACK ModalDeadline::Fire(HWND, UINT, UINT_PTR id, DWORD) {
  KillTimer(nullptr, id);
  if (!g_deadline) return;
  g_deadline->expired_ = true;
  EnumThreadWindows(GetCurrentThreadId(), DestroyIfModal, 0);
}

size_t PrivateBytes() {
  PROCESS_MEMORY_COUNTERS_EX pmc{};
  pmc.cb = sizeof pmc;
  GetProcessMemoryInfo(GetCurrentProcess(), reinterpret_cast<PROCESS_MEMORY_COUNTERS*>(&pmc),
                       sizeof pmc);
  return pmc.PrivateUsage ? pmc.PrivateUsage : pmc.PagefileUsage;
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
