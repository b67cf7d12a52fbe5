// The quad view as a real window: its views after each redraw path, closing, the copy to the
// twin. Views are read back through OpenGL (screenshots show OpenGL child windows black here).
#include "quadview/quadview_frm.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <map>
#include <tuple>

#include "gl/mopengl.h"
#include "gl/pyramid_grid.h"
#include "quadview/quadprint_frm.h"
#include "quadview/scene.h"
#include "testsupport/testsupport.h"
#include "win32/ui.h"

namespace {

using quadview::QuadView_frm;
using testsupport::Rgb;
using SwapPath = QuadView_frm::SwapPath;

constexpr Rgb kWhite{255, 255, 255};
constexpr Rgb kBlack{0, 0, 0};

// A view's pixels, rows from the top.
struct Image {
  int width = 0, height = 0;
  std::vector<Rgb> px;
  Rgb At(int x, int y) const { return px[static_cast<size_t>(y) * width + x]; }
  int Count(Rgb c) const { return static_cast<int>(std::count(px.begin(), px.end(), c)); }
  bool operator==(const Image&) const = default;
};

// The back buffer of the current context.
Image ReadBack(int width, int height) {
  std::vector<unsigned char> rgba(static_cast<size_t>(width) * height * 4);
  glPixelStorei(GL_PACK_ALIGNMENT, 1);
  glReadBuffer(GL_BACK);
  glReadPixels(0, 0, width, height, GL_RGBA, GL_UNSIGNED_BYTE, rgba.data());
  Image img{width, height, std::vector<Rgb>(static_cast<size_t>(width) * height)};
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x) {
      const unsigned char* p = &rgba[(static_cast<size_t>(height - 1 - y) * width + x) * 4];
      img.px[static_cast<size_t>(y) * width + x] = {p[0], p[1], p[2]};
    }
  return img;
}

// What view `k` presents now.
Image Presented(QuadView_frm& frm, int k) {
  if (!wglMakeCurrent(frm.MapPic(k)->hDC(), frm.ViewContext(k))) return {};
  SIZE s = frm.MapPic(k)->ClientSize();
  return ReadBack(s.cx, s.cy);
}

// What a full redraw of view `k` must show, drawn in a window of the test's own.
Image Reference(int k, int width, int height, int pixelFormat, quadview::SceneCompiler compile) {
  static std::map<std::tuple<int, int, int, int, quadview::SceneCompiler>, Image> made;
  auto key = std::make_tuple(k, width, height, pixelFormat, compile);
  if (auto it = made.find(key); it != made.end()) return it->second;
  testsupport::PlainWindow wnd(width, height, true);
  PIXELFORMATDESCRIPTOR pfd{};
  DescribePixelFormat(wnd.dc(), pixelFormat, sizeof pfd, &pfd);
  if (!SetPixelFormat(wnd.dc(), pixelFormat, &pfd)) return {};
  HGLRC rc = wglCreateContext(wnd.dc());
  if (!rc || !wglMakeCurrent(wnd.dc(), rc)) return {};
  glClearColor(1, 1, 1, 0);
  glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
  glEnable(GL_DEPTH_TEST);
  GLuint list = 0;
  quadview::DrawScene(k, width, height, list, compile);
  glFinish();
  Image img = ReadBack(width, height);
  wglMakeCurrent(nullptr, nullptr);
  wglDeleteContext(rc);
  return made[key] = img;
}

// The middle row of each band (42 shapes): cheap enough for hundreds of redraws.
GLuint CompileLightScene() {
  GLuint list = glGenLists(1);
  glNewList(list, GL_COMPILE);
  auto places = mOpenGL::PyramidGridPlaces();
  for (size_t i = 10; i < places.size(); i += 21) mOpenGL::EmitGridPyramid(places[i]);
  glEndList();
  return list;
}

struct Frame {
  int view;
  SwapPath path;
  Image image;
};

class QuadViewWindow : public ::testing::Test {
 protected:
  void TearDown() override {
    frm.reset();
    EXPECT_EQ(wglGetCurrentContext(), nullptr) << "unloading leaves no context current";
  }
  // Loads the window with the boxes of `result`'s bits ticked.
  void Load(int result = 0, quadview::SceneCompiler compile = quadview::CompileSceneList) {
    frm = std::make_unique<QuadView_frm>();
    frm->SetSceneCompiler(scene = compile);
    ASSERT_TRUE(frm->Load());
    for (int bit = 0; bit < 4; ++bit)
      SendMessageA(frm->Control(quadview::kFormResizeChk + bit), BM_SETCHECK,
                   (result >> bit) & 1 ? BST_CHECKED : BST_UNCHECKED, 0);
  }
  void Show() {
    ShowWindow(frm->hwnd(), SW_SHOW);
    UpdateWindow(frm->hwnd());
    testsupport::Pump(50);
  }
  bool HasContexts() {
    return frm->ViewContext(0) && frm->ViewContext(1) && frm->ViewContext(2) &&
           frm->ViewContext(3);
  }
  // Whether view k presents a full redraw at its present size.
  ::testing::AssertionResult FullyDrawn(int k) {
    Image shown = Presented(*frm, k);
    int format = GetPixelFormat(frm->MapPic(0)->hDC());
    if (shown.width > 0 && shown == Reference(k, shown.width, shown.height, format, scene))
      return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "view " << k << " (" << shown.width << "x"
                                         << shown.height << ") is not a full redraw; white pixels "
                                         << shown.Count(kWhite);
  }
  bool AllFullyDrawn() {
    for (int k = 0; k < 4; ++k)
      if (!FullyDrawn(k)) return false;
    return true;
  }

  testsupport::MsgBoxRecorder boxes;
  std::unique_ptr<QuadView_frm> frm;
  quadview::SceneCompiler scene = quadview::CompileSceneList;
};

#define REQUIRE_GL()                                                              \
  do {                                                                            \
    if (!HasContexts()) GTEST_SKIP() << "no OpenGL context could be made here"; \
  } while (0)

// Until its first full redraw each view shows "INIT k" in white on black, swapped in again
// while "Fix Form Paint" is unticked; then its own turn of the grid. The first redraw appends
// the viewport figures to the description.
TEST_F(QuadViewWindow, FirstFramesShowInitOnBlackThenEachViewsRotationOnWhite) {
  std::vector<Frame> frames;
  Load(0);
  frm->SetSwapObserver([&](int view, SwapPath path) {
    SIZE s = frm->MapPic(view)->ClientSize();
    frames.push_back({view, path, ReadBack(s.cx, s.cy)});
  });
  Show();
  REQUIRE_GL();
  for (int k = 0; k < 4; ++k) {
    SCOPED_TRACE(k);
    std::vector<const Frame*> mine;
    for (const Frame& f : frames)
      if (f.view == k) mine.push_back(&f);
    size_t first = 0;
    while (first < mine.size() && mine[first]->path != SwapPath::RedrawPic) ++first;
    ASSERT_GT(first, 0u) << "the view shows its mark before it is redrawn";
    ASSERT_LT(first, mine.size()) << "the view is redrawn";
    EXPECT_TRUE(mine[first - 1]->path == SwapPath::SwapPic) << "the mark is swapped in again";
    for (size_t i = 0; i < first; ++i) {
      const Image& img = mine[i]->image;
      EXPECT_GT(img.Count(kBlack), img.width * img.height * 9 / 10) << "frame " << i;
      EXPECT_GT(img.Count(kWhite), 15) << "frame " << i << " has the text";
      EXPECT_EQ(img.Count(kBlack) + img.Count(kWhite), img.width * img.height)
          << "only the text on black";
    }
    EXPECT_TRUE(FullyDrawn(k)) << "each view turned its own way";
  }
  GLint dims[2] = {};
  wglMakeCurrent(frm->MapPic(0)->hDC(), frm->ViewContext(0));
  glGetIntegerv(GL_MAX_VIEWPORT_DIMS, dims);
  SIZE s = frm->MapPic(0)->ClientSize();
  EXPECT_EQ(win32::GetText(frm->Control(quadview::kGLTestDescLbl)),
            quadview::DescriptionText() + "\n\n" + std::to_string(dims[0]) + ", " +
                std::to_string(dims[1]) + " - 0, 0, " + std::to_string(s.cx) + ", " +
                std::to_string(s.cy));
}

// With a resize box ticked the resize paths redraw; without, the window's paint path does.
TEST_F(QuadViewWindow, EveryBoxCombinationKeepsTheViewsDrawnThroughResizes) {
#ifdef _WIN64
  // NOTE: after a resize, 64-bit Wine's buffer swap leaves the back buffer that this check
  // reads undefined (black when the machine is busy), so what a view presents cannot be read
  // back there; the 32-bit build is checked here.
  GTEST_SKIP() << "the presented picture cannot be read back after a resize on 64-bit Wine";
#endif
  const std::pair<const char*, int> steps[] = {
      {"bigger", SW_SHOW}, {"maximise", SW_MAXIMIZE}, {"restore", SW_RESTORE}};
  for (int ticked = 0; ticked < 16; ++ticked) {
    SCOPED_TRACE("boxes " + std::to_string(ticked));
    Load(ticked, CompileLightScene);
    SetWindowPos(frm->hwnd(), nullptr, 20, 20, 640, 520, SWP_NOZORDER);
    Show();
    REQUIRE_GL();
    std::array<HGLRC, 4> contexts{};
    for (int k = 0; k < 4; ++k) contexts[k] = frm->ViewContext(k);
    const auto lists = frm->State().ViewList;
    for (auto [name, show] : steps) {
      SCOPED_TRACE(name);
      if (show == SW_SHOW) SetWindowPos(frm->hwnd(), nullptr, 0, 0, 860, 700, SWP_NOMOVE);
      ShowWindow(frm->hwnd(), show);
      // A loaded display server answers late: wait (within bounds) until the window settles.
      for (int waited = 0; waited < 3000 && !AllFullyDrawn(); waited += 30) testsupport::Pump(30);
      for (int k = 0; k < 4; ++k) {
        EXPECT_TRUE(FullyDrawn(k)) << "not grey, black or stretched";
        EXPECT_EQ(frm->ViewContext(k), contexts[k]) << "no context was made again";
        EXPECT_EQ(frm->State().ViewList[k], lists[k]) << "no list was compiled again";
      }
    }
    frm.reset();
  }
}

// Runs `step` every 20 ms from a thread timer, also inside modal loops, until it returns true.
class Script {
 public:
  explicit Script(std::function<bool()> step) { step_ = std::move(step); }
  ~Script() { KillTimer(nullptr, timer_); step_ = nullptr; }
  bool Done() const { return !step_; }

 private:
  static void CALLBACK Tick(HWND, UINT, UINT_PTR, DWORD) {
    static bool running = false;
    if (!step_ || running) return;
    running = true;
    if (step_()) step_ = nullptr;
    running = false;
  }
  static inline std::function<bool()> step_;
  UINT_PTR timer_ = SetTimer(nullptr, 0, 20, &Tick);
};

// The copy shows the views on the twin in the same places, white showing the twin's background;
// a close from outside meanwhile hides the quad view at once and waits for the twin.
TEST_F(QuadViewWindow, CopyPictureShowsTheViewsOnTheTwinAndACloseWaitsForIt) {
  Load(0);
  SetWindowPos(frm->hwnd(), nullptr, 30, 30, 700, 560, SWP_NOZORDER);
  Show();
  REQUIRE_GL();
  HWND copy = frm->Control(quadview::kCopyPictureCmd);
  frm->Form_KeyUp('C', 2);
  ASSERT_TRUE(GetWindowLongA(copy, GWL_STYLE) & WS_VISIBLE) << "Ctrl+C shows the button";
  std::array<Image, 4> views;
  std::array<POINT, 4> at{};
  for (int k = 0; k < 4; ++k) {
    views[k] = Presented(*frm, k);
    MapWindowPoints(frm->MapPic(k)->hwnd(), frm->QuadPic()->hwnd(), &at[k], 1);
  }
  const COLORREF face = GetSysColor(COLOR_BTNFACE);
  int inked = 0, wrong = 0;
  bool shownModally = false, hidden = false;
  Script script([&] {
    quadview::QuadPrint_frm& twin = quadview::QuadPrint();
    if (!twin.Loaded() || !IsWindowVisible(twin.hwnd())) return false;
    testsupport::Pump();
    shownModally = !IsWindowEnabled(frm->hwnd());
    HDC picture = twin.QuadPic()->hDC();
    for (int k = 0; k < 4; ++k) {
      for (int y = 0; y < views[k].height; y += 3)
        for (int x = 0; x < views[k].width; x += 3) {
          Rgb v = views[k].At(x, y);
          COLORREF want = v == kWhite ? face : RGB(v.r, v.g, v.b);
          COLORREF got = GetPixel(picture, at[k].x + x, at[k].y + y);
          if (got != want && ++wrong == 1)
            ADD_FAILURE() << k << " at " << x << "," << y << ": " << std::hex << got << " not "
                          << want;
          inked += !(v == kWhite);
        }
      EXPECT_EQ(GetPixel(picture, at[k].x - 2, at[k].y - 2), face) << k << ": the gaps stay plain";
    }
    SendMessageA(frm->hwnd(), WM_CLOSE, 0, 0);
    hidden = !IsWindowVisible(frm->hwnd()) && frm->Loaded();
    PostMessageA(twin.hwnd(), WM_SYSCOMMAND, SC_CLOSE, 0);
    return true;
  });
  std::string result;
  testsupport::ModalDeadline deadline(20000);
  PostMessageA(copy, BM_CLICK, 0, 0);
  EXPECT_EQ(frm->ShowMe(result), 1);
  EXPECT_FALSE(deadline.Expired());
  EXPECT_EQ(result, "0");
  EXPECT_TRUE(script.Done());
  EXPECT_TRUE(shownModally);
  EXPECT_EQ(wrong, 0);
  EXPECT_GT(inked, 100);
  EXPECT_TRUE(hidden);
  EXPECT_FALSE(frm->Loaded());
  EXPECT_FALSE(quadview::QuadPrint().Loaded()) << "the twin's ShowMe unloads it";
}

}  // namespace
