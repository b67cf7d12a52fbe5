// The automatic check of every scene in real test windows, intact and with a fault put in.
#include <gtest/gtest.h>

#include <cstring>
#include <set>

#include "gl/device_state.h"
#include "testsupport/testsupport.h"
#include "tests/autocheck.h"
#include "tests/catalogue.h"

namespace tests {
namespace {

using Alter = testsupport::PictureFault::Alter;

class AutomaticCheck : public ::testing::Test {
 protected:
  void SetUp() override { mOpenGL::State() = {}; }
  testsupport::MsgBoxRecorder boxes;
};

TEST_F(AutomaticCheck, EveryIntactScenePassesItsNamedChecks) {
  const std::set<std::string> expected[kTestCount] = {
      {"diagonal movement", "diagonal wrap"}, {"point growing"},
      {"text position", "text wrap", "font lists per view"}, {"front face only", "outside faces"},
      {"black lines on white"}, {"hidden-line border"}, {"colour ramp"},
      {"colour float corners", "colour float blend"}, {"grey corners", "greys only"},
      {"lists compiled once", "a list per view", "list picture"},
      {"list replayed", "pyramid grid"}, {"zoom volume", "zoomed in"}, {"interaction square"},
  };
  for (int mode = 0; mode < kTestCount; ++mode) {
    SCOPED_TRACE(kTestCaptions[mode]);
    UnattendedRun run = RunUnattended(mode, kTestCaptions[mode]);
    ASSERT_EQ(run.errorCode, 0);
    EXPECT_EQ(run.frames, mode == kInteractionTest ? 1 : 51);
    EXPECT_EQ(run.verdict.Text(), "Automatic check: passed");
    std::set<std::string> names;
    for (const PictureCheck& c : run.verdict.checks) names.insert(c.name);
    EXPECT_EQ(names, expected[mode]);
  }
  EXPECT_TRUE(boxes.calls().empty());
  EXPECT_EQ(AutoVerdict{}.Text(), "Automatic check: not made");
}

// One fault of each kind: the check named for it fails first, and the verdict says so.
TEST_F(AutomaticCheck, AFaultInAPictureMakesItsCheckFailByName) {
  const Alter white = [](int w, int h, unsigned char* rgb) { std::memset(rgb, 255, 3u * w * h); };
  // A brown square over the middle fifth.
  const Alter brown = [](int w, int h, unsigned char* rgb) {
    for (int y = h * 2 / 5; y < h * 3 / 5; ++y)
      for (int x = w * 2 / 5; x < w * 3 / 5; ++x) {
        unsigned char* p = rgb + 3 * (static_cast<size_t>(y) * w + x);
        p[0] = 153, p[1] = 77, p[2] = 26;
      }
  };
  // Everything a tenth of the width to the right.
  const Alter moved = [](int w, int h, unsigned char* rgb) {
    const int dx = w / 10;
    for (int y = 0; y < h; ++y) {
      unsigned char* row = rgb + static_cast<size_t>(y) * w * 3;
      std::memmove(row + 3 * dx, row, 3u * (w - dx));
      std::memset(row, 0, 3u * dx);
    }
  };
  const struct {
    int mode;
    Alter alter;
    const char* failed;
  } cases[] = {
      {3, white, "front face only"}, {6, brown, "colour ramp"}, {0, moved, "diagonal movement"}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.failed);
    testsupport::PictureFault fault(c.alter);
    const std::string text = RunUnattended(c.mode, kTestCaptions[c.mode]).verdict.Text();
    EXPECT_EQ(text.rfind("Automatic check failed: " + std::string(c.failed) + ": ", 0), 0u) << text;
  }
}

}  // namespace
}  // namespace tests
