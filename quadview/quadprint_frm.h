#pragma once
// QuadPrint_frm: the quad view's still-picture twin. The same window and
// controls, without live drawing: its QuadPic keeps a retained image that
// receives a copy of the quad view's four views.
#include "quadview/quadform.h"

namespace quadview {

class QuadPrint_frm : public QuadForm {
 public:
  QuadPrint_frm();
  ~QuadPrint_frm() override;

  // They exist so that the twin offers the quad view's interface; a still
  // picture has nothing to draw.
  void Redraw(short) override {}
  void RefreshGL() override {}

  // The picture repaints from its retained image by itself; a resize
  // repaints it at once.
  void QuadPic_Resize();

 protected:
  void Picture_Resize(int index) override;
};

// The program-wide twin, made on first use.
QuadPrint_frm& QuadPrint();

}  // namespace quadview
