#include "quadview/picture.h"

#include <algorithm>

namespace quadview {
namespace {

// CS_OWNDC: a view keeps one device context, and with it its pixel format.
constexpr char kClassName[] = "Velmora_Picture";

}  // namespace

Picture::Picture(PictureEvents& events, int index, Kind kind)
    : events_(events), index_(index), kind_(kind) {}

Picture::~Picture() {
  if (imageDC_) SelectObject(imageDC_.get(), imageOld_);
}

bool Picture::Create(HWND parent, win32::TwipRect r, int id, DWORD style, DWORD exStyle) {
  if (!RegisterClassOnce(kClassName, CS_OWNDC, reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1)))
    return false;
  if (!Window::Create(exStyle, kClassName, "", WS_CHILD | style, win32::TwipsToPixelsX(r.left),
                      win32::TwipsToPixelsY(r.top), win32::TwipsToPixelsX(r.width),
                      win32::TwipsToPixelsY(r.height), parent, id))
    return false;
  dc_ = win32::WindowDC(hwnd());
  if (kind_ == Kind::Retained) GrowRetainedImage();
  return dc_.get() != nullptr;
}

HDC Picture::hDC() const { return kind_ == Kind::Retained ? imageDC_.get() : dc_.get(); }

void Picture::Refresh() {
  if (!hwnd()) return;
  InvalidateRect(hwnd(), nullptr, FALSE);
  UpdateWindow(hwnd());
}

void Picture::ReleaseDC() { dc_.reset(); }

SIZE Picture::ClientSize() const {
  RECT rc{};
  if (hwnd()) GetClientRect(hwnd(), &rc);
  return {rc.right, rc.bottom};
}

// The image grows with the picture and keeps what was drawn on it; it
// never shrinks, so a picture made smaller and larger again shows it all.
void Picture::GrowRetainedImage() {
  SIZE want = ClientSize();
  want.cx = std::max(want.cx, imageSize_.cx);
  want.cy = std::max(want.cy, imageSize_.cy);
  if (imageDC_ && want.cx == imageSize_.cx && want.cy == imageSize_.cy) return;
  win32::Gdi<HBITMAP> bigger(CreateCompatibleBitmap(dc_.get(), std::max<LONG>(want.cx, 1),
                                                    std::max<LONG>(want.cy, 1)));
  win32::MemDC biggerDC(CreateCompatibleDC(dc_.get()));
  if (!bigger || !biggerDC) return;
  HGDIOBJ old = SelectObject(biggerDC.get(), bigger.get());
  RECT all{0, 0, want.cx, want.cy};
  FillRect(biggerDC.get(), &all, GetSysColorBrush(COLOR_BTNFACE));
  if (imageDC_) {
    BitBlt(biggerDC.get(), 0, 0, imageSize_.cx, imageSize_.cy, imageDC_.get(), 0, 0, SRCCOPY);
    SelectObject(imageDC_.get(), imageOld_);
  }
  imageDC_ = std::move(biggerDC);
  image_ = std::move(bigger);
  imageOld_ = old;
  imageSize_ = want;
}

LRESULT Picture::HandleMessage(UINT msg, WPARAM wp, LPARAM lp) {
  switch (msg) {
    case WM_ERASEBKGND:
      if (kind_ != Kind::Container) return TRUE;
      break;
    case WM_PAINT: {
      PAINTSTRUCT ps;
      HDC dc = BeginPaint(hwnd(), &ps);
      if (kind_ == Kind::Retained && imageDC_) {
        const RECT& r = ps.rcPaint;
        BitBlt(dc, r.left, r.top, r.right - r.left, r.bottom - r.top, imageDC_.get(), r.left,
               r.top, SRCCOPY);
      }
      if (kind_ != Kind::Retained) events_.Picture_Paint(index_);
      EndPaint(hwnd(), &ps);
      return 0;
    }
    case WM_SIZE:
      if (kind_ == Kind::Retained && dc_.get()) GrowRetainedImage();
      events_.Picture_Resize(index_);
      return 0;
    case WM_DESTROY:
      dc_.reset();
      break;
  }
  return Default(msg, wp, lp);
}

}  // namespace quadview
