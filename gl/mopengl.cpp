#include "gl/mopengl.h"

#include "gl/device_state.h"

#include <cmath>
#include <new>
#include <stdexcept>

#include "win32/handle.h"
#include "win32/ui.h"

namespace mOpenGL {
namespace {

ModeSource* g_mode = nullptr;

Calls RealCalls() {
  return Calls{&::DescribePixelFormat, &::SetPixelFormat, &::GetPixelFormat,
               &::wglCreateContext,    &::wglMakeCurrent, &::wglDeleteContext,
               &::wglGetCurrentContext, &::wglGetCurrentDC, &::LoadLibraryA};
}

// Runs a platform call and keeps what GetLastError said right after it.
template <class F>
auto Tracked(F call) {
  SetLastError(0);
  auto result = call();
  State().LastDllError = GetLastError();
  return result;
}

std::string Num(unsigned long v) { return std::to_string(v); }
std::string Handle(const void* h) { return std::to_string(reinterpret_cast<UINT_PTR>(h)); }

void AppendError(const std::string& entry) { State().GLErrorText += "\r\n" + entry; }

std::string ApiEntry(DWORD code, const std::string& call) {
  return "API Error: " + Num(code) + " - " + call;
}
std::string DllEntry(DWORD code, const std::string& call, const std::string& glList) {
  return "VB DLL Error: " + Num(code) + " - " + call + ", OpenGL Error: \r" + glList;
}
std::string GLEntry(const std::string& glList, const std::string& call) {
  return "OpenGL Error: \r" + glList + " - " + call;
}

// The layer's boxes belong to the window the user is working in (or, with
// none, to the whole program), so that nothing else of the program takes
// input while one is up: no second InitRC can start inside the first.
int LayerBox(const std::string& text, const std::string& title, UINT style) {
  HWND owner = GetActiveWindow();
  return win32::MsgBox(owner, text, title, owner ? style : style | MB_TASKMODAL);
}

enum class Handled { Continue, Abort };

// The layer's error handler: silent when a context exists by now or the
// failing call's last error is above 32, otherwise the Abort/Retry/Ignore
// box. NOTE: Retry ends the program although the text promises it acts
// like Abort; that is how the box has always behaved.
Handled HandleFailure(const std::string& levelSuffix, DWORD lastDll) {
  auto& s = State();
  if (s.hGLRC || Platform().GetCurrentContext() || lastDll > 32) return Handled::Continue;
  std::string text = std::string("Invalid Context") + "\n" + "Error #: " + Num(lastDll) + " " +
                     "If you select Ignore, this may crash your system!" + "\n" +
                     "Retry will act the same as Abort.";
  int answer = LayerBox(text, std::string(win32::kAppTitle) + levelSuffix,
                        MB_ABORTRETRYIGNORE | MB_ICONHAND);
  if (answer == IDRETRY) win32::EndProgram();
  return answer == IDABORT ? Handled::Abort : Handled::Continue;
}

// Second level of InitRC: creates the context for ExtenderHdc.
Handled CreateContext() {
  auto& s = State();
  const std::string call = "hGLRC = wglCreateContext(ExtenderHdc)";
  s.hGLRC = Tracked([&] { return Platform().CreateContext(s.ExtenderHdc); });
  DWORD sys = s.LastDllError;
  DWORD lastDll = s.LastDllError;
  auto retry = [&] {
    if (!s.hGLRC) {
      s.hGLRC = Tracked([&] { return Platform().CreateContext(s.ExtenderHdc); });
      lastDll = s.LastDllError;
    }
  };
  if (sys == ERROR_NOT_ENOUGH_MEMORY || sys == ERROR_ALREADY_EXISTS) {
    ClearErr();
    retry();
  } else if (sys != 0) {
    AppendError(GLEntry(GLErrorList(), call));
    retry();
  } else if (!s.hGLRC) {
    // A success that leaves no error code is not worth an entry; a failure
    // without a code is.
    AppendError(ApiEntry(sys, call));
  }
  if (s.hGLRC) return Handled::Continue;
  s.Err = {static_cast<long>(lastDll), "InitRC",
           "Cannot Create GL Context  " + Handle(s.hGLRC) + " = wglCreateContext(" +
               Handle(s.ExtenderHdc) + ") "};
  return HandleFailure(" - InitRC - 2nd Level", lastDll);
}

}  // namespace

void SetModeSource(ModeSource* source) { g_mode = source; }

DeviceState& State() {
  static DeviceState state;
  return state;
}

void ClearErr() {
  State().LastDllError = 0;
  State().Err = {};
}

const RuntimeError& LastRuntimeError() { return State().Err; }

Surface::Surface(HDC dc) : previous_(std::exchange(State().ExtenderHdc, dc)) {}
Surface::~Surface() { State().ExtenderHdc = previous_; }

HDC CurrentSurface() { return State().ExtenderHdc; }

const PIXELFORMATDESCRIPTOR& Descriptor() { return State().ModulePFD; }

RenderingContext TakeCurrentContext() { return RenderingContext(Platform().GetCurrentContext()); }

bool DeleteRenderingContext(HGLRC rc) {
  if (!rc) return true;
  if (Platform().GetCurrentContext() == rc) Platform().MakeCurrent(nullptr, nullptr);
  if (State().hGLRC == rc) State().hGLRC = nullptr;
  return Platform().DeleteContext(rc) != FALSE;
}

bool Bind(const RenderingContext& rc, HDC dc) {
  if (!dc || !rc) return false;
  auto& p = Platform();
  if ((p.GetCurrentContext() != rc.get() || p.GetCurrentDC() != dc) && !p.MakeCurrent(dc, rc.get()))
    return false;
  State().hGLRC = rc.get();
  return true;
}

Calls& Platform() {
  static Calls calls = RealCalls();
  return calls;
}

void ResetPlatform() { Platform() = RealCalls(); }

bool OpenGLAvailable() {
  win32::Module dll(Platform().LoadDll(kOpenGLDll));
  return dll && LoadOpenGL();
}

int PickPixelFormat(int count, int requested, bool hardware,
                    const std::function<DWORD(int)>& flagsOf) {
  if (count < 1) return 1;
  // An explicit index is never checked against the mode.
  if (requested > 0 && requested <= count) return requested;
  int fallback = requested;
  for (int i = 1; i <= count; ++i) {
    DWORD flags = flagsOf(i);
    if (!DrawsDoubleBufferedOpenGLToAWindow(flags)) continue;
    bool software = Classify(flags) == FormatClass::Generic;
    if (hardware != software) return i;
    // NOTE: with hardware wanted and none present, the first software
    // format is the fallback for a request of 0 only; other requests come
    // back unchanged and fail later in SetPixelFormat, as they always have.
    if (hardware && fallback == 0) fallback = i;
  }
  return fallback != 0 ? fallback : 1;
}

std::optional<std::vector<PALETTEENTRY>> PaletteEntries(const PIXELFORMATDESCRIPTOR& pfd) {
  // A channel of no bits has no colours to spread: the palette cannot be made.
  if (pfd.cRedBits == 0 || pfd.cGreenBits == 0 || pfd.cBlueBits == 0) return std::nullopt;
  int bits = pfd.cColorBits < 8 ? pfd.cColorBits : 8;
  int n = 1 << bits;
  std::vector<PALETTEENTRY> entries(static_cast<size_t>(n));
  auto component = [](int i, int b, int s) {
    // i is below 256, so a shift of 32 or more leaves nothing of it.
    if (s >= 32) return BYTE{0};
    double mask = std::ldexp(1.0, b) - 1;
    double v = static_cast<double>(i >> s);
    if (v > mask) v = std::fmod(v, mask + 1);  // the channel's own bits only
    return static_cast<BYTE>(std::floor(v * 255 / mask));
  };
  for (int i = 0; i < n; ++i) {
    entries[i].peRed = component(i, pfd.cRedBits, pfd.cRedShift);
    entries[i].peGreen = component(i, pfd.cGreenBits, pfd.cGreenShift);
    entries[i].peBlue = component(i, pfd.cBlueBits, pfd.cBlueShift);
    entries[i].peFlags = 0;
  }
  return entries;
}

std::string FormatGLErrorList(const std::vector<GLenum>& codes) {
  std::string text;
  for (size_t i = 0; i < codes.size(); ++i) text += (i ? "\r\n" : "") + Num(codes[i]);
  // NOTE: the list always ends with the terminating 0 on its own line.
  return text + "\r\n0";
}

int FindPixelFormat(HDC hdc, int requested) {
  auto& s = State();
  bool hardware = g_mode && g_mode->CurrentSH();
  s.ModulePFD = {};
  s.PixelFormatCount = Platform().DescribePixelFormat(hdc, 1, 40, &s.ModulePFD);
  return PickPixelFormat(s.PixelFormatCount, requested, hardware, [&](int i) {
    s.ModulePFD = {};
    Platform().DescribePixelFormat(hdc, i, 40, &s.ModulePFD);
    return s.ModulePFD.dwFlags;
  });
}

void SetDCPixelFormat(HDC hdc) {
  auto& s = State();
  try {
    int index = FindPixelFormat(hdc, g_mode ? g_mode->CurrentOGLPixelFormat() : 0);
    s.PixelFormatCount = Platform().DescribePixelFormat(hdc, index, 40, &s.ModulePFD);
    BOOL ok = Tracked([&] { return Platform().SetPixelFormat(hdc, index, &s.ModulePFD); });
    if (!ok) {
      DWORD dll = s.LastDllError;
      DWORD api = GetLastError();
      std::string call = "SetPixelFormat(hdc, " + std::to_string(index) + ", ModulePFD) = False";
      std::string entry = DllEntry(dll, call, GLErrorList()) + ", " + ApiEntry(api, call);
      LayerBox(entry, "SetDCPixelFormat", MB_OK);
      AppendError(entry);
      return;
    }
    if (g_mode) g_mode->SetCurrentOGLPixelFormat(index);
    if (s.ModulePFD.dwFlags & kNeedPalette) {
      auto made = PaletteEntries(s.ModulePFD);
      if (!made) throw std::domain_error("a colour channel of no bits");
      const auto& entries = *made;
      std::vector<BYTE> buf(sizeof(LOGPALETTE) + entries.size() * sizeof(PALETTEENTRY));
      auto* lp = reinterpret_cast<LOGPALETTE*>(buf.data());
      lp->palVersion = 0x300;
      lp->palNumEntries = static_cast<WORD>(entries.size());
      std::copy(entries.begin(), entries.end(), lp->palPalEntry);
      s.hPalette = CreatePalette(lp);
      SelectPalette(hdc, s.hPalette, FALSE);
      RealizePalette(hdc);
    }
  } catch (const std::exception&) {
    LayerBox("SetDCPixelFormat Error", win32::kAppTitle, MB_OK);
  }
}

bool InitRC() {
  auto& s = State();
  s.hPalette = nullptr;
  glFlush();
  s.hGLRC = Tracked([] { return Platform().GetCurrentContext(); });
  DWORD sys = GetLastError();
  if (s.LastDllError != 0) {
    ClearErr();
  } else if (sys != 0) {
    LayerBox("API Error: " + Num(sys), "hGLRC = wglGetCurrentContext()", MB_OK);
    SetLastError(0);
  }
  if (!s.hGLRC) {
    SetDCPixelFormat(s.ExtenderHdc);
    s.hGLRC = Platform().GetCurrentContext();
    if (!s.hGLRC && CreateContext() == Handled::Abort) return false;
  }
  if (Tracked([&] { return Platform().MakeCurrent(s.ExtenderHdc, s.hGLRC); })) {
    if (s.LastDllError != 0) ClearErr();
  } else {
    DWORD code = s.LastDllError;
    if (code != 0) {
      const std::string call = "wglMakeCurrent(ExtenderHdc, hGLRC) = False";
      std::string list = GLErrorList();
      LayerBox(call + " - OpenGL Error: \r" + list, win32::kAppTitle, MB_OK);
      AppendError(DllEntry(code, call, list));
    }
  }
  return true;
}

void MakeCurrentGL() {
  auto& s = State();
  if (Tracked([&] { return Platform().GetPixelFormat(s.ExtenderHdc); }) == 0) {
    if (s.LastDllError == ERROR_INVALID_PIXEL_FORMAT) ClearErr();
    SetDCPixelFormat(s.ExtenderHdc);
  }
  HGLRC current = Platform().GetCurrentContext();
  if (current && Platform().GetCurrentDC() != s.ExtenderHdc) {
    if (Tracked([&] { return Platform().MakeCurrent(s.ExtenderHdc, current); }) &&
        s.LastDllError != 0)
      ClearErr();
  }
}

HGLRC DeleteGLContext() {
  auto& s = State();
  HGLRC current = Platform().GetCurrentContext();
  if (!current) return nullptr;
  Platform().MakeCurrent(nullptr, nullptr);
  Platform().DeleteContext(current);
  if (s.hGLRC == current) s.hGLRC = nullptr;
  s.ExtenderHdc = nullptr;
  return current;
}

std::string GLErrorList() {
  std::vector<GLenum> codes;
  // Without a current context there is no queue to drain: glGetError then
  // answers GL_INVALID_OPERATION for ever on some drivers. The bound guards
  // against a context that is lost while we drain.
  if (!Platform().GetCurrentContext()) return FormatGLErrorList(codes);
  for (int i = 0; i < 64; ++i) {
    GLenum e = glGetError();
    if (e == GL_NO_ERROR) break;
    codes.push_back(e);
  }
  return FormatGLErrorList(codes);
}

int GetPixelFormatCount() { return State().PixelFormatCount; }

std::string GetGLErrorText() { return State().GLErrorText; }

void DrawTextGL(const std::string& text, float x, float y, float z, GLuint& listBase) {
  if (listBase == 0) {
    listBase = glGenLists(96);
    if (!wglUseFontBitmapsA(State().ExtenderHdc, 32, 96, listBase)) return;
    SetLastError(0);
  }
  glListBase(listBase - 32);
  std::vector<GLubyte> codes(text.begin(), text.end());
  glRasterPos3f(x, y, z);
  glCallLists(static_cast<GLsizei>(codes.size()), GL_UNSIGNED_BYTE, codes.data());
}

}  // namespace mOpenGL
