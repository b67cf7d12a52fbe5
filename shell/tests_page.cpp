// The test page's runner: one visual test per button.
#include "shell/main_window.h"
#include "tests/catalogue.h"
#include "win32/ui.h"

namespace shell {

void VelmoraMain::GLTest_Cbt_Click(int index) {
  using tests::TestErrorCode;
  const std::string caption = win32::GetText(Control(kGLTestCbt0 + index));
  // Without OpenGL the label and the report stay as they are.
  if (!OpenGLOrTell(hwnd(), caption)) return;
  if (index != tests::kInteractionTest &&
      win32::MsgBox(hwnd(), "Please wait until the check window disappears (5 sec.)", caption,
                    MB_OKCANCEL) == IDCANCEL)
    return;
  TestErrorCode = 0;
  if (!GLTest_frm_) GLTest_frm_ = std::make_unique<tests::GLTest_frm>();
  GLTest_frm_->mode(index);
  GLTest_frm_->Init(caption);
  TestErrorCode = GLTest_frm_->ShowModal(hwnd());

  HWND label = Control(kGLTestLbl0 + index);
  const bool asked = TestErrorCode == 0;
  bool answeredYes = false;
  if (asked) {
    answeredYes = win32::MsgBox(hwnd(), tests::TestText(index, 0), caption, MB_YESNO) == IDYES;
    if (answeredYes)
      win32::SetText(label, tests::OkLabel(CurrentOGLPixelFormat()));
    else
      TestErrorCode = -1;
  }
  // The automatic check ran on the same frames; it decides nothing here.
  labelTips_.Set(label, tests::LabelTip(GLTest_frm_->Verdict(), asked, answeredYes));
  // A failure of the test window gives its error label without a question.
  if (TestErrorCode != 0)
    win32::SetText(label, tests::ErrorLabel(TestErrorCode, CurrentOGLPixelFormat()));
  FocusControl(index == tests::kInteractionTest ? kNext : kGLTestCbt0 + index + 1);
  GLTest_frm_.reset();
  Specs_Cbt_Click();
}

}  // namespace shell
