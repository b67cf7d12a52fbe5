// MBitBlt makes four bitmaps and four device contexts per call: any of them kept would soon
// exhaust the GDI handles. (What it draws is checked on the quad view's copy to its twin.)
#include "quadview/mbitblt.h"

#include <gtest/gtest.h>

#include "testsupport/testsupport.h"
#include "win32/handle.h"

namespace {

// A memory device context holding a 32 x 32 DIB, every `whiteEvery`th pixel white, the rest grey.
class Canvas {
 public:
  explicit Canvas(int whiteEvery) : dc_(CreateCompatibleDC(nullptr)) {
    BITMAPINFO bi{};
    bi.bmiHeader = {sizeof bi.bmiHeader, 32, -32, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    void* bits = nullptr;
    bitmap_.reset(CreateDIBSection(dc_.get(), &bi, DIB_RGB_COLORS, &bits, nullptr, 0));
    old_ = SelectObject(dc_.get(), bitmap_.get());
    for (int i = 0; i < 32 * 32; ++i)
      static_cast<DWORD*>(bits)[i] = i % whiteEvery ? 0x808080 : 0xFFFFFF;
  }
  ~Canvas() { SelectObject(dc_.get(), old_); }
  Canvas(const Canvas&) = delete;
  Canvas& operator=(const Canvas&) = delete;
  HDC dc() const { return dc_.get(); }

 private:
  win32::Gdi<HBITMAP> bitmap_;
  win32::MemDC dc_;
  HGDIOBJ old_ = nullptr;
};

TEST(MBitBlt, TwentyThousandCallsKeepNothing) {
  Canvas src(3), back(5), dest(7);
  auto once = [&] {
    HDC d = dest.dc(), b = back.dc(), s = src.dc();
    quadview::SourceRect rect{0, 0, 31, 31};
    int16_t x = 0, y = 0;
    COLORREF transparent = RGB(255, 255, 255);
    return quadview::MBitBlt(d, b, s, rect, x, y, transparent);
  };
  for (int i = 0; i < 200; ++i) once();
  const size_t before = testsupport::PrivateBytes();
  const DWORD gdiBefore = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS);
  for (int i = 0; i < 20000; ++i) ASSERT_TRUE(once());
  EXPECT_LT(testsupport::PrivateBytes(), before + 2u * 1024 * 1024);
  EXPECT_LE(GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS), gdiBefore + 2);
}

}  // namespace
