// MBitBlt on memory device contexts whose pixels the test reads directly.
#include "quadview/mbitblt.h"

#include <gtest/gtest.h>

#include <functional>

#include "testsupport/testsupport.h"
#include "win32/handle.h"

namespace {

using quadview::SourceRect;

constexpr COLORREF kWhite = RGB(255, 255, 255);

// A memory device context holding a 32-bit top-down DIB.
class Canvas {
 public:
  Canvas(int width, int height, std::function<COLORREF(int x, int y)> fill)
      : width_(width), dc_(CreateCompatibleDC(nullptr)) {
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
      for (int x = 0; x < width; ++x) {
        COLORREF c = fill(x, y);
        bits_[y * width + x] = (GetRValue(c) << 16) | (GetGValue(c) << 8) | GetBValue(c);
      }
  }
  ~Canvas() { SelectObject(dc_.get(), old_); }
  Canvas(const Canvas&) = delete;
  Canvas& operator=(const Canvas&) = delete;

  HDC dc() const { return dc_.get(); }
  COLORREF At(int x, int y) const {
    GdiFlush();
    DWORD p = bits_[y * width_ + x];
    return RGB((p >> 16) & 0xFF, (p >> 8) & 0xFF, p & 0xFF);
  }

 private:
  int width_;
  win32::Gdi<HBITMAP> bitmap_;
  win32::MemDC dc_;
  HGDIOBJ old_ = nullptr;
  DWORD* bits_ = nullptr;
};

// Distinct colours per place, none of them white.
COLORREF Pattern(int x, int y, int seed) {
  return RGB((x * 37 + seed) % 250, (y * 53 + seed * 3) % 250, (x * y + seed * 7) % 250);
}

// One call's by-reference arguments, as the call leaves them.
struct Call {
  SourceRect rect;
  int16_t dx = 0, dy = 0;
  COLORREF transparent = kWhite;
  bool Run(const Canvas& dest, const Canvas& back, const Canvas& src) {
    HDC d = dest.dc(), b = back.dc(), s = src.dc();
    return quadview::MBitBlt(d, b, s, rect, dx, dy, transparent);
  }
};

TEST(MBitBlt, CopiesOpaquePixelsAndShowsTheBackgroundThroughTransparentOnes) {
  struct Case {
    const char* name;
    int srcW, srcH;
    std::function<COLORREF(int, int)> source;
    SourceRect rect;
    int16_t dx, dy;
  };
  const Case cases[] = {
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
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    Canvas src(c.srcW, c.srcH, c.source);
    Canvas back(24, 20, [](int x, int y) { return Pattern(x, y, 5); });
    Canvas dest(24, 20, [](int x, int y) { return Pattern(x, y, 9); });
    Call call{c.rect, c.dx, c.dy};
    ASSERT_TRUE(call.Run(dest, back, src));
    const SourceRect& r = c.rect;
    int wrong = 0;
    for (int y = 0; y < 20; ++y)
      for (int x = 0; x < 24; ++x) {
        COLORREF want = Pattern(x, y, 9);
        const bool inside = x >= c.dx && x <= c.dx + r.right - r.left && y >= c.dy &&
                            y <= c.dy + r.bottom - r.top;
        if (inside) {
          COLORREF s = src.At(r.left + x - c.dx, r.top + y - c.dy);
          want = s == kWhite ? back.At(x, y) : s;
        }
        if (dest.At(x, y) != want && ++wrong <= 3)
          ADD_FAILURE() << "pixel " << x << "," << y << ": " << std::hex << dest.At(x, y)
                        << " instead of " << want;
      }
    EXPECT_EQ(wrong, 0);
    EXPECT_EQ(call.rect.left, c.rect.left) << "the rectangle is left as it was";
    EXPECT_EQ(call.dx, c.dx);
  }
}

// The seventh argument comes back holding the source's former
// background colour, and the source keeps that colour.
TEST(MBitBlt, SeventhArgumentReturnsTheSourcesFormerBackgroundColour) {
  for (COLORREF former : {RGB(10, 20, 30), kWhite, RGB(0, 0, 0)}) {
    SCOPED_TRACE(former);
    Canvas src(4, 4, [](int x, int) { return x < 2 ? kWhite : RGB(1, 2, 3); });
    Canvas back(4, 4, [](int, int) { return RGB(9, 9, 9); });
    Canvas dest(4, 4, [](int, int) { return RGB(0, 0, 0); });
    SetBkColor(src.dc(), former);
    Call call{{0, 0, 3, 3}};
    ASSERT_TRUE(call.Run(dest, back, src));
    EXPECT_EQ(call.transparent, former);
    EXPECT_EQ(GetBkColor(src.dc()), former);
    EXPECT_EQ(dest.At(0, 0), RGB(9, 9, 9)) << "white was the transparent colour all the same";
    EXPECT_EQ(dest.At(3, 3), RGB(1, 2, 3));
  }
}

// Overflowing sizes draw nothing; a negative size is passed on to the
// drawing calls as it is (GDI mirrors the transfer); an empty one draws
// nothing.
TEST(MBitBlt, OverflowingNegativeAndEmptySizes) {
  struct Case {
    const char* name;
    SourceRect rect;
    bool accepted, drawsNothing;
  };
  const Case cases[] = {
      {"too wide for 16 bits", {0, 0, 40000, 3}, false, true},
      {"too high for 16 bits", {0, 0, 3, 32767}, false, true},
      {"difference overflows 32 bits", {INT32_MIN, 0, INT32_MAX, 0}, false, true},
      {"the added one overflows", {0, 0, INT32_MAX, 0}, false, true},
      {"negative", {3, 3, 0, 0}, true, false},
      {"far negative", {0, 0, -100, -100}, true, false},
      {"empty width", {2, 0, 1, 3}, true, true},
      {"empty height", {0, 2, 3, 1}, true, true},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    Canvas src(4, 4, [](int, int) { return RGB(1, 1, 1); });
    Canvas dest(4, 4, [](int, int) { return RGB(3, 3, 3); });
    Call call{c.rect, 2, 2};
    EXPECT_EQ(call.Run(dest, dest, src), c.accepted);
    if (!c.accepted) {
      EXPECT_EQ(call.transparent, kWhite) << "the check comes before anything";
    }
    if (!c.drawsNothing) continue;
    for (int y = 0; y < 4; ++y)
      for (int x = 0; x < 4; ++x) EXPECT_EQ(dest.At(x, y), RGB(3, 3, 3)) << x << "," << y;
  }
}

// Four bitmaps and four device contexts per call: any of them kept would
// soon exhaust the GDI handles and show in the memory figures.
TEST(MBitBlt, TwentyThousandCallsKeepNothing) {
  Canvas src(32, 32, [](int x, int y) { return (x + y) % 3 ? kWhite : Pattern(x, y, 4); });
  Canvas back(32, 32, [](int x, int y) { return Pattern(x, y, 6); });
  Canvas dest(32, 32, [](int, int) { return RGB(0, 0, 0); });
  auto once = [&] { return Call{{0, 0, 31, 31}}.Run(dest, back, src); };
  for (int i = 0; i < 200; ++i) once();
  const size_t before = testsupport::PrivateBytes();
  const DWORD gdiBefore = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS);
  for (int i = 0; i < 20000; ++i) ASSERT_TRUE(once());
  EXPECT_LT(testsupport::PrivateBytes(), before + 2u * 1024 * 1024);
  EXPECT_LE(GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS), gdiBefore + 2);
  for (int y = 0; y < 32; ++y)
    for (int x = 0; x < 32; ++x)
      ASSERT_EQ(dest.At(x, y), (x + y) % 3 ? back.At(x, y) : src.At(x, y)) << x << "," << y;
}

}  // namespace
