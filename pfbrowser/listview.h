#pragma once
// CListViewCtl: a common-controls list view ("SysListView32") created and
// driven directly through its window messages, and the decisions of its
// column sort as plain functions.
#include <windows.h>

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "win32/handle.h"

namespace pfbrowser {

// Sort directions as the browser's per-column toggle produces them.
// NOTE: 1 is ascending and 0 descending: the toggle starts at 0 and turns
// it to 1 on the first click, and the first click sorts ascending.
inline constexpr int kSortDescending = 0;
inline constexpr int kSortAscending = 1;
inline int ToggleSortDirection(int direction) { return direction == 0 ? 1 : 0; }

// The window properties through which the comparison callback, given only
// the list view's handle, finds what it sorts by.
inline constexpr char kSortModeProperty[] = "_CB_SORT_INFO_MODE";
inline constexpr char kSortColumnProperty[] = "_CB_SORT_INFO_COLUMN";
inline constexpr char kSortKeysProperty[] = "_CB_SORT_INFO_KEYS";

// Cell texts compare alphabetically, ignoring case; an empty cell comes
// before any text. Negative, 0 or positive.
int CompareCellTexts(std::string_view a, std::string_view b);

// What a row is sorted by: its text in the sort column and its place
// before the sort, which breaks ties so that equal rows keep their order.
struct SortKey {
  std::string text;
  int position = 0;
};
// Negative when `a` goes before `b` in `direction`; never 0 for two rows.
int CompareSortKeys(const SortKey& a, const SortKey& b, int direction);

// The identities of the rows in the order the sort must give.
std::vector<LPARAM> SortedOrder(const std::map<LPARAM, SortKey>& keys, int direction);

// How a list view numbers the two items it hands to the comparison
// callback of LVM_SORTITEMSEX.
enum class SortIndexMeaning {
  // The index names the item that LVM_GETITEM returns for it during the
  // sort (Windows).
  ListedItem,
  // The index is the item's place in a working copy that the control
  // sorts by moving the later item of a pair in front of the earlier one
  // whenever the callback says they are out of order, while LVM_GETITEM
  // still answers from the order before the sort (Wine 8).
  WorkingCopy,
};

// The working copy of a sort as the callback follows it.
class WorkingOrder {
 public:
  explicit WorkingOrder(std::vector<LPARAM> ids) : ids_(std::move(ids)) {}
  LPARAM At(LPARAM index) const;
  // The callback answered `result` for the items at `first` and `second`.
  void Compared(LPARAM first, LPARAM second, int result);
  const std::vector<LPARAM>& ids() const { return ids_; }

 private:
  std::vector<LPARAM> ids_;
};

class CListViewCtl {
 public:
  // Starts the common controls (list-view classes) once per process.
  CListViewCtl();
  ~CListViewCtl();
  CListViewCtl(const CListViewCtl&) = delete;
  CListViewCtl& operator=(const CListViewCtl&) = delete;

  // Font of the list view; set before Create.
  void SetFontName(std::string_view name);
  void SetFontSize(int points);
  const std::string& FontName() const { return fontName_; }
  int FontSize() const { return fontSize_; }

  bool Create(HWND parent, int left, int top, int width, int height, DWORD style, DWORD exStyle);
  void Destroy();
  HWND hwnd() const { return wnd_; }

  void Move(int left, int top, int width, int height, bool repaint);
  bool AddColumn(int index, std::string_view header, int width);
  // Adds a row; its lParam is an identity of its own that sorting keeps.
  bool AddItem(int index, std::string_view text);
  bool SetItemText(int column, int row, std::string_view text);
  void SetColumnWidth(int column, int width);   // 0 hides the column
  int ColumnWidth(int column) const;
  // Widths in pixels of texts as the list view draws them: cell texts in
  // its font, header texts in its header's font.
  int StringWidth(std::string_view text) const;
  std::vector<int> HeaderTextWidths(const std::vector<std::string>& texts) const;
  // The room the header keeps on each side of a header's text, in pixels.
  int HeaderMargin() const;
  HWND Header() const;
  DWORD ExtendedStyle() const;
  void SetExtendedStyle(DWORD style);
  void SetRedraw(bool on);
  int SelectedItem() const;   // -1 when none
  void EnsureVisible(int item);

  int ItemCount() const;
  int ColumnCount() const;
  std::string ItemText(int row, int column) const;
  std::string ColumnText(int column) const;

  // Sorts the rows by the texts in `column`, ascending or descending
  // (kSortAscending, kSortDescending). True when the rows came out in the
  // order asked for.
  bool SortByColumn(int column, int direction);
  SortIndexMeaning IndexMeaning() const { return indexMeaning_; }

 private:
  bool SortOnce(int column, int direction, const std::map<LPARAM, SortKey>& keys);
  std::vector<LPARAM> RowIds() const;

  HWND wnd_ = nullptr;
  std::string fontName_ = "MS Sans Serif";
  int fontSize_ = 8;
  win32::Gdi<HFONT> font_;
  LPARAM nextId_ = 1;
  // Learnt from the first sort that needs it: which numbering the control
  // uses (see SortIndexMeaning).
  SortIndexMeaning indexMeaning_ = SortIndexMeaning::ListedItem;
};

}  // namespace pfbrowser
