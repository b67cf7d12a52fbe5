#include "gl/mopengl.h"

#include <gtest/gtest.h>

#include <stdexcept>

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

struct PickCase {
  const char* name;
  std::vector<DWORD> formats;  // flags of formats 1..n
  int requested;
  bool hardware;
  int expected;
};

TEST(PickPixelFormat, Table) {
  const PickCase cases[] = {
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
    SCOPED_TRACE(c.name);
    int count = static_cast<int>(c.formats.size());
    EXPECT_EQ(PickPixelFormat(count, c.requested, c.hardware,
                              [&](int i) { return c.formats.at(static_cast<size_t>(i - 1)); }),
              c.expected);
  }
}

TEST(Classify, GenericAndAcceleratedBits) {
  EXPECT_EQ(mOpenGL::Classify(0x25), mOpenGL::FormatClass::ICD);
  EXPECT_EQ(mOpenGL::Classify(0x1025), mOpenGL::FormatClass::ICD);
  EXPECT_EQ(mOpenGL::Classify(0x1065), mOpenGL::FormatClass::MCD);
  EXPECT_EQ(mOpenGL::Classify(0x65), mOpenGL::FormatClass::Generic);
}

TEST(PaletteEntries, ThreeThreeTwoAtShiftsZeroThreeSix) {
  PIXELFORMATDESCRIPTOR pfd{};
  pfd.cColorBits = 8;
  pfd.cRedBits = 3;
  pfd.cRedShift = 0;
  pfd.cGreenBits = 3;
  pfd.cGreenShift = 3;
  pfd.cBlueBits = 2;
  pfd.cBlueShift = 6;
  auto e = mOpenGL::PaletteEntries(pfd);
  ASSERT_EQ(e.size(), 256u);
  EXPECT_EQ((std::array<int, 4>{e[255].peRed, e[255].peGreen, e[255].peBlue, e[255].peFlags}),
            (std::array<int, 4>{255, 255, 255, 0}));
  EXPECT_EQ((std::array<int, 3>{e[7].peRed, e[7].peGreen, e[7].peBlue}),
            (std::array<int, 3>{255, 0, 0}));
  // 0b01'010'011: red 3 -> 109, green 2 -> 72, blue 1 -> 85
  EXPECT_EQ((std::array<int, 3>{e[0x53].peRed, e[0x53].peGreen, e[0x53].peBlue}),
            (std::array<int, 3>{109, 72, 85}));
}

TEST(PaletteEntries, FourBitFormatHasSixteenEntries) {
  PIXELFORMATDESCRIPTOR pfd{};
  pfd.cColorBits = 4;
  pfd.cRedBits = 1;
  pfd.cGreenBits = 2;
  pfd.cGreenShift = 1;
  pfd.cBlueBits = 1;
  pfd.cBlueShift = 3;
  auto e = mOpenGL::PaletteEntries(pfd);
  ASSERT_EQ(e.size(), 16u);
  EXPECT_EQ(e[15].peRed + e[15].peGreen + e[15].peBlue, 3 * 255);
  EXPECT_EQ(e[2].peGreen, 85);
}

TEST(FormatGLErrorList, EndsWithTerminatingZero) {
  EXPECT_EQ(mOpenGL::FormatGLErrorList({}), "\r\n0");
  EXPECT_EQ(mOpenGL::FormatGLErrorList({1280, 1281}), "1280\r\n1281\r\n0");
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

TEST_F(DeviceLayer, InitRCPicksSetsAndReportsTheFormat) {
  ASSERT_TRUE(mOpenGL::InitRC());
  ASSERT_NE(wglGetCurrentContext(), nullptr) << "no GL context could be made here";
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
}

TEST_F(DeviceLayer, InitRCWithACurrentContextCreatesNoSecond) {
  ASSERT_TRUE(mOpenGL::InitRC());
  HGLRC first = wglGetCurrentContext();
  ASSERT_TRUE(mOpenGL::InitRC());
  EXPECT_EQ(g_createCalls, 1);
  EXPECT_EQ(wglGetCurrentContext(), first);
}

TEST_F(DeviceLayer, CreationFailingWithOutOfMemoryIsRetriedOnceWithoutDialog) {
  g_failCode = ERROR_NOT_ENOUGH_MEMORY;
  g_failTimes = 1;
  ASSERT_TRUE(mOpenGL::InitRC());
  EXPECT_EQ(g_createCalls, 2);
  EXPECT_NE(wglGetCurrentContext(), nullptr);
  EXPECT_TRUE(boxes.calls().empty());
  EXPECT_EQ(mOpenGL::GetGLErrorText(), "");
}

TEST_F(DeviceLayer, OtherCreationErrorIsRecordedAndRetried) {
  g_failCode = ERROR_INVALID_HANDLE;
  g_failTimes = 1;
  ASSERT_TRUE(mOpenGL::InitRC());
  EXPECT_EQ(g_createCalls, 2);
  EXPECT_EQ(mOpenGL::GetGLErrorText(),
            "\r\nOpenGL Error: \r\r\n0 - hGLRC = wglCreateContext(ExtenderHdc)");
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
  EXPECT_EQ(boxes.calls()[0].text, "wglMakeCurrent(ExtenderHdc, hGLRC) = False - OpenGL Error: \r\r\n0");
  EXPECT_NE(mOpenGL::GetGLErrorText().find(
                "VB DLL Error: 2000 - wglMakeCurrent(ExtenderHdc, hGLRC) = False"),
            std::string::npos);
}

struct HandlerCase {
  int answer;
  bool expectedResult;
  bool endsProgram;
};

TEST_F(DeviceLayer, InvalidContextBoxAbortRetryIgnore) {
  const HandlerCase cases[] = {{IDABORT, false, false}, {IDIGNORE, true, false}, {IDRETRY, false, true}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.answer);
    mOpenGL::State().ExtenderHdc = window.dc();
    g_failCode = ERROR_ACCESS_DENIED;
    g_failTimes = 2;
    boxes.Clear();
    boxes.Answer(c.answer);
    bool ended = false;
    win32::SetEndProgramHook([&] {
      ended = true;
      throw std::runtime_error("program ended");
    });
    bool result = false;
    try {
      result = mOpenGL::InitRC();
    } catch (const std::runtime_error&) {
    }
    EXPECT_EQ(ended, c.endsProgram);
    if (!c.endsProgram) {
      EXPECT_EQ(result, c.expectedResult);
    }
    ASSERT_GE(boxes.calls().size(), 1u);
    const auto& box = boxes.calls()[0];
    EXPECT_EQ(box.style, 18u);
    EXPECT_EQ(box.title, "Velmora - InitRC - 2nd Level");
    EXPECT_EQ(box.text,
              "Invalid Context\nError #: 5 If you select Ignore, this may crash your system!\n"
              "Retry will act the same as Abort.");
  }
}

TEST_F(DeviceLayer, GLErrorListDrainsTheQueue) {
  ASSERT_TRUE(mOpenGL::InitRC());
  EXPECT_EQ(mOpenGL::GLErrorList(), "\r\n0");
  glEnable(0xFFFF);  // invalid enum: 1280
  EXPECT_EQ(mOpenGL::GLErrorList(), "1280\r\n0");
  EXPECT_EQ(glGetError(), static_cast<GLenum>(GL_NO_ERROR));
}

TEST_F(DeviceLayer, GLErrorListWithoutContextIsEmpty) {
  EXPECT_EQ(wglGetCurrentContext(), nullptr);
  EXPECT_EQ(mOpenGL::GLErrorList(), "\r\n0");
}

TEST_F(DeviceLayer, DeleteGLContextTwiceIsHarmless) {
  ASSERT_TRUE(mOpenGL::InitRC());
  HGLRC rc = wglGetCurrentContext();
  EXPECT_EQ(mOpenGL::DeleteGLContext(), rc);
  EXPECT_EQ(mOpenGL::State().ExtenderHdc, nullptr);
  EXPECT_EQ(wglGetCurrentContext(), nullptr);
  EXPECT_EQ(mOpenGL::DeleteGLContext(), nullptr);
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

TEST_F(DeviceLayer, DrawTextGLBuildsTheFontListsOnce) {
  ASSERT_TRUE(mOpenGL::InitRC());
  glViewport(0, 0, 160, 120);
  glClearColor(0, 0, 0, 0);
  glClear(GL_COLOR_BUFFER_BIT);
  glColor3f(1, 1, 1);
  GLuint base = 0;
  mOpenGL::DrawTextGL("INIT 1", -0.9f, -0.5f, 0, base);
  ASSERT_NE(base, 0u);
  EXPECT_TRUE(glIsList(base) && glIsList(base + 95));
  GLuint kept = base;
  mOpenGL::DrawTextGL("INIT 1", -0.9f, -0.5f, 0, base);
  EXPECT_EQ(base, kept);
  EXPECT_EQ(glGenLists(1), kept + 96) << "no more lists were made by the second call";
  glFinish();
  int lit = 0;
  for (int y = 0; y < 60; ++y)
    for (int x = 0; x < 100; ++x) lit += testsupport::ReadPixel(x, y) == testsupport::Rgb{255, 255, 255};
  EXPECT_GT(lit, 10) << "the text left white pixels";
}

}  // namespace
