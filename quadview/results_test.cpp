#include "quadview/results.h"

#include <gtest/gtest.h>

#include <climits>

#include "gl/pyramid_grid.h"
#include "quadview/mbitblt.h"
#include "quadview/scene.h"

namespace {

using namespace quadview;

TEST(QuadResult, OneBitPerTickedBox) {
  struct Case {
    FixBoxes boxes;
    short expected;
  };
  const Case cases[] = {
      {{0, 0, 0, 0}, 0}, {{1, 0, 0, 0}, 1}, {{0, 1, 0, 0}, 2},  {{0, 0, 1, 0}, 4},
      {{0, 0, 0, 1}, 8}, {{1, 1, 0, 0}, 3}, {{0, 1, 0, 1}, 10}, {{1, 1, 1, 1}, 15},
      {{2, 0, 0, 2}, 9},  // a grey box is not 0, so it counts
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.expected);
    EXPECT_EQ(QuadResult(c.boxes), c.expected);
  }
}

TEST(QuadViewText, FourLinesOfTwentyOneCharacterLabels) {
  const std::string none =
      "\r\n  Form Resize          \tFALSE"
      "\r\n  Form Paint           \tFALSE"
      "\r\n  OpenGL Picture Resize\tFALSE"
      "\r\n  OpenGL Picture Paint \tFALSE";
  const std::string all =
      "\r\n  Form Resize          \tTRUE"
      "\r\n  Form Paint           \tTRUE"
      "\r\n  OpenGL Picture Resize\tTRUE"
      "\r\n  OpenGL Picture Paint \tTRUE";
  const std::string three =
      "\r\n  Form Resize          \tTRUE"
      "\r\n  Form Paint           \tTRUE"
      "\r\n  OpenGL Picture Resize\tFALSE"
      "\r\n  OpenGL Picture Paint \tFALSE";
  EXPECT_EQ(QuadViewText(0), none);
  EXPECT_EQ(QuadViewText(15), all);
  EXPECT_EQ(QuadViewText(3), three);
  // Each bit reaches its own line only.
  for (int bit = 0; bit < 4; ++bit) {
    SCOPED_TRACE(bit);
    std::string text = QuadViewText(static_cast<short>(1 << bit));
    size_t line = 0;
    for (size_t at = text.find("\r\n"); at != std::string::npos; at = text.find("\r\n", at + 2)) {
      size_t end = text.find("\r\n", at + 2);
      std::string one = text.substr(at + 2, end == std::string::npos ? end : end - at - 2);
      EXPECT_EQ(one.find('\t'), 23u) << "two blanks and 21 characters";
      EXPECT_EQ(one.substr(24), line == static_cast<size_t>(bit) ? "TRUE" : "FALSE");
      ++line;
    }
    EXPECT_EQ(line, 4u);
  }
}

TEST(ParseQuadResult, DecimalTextOnly) {
  struct Case {
    const char* text;
    std::optional<short> expected;
  };
  const Case cases[] = {{"0", 0},         {"15", 15},          {"-1", -1},
                        {"ERROR", {}},    {"", {}},            {"7x", {}},
                        {" 3", {}},       {"32767", 32767},    {"40000", {}}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    EXPECT_EQ(ParseQuadResult(c.text), c.expected);
  }
}

TEST(QuadTexts, DescriptionLinesAreSeparatedByCarriageReturnAlone) {
  std::string d = DescriptionText();
  EXPECT_EQ(d.find('\n'), std::string::npos);
  std::vector<std::string> lines;
  size_t from = 0;
  for (size_t cr = d.find('\r'); cr != std::string::npos; cr = d.find('\r', from)) {
    lines.push_back(d.substr(from, cr - from));
    from = cr + 1;
  }
  lines.push_back(d.substr(from));
  ASSERT_EQ(lines.size(), 5u);
  EXPECT_EQ(lines[1], "") << "an empty line after the first";
  EXPECT_EQ(lines[4].back(), '?');
}

TEST(QuadTexts, CaptionAndViewportFigures) {
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
  for (const Case& c : cases) {
    SCOPED_TRACE(std::to_string(c.key) + "/" + std::to_string(c.shift));
    EXPECT_EQ(KeyUpAction(c.key, c.shift), c.expected);
  }
}

TEST(HidesOnQueryUnload, SystemMenuShutdownAndOtherProgramsHide) {
  const std::pair<int, bool> cases[] = {{0, true}, {1, false}, {2, true},
                                        {3, true}, {4, false}, {5, false}};
  for (auto [mode, hides] : cases) {
    SCOPED_TRACE(mode);
    EXPECT_EQ(HidesOnQueryUnload(mode), hides);
  }
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
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(TransferSizeOf(c.rect), c.expected);
  }
}

TEST(ScenePlaces, TwoCrossedBandsOf441Shapes) {
  auto places = mOpenGL::PyramidGridPlaces();
  ASSERT_EQ(places.size(), 882u);
  for (size_t i = 0; i < places.size(); ++i) {
    const mOpenGL::PyramidPlace& p = places[i];
    const bool front = i < 441;
    SCOPED_TRACE(i);
    EXPECT_DOUBLE_EQ(p.z0, front ? 0.4 : -0.4);
    const double along = front ? p.x : p.y, across = front ? p.y : p.x;
    EXPECT_LE(std::abs(along), 1.0 + 1e-12);
    EXPECT_LE(std::abs(across), 0.3 + 1e-12);
  }
  EXPECT_DOUBLE_EQ(places[0].x, -1.0);
  EXPECT_DOUBLE_EQ(places[0].y, -0.3);
  EXPECT_DOUBLE_EQ(places[440].x, 1.0);
  EXPECT_DOUBLE_EQ(places[440].y, 0.3);
  EXPECT_DOUBLE_EQ(places[441].x, -0.3);
  EXPECT_DOUBLE_EQ(places[441].y, -1.0);
  EXPECT_DOUBLE_EQ(places[881].x, 0.3);
  EXPECT_DOUBLE_EQ(places[881].y, 1.0);
}

}  // namespace
