// The browser's decisions over plain data: cells, filter, widths, caption,
// layout.
#include "pfbrowser/pixelformat_grid.h"

#include <gtest/gtest.h>

namespace {

using namespace pfbrowser;

int RowOf(const char* text) {
  for (size_t r = 0; r < kFlagRows.size(); ++r)
    if (std::string(kFlagRows[r].text) == text) return static_cast<int>(r);
  return -1;
}

TEST(PixelFormatGrid, EachFlagMarksItsOwnRowOnly) {
  // The flag values as the system's headers define them.
  struct Case {
    DWORD flag;
    const char* row;
    int index;
  };
  const Case cases[] = {
      {0x20, "SUPPORT_OPENGL", 0},       {0x4, "DRAW_TO_WINDOW", 1},
      {0x1, "DOUBLEBUFFER", 2},          {0x40, "GENERIC_FORMAT", 3},
      {0x1000, "GENERIC_ACCELERATED", 4}, {0x2, "STEREO", 5},
      {0x8, "DRAW_TO_BITMAP", 6},        {0x10, "SUPPORT_GDI", 7},
      {0x80, "NEED_PALETTE", 8},         {0x100, "NEED_SYSTEM_PALETTE", 9},
      {0x200, "SWAP_EXCHANGE", 10},      {0x400, "SWAP_COPY", 11},
      {0x800, "SWAP_LAYER_BUFFERS", 12}, {0x2000, "SUPPORT_DIRECTDRAW", 13},
  };
  ASSERT_EQ(std::size(cases), kFlagRows.size());
  for (const Case& c : cases) {
    SCOPED_TRACE(c.row);
    EXPECT_EQ(RowOf(c.row), c.index);
    for (int r = 0; r < static_cast<int>(kFlagRows.size()); ++r) {
      EXPECT_EQ(CellText(c.flag, r), r == c.index ? "X" : "") << "row " << r;
      EXPECT_EQ(CellText(~c.flag, r), r == c.index ? "" : "X") << "row " << r;
    }
  }
  EXPECT_EQ(CellText(0xFFFFFFFF, 14), "");
  EXPECT_EQ(CellText(0xFFFFFFFF, -1), "");
}

TEST(PixelFormatGrid, CellsAreRowsByFormats) {
  // Format 1: window, OpenGL, double-buffered, generic; format 2: bitmap,
  // GDI; format 3: no flags.
  auto cells = GridCells({0x25 | 0x40, 0x8 | 0x10, 0});
  ASSERT_EQ(cells.size(), 14u);
  struct Case {
    const char* row;
    std::vector<std::string> expected;
  };
  const Case cases[] = {
      {"SUPPORT_OPENGL", {"X", "", ""}}, {"DRAW_TO_WINDOW", {"X", "", ""}},
      {"DOUBLEBUFFER", {"X", "", ""}},   {"GENERIC_FORMAT", {"X", "", ""}},
      {"DRAW_TO_BITMAP", {"", "X", ""}}, {"SUPPORT_GDI", {"", "X", ""}},
      {"STEREO", {"", "", ""}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.row);
    EXPECT_EQ(cells[static_cast<size_t>(RowOf(c.row))], c.expected);
  }
  EXPECT_TRUE(GridCells({}).front().empty());
}

TEST(PixelFormatGrid, ShowAllFilter) {
  struct Case {
    DWORD flags;
    bool showAll;
    bool shown;
  };
  const Case cases[] = {
      {0x25, false, true},             // window + OpenGL + double buffer
      {0x25 | 0x40 | 0x1000, false, true},
      {0x24, false, false},            // single-buffered
      {0x21, false, false},            // not to a window
      {0x05, false, false},            // no OpenGL
      {0x0, false, false},
      {0x24, true, true},
      {0x0, true, true},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << std::hex << "flags 0x" << c.flags << " showAll "
                                    << c.showAll);
    EXPECT_EQ(FormatShown(c.flags, c.showAll), c.shown);
  }
}

TEST(PixelFormatGrid, FlagColumnWidth) {
  struct Case {
    double tx;
    int padding;
    int textTwips, width;
  };
  const Case cases[] = {
      {15.0, 30, 1500, 102},  // 96 DPI: P = 30 twips, 2 pixels
      {15.0, 30, 2025, 137},
      {12.0, 24, 1440, 122},  // 120 DPI
      {10.0, 20, 1000, 102},  // 144 DPI
      {10.0, 20, 1005, 103},  // rounds half up
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << c.tx << " twips per pixel, text " << c.textTwips);
    EXPECT_EQ(ColumnPadding(c.tx), c.padding);
    EXPECT_EQ(FlagColumnWidth(c.textTwips, c.tx), c.width);
  }
  // A fractional twips-per-pixel pads by the whole part of twice it.
  EXPECT_EQ(ColumnPadding(1440.0 / 110), 26);
}

TEST(PixelFormatGrid, FormatColumnInitialWidth) {
  EXPECT_EQ(FormatColumnInitialWidth(150, 15.0), 10);
  EXPECT_EQ(FormatColumnInitialWidth(157, 15.0), 10);
  EXPECT_EQ(FormatColumnInitialWidth(120, 12.0), 10);
}

TEST(PixelFormatGrid, NumberTextWidthAddsItsDigits) {
  const std::array<int, 10> digits{10, 3, 5, 6, 7, 6, 6, 6, 6, 9};
  struct Case {
    int number, width;
  };
  for (Case c : {Case{0, 10}, Case{1, 3}, Case{10, 13}, Case{99, 18}, Case{480, 23}, Case{1111, 12}})
    EXPECT_EQ(NumberTextWidth(c.number, digits), c.width) << c.number;
}

TEST(PixelFormatGrid, FormatColumnWidth) {
  // Padding as a list view might measure it: the auto-size adds 11 to a
  // header and 12 to cells; the header keeps 6 on each side of its text.
  const ListViewPadding pad{11, 12, 6};
  struct Case {
    const char* what;
    int initial, header, cell, width;
  };
  const Case cases[] = {
      {"the cells decide", 10, 6, 8, 20},
      {"a long header: its margins decide", 10, 30, 8, 42},
      {"auto-size too narrow for the header", 10, 14, 0, 26},
      {"empty cells", 10, 7, 0, 19},
      {"the initial width is the least", 50, 14, 8, 50},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(FormatColumnWidth(c.initial, c.header, c.cell, pad), c.width);
  }
  EXPECT_EQ(FormatColumnWidth(0, 14, 8, ListViewPadding{11, 12, 0}), 25) << "no margin";
}

TEST(PixelFormatGrid, FlagColumnFinalWidth) {
  EXPECT_EQ(FlagColumnFinalWidth(137, 150), 150);
  EXPECT_EQ(FlagColumnFinalWidth(160, 150), 160);
}

TEST(PixelFormatGrid, Caption) {
  EXPECT_EQ(BrowserCaption(7), "Pixel Format Descriptor List: Selected = 7");
  EXPECT_EQ(BrowserCaption(0), "Pixel Format Descriptor List: Selected = 0");
  EXPECT_EQ(BrowserCaption(480), "Pixel Format Descriptor List: Selected = 480");
}

TEST(PixelFormatGrid, ResizeLayout) {
  const win32::TwipRect showAll{0, 0, 2400, 300};
  const win32::TwipRect close{0, 0, 1335, 420};
  struct Case {
    int width, height;
    double tx, ty;
    RECT listView;
    win32::TwipRect close;
    win32::TwipRect showAll;
  };
  const Case cases[] = {
      // The design size at 96 DPI.
      {9600, 5400, 15, 15, {8, 8, 8 + 624, 8 + 316}, {8145, 4920, 1335, 420},
       {120, 4980, 2400, 300}},
      {12000, 9000, 15, 15, {8, 8, 8 + 784, 8 + 556}, {10545, 8520, 1335, 420},
       {120, 8580, 2400, 300}},
      // 120 DPI.
      {9600, 5400, 12, 12, {10, 10, 10 + 780, 10 + 395}, {8145, 4920, 1335, 420},
       {120, 4980, 2400, 300}},
      // Too small for the list view: it keeps no size rather than a negative one.
      {200, 600, 15, 15, {8, 8, 8, 8}, {-1255, 120, 1335, 420}, {120, 180, 2400, 300}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << c.width << " x " << c.height << " twips at " << c.tx);
    BrowserLayout l = LayoutBrowser(c.width, c.height, showAll, close, c.tx, c.ty);
    EXPECT_EQ(l.listView.left, c.listView.left);
    EXPECT_EQ(l.listView.top, c.listView.top);
    EXPECT_EQ(l.listView.right, c.listView.right);
    EXPECT_EQ(l.listView.bottom, c.listView.bottom);
    auto same = [](win32::TwipRect a, win32::TwipRect b) {
      return a.left == b.left && a.top == b.top && a.width == b.width && a.height == b.height;
    };
    EXPECT_TRUE(same(l.close, c.close)) << l.close.left << "," << l.close.top;
    EXPECT_TRUE(same(l.showAll, c.showAll)) << l.showAll.left << "," << l.showAll.top;
  }
}

}  // namespace
