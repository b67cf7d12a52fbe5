#include "gl/mopengl.h"
#include "gl/device_state.h"

#include <gtest/gtest.h>

#include <array>
#include <stdexcept>

#include "gl/opengl32_entries.h"
#include "testsupport/testsupport.h"
#include "win32/ui.h"

namespace {

using mOpenGL::PickPixelFormat;

constexpr DWORD kIcd = 0x25;        // window, OpenGL, double buffer
constexpr DWORD kIcdSingle = 0x24;  // window, OpenGL
constexpr DWORD kGen = 0x65;        // generic, double-buffered
constexpr DWORD kGenSingle = 0x64;
constexpr DWORD kMcd = 0x1065;
constexpr DWORD kGenNoWindow = 0x61;

TEST(PickPixelFormat, Table) {
  const struct {
    const char* name;
    std::vector<DWORD> formats;  // flags of formats 1..n
    int requested;
    bool hardware;
    int expected;
  } cases[] = {
      {"software request 0 skips three ICDs", {kIcd, kIcd, kIcd, kGen}, 0, false, 4},
      {"hardware without hardware takes first usable generic", {kGenSingle, kGen}, 0, true, 2},
      {"software without generic double buffer gives 1", {kIcd, kGenSingle}, 0, false, 1},
      {"explicit index beyond the count comes back", {kIcd, kIcd, kIcd, kIcd, kIcd}, 7, false, 7},
      {"explicit index is never checked (software)", {kGen, kGen, kIcd, kGen, kGen}, 3, false, 3},
      {"explicit index is never checked (hardware)", {kGen, kGen, kGen, kGen, kGen}, 3, true, 3},
      {"hardware takes MCD before later ICD", {kGen, kGenSingle, kMcd, kIcd}, 0, true, 3},
      {"hardware prefers ICD over earlier generic", {kGen, kIcdSingle, kIcd}, 0, true, 3},
      {"negative request without hardware comes back", {kGen, kGen}, -2, true, -2},
      {"negative request takes the mode's format", {kIcd, kGen}, -2, false, 2},
      {"no formats gives 1", {}, 0, true, 1},
      {"no formats gives 1 even for a request", {}, 5, false, 1},
      {"formats not drawing to a window are skipped", {kGenNoWindow, kGenNoWindow}, 0, false, 1},
      {"software request 0 takes the lowest generic", {kIcd, kGen, kGen}, 0, false, 2},
  };
  for (const auto& c : cases) {
    int count = static_cast<int>(c.formats.size());
    EXPECT_EQ(PickPixelFormat(count, c.requested, c.hardware,
                              [&](int i) { return c.formats.at(static_cast<size_t>(i - 1)); }),
              c.expected)
        << c.name;
  }
}

PIXELFORMATDESCRIPTOR PaletteFormat(BYTE colorBits, std::array<BYTE, 6> bitsAndShifts) {
  PIXELFORMATDESCRIPTOR pfd{};
  pfd.cColorBits = colorBits;
  pfd.cRedBits = bitsAndShifts[0];
  pfd.cRedShift = bitsAndShifts[1];
  pfd.cGreenBits = bitsAndShifts[2];
  pfd.cGreenShift = bitsAndShifts[3];
  pfd.cBlueBits = bitsAndShifts[4];
  pfd.cBlueShift = bitsAndShifts[5];
  return pfd;
}

TEST(PaletteEntries, Table) {
  const auto rgb332 = PaletteFormat(8, {3, 0, 3, 3, 2, 6});
  const struct {
    const char* name;
    PIXELFORMATDESCRIPTOR pfd;
    size_t count;
    int entry;
    std::array<int, 3> rgb;
  } cases[] = {
      {"3-3-2 entry 7 is red", rgb332, 256, 7, {255, 0, 0}},
      {"3-3-2 0b01'010'011", rgb332, 256, 0x53, {109, 72, 85}},
      {"4 bits give 16 entries", PaletteFormat(4, {1, 0, 2, 1, 1, 3}), 16, 2, {0, 85, 0}},
      {"more than 8 colour bits stop at 256", PaletteFormat(16, {5, 0, 6, 5, 5, 11}), 256, 31,
       {255, 0, 0}},
      {"a shift of 32 or more leaves 0", PaletteFormat(8, {3, 0, 3, 40, 2, 32}), 256, 255,
       {255, 0, 0}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    auto e = mOpenGL::PaletteEntries(c.pfd);
    ASSERT_TRUE(e);
    ASSERT_EQ(e->size(), c.count);
    const PALETTEENTRY& p = (*e)[static_cast<size_t>(c.entry)];
    EXPECT_EQ((std::array<int, 4>{p.peRed, p.peGreen, p.peBlue, p.peFlags}),
              (std::array<int, 4>{c.rgb[0], c.rgb[1], c.rgb[2], 0}));
  }
  EXPECT_FALSE(mOpenGL::PaletteEntries(PaletteFormat(8, {3, 0, 0, 3, 2, 6})))
      << "a channel of no bits makes no palette";
}

TEST(FormatGLErrorList, EndsWithTerminatingZero) {
  EXPECT_EQ(mOpenGL::FormatGLErrorList({1280, 1281}), "1280\r\n1281\r\n0");
}

TEST(LoadOpenGL, EverySlotPointsAtTheDllsOwnFunction) {
  ASSERT_TRUE(mOpenGL::LoadOpenGL());
  HMODULE dll = GetModuleHandleA(mOpenGL::kOpenGLDll);
  ASSERT_NE(dll, nullptr);
  // &::name reads the import slot the calls go through.
#define VELMORA_GL_CHECK(name, bytes) \
  EXPECT_EQ(reinterpret_cast<FARPROC>(&::name), GetProcAddress(dll, #name)) << #name;
  VELMORA_GL_ENTRY_POINTS(VELMORA_GL_CHECK)
#undef VELMORA_GL_CHECK
}

HMODULE WINAPI NoDll(LPCSTR) {
  SetLastError(ERROR_MOD_NOT_FOUND);
  return nullptr;
}

TEST(OpenGLAvailable, FollowsWhetherTheDllLoads) {
  EXPECT_TRUE(mOpenGL::OpenGLAvailable());
  mOpenGL::Platform().LoadDll = &NoDll;
  EXPECT_FALSE(mOpenGL::OpenGLAvailable());
  mOpenGL::ResetPlatform();
  EXPECT_TRUE(mOpenGL::OpenGLAvailable());
}

// The rendering choice as the main window would hold it.
struct FakeMode : mOpenGL::ModeSource {
  bool hardware = false;
  int index = 0;
  bool CurrentSH() const override { return hardware; }
  int CurrentOGLPixelFormat() const override { return index; }
  void SetCurrentOGLPixelFormat(int i) override { index = i; }
};

int g_createCalls = 0;
DWORD g_failCode = 0;
int g_failTimes = 0;

HGLRC WINAPI CountingCreate(HDC dc) {
  ++g_createCalls;
  if (g_failTimes > 0) {
    --g_failTimes;
    SetLastError(g_failCode);
    return nullptr;
  }
  return wglCreateContext(dc);
}

BOOL WINAPI FailingMakeCurrent(HDC, HGLRC) {
  SetLastError(ERROR_INVALID_PIXEL_FORMAT);
  return FALSE;
}

// A driver whose formats all need a palette (8-bit 3-3-2, generic,
// double-buffered); SetPixelFormat answers as g_setOk says.
BYTE g_greenBits = 3;
bool g_setOk = true;
int WINAPI PaletteDescribe(HDC, int, UINT, PIXELFORMATDESCRIPTOR* pfd) {
  if (pfd) {
    *pfd = PaletteFormat(8, {3, 0, g_greenBits, 3, 2, 6});
    pfd->dwFlags = kGen | mOpenGL::kNeedPalette;
  }
  return 3;
}
BOOL WINAPI FakeSetPixelFormat(HDC, int, const PIXELFORMATDESCRIPTOR*) {
  if (!g_setOk) SetLastError(ERROR_INVALID_PIXEL_FORMAT);
  return g_setOk;
}

class DeviceLayer : public ::testing::Test {
 protected:
  void SetUp() override {
    mOpenGL::State() = {};
    mOpenGL::SetModeSource(&mode);
    mOpenGL::Platform().CreateContext = &CountingCreate;
    g_createCalls = 0;
    g_failTimes = 0;
    ASSERT_TRUE(window.dc());
    mOpenGL::State().ExtenderHdc = window.dc();
  }
  void TearDown() override {
    mOpenGL::DeleteGLContext();
    mOpenGL::ResetPlatform();
    mOpenGL::SetModeSource(nullptr);
    win32::SetEndProgramHook(nullptr);
  }
  FakeMode mode;
  testsupport::PlainWindow window;
  testsupport::MsgBoxRecorder boxes;
};

TEST_F(DeviceLayer, InitRCPicksSetsAndReportsTheFormatAndMakesOneContext) {
  EXPECT_EQ(mOpenGL::GLErrorList(), "\r\n0") << "no context yet";
  ASSERT_TRUE(mOpenGL::InitRC());
  HGLRC first = wglGetCurrentContext();
  ASSERT_NE(first, nullptr) << "no GL context could be made here";
  int set = GetPixelFormat(window.dc());
  EXPECT_GT(set, 0);
  EXPECT_EQ(mode.index, set) << "the index used is written back";
  EXPECT_EQ(mOpenGL::GetPixelFormatCount(), DescribePixelFormat(window.dc(), 1, 40, nullptr));
  PIXELFORMATDESCRIPTOR pfd{};
  DescribePixelFormat(window.dc(), set, 40, &pfd);
  EXPECT_EQ(mOpenGL::State().ModulePFD.dwFlags, pfd.dwFlags);
  int expected = mOpenGL::PickPixelFormat(mOpenGL::GetPixelFormatCount(), 0, false, [&](int i) {
    PIXELFORMATDESCRIPTOR d{};
    DescribePixelFormat(window.dc(), i, 40, &d);
    return d.dwFlags;
  });
  EXPECT_EQ(set, expected);
  EXPECT_TRUE(boxes.calls().empty());
  EXPECT_EQ(mOpenGL::GetGLErrorText(), "");

  ASSERT_TRUE(mOpenGL::InitRC());
  EXPECT_EQ(g_createCalls, 1) << "a current context gets no second";
  EXPECT_EQ(wglGetCurrentContext(), first);
  EXPECT_EQ(mOpenGL::GLErrorList(), "\r\n0");
  glEnable(0xFFFF);  // invalid enum: 1280
  EXPECT_EQ(mOpenGL::GLErrorList(), "1280\r\n0");
  EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR)) << "the list drains the queue";
  EXPECT_EQ(mOpenGL::DeleteGLContext(), first);
  EXPECT_EQ(mOpenGL::State().ExtenderHdc, nullptr);
  EXPECT_EQ(wglGetCurrentContext(), nullptr);
  EXPECT_EQ(mOpenGL::DeleteGLContext(), nullptr) << "a second delete is harmless";
}

TEST_F(DeviceLayer, CreationFailingOnceIsRetried) {
  const struct {
    DWORD code;
    const char* errorText;
  } cases[] = {
      {ERROR_NOT_ENOUGH_MEMORY, ""},
      {ERROR_ALREADY_EXISTS, ""},
      {ERROR_INVALID_HANDLE, "\r\nOpenGL Error: \r\r\n0 - hGLRC = wglCreateContext(ExtenderHdc)"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.code);
    mOpenGL::DeleteGLContext();
    mOpenGL::State() = {};
    mOpenGL::State().ExtenderHdc = window.dc();
    g_createCalls = 0;
    g_failCode = c.code;
    g_failTimes = 1;
    ASSERT_TRUE(mOpenGL::InitRC());
    EXPECT_EQ(g_createCalls, 2);
    EXPECT_NE(wglGetCurrentContext(), nullptr);
    EXPECT_TRUE(boxes.calls().empty());
    EXPECT_EQ(mOpenGL::GetGLErrorText(), c.errorText);
  }
}

TEST_F(DeviceLayer, PaletteFormatGetsItsPaletteOnlyWhenTheFormatWasSet) {
  const struct {
    const char* name;
    bool setOk;
    BYTE greenBits;
    const char* boxTitle;  // nullptr: no box, and a palette made
  } cases[] = {
      {"format set: palette made, selected and realized", true, 3, nullptr},
      {"format refused: no palette", false, 3, "SetDCPixelFormat"},
      {"a channel of no bits: the routine's own error, no palette", true, 0, "Velmora"},
  };
  mOpenGL::Platform().DescribePixelFormat = &PaletteDescribe;
  mOpenGL::Platform().SetPixelFormat = &FakeSetPixelFormat;
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    g_setOk = c.setOk;
    g_greenBits = c.greenBits;
    boxes.Clear();
    mOpenGL::State().hPalette = nullptr;
    mOpenGL::SetDCPixelFormat(window.dc());
    HPALETTE made = mOpenGL::State().hPalette;
    EXPECT_EQ(made != nullptr, c.boxTitle == nullptr);
    if (made) {
      EXPECT_EQ(GetCurrentObject(window.dc(), OBJ_PAL), made) << "selected into the device context";
      PALETTEENTRY white{};
      ASSERT_EQ(GetPaletteEntries(made, 255, 1, &white), 1u);
      EXPECT_EQ(white.peRed + white.peGreen + white.peBlue, 3 * 255);
      SelectPalette(window.dc(), static_cast<HPALETTE>(GetStockObject(DEFAULT_PALETTE)), FALSE);
      DeleteObject(made);
    }
    ASSERT_EQ(boxes.calls().size(), c.boxTitle ? 1u : 0u);
    if (c.boxTitle) { EXPECT_EQ(boxes.calls()[0].title, c.boxTitle); }
  }
  EXPECT_EQ(boxes.calls()[0].text, "SetDCPixelFormat Error");
}

TEST_F(DeviceLayer, FailureAbove32ShowsNoDialogAndMakeCurrentFailureIsReported) {
  g_failCode = ERROR_INVALID_PIXEL_FORMAT;
  g_failTimes = 2;
  mOpenGL::Platform().MakeCurrent = &FailingMakeCurrent;
  EXPECT_TRUE(mOpenGL::InitRC());
  EXPECT_EQ(mOpenGL::State().Err.Number, 2000);
  EXPECT_EQ(mOpenGL::State().Err.Description,
            "Cannot Create GL Context  0 = wglCreateContext(" +
                std::to_string(reinterpret_cast<UINT_PTR>(window.dc())) + ") ");
  ASSERT_EQ(boxes.calls().size(), 1u) << "only the make-current failure is shown";
  EXPECT_EQ(boxes.calls()[0].text,
            "wglMakeCurrent(ExtenderHdc, hGLRC) = False - OpenGL Error: \r\r\n0");
  EXPECT_NE(mOpenGL::GetGLErrorText().find(
                "VB DLL Error: 2000 - wglMakeCurrent(ExtenderHdc, hGLRC) = False"),
            std::string::npos);
}

TEST_F(DeviceLayer, InvalidContextBoxAbortRetryIgnore) {
  const struct {
    int answer;
    bool result;
    bool endsProgram;
  } cases[] = {{IDABORT, false, false}, {IDIGNORE, true, false}, {IDRETRY, false, true}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.answer);
    mOpenGL::State().ExtenderHdc = window.dc();
    g_failCode = ERROR_ACCESS_DENIED;
    g_failTimes = 2;
    boxes.Clear();
    boxes.Answer(c.answer);
    bool ended = false, result = false;
    win32::SetEndProgramHook([&] {
      ended = true;
      throw std::runtime_error("program ended");
    });
    try {
      result = mOpenGL::InitRC();
    } catch (const std::runtime_error&) {
    }
    EXPECT_EQ(ended, c.endsProgram);
    if (!c.endsProgram) { EXPECT_EQ(result, c.result); }
    ASSERT_GE(boxes.calls().size(), 1u);
    const auto& box = boxes.calls()[0];
    EXPECT_EQ(box.style, 18u);
    EXPECT_EQ(box.title, "Velmora - InitRC - 2nd Level");
    EXPECT_EQ(box.text,
              "Invalid Context\nError #: 5 If you select Ignore, this may crash your system!\n"
              "Retry will act the same as Abort.");
  }
}

// Two views each owning the context InitRC made on it, as the test window
// and the quad view hold theirs: the surface scope gives the layer back
// the surface it had, and an owner deletes its context through the layer,
// so the layer never names a deleted context.
TEST_F(DeviceLayer, ViewsOwnTheirContextsAndPointTheLayerForAScope) {
  testsupport::PlainWindow second;
  std::array<mOpenGL::RenderingContext, 2> views;
  std::array<HDC, 2> dcs{window.dc(), second.dc()};
  for (int v = 0; v < 2; ++v) {
    wglMakeCurrent(nullptr, nullptr);
    mOpenGL::Surface surface(dcs[v]);
    EXPECT_EQ(mOpenGL::CurrentSurface(), dcs[v]);
    ASSERT_TRUE(mOpenGL::InitRC());
    views[v] = mOpenGL::TakeCurrentContext();
    ASSERT_TRUE(views[v]) << "no GL context could be made here";
  }
  EXPECT_EQ(mOpenGL::CurrentSurface(), window.dc()) << "the fixture's surface is back";
  EXPECT_EQ(g_createCalls, 2);
  EXPECT_NE(views[0].get(), views[1].get());

  ASSERT_TRUE(mOpenGL::Bind(views[0], dcs[0]));
  EXPECT_EQ(wglGetCurrentContext(), views[0].get());
  EXPECT_EQ(mOpenGL::State().hGLRC, views[0].get());
  EXPECT_TRUE(mOpenGL::DeleteRenderingContext(views[0].release())) << "the current one";
  EXPECT_EQ(wglGetCurrentContext(), nullptr);
  EXPECT_EQ(mOpenGL::State().hGLRC, nullptr);
  EXPECT_FALSE(mOpenGL::Bind(views[0], dcs[0])) << "nothing left to bind";
  HGLRC other = views[1].get();
  EXPECT_TRUE(mOpenGL::DeleteRenderingContext(views[1].release())) << "one not current";
  EXPECT_FALSE(wglMakeCurrent(dcs[1], other)) << "it is gone";
}

TEST_F(DeviceLayer, SecondFormatOnTheSameWindowFailsAndIsRecorded) {
  ASSERT_TRUE(mOpenGL::InitRC());
  int first = GetPixelFormat(window.dc());
  mode.index = first == 1 ? 2 : 1;
  int asked = mode.index;
  mOpenGL::SetDCPixelFormat(window.dc());
  EXPECT_EQ(GetPixelFormat(window.dc()), first);
  EXPECT_EQ(mode.index, asked) << "a failed set leaves the index alone";
  ASSERT_EQ(boxes.calls().size(), 1u);
  EXPECT_EQ(boxes.calls()[0].title, "SetDCPixelFormat");
  EXPECT_EQ(boxes.calls()[0].style, static_cast<UINT>(MB_OK));
  EXPECT_EQ(boxes.calls()[0].text.rfind("VB DLL Error: ", 0), 0u);
  EXPECT_EQ(mOpenGL::GetGLErrorText(), "\r\n" + boxes.calls()[0].text);
}

TEST_F(DeviceLayer, MakeCurrentGLRebindsTheContextToAnotherWindow) {
  ASSERT_TRUE(mOpenGL::InitRC());
  testsupport::PlainWindow other;
  mOpenGL::State().ExtenderHdc = other.dc();
  mOpenGL::MakeCurrentGL();
  EXPECT_EQ(GetPixelFormat(other.dc()), GetPixelFormat(window.dc()));
  EXPECT_EQ(wglGetCurrentDC(), other.dc());
  mOpenGL::DeleteGLContext();
}

// With the font of the window the text leaves white pixels; without a
// surface to take a font from the lists stay empty, and neither call is
// made twice.
TEST_F(DeviceLayer, DrawTextGLBuildsTheFontListsOnce) {
  ASSERT_TRUE(mOpenGL::InitRC());
  glViewport(0, 0, 160, 120);
  glColor3f(1, 1, 1);
  for (HDC font : {window.dc(), HDC{}}) {
    SCOPED_TRACE(font ? "with a font" : "without a font");
    glClearColor(0, 0, 0, 0);
    glClear(GL_COLOR_BUFFER_BIT);
    mOpenGL::State().ExtenderHdc = font;
    GLuint base = 0;
    mOpenGL::DrawTextGL("INIT 1", -0.9f, -0.5f, 0, base);
    ASSERT_NE(base, 0u) << "the base is kept although a build fails";
    if (font) { EXPECT_TRUE(glIsList(base) && glIsList(base + 95)); }
    GLuint kept = base;
    mOpenGL::DrawTextGL("INIT 1", -0.9f, -0.5f, 0, base);
    EXPECT_EQ(base, kept);
    EXPECT_EQ(glGenLists(1), kept + 96) << "no more lists were made by the second call";
    glFinish();
    int white = 0, lit = 0;
    for (int y = 0; y < 60; ++y)
      for (int x = 0; x < 100; ++x) {
        testsupport::Rgb p = testsupport::ReadPixel(x, y);
        white += p == testsupport::Rgb{255, 255, 255};
        lit += !(p == testsupport::Rgb{0, 0, 0});
      }
    if (font) { EXPECT_GT(white, 10) << "the text left white pixels"; }
    if (!font) { EXPECT_EQ(lit, 0); }
  }
  mOpenGL::State().ExtenderHdc = window.dc();
}

}  // namespace
