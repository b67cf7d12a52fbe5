// The browser's decisions over plain data: cells, filter, sort order, widths, layout.
#include "pfbrowser/pixelformat_grid.h"

#include <gtest/gtest.h>

#include <tuple>

#include "pfbrowser/listview.h"

namespace {

using namespace pfbrowser;

// The rows' texts and flag values as the system's headers define them, in the grid's order.
TEST(PixelFormatGrid, EachFlagMarksItsOwnRowOnly) {
  const std::pair<DWORD, const char*> rows[] = {
      {0x20, "SUPPORT_OPENGL"},       {0x4, "DRAW_TO_WINDOW"},
      {0x1, "DOUBLEBUFFER"},          {0x40, "GENERIC_FORMAT"},
      {0x1000, "GENERIC_ACCELERATED"}, {0x2, "STEREO"},
      {0x8, "DRAW_TO_BITMAP"},        {0x10, "SUPPORT_GDI"},
      {0x80, "NEED_PALETTE"},         {0x100, "NEED_SYSTEM_PALETTE"},
      {0x200, "SWAP_EXCHANGE"},       {0x400, "SWAP_COPY"},
      {0x800, "SWAP_LAYER_BUFFERS"},  {0x2000, "SUPPORT_DIRECTDRAW"},
  };
  ASSERT_EQ(std::size(rows), kFlagRows.size());
  for (int index = 0; index < static_cast<int>(std::size(rows)); ++index) {
    auto [flag, text] = rows[index];
    SCOPED_TRACE(text);
    EXPECT_STREQ(kFlagRows[static_cast<size_t>(index)].text, text);
    for (int r = 0; r < static_cast<int>(kFlagRows.size()); ++r) {
      EXPECT_EQ(CellText(flag, r), r == index ? "X" : "") << "row " << r;
      EXPECT_EQ(CellText(~flag, r), r == index ? "" : "X") << "row " << r;
    }
  }
}

TEST(PixelFormatGrid, ShowAllFilterAndCaption) {
  EXPECT_TRUE(FormatShown(0x25 | 0x40, false)) << "window, OpenGL, double buffer, generic";
  EXPECT_FALSE(FormatShown(0x24, false)) << "single-buffered";
  EXPECT_TRUE(FormatShown(0x0, true)) << "no flags, showing all";
  EXPECT_EQ(BrowserCaption(480), "Pixel Format Descriptor List: Selected = 480");
}

// Cell texts compare ignoring case, an empty cell first.
TEST(PixelFormatGrid, CellTextsSortIgnoringCaseEmptyFirst) {
  const std::tuple<const char*, const char*, int> texts[] = {
      {"", "", 0},       {"", "X", -1},    {"X", "", 1},
      {"x", "X", 0},     {"ab", "abc", -1}, {"10", "9", -1},
      {"SUPPORT_OPENGL", "SUPPORT_GDI", 1},
  };
  for (auto [a, b, sign] : texts) {
    const int c = CompareCellTexts(a, b);
    EXPECT_EQ((c > 0) - (c < 0), sign) << '"' << a << "\" vs \"" << b << '"';
  }
}

TEST(PixelFormatGrid, ColumnWidths) {
  EXPECT_EQ(ColumnPadding(15.0), 30) << "96 DPI: 2 pixels";
  EXPECT_EQ(FlagColumnWidth(1500, 15.0), 102);
  EXPECT_EQ(FlagColumnWidth(1005, 10.0), 103) << "rounds half up";
  EXPECT_EQ(FormatColumnInitialWidth(157, 15.0), 10);
  const std::array<int, 10> digits{10, 3, 5, 6, 7, 6, 6, 6, 6, 9};
  const std::pair<int, int> numbers[] = {{0, 10}, {10, 13}, {480, 23}, {1111, 12}};
  for (auto [number, width] : numbers) EXPECT_EQ(NumberTextWidth(number, digits), width) << number;
  // The auto-size adds 11 to a header and 12 to cells; the header keeps 6 each side of its text.
  const ListViewPadding pad{11, 12, 6};
  EXPECT_EQ(FormatColumnWidth(10, 6, 8, pad), 20) << "the cells decide";
  EXPECT_EQ(FormatColumnWidth(10, 14, 0, pad), 26) << "auto-size too narrow for the header";
  EXPECT_EQ(FormatColumnWidth(50, 14, 8, pad), 50) << "the initial width is the least";
}

// Too small for the list view: it keeps no size rather than a negative one. (The layout at a
// usable size is checked on the real window.)
TEST(PixelFormatGrid, ResizeLayoutTooSmall) {
  BrowserLayout l = LayoutBrowser(200, 600, {0, 0, 2400, 300}, {0, 0, 1335, 420}, 15, 15);
  const RECT empty{8, 8, 8, 8};
  EXPECT_TRUE(EqualRect(&l.listView, &empty))
      << l.listView.left << "," << l.listView.top << "," << l.listView.right << ","
      << l.listView.bottom;
  EXPECT_EQ(std::make_pair(l.close.left, l.close.top), std::make_pair(-1255, 120));
  EXPECT_EQ(std::make_pair(l.showAll.left, l.showAll.top), std::make_pair(120, 180));
}

}  // namespace
