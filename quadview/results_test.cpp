#include "quadview/results.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>

#include "gl/pyramid_grid.h"
#include "quadview/mbitblt.h"

namespace {

using namespace quadview;

TEST(QuadResult, OneBitPerTickedBox) {
  const std::pair<FixBoxes, short> cases[] = {
      {{0, 0, 0, 0}, 0}, {{1, 0, 0, 0}, 1}, {{0, 1, 0, 0}, 2},  {{0, 0, 1, 0}, 4},
      {{0, 0, 0, 1}, 8}, {{1, 1, 0, 0}, 3}, {{0, 1, 0, 1}, 10}, {{1, 1, 1, 1}, 15},
      {{2, 0, 0, 2}, 9},  // a grey box is not 0, so it counts
  };
  for (const auto& [boxes, expected] : cases) EXPECT_EQ(QuadResult(boxes), expected) << expected;
}

TEST(QuadViewText, FourLinesOfTwentyOneCharacterLabels) {
  EXPECT_EQ(QuadViewText(0),
            "\r\n  Form Resize          \tFALSE"
            "\r\n  Form Paint           \tFALSE"
            "\r\n  OpenGL Picture Resize\tFALSE"
            "\r\n  OpenGL Picture Paint \tFALSE");
  EXPECT_EQ(QuadViewText(15),
            "\r\n  Form Resize          \tTRUE"
            "\r\n  Form Paint           \tTRUE"
            "\r\n  OpenGL Picture Resize\tTRUE"
            "\r\n  OpenGL Picture Paint \tTRUE");
  EXPECT_EQ(QuadViewText(3),
            "\r\n  Form Resize          \tTRUE"
            "\r\n  Form Paint           \tTRUE"
            "\r\n  OpenGL Picture Resize\tFALSE"
            "\r\n  OpenGL Picture Paint \tFALSE");
  // Each bit reaches its own line only.
  for (int bit = 0; bit < 4; ++bit) {
    std::string text = QuadViewText(static_cast<short>(1 << bit));
    size_t at = text.find("TRUE");
    ASSERT_NE(at, std::string::npos) << bit;
    EXPECT_EQ(text.find("TRUE", at + 1), std::string::npos) << bit;
    EXPECT_EQ(std::count(text.begin(), text.begin() + at, '\n'), bit + 1) << bit;
  }
}

TEST(ParseQuadResult, DecimalTextOnly) {
  const std::pair<const char*, std::optional<short>> cases[] = {
      {"0", 0},   {"15", 15}, {"-1", -1},    {"ERROR", {}},    {"", {}},
      {"7x", {}}, {" 3", {}}, {"40000", {}}, {"32767", 32767}};
  for (const auto& [text, expected] : cases) EXPECT_EQ(ParseQuadResult(text), expected) << text;
}

TEST(QuadTexts, DescriptionCaptionAndViewportFigures) {
  std::string d = DescriptionText();
  EXPECT_EQ(d.find('\n'), std::string::npos) << "lines are separated by CR alone";
  EXPECT_EQ(std::count(d.begin(), d.end(), '\r'), 4) << "five lines";
  EXPECT_EQ(d.find("\r\r"), d.find('\r')) << "an empty line after the first";
  EXPECT_EQ(d.back(), '?');
  EXPECT_EQ(WindowCaption("QuadView"), "QuadView Velmora");
  EXPECT_EQ(ViewportInfoText({16384, 8192}, {0, 1, 300, 200}), "\n\n16384, 8192 - 0, 1, 300, 200");
  EXPECT_EQ(InitialFormFixValue(true), 1);
  EXPECT_EQ(InitialFormFixValue(false), 0);
}

TEST(KeyUpAction, OnlyTheCtrlBitCounts) {
  struct Case {
    int key, shift;
    KeyAction expected;
  };
  const Case cases[] = {
      {86, 2, KeyAction::ToggleFixBoxes},    {86, 3, KeyAction::ToggleFixBoxes},
      {86, 6, KeyAction::ToggleFixBoxes},    {86, 0, KeyAction::None},
      {86, 1, KeyAction::None},              {86, 4, KeyAction::None},
      {67, 2, KeyAction::ToggleCopyPicture}, {67, 7, KeyAction::ToggleCopyPicture},
      {67, 0, KeyAction::None},              {88, 2, KeyAction::None},
      {118, 2, KeyAction::None},             {99, 2, KeyAction::None},
  };
  for (const Case& c : cases)
    EXPECT_EQ(KeyUpAction(c.key, c.shift), c.expected) << c.key << " with shift " << c.shift;
}

TEST(HidesOnQueryUnload, SystemMenuShutdownAndOtherProgramsHide) {
  const std::pair<int, bool> cases[] = {{0, true}, {1, false}, {2, true},
                                        {3, true}, {4, false}, {5, false}};
  for (auto [mode, hides] : cases) EXPECT_EQ(HidesOnQueryUnload(mode), hides) << mode;
}

TEST(TransferSizeOf, InclusiveRectangleIn16Bits) {
  struct Case {
    const char* name;
    SourceRect rect;
    std::optional<TransferSize> expected;
  };
  const Case cases[] = {
      {"one pixel at the origin", {0, 0, 0, 0}, TransferSize{1, 1}},
      {"one pixel elsewhere", {1, 2, 1, 2}, TransferSize{1, 1}},
      {"a view", {0, 0, 639, 479}, TransferSize{640, 480}},
      {"empty", {10, 0, 9, 0}, TransferSize{0, 1}},
      {"negative is passed on", {10, 7, 5, 0}, TransferSize{-4, -6}},
      {"largest 16-bit width", {0, 0, 32766, 0}, TransferSize{32767, 1}},
      {"one beyond 16 bits", {0, 0, 32767, 0}, std::nullopt},
      {"most negative 16-bit height", {0, 0, 0, -32769}, TransferSize{1, -32768}},
      {"below 16 bits", {0, 0, 0, -32770}, std::nullopt},
      {"difference overflows 32 bits", {INT_MIN, 0, INT_MAX, 0}, std::nullopt},
      {"difference overflows by one", {-1, 0, INT_MAX, 0}, std::nullopt},
      {"the added one overflows", {0, 0, INT_MAX, 0}, std::nullopt},
      {"height overflows", {0, INT_MAX, 0, INT_MIN}, std::nullopt},
  };
  for (const Case& c : cases) EXPECT_EQ(TransferSizeOf(c.rect), c.expected) << c.name;
}

TEST(ScenePlaces, TwoCrossedBandsOf441Shapes) {
  auto places = mOpenGL::PyramidGridPlaces();
  ASSERT_EQ(places.size(), 882u);
  for (size_t i = 0; i < places.size(); ++i) {
    const mOpenGL::PyramidPlace& p = places[i];
    const bool front = i < 441;
    EXPECT_DOUBLE_EQ(p.z0, front ? 0.4 : -0.4) << i;
    EXPECT_LE(std::abs(front ? p.x : p.y), 1.0 + 1e-12) << i << " along its band";
    EXPECT_LE(std::abs(front ? p.y : p.x), 0.3 + 1e-12) << i << " across its band";
  }
  // The corners of each band, in the order the bands are drawn.
  const std::pair<size_t, std::pair<double, double>> corners[] = {
      {0, {-1.0, -0.3}}, {440, {1.0, 0.3}}, {441, {-0.3, -1.0}}, {881, {0.3, 1.0}}};
  for (auto [i, xy] : corners) {
    EXPECT_DOUBLE_EQ(places[i].x, xy.first) << i;
    EXPECT_DOUBLE_EQ(places[i].y, xy.second) << i;
  }
}

}  // namespace
