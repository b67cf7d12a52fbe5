// MBitBlt on memory device contexts whose pixels the test reads directly.
#include "quadview/mbitblt.h"
#include "testsupport/testsupport.h"

#include <gtest/gtest.h>

#include <functional>
#include <vector>

#include "win32/handle.h"

namespace {

using quadview::MBitBlt;
using quadview::SourceRect;

// A memory device context holding a 32-bit top-down DIB.
class Canvas {
 public:
  Canvas(int width, int height, std::function<COLORREF(int x, int y)> fill)
      : width_(width), height_(height), dc_(CreateCompatibleDC(nullptr)) {
    BITMAPINFO bi{};
    bi.bmiHeader.biSize = sizeof bi.bmiHeader;
    bi.bmiHeader.biWidth = width;
    bi.bmiHeader.biHeight = -height;
    bi.bmiHeader.biPlanes = 1;
    bi.bmiHeader.biBitCount = 32;
    bi.bmiHeader.biCompression = BI_RGB;
    void* bits = nullptr;
    bitmap_.reset(CreateDIBSection(dc_.get(), &bi, DIB_RGB_COLORS, &bits, nullptr, 0));
    bits_ = static_cast<DWORD*>(bits);
    old_ = SelectObject(dc_.get(), bitmap_.get());
    for (int y = 0; y < height; ++y)
      for (int x = 0; x < width; ++x) Set(x, y, fill(x, y));
  }
  ~Canvas() { SelectObject(dc_.get(), old_); }
  Canvas(const Canvas&) = delete;
  Canvas& operator=(const Canvas&) = delete;

  HDC dc() const { return dc_.get(); }
  void Set(int x, int y, COLORREF c) {
    GdiFlush();
    bits_[y * width_ + x] = (GetRValue(c) << 16) | (GetGValue(c) << 8) | GetBValue(c);
  }
  COLORREF At(int x, int y) const {
    GdiFlush();
    DWORD p = bits_[y * width_ + x];
    return RGB((p >> 16) & 0xFF, (p >> 8) & 0xFF, p & 0xFF);
  }
  int width() const { return width_; }
  int height() const { return height_; }

 private:
  int width_, height_;
  win32::Gdi<HBITMAP> bitmap_;
  win32::MemDC dc_;
  HGDIOBJ old_ = nullptr;
  DWORD* bits_ = nullptr;
};

constexpr COLORREF kWhite = RGB(255, 255, 255);

// Distinct colours per place, none of them white.
COLORREF Pattern(int x, int y, int seed) {
  return RGB((x * 37 + seed) % 250, (y * 53 + seed * 3) % 250, (x * y + seed * 7) % 250);
}

// What the copy must leave at each destination pixel.
COLORREF Expected(const Canvas& before, const Canvas& back, const Canvas& src, SourceRect r,
                  int dx, int dy, COLORREF transparent, int x, int y) {
  int w = r.right - r.left + 1, h = r.bottom - r.top + 1;
  if (x < dx || y < dy || x >= dx + w || y >= dy + h) return before.At(x, y);
  COLORREF s = src.At(r.left + x - dx, r.top + y - dy);
  return s == transparent ? back.At(x, y) : s;
}

struct BlitCase {
  const char* name;
  int srcW, srcH;
  std::function<COLORREF(int, int)> source;
  SourceRect rect;
  int16_t dx, dy;
};

TEST(MBitBlt, CopiesOpaquePixelsAndShowsTheBackgroundThroughTransparentOnes) {
  const BlitCase cases[] = {
      {"one pixel", 4, 4, [](int x, int y) { return x == 1 && y == 2 ? RGB(200, 0, 0) : kWhite; },
       {1, 2, 1, 2}, 3, 3},
      {"one transparent pixel", 4, 4, [](int, int) { return kWhite; }, {1, 2, 1, 2}, 5, 1},
      {"all transparent", 8, 6, [](int, int) { return kWhite; }, {0, 0, 7, 5}, 2, 3},
      {"all opaque", 8, 6, [](int x, int y) { return Pattern(x, y, 1); }, {0, 0, 7, 5}, 0, 0},
      {"mixed, from inside the source", 20, 16,
       [](int x, int y) { return (x * 7 + y * 3) % 5 < 2 ? kWhite : Pattern(x, y, 2); },
       {3, 2, 17, 13}, 4, 1},
      {"mixed, near white stays", 6, 6,
       [](int x, int y) { return (x + y) % 2 ? kWhite : RGB(255, 255, 254); }, {0, 0, 5, 5}, 1, 1},
  };
  for (const BlitCase& c : cases) {
    SCOPED_TRACE(c.name);
    Canvas src(c.srcW, c.srcH, c.source);
    Canvas back(24, 20, [](int x, int y) { return Pattern(x, y, 5); });
    Canvas dest(24, 20, [](int x, int y) { return Pattern(x, y, 9); });
    Canvas before(24, 20, [](int x, int y) { return Pattern(x, y, 9); });
    HDC d = dest.dc(), b = back.dc(), s = src.dc();
    SourceRect rect = c.rect;
    int16_t dx = c.dx, dy = c.dy;
    COLORREF transparent = kWhite;
    ASSERT_TRUE(MBitBlt(d, b, s, rect, dx, dy, transparent));
    int wrong = 0;
    for (int y = 0; y < dest.height(); ++y)
      for (int x = 0; x < dest.width(); ++x) {
        COLORREF want = Expected(before, back, src, c.rect, c.dx, c.dy, kWhite, x, y);
        if (dest.At(x, y) != want && ++wrong <= 3)
          ADD_FAILURE() << "pixel " << x << "," << y << ": " << std::hex << dest.At(x, y)
                        << " instead of " << want;
      }
    EXPECT_EQ(wrong, 0);
    EXPECT_EQ(rect.left, c.rect.left) << "the rectangle is left as it was";
    EXPECT_EQ(dx, c.dx);
  }
}

// The seventh argument comes back holding the source's former background
// colour, and the source keeps that colour.
TEST(MBitBlt, SeventhArgumentReturnsTheSourcesFormerBackgroundColour) {
  const COLORREF formers[] = {RGB(10, 20, 30), kWhite, RGB(0, 0, 0)};
  for (COLORREF former : formers) {
    SCOPED_TRACE(former);
    Canvas src(4, 4, [](int x, int) { return x < 2 ? kWhite : RGB(1, 2, 3); });
    Canvas back(4, 4, [](int, int) { return RGB(9, 9, 9); });
    Canvas dest(4, 4, [](int, int) { return RGB(0, 0, 0); });
    SetBkColor(src.dc(), former);
    HDC d = dest.dc(), b = back.dc(), s = src.dc();
    SourceRect rect{0, 0, 3, 3};
    int16_t dx = 0, dy = 0;
    COLORREF transparent = kWhite;
    ASSERT_TRUE(MBitBlt(d, b, s, rect, dx, dy, transparent));
    EXPECT_EQ(transparent, former);
    EXPECT_EQ(GetBkColor(src.dc()), former);
    EXPECT_EQ(dest.At(0, 0), RGB(9, 9, 9)) << "white was the transparent colour all the same";
    EXPECT_EQ(dest.At(3, 3), RGB(1, 2, 3));
  }
}

TEST(MBitBlt, OverflowingSizesDrawNothing) {
  const SourceRect rects[] = {{0, 0, 40000, 3}, {0, 0, 3, 32767}, {INT32_MIN, 0, INT32_MAX, 0},
                              {0, 0, INT32_MAX, 0}};
  for (SourceRect r : rects) {
    SCOPED_TRACE(r.right);
    Canvas src(4, 4, [](int, int) { return RGB(1, 1, 1); });
    Canvas back(4, 4, [](int, int) { return RGB(2, 2, 2); });
    Canvas dest(4, 4, [](int, int) { return RGB(3, 3, 3); });
    HDC d = dest.dc(), b = back.dc(), s = src.dc();
    int16_t dx = 0, dy = 0;
    COLORREF transparent = kWhite;
    EXPECT_FALSE(MBitBlt(d, b, s, r, dx, dy, transparent));
    EXPECT_EQ(transparent, kWhite) << "the check comes before anything else";
    EXPECT_EQ(dest.At(0, 0), RGB(3, 3, 3));
    EXPECT_EQ(dest.At(3, 3), RGB(3, 3, 3));
  }
}

// A negative size is not refused: it goes to the drawing calls as it is
// (GDI then mirrors the transfer), and nothing breaks. An empty one draws
// nothing.
TEST(MBitBlt, NegativeSizesArePassedOnAndEmptyOnesDrawNothing) {
  struct Case {
    SourceRect rect;
    bool drawsNothing;
  };
  const Case cases[] = {{{3, 3, 0, 0}, false}, {{0, 0, -100, -100}, false}, {{2, 0, 1, 3}, true},
                        {{0, 2, 3, 1}, true}};
  for (const Case& c : cases) {
    SCOPED_TRACE(std::to_string(c.rect.right) + "," + std::to_string(c.rect.bottom));
    Canvas src(4, 4, [](int, int) { return RGB(1, 1, 1); });
    Canvas dest(4, 4, [](int, int) { return RGB(3, 3, 3); });
    HDC d = dest.dc(), b = dest.dc(), s = src.dc();
    SourceRect r = c.rect;
    int16_t dx = 2, dy = 2;
    COLORREF transparent = kWhite;
    EXPECT_TRUE(MBitBlt(d, b, s, r, dx, dy, transparent));
    if (!c.drawsNothing) continue;
    for (int y = 0; y < 4; ++y)
      for (int x = 0; x < 4; ++x) EXPECT_EQ(dest.At(x, y), RGB(3, 3, 3));
  }
}

// Four bitmaps and four device contexts per call: any of them kept would
// soon exhaust the GDI handles and show in the memory figures.
TEST(MBitBlt, TwentyThousandCallsKeepNothing) {
  Canvas src(32, 32, [](int x, int y) { return (x + y) % 3 ? kWhite : Pattern(x, y, 4); });
  Canvas back(32, 32, [](int x, int y) { return Pattern(x, y, 6); });
  Canvas dest(32, 32, [](int, int) { return RGB(0, 0, 0); });
  auto once = [&] {
    HDC d = dest.dc(), b = back.dc(), s = src.dc();
    SourceRect rect{0, 0, 31, 31};
    int16_t dx = 0, dy = 0;
    COLORREF transparent = kWhite;
    return MBitBlt(d, b, s, rect, dx, dy, transparent);
  };
  for (int i = 0; i < 200; ++i) once();
  const size_t before = testsupport::PrivateBytes();
  const DWORD gdiBefore = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS);
  for (int i = 0; i < 20000; ++i) ASSERT_TRUE(once());
  const size_t after = testsupport::PrivateBytes();
  EXPECT_LT(after, before + 2u * 1024 * 1024);
  EXPECT_LE(GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS), gdiBefore + 2);
  for (int y = 0; y < 32; ++y)
    for (int x = 0; x < 32; ++x)
      ASSERT_EQ(dest.At(x, y), (x + y) % 3 ? back.At(x, y) : src.At(x, y)) << x << "," << y;
}

}  // namespace
