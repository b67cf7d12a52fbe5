// The visual tests' texts, and the timeline of the scenes the picture checks predict from.
#include "tests/catalogue.h"

#include <gtest/gtest.h>

#include "tests/scene_math.h"

namespace tests {
namespace {

TEST(TestText, LinesAreJoinedByALoneCarriageReturnAndOutsideIsEmpty) {
  for (int i = 0; i < kTestCount; ++i)
    for (int16_t kind : {0, 1}) {
      std::string text = TestText(i, kind);
      EXPECT_FALSE(text.empty()) << i << "/" << kind;
      EXPECT_EQ(text.find('\n'), std::string::npos) << i << "/" << kind;
    }
  EXPECT_EQ(TestText(-1, 0) + TestText(13, 1) + TestText(3, 2), "");
}

// The wording as it always was, slips included.
TEST(TestText, WordingKeptAsItAlwaysWas) {
  const struct {
    int index;
    int16_t kind;
    const char* fragment;
  } cases[] = {
      {5, 1, "\rYou should see only the edges of an quadrangle."},
      {8, 1, "coloured light grey,\r the opposite corner point coloured white and inbetween a "
             "smooth light grey filling?"},
      {10, 0, "with a each pyramid composed of a solid part and a wireframe?\r"},
      {12, 0, "positions of the point in the right window - \ranswer NO.\rDid you see two windows"},
  };
  for (const auto& c : cases)
    EXPECT_NE(TestText(c.index, c.kind).find(c.fragment), std::string::npos)
        << TestText(c.index, c.kind);
}

// Exactly 1 at frame 20 stays on this side of the wrap.
TEST(WrappedOffset, PassesOneAtFrame21AndWrapsOnce) {
  const struct {
    int t;
    float speed, expected;
  } cases[] = {{20, 0.05f, 1.0f}, {21, 0.05f, -0.95f}, {50, 0.05f, 0.5f}, {51, 0.02f, -0.98f}};
  for (const auto& c : cases)
    EXPECT_NEAR(WrappedOffset(c.t, c.speed), c.expected, 1e-6) << c.t << " at " << c.speed;
  EXPECT_LE(WrappedOffset(20, 0.05f), 1.0f);
}

TEST(ColourRamp, RedWhiteGreenBlackBlueThenBlack) {
  const struct {
    int t;
    std::array<float, 3> rgb;
  } cases[] = {{0, {0, 0, 0}},  {15, {1, 0.5f, 0.5f}}, {20, {1, 1, 1}}, {30, {0, 1, 0}},
               {40, {0, 0, 0}}, {45, {0, 0, 0.5f}},    {50, {0, 0, 1}}, {51, {0, 0, 0}}};
  for (const auto& c : cases) {
    auto rgb = ColourRamp(c.t);
    for (int k = 0; k < 3; ++k) EXPECT_NEAR(rgb[k], c.rgb[k], 1e-6) << c.t << "/" << k;
  }
}

}  // namespace
}  // namespace tests
