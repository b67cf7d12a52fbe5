#pragma once
// The General page: the thirteen visual tests, "Run All" and the quad
// view, each with the label that shows its result.
#include <windows.h>

#include <memory>
#include <string>

#include "tests/catalogue.h"
#include "tests/gltest_frm.h"
#include "win32/ui.h"

namespace shell {

class VelmoraMain;

enum GeneralPageId : int {
  kGLHintLbl = 300, kRunAll, kQuadViewCbt, kQuadViewLbl,
  kGLTestCbt0 = 320,  // 13 buttons
  kGLTestLbl0 = 340,  // 13 labels
};

// The caution and hint text of the page.
std::string GLHintText();

class GeneralPage {
 public:
  explicit GeneralPage(VelmoraMain& main) : main_(main) {}

  void Create(HWND panel);
  // True when `id` is one of the page's controls (handled or not).
  bool OnCommand(int id, int code);

  void GLTest_Cbt_Click(int index);
  void GLTestRunAll_Cbt_Click();
  void QuadView_Cbt_Click();

 private:
  HWND Control(int id) const { return GetDlgItem(panel_, id); }

  VelmoraMain& main_;
  HWND panel_ = nullptr;
  // The window of the test in progress; made for each test, dropped after.
  std::unique_ptr<tests::GLTest_frm> GLTest_frm_;
  win32::LabelTips labelTips_;  // the automatic check's verdict on each label
};

}  // namespace shell
