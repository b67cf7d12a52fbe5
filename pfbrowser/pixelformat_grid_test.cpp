// The browser's decisions over plain data: cells, filter, widths, caption, layout.
#include "pfbrowser/pixelformat_grid.h"

#include <gtest/gtest.h>

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
  EXPECT_EQ(CellText(0xFFFFFFFF, 14), "");
  EXPECT_EQ(CellText(0xFFFFFFFF, -1), "");
}

TEST(PixelFormatGrid, ShowAllFilterAndCaption) {
  struct Case {
    const char* name;
    DWORD flags;
    bool showAll, shown;
  };
  const Case cases[] = {
      {"window, OpenGL, double buffer, generic", 0x25 | 0x40, false, true},
      {"single-buffered", 0x24, false, false},
      {"not to a window", 0x21, false, false},
      {"no OpenGL", 0x05, false, false},
      {"no flags, showing all", 0x0, true, true},
  };
  for (const Case& c : cases) EXPECT_EQ(FormatShown(c.flags, c.showAll), c.shown) << c.name;
  EXPECT_EQ(BrowserCaption(480), "Pixel Format Descriptor List: Selected = 480");
}

TEST(PixelFormatGrid, ColumnWidths) {
  struct Case {
    const char* name;
    double tx;
    int padding, textTwips, width;
  };
  const Case cases[] = {
      {"96 DPI: P = 30 twips, 2 pixels", 15.0, 30, 1500, 102},
      {"120 DPI", 12.0, 24, 1440, 122},
      {"144 DPI, rounds half up", 10.0, 20, 1005, 103},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(ColumnPadding(c.tx), c.padding);
    EXPECT_EQ(FlagColumnWidth(c.textTwips, c.tx), c.width);
  }
  EXPECT_EQ(ColumnPadding(1440.0 / 110), 26) << "the whole part of twice a fraction";
  EXPECT_EQ(FormatColumnInitialWidth(157, 15.0), 10);
  EXPECT_EQ(FormatColumnInitialWidth(120, 12.0), 10);

  const std::array<int, 10> digits{10, 3, 5, 6, 7, 6, 6, 6, 6, 9};
  const std::pair<int, int> numbers[] = {{0, 10}, {10, 13}, {480, 23}, {1111, 12}};
  for (auto [number, width] : numbers) EXPECT_EQ(NumberTextWidth(number, digits), width) << number;

  // Padding as a list view might measure it: the auto-size adds 11 to a header and 12 to
  // cells; the header keeps 6 on each side of its text.
  const ListViewPadding pad{11, 12, 6};
  struct Format {
    const char* what;
    int initial, header, cell, width;
  };
  const Format formats[] = {
      {"the cells decide", 10, 6, 8, 20},
      {"auto-size too narrow for the header", 10, 14, 0, 26},
      {"empty cells", 10, 7, 0, 19},
      {"the initial width is the least", 50, 14, 8, 50},
  };
  for (const Format& c : formats)
    EXPECT_EQ(FormatColumnWidth(c.initial, c.header, c.cell, pad), c.width) << c.what;
  EXPECT_EQ(FormatColumnWidth(0, 14, 8, ListViewPadding{11, 12, 0}), 25) << "no margin";
}

TEST(PixelFormatGrid, ResizeLayout) {
  struct Case {
    const char* name;
    int width, height;
    double tx, ty;
    RECT listView;
    int closeLeft, closeTop, showAllTop;
  };
  const Case cases[] = {
      {"the design size at 96 DPI", 9600, 5400, 15, 15, {8, 8, 632, 324}, 8145, 4920, 4980},
      {"120 DPI", 9600, 5400, 12, 12, {10, 10, 790, 405}, 8145, 4920, 4980},
      // The list view keeps no size rather than a negative one.
      {"too small for the list view", 200, 600, 15, 15, {8, 8, 8, 8}, -1255, 120, 180},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    BrowserLayout l = LayoutBrowser(c.width, c.height, {0, 0, 2400, 300}, {0, 0, 1335, 420},
                                    c.tx, c.ty);
    EXPECT_TRUE(EqualRect(&l.listView, &c.listView))
        << l.listView.left << "," << l.listView.top << "," << l.listView.right << ","
        << l.listView.bottom;
    auto same = [](win32::TwipRect a, win32::TwipRect b) {
      return a.left == b.left && a.top == b.top && a.width == b.width && a.height == b.height;
    };
    EXPECT_TRUE(same(l.close, {c.closeLeft, c.closeTop, 1335, 420}))
        << l.close.left << "," << l.close.top;
    EXPECT_TRUE(same(l.showAll, {120, c.showAllTop, 2400, 300}))
        << l.showAll.left << "," << l.showAll.top;
  }
}

}  // namespace
