// The automatic check of every scene, run in real test windows: intact, each
// scene passes its named checks; with a fault put in on purpose, the check
// named for that fault fails.
#include <gtest/gtest.h>

#include <fstream>
#include <set>

#include "gl/device_state.h"
#include "testsupport/testsupport.h"
#include "tests/autocheck.h"
#include "tests/catalogue.h"
#include "tests/gltest_frm.h"
#include "win32/ui.h"

namespace tests {
namespace {

// Saved as a BMP so that a person can look at the frame.
void SaveView(const std::string& name) {
  GLint viewport[4] = {};
  glGetIntegerv(GL_VIEWPORT, viewport);
  const int width = viewport[2], height = viewport[3];
  std::vector<unsigned char> rgb(static_cast<size_t>(width) * height * 3);
  glPixelStorei(GL_PACK_ALIGNMENT, 1);
  glReadPixels(0, 0, width, height, GL_BGR_EXT, GL_UNSIGNED_BYTE, rgb.data());
  std::string dir = win32::ModuleDirectory() + "\\..\\screenshots";
  CreateDirectoryA(dir.c_str(), nullptr);
  int stride = (width * 3 + 3) & ~3;
  BITMAPINFOHEADER bi{sizeof bi, width, height, 1, 24, BI_RGB, 0, 0, 0, 0, 0};
  BITMAPFILEHEADER bf{};
  bf.bfType = 0x4D42;
  bf.bfOffBits = sizeof bf + sizeof bi;
  bf.bfSize = bf.bfOffBits + static_cast<DWORD>(stride * height);
  std::ofstream out(dir + "\\scene_" + name + ".bmp", std::ios::binary);
  out.write(reinterpret_cast<const char*>(&bf), sizeof bf);
  out.write(reinterpret_cast<const char*>(&bi), sizeof bi);
  for (int y = 0; y < height; ++y) {
    out.write(reinterpret_cast<const char*>(&rgb[static_cast<size_t>(y) * width * 3]), width * 3);
    out.write("\0\0\0", stride - width * 3);
  }
}

std::set<std::string> Names(const AutoVerdict& v) {
  std::set<std::string> names;
  for (const PictureCheck& c : v.checks) names.insert(c.name);
  return names;
}

class AutomaticCheck : public ::testing::Test {
 protected:
  void SetUp() override { mOpenGL::State() = {}; }
  void TearDown() override { GLTest_frm::SetSceneFaultForTests({}); }
  testsupport::MsgBoxRecorder boxes;
};

TEST_F(AutomaticCheck, EveryIntactScenePassesItsNamedChecks) {
  const std::set<std::string> expected[kTestCount] = {
      {"diagonal movement", "diagonal wrap"},
      {"point growing"},
      {"text position", "text wrap", "font lists per view"},
      {"front face only", "outside faces"},
      {"black lines on white"},
      {"hidden-line border"},
      {"colour ramp"},
      {"colour float corners", "colour float blend"},
      {"grey corners", "greys only"},
      {"lists compiled once", "a list per view", "list picture"},
      {"list replayed", "pyramid grid"},
      {"zoom volume", "zoomed in"},
      {"interaction square"},
  };
  // One frame of each scene is left as an image to look at.
  const int shown[kTestCount] = {10, 20, 10, 7, 7, 0, 25, 0, 0, 20, 5, 50, 0};
  int mode = 0;
  GLTest_frm::SetSceneFaultForTests({0, [&](int frame, int view) {
                                       if (view == 1 && frame == shown[mode])
                                         SaveView(std::string(kTestCaptions[mode]) + "_t" +
                                                      std::to_string(frame));
                                     }});
  for (mode = 0; mode < kTestCount; ++mode) {
    SCOPED_TRACE(kTestCaptions[mode]);
    UnattendedRun run = RunUnattended(mode, kTestCaptions[mode]);
    ASSERT_EQ(run.errorCode, 0);
    EXPECT_EQ(run.frames, mode == kInteractionTest ? 1 : 51);
    EXPECT_TRUE(run.verdict.Passed()) << run.verdict.Text();
    EXPECT_EQ(run.verdict.Text(), "Automatic check: passed");
    EXPECT_EQ(Names(run.verdict), expected[mode]);
  }
  EXPECT_TRUE(boxes.calls().empty());
}

// Faults put into the scenes on purpose.
void Clear(float r, float g, float b) {
  glClearColor(r, g, b, 0);
  glClear(GL_COLOR_BUFFER_BIT);
}
void WrongColourQuad() {
  glMatrixMode(GL_PROJECTION);
  glLoadIdentity();
  glMatrixMode(GL_MODELVIEW);
  glLoadIdentity();
  glDisable(GL_DEPTH_TEST);
  glColor3f(0.6f, 0.3f, 0.1f);
  glRectf(-0.2f, -0.2f, 0.2f, 0.2f);
}

TEST_F(AutomaticCheck, AFaultInASceneMakesItsCheckFailByName) {
  const struct {
    const char* fault;
    int mode;
    GLTest_frm::SceneFault put;
    const char* failed;
  } cases[] = {
      {"drawing skipped", 3, {0, [](int, int) { Clear(1, 1, 1); }}, "front face only"},
      {"drawing skipped", 1, {0, [](int, int) { Clear(0, 0, 0); }}, "point growing"},
      {"drawing skipped", 12, {0, [](int, int) { Clear(0, 0, 0); }}, "interaction square"},
      {"drawing skipped", 5, {0, [](int, int) { Clear(1, 1, 1); }}, "hidden-line border"},
      {"a colour wrong", 6, {0, [](int frame, int) { if (frame >= 30) WrongColourQuad(); }}, "colour ramp"},
      {"a colour wrong", 8, {0, [](int, int) { WrongColourQuad(); }}, "grey corners"},
      {"a colour wrong", 4, {0, [](int, int) { WrongColourQuad(); }}, "black lines on white"},
      {"one frame early", 0, {1, nullptr}, "diagonal movement"},
      {"one frame early", 6, {1, nullptr}, "colour ramp"},
      {"one frame early", 11, {1, nullptr}, "zoom volume"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.fault) + " in " + kTestCaptions[c.mode]);
    GLTest_frm::SetSceneFaultForTests(c.put);
    UnattendedRun run = RunUnattended(c.mode, kTestCaptions[c.mode]);
    EXPECT_FALSE(run.verdict.Passed());
    ASSERT_NE(run.verdict.Failed(), nullptr);
    EXPECT_EQ(run.verdict.Failed()->name, c.failed) << run.verdict.Text();
  }
  GLTest_frm::SetSceneFaultForTests({});
  UnattendedRun ramp = RunUnattended(6, kTestCaptions[6]);
  EXPECT_TRUE(ramp.verdict.Passed()) << "the fault is gone with the seam";
}

TEST(AutoVerdictText, PassedFailedOrNotMade) {
  AutoVerdict none;
  EXPECT_EQ(none.Text(), "Automatic check: not made");
  EXPECT_FALSE(none.Passed());
  AutoVerdict v{{{"colour ramp", true, "fine"}, {"b", false, "ramp stopped at step 30 of 51"}, {"c", false, "x"}}};
  EXPECT_EQ(v.Text(), "Automatic check failed: b: ramp stopped at step 30 of 51");
  v.checks.resize(1);
  EXPECT_EQ(v.Text(), "Automatic check: passed");
}

}  // namespace
}  // namespace tests
