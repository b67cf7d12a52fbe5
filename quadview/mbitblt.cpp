#include "quadview/mbitblt.h"

#include <limits>

#include "win32/handle.h"

namespace quadview {
namespace {

std::optional<int16_t> Extent(int32_t low, int32_t high) {
  int64_t n = static_cast<int64_t>(high) - low;
  if (n > std::numeric_limits<int32_t>::max() || n < std::numeric_limits<int32_t>::min())
    return std::nullopt;
  n += 1;
  if (n > std::numeric_limits<int32_t>::max()) return std::nullopt;
  if (n > std::numeric_limits<int16_t>::max() || n < std::numeric_limits<int16_t>::min())
    return std::nullopt;
  return static_cast<int16_t>(n);
}

// A work device context with a bitmap selected for the transfer; the
// bitmap it held before goes back in before both are deleted.
struct WorkDC {
  WorkDC(HDC reference, HBITMAP bitmap)
      : bmp(bitmap), dc(CreateCompatibleDC(reference)), old(SelectObject(dc.get(), bitmap)) {}
  ~WorkDC() {
    if (dc) SelectObject(dc.get(), old);
  }
  WorkDC(const WorkDC&) = delete;
  WorkDC& operator=(const WorkDC&) = delete;

  // Declared in this order so that the DC goes before the bitmap.
  win32::Gdi<HBITMAP> bmp;
  win32::MemDC dc;
  HGDIOBJ old;
};

}  // namespace

std::optional<TransferSize> TransferSizeOf(const SourceRect& r) {
  auto w = Extent(r.left, r.right);
  auto h = Extent(r.top, r.bottom);
  if (!w || !h) return std::nullopt;
  return TransferSize{*w, *h};
}

bool MBitBlt(HDC& destDC, HDC& backDC, HDC& srcDC, SourceRect& srcRect, int16_t& destX,
             int16_t& destY, COLORREF& transparentColor) {
  auto size = TransferSizeOf(srcRect);
  if (!size) return false;
  const int w = size->width, h = size->height;
  const int sx = srcRect.left, sy = srcRect.top;

  WorkDC mask(backDC, CreateBitmap(w, h, 1, 1, nullptr));
  WorkDC inverse(backDC, CreateBitmap(w, h, 1, 1, nullptr));
  WorkDC back(backDC, CreateCompatibleBitmap(backDC, w, h));
  WorkDC object(backDC, CreateCompatibleBitmap(backDC, w, h));

  // Colour to monochrome: pixels of the source's background colour become 1.
  COLORREF previous = SetBkColor(srcDC, transparentColor);
  BitBlt(mask.dc.get(), 0, 0, w, h, srcDC, sx, sy, SRCCOPY);
  SetBkColor(srcDC, previous);
  // NOTE: the caller's transparent colour is overwritten with the source's
  // former background colour, as callers of this module have always seen.
  transparentColor = previous;

  BitBlt(inverse.dc.get(), 0, 0, w, h, mask.dc.get(), 0, 0, NOTSRCCOPY);
  // Monochrome to colour in the work contexts (white background, black
  // text): mask 1 keeps, 0 blacks out.
  BitBlt(back.dc.get(), 0, 0, w, h, backDC, destX, destY, SRCCOPY);
  BitBlt(back.dc.get(), 0, 0, w, h, mask.dc.get(), 0, 0, SRCAND);
  BitBlt(object.dc.get(), 0, 0, w, h, srcDC, sx, sy, SRCCOPY);
  BitBlt(object.dc.get(), 0, 0, w, h, inverse.dc.get(), 0, 0, SRCAND);
  BitBlt(back.dc.get(), 0, 0, w, h, object.dc.get(), 0, 0, SRCPAINT);
  BitBlt(destDC, destX, destY, w, h, back.dc.get(), 0, 0, SRCCOPY);
  return true;
}

}  // namespace quadview
