// MBitBlt on memory device contexts whose pixels the test reads directly.
#include "quadview/mbitblt.h"

#include <gtest/gtest.h>

#include <functional>

#include "testsupport/testsupport.h"
#include "win32/handle.h"

namespace {

using quadview::SourceRect;

constexpr COLORREF kWhite = RGB(255, 255, 255);

// A memory device context holding a 32-bit top-down DIB, filled by `fill`.
class Canvas {
 public:
  Canvas(int width, int height, const std::function<COLORREF(int x, int y)>& fill)
      : width_(width), dc_(CreateCompatibleDC(nullptr)) {
    BITMAPINFO bi{};
    bi.bmiHeader = {sizeof bi.bmiHeader, width, -height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
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

// White source pixels show the background, the rest are copied; the rectangle and the place
// are left as they were, and the seventh argument comes back holding the source's former
// background colour, which the source keeps. A size that overflows draws nothing.
TEST(MBitBlt, CopiesOpaquePixelsAndShowsTheBackgroundThroughTransparentOnes) {
  const COLORREF former = RGB(10, 20, 30);
  struct Case {
    const char* name;
    int srcW, srcH;
    std::function<COLORREF(int, int)> source;
    SourceRect rect;
    int16_t dx, dy;
    bool accepted;
  };
  const Case cases[] = {
      {"mixed, near white stays, from inside the source", 20, 16,
       [](int x, int y) {
         if ((x * 7 + y * 3) % 5 < 2) return kWhite;
         return (x + y) % 4 ? Pattern(x, y, 2) : RGB(255, 255, 254);
       },
       {3, 2, 17, 13}, 4, 1, true},
      {"empty width", 4, 4, [](int x, int y) { return Pattern(x, y, 3); }, {2, 0, 1, 3}, 2, 2,
       true},
      {"too wide for 16 bits", 4, 4, [](int x, int y) { return Pattern(x, y, 3); },
       {0, 0, 40000, 3}, 2, 2, false},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    Canvas src(c.srcW, c.srcH, c.source);
    Canvas back(24, 20, [](int x, int y) { return Pattern(x, y, 5); });
    Canvas dest(24, 20, [](int x, int y) { return Pattern(x, y, 9); });
    SetBkColor(src.dc(), former);
    Call call{c.rect, c.dx, c.dy, kWhite};
    EXPECT_EQ(call.Run(dest, back, src), c.accepted);
    EXPECT_EQ(call.transparent, c.accepted ? former : kWhite) << "the size check comes first";
    EXPECT_EQ(GetBkColor(src.dc()), former);
    EXPECT_EQ(call.rect.left, c.rect.left) << "the rectangle is left as it was";
    EXPECT_EQ(call.dx, c.dx);
    const SourceRect& r = c.rect;
    int wrong = 0;
    for (int y = 0; y < 20; ++y)
      for (int x = 0; x < 24; ++x) {
        COLORREF want = Pattern(x, y, 9);
        const bool inside = c.accepted && x >= c.dx && x <= c.dx + r.right - r.left &&
                            y >= c.dy && y <= c.dy + r.bottom - r.top;
        if (inside) {
          COLORREF s = src.At(r.left + x - c.dx, r.top + y - c.dy);
          want = s == kWhite ? back.At(x, y) : s;
        }
        if (dest.At(x, y) != want && ++wrong <= 3)
          ADD_FAILURE() << "pixel " << x << "," << y << ": " << std::hex << dest.At(x, y)
                        << " instead of " << want;
      }
    EXPECT_EQ(wrong, 0);
  }
}

// Four bitmaps and four device contexts per call: any of them kept would soon exhaust the GDI
// handles and show in the memory figures.
TEST(MBitBlt, TwentyThousandCallsKeepNothing) {
  Canvas src(32, 32, [](int x, int y) { return (x + y) % 3 ? kWhite : Pattern(x, y, 4); });
  Canvas back(32, 32, [](int x, int y) { return Pattern(x, y, 6); });
  Canvas dest(32, 32, [](int, int) { return RGB(0, 0, 0); });
  auto once = [&] { return Call{{0, 0, 31, 31}, 0, 0, kWhite}.Run(dest, back, src); };
  for (int i = 0; i < 200; ++i) once();
  const size_t before = testsupport::PrivateBytes();
  const DWORD gdiBefore = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS);
  for (int i = 0; i < 20000; ++i) ASSERT_TRUE(once());
  EXPECT_LT(testsupport::PrivateBytes(), before + 2u * 1024 * 1024);
  EXPECT_LE(GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS), gdiBefore + 2);
}

}  // namespace
