// The list-view wrapper: the sort decisions as tables, and a real
// "SysListView32" filled, read back and sorted under the system at hand.
#include "pfbrowser/listview.h"

#include <gtest/gtest.h>

#include <commctrl.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "testsupport/testsupport.h"

namespace {

using namespace pfbrowser;

int Sign(int v) { return (v > 0) - (v < 0); }

TEST(ListViewSort, CellTexts) {
  struct Case {
    const char* a;
    const char* b;
    int sign;
  };
  const Case cases[] = {
      {"", "", 0},        {"", "X", -1},        {"X", "", 1},       {"X", "X", 0},
      {"x", "X", 0},      {"ab", "abc", -1},    {"10", "9", -1},
      {"DOUBLEBUFFER", "DRAW_TO_WINDOW", -1},   {"NEED_PALETTE", "NEED_SYSTEM_PALETTE", -1},
      {"STEREO", "SUPPORT_GDI", -1},            {"SUPPORT_OPENGL", "SUPPORT_GDI", 1},
      {"SWAP_COPY", "SWAP_EXCHANGE", -1},
  };
  for (const Case& c : cases)
    EXPECT_EQ(Sign(CompareCellTexts(c.a, c.b)), c.sign) << '"' << c.a << "\" vs \"" << c.b << '"';
}

// The toggle starts every column at 0 and sorts ascending first; equal
// texts keep their earlier order either way.
TEST(ListViewSort, KeysByDirectionWithTiesInTheirEarlierOrder) {
  EXPECT_EQ(ToggleSortDirection(0), kSortAscending);
  EXPECT_EQ(ToggleSortDirection(kSortAscending), kSortDescending);
  EXPECT_EQ(ToggleSortDirection(kSortDescending), kSortAscending);
  struct Case {
    SortKey a, b;
    int direction;
    int sign;
  };
  const Case cases[] = {
      {{"", 0}, {"X", 1}, kSortAscending, -1},   {{"", 0}, {"X", 1}, kSortDescending, 1},
      {{"X", 5}, {"", 2}, kSortAscending, 1},    {{"X", 5}, {"", 2}, kSortDescending, -1},
      {{"X", 1}, {"X", 4}, kSortAscending, -1},  {{"X", 1}, {"X", 4}, kSortDescending, -1},
      {{"", 9}, {"", 3}, kSortAscending, 1},     {{"", 9}, {"", 3}, kSortDescending, 1},
      {{"STEREO", 5}, {"DOUBLEBUFFER", 2}, kSortAscending, 1},
      {{"STEREO", 5}, {"DOUBLEBUFFER", 2}, kSortDescending, -1},
  };
  for (const Case& c : cases)
    EXPECT_EQ(Sign(CompareSortKeys(c.a, c.b, c.direction)), c.sign)
        << '"' << c.a.text << "\"@" << c.a.position << " vs \"" << c.b.text << "\"@"
        << c.b.position << " direction " << c.direction;
  std::map<LPARAM, SortKey> keys{
      {11, {"X", 0}}, {12, {"", 1}}, {13, {"X", 2}}, {14, {"", 3}}, {15, {"X", 4}}};
  EXPECT_EQ(SortedOrder(keys, kSortAscending), (std::vector<LPARAM>{12, 14, 11, 13, 15}));
  EXPECT_EQ(SortedOrder(keys, kSortDescending), (std::vector<LPARAM>{11, 13, 15, 12, 14}));
}

TEST(ListViewSort, TheWorkingOrderFollowsTheMoves) {
  struct Case {
    const char* name;
    LPARAM first, second;
    int result;
    std::vector<LPARAM> after;
  };
  const Case cases[] = {
      {"in order: nothing moves", 0, 1, -1, {10, 20, 30, 40}},
      {"the later item goes in front", 0, 1, 1, {20, 10, 30, 40}},
      {"from the end to the front", 0, 3, 1, {40, 10, 20, 30}},
      {"from the end to the second place", 1, 3, 1, {10, 40, 20, 30}},
      {"equal: nothing moves", 2, 3, 0, {10, 20, 30, 40}},
      {"not a pair the control asks about", 3, 1, 1, {10, 20, 30, 40}},
      {"out of range", 1, 9, 1, {10, 20, 30, 40}},
  };
  for (const Case& c : cases) {
    WorkingOrder order({10, 20, 30, 40});
    order.Compared(c.first, c.second, c.result);
    EXPECT_EQ(order.ids(), c.after) << c.name;
  }
  WorkingOrder order({10, 20});
  EXPECT_EQ(order.At(1), 20);
  EXPECT_EQ(order.At(2), 0);
}

// A real list view in report mode on a plain window.
class ListView : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(lv.Create(owner.hwnd(), 0, 0, 400, 300, WS_CHILD | WS_VISIBLE | LVS_REPORT, 0));
  }
  void Fill(const std::vector<std::vector<std::string>>& rows) {
    int columns = static_cast<int>(rows.front().size());
    for (int c = 0; c < columns; ++c) ASSERT_TRUE(lv.AddColumn(c, "c" + std::to_string(c), 50));
    for (int r = 0; r < static_cast<int>(rows.size()); ++r) {
      ASSERT_TRUE(lv.AddItem(r, rows[r][0]));
      for (int c = 1; c < columns; ++c) {
        if (!rows[r][c].empty()) {
          ASSERT_TRUE(lv.SetItemText(c, r, rows[r][c]));
        }
      }
    }
  }
  std::vector<std::string> Column(int c) {
    std::vector<std::string> v;
    for (int r = 0; r < lv.ItemCount(); ++r) v.push_back(lv.ItemText(r, c));
    return v;
  }
  testsupport::PlainWindow owner{420, 320};
  CListViewCtl lv;
};

TEST_F(ListView, IsAStandardListViewThatReadsBackWhatItWasGiven) {
  char cls[64] = {};
  GetClassNameA(lv.hwnd(), cls, sizeof cls);
  EXPECT_STREQ(cls, "SysListView32");
  EXPECT_EQ(GetParent(lv.hwnd()), owner.hwnd());
  HFONT font = reinterpret_cast<HFONT>(SendMessageA(lv.hwnd(), WM_GETFONT, 0, 0));
  LOGFONTA lf{};
  ASSERT_TRUE(font && GetObjectA(font, sizeof lf, &lf));
  EXPECT_STREQ(lf.lfFaceName, "MS Sans Serif");

  Fill({{"alpha", "X", ""}, {"beta", "", "X"}});
  EXPECT_EQ(lv.ItemCount(), 2);
  EXPECT_EQ(lv.ColumnCount(), 3);
  EXPECT_EQ(lv.ColumnText(2), "c2");
  EXPECT_EQ(Column(0), (std::vector<std::string>{"alpha", "beta"}));
  EXPECT_EQ(Column(1), (std::vector<std::string>{"X", ""}));
  std::string longText(300, 'w');
  ASSERT_TRUE(lv.SetItemText(2, 0, longText));
  EXPECT_EQ(lv.ItemText(0, 2), longText);
  lv.SetColumnWidth(1, 0);
  EXPECT_EQ(lv.ColumnWidth(1), 0);
  lv.SetColumnWidth(1, 37);
  EXPECT_EQ(lv.ColumnWidth(1), 37);
  DWORD before = lv.ExtendedStyle();
  lv.SetExtendedStyle(before | LVS_EX_FULLROWSELECT);
  EXPECT_EQ(lv.ExtendedStyle(), before | LVS_EX_FULLROWSELECT);
  EXPECT_EQ(lv.SelectedItem(), -1);

  HWND wnd = lv.hwnd();
  lv.Destroy();
  EXPECT_FALSE(IsWindow(wnd));
  EXPECT_EQ(lv.hwnd(), nullptr);
}

TEST_F(ListView, SortsByAColumnEitherWay) {
  Fill({{"SUPPORT_OPENGL", "X", ""},
        {"DRAW_TO_WINDOW", "X", "X"},
        {"DOUBLEBUFFER", "", "X"},
        {"GENERIC_FORMAT", "X", ""},
        {"STEREO", "", ""},
        {"DRAW_TO_BITMAP", "", "X"},
        {"SUPPORT_GDI", "X", "X"}});
  struct Case {
    int column;
    int direction;
    std::vector<std::string> firstColumn;
  };
  // Each case starts from the order the one before it left.
  const Case cases[] = {
      {0, kSortAscending,
       {"DOUBLEBUFFER", "DRAW_TO_BITMAP", "DRAW_TO_WINDOW", "GENERIC_FORMAT", "STEREO",
        "SUPPORT_GDI", "SUPPORT_OPENGL"}},
      {0, kSortDescending,
       {"SUPPORT_OPENGL", "SUPPORT_GDI", "STEREO", "GENERIC_FORMAT", "DRAW_TO_WINDOW",
        "DRAW_TO_BITMAP", "DOUBLEBUFFER"}},
      {1, kSortAscending,
       {"STEREO", "DRAW_TO_BITMAP", "DOUBLEBUFFER", "SUPPORT_OPENGL", "SUPPORT_GDI",
        "GENERIC_FORMAT", "DRAW_TO_WINDOW"}},
      {1, kSortDescending,
       {"SUPPORT_OPENGL", "SUPPORT_GDI", "GENERIC_FORMAT", "DRAW_TO_WINDOW", "STEREO",
        "DRAW_TO_BITMAP", "DOUBLEBUFFER"}},
      {2, kSortDescending,
       {"SUPPORT_GDI", "DRAW_TO_WINDOW", "DRAW_TO_BITMAP", "DOUBLEBUFFER", "SUPPORT_OPENGL",
        "GENERIC_FORMAT", "STEREO"}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << "column " << c.column << " direction " << c.direction);
    EXPECT_TRUE(lv.SortByColumn(c.column, c.direction));
    EXPECT_EQ(Column(0), c.firstColumn);
    auto stereo = std::find(c.firstColumn.begin(), c.firstColumn.end(), "STEREO");
    EXPECT_EQ(lv.ItemText(static_cast<int>(stereo - c.firstColumn.begin()), 1), "")
        << "cells move with their rows";
    for (const char* prop : {kSortModeProperty, kSortColumnProperty, kSortKeysProperty})
      EXPECT_EQ(GetPropA(lv.hwnd(), prop), nullptr) << prop << " left behind";
  }
  EXPECT_FALSE(lv.SortByColumn(5, kSortAscending)) << "no such column";
  EXPECT_FALSE(lv.SortByColumn(-1, kSortAscending));
  EXPECT_EQ(Column(0), cases[4].firstColumn) << "a column that is not there sorts nothing";
}

// The expected order: the rows as they were, ordered by the column, ties
// in their earlier order.
TEST_F(ListView, SortsManyRowsRightWhateverNumberingTheControlUses) {
  std::mt19937 random(7);
  std::vector<std::vector<std::string>> rows;
  for (int r = 0; r < 300; ++r)
    rows.push_back({"row" + std::to_string(1000 + r), std::string(1, char('a' + random() % 12)),
                    random() % 2 ? "X" : ""});
  Fill(rows);
  for (int column : {1, 2, 0, 1}) {
    for (int direction : {kSortAscending, kSortDescending}) {
      SCOPED_TRACE(testing::Message() << "column " << column << " direction " << direction);
      const std::vector<std::string> before = Column(0), keys = Column(column);
      std::vector<int> order(before.size());
      for (size_t i = 0; i < order.size(); ++i) order[i] = static_cast<int>(i);
      std::stable_sort(order.begin(), order.end(), [&](int a, int b) {
        int c = CompareCellTexts(keys[a], keys[b]);
        return direction == kSortAscending ? c < 0 : c > 0;
      });
      std::vector<std::string> expected;
      for (int i : order) expected.push_back(before[i]);
      EXPECT_TRUE(lv.SortByColumn(column, direction));
      EXPECT_EQ(Column(0), expected);
    }
  }
}

}  // namespace
