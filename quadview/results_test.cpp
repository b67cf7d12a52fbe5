#include "quadview/results.h"

#include <gtest/gtest.h>

namespace {

using namespace quadview;

TEST(QuadResult, OneBitPerTickedBoxAndBackFromText) {
  const std::pair<FixBoxes, short> cases[] = {
      {{0, 0, 0, 0}, 0}, {{1, 0, 0, 0}, 1}, {{0, 1, 0, 0}, 2}, {{0, 0, 1, 0}, 4},
      {{0, 0, 0, 1}, 8}, {{2, 0, 0, 2}, 9},  // a grey box is not 0, so it counts
  };
  for (const auto& [boxes, expected] : cases) EXPECT_EQ(QuadResult(boxes), expected) << expected;
  const std::pair<const char*, std::optional<short>> texts[] = {
      {"0", 0},   {"15", 15}, {"-1", -1},    {"ERROR", {}},    {"", {}},
      {"7x", {}}, {" 3", {}}, {"40000", {}}, {"32767", 32767}};
  for (const auto& [text, expected] : texts) EXPECT_EQ(ParseQuadResult(text), expected) << text;
}

TEST(QuadTexts, ResultLinesDescriptionCaptionAndViewportFigures) {
  EXPECT_EQ(QuadViewText(3),
            "\r\n  Form Resize          \tTRUE"
            "\r\n  Form Paint           \tTRUE"
            "\r\n  OpenGL Picture Resize\tFALSE"
            "\r\n  OpenGL Picture Paint \tFALSE");
  EXPECT_EQ(DescriptionText(),
            "This tests the ability to Zoom to the full screen size and the redraw performance.\r\r"
            "Do the graphics show correctly when the window is Maximized or Restored?\r"
            "Do the graphics show correctly when the window is Resized?\r"
            "Did you see the graphics without any grey or black areas?");
  EXPECT_EQ(WindowCaption("QuadView"), "QuadView Velmora");
  EXPECT_EQ(ViewportInfoText({16384, 8192}, {0, 1, 300, 200}), "\n\n16384, 8192 - 0, 1, 300, 200");
}

}  // namespace
