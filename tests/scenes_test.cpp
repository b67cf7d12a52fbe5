// Each scene rendered into a real test window and checked by its pixels.
#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <functional>

#include "gl/mopengl.h"
#include "testsupport/testsupport.h"
#include "tests/catalogue.h"
#include "tests/gltest_frm.h"
#include "tests/scene_math.h"
#include "win32/ui.h"

namespace tests {

struct Rgb {
  int r, g, b;
  bool operator==(const Rgb&) const = default;
};

struct Image {
  int width = 0, height = 0;
  std::vector<unsigned char> rgb;
  Rgb at(int x, int y) const {  // y from the bottom
    size_t i = (static_cast<size_t>(y) * width + x) * 3;
    return {rgb[i], rgb[i + 1], rgb[i + 2]};
  }
  // The pixel at view coordinates (-1..1 on both axes).
  Rgb atView(float vx, float vy) const {
    int x = static_cast<int>(std::lround((vx + 1) / 2 * (width - 1)));
    int y = static_cast<int>(std::lround((vy + 1) / 2 * (height - 1)));
    return at(x, y);
  }
  int count(const std::function<bool(Rgb)>& pred) const {
    int n = 0;
    for (int y = 0; y < height; ++y)
      for (int x = 0; x < width; ++x) n += pred(at(x, y));
    return n;
  }
  // Mean position of the pixels for which pred holds, in view coordinates.
  std::array<float, 2> centroid(const std::function<bool(Rgb)>& pred) const {
    double sx = 0, sy = 0;
    int n = 0;
    for (int y = 0; y < height; ++y)
      for (int x = 0; x < width; ++x)
        if (pred(at(x, y))) sx += x, sy += y, ++n;
    if (n == 0) return {-9, -9};
    return {static_cast<float>(2 * sx / n / (width - 1) - 1), static_cast<float>(2 * sy / n / (height - 1) - 1)};
  }
  // Saved as a BMP so that a person can look at the frame.
  void Save(const std::string& name) const {
    std::string dir = win32::ModuleDirectory() + "\\..\\screenshots";
    CreateDirectoryA(dir.c_str(), nullptr);
    int stride = (width * 3 + 3) & ~3;
    BITMAPINFOHEADER bi{sizeof bi, width, height, 1, 24, BI_RGB, 0, 0, 0, 0, 0};
    BITMAPFILEHEADER bf{};
    bf.bfType = 0x4D42;
    bf.bfOffBits = sizeof bf + sizeof bi;
    bf.bfSize = bf.bfOffBits + static_cast<DWORD>(stride * height);
    std::ofstream out(dir + "\\scene_" + name + ".bmp", std::ios::binary);
    out.write(reinterpret_cast<const char*>(&bf), sizeof bf);
    out.write(reinterpret_cast<const char*>(&bi), sizeof bi);
    std::vector<char> row(static_cast<size_t>(stride));
    for (int y = 0; y < height; ++y) {
      for (int x = 0; x < width; ++x) {
        Rgb p = at(x, y);
        row[x * 3] = static_cast<char>(p.b), row[x * 3 + 1] = static_cast<char>(p.g),
        row[x * 3 + 2] = static_cast<char>(p.r);
      }
      out.write(row.data(), stride);
    }
  }
};

bool Near(Rgb a, Rgb b, int tolerance = 3) {
  return std::abs(a.r - b.r) <= tolerance && std::abs(a.g - b.g) <= tolerance &&
         std::abs(a.b - b.b) <= tolerance;
}

const Rgb kWhite{255, 255, 255}, kBlack{0, 0, 0};

// Opens a test window for one mode, lets it prepare its views at the first
// paint, and draws single frames at chosen frame counts.
class GLTestFrmProbe {
 public:
  explicit GLTestFrmProbe(int mode) {
    frm_.mode(mode);
    frm_.Init(kTestCaptions[mode]);
    KillTimer(frm_.hwnd(), GLTest_frm::kTimerId);  // frames are drawn by hand here
    ShowWindow(frm_.hwnd(), SW_SHOWNOACTIVATE);
    UpdateWindow(frm_.hwnd());
    testsupport::Pump();
  }
  ~GLTestFrmProbe() { SendMessageA(frm_.hwnd(), WM_CLOSE, 0, 0); }
  bool HasContext() const { return wglGetCurrentContext() != nullptr; }
  Image Frame(int t, int view = 1) {
    frm_.frame_ = t;
    frm_.DrawScene(view);
    glFinish();
    return Read(view);
  }
  Image Read(int view) {
    RECT rc{};
    GetClientRect(frm_.View(view), &rc);
    Image img;
    img.width = rc.right;
    img.height = rc.bottom;
    img.rgb.resize(static_cast<size_t>(img.width) * img.height * 3);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(0, 0, img.width, img.height, GL_RGB, GL_UNSIGNED_BYTE, img.rgb.data());
    return img;
  }
  GLuint List(int view) const { return frm_.sceneList_[static_cast<size_t>(view)]; }
  GLuint FontBase(int view) const { return frm_.fontBase_[static_cast<size_t>(view)]; }
  GLTest_frm& frm() { return frm_; }
  HWND View(int view) const { return frm_.View(view); }

 private:
  GLTest_frm frm_;
};

namespace {

class Scenes : public ::testing::Test {
 protected:
  void SetUp() override { mOpenGL::State() = {}; }
  testsupport::MsgBoxRecorder boxes;
};

TEST_F(Scenes, ColourAccessFollowsTheRamp) {
  GLTestFrmProbe probe(6);
  ASSERT_TRUE(probe.HasContext()) << "no GL context could be made here";
  for (int t : {5, 15, 25, 35, 45, 50, 51}) {
    SCOPED_TRACE(t);
    auto c = ColourRamp(t);
    Rgb expected{static_cast<int>(std::lround(c[0] * 255)), static_cast<int>(std::lround(c[1] * 255)),
                 static_cast<int>(std::lround(c[2] * 255))};
    Image img = probe.Frame(t);
    EXPECT_TRUE(Near(img.atView(0, 0), expected, 2)) << img.atView(0, 0).r << "," << img.atView(0, 0).g
                                                     << "," << img.atView(0, 0).b;
    EXPECT_TRUE(Near(img.atView(0.9f, -0.9f), expected, 2));
  }
  EXPECT_TRUE(boxes.calls().empty());
}

const Rgb kFaces[] = {{255, 0, 0}, {0, 255, 0}, {0, 0, 255}, {128, 0, 0}, {0, 128, 0}, {0, 0, 128}};

bool IsFace(Rgb p) {
  for (const Rgb& f : kFaces)
    if (Near(p, f, 2)) return true;
  return false;
}

TEST_F(Scenes, RenderingShowsOnlyTheOutsideFaces) {
  GLTestFrmProbe probe(3);
  Image front = probe.Frame(0);
  front.Save("rendering_t0");
  // Head on, only the front face shows; the back face, nearer in normalised
  // depth, would show through if culling failed.
  EXPECT_GT(front.count([](Rgb p) { return Near(p, {255, 0, 0}, 2); }), 1000);
  EXPECT_EQ(front.count([](Rgb p) { return Near(p, {128, 0, 0}, 2); }), 0);
  EXPECT_EQ(front.count([](Rgb p) { return !Near(p, kWhite, 0) && !IsFace(p); }), 0);
  for (int t : {7, 19, 33}) {
    SCOPED_TRACE(t);
    Image img = probe.Frame(t);
    int faces = 0;
    for (const Rgb& f : kFaces) faces += img.count([&](Rgb p) { return Near(p, f, 2); }) > 50;
    EXPECT_GE(faces, 2);
    EXPECT_LE(faces, 3) << "at most three faces of a cube face the viewer";
    EXPECT_LT(img.count([](Rgb p) { return !Near(p, kWhite, 0) && !IsFace(p); }), 40)
        << "only flat face colours and white (a few edge pixels may blend)";
  }
}

TEST_F(Scenes, HiddenLinesDrawTheBorderButNoDiagonal) {
  GLTestFrmProbe probe(5);
  Image img = probe.Frame(0);
  img.Save("hidden_lines_t0");
  auto dark = [&](float vx, float vy) {
    int x = static_cast<int>(std::lround((vx + 1) / 2 * (img.width - 1)));
    int y = static_cast<int>(std::lround((vy + 1) / 2 * (img.height - 1)));
    for (int dy = -1; dy <= 1; ++dy)
      for (int dx = -1; dx <= 1; ++dx)
        if (img.at(x + dx, y + dy).r < 128) return true;
    return false;
  };
  for (float f : {-0.3f, -0.1f, 0.2f, 0.4f}) {
    SCOPED_TRACE(f);
    EXPECT_TRUE(dark(-0.5f, f)) << "left border";
    EXPECT_TRUE(dark(0.5f, f)) << "right border";
    EXPECT_TRUE(dark(f, 0.5f)) << "top border";
    EXPECT_TRUE(dark(f, -0.5f)) << "bottom border";
  }
  for (float f : {0.1f, 0.2f, 0.3f, 0.4f}) {
    SCOPED_TRACE(f);
    EXPECT_FALSE(dark(f, f));
    EXPECT_FALSE(dark(-f, f));
    EXPECT_FALSE(dark(f, -f));
    EXPECT_FALSE(dark(-f, -f));
  }
}

TEST_F(Scenes, ColourFloatBlendsFourCorners) {
  GLTestFrmProbe probe(7);
  Image img = probe.Frame(0);
  img.Save("colour_float_t0");
  auto dominant = [&](float vx, float vy) { return img.atView(vx, vy); };
  Rgb red = dominant(-0.37f, -0.37f), green = dominant(0.37f, -0.37f), blue = dominant(0.37f, 0.37f),
      white = dominant(-0.37f, 0.37f);
  EXPECT_GT(red.r, 200);
  EXPECT_LT(red.g + red.b, 60);
  EXPECT_GT(green.g, 200);
  EXPECT_LT(green.r + green.b, 60);
  EXPECT_GT(blue.b, 200);
  EXPECT_LT(blue.r + blue.g, 60);
  EXPECT_GT(white.r + white.g + white.b, 3 * 200);
  EXPECT_TRUE(Near(img.atView(0.9f, 0.9f), kWhite, 0)) << "white around";
  // Along the bottom edge red gives way to green smoothly.
  int lastRed = 256, lastGreen = -1;
  for (float x = -0.35f; x <= 0.35f; x += 0.05f) {
    Rgb p = img.atView(x, -0.38f);
    EXPECT_LE(p.r, lastRed + 1);
    EXPECT_GE(p.g, lastGreen - 1);
    lastRed = p.r, lastGreen = p.g;
  }
  Rgb mid = img.atView(0, -0.38f);
  EXPECT_GT(mid.r, 60);
  EXPECT_GT(mid.g, 60);
}

TEST_F(Scenes, GreyFloatCornersAndSmoothGrey) {
  GLTestFrmProbe probe(8);
  Image img = probe.Frame(0);
  img.Save("grey_float_t0");
  auto grey = [&](float vx, float vy) { return img.atView(vx, vy); };
  EXPECT_GE(grey(-0.47f, -0.47f).r, 240) << "white corner";
  EXPECT_NEAR(grey(0.47f, 0.47f).r, 0x99 + 4, 8) << "grey corner";
  EXPECT_NEAR(grey(0.47f, -0.47f).r, 0xCC, 6);
  EXPECT_NEAR(grey(-0.47f, 0.47f).r, 0xCC, 6);
  EXPECT_NEAR(grey(0, 0).r, 0xCC, 3) << "light grey centre";
  EXPECT_EQ(img.count([](Rgb p) { return p.r != p.g || p.g != p.b; }), 0) << "greys only";
}

TEST_F(Scenes, PointSizeGrows) {
  GLTestFrmProbe probe(1);
  auto lit = [](Rgb p) { return p.r > 128; };
  int small = probe.Frame(0).count(lit);
  Image big = probe.Frame(20);
  big.Save("point_size_t20");
  EXPECT_GE(small, 1);
  EXPECT_LE(small, 9);
  EXPECT_GT(big.count(lit), 300);
  auto c = big.centroid(lit);
  EXPECT_NEAR(c[0], 0, 0.05);
  EXPECT_NEAR(c[1], 0, 0.05);
}

TEST_F(Scenes, MultipleAccessMovesAlongTheDiagonalAndWraps) {
  GLTestFrmProbe probe(0);
  auto lit = [](Rgb p) { return p.r > 128; };
  struct Case {
    int t;
    float s;
  } cases[] = {{0, 0}, {10, 0.5f}, {19, 0.95f}, {21, -0.95f}, {30, -0.5f}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.t);
    for (int view : {1, 2}) {
      auto at = probe.Frame(c.t, view).centroid(lit);
      EXPECT_NEAR(at[0], c.s, 0.03);
      EXPECT_NEAR(at[1], c.s, 0.03);
    }
  }
}

TEST_F(Scenes, TextOutputMovesAndWrapsWithItsFontListsPerView) {
  GLTestFrmProbe probe(2);
  auto lit = [](Rgb p) { return p.r > 128; };
  Image img = probe.Frame(10, 1);
  img.Save("text_output_t10");
  auto c = img.centroid(lit);
  EXPECT_GT(img.count(lit), 20);
  // The text starts at the raster position and runs right and up from it.
  EXPECT_GT(c[0], 0.5f);
  EXPECT_LT(c[0], 0.75f);
  EXPECT_GT(c[1], 0.5f);
  auto wrapped = probe.Frame(21, 1).centroid(lit);
  EXPECT_LT(wrapped[0], -0.7f);
  EXPECT_LT(wrapped[1], -0.8f);
  probe.Frame(10, 2);
  GLuint view1 = probe.FontBase(1), view2 = probe.FontBase(2);
  EXPECT_NE(view1, 0u);
  EXPECT_NE(view2, 0u);
  EXPECT_NE(view1, view2);
  probe.Frame(11, 1);
  EXPECT_EQ(probe.FontBase(1), view1) << "kept between frames";
}

TEST_F(Scenes, LineDrawingIsBlackLinesOnWhite) {
  GLTestFrmProbe probe(4);
  Image img = probe.Frame(7);
  img.Save("line_drawing_t7");
  int black = img.count([](Rgb p) { return p.r < 100 && p.g < 100 && p.b < 100; });
  EXPECT_GT(black, 100);
  EXPECT_LT(black, img.width * img.height / 10) << "lines, not filled faces";
  EXPECT_EQ(img.count([](Rgb p) { return p.r != p.g || p.g != p.b; }), 0);
}

TEST_F(Scenes, DisplayListsAreCompiledOncePerViewAndRebuiltAtFrameZero) {
  GLTestFrmProbe probe(9);
  Image img = probe.Frame(0, 1);
  probe.Frame(0, 2);
  GLuint l1 = probe.List(1), l2 = probe.List(2);
  ASSERT_NE(l1, 0u);
  ASSERT_NE(l2, 0u);
  EXPECT_NE(l1, l2);
  EXPECT_TRUE(glIsList(l1) && glIsList(l2));
  EXPECT_GT(img.count([](Rgb p) { return p.r > 200 && p.g < 60 && p.b < 60; }), 5) << "red corners";
  EXPECT_GT(img.count([](Rgb p) { return p.g > 100 && p.r < 60; }), 50) << "green top";
  EXPECT_GT(img.count([](Rgb p) { return p.r < 40 && p.g < 40 && p.b < 40; }), 50) << "black edges";
  for (int t = 1; t <= 5; ++t) {
    probe.Frame(t, 1);
    probe.Frame(t, 2);
  }
  EXPECT_EQ(probe.List(1), l1);
  EXPECT_EQ(probe.List(2), l2);
  GLuint next = glGenLists(1);
  glDeleteLists(next, 1);
  probe.Frame(0, 1);
  probe.Frame(0, 2);
  EXPECT_FALSE(glIsList(l1) && probe.List(1) != l1) << "the old list is gone";
  EXPECT_TRUE(glIsList(probe.List(1)) && glIsList(probe.List(2)));
  probe.Frame(20, 1).Save("display_lists_t20");
}

TEST_F(Scenes, BigListsReplayTheirList) {
  GLTestFrmProbe probe(10);
  probe.Frame(0, 1);
  GLuint list = probe.List(1);
  ASSERT_NE(list, 0u);
  for (int t = 1; t <= 4; ++t) probe.Frame(t, 1);
  EXPECT_EQ(probe.List(1), list);
  Image img = probe.Frame(5, 1);
  img.Save("big_lists_t5");
  EXPECT_GT(img.count([](Rgb p) { return p.r > 200 && p.g < 60 && p.b < 60; }), 20);
  EXPECT_GT(img.count([](Rgb p) { return p.b > 60 && p.r < 40 && p.g < 120; }), 5) << "blue bases";
  // The grid spans one tenth of the volume, in the middle of the view.
  EXPECT_TRUE(Near(img.atView(0.5f, 0.5f), kWhite, 0));
}

TEST_F(Scenes, ZoomShrinksItsVolumeFromTwoPointEightToPointEight) {
  GLTestFrmProbe probe(11);
  ASSERT_TRUE(IsWindow(probe.View(1)));
  auto scale = [&](int t) {
    probe.Frame(t, 1);
    EXPECT_NE(wglGetCurrentContext(), nullptr);
    GLfloat m[16];
    glGetFloatv(GL_MODELVIEW_MATRIX, m);
    // x of the first column is cos 45 cos(turn about y) / z.
    const float rad = 3.14159265f / 180;
    return std::cos(45 * rad) * std::cos(Angle(t, 60) * rad) / m[0];
  };
  EXPECT_NEAR(scale(0), 2.8f, 1e-3);
  EXPECT_NEAR(scale(50), 0.8f, 1e-3);
  auto drawn = [](const Image& img) { return img.count([](Rgb p) { return !(p == kWhite); }); };
  int distant = drawn(probe.Frame(1, 1));
  Image close = probe.Frame(50, 1);
  close.Save("zoom_t50");
  EXPECT_GT(drawn(close), 2 * distant) << "zoomed in";
}

TEST_F(Scenes, InteractionSquareFollowsTheClickInTheLeftView) {
  GLTestFrmProbe probe(12);
  auto white = [](Rgb p) { return p.r > 200; };
  auto centre = probe.Frame(0, 1).centroid(white);
  EXPECT_NEAR(centre[0], 0, 0.02);
  EXPECT_NEAR(centre[1], 0, 0.02);
  SendMessageA(probe.View(1), WM_LBUTTONUP, 0, MAKELPARAM(0, 0));
  Image right = probe.Read(2);
  right.Save("interaction_after_click");
  auto corner = right.centroid(white);
  // Centred on (-1, 1): only the quarter inside the view shows.
  EXPECT_NEAR(corner[0], -0.95f, 0.03);
  EXPECT_NEAR(corner[1], 0.95f, 0.03);
  EXPECT_TRUE(Near(right.atView(0, 0), kBlack, 0));
}

}  // namespace
}  // namespace tests
