// The browser for real: opened on a real window under the system's OpenGL,
// its grid compared with what DescribePixelFormat says, filtered, sorted
// by header clicks, resized and closed. (The flag column's sort by name,
// and Close from outside, are driven end to end.)
#include "pfbrowser/fpixelformat.h"

#include <gtest/gtest.h>

#include <commctrl.h>

#include <algorithm>
#include <functional>
#include <set>
#include <string>
#include <vector>

#include "gl/mopengl.h"
#include "gl/pixelformat_rules.h"
#include "pfbrowser/pixelformat_grid.h"
#include "testsupport/testsupport.h"
#include "win32/ui.h"

namespace {

using namespace pfbrowser;

// The rows as the program lists them (their texts and flags are checked
// against literal values in the grid's own tests).
const auto& kRows = mOpenGL::kFlagRows;
constexpr int kRowCount = 14;

// The main window's rendering choice: software mode, explicit format 3.
class ChosenFormat : public mOpenGL::ModeSource {
 public:
  bool CurrentSH() const override { return false; }
  int CurrentOGLPixelFormat() const override { return index; }
  void SetCurrentOGLPixelFormat(int i) override { index = i; }
  int index = 3;
};

DWORD FlagsOf(HDC dc, int format) {
  PIXELFORMATDESCRIPTOR pfd{};
  DescribePixelFormat(dc, format, sizeof pfd, &pfd);
  return pfd.dwFlags;
}

// Room a header needs for its text: the text in the header's font and the
// header's margin on both sides.
int HeaderNeeds(HWND header, const std::string& text) {
  int margin = static_cast<int>(SendMessageA(header, HDM_GETBITMAPMARGIN, 0, 0));
  if (margin <= 0) margin = 3 * GetSystemMetrics(SM_CXEDGE);
  HDC dc = GetDC(header);
  HGDIOBJ old = SelectObject(dc, reinterpret_cast<HFONT>(SendMessageA(header, WM_GETFONT, 0, 0)));
  SIZE size{};
  GetTextExtentPoint32A(dc, text.c_str(), static_cast<int>(text.size()), &size);
  SelectObject(dc, old);
  ReleaseDC(header, dc);
  return static_cast<int>(size.cx) + 2 * margin;
}

class Browser : public ::testing::Test {
 protected:
  void SetUp() override {
    mOpenGL::SetModeSource(&mode);
    PIXELFORMATDESCRIPTOR pfd{};
    formats = DescribePixelFormat(opener.dc(), 1, sizeof pfd, &pfd);
    if (formats < 3) GTEST_SKIP() << "this system offers " << formats << " pixel formats";
    // The opener's picture has a format of its own, other than the choice.
    DescribePixelFormat(opener.dc(), 2, sizeof pfd, &pfd);
    ASSERT_TRUE(SetPixelFormat(opener.dc(), 2, &pfd));
    browser = std::make_unique<FPixelFormat>();
    browser->SetPixelFormatDC(opener.dc());
    ASSERT_TRUE(browser->Load(owner.hwnd()));
    ShowWindow(browser->hwnd(), SW_SHOW);
    testsupport::Pump();
    lv = browser->ListView()->hwnd();
  }
  void TearDown() override {
    browser.reset();
    mOpenGL::SetModeSource(nullptr);
    EXPECT_TRUE(boxes.calls().empty()) << boxes.calls().front().text;
  }
  HDC OwnDC() { return GetDC(browser->hwnd()); }  // a class of its own DC
  const CListViewCtl& Grid() { return *browser->ListView(); }
  std::vector<std::string> Column(int c) {
    std::vector<std::string> v;
    for (int r = 0; r < Grid().ItemCount(); ++r) v.push_back(Grid().ItemText(r, c));
    return v;
  }
  std::vector<int> Widths() {
    std::vector<int> w;
    for (int c = 0; c <= formats; ++c) w.push_back(Grid().ColumnWidth(c));
    return w;
  }
  HWND ShowAllBox() { return GetDlgItem(browser->hwnd(), FPixelFormat::kShowAllCbx); }
  // A mouse click on the column's header, as the user makes it.
  void ClickHeader(int column) {
    HWND header = Grid().Header();
    RECT r{};
    ASSERT_TRUE(SendMessageA(header, HDM_GETITEMRECT, column, reinterpret_cast<LPARAM>(&r)));
    LPARAM at = MAKELPARAM((r.left + r.right) / 2, (r.top + r.bottom) / 2);
    PostMessageA(header, WM_LBUTTONDOWN, MK_LBUTTON, at);
    PostMessageA(header, WM_LBUTTONUP, 0, at);
    testsupport::Pump(50);
  }
  // Closes the shown browser by `close` within its deadline.
  void CloseWithin(const char* how, const std::function<void()>& close) {
    HWND wnd = browser->hwnd();
    close();
    testsupport::ModalDeadline deadline;
    browser->ShowModal(owner.hwnd());  // returns once the window is gone
    EXPECT_FALSE(deadline.Expired()) << how << " did not close the browser";
    EXPECT_FALSE(IsWindow(wnd));
    EXPECT_FALSE(IsWindow(lv));
    EXPECT_TRUE(IsWindowEnabled(owner.hwnd()));
  }

  testsupport::MsgBoxRecorder boxes;
  testsupport::PlainWindow owner{200, 100};
  testsupport::PlainWindow opener{60, 60, false};
  ChosenFormat mode;
  int formats = 0;
  std::unique_ptr<FPixelFormat> browser;
  HWND lv = nullptr;
};

TEST_F(Browser, ListsEveryFormatOfItsOwnWindowAsDescribePixelFormatSays) {
  EXPECT_EQ(browser->PixelFormatDC(), OwnDC());
  EXPECT_EQ(GetPixelFormat(OwnDC()), 3) << "the window got the chosen format";
  EXPECT_EQ(GetPixelFormat(opener.dc()), 2) << "the opener's picture was left alone";
  EXPECT_EQ(browser->SelectedFormat(), 3);
  EXPECT_EQ(win32::GetText(browser->hwnd()), "Pixel Format Descriptor List: Selected = 3");
  EXPECT_EQ(browser->FormatCount(), formats);
  ASSERT_EQ(Grid().ColumnCount(), formats + 1);
  ASSERT_EQ(Grid().ItemCount(), kRowCount);
  EXPECT_EQ(Grid().ColumnText(0), "Flag");
  for (int r = 0; r < kRowCount; ++r) EXPECT_EQ(Grid().ItemText(r, 0), kRows[r].text);
  int marks = 0;
  for (int i = 1; i <= formats; ++i) {
    SCOPED_TRACE(testing::Message() << "format " << i);
    ASSERT_EQ(Grid().ColumnText(i), std::to_string(i));
    DWORD flags = FlagsOf(OwnDC(), i);
    for (int r = 0; r < kRowCount; ++r) {
      std::string expected = (flags & kRows[r].flag) ? "X" : "";
      ASSERT_EQ(Grid().ItemText(r, i), expected) << kRows[r].text;
      marks += !expected.empty();
    }
  }
  EXPECT_GT(marks, 0);

  // The list view as designed.
  char cls[64] = {};
  GetClassNameA(lv, cls, sizeof cls);
  EXPECT_STREQ(cls, "SysListView32");
  EXPECT_EQ(GetParent(lv), browser->hwnd());
  EXPECT_EQ(static_cast<DWORD>(GetWindowLongA(lv, GWL_STYLE)) & ~DWORD(WS_HSCROLL | WS_VSCROLL),
            0x5000000Du);
  EXPECT_TRUE(GetWindowLongA(lv, GWL_EXSTYLE) & WS_EX_CLIENTEDGE);
  EXPECT_EQ(Grid().ExtendedStyle() & 0x4860u, 0x4860u);
  LOGFONTA lf{};
  GetObjectA(reinterpret_cast<HFONT>(SendMessageA(lv, WM_GETFONT, 0, 0)), sizeof lf, &lf);
  EXPECT_STREQ(lf.lfFaceName, "Tahoma");
  EXPECT_NE(browser->HookSlot(), 0);
  EXPECT_EQ(mCBSubclass::SlotOf(browser->hwnd()), browser->HookSlot());
  EXPECT_EQ(SendMessageA(ShowAllBox(), BM_GETCHECK, 0, 0), BST_CHECKED);
}

TEST_F(Browser, EveryHeaderAndFlagNameFitsItsColumn) {
  for (int c = 0; c <= formats; ++c)
    EXPECT_GE(Grid().ColumnWidth(c), HeaderNeeds(Grid().Header(), Grid().ColumnText(c))) << c;
  // The row names: at least what the list view's own auto-size gives them,
  // and never below the width worked out from the widest name.
  int flag = Grid().ColumnWidth(0);
  auto font = reinterpret_cast<HFONT>(SendMessageA(lv, WM_GETFONT, 0, 0));
  EXPECT_GE(flag, FlagColumnWidth(TextWidthTwips(font, "NEED_SYSTEM_PALETTE"),
                                  win32::TwipsPerPixelX()));
  ListView_SetColumnWidth(lv, 0, LVSCW_AUTOSIZE);
  EXPECT_GE(flag, Grid().ColumnWidth(0));
  for (const auto& r : kRows) EXPECT_GT(flag, Grid().StringWidth(r.text)) << r.text;
}

// Each format column is as wide as the list view's own auto-size to header
// and contents makes it, or just wide enough for its header where that
// auto-size would cut the header. (The last column is left out: there the
// auto-size stretches it to the view's edge instead.)
TEST_F(Browser, FormatColumnsAreTheAutoSizeWidenedToTheirHeaders) {
  std::vector<int> filled = Widths();
  // Each auto-size lays out the whole header again, so a sample of the
  // columns: every one- and two-digit header's first few, and a spread.
  std::set<int> sample;
  for (int i = 1; i < formats && i <= 12; ++i) sample.insert(i);
#ifndef _WIN64
  for (int i = 1; i < formats; i += std::max(1, formats / 16)) sample.insert(i);
#else
  // NOTE: the list view of 64-bit Wine (which runs the tests on machines
  // without 32-bit support) never returns from auto-sizing a column whose
  // header has two digits; there only the one-digit headers are compared.
  sample.erase(sample.lower_bound(10), sample.end());
#endif
  for (int i : sample) {
    ListView_SetColumnWidth(lv, i, LVSCW_AUTOSIZE_USEHEADER);
    int needs = HeaderNeeds(Grid().Header(), std::to_string(i));
    EXPECT_EQ(filled[static_cast<size_t>(i)], std::max(Grid().ColumnWidth(i), needs)) << i;
  }
}

TEST_F(Browser, ShowAllHidesTheFormatsThatCannotDrawDoubleBufferedOpenGLToAWindow) {
  std::vector<int> atLoad = Widths();
  SendMessageA(ShowAllBox(), BM_CLICK, 0, 0);
  ASSERT_EQ(SendMessageA(ShowAllBox(), BM_GETCHECK, 0, 0), BST_UNCHECKED);
  std::vector<int> filtered = Widths();
  EXPECT_EQ(filtered[0], atLoad[0]) << "the Flag column stays";
  int shown = 0;
  for (int i = 1; i <= formats; ++i) {
    DWORD flags = FlagsOf(OwnDC(), i);
    bool expected = (flags & PFD_DRAW_TO_WINDOW) && (flags & PFD_SUPPORT_OPENGL) &&
                    (flags & PFD_DOUBLEBUFFER);
    shown += expected;
    EXPECT_EQ(filtered[i] > 0, expected) << "format " << i;
  }
  EXPECT_GT(shown, 0);
  EXPECT_EQ(Grid().ItemCount(), kRowCount) << "rows are never hidden";
  SendMessageA(ShowAllBox(), BM_CLICK, 0, 0);
  EXPECT_EQ(Widths(), atLoad) << "ticked again, every column is back as it was";
}

// Ascending first: the unmarked rows, then the marked, each in table order;
// every row moves whole, and the selected row stays in view.
TEST_F(Browser, AFormatColumnSortsAscendingThenDescending) {
  auto mixed = [&](int i) {
    DWORD flags = FlagsOf(OwnDC(), i) & kAllRowFlags;
    return flags != 0 && flags != kAllRowFlags;
  };
  int c = 1;
  while (c <= formats && !mixed(c)) ++c;
  if (c > formats) GTEST_SKIP() << "every format has the same value in every row";
  auto rows = [&] {
    std::multiset<std::vector<std::string>> all;
    for (int r = 0; r < Grid().ItemCount(); ++r) {
      std::vector<std::string> cells;
      for (int col = 0; col <= formats; ++col) cells.push_back(Grid().ItemText(r, col));
      all.insert(cells);
    }
    return all;
  };
  const auto rowsBefore = rows();
  std::vector<std::string> marked, unmarked;
  const DWORD flags = FlagsOf(OwnDC(), c);
  for (const auto& r : kRows) ((flags & r.flag) ? marked : unmarked).push_back(r.text);
  ListView_SetItemState(lv, 13, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
  for (int direction : {kSortAscending, kSortDescending}) {
    SCOPED_TRACE(testing::Message() << "direction " << direction);
    ClickHeader(c);
    EXPECT_EQ(browser->SortDirection(c), direction);
    std::vector<std::string> expected = direction == kSortAscending ? unmarked : marked;
    const auto& second = direction == kSortAscending ? marked : unmarked;
    const size_t split = expected.size();
    expected.insert(expected.end(), second.begin(), second.end());
    EXPECT_EQ(Column(0), expected);
    std::vector<std::string> cells = Column(c);
    for (size_t r = 0; r < cells.size(); ++r)
      EXPECT_EQ(cells[r], (r < split) == (direction == kSortAscending) ? "" : "X") << r;
    EXPECT_EQ(rows(), rowsBefore) << "every row moved with all its cells";
    int selected = Grid().SelectedItem();
    ASSERT_GE(selected, 0);
    EXPECT_EQ(Grid().ItemText(selected, 0), "SUPPORT_DIRECTDRAW");
    RECT item{LVIR_BOUNDS, 0, 0, 0}, client{};
    SendMessageA(lv, LVM_GETITEMRECT, selected, reinterpret_cast<LPARAM>(&item));
    GetClientRect(lv, &client);
    EXPECT_TRUE(item.top < client.bottom && item.bottom >= 0) << "the selected row is in view";
  }
}

TEST_F(Browser, ResizingFollowsTheLayout) {
#ifdef _WIN64
  // NOTE: like its auto-size, the list view of 64-bit Wine hangs laying out
  // a header of 480 columns at a new size; the 32-bit build is tested here.
  GTEST_SKIP() << "the 64-bit Wine list view hangs re-laying out this header";
#endif
  HWND close = GetDlgItem(browser->hwnd(), FPixelFormat::kCloseCbt);
  auto placeOf = [&](HWND control) {
    RECT r{};
    GetWindowRect(control, &r);
    MapWindowPoints(nullptr, browser->hwnd(), reinterpret_cast<POINT*>(&r), 2);
    return r;
  };
  for (auto [width, height] : {std::pair{800, 500}, {700, 300}, {900, 640}}) {
    SCOPED_TRACE(testing::Message() << width << " x " << height << " pixels");
    RECT rc{0, 0, width, height};
    AdjustWindowRectEx(&rc, static_cast<DWORD>(GetWindowLongA(browser->hwnd(), GWL_STYLE)), FALSE,
                       0);
    SetWindowPos(browser->hwnd(), nullptr, 0, 0, rc.right - rc.left, rc.bottom - rc.top,
                 SWP_NOMOVE | SWP_NOZORDER);
    testsupport::Pump();
    int w = 0, h = 0;
    win32::ClientSizeTwips(browser->hwnd(), w, h);
    BrowserLayout l = LayoutBrowser(w, h, win32::WindowRectTwips(ShowAllBox()),
                                    win32::WindowRectTwips(close), win32::TwipsPerPixelX(),
                                    win32::TwipsPerPixelY());
    RECT got = placeOf(lv);
    EXPECT_TRUE(EqualRect(&got, &l.listView))
        << got.left << "," << got.top << "," << got.right << "," << got.bottom;
    got = placeOf(close);
    EXPECT_EQ(got.left, win32::TwipsToPixelsX(l.close.left));
    EXPECT_EQ(got.top, win32::TwipsToPixelsY(l.close.top));
    RECT client{};
    GetClientRect(browser->hwnd(), &client);
    EXPECT_TRUE(got.right <= client.right && got.bottom <= client.bottom) << "Close stays inside";
  }
}

TEST_F(Browser, CloseUnloadsTheWindowAndFreesTheHookSlot) {
  int slot = browser->HookSlot();
  ASSERT_NE(slot, 0);
  CloseWithin("Close", [&] {
    PostMessageA(GetDlgItem(browser->hwnd(), FPixelFormat::kCloseCbt), BM_CLICK, 0, 0);
  });
  EXPECT_EQ(browser->ListView(), nullptr);
  mCBSubclass::IMessageTarget target;
  testsupport::PlainWindow other;
  EXPECT_EQ(mCBSubclass::Hook(other.hwnd(), &target), slot);
  mCBSubclass::Unhook(other.hwnd());
}

TEST_F(Browser, EscapeCloses) {
  CloseWithin("Escape", [&] {
    SetFocus(lv);
    PostMessageA(lv, WM_KEYDOWN, VK_ESCAPE, 0);
    PostMessageA(lv, WM_KEYUP, VK_ESCAPE, 0);
  });
}

// Without a format chosen, the window gets the best one of the mode and
// the caption names what it got.
TEST(BrowserOnItsOwn, TheCaptionNamesTheFormatTheWindowGot) {
  testsupport::MsgBoxRecorder boxes;
  mOpenGL::SetModeSource(nullptr);
  FPixelFormat browser;
  ASSERT_TRUE(browser.Load(nullptr));
  int got = GetPixelFormat(GetDC(browser.hwnd()));
  EXPECT_GT(got, 0);
  EXPECT_EQ(win32::GetText(browser.hwnd()), BrowserCaption(got));
}

}  // namespace
