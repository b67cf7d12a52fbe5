// The list-view wrapper: the sort decisions as tables, and a real "SysListView32" filled, read
// back and sorted under the system at hand.
#include "pfbrowser/listview.h"

#include <gtest/gtest.h>

#include <commctrl.h>

#include <algorithm>
#include <random>
#include <string>
#include <tuple>
#include <vector>

#include "testsupport/testsupport.h"

namespace {

using namespace pfbrowser;

int Sign(int v) { return (v > 0) - (v < 0); }

// Cell texts compare ignoring case, an empty cell first; the toggle starts every column at 0
// and sorts ascending first. (Ties and both directions are checked on a real list view below.)
TEST(ListViewSort, CellTextsAndTheToggle) {
  const std::tuple<const char*, const char*, int> texts[] = {
      {"", "", 0},        {"", "X", -1},           {"X", "", 1},
      {"x", "X", 0},      {"ab", "abc", -1},       {"10", "9", -1},
      {"SUPPORT_OPENGL", "SUPPORT_GDI", 1},
  };
  for (auto [a, b, sign] : texts)
    EXPECT_EQ(Sign(CompareCellTexts(a, b)), sign) << '"' << a << "\" vs \"" << b << '"';
  EXPECT_EQ(ToggleSortDirection(0), kSortAscending);
  EXPECT_EQ(ToggleSortDirection(kSortAscending), kSortDescending);
  EXPECT_EQ(ToggleSortDirection(kSortDescending), kSortAscending);
}

// How the callback follows a control that numbers the items of its working copy (Wine 8).
TEST(ListViewSort, TheWorkingOrderFollowsTheMoves) {
  struct Case {
    const char* name;
    LPARAM first, second;
    int result;
    std::vector<LPARAM> after;
  };
  const Case cases[] = {
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

// A real "SysListView32" in report mode on a plain window.
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
        if (!rows[r][c].empty()) { ASSERT_TRUE(lv.SetItemText(c, r, rows[r][c])); }
      }
    }
  }
  std::vector<std::vector<std::string>> Rows() {
    std::vector<std::vector<std::string>> rows(static_cast<size_t>(lv.ItemCount()));
    for (int r = 0; r < lv.ItemCount(); ++r)
      for (int c = 0; c < lv.ColumnCount(); ++c) rows[r].push_back(lv.ItemText(r, c));
    return rows;
  }
  testsupport::PlainWindow owner{420, 320};
  CListViewCtl lv;
};

// Whatever numbering the control uses in its callback, the rows come out ordered by the
// column, ties in their earlier order, every row moving whole, and no property left behind.
TEST_F(ListView, SortsManyRowsByAColumnEitherWay) {
  std::mt19937 random(7);
  std::vector<std::vector<std::string>> rows;
  for (int r = 0; r < 300; ++r)
    rows.push_back({"row" + std::to_string(1000 + r), std::string(1, char('a' + random() % 12)),
                    random() % 2 ? "X" : ""});
  Fill(rows);
  const std::string longText(300, 'w');  // longer than the first buffer it is read into
  ASSERT_TRUE(lv.SetItemText(2, 0, longText));
  EXPECT_EQ(lv.ItemText(0, 2), longText);
  for (int column : {1, 2, 0, 1}) {
    for (int direction : {kSortAscending, kSortDescending}) {
      SCOPED_TRACE(testing::Message() << "column " << column << " direction " << direction);
      auto expected = Rows();
      std::stable_sort(expected.begin(), expected.end(), [&](const auto& a, const auto& b) {
        int c = CompareCellTexts(a[column], b[column]);
        return direction == kSortAscending ? c < 0 : c > 0;
      });
      EXPECT_TRUE(lv.SortByColumn(column, direction));
      EXPECT_EQ(Rows(), expected);
      for (const char* prop : {kSortModeProperty, kSortColumnProperty, kSortKeysProperty})
        EXPECT_EQ(GetPropA(lv.hwnd(), prop), nullptr) << prop << " left behind";
    }
  }
  const auto sorted = Rows();
  EXPECT_FALSE(lv.SortByColumn(5, kSortAscending)) << "no such column";
  EXPECT_FALSE(lv.SortByColumn(-1, kSortAscending));
  EXPECT_EQ(Rows(), sorted) << "a column that is not there sorts nothing";
}

}  // namespace
