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
  for (const auto& c : cases) {
    SCOPED_TRACE(std::to_string(c.t) + " at " + std::to_string(c.speed));
    EXPECT_NEAR(WrappedOffset(c.t, c.speed), c.expected, 1e-6);
  }
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
    SCOPED_TRACE(c.t);
    auto rgb = ColourRamp(c.t);
    for (int k = 0; k < 3; ++k) EXPECT_NEAR(rgb[k], c.rgb[k], 1e-6);
  }
}

TEST(ZoomSize, FromTwoPointEightToPointEight) {
  EXPECT_NEAR(ZoomSize(0), 2.8f, 1e-6);
  EXPECT_NEAR(ZoomSize(50), 0.8f, 1e-6);
  EXPECT_GT(ZoomSize(10), ZoomSize(11));
}

TEST(ViewCoordinates, CornersAndCentre) {
  auto topLeft = ViewCoordinates(0, 0, 200, 100);
  EXPECT_FLOAT_EQ(topLeft[0], -1);
  EXPECT_FLOAT_EQ(topLeft[1], 1);
  auto centre = ViewCoordinates(100, 50, 200, 100);
  EXPECT_FLOAT_EQ(centre[0], 0);
  EXPECT_FLOAT_EQ(centre[1], 0);
  auto bottomRight = ViewCoordinates(200, 100, 200, 100);
  EXPECT_FLOAT_EQ(bottomRight[0], 1);
  EXPECT_FLOAT_EQ(bottomRight[1], -1);
}

// Every edge between two corners is drawn, no edge to the centre is.
TEST(Quadrangle, OnlyBorderEdgesCarryTheEdgeFlag) {
  int borders = 0;
  for (const auto& tri : kQuadTriangles)
    for (int k = 0; k < 3; ++k) {
      int from = tri.v[k], to = tri.v[(k + 1) % 3];
      bool inner = from == 4 || to == 4;
      bool flagged = (tri.edges >> k) & 1;
      EXPECT_EQ(flagged, !inner) << from << "->" << to;
      borders += flagged;
    }
  EXPECT_EQ(borders, 4);
  for (const auto& v : kQuadrangle) {
    EXPECT_LE(std::abs(v.x), 0.5);
    EXPECT_LE(std::abs(v.y), 0.5);
  }
  EXPECT_EQ(kQuadrangle[0].colour, 0xFFFFFFu);
  EXPECT_EQ(kQuadrangle[2].colour, 0x999999u);
}

}  // namespace
