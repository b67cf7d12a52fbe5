#pragma once
// The pixel-format browser's decisions as plain functions: the flag rows,
// the cell texts, which formats the show-all filter keeps, the column
// widths, the caption and the resize layout.
#include <windows.h>

#include <array>
#include <string>
#include <vector>

#include "gl/pixelformat_rules.h"
#include "win32/ui.h"

namespace pfbrowser {

using mOpenGL::FlagRow;
using mOpenGL::kFlagRows;

// Every flag the rows show: a format without any of them has an empty column.
inline constexpr DWORD kAllRowFlags = [] {
  DWORD all = 0;
  for (const FlagRow& row : kFlagRows) all |= row.flag;
  return all;
}();

inline constexpr char kFlagHeader[] = "Flag";
// The widest row text; the "Flag" column is made wide enough for it.
inline constexpr char kWidestRowText[] = "NEED_SYSTEM_PALETTE";
inline constexpr char kDesignCaption[] = "Pixel Format Descriptor List";

// "X" when a format with these flags has the row's flag, "" otherwise.
std::string CellText(DWORD flags, int row);
// The grid's cells, rows by formats, for formats whose flags are listed
// in order (format 1 first).
std::vector<std::vector<std::string>> GridCells(const std::vector<DWORD>& formatFlags);

// Whether the show-all filter leaves a format's column visible: all
// formats when showing all, otherwise only those that draw to a window,
// support OpenGL and are double-buffered.
bool FormatShown(DWORD flags, bool showAll);

// P: the padding of the column widths, the whole number of 2 x twips per
// horizontal pixel.
int ColumnPadding(double twipsPerPixelX);
// The "Flag" column, in pixels, from the width of kWidestRowText in twips.
int FlagColumnWidth(int widestTextTwips, double twipsPerPixelX);
// A format column's width before it is auto-sized, in pixels, from the
// width in twips of the text of (format number + P).
// NOTE: the padding is added to the number, not to the width.
int FormatColumnInitialWidth(int paddedNumberTextTwips, double twipsPerPixelX);

// How a list view of the browser's kind pads what it measures, in pixels:
// what its auto-size adds to a header's text and to the widest cell text,
// and the margin its header keeps on each side of a header's text (text
// given less room than that is drawn cut, ending in "...").
struct ListViewPadding {
  int autoSizeHeader = 0;
  int autoSizeCell = 0;
  int headerMargin = 0;
};
// Width in pixels of a number's decimal text, from the widths of the ten
// digits in the font it is drawn in (digits are drawn side by side, with
// no kerning between them).
int NumberTextWidth(int number, const std::array<int, 10>& digitWidths);
// A format column's width once filled, in pixels: what the list view's
// auto-size to header and contents gives, widened where that leaves too
// little room for the header's text, and never below the initial width.
// Text widths in pixels; `widestCellText` is 0 for a column of empty cells.
int FormatColumnWidth(int initialWidth, int headerText, int widestCellText,
                      const ListViewPadding& padding);
// The "Flag" column once filled: its initial width, widened to what the
// list view's auto-size gives for the row names where those need more.
int FlagColumnFinalWidth(int initialWidth, int autoSizedToRowNames);

std::string BrowserCaption(int selectedFormat);

// Where the resize layout puts the controls for a client area of
// `width` x `height` twips. The list view is placed in pixels, the
// buttons in twips; the buttons keep their size.
struct BrowserLayout {
  RECT listView;  // left, top, right, bottom in pixels
  win32::TwipRect close;
  win32::TwipRect showAll;
};
BrowserLayout LayoutBrowser(int width, int height, win32::TwipRect showAll, win32::TwipRect close,
                            double twipsPerPixelX, double twipsPerPixelY);

}  // namespace pfbrowser
