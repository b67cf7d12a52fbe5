#include "tests/autocheck.h"

#include "tests/catalogue.h"
#include "tests/gltest_frm.h"

namespace tests {

bool AutoVerdict::Passed() const { return !checks.empty() && !Failed(); }

const PictureCheck* AutoVerdict::Failed() const {
  for (const PictureCheck& c : checks)
    if (!c.passed) return &c;
  return nullptr;
}

std::string AutoVerdict::Text() const {
  if (checks.empty()) return "Automatic check: not made";
  if (const PictureCheck* failed = Failed())
    return "Automatic check failed: " + failed->name + ": " + failed->saw;
  return "Automatic check: passed";
}

std::string LabelTip(const AutoVerdict& verdict, bool asked, bool answeredYes) {
  std::string tip = verdict.Text();
  if (asked && !verdict.checks.empty() && verdict.Passed() != answeredYes)
    tip += std::string(" - this disagrees with your answer \"") + (answeredYes ? "Yes" : "No") + "\"";
  return tip;
}

UnattendedRun RunUnattended(int mode, const std::string& caption) {
  UnattendedRun run;
  GLTest_frm frm;
  frm.mode(mode);
  frm.Init(caption);
  run.frames = frm.RunUnattended();
  run.errorCode = frm.ErrorCode();
  run.verdict = frm.Verdict();
  return run;
}

}  // namespace tests
