#include "quadview/results.h"

#include <gtest/gtest.h>

#include <climits>
#include <tuple>

#include "quadview/mbitblt.h"

namespace {

using namespace quadview;

TEST(QuadResult, OneBitPerTickedBoxAndBackFromText) {
  const std::pair<FixBoxes, short> cases[] = {
      {{0, 0, 0, 0}, 0}, {{1, 0, 0, 0}, 1},   {{0, 1, 0, 0}, 2},
      {{0, 0, 1, 0}, 4}, {{0, 0, 0, 1}, 8},   {{1, 1, 1, 1}, 15},
      {{2, 0, 0, 2}, 9},  // a grey box is not 0, so it counts
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
  EXPECT_EQ(InitialFormFixValue(true), 1);
  EXPECT_EQ(InitialFormFixValue(false), 0);
}

TEST(QuadKeys, OnlyTheCtrlBitCountsAndClosesFromOutsideHide) {
  const std::tuple<int, int, KeyAction> keys[] = {
      {86, 2, KeyAction::ToggleFixBoxes}, {86, 7, KeyAction::ToggleFixBoxes},
      {86, 5, KeyAction::None},           {67, 2, KeyAction::ToggleCopyPicture},
      {67, 0, KeyAction::None},           {88, 2, KeyAction::None},
      {118, 2, KeyAction::None}};
  for (auto [key, shift, expected] : keys)
    EXPECT_EQ(KeyUpAction(key, shift), expected) << key << " with shift " << shift;
  const std::pair<int, bool> modes[] = {{0, true},  {1, false}, {2, true},
                                        {3, true}, {4, false}, {5, false}};
  for (auto [mode, hides] : modes) EXPECT_EQ(HidesOnQueryUnload(mode), hides) << mode;
}

TEST(TransferSizeOf, InclusiveRectangleIn16Bits) {
  const std::pair<SourceRect, std::optional<TransferSize>> cases[] = {
      {{1, 2, 1, 2}, TransferSize{1, 1}},             // one pixel
      {{0, 0, 639, 479}, TransferSize{640, 480}},     // a view
      {{10, 0, 9, 0}, TransferSize{0, 1}},            // empty
      {{10, 7, 5, 0}, TransferSize{-4, -6}},          // negative is passed on
      {{0, 0, 32766, 0}, TransferSize{32767, 1}},     // largest 16-bit width
      {{0, 0, 32767, 0}, std::nullopt},               // one beyond 16 bits
      {{0, 0, 0, -32769}, TransferSize{1, -32768}},   // most negative 16-bit height
      {{0, 0, 0, -32770}, std::nullopt},              // below 16 bits
      {{INT_MIN, 0, INT_MAX, 0}, std::nullopt},       // the difference overflows 32 bits
      {{0, 0, INT_MAX, 0}, std::nullopt},             // the added one overflows
  };
  for (const auto& [rect, expected] : cases)
    EXPECT_EQ(TransferSizeOf(rect), expected)
        << rect.left << "," << rect.top << "," << rect.right << "," << rect.bottom;
}

}  // namespace
