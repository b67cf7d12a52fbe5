#include "tests/scene_math.h"

#include <gtest/gtest.h>

namespace {

using namespace tests;

TEST(WrappedOffset, PassesOneAtFrame21AndWrapsOnce) {
  struct Case {
    int t;
    float speed;
    float expected;
  } cases[] = {{0, 0.05f, 0.0f},   {10, 0.05f, 0.5f},   {20, 0.05f, 1.0f},
               {21, 0.05f, -0.95f}, {30, 0.05f, -0.5f},  {50, 0.05f, 0.5f},
               {50, 0.02f, 1.0f},  {51, 0.02f, -0.98f}};
  for (const auto& c : cases)
    EXPECT_NEAR(WrappedOffset(c.t, c.speed), c.expected, 1e-6) << c.t << " at " << c.speed;
  // Exactly 1 at frame 20 stays on this side of the wrap.
  EXPECT_LE(WrappedOffset(20, 0.05f), 1.0f);
}

TEST(ColourRamp, RedWhiteGreenBlackBlueThenBlack) {
  struct Case {
    int t;
    std::array<float, 3> rgb;
  } cases[] = {{0, {0, 0, 0}},        {5, {0.5f, 0, 0}},     {10, {1, 0, 0}},
               {15, {1, 0.5f, 0.5f}}, {20, {1, 1, 1}},       {25, {0.5f, 1, 0.5f}},
               {30, {0, 1, 0}},       {35, {0, 0.5f, 0}},    {40, {0, 0, 0}},
               {45, {0, 0, 0.5f}},    {50, {0, 0, 1}},       {51, {0, 0, 0}}};
  for (const auto& c : cases) {
    auto rgb = ColourRamp(c.t);
    for (int k = 0; k < 3; ++k) EXPECT_NEAR(rgb[k], c.rgb[k], 1e-6) << c.t << "/" << k;
  }
}

TEST(ZoomSizeAndViewCoordinates, EndsCornersAndCentre) {
  EXPECT_NEAR(ZoomSize(0), 2.8f, 1e-6);
  EXPECT_NEAR(ZoomSize(50), 0.8f, 1e-6);
  EXPECT_GT(ZoomSize(10), ZoomSize(11));
  using XY = std::array<float, 2>;
  EXPECT_EQ(ViewCoordinates(0, 0, 200, 100), (XY{-1, 1}));
  EXPECT_EQ(ViewCoordinates(100, 50, 200, 100), (XY{0, 0}));
  EXPECT_EQ(ViewCoordinates(200, 100, 200, 100), (XY{1, -1}));
}

// Every edge between two corners is drawn, no edge to the centre is.
TEST(Quadrangle, OnlyBorderEdgesCarryTheEdgeFlag) {
  int borders = 0;
  for (const auto& tri : kQuadTriangles)
    for (int k = 0; k < 3; ++k) {
      int from = tri.v[k], to = tri.v[(k + 1) % 3];
      bool flagged = (tri.edges >> k) & 1;
      EXPECT_EQ(flagged, from != 4 && to != 4) << from << "->" << to;
      borders += flagged;
    }
  EXPECT_EQ(borders, 4);
}

}  // namespace
