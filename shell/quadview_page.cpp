// The quad-view redraw test, started from the General page.
#include "quadview/quadview_frm.h"
#include "quadview/results.h"
#include "shell/main_window.h"
#include "win32/ui.h"

namespace shell {

void VelmoraMain::QuadView_Cbt_Click() {
  if (!OpenGLOrTell(hwnd(), win32::GetText(Control(kQuadViewCbt)))) return;
  std::string result;
  short status = 0;
  {
    quadview::QuadView_frm quadView(
        {win32::GetText(Control(kQuadViewCbt)), CurrentOGLRedraw()});
    status = quadView.ShowMe(result);
  }
  HWND label = Control(kQuadViewLbl);
  if (status != 1) {
    // The report's quad-view text stays as the last good run left it.
    win32::SetText(label, result);
  } else {
    short r = quadview::ParseQuadResult(result).value_or(0);
    // NOTE: the text is cleared first, then the four lines are appended.
    quadViewText_ = "";
    quadViewText_ += quadview::QuadViewText(r);
    win32::SetText(label, "OK (#" + std::to_string(CurrentOGLPixelFormat()) + ")");
  }
  Specs_Cbt_Click();
}

}  // namespace shell
