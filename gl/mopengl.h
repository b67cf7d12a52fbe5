#pragma once
// The OpenGL device layer: one program-wide current device context
// (ExtenderHdc), one rendering context, the descriptor of the format in use
// and the text of recorded failures. Windows reach OpenGL only through here.
#include <windows.h>
#include <GL/gl.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace mOpenGL {

// Where the layer reads the user's rendering choice (the main window).
class ModeSource {
 public:
  virtual ~ModeSource() = default;
  virtual bool CurrentSH() const = 0;            // true = hardware wanted
  virtual int CurrentOGLPixelFormat() const = 0;  // <= 0: best of the mode
  virtual void SetCurrentOGLPixelFormat(int index) = 0;
};
void SetModeSource(ModeSource* source);

// A failure raised inside the layer that its handler let through (the
// report reads number 2000 and the description).
struct RuntimeError {
  long Number = 0;
  std::string Source;
  std::string Description;
};

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
void ClearErr();   // forgets LastDllError and Err

// The platform calls of the layer, in one table so that tests can make a
// call fail; ResetCalls puts the real ones back.
struct Calls {
  int(WINAPI* DescribePixelFormat)(HDC, int, UINT, PIXELFORMATDESCRIPTOR*);
  BOOL(WINAPI* SetPixelFormat)(HDC, int, const PIXELFORMATDESCRIPTOR*);
  int(WINAPI* GetPixelFormat)(HDC);
  HGLRC(WINAPI* CreateContext)(HDC);
  BOOL(WINAPI* MakeCurrent)(HDC, HGLRC);
  BOOL(WINAPI* DeleteContext)(HGLRC);
  HGLRC(WINAPI* GetCurrentContext)();
  HDC(WINAPI* GetCurrentDC)();
  HMODULE(WINAPI* LoadDll)(LPCSTR);  // LoadLibraryA
};
Calls& Platform();
void ResetPlatform();

// OpenGL is loaded at run time (gl/opengl32.cpp): the program starts and
// reports without it.
inline constexpr char kOpenGLDll[] = "opengl32.dll";
// Loads the DLL once and points every GL and WGL call at it; true when it
// loaded with every entry point. Any GL call does this on first use.
bool LoadOpenGL();
// Whether OpenGL can be used: the DLL loads now (asked through Platform(),
// so tests can take it away) and every entry point was found.
bool OpenGLAvailable();

// Pixel-format flags the layer decides by.
inline constexpr DWORD kDoubleBuffer = PFD_DOUBLEBUFFER;          // 0x1
inline constexpr DWORD kDrawToWindow = PFD_DRAW_TO_WINDOW;        // 0x4
inline constexpr DWORD kSupportOpenGL = PFD_SUPPORT_OPENGL;       // 0x20
inline constexpr DWORD kGenericFormat = PFD_GENERIC_FORMAT;       // 0x40
inline constexpr DWORD kNeedPalette = PFD_NEED_PALETTE;           // 0x80
inline constexpr DWORD kGenericAccelerated = PFD_GENERIC_ACCELERATED;  // 0x1000

enum class FormatClass { ICD, MCD, Generic };
FormatClass Classify(DWORD flags);

// The format to use for a request, over formats 1..count whose flags
// flagsOf(i) gives; no Windows calls, so it runs over made-up lists too.
int PickPixelFormat(int count, int requested, bool hardware,
                    const std::function<DWORD(int)>& flagsOf);
// Palette for a palette format: 2^cColorBits entries (at most 256);
// nothing when a colour channel has no bits.
std::optional<std::vector<PALETTEENTRY>> PaletteEntries(const PIXELFORMATDESCRIPTOR& pfd);
// The error list text for codes as glGetError returned them (without the
// terminating 0, which the text always ends with).
std::string FormatGLErrorList(const std::vector<GLenum>& codes);

int FindPixelFormat(HDC hdc, int requested);
void SetDCPixelFormat(HDC hdc);
bool InitRC();
void MakeCurrentGL();
// Makes no context current and deletes the current one; returns the deleted
// context (nullptr when there was none).
HGLRC DeleteGLContext();
std::string GLErrorList();
int GetPixelFormatCount();
std::string GetGLErrorText();

// Text at a raster position with 96 bitmap-font lists (codes 32..127) made
// from the font of ExtenderHdc; listBase 0 builds them and is written back.
void DrawTextGL(const std::string& text, float x, float y, float z, GLuint& listBase);

}  // namespace mOpenGL
