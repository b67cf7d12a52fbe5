// The General page: the visual tests, one per button, and the quad view.
#include "shell/general_page.h"

#include "quadview/quadview_frm.h"
#include "shell/main_window.h"
#include "shell/verdict_labels.h"
#include "win32/ui.h"

namespace shell {
namespace {

using win32::CreateControl;
constexpr DWORD kButton = win32::kPushButton;
constexpr DWORD kLabel = win32::kPlainLabel;

}  // namespace

std::string GLHintText() {
  return std::string("Caution:") + "\r" +
         "If one of these general OpenGL performance checks fails, your hardware settings are "
         "not fully compatible." +
         "\r" +
         "OpenGL-based application may not run correctly. Heavy breakdowns may occur without "
         "any cause." +
         "\r" + "\r" + "Hint:" + "\r" +
         " In some cases it is necessary to change the OpenGL hardware acceleration settings," +
         "to download new drivers or to switch to another screen resolution and color depth.";
}

void GeneralPage::Create(HWND p) {
  panel_ = p;
  CreateControl(p, "STATIC", GLHintText(), kLabel, {0, 0, 9360, 1680}, kGLHintLbl);
  for (int i = 0; i < kTestCount; ++i) {
    int column = i < 7 ? 0 : 1;
    int row = i < 7 ? i : i - 7;
    int x = column * 4680;
    int y = 1800 + row * 480;
    CreateControl(p, "BUTTON", tests::kTestCaptions[i], kButton, {x, y, 2040, 390}, kGLTestCbt0 + i);
    CreateControl(p, "STATIC", "", kLabel | SS_CENTERIMAGE, {x + 2100, y, 2520, 390},
                  kGLTestLbl0 + i);
  }
  CreateControl(p, "BUTTON", "Run All", kButton, {4680, 1800 + 6 * 480, 2040, 390}, kRunAll);
  CreateControl(p, "BUTTON", "QuadView", kButton, {0, 1800 + 7 * 480, 2040, 390}, kQuadViewCbt);
  CreateControl(p, "STATIC", "", kLabel | SS_CENTERIMAGE, {2100, 1800 + 7 * 480, 2520, 390},
                kQuadViewLbl);
}

bool GeneralPage::OnCommand(int id, int code) {
  if (id >= kGLTestCbt0 && id < kGLTestCbt0 + tests::kTestCount) {
    if (code == BN_CLICKED) GLTest_Cbt_Click(id - kGLTestCbt0);
    return true;
  }
  switch (id) {
    case kRunAll: GLTestRunAll_Cbt_Click(); break;
    case kQuadViewCbt: QuadView_Cbt_Click(); break;
    default: return id >= kGLHintLbl && id < kGLTestLbl0 + tests::kTestCount;
  }
  return true;
}

void GeneralPage::GLTest_Cbt_Click(int index) {
  using tests::TestErrorCode;
  const std::string caption = win32::GetText(Control(kGLTestCbt0 + index));
  // Without OpenGL the label and the report stay as they are.
  if (!OpenGLOrTell(main_.hwnd(), caption)) return;
  if (index != tests::kInteractionTest &&
      win32::MsgBox(main_.hwnd(), "Please wait until the check window disappears (5 sec.)", caption,
                    MB_OKCANCEL) == IDCANCEL)
    return;
  TestErrorCode = 0;
  if (!GLTest_frm_) GLTest_frm_ = std::make_unique<tests::GLTest_frm>();
  GLTest_frm_->mode(index);
  GLTest_frm_->Init(caption);
  TestErrorCode = GLTest_frm_->ShowModal(main_.hwnd());

  HWND label = Control(kGLTestLbl0 + index);
  const bool asked = TestErrorCode == 0;
  bool answeredYes = false;
  if (asked) {
    answeredYes = win32::MsgBox(main_.hwnd(), tests::TestText(index, 0), caption, MB_YESNO) == IDYES;
    if (answeredYes)
      win32::SetText(label, tests::OkLabel(main_.CurrentOGLPixelFormat()));
    else
      TestErrorCode = -1;
  }
  // The automatic check ran on the same frames; it decides nothing here.
  labelTips_.Set(label, tests::LabelTip(GLTest_frm_->Verdict(), asked, answeredYes));
  // A failure of the test window gives its error label without a question.
  if (TestErrorCode != 0)
    win32::SetText(label, tests::ErrorLabel(TestErrorCode, main_.CurrentOGLPixelFormat()));
  main_.FocusControl(index == tests::kInteractionTest ? kNext : kGLTestCbt0 + index + 1);
  GLTest_frm_.reset();
  main_.Library().Specs_Cbt_Click();
}

void GeneralPage::GLTestRunAll_Cbt_Click() {
  if (!OpenGLOrTell(main_.hwnd(), "Run All")) return;  // one box, not fourteen
  for (int i = 0; i < kTestCount; ++i) GLTest_Cbt_Click(i);
  QuadView_Cbt_Click();
  main_.FocusControl(kNext);
  main_.State().testsAsked = true;
}

void GeneralPage::QuadView_Cbt_Click() {
  if (!OpenGLOrTell(main_.hwnd(), win32::GetText(Control(kQuadViewCbt)))) return;
  std::string result;
  short status = 0;
  tests::AutoVerdict verdict;
  {
    quadview::QuadView_frm quadView(
        {win32::GetText(Control(kQuadViewCbt)), main_.CurrentOGLRedraw()});
    status = quadView.ShowMe(result);
    verdict = quadView.Verdict();
  }
  labelTips_.Set(Control(kQuadViewLbl), verdict.Text());
  QuadViewOutcome outcome = QuadViewVerdict(status, result, main_.CurrentOGLPixelFormat());
  if (outcome.text) main_.State().quadViewText = *outcome.text;
  win32::SetText(Control(kQuadViewLbl), outcome.label);
  main_.Library().Specs_Cbt_Click();
}

}  // namespace shell
