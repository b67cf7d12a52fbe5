#pragma once
// The automatic check of the visual tests: named checks of the pictures the
// scenes leave in their views, and a test run without a person (the frames
// drawn back to back, the interaction test clicked by itself).
#include <cstdint>
#include <string>
#include <vector>

namespace tests {

// One named check of a picture and what it saw ("ramp stopped at step 30
// of 51").
struct PictureCheck {
  std::string name;
  bool passed = false;
  std::string saw;
};

// The automatic verdict of one test: every check made on its frames.
struct AutoVerdict {
  std::vector<PictureCheck> checks;
  // True when checks were made and all of them passed.
  bool Passed() const;
  // The first failed check, or nullptr.
  const PictureCheck* Failed() const;
  // "Automatic check: passed", the failed check's text, or that no check
  // was made.
  std::string Text() const;
};

// The tip of a test's verdict label: what the automatic check saw and, when
// the user was asked and answered otherwise, that the check disagrees.
std::string LabelTip(const AutoVerdict& verdict, bool asked, bool answeredYes);

// One visual test run without a person: the error code the test window
// left (0 when it ran through), the frames drawn and the verdict.
struct UnattendedRun {
  int32_t errorCode = 0;
  int frames = 0;
  AutoVerdict verdict;
};
// Runs test `mode` (0..12) in a test window whose caption starts with
// `caption`; the device layer's mode source decides the pixel format.
UnattendedRun RunUnattended(int mode, const std::string& caption);

}  // namespace tests
