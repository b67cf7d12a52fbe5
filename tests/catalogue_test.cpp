// The visual tests' texts, and the timeline the scenes and their picture checks share.
#include "tests/catalogue.h"

#include <gtest/gtest.h>

#include "tests/scene_math.h"

namespace tests {
namespace {

// Lines are joined by a lone carriage return, slips included; outside the table, nothing.
TEST(TestText, WordingKeptAsItAlwaysWas) {
  const struct {
    int index;
    int16_t kind;
    const char* fragment;
  } cases[] = {
      {5, 1, "\rYou should see only the edges of an quadrangle."},
      {10, 0, "with a each pyramid composed of a solid part and a wireframe?\r"},
      {12, 0, "positions of the point in the right window - \ranswer NO.\rDid you see two windows"},
  };
  for (const auto& c : cases)
    EXPECT_NE(TestText(c.index, c.kind).find(c.fragment), std::string::npos)
        << TestText(c.index, c.kind);
  for (int i = 0; i < kTestCount; ++i)
    for (int16_t kind : {0, 1}) {
      const std::string text = TestText(i, kind);
      EXPECT_TRUE(!text.empty() && text.find('\n') == std::string::npos) << i << "/" << kind;
    }
  EXPECT_EQ(TestText(-1, 0) + TestText(13, 1) + TestText(3, 2), "");
}

// Exactly 1 at frame 20 stays on this side of the wrap; the ramp runs red, white, green,
// black, blue, then black.
TEST(SceneMath, WrappedOffsetAndColourRamp) {
  const float wraps[][3] = {{20, 0.05f, 1.0f}, {21, 0.05f, -0.95f}, {51, 0.02f, -0.98f}};
  for (const auto& w : wraps)
    EXPECT_NEAR(WrappedOffset(static_cast<int>(w[0]), w[1]), w[2], 1e-6) << w[0];
  EXPECT_LE(WrappedOffset(20, 0.05f), 1.0f);
  const float ramp[][4] = {{0, 0, 0, 0},  {15, 1, 0.5f, 0.5f}, {20, 1, 1, 1},  {30, 0, 1, 0},
                           {40, 0, 0, 0}, {45, 0, 0, 0.5f},    {50, 0, 0, 1},  {51, 0, 0, 0}};
  for (const auto& r : ramp) {
    const auto rgb = ColourRamp(static_cast<int>(r[0]));
    for (int k = 0; k < 3; ++k) EXPECT_NEAR(rgb[k], r[k + 1], 1e-6) << r[0] << "/" << k;
  }
}

}  // namespace
}  // namespace tests
