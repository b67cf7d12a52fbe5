// The browser for real: its grid compared with what DescribePixelFormat says, sorted by header
// clicks, filtered, resized and closed. (Opening from the main window is driven end to end.)
#include "pfbrowser/fpixelformat.h"

#include <gtest/gtest.h>

#include <commctrl.h>

#include <algorithm>
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

// Room a header needs for its text: the text in the header's font and its margin both sides.
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
  std::vector<int> Widths() {
    std::vector<int> w;
    for (int c = 0; c <= formats; ++c) w.push_back(Grid().ColumnWidth(c));
    return w;
  }
  HWND ShowAllBox() { return GetDlgItem(browser->hwnd(), FPixelFormat::kShowAllCbx); }
  void ClickHeader(int column) {
    RECT r{};
    SendMessageA(Grid().Header(), HDM_GETITEMRECT, column, reinterpret_cast<LPARAM>(&r));
    LPARAM at = MAKELPARAM((r.left + r.right) / 2, (r.top + r.bottom) / 2);
    PostMessageA(Grid().Header(), WM_LBUTTONDOWN, MK_LBUTTON, at);
    PostMessageA(Grid().Header(), WM_LBUTTONUP, 0, at);
    testsupport::Pump(50);
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
  EXPECT_EQ(GetPixelFormat(OwnDC()), 3) << "the window got the chosen format";
  EXPECT_EQ(GetPixelFormat(opener.dc()), 2) << "the opener's picture was left alone";
  EXPECT_EQ(win32::GetText(browser->hwnd()), "Pixel Format Descriptor List: Selected = 3");
  ASSERT_EQ(Grid().ColumnCount(), formats + 1);
  ASSERT_EQ(Grid().ItemCount(), kRowCount);
  EXPECT_EQ(Grid().ColumnText(0), "Flag");
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
}

// A header click reaches the window through its hook and sorts by that column: the flag names
// by name (a second click the other way), a format column its empty cells first, rows whole.
TEST_F(Browser, AHeaderClickSortsByItsColumn) {
  auto names = [&] {
    std::vector<std::string> v;
    for (int r = 0; r < Grid().ItemCount(); ++r) v.push_back(Grid().ItemText(r, 0));
    return v;
  };
  ClickHeader(0);
  std::vector<std::string> byName = names();
  std::sort(byName.begin(), byName.end());
  EXPECT_EQ(names(), byName);
  ClickHeader(0);
  std::reverse(byName.begin(), byName.end());
  EXPECT_EQ(names(), byName) << "a second click sorts the other way";
  int c = 1;
  for (DWORD f = 0; c <= formats; ++c) {
    f = FlagsOf(OwnDC(), c) & kAllRowFlags;
    if (f != 0 && f != kAllRowFlags) break;
  }
  if (c > formats) GTEST_SKIP() << "every format has the same value in every row";
  ClickHeader(c);
  const DWORD flags = FlagsOf(OwnDC(), c);
  bool marksBegun = false;
  for (int r = 0; r < Grid().ItemCount(); ++r) {
    const std::string name = Grid().ItemText(r, 0);
    auto row = std::find_if(kRows.begin(), kRows.end(),
                            [&](const auto& k) { return name == k.text; });
    ASSERT_NE(row, kRows.end()) << name;
    const bool marked = (flags & row->flag) != 0;
    EXPECT_EQ(Grid().ItemText(r, c), marked ? "X" : "") << name << " moved with its cells";
    EXPECT_FALSE(marksBegun && !marked) << name << ": the empty cells come first";
    marksBegun |= marked;
  }
}

// Every header fits its column, the row names get at least the auto-size, and a format column is
// the auto-size to header and contents, widened where that would cut the header.
TEST_F(Browser, ColumnsAreTheAutoSizeWidenedToTheirHeaders) {
  std::vector<int> filled = Widths();
  for (int c = 0; c <= formats; ++c)
    EXPECT_GE(filled[c], HeaderNeeds(Grid().Header(), Grid().ColumnText(c))) << c;
  ListView_SetColumnWidth(lv, 0, LVSCW_AUTOSIZE);
  EXPECT_GE(filled[0], Grid().ColumnWidth(0));
  // Each auto-size lays out the whole header again: a sample, never the stretched last column.
  std::set<int> sample;
  for (int i = 1; i < formats && i <= 12; ++i) sample.insert(i);
#ifndef _WIN64
  for (int i = 1; i < formats; i += std::max(1, formats / 16)) sample.insert(i);
#else
  // NOTE: the list view of 64-bit Wine (which runs the tests on machines without 32-bit
  // support) never returns from auto-sizing a column whose header has two digits; there only
  // the one-digit headers are compared.
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
  int shown = 0;
  for (int i = 1; i <= formats; ++i) {
    DWORD flags = FlagsOf(OwnDC(), i);
    bool expected = (flags & PFD_DRAW_TO_WINDOW) && (flags & PFD_SUPPORT_OPENGL) &&
                    (flags & PFD_DOUBLEBUFFER);
    shown += expected;
    EXPECT_EQ(filtered[i] > 0, expected) << "format " << i;
  }
  EXPECT_GT(shown, 0);
  SendMessageA(ShowAllBox(), BM_CLICK, 0, 0);
  EXPECT_EQ(Widths(), atLoad) << "ticked again, every column is back as it was";
}

TEST_F(Browser, ResizingFollowsTheLayout) {
#ifdef _WIN64
  // NOTE: like its auto-size, the list view of 64-bit Wine hangs laying out a header of 480
  // columns at a new size; the 32-bit build is tested here.
  GTEST_SKIP() << "the 64-bit Wine list view hangs re-laying out this header";
#endif
  HWND close = GetDlgItem(browser->hwnd(), FPixelFormat::kCloseCbt);
  auto placeOf = [&](HWND control) {
    RECT r{};
    GetWindowRect(control, &r);
    MapWindowPoints(nullptr, browser->hwnd(), reinterpret_cast<POINT*>(&r), 2);
    return r;
  };
  RECT rc{0, 0, 700, 300};  // a client area of 700 x 300 pixels
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

TEST_F(Browser, EscapeClosesTheWindowWithinItsDeadlineAndFreesTheHookSlot) {
  const int slot = browser->HookSlot();
  const HWND wnd = browser->hwnd();
  SetFocus(lv);
  PostMessageA(lv, WM_KEYDOWN, VK_ESCAPE, 0);
  PostMessageA(lv, WM_KEYUP, VK_ESCAPE, 0);
  testsupport::ModalDeadline deadline;
  browser->ShowModal(owner.hwnd());  // returns once the window is gone
  EXPECT_FALSE(deadline.Expired()) << "Escape did not close the browser";
  EXPECT_FALSE(IsWindow(wnd));
  EXPECT_FALSE(IsWindow(lv));
  EXPECT_TRUE(IsWindowEnabled(owner.hwnd()));
  EXPECT_EQ(browser->ListView(), nullptr);
  mCBSubclass::IMessageTarget target;
  testsupport::PlainWindow other;
  EXPECT_EQ(mCBSubclass::Hook(other.hwnd(), &target), slot) << "the slot is free again";
  mCBSubclass::Unhook(other.hwnd());
}

}  // namespace
