// The quad view as a real window: what its views show after each redraw
// path, its guards, closing, the copy to the twin, and a storm of resizes.
// The views are read back through OpenGL (a screenshot shows OpenGL child
// windows black here); right after a swap the back buffer holds what the
// view presents.
#include "quadview/quadview_frm.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <map>
#include <set>
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
  double Share(Rgb c) const { return px.empty() ? 0 : double(Count(c)) / px.size(); }
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

SIZE ClientOf(HWND wnd) {
  RECT rc{};
  GetClientRect(wnd, &rc);
  return {rc.right, rc.bottom};
}

// What view `k` presents now.
Image Presented(QuadView_frm& frm, int k) {
  if (!wglMakeCurrent(frm.MapPic(k)->hDC(), frm.ViewContext(k))) return {};
  SIZE s = ClientOf(frm.MapPic(k)->hwnd());
  return ReadBack(s.cx, s.cy);
}

// The scene of view `k` drawn at `width` x `height` with the view's pixel
// format in a window of the test's own: what a full redraw must show.
Image Reference(int k, int width, int height, int pixelFormat, quadview::SceneCompiler compile) {
  static std::map<std::tuple<int, int, int, int, quadview::SceneCompiler>, Image> made;
  auto key = std::make_tuple(k, width, height, pixelFormat, compile);
  if (auto it = made.find(key); it != made.end()) return it->second;
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
    frm->SetSceneCompiler(scene = compile);
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
  void Resize(int width, int height) {
    SetWindowPos(frm->hwnd(), nullptr, 0, 0, width, height,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
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
  // Whether view k presents a full redraw at its present size.
  ::testing::AssertionResult FullyDrawn(int k) {
    Image shown = Presented(*frm, k);
    Image want = Reference(k, shown.width, shown.height, GetPixelFormat(frm->MapPic(0)->hDC()),
                           scene);
    if (want.px.empty()) return ::testing::AssertionFailure() << "no reference context";
    if (shown == want) return ::testing::AssertionSuccess();
    int differ = 0;
    for (size_t i = 0; i < shown.px.size() && i < want.px.size(); ++i)
      differ += !(shown.px[i] == want.px[i]);
    return ::testing::AssertionFailure()
           << "view " << k << " (" << shown.width << "x" << shown.height << ") differs from a"
           << " full redraw in " << differ << " pixels; white share " << shown.Share(kWhite);
  }
  bool AllFullyDrawn() {
    for (int k = 0; k < 4; ++k)
      if (!FullyDrawn(k)) return false;
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

// Before the first paint a resize only moves the controls; a hidden first
// paint sets the views up, and the shown one reuses their contexts.
TEST_F(QuadViewWindow, ResizesBeforeTheFirstPaintOnlyMoveControlsAndContextsAreMadeOnce) {
  Load(15);
  Record();
  for (auto [w, h] : {std::pair{900, 700}, {500, 420}, {760, 640}}) {
    Resize(w, h);
    testsupport::Pump();
    SIZE view = ClientOf(frm->MapPic(3)->hwnd()), pic = ClientOf(frm->QuadPic()->hwnd());
    EXPECT_NEAR(view.cx, pic.cx / 2 - 4, 2) << w << ": the views follow QuadPic";
  }
  EXPECT_TRUE(frames.empty()) << "no view was drawn or swapped";
  for (int k = 0; k < 4; ++k) EXPECT_EQ(GetPixelFormat(frm->MapPic(k)->hDC()), 0) << k;

  Tick(0);
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

// Until its first full redraw each view shows "INIT k" in white on black at
// its centre (with "Fix Form Paint" unticked the marks are swapped in
// again); then each view shows the grid, turned its own way, on white.
TEST_F(QuadViewWindow, FirstFramesShowInitOnBlackThenEachViewsRotationOnWhite) {
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
    std::array<Image, 4> marks, views;
    for (int k = 0; k < 4; ++k) {
      SCOPED_TRACE(k);
      std::vector<const Frame*> mine;
      for (const Frame& f : frames)
        if (f.view == k) mine.push_back(&f);
      size_t first = 0, lastSetUp = 0;
      while (first < mine.size() && mine[first]->path != SwapPath::RedrawPic) ++first;
      ASSERT_GT(first, 0u) << "the view shows its mark before it is redrawn";
      ASSERT_LT(first, mine.size()) << "the view is redrawn";
      for (size_t i = 0; i < first; ++i)
        if (mine[i]->path == SwapPath::RefreshGL) lastSetUp = i;
      bool swappedAgain = false;
      for (size_t i = 0; i < first; ++i) {
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
      for (size_t i = first; i < mine.size(); ++i)
        EXPECT_GT(mine[i]->image.Share(kWhite), 0.2) << "frame " << i << " is the scene";
      views[k] = Presented(*frm, k);
      EXPECT_GT(views[k].Count({255, 0, 0}), 20) << "red points";
      EXPECT_GT(views[k].Count(kBlack), 20) << "black wire pyramids";
      EXPECT_TRUE(FullyDrawn(k));
    }
    EXPECT_FALSE(marks[0] == marks[1]) << "INIT 0 and INIT 1 differ";
    EXPECT_FALSE(marks[2] == marks[3]) << "INIT 2 and INIT 3 differ";
    EXPECT_FALSE(views[1] == views[0]);
    EXPECT_FALSE(views[3] == views[0]);
    EXPECT_FALSE(views[3] == views[1]);
    frm.reset();
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

// With a resize box ticked the resize paths redraw; without, the window's
// paint path does, as moving the controls uncovers parts of the window.
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
      // A loaded display server answers late: wait (within bounds) until the window settles.
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
  using Act = void (*)(QuadView_frm&);
  const Act redraw = [](QuadView_frm& f) { f.RedrawPic(1); };
  const Act swap = [](QuadView_frm& f) { f.SwapPic(1); };
  const Act paint = [](QuadView_frm& f) {
    RedrawWindow(f.hwnd(), nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
  };
  const Act resize = [](QuadView_frm& f) {
    SendMessageA(f.hwnd(), WM_SIZE, 0, MAKELPARAM(500, 400));
  };
  struct Case {
    const char* name;
    Act outer, inner;
    bool innerRuns;
  };
  const Case cases[] = {{"RedrawPic inside RedrawPic", redraw, redraw, false},
                        {"window paint inside RedrawPic", redraw, paint, false},
                        {"SwapPic inside SwapPic", swap, swap, false},
                        {"window resize inside SwapPic", swap, resize, false},
                        {"SwapPic inside RedrawPic", redraw, swap, true},
                        {"RedrawPic inside SwapPic", swap, redraw, true}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    int depth = 0;
    bool nested = false, armed = true;
    frm->SetSwapObserver([&](int, SwapPath) {
      if (++depth == 2) nested = true;
      if (depth == 1 && armed) {
        armed = false;
        c.inner(*frm);
      }
      --depth;
    });
    c.outer(*frm);
    EXPECT_EQ(nested, c.innerRuns);
    EXPECT_FALSE(frm->State().bInRedraw);
    EXPECT_FALSE(frm->State().bInSwap);
    int after = 0;
    frm->SetSwapObserver([&](int, SwapPath) { ++after; });
    frm->RedrawPic(2);
    frm->SwapPic(3);
    EXPECT_EQ(after, 2) << "the guards are free again";
  }
  frm->SetSwapObserver(nullptr);
}

// The twin's test covers a host that forces the redraw.
TEST_F(QuadViewWindow, CaptionsAndFormBoxesFromTheMainWindow) {
  frm = std::make_unique<QuadView_frm>(quadview::QuadHost{"Quad &View", false});
  ASSERT_TRUE(frm->Load());
  EXPECT_EQ(win32::GetText(frm->hwnd()), "Quad &View Velmora");
  quadview::FixBoxes b = frm->Boxes();
  EXPECT_EQ((std::array<int, 4>{b.formResize, b.formPaint, b.picResize, b.picPaint}),
            (std::array<int, 4>{0, 0, 0, 0}));
  const std::pair<int, const char*> captions[] = {
      {quadview::kFormResizeChk, "Fix Form Resize"}, {quadview::kFormPaintChk, "Fix Form Paint"},
      {quadview::kOpenGLPicResizeChk, "Fix Pic Resize"},
      {quadview::kOpenGLPicPaintChk, "Fix Pic Paint"}, {quadview::kRedrawCbt, "Redraw"},
      {quadview::kCopyPictureCmd, "Copy Picture"},     {quadview::kErrorCbt, "Error"},
      {quadview::kCloseCbt, "Close"}};
  for (auto [id, text] : captions) EXPECT_EQ(win32::GetText(frm->Control(id)), text);
}

// Redraw_Cbt shares Error_Cbt's place and Error_Cbt lies on top there; the
// copy button, when shown, lies over the views.
TEST_F(QuadViewWindow, ErrorLiesOverRedrawAndTheCopyButtonOverTheViews) {
  Load(0);
  Resize(700, 560);
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
  HWND copy = frm->Control(quadview::kCopyPictureCmd);
  EXPECT_EQ(topAt(redraw), error);
  EXPECT_EQ(topAt(copy), copy);
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
  EXPECT_NE(screen(), errorAlone) << "the two captions differ on screen";
  ShowWindow(error, SW_SHOWNA);
  EXPECT_EQ(both, errorAlone);
}

HGLRC WINAPI RefusedContext(HDC) {
  SetLastError(ERROR_ACCESS_DENIED);
  return nullptr;
}

// InitRC failing for every view: a message per view, and nothing breaks.
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

// The first redraw appends the viewport figures, once; a storm of resizes
// and paints makes no context or list again and keeps nothing.
TEST_F(QuadViewWindow, AStormOfAThousandResizesAndPaintsKeepsNothing) {
  Load(0, {}, CompileLightScene);
  SIZE first = ClientOf(frm->MapPic(0)->hwnd());
  Show();
  REQUIRE_GL();
  GLint maxDims[2] = {};
  wglMakeCurrent(frm->MapPic(0)->hDC(), frm->ViewContext(0));
  glGetIntegerv(GL_MAX_VIEWPORT_DIMS, maxDims);
  const std::string description = quadview::DescriptionText() + "\n\n" +
                                  std::to_string(maxDims[0]) + ", " + std::to_string(maxDims[1]) +
                                  " - 0, 0, " + std::to_string(first.cx) + ", " +
                                  std::to_string(first.cy);
  EXPECT_EQ(win32::GetText(frm->Control(quadview::kGLTestDescLbl)), description);
  std::array<HGLRC, 4> contexts{};
  for (int k = 0; k < 4; ++k) contexts[k] = frm->ViewContext(k);
  const auto lists = frm->State().ViewList;
  auto storm = [&](int count) {
    for (int i = 0; i < count; ++i) {
      if (i % 100 == 0) Tick(i / 100 % 16);
      Resize(360 + (i * 37) % 420, 300 + (i * 53) % 330);
      if (i % 3 == 0)
        RedrawWindow(frm->hwnd(), nullptr, nullptr,
                     RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_UPDATENOW);
      if (i % 7 == 0) PostMessageA(frm->MapPic(i % 4)->hwnd(), WM_PAINT, 0, 0);
      testsupport::Pump();
    }
  };
  storm(60);
  const size_t bytes = testsupport::PrivateBytes();
  const DWORD gdi = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS);
  const DWORD user = GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS);
  storm(1000);
  EXPECT_GT(bytes, 0u);
  EXPECT_LT(testsupport::PrivateBytes(), bytes + 8u * 1024 * 1024) << "private bytes grew";
  EXPECT_LE(GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS), gdi + 4);
  EXPECT_LE(GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS), user + 4);
  for (int k = 0; k < 4; ++k) {
    EXPECT_EQ(frm->ViewContext(k), contexts[k]) << "no context was made again";
    EXPECT_EQ(frm->State().ViewList[k], lists[k]) << "no list was compiled again";
  }
  SendMessageA(frm->Control(quadview::kRedrawCbt), BM_CLICK, 0, 0);
  for (int k = 0; k < 4; ++k) EXPECT_TRUE(FullyDrawn(k));
  EXPECT_EQ(frm->State().InfoShown, 1);
  EXPECT_EQ(win32::GetText(frm->Control(quadview::kGLTestDescLbl)), description);
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

// ShowMe runs modally until the window is closed, from wherever and at
// whatever moment; its result tells which control ended the test.
TEST_F(QuadViewWindow, ShowMeEndsCleanlyHoweverTheWindowIsClosed) {
  struct Case {
    const char* name;
    int boxes;
    std::function<bool(QuadView_frm&, int step)> close;  // true when done
    short status;
    const char* result;
  };
  const Case cases[] = {
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
       [](QuadView_frm& f, int) {
         f.SetSwapObserver([&f, asked = false](int, SwapPath path) mutable {
           if (asked || path != SwapPath::RedrawPic) return;
           asked = true;
           SendMessageA(f.hwnd(), WM_SYSCOMMAND, SC_CLOSE, 0);
           EXPECT_TRUE(f.Loaded()) << "the redraw is finished first";
           EXPECT_FALSE(IsWindowVisible(f.hwnd())) << "but the window hides at once";
         });
         return Post(f.Control(quadview::kRedrawCbt)), true;
       },
       1, "4"},
  };
  testsupport::PlainWindow other(100, 80, true);
  for (const Case& c : cases) {
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

// A close asked for while the views are being set up waits for the first
// paint and then ends the test.
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

// The copy shows the views on the twin in the same places, white showing
// the twin's background; a close of the quad view meanwhile (by another
// program) hides it at once and waits for the twin.
TEST_F(QuadViewWindow, CopyPictureShowsTheViewsOnTheTwinAndACloseWaitsForIt) {
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
  int compared = 0, inked = 0, wrong = 0;
  bool shownModally = false, hidden = false;
  Script script([&] {
    quadview::QuadPrint_frm& twin = quadview::QuadPrint();
    if (!twin.Loaded() || !IsWindowVisible(twin.hwnd())) return false;
    testsupport::Pump();
    shownModally = !IsWindowEnabled(frm->hwnd());
    HDC picture = twin.QuadPic()->hDC();
    for (int k = 0; k < 4; ++k) {
      SCOPED_TRACE(k);
      for (int y = 0; y < views[k].height; y += 3)
        for (int x = 0; x < views[k].width; x += 3) {
          Rgb v = views[k].At(x, y);
          COLORREF want = v == kWhite ? face : RGB(v.r, v.g, v.b);
          COLORREF got = GetPixel(picture, at[k].x + x, at[k].y + y);
          if (got != want && ++wrong == 1)
            ADD_FAILURE() << "at " << x << "," << y << ": " << std::hex << got << " not " << want;
          ++compared;
          inked += !(v == kWhite);
        }
      EXPECT_EQ(GetPixel(picture, at[k].x - 2, at[k].y - 2), face) << "the gaps stay plain";
    }
    SendMessageA(frm->hwnd(), WM_CLOSE, 0, 0);
    hidden = !IsWindowVisible(frm->hwnd()) && frm->Loaded();
    Post(twin.hwnd(), WM_SYSCOMMAND, SC_CLOSE);
    return true;
  });
  testsupport::ModalDeadline deadline(20000);
  Post(copy);
  for (int i = 0; i < 500 && frm->Loaded(); ++i) testsupport::Pump(20);
  EXPECT_FALSE(deadline.Expired());
  EXPECT_TRUE(script.Done());
  EXPECT_TRUE(shownModally);
  EXPECT_EQ(wrong, 0);
  EXPECT_GT(compared, 1000);
  EXPECT_GT(inked, 100);
  EXPECT_TRUE(hidden);
  EXPECT_FALSE(frm->Loaded());
  EXPECT_FALSE(quadview::QuadPrint().Loaded()) << "the twin's ShowMe unloads it";
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
