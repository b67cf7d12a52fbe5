#pragma once
// MBitBlt: a bit-block transfer in which source pixels of one colour are
// transparent and let the background show through.
#include <windows.h>

#include <cstdint>
#include <optional>

namespace quadview {

// Inclusive source rectangle: width = right - left + 1.
struct SourceRect {
  int32_t left = 0, top = 0, right = 0, bottom = 0;
};

struct TransferSize {
  int16_t width = 0, height = 0;
  bool operator==(const TransferSize&) const = default;
};

// The transfer's width and height as 16-bit values; nothing when the
// arithmetic overflows 32 bits or the result does not fit 16. A negative
// size is not refused here.
std::optional<TransferSize> TransferSizeOf(const SourceRect& r);

// Copies `srcRect` of `srcDC` to (`destX`, `destY`) of `destDC`; source pixels
// of `transparentColor` show `backDC`'s pixels at the destination instead.
// The work device contexts are made compatible with `backDC`. Returns false,
// drawing nothing, when the size overflows; GDI failures are not checked.
// NOTE: on return `transparentColor` holds the source context's former
// background colour, not the transparent colour; callers pass a copy.
bool MBitBlt(HDC& destDC, HDC& backDC, HDC& srcDC, SourceRect& srcRect, int16_t& destX,
             int16_t& destY, COLORREF& transparentColor);

}  // namespace quadview
