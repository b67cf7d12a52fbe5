// The quad-view redraw test, started from the General page.
#include "quadview/quadview_frm.h"
#include "shell/main_window.h"
#include "shell/verdict_labels.h"
#include "win32/ui.h"

namespace shell {

void VelmoraMain::QuadView_Cbt_Click() {
  if (!OpenGLOrTell(hwnd(), win32::GetText(Control(kQuadViewCbt)))) return;
  std::string result;
  short status = 0;
  tests::AutoVerdict verdict;
  {
    quadview::QuadView_frm quadView(
        {win32::GetText(Control(kQuadViewCbt)), CurrentOGLRedraw()});
    status = quadView.ShowMe(result);
    verdict = quadView.Verdict();
  }
  labelTips_.Set(Control(kQuadViewLbl), verdict.Text());
  QuadViewOutcome outcome = QuadViewVerdict(status, result, CurrentOGLPixelFormat());
  if (outcome.text) quadViewText_ = *outcome.text;
  win32::SetText(Control(kQuadViewLbl), outcome.label);
  Specs_Cbt_Click();
}

}  // namespace shell
