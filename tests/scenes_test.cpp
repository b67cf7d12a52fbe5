// The automatic check of every scene, run in real test windows: intact, each
// scene passes its named checks; with a fault put into the pictures it reads
// back, the check named for that fault fails.
#include <gtest/gtest.h>

#include <cstring>
#include <fstream>
#include <set>

#include "gl/device_state.h"
#include "testsupport/testsupport.h"
#include "tests/autocheck.h"
#include "tests/catalogue.h"
#include "win32/ui.h"

namespace tests {
namespace {

using Alter = testsupport::PictureFault::Alter;

// Saved as a BMP so that a person can look at what the check saw.
void SaveBmp(const std::string& name, int width, int height, const unsigned char* rgb) {
  std::string dir = win32::ModuleDirectory() + "\\..\\screenshots";
  CreateDirectoryA(dir.c_str(), nullptr);
  const int stride = (width * 3 + 3) & ~3;
  BITMAPINFOHEADER bi{sizeof bi, width, height, 1, 24, BI_RGB, 0, 0, 0, 0, 0};
  BITMAPFILEHEADER bf{0x4D42, 0, 0, 0, sizeof bf + sizeof bi};
  bf.bfSize = bf.bfOffBits + static_cast<DWORD>(stride * height);
  std::ofstream out(dir + "\\scene_" + name + ".bmp", std::ios::binary);
  out.write(reinterpret_cast<const char*>(&bf), sizeof bf);
  out.write(reinterpret_cast<const char*>(&bi), sizeof bi);
  std::vector<char> row(static_cast<size_t>(stride), 0);
  for (size_t y = 0; y < static_cast<size_t>(height); ++y) {
    for (size_t x = 0, k = 0; x < static_cast<size_t>(width) * 3; ++x, k = x % 3)
      row[x] = static_cast<char>(rgb[y * width * 3 + x - k + 2 - k]);  // BMP: blue, green, red
    out.write(row.data(), stride);
  }
}

class AutomaticCheck : public ::testing::Test {
 protected:
  void SetUp() override { mOpenGL::State() = {}; }
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
  int mode = 0;
  // The last picture the check of each scene looked at is left as an image.
  testsupport::PictureFault keep([&](int width, int height, unsigned char* rgb) {
    if (mode < kTestCount) SaveBmp(kTestCaptions[mode], width, height, rgb);
  });
  for (mode = 0; mode < kTestCount; ++mode) {
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
    const char* fault;
    int mode;
    Alter alter;
    const char* failed;
  } cases[] = {
      {"drawing skipped", 3, white, "front face only"},
      {"a colour wrong", 6, brown, "colour ramp"},
      {"moved aside", 0, moved, "diagonal movement"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.fault) + " in " + kTestCaptions[c.mode]);
    testsupport::PictureFault fault(c.alter);
    const std::string text = RunUnattended(c.mode, kTestCaptions[c.mode]).verdict.Text();
    EXPECT_EQ(text.rfind("Automatic check failed: " + std::string(c.failed) + ": ", 0), 0u) << text;
  }
  EXPECT_TRUE(RunUnattended(6, kTestCaptions[6]).verdict.Passed()) << "the fault is gone with it";
}

}  // namespace
}  // namespace tests
