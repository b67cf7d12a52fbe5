// The quad view as a real window: what its views show after each redraw
// path, its guards, closing, the copy to the twin, and a storm of resizes.
//
// The views are read back through OpenGL (a screenshot shows OpenGL child
// windows black here). The software renderer copies on a swap, so right
// after a swap, and until the next drawing, the back buffer holds what the
// view presents.
#include "gl/pyramid_grid.h"
#include "quadview/quadview_frm.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <map>
#include <tuple>
#include <set>

#include "gl/mopengl.h"
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
  // The pixel at a fraction of the width and height.
  Rgb AtFraction(double fx, double fy) const {
    return At(static_cast<int>(fx * (width - 1)), static_cast<int>(fy * (height - 1)));
  }
  int Count(Rgb c) const { return static_cast<int>(std::count(px.begin(), px.end(), c)); }
  double Share(Rgb c) const { return px.empty() ? 0 : double(Count(c)) / px.size(); }
  // Share of non-white pixels in a 7 x 7 square around a fraction.
  double InkAround(double fx, double fy) const {
    int cx = static_cast<int>(fx * (width - 1)), cy = static_cast<int>(fy * (height - 1));
    int ink = 0, all = 0;
    for (int y = cy - 3; y <= cy + 3; ++y)
      for (int x = cx - 3; x <= cx + 3; ++x) {
        if (x < 0 || y < 0 || x >= width || y >= height) continue;
        ++all;
        ink += !(At(x, y) == kWhite);
      }
    return all ? double(ink) / all : 0;
  }
  bool operator==(const Image&) const = default;
};

// The back buffer of the current context, `width` x `height`.
Image ReadBack(int width, int height) {
  Image img{width, height, {}};
  std::vector<unsigned char> rgba(static_cast<size_t>(width) * height * 4);
  glPixelStorei(GL_PACK_ALIGNMENT, 1);
  glReadBuffer(GL_BACK);
  glReadPixels(0, 0, width, height, GL_RGBA, GL_UNSIGNED_BYTE, rgba.data());
  img.px.resize(static_cast<size_t>(width) * height);
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x) {
      const unsigned char* p = &rgba[(static_cast<size_t>(height - 1 - y) * width + x) * 4];
      img.px[static_cast<size_t>(y) * width + x] = {p[0], p[1], p[2]};
    }
  return img;
}

SIZE ClientOf(HWND wnd) {
  RECT rc{};
  GetClientRect(wnd, &rc);
  return {rc.right, rc.bottom};
}

// What view `k` presents now.
Image Presented(QuadView_frm& frm, int k) {
  HWND view = frm.MapPic(k)->hwnd();
  HDC dc = frm.MapPic(k)->hDC();
  if (!wglMakeCurrent(dc, frm.ViewContext(k))) return {};
  SIZE s = ClientOf(view);
  return ReadBack(s.cx, s.cy);
}

std::string OutDir() {
  std::string dir = win32::ModuleDirectory() + "\\..\\screenshots";
  CreateDirectoryA(dir.c_str(), nullptr);
  return dir;
}

// Saves an image as a PPM file for a person to look at.
void Save(const Image& img, const std::string& name) {
  std::ofstream out(OutDir() + "\\" + name + ".ppm", std::ios::binary);
  out << "P6\n" << img.width << " " << img.height << "\n255\n";
  for (const Rgb& p : img.px) {
    char c[3] = {static_cast<char>(p.r), static_cast<char>(p.g), static_cast<char>(p.b)};
    out.write(c, 3);
  }
}

// The scene of view `k` drawn at `width` x `height` in a window and context
// of the test's own, with the view's pixel format: what a full redraw of
// the view at that size must show.
Image RenderReference(int k, int width, int height, int pixelFormat,
                      quadview::SceneCompiler compile) {
  testsupport::PlainWindow wnd(width, height, true);
  PIXELFORMATDESCRIPTOR pfd{};
  DescribePixelFormat(wnd.dc(), pixelFormat, sizeof pfd, &pfd);
  if (!SetPixelFormat(wnd.dc(), pixelFormat, &pfd)) return {};
  HGLRC previous = wglGetCurrentContext();
  HDC previousDC = wglGetCurrentDC();
  HGLRC rc = wglCreateContext(wnd.dc());
  if (!rc || !wglMakeCurrent(wnd.dc(), rc)) return {};
  glClearColor(1, 1, 1, 0);
  glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
  glEnable(GL_DEPTH_TEST);
  GLuint list = 0;
  quadview::DrawScene(k, width, height, list, compile);
  glFinish();
  Image img = ReadBack(width, height);
  wglMakeCurrent(previousDC, previous);
  wglDeleteContext(rc);
  return img;
}

Image Reference(int k, int width, int height, int pixelFormat, quadview::SceneCompiler compile) {
  static std::map<std::tuple<int, int, int, int, quadview::SceneCompiler>, Image> made;
  auto key = std::make_tuple(k, width, height, pixelFormat, compile);
  auto it = made.find(key);
  if (it == made.end()) it = made.emplace(key, RenderReference(k, width, height, pixelFormat, compile)).first;
  return it->second;
}

// The scene cut down to the middle row of each band (42 shapes): the same
// drawing, cheap enough for hundreds of redraws.
GLuint CompileLightScene() {
  GLuint list = glGenLists(1);
  glNewList(list, GL_COMPILE);
  auto places = mOpenGL::PyramidGridPlaces();
  for (size_t i = 10; i < places.size(); i += 21) mOpenGL::EmitGridPyramid(places[i]);
  glEndList();
  return list;
}

bool Visible(HWND w) { return (GetWindowLongA(w, GWL_STYLE) & WS_VISIBLE) != 0; }

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
  void Load(int result = 0, quadview::QuadHost host = {},
            quadview::SceneCompiler compile = quadview::CompileSceneList) {
    frm = std::make_unique<QuadView_frm>(host);
    frm->SetSceneCompiler(compile);
    scene = compile;
    ASSERT_TRUE(frm->Load());
    Tick(result);
  }
  void Tick(int result) {
    for (int bit = 0; bit < 4; ++bit)
      SendMessageA(frm->Control(quadview::kFormResizeChk + bit), BM_SETCHECK,
                   (result >> bit) & 1 ? BST_CHECKED : BST_UNCHECKED, 0);
  }
  void Show() {
    ShowWindow(frm->hwnd(), SW_SHOW);
    UpdateWindow(frm->hwnd());
    testsupport::Pump(50);
  }
  void Record() {
    frm->SetSwapObserver([this](int view, SwapPath path) {
      SIZE s = ClientOf(frm->MapPic(view)->hwnd());
      frames.push_back({view, path, ReadBack(s.cx, s.cy)});
    });
  }
  bool HasContexts() {
    for (int k = 0; k < 4; ++k)
      if (!frm->ViewContext(k)) return false;
    return true;
  }
  int PixelFormat() { return GetPixelFormat(frm->MapPic(0)->hDC()); }
  // Whether view k presents a full redraw at its present size.
  ::testing::AssertionResult FullyDrawn(int k) {
    Image shown = Presented(*frm, k);
    Image want = Reference(k, shown.width, shown.height, PixelFormat(), scene);
    if (want.px.empty()) return ::testing::AssertionFailure() << "no reference context";
    if (shown == want) return ::testing::AssertionSuccess();
    Save(shown, "quadview_mismatch_view" + std::to_string(k));
    int differ = 0;
    for (size_t i = 0; i < shown.px.size() && i < want.px.size(); ++i)
      differ += !(shown.px[i] == want.px[i]);
    return ::testing::AssertionFailure()
           << "view " << k << " (" << shown.width << "x" << shown.height << ") differs from a"
           << " full redraw in " << differ << " pixels; white share " << shown.Share(kWhite)
           << ", black share " << shown.Share(kBlack);
  }

  bool AllFullyDrawn() {
    for (int k = 0; k < 4; ++k) {
      Image shown = Presented(*frm, k);
      if (!(shown == Reference(k, shown.width, shown.height, PixelFormat(), scene))) return false;
    }
    return true;
  }

  testsupport::MsgBoxRecorder boxes;
  std::unique_ptr<QuadView_frm> frm;
  std::vector<Frame> frames;
  quadview::SceneCompiler scene = quadview::CompileSceneList;
};

#define REQUIRE_GL()                                                              \
  do {                                                                            \
    if (!HasContexts()) GTEST_SKIP() << "no OpenGL context could be made here"; \
  } while (0)

TEST_F(QuadViewWindow, FirstPaintShowsEachViewsRotationOnWhite) {
  Load(0);
  Show();
  REQUIRE_GL();
  EXPECT_TRUE(frm->State().bRefreshDone);
  std::array<Image, 4> views;
  for (int k = 0; k < 4; ++k) {
    views[k] = Presented(*frm, k);
    Save(views[k], "quadview_first_paint_view" + std::to_string(k));
    SCOPED_TRACE(k);
    EXPECT_GT(views[k].Share(kWhite), 0.2) << "white background";
    EXPECT_GT(views[k].Count({255, 0, 0}), 20) << "red points";
    EXPECT_GT(views[k].Count(kBlack), 20) << "black wire pyramids";
    for (auto [fx, fy] : {std::pair{0.02, 0.02}, {0.98, 0.02}, {0.02, 0.98}, {0.98, 0.98}})
      EXPECT_EQ(views[k].AtFraction(fx, fy), kWhite) << "corner " << fx << "," << fy;
  }
  // View 0 faces the front: a band across the middle, one up the middle,
  // nothing at (0.5, 0.5) of its coordinates.
  EXPECT_GT(views[0].InkAround(0.9, 0.5), 0.8);
  EXPECT_GT(views[0].InkAround(0.5, 0.9), 0.8);
  EXPECT_EQ(views[0].InkAround(0.75, 0.25), 0);
  // View 2 is turned by 45 degrees: the bands lie on the diagonals.
  EXPECT_EQ(views[2].InkAround(0.9, 0.5), 0);
  EXPECT_EQ(views[2].InkAround(0.5, 0.9), 0);
  EXPECT_GT(views[2].InkAround(0.75, 0.25), 0.8);
  EXPECT_GT(views[2].InkAround(0.25, 0.25), 0.8);
  EXPECT_FALSE(views[1] == views[0]);
  EXPECT_FALSE(views[3] == views[0]);
  EXPECT_FALSE(views[3] == views[1]);
  for (int k = 0; k < 4; ++k) EXPECT_TRUE(FullyDrawn(k));
}

// The first frames of each view, up to its first full redraw, show
// "INIT k" in white on black at the view's centre; with "Fix Form Paint"
// unticked the marks are swapped in again before the views are redrawn.
TEST_F(QuadViewWindow, FirstFramesShowInitOnBlackBeforeTheWhiteRedraw) {
  struct Case {
    const char* name;
    int boxes;
    bool marksSwappedAgain;
  };
  const Case cases[] = {{"Fix Form Paint unticked", 0, true},
                        {"Fix Form Paint ticked", 2, false},
                        {"all boxes ticked", 15, false}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    frames.clear();
    Load(c.boxes);
    Record();
    Show();
    REQUIRE_GL();
    std::array<Image, 4> marks;
    for (int k = 0; k < 4; ++k) {
      SCOPED_TRACE(k);
      std::vector<const Frame*> mine;
      for (const Frame& f : frames)
        if (f.view == k) mine.push_back(&f);
      ASSERT_GE(mine.size(), 2u);
      size_t firstScene = 0;
      while (firstScene < mine.size() && mine[firstScene]->path != SwapPath::RedrawPic) ++firstScene;
      ASSERT_GT(firstScene, 0u) << "the view shows its mark before it is redrawn";
      ASSERT_LT(firstScene, mine.size()) << "the view is redrawn";
      size_t lastSetUp = 0;
      for (size_t i = 0; i < firstScene; ++i)
        if (mine[i]->path == SwapPath::RefreshGL) lastSetUp = i;
      bool swappedAgain = false;
      for (size_t i = 0; i < firstScene; ++i) {
        const Image& img = mine[i]->image;
        swappedAgain |= i > lastSetUp && mine[i]->path == SwapPath::SwapPic;
        EXPECT_GT(img.Share(kBlack), 0.9) << "frame " << i;
        EXPECT_GT(img.Count(kWhite), 15) << "frame " << i << " has the text";
        EXPECT_EQ(img.Count(kBlack) + img.Count(kWhite), img.width * img.height)
            << "only the text on black";
        for (int y = 0; y < img.height; ++y)
          for (int x = 0; x < img.width; ++x)
            if (img.At(x, y) == kWhite) {
              ASSERT_GE(x, img.width / 2 - 1) << "the text starts at the centre";
              ASSERT_LE(y, img.height / 2 + 1) << "the text stands on the centre line";
            }
      }
      EXPECT_EQ(swappedAgain, c.marksSwappedAgain);
      marks[k] = mine[0]->image;
      if (k == 0) Save(marks[k], std::string("quadview_init_view0"));
      for (size_t i = firstScene; i < mine.size(); ++i)
        EXPECT_GT(mine[i]->image.Share(kWhite), 0.2) << "frame " << i << " is the scene";
      EXPECT_TRUE(FullyDrawn(k));
    }
    EXPECT_FALSE(marks[0] == marks[1]) << "INIT 0 and INIT 1 differ";
    EXPECT_FALSE(marks[2] == marks[3]) << "INIT 2 and INIT 3 differ";
    frm.reset();
  }
}

TEST_F(QuadViewWindow, ResizesBeforeTheFirstPaintOnlyMoveControls) {
  Load(15);
  Record();
  HWND close = frm->Control(quadview::kCloseCbt);
  for (auto [w, h] : {std::pair{900, 700}, {500, 420}, {760, 640}}) {
    SCOPED_TRACE(w);
    SetWindowPos(frm->hwnd(), nullptr, 0, 0, w, h, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    testsupport::Pump();
    RECT client{}, button{};
    GetClientRect(frm->hwnd(), &client);
    GetWindowRect(close, &button);
    MapWindowPoints(nullptr, frm->hwnd(), reinterpret_cast<POINT*>(&button), 2);
    EXPECT_EQ(button.right, client.right - win32::TwipsToPixelsX(120)) << "Close follows the edge";
    SIZE view = ClientOf(frm->MapPic(3)->hwnd());
    SIZE pic = ClientOf(frm->QuadPic()->hwnd());
    EXPECT_NEAR(view.cx, pic.cx / 2 - 2 - 2, 2) << "the views follow QuadPic";
  }
  EXPECT_TRUE(frames.empty()) << "no view was drawn or swapped";
  EXPECT_FALSE(frm->State().bRefreshDone);
  for (int k = 0; k < 4; ++k) {
    EXPECT_EQ(frm->ViewContext(k), nullptr);
    EXPECT_EQ(GetPixelFormat(frm->MapPic(k)->hDC()), 0) << "view " << k << " was not set up";
  }
}

struct ResizeStep {
  const char* name;
  void (*act)(HWND);
};

const ResizeStep kResizeSteps[] = {
    {"bigger",
     [](HWND w) { SetWindowPos(w, nullptr, 0, 0, 860, 700, SWP_NOMOVE | SWP_NOZORDER); }},
    {"smaller",
     [](HWND w) { SetWindowPos(w, nullptr, 0, 0, 520, 430, SWP_NOMOVE | SWP_NOZORDER); }},
    {"maximise", [](HWND w) { ShowWindow(w, SW_MAXIMIZE); }},
    {"restore", [](HWND w) { ShowWindow(w, SW_RESTORE); }},
};

// After each resize every view must show a full redraw at its new size.
// With a resize box ticked the resize paths redraw; without, the window's
// paint path does, as moving the controls uncovers parts of the window on
// every resize, and a growing window is repainted anyway.
TEST_F(QuadViewWindow, EveryBoxCombinationKeepsTheViewsDrawnThroughResizes) {
#ifdef _WIN64
  // NOTE: after a resize, 64-bit Wine's buffer swap leaves the back buffer
  // that this check reads undefined (black when the machine is busy), so
  // what a view presents cannot be read back there; the 32-bit build is
  // checked here.
  GTEST_SKIP() << "the presented picture cannot be read back after a resize on 64-bit Wine";
#endif
  int checked = 0;
  for (int boxes = 0; boxes < 16; ++boxes) {
    SCOPED_TRACE("boxes " + std::to_string(boxes));
    Load(boxes, {}, CompileLightScene);
    SetWindowPos(frm->hwnd(), nullptr, 20, 20, 640, 520, SWP_NOZORDER);
    Show();
    REQUIRE_GL();
    for (const ResizeStep& step : kResizeSteps) {
      SCOPED_TRACE(step.name);
      step.act(frm->hwnd());
      // The paints a resize raises come when the display server has
      // answered; a loaded machine answers late, so wait (within bounds)
      // until the window has settled.
      for (int waited = 0; waited < 3000 && !AllFullyDrawn(); waited += 30) testsupport::Pump(30);
      for (int k = 0; k < 4; ++k) {
        Image shown = Presented(*frm, k);
        ASSERT_GT(shown.width, 0);
        EXPECT_TRUE(FullyDrawn(k));
        EXPECT_GT(shown.Share(kWhite), 0.5) << "not grey or black";
        ++checked;
      }
    }
    frm.reset();
  }
  EXPECT_EQ(checked, 16 * 4 * 4);
}

// The swap observer runs while the outer call still holds its guard; what
// it starts there must be dropped when it needs the same guard.
TEST_F(QuadViewWindow, ReentrantRedrawsAndSwapsAreDropped) {
  Load(0);
  Show();
  REQUIRE_GL();
  struct Case {
    const char* name;
    void (*outer)(QuadView_frm&);
    void (*inner)(QuadView_frm&);
    bool innerRuns;
  };
  const Case cases[] = {
      {"RedrawPic inside RedrawPic", [](QuadView_frm& f) { f.RedrawPic(0); },
       [](QuadView_frm& f) { f.RedrawPic(1); }, false},
      {"window paint inside RedrawPic", [](QuadView_frm& f) { f.RedrawPic(0); },
       [](QuadView_frm& f) {
         RedrawWindow(f.hwnd(), nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
       },
       false},
      {"SwapPic inside SwapPic", [](QuadView_frm& f) { f.SwapPic(0); },
       [](QuadView_frm& f) { f.SwapPic(1); }, false},
      {"window resize inside SwapPic", [](QuadView_frm& f) { f.SwapPic(0); },
       [](QuadView_frm& f) { SendMessageA(f.hwnd(), WM_SIZE, 0, MAKELPARAM(500, 400)); }, false},
      {"SwapPic inside RedrawPic", [](QuadView_frm& f) { f.RedrawPic(0); },
       [](QuadView_frm& f) { f.SwapPic(1); }, true},
      {"RedrawPic inside SwapPic", [](QuadView_frm& f) { f.SwapPic(0); },
       [](QuadView_frm& f) { f.RedrawPic(1); }, true},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    int depth = 0;
    bool armed = true;
    std::vector<std::pair<int, int>> seen;  // (depth, view)
    frm->SetSwapObserver([&](int view, SwapPath) {
      ++depth;
      seen.push_back({depth, view});
      if (depth == 1 && armed) {
        armed = false;
        c.inner(*frm);
      }
      --depth;
    });
    c.outer(*frm);
    bool nested = std::any_of(seen.begin(), seen.end(), [](auto& s) { return s.first == 2; });
    EXPECT_EQ(nested, c.innerRuns);
    EXPECT_FALSE(frm->State().bInRedraw);
    EXPECT_FALSE(frm->State().bInSwap);
    seen.clear();
    frm->RedrawPic(2);
    frm->SwapPic(3);
    EXPECT_EQ(seen.size(), 2u) << "the guards are free again";
  }
  frm->SetSwapObserver(nullptr);
}

TEST_F(QuadViewWindow, AHiddenFirstPaintSetsUpOnceAndTheShownOneReusesTheContexts) {
  Load(0);
  SendMessageA(frm->hwnd(), WM_PAINT, 0, 0);
  REQUIRE_GL();
  EXPECT_FALSE(frm->State().bRefreshDone) << "not visible yet";
  std::array<HGLRC, 4> contexts{};
  for (int k = 0; k < 4; ++k) contexts[k] = frm->ViewContext(k);
  EXPECT_EQ(std::set<HGLRC>(contexts.begin(), contexts.end()).size(), 4u) << "one per view";
  for (GLuint list : frm->State().ViewList) EXPECT_EQ(list, 0u) << "nothing was redrawn yet";
  Show();
  EXPECT_TRUE(frm->State().bRefreshDone);
  for (int k = 0; k < 4; ++k) {
    EXPECT_EQ(frm->ViewContext(k), contexts[k]) << "view " << k << " keeps its context";
    EXPECT_NE(frm->State().ViewList[k], 0u);
    EXPECT_TRUE(FullyDrawn(k));
  }
}

TEST_F(QuadViewWindow, ViewportFiguresAreAppendedOnceFromTheFirstRedraw) {
  Load(15);
  SetWindowPos(frm->hwnd(), nullptr, 20, 20, 640, 520, SWP_NOZORDER);
  SIZE first = ClientOf(frm->MapPic(0)->hwnd());
  Show();
  REQUIRE_GL();
  GLint maxDims[2] = {};
  wglMakeCurrent(frm->MapPic(0)->hDC(), frm->ViewContext(0));
  glGetIntegerv(GL_MAX_VIEWPORT_DIMS, maxDims);
  const std::string expected = quadview::DescriptionText() + "\n\n" + std::to_string(maxDims[0]) +
                               ", " + std::to_string(maxDims[1]) + " - 0, 0, " +
                               std::to_string(first.cx) + ", " + std::to_string(first.cy);
  EXPECT_EQ(win32::GetText(frm->Control(quadview::kGLTestDescLbl)), expected);
  EXPECT_EQ(frm->State().InfoShown, 1);
  for (const ResizeStep& step : kResizeSteps) step.act(frm->hwnd());
  SendMessageA(frm->Control(quadview::kRedrawCbt), BM_CLICK, 0, 0);
  testsupport::Pump(20);
  EXPECT_EQ(win32::GetText(frm->Control(quadview::kGLTestDescLbl)), expected);
  EXPECT_EQ(frm->State().InfoShown, 1);
}

TEST_F(QuadViewWindow, CaptionAndFormBoxesFromTheMainWindow) {
  struct Case {
    quadview::QuadHost host;
    const char* caption;
    int formBoxes;
  };
  const Case cases[] = {{{"QuadView", false}, "QuadView Velmora", 0},
                        {{"QuadView", true}, "QuadView Velmora", 1},
                        {{"Quad &View", true}, "Quad &View Velmora", 1}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.caption);
    frm = std::make_unique<QuadView_frm>(c.host);
    ASSERT_TRUE(frm->Load());
    EXPECT_EQ(win32::GetText(frm->hwnd()), c.caption);
    EXPECT_EQ(win32::GetText(frm->Control(quadview::kGLTestDescLbl)), quadview::DescriptionText());
    quadview::FixBoxes b = frm->Boxes();
    EXPECT_EQ(b.formResize, c.formBoxes);
    EXPECT_EQ(b.formPaint, c.formBoxes);
    EXPECT_EQ(b.picResize, 0);
    EXPECT_EQ(b.picPaint, 0);
    EXPECT_FALSE(frm->State().bRefreshDone);
    const std::pair<int, const char*> captions[] = {
        {quadview::kFormResizeChk, "Fix Form Resize"}, {quadview::kFormPaintChk, "Fix Form Paint"},
        {quadview::kOpenGLPicResizeChk, "Fix Pic Resize"},   {quadview::kOpenGLPicPaintChk, "Fix Pic Paint"},
        {quadview::kRedrawCbt, "Redraw"},              {quadview::kCopyPictureCmd, "Copy Picture"},
        {quadview::kErrorCbt, "Error"},                {quadview::kCloseCbt, "Close"}};
    for (auto [id, text] : captions) EXPECT_EQ(win32::GetText(frm->Control(id)), text);
  }
}

// Redraw_Cbt shares Error_Cbt's place; Error_Cbt lies on top there, and
// the copy button, when shown, lies over the views.
TEST_F(QuadViewWindow, ErrorLiesOverRedrawAndTheCopyButtonOverTheViews) {
  Load(0);
  SetWindowPos(frm->hwnd(), nullptr, 0, 0, 700, 560, SWP_NOMOVE | SWP_NOZORDER);
  frm->Form_KeyUp('C', 2);
  Show();
  auto topAt = [&](HWND control) {
    RECT r{};
    GetWindowRect(control, &r);
    POINT centre{(r.left + r.right) / 2, (r.top + r.bottom) / 2};
    ScreenToClient(frm->hwnd(), &centre);
    return ChildWindowFromPointEx(frm->hwnd(), centre, CWP_SKIPINVISIBLE);
  };
  HWND error = frm->Control(quadview::kErrorCbt), redraw = frm->Control(quadview::kRedrawCbt);
  EXPECT_EQ(win32::WindowRectTwips(error).left, win32::WindowRectTwips(redraw).left);
  EXPECT_EQ(win32::WindowRectTwips(error).top, win32::WindowRectTwips(redraw).top);
  EXPECT_EQ(topAt(redraw), error);
  // What the screen shows there is Error_Cbt, whether Redraw_Cbt is shown or not.
  auto screen = [&] {
    RedrawWindow(frm->hwnd(), nullptr, nullptr, RDW_INVALIDATE | RDW_ALLCHILDREN | RDW_UPDATENOW);
    testsupport::Pump(50);
    RECT r{};
    GetWindowRect(error, &r);
    HDC dc = GetDC(nullptr);
    std::vector<COLORREF> px;
    for (int y = r.top; y < r.bottom; y += 2)
      for (int x = r.left; x < r.right; x += 2) px.push_back(GetPixel(dc, x, y));
    ReleaseDC(nullptr, dc);
    return px;
  };
  const auto both = screen();
  ShowWindow(redraw, SW_HIDE);
  const auto errorAlone = screen();
  ShowWindow(redraw, SW_SHOWNA);
  ShowWindow(error, SW_HIDE);
  const auto redrawAlone = screen();
  ShowWindow(error, SW_SHOWNA);
  EXPECT_NE(errorAlone, redrawAlone) << "the two captions differ on screen";
  EXPECT_EQ(both, errorAlone);
  HWND copy = frm->Control(quadview::kCopyPictureCmd);
  EXPECT_EQ(topAt(copy), copy);
}

// Key-up with Ctrl held reaches the window whichever control has the focus.
TEST_F(QuadViewWindow, CtrlVTogglesTheBoxesAndCtrlCTheCopyButton) {
  Load(0);
  Show();
  HWND copy = frm->Control(quadview::kCopyPictureCmd);
  HWND boxesShown[4];
  for (int i = 0; i < 4; ++i) boxesShown[i] = frm->Control(quadview::kFormResizeChk + i);
  EXPECT_FALSE(Visible(copy));
  SetFocus(frm->Control(quadview::kOpenGLPicPaintChk));
  BYTE keys[256] = {};
  GetKeyboardState(keys);
  auto keyUp = [&](int vk, bool ctrl) {
    keys[VK_CONTROL] = ctrl ? 0x80 : 0;
    SetKeyboardState(keys);
    SendMessageA(GetFocus(), WM_KEYUP, vk, 0xC0000001);
  };
  struct Step {
    int key;
    bool ctrl;
    bool boxes, copyShown;
  };
  const Step steps[] = {{'V', false, true, false}, {'V', true, false, false},
                        {'C', true, false, true},  {'X', true, false, true},
                        {'C', false, false, true}, {'V', true, true, true},
                        {'C', true, true, false}};
  int n = 0;
  for (const Step& s : steps) {
    SCOPED_TRACE(++n);
    keyUp(s.key, s.ctrl);
    for (HWND b : boxesShown) EXPECT_EQ(Visible(b), s.boxes);
    EXPECT_EQ(Visible(copy), s.copyShown);
  }
  keys[VK_CONTROL] = 0;
  SetKeyboardState(keys);
}

// InitRC failing for every view: the message per view, the views still
// cleared and swapped where possible, and the window closes normally.
HGLRC WINAPI RefusedContext(HDC) {
  SetLastError(ERROR_ACCESS_DENIED);
  return nullptr;
}

TEST_F(QuadViewWindow, NoGLAccessIsReportedPerViewAndNothingBreaks) {
  mOpenGL::Platform().CreateContext = &RefusedContext;
  for (int k = 0; k < 4; ++k) {
    boxes.Answer(IDABORT);  // the device layer's Abort/Retry/Ignore box
    boxes.Answer(IDOK);
  }
  Load(0);
  Show();
  mOpenGL::ResetPlatform();
  int noAccess = 0;
  for (const auto& call : boxes.calls())
    if (call.text == "No GL Access (1)") {
      ++noAccess;
      EXPECT_EQ(call.title, "Velmora");
      EXPECT_EQ(call.style, static_cast<UINT>(MB_OK));
    }
  EXPECT_EQ(noAccess, 4);
  for (int k = 0; k < 4; ++k) EXPECT_EQ(frm->ViewContext(k), nullptr);
  ShowWindow(frm->hwnd(), SW_MAXIMIZE);
  SendMessageA(frm->Control(quadview::kRedrawCbt), BM_CLICK, 0, 0);
  testsupport::Pump(20);
  frm->Unload();
  EXPECT_FALSE(frm->Loaded());
}

TEST_F(QuadViewWindow, AStormOfAThousandResizesAndPaints) {
  Load(0, {}, CompileLightScene);
  Show();
  REQUIRE_GL();
  std::array<HGLRC, 4> contexts{};
  for (int k = 0; k < 4; ++k) contexts[k] = frm->ViewContext(k);
  const auto lists = frm->State().ViewList;
  auto storm = [&](int from, int to) {
    for (int i = from; i < to; ++i) {
      if (i % 100 == 0) Tick(i / 100 % 16);
      SetWindowPos(frm->hwnd(), nullptr, 0, 0, 360 + (i * 37) % 420, 300 + (i * 53) % 330,
                   SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
      if (i % 3 == 0)
        RedrawWindow(frm->hwnd(), nullptr, nullptr,
                     RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_UPDATENOW);
      if (i % 7 == 0) PostMessageA(frm->MapPic(i % 4)->hwnd(), WM_PAINT, 0, 0);
      testsupport::Pump();
    }
  };
  storm(0, 60);
  const size_t bytesBefore = testsupport::PrivateBytes();
  const DWORD gdiBefore = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS);
  const DWORD userBefore = GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS);
  const DWORD start = GetTickCount();
  storm(0, 1000);
  const DWORD ms = GetTickCount() - start;
  const size_t bytesAfter = testsupport::PrivateBytes();
  const DWORD gdiAfter = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS);
  const DWORD userAfter = GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS);
  std::printf("storm: 1000 resizes in %lu ms; private bytes %zu -> %zu; GDI objects %lu -> %lu;"
              " USER objects %lu -> %lu\n",
              ms, bytesBefore, bytesAfter, gdiBefore, gdiAfter, userBefore, userAfter);
  EXPECT_GT(bytesBefore, 0u);
  EXPECT_LT(bytesAfter, bytesBefore + 8u * 1024 * 1024) << "private bytes grew";
  EXPECT_LE(gdiAfter, gdiBefore + 4);
  EXPECT_LE(userAfter, userBefore + 4);
  for (int k = 0; k < 4; ++k) {
    EXPECT_EQ(frm->ViewContext(k), contexts[k]) << "no context was made again";
    EXPECT_EQ(frm->State().ViewList[k], lists[k]) << "no list was compiled again";
  }
  EXPECT_EQ(frm->State().InfoShown, 1);
  SendMessageA(frm->Control(quadview::kRedrawCbt), BM_CLICK, 0, 0);
  for (int k = 0; k < 4; ++k) EXPECT_TRUE(FullyDrawn(k));
}

// Runs `step` every 20 ms from a thread timer, also inside modal loops,
// until it returns true. A step that starts a nested modal loop must post
// its click rather than send it, so that the timer is not re-entered.
class Script {
 public:
  explicit Script(std::function<bool()> step) : step_(std::move(step)) {
    current_ = this;
    timer_ = SetTimer(nullptr, 0, 20, &Script::Tick);
  }
  ~Script() {
    KillTimer(nullptr, timer_);
    current_ = nullptr;
  }
  bool Done() const { return done_; }

 private:
  static void CALLBACK Tick(HWND, UINT, UINT_PTR, DWORD) {
    Script* s = current_;
    if (!s || s->done_ || s->running_) return;
    s->running_ = true;
    s->done_ = s->step_();
    s->running_ = false;
  }
  static inline Script* current_ = nullptr;
  std::function<bool()> step_;
  UINT_PTR timer_ = 0;
  bool done_ = false, running_ = false;
};

void Post(HWND control, UINT msg = BM_CLICK, WPARAM wp = 0, LPARAM lp = 0) {
  PostMessageA(control, msg, wp, lp);
}

struct CloseCase {
  const char* name;
  int boxes;
  // Closes the shown window, in steps (true when done).
  std::function<bool(QuadView_frm&, int step)> close;
  short status;
  const char* result;
};

// ShowMe runs modally until the window is closed, from wherever and at
// whatever moment; its result tells which control ended the test.
TEST_F(QuadViewWindow, ShowMeEndsCleanlyHoweverTheWindowIsClosed) {
  const CloseCase cases[] = {
      {"Close button", 5,
       [](QuadView_frm& f, int) { return Post(f.Control(quadview::kCloseCbt)), true; }, 1, "5"},
      {"Error button", 5,
       [](QuadView_frm& f, int) { return Post(f.Control(quadview::kErrorCbt)), true; }, 2,
       "ERROR"},
      {"system menu Close", 9,
       [](QuadView_frm& f, int) { return Post(f.hwnd(), WM_SYSCOMMAND, SC_CLOSE), true; }, 1,
       "9"},
      {"Alt+F4 on the focused control", 15,
       [](QuadView_frm&, int) { return Post(GetFocus(), WM_SYSKEYDOWN, VK_F4, 0x20000001), true; },
       1, "15"},
      {"system menu Close while Error has the focus", 3,
       [](QuadView_frm& f, int step) {
         if (step == 0) SetFocus(f.Control(quadview::kErrorCbt));
         else Post(f.hwnd(), WM_SYSCOMMAND, SC_CLOSE);
         return step == 1;
       },
       2, "ERROR"},
      {"closed by another program", 0,
       [](QuadView_frm& f, int) { return Post(f.hwnd(), WM_CLOSE), true; }, 1, "0"},
      {"Windows shutting down", 2,
       [](QuadView_frm& f, int) { return SendMessageA(f.hwnd(), WM_ENDSESSION, TRUE, 0), true; },
       1, "2"},
      {"system menu Close during a redraw", 4,
       [](QuadView_frm& f, int step) {
         if (step == 0) {
           f.SetSwapObserver([&f, asked = false](int, SwapPath path) mutable {
             if (asked || path != SwapPath::RedrawPic) return;
             asked = true;
             SendMessageA(f.hwnd(), WM_SYSCOMMAND, SC_CLOSE, 0);
             EXPECT_TRUE(f.Loaded()) << "the redraw is finished first";
             EXPECT_FALSE(IsWindowVisible(f.hwnd())) << "but the window hides at once";
           });
           Post(f.Control(quadview::kRedrawCbt));
         }
         return true;
       },
       1, "4"},
  };
  testsupport::PlainWindow other(100, 80, true);
  for (const CloseCase& c : cases) {
    SCOPED_TRACE(c.name);
    Load(c.boxes);
    int step = 0;
    bool otherDisabled = false;
    Script script([&] {
      if (!IsWindowVisible(frm->hwnd())) return false;
      otherDisabled = !IsWindowEnabled(other.hwnd());
      return c.close(*frm, step++);
    });
    std::string result;
    testsupport::ModalDeadline deadline(20000);
    short status = frm->ShowMe(result);
    EXPECT_FALSE(deadline.Expired());
    EXPECT_EQ(status, c.status);
    EXPECT_EQ(result, c.result);
    EXPECT_TRUE(script.Done());
    EXPECT_FALSE(frm->Loaded());
    EXPECT_EQ(wglGetCurrentContext(), nullptr);
    EXPECT_TRUE(otherDisabled) << "the program's other windows wait while it is shown";
    EXPECT_TRUE(IsWindowEnabled(other.hwnd())) << "and get their input back";
    frm.reset();
  }
}

// A close asked for inside the very first paint (while the views are being
// set up) waits for the paint and then ends the test.
TEST_F(QuadViewWindow, CloseDuringTheFirstPaintWaitsForIt) {
  Load(0);
  bool asked = false;
  frm->SetSwapObserver([&](int view, SwapPath path) {
    if (asked || path != SwapPath::RefreshGL || view != 1) return;
    asked = true;
    SendMessageA(frm->hwnd(), WM_SYSCOMMAND, SC_CLOSE, 0);
    EXPECT_TRUE(frm->Loaded());
  });
  std::string result;
  testsupport::ModalDeadline deadline(20000);
  EXPECT_EQ(frm->ShowMe(result), 1);
  EXPECT_FALSE(deadline.Expired());
  EXPECT_EQ(result, "0");
  EXPECT_TRUE(asked);
  EXPECT_FALSE(frm->Loaded());
}

// What the twin shows at a point of its picture.
COLORREF TwinPixel(int x, int y) {
  return GetPixel(quadview::QuadPrint().QuadPic()->hDC(), x, y);
}

TEST_F(QuadViewWindow, CopyPictureShowsTheViewsOnTheTwinInTheSameArrangement) {
  Load(0);
  SetWindowPos(frm->hwnd(), nullptr, 30, 30, 700, 560, SWP_NOZORDER);
  Show();
  REQUIRE_GL();
  HWND copy = frm->Control(quadview::kCopyPictureCmd);
  frm->Form_KeyUp('C', 2);
  ASSERT_TRUE(Visible(copy)) << "Ctrl+C shows the button";
  std::array<Image, 4> views;
  std::array<POINT, 4> at{};
  for (int k = 0; k < 4; ++k) {
    views[k] = Presented(*frm, k);
    MapWindowPoints(frm->MapPic(k)->hwnd(), frm->QuadPic()->hwnd(), &at[k], 1);
  }
  const COLORREF face = GetSysColor(COLOR_BTNFACE);
  int compared = 0, inked = 0;
  bool shownModally = false;
  Script script([&] {
    quadview::QuadPrint_frm& twin = quadview::QuadPrint();
    if (!twin.Loaded() || !IsWindowVisible(twin.hwnd())) return false;
    testsupport::Pump();
    shownModally = !IsWindowEnabled(frm->hwnd());
    EXPECT_EQ(win32::GetText(twin.hwnd()), "QuadView Velmora");
    for (int k = 0; k < 4; ++k) {
      SCOPED_TRACE(k);
      POINT twinAt{};
      MapWindowPoints(twin.MapPic(k)->hwnd(), twin.QuadPic()->hwnd(), &twinAt, 1);
      EXPECT_EQ(twinAt.x, at[k].x) << "the twin lays its views out in the same places";
      EXPECT_EQ(twinAt.y, at[k].y);
      for (int y = 0; y < views[k].height; y += 3)
        for (int x = 0; x < views[k].width; x += 3) {
          Rgb v = views[k].At(x, y);
          COLORREF want = v == kWhite ? face : RGB(v.r, v.g, v.b);
          COLORREF got = TwinPixel(at[k].x + x, at[k].y + y);
          if (got != want) {
            ADD_FAILURE() << "at " << x << "," << y << ": " << std::hex << got << " not " << want;
            return true;
          }
          ++compared;
          inked += !(v == kWhite);
        }
      EXPECT_EQ(TwinPixel(at[k].x - 2, at[k].y - 2), face) << "the gaps keep the background";
    }
    Post(twin.hwnd(), WM_SYSCOMMAND, SC_CLOSE);
    return true;
  });
  Post(copy);
  for (int i = 0; i < 500 && !(script.Done() && !quadview::QuadPrint().Loaded()); ++i)
    testsupport::Pump(20);
  EXPECT_TRUE(script.Done());
  EXPECT_TRUE(shownModally);
  EXPECT_GT(compared, 1000);
  EXPECT_GT(inked, 100);
  EXPECT_FALSE(quadview::QuadPrint().Loaded()) << "the twin's ShowMe unloads it";
  EXPECT_TRUE(IsWindowEnabled(frm->hwnd()));
}

// The quad view asked to close (by another program) while its twin is
// shown hides at once and goes when the twin has been closed.
TEST_F(QuadViewWindow, ACloseWhileTheTwinIsShownWaitsForTheTwin) {
  Load(0);
  Show();
  REQUIRE_GL();
  bool hidden = false;
  Script script([&] {
    quadview::QuadPrint_frm& twin = quadview::QuadPrint();
    if (!twin.Loaded() || !IsWindowVisible(twin.hwnd())) return false;
    SendMessageA(frm->hwnd(), WM_CLOSE, 0, 0);
    hidden = !IsWindowVisible(frm->hwnd()) && frm->Loaded();
    Post(twin.hwnd(), WM_SYSCOMMAND, SC_CLOSE);
    return true;
  });
  Post(frm->Control(quadview::kCopyPictureCmd));
  for (int i = 0; i < 500 && frm->Loaded(); ++i) testsupport::Pump(20);
  EXPECT_TRUE(script.Done());
  EXPECT_TRUE(hidden);
  EXPECT_FALSE(frm->Loaded());
  EXPECT_FALSE(quadview::QuadPrint().Loaded());
}

TEST_F(QuadViewWindow, TheTwinOffersTheSameFormAndItsEndingIsUnloadedWithTheQuadView) {
  quadview::QuadPrint_frm& twin = quadview::QuadPrint();
  twin.SetHost({"QuadView", true});
  ASSERT_TRUE(twin.Load());
  EXPECT_EQ(win32::GetText(twin.hwnd()), "QuadView Velmora");
  EXPECT_EQ(twin.Control(quadview::kRedrawCbt), nullptr);
  EXPECT_EQ(twin.Control(quadview::kCopyPictureCmd), nullptr);
  EXPECT_EQ(twin.Boxes().formResize, 1);
  EXPECT_EQ(twin.Boxes().picPaint, 0);
  twin.Form_KeyUp('V', 2);
  EXPECT_FALSE(Visible(twin.Control(quadview::kOpenGLPicPaintChk)));
  twin.Form_KeyUp('C', 2);  // no copy button: nothing happens
  twin.Redraw(0);
  twin.RefreshGL();
  Script script([&] {
    if (!IsWindowVisible(twin.hwnd())) return false;
    ShowWindow(twin.hwnd(), SW_MAXIMIZE);
    testsupport::Pump();
    ShowWindow(twin.hwnd(), SW_RESTORE);
    SetFocus(twin.Control(quadview::kErrorCbt));
    Post(twin.Control(quadview::kErrorCbt));
    return true;
  });
  std::string result;
  testsupport::ModalDeadline deadline(20000);
  EXPECT_EQ(twin.ShowMe(result), 2);
  EXPECT_FALSE(deadline.Expired());
  EXPECT_EQ(result, "ERROR");
  EXPECT_FALSE(twin.Loaded());

  ASSERT_TRUE(twin.Load());
  Load(0);
  frm.reset();
  EXPECT_FALSE(twin.Loaded()) << "the quad view's end unloads the twin";
}

}  // namespace
