#include "quadview/quadprint_frm.h"

namespace quadview {

QuadPrint_frm::QuadPrint_frm()
    : QuadForm({}, Design{"Velmora_QuadPrint", false, Picture::Kind::Retained,
                          Picture::Kind::Container, false}) {}

QuadPrint_frm::~QuadPrint_frm() { Unload(kFormCode); }

void QuadPrint_frm::QuadPic_Resize() {
  if (QuadPic()) QuadPic()->Refresh();
}

void QuadPrint_frm::Picture_Resize(int index) {
  if (index == -1 && Ready()) QuadPic_Resize();
}

QuadPrint_frm& QuadPrint() {
  static QuadPrint_frm twin;
  return twin;
}

}  // namespace quadview
