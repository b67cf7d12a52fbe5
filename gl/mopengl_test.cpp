#include "gl/mopengl.h"
#include "gl/device_state.h"
#include "gl/opengl32_entries.h"
#include "gl/profiles.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <vector>

#include "testsupport/testsupport.h"
#include "win32/ui.h"

namespace {

using mOpenGL::PickPixelFormat;

constexpr DWORD kIcd = 0x25;  // window, OpenGL, double buffer
constexpr DWORD kGen = 0x65;  // generic, double-buffered
constexpr DWORD kGenSingle = 0x64, kMcd = 0x1065, kGenNoWindow = 0x61;

TEST(PickPixelFormat, Table) {
  const struct {
    const char* name;
    std::vector<DWORD> formats;  // flags of formats 1..n
    int requested;
    bool hardware;
    int expected;
  } cases[] = {
      {"software request 0 takes the lowest generic", {kIcd, kIcd, kGen, kGen}, 0, false, 3},
      {"hardware without hardware takes first usable generic", {kGenSingle, kGen}, 0, true, 2},
      {"software without generic double buffer gives 1", {kIcd, kGenSingle}, 0, false, 1},
      {"explicit index beyond the count comes back", {kIcd, kIcd, kIcd, kIcd, kIcd}, 7, false, 7},
      {"explicit index is never checked", {kGen, kGen, kIcd, kGen, kGen}, 3, false, 3},
      {"hardware takes MCD before later ICD", {kGen, kGenSingle, kMcd, kIcd}, 0, true, 3},
      {"negative request without hardware comes back", {kGen, kGen}, -2, true, -2},
      {"negative request takes the mode's format", {kIcd, kGen}, -2, false, 2},
      {"no formats gives 1, even for a request", {}, 5, false, 1},
      {"formats not drawing to a window are skipped", {kGenNoWindow, kGenNoWindow}, 0, false, 1},
  };
  for (const auto& c : cases) {
    int count = static_cast<int>(c.formats.size());
    EXPECT_EQ(PickPixelFormat(count, c.requested, c.hardware,
                              [&](int i) { return c.formats.at(static_cast<size_t>(i - 1)); }),
              c.expected)
        << c.name;
  }
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

// Context creation that fails g_failTimes times with g_failCode first.
int g_createCalls = 0, g_failTimes = 0;
DWORD g_failCode = 0;

HGLRC WINAPI CountingCreate(HDC dc) {
  ++g_createCalls;
  if (g_failTimes-- <= 0) return wglCreateContext(dc);
  SetLastError(g_failCode);
  return nullptr;
}

// A driver whose formats all need a palette (8-bit 3-3-2); SetPixelFormat answers g_setOk.
BYTE g_greenBits = 3;
bool g_setOk = true;
int WINAPI PaletteDescribe(HDC, int, UINT, PIXELFORMATDESCRIPTOR* pfd) {
  if (pfd) {
    *pfd = {};
    pfd->cColorBits = 8, pfd->dwFlags = kGen | mOpenGL::kNeedPalette;
    pfd->cRedBits = 3, pfd->cGreenBits = g_greenBits, pfd->cGreenShift = 3;
    pfd->cBlueBits = 2, pfd->cBlueShift = 6;
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
    mOpenGL::Platform().CreateContext = &CountingCreate;
    g_createCalls = g_failTimes = 0;
    ASSERT_TRUE(window.dc());
    mOpenGL::State().ExtenderHdc = window.dc();
  }
  void TearDown() override {
    mOpenGL::DeleteGLContext();
    mOpenGL::ResetPlatform();
    win32::SetEndProgramHook(nullptr);
  }
  // InitRC with the first `fails` creations failing with `code`.
  bool InitFailing(DWORD code, int fails) {
    mOpenGL::DeleteGLContext();
    mOpenGL::State() = {};
    mOpenGL::State().ExtenderHdc = window.dc();
    g_createCalls = 0, g_failCode = code, g_failTimes = fails;
    boxes.Clear();
    return mOpenGL::InitRC();
  }
  testsupport::PlainWindow window;
  testsupport::MsgBoxRecorder boxes;
};

// The format chosen for the main window's choice is checked through its report.
TEST_F(DeviceLayer, InitRCMakesOneContextAndTheErrorListDrainsTheQueue) {
  EXPECT_EQ(mOpenGL::GLErrorList(), "\r\n0") << "no context yet";
  ASSERT_TRUE(mOpenGL::InitRC());
  HGLRC first = wglGetCurrentContext();
  ASSERT_NE(first, nullptr) << "no GL context could be made here";
  ASSERT_TRUE(mOpenGL::InitRC());
  EXPECT_EQ(g_createCalls, 1) << "a current context gets no second";
  EXPECT_EQ(wglGetCurrentContext(), first);
  EXPECT_TRUE(boxes.calls().empty());
  EXPECT_EQ(mOpenGL::GetGLErrorText(), "");
  glEnable(0xFFFF);  // invalid enum: 1280
  EXPECT_EQ(mOpenGL::GLErrorList(), "1280\r\n0");
  EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR)) << "the list drains the queue";
  EXPECT_EQ(mOpenGL::DeleteGLContext(), first);
  EXPECT_EQ(mOpenGL::State().ExtenderHdc, nullptr);
  EXPECT_EQ(wglGetCurrentContext(), nullptr);
  EXPECT_EQ(mOpenGL::DeleteGLContext(), nullptr) << "a second delete is harmless";
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
    g_setOk = c.setOk, g_greenBits = c.greenBits;
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

// Abort fails InitRC, Ignore goes on, Retry ends the program.
TEST_F(DeviceLayer, InvalidContextBoxAbortRetryIgnore) {
  const std::pair<int, const char*> cases[] = {
      {IDABORT, "false"}, {IDIGNORE, "true"}, {IDRETRY, "ended"}};
  win32::SetEndProgramHook([] { throw std::runtime_error("ended"); });
  for (const auto& [answer, outcome] : cases) {
    SCOPED_TRACE(answer);
    boxes.Answer(answer);
    std::string got;
    try {
      got = InitFailing(ERROR_ACCESS_DENIED, 2) ? "true" : "false";
    } catch (const std::runtime_error& e) {
      got = e.what();
    }
    EXPECT_EQ(got, outcome);
    ASSERT_GE(boxes.calls().size(), 1u);
    const auto& box = boxes.calls()[0];
    EXPECT_EQ(box.style, static_cast<UINT>(MB_ABORTRETRYIGNORE | MB_ICONHAND));
    EXPECT_EQ(box.title, "Velmora - InitRC - 2nd Level");
    EXPECT_EQ(box.text,
              "Invalid Context\nError #: 5 If you select Ignore, this may crash your system!\n"
              "Retry will act the same as Abort.");
  }
}

// Views own the contexts InitRC made on them; one deleted through the layer is not left there.
TEST_F(DeviceLayer, ViewsOwnTheirContextsAndPointTheLayerForAScope) {
  testsupport::PlainWindow second;
  std::array<mOpenGL::RenderingContext, 2> views;
  std::array<HDC, 2> dcs{window.dc(), second.dc()};
  for (int v = 0; v < 2; ++v) {
    wglMakeCurrent(nullptr, nullptr);
    mOpenGL::Surface surface(dcs[v]);
    ASSERT_TRUE(mOpenGL::InitRC());
    views[v] = mOpenGL::TakeCurrentContext();
    ASSERT_TRUE(views[v]) << "no GL context could be made here";
  }
  EXPECT_EQ(mOpenGL::CurrentSurface(), window.dc()) << "the fixture's surface is back";
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

TEST(ProfilesText, Table) {
  using mOpenGL::ProfileInfo;
  EXPECT_EQ(mOpenGL::ProfilesText({}), "legacy context only");
  EXPECT_EQ(mOpenGL::ProfilesText({true, true, ProfileInfo{4, 5, "", "", ""},
                                   ProfileInfo{4, 6, "", "", ""}}),
            "core 4.5, compatibility 4.6");
  EXPECT_EQ(mOpenGL::ProfilesText({true, false, std::nullopt, ProfileInfo{3, 0, "", "", ""}}),
            "core none, compatibility 3.0");
}

// The driver here offers modern profiles; the probe finds them on a window of its own and
// leaves the layer's context current, and the last error, as they were.
TEST_F(DeviceLayer, ProbeProfilesFindsTheDriversProfilesAndLeavesTheLayerAlone) {
  ASSERT_TRUE(mOpenGL::InitRC());
  HGLRC current = wglGetCurrentContext();
  if (!current) GTEST_SKIP() << "no GL context could be made here";
  SetLastError(1234);
  const mOpenGL::Profiles p = mOpenGL::ProbeProfiles();
  EXPECT_EQ(GetLastError(), 1234u);
  EXPECT_EQ(wglGetCurrentContext(), current);
  EXPECT_EQ(wglGetCurrentDC(), window.dc());
  ASSERT_TRUE(p.CreateContextAttribs && p.Core && p.Compatibility);
  EXPECT_GE(p.Core->Major * 10 + p.Core->Minor, 32);
  const std::string version = std::to_string(p.Core->Major) + "." + std::to_string(p.Core->Minor);
  EXPECT_EQ(p.Core->Version.rfind(version, 0), 0u) << p.Core->Version;
  EXPECT_FALSE(p.Core->ShadingLanguage.empty());
  EXPECT_GE(p.Compatibility->Major, 3);
}

}  // namespace
