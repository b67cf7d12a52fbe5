#pragma once
// A picture control of the quad-view windows: a child window with its own
// device context (for OpenGL), or with a retained image that it repaints
// itself from (the still picture of the print twin).
#include <windows.h>

#include "win32/handle.h"
#include "win32/ui.h"
#include "win32/window.h"

namespace quadview {

// Where a picture reports its events; `index` is the element of the control
// array, or -1 for a single picture.
class PictureEvents {
 public:
  virtual ~PictureEvents() = default;
  virtual void Picture_Paint(int index) = 0;
  virtual void Picture_Resize(int index) = 0;
};

class Picture : public win32::Window {
 public:
  enum class Kind {
    Container,  // erases with the button face and draws nothing itself
    OpenGL,     // never erased; painting is left to the Paint event
    Retained,   // repaints from its retained image; no Paint event
  };
  Picture(PictureEvents& events, int index, Kind kind);
  ~Picture() override;

  bool Create(HWND parent, win32::TwipRect r, int id, DWORD style, DWORD exStyle);
  // The context to draw on: the retained image's, or the window's own.
  HDC hDC() const;
  // Repaints now.
  void Refresh();
  // Lets go of the window's device context (before the window goes).
  void ReleaseDC();
  SIZE ClientSize() const;

 protected:
  LRESULT HandleMessage(UINT msg, WPARAM wp, LPARAM lp) override;

 private:
  void GrowRetainedImage();

  PictureEvents& events_;
  int index_;
  Kind kind_;
  win32::WindowDC dc_;
  // The retained image, at least as large as the picture has been.
  win32::Gdi<HBITMAP> image_;
  win32::MemDC imageDC_;
  HGDIOBJ imageOld_ = nullptr;
  SIZE imageSize_{0, 0};
};

}  // namespace quadview
