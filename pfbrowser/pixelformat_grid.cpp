#include "pfbrowser/pixelformat_grid.h"

#include "pfbrowser/listview.h"

#include <algorithm>
#include <cmath>

namespace pfbrowser {
namespace {

int Round(double v) { return static_cast<int>(std::lround(v)); }

}  // namespace

std::string CellText(DWORD flags, int row) {
  if (row < 0 || row >= static_cast<int>(kFlagRows.size())) return {};
  return (flags & kFlagRows[static_cast<size_t>(row)].flag) ? "X" : "";
}

std::vector<std::vector<std::string>> GridCells(const std::vector<DWORD>& formatFlags) {
  std::vector<std::vector<std::string>> rows(kFlagRows.size());
  for (size_t r = 0; r < kFlagRows.size(); ++r)
    for (DWORD flags : formatFlags) rows[r].push_back(CellText(flags, static_cast<int>(r)));
  return rows;
}

bool FormatShown(DWORD flags, bool showAll) {
  return showAll || mOpenGL::DrawsDoubleBufferedOpenGLToAWindow(flags);
}

int ColumnPadding(double twipsPerPixelX) { return static_cast<int>(std::floor(2 * twipsPerPixelX)); }

int FlagColumnWidth(int widestTextTwips, double twipsPerPixelX) {
  return Round((widestTextTwips + ColumnPadding(twipsPerPixelX)) / twipsPerPixelX);
}

int FormatColumnInitialWidth(int paddedNumberTextTwips, double twipsPerPixelX) {
  return Round(paddedNumberTextTwips / twipsPerPixelX);
}

int NumberTextWidth(int number, const std::array<int, 10>& digitWidths) {
  int width = 0;
  for (char c : std::to_string(number))
    width += c >= '0' && c <= '9' ? digitWidths[static_cast<size_t>(c - '0')] : 0;
  return width;
}

int FormatColumnWidth(int initialWidth, int headerText, int widestCellText,
                      const ListViewPadding& padding) {
  int autoSized = std::max(headerText + padding.autoSizeHeader,
                           widestCellText + padding.autoSizeCell);
  int headerFits = headerText + 2 * padding.headerMargin;
  return std::max({initialWidth, autoSized, headerFits});
}

int FlagColumnFinalWidth(int initialWidth, int autoSizedToRowNames) {
  return std::max(initialWidth, autoSizedToRowNames);
}

std::string BrowserCaption(int selectedFormat) {
  return std::string(kDesignCaption) + ": Selected = " + std::to_string(selectedFormat);
}

BrowserLayout LayoutBrowser(int width, int height, win32::TwipRect showAll, win32::TwipRect close,
                            double tx, double ty) {
  BrowserLayout l{};
  int lvLeft = Round(120 / tx), lvTop = Round(120 / ty);
  int lvWidth = std::max(0, Round((width - 240) / tx));
  int lvHeight = std::max(0, Round((height - 240 - showAll.height - 120) / ty));
  l.listView = {lvLeft, lvTop, lvLeft + lvWidth, lvTop + lvHeight};
  l.close = {width - 120 - close.width, height - 60 - close.height, close.width, close.height};
  // The check box sits at the list view's left edge, centred on the
  // button's row.
  l.showAll = {120, l.close.top + (close.height - showAll.height) / 2, showAll.width,
               showAll.height};
  return l;
}

}  // namespace pfbrowser
