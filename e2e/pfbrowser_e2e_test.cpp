// The "Pixel Formats" tab of the running program, driven from outside: the browser opens over
// the main window, its grid (a standard list view) is read through the memory of Velmora's
// process, a header click sorts, and closing it brings the main window back. The cells, widths
// and sorts themselves are checked in process.
#include <windows.h>

#include <commctrl.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

#include "e2e/fixture.h"
#include "gl/pixelformat_rules.h"
#include "win32/handle.h"

namespace {

// Reads a list view of another process as an automation tool does: the messages that carry
// pointers get them into a block of memory of that process.
class RemoteListView {
 public:
  RemoteListView(DWORD pid, HWND lv)
      : lv_(lv),
        header_(reinterpret_cast<HWND>(SendMessageA(lv, LVM_GETHEADER, 0, 0))),
        process_(OpenProcess(PROCESS_VM_OPERATION | PROCESS_VM_READ | PROCESS_VM_WRITE, FALSE,
                             pid)) {
    if (process_)
      base_ = static_cast<char*>(
          VirtualAllocEx(process_.get(), nullptr, 4096, MEM_COMMIT, PAGE_READWRITE));
  }
  ~RemoteListView() {
    if (base_) VirtualFreeEx(process_.get(), base_, 0, MEM_RELEASE);
  }
  bool ok() const { return base_ && header_; }
  int ItemCount() const { return static_cast<int>(SendMessageA(lv_, LVM_GETITEMCOUNT, 0, 0)); }
  int ColumnCount() const {
    return static_cast<int>(SendMessageA(header_, HDM_GETITEMCOUNT, 0, 0));
  }
  std::string ItemText(int row, int column) {
    LVITEMA item{};
    item.iSubItem = column;
    item.cchTextMax = kTextSize;
    item.pszText = base_ + kTextOffset;
    Write(&item, sizeof item);
    auto n = static_cast<size_t>(
        SendMessageA(lv_, LVM_GETITEMTEXTA, row, reinterpret_cast<LPARAM>(base_)));
    std::string s(std::min<size_t>(n, kTextSize), '\0');
    if (!s.empty()) Read(s.data(), s.size(), kTextOffset);
    return s;
  }
  std::vector<std::string> Column(int column) {
    std::vector<std::string> v;
    for (int r = 0, n = ItemCount(); r < n; ++r) v.push_back(ItemText(r, column));
    return v;
  }
  // Posts a click into the middle of the column's header.
  void ClickHeader(int column) {
    RECT r{};
    Write(&r, sizeof r);
    SendMessageA(header_, HDM_GETITEMRECT, column, reinterpret_cast<LPARAM>(base_));
    Read(&r, sizeof r);
    LPARAM at = MAKELPARAM((r.left + r.right) / 2, (r.top + r.bottom) / 2);
    PostMessageA(header_, WM_LBUTTONDOWN, MK_LBUTTON, at);
    PostMessageA(header_, WM_LBUTTONUP, 0, at);
  }

 private:
  static constexpr int kTextSize = 256;
  static constexpr size_t kTextOffset = 512;
  void Write(const void* data, size_t size) {
    WriteProcessMemory(process_.get(), base_, data, size, nullptr);
  }
  void Read(void* data, size_t size, size_t offset = 0) {
    ReadProcessMemory(process_.get(), base_ + offset, data, size, nullptr);
  }
  HWND lv_, header_;
  win32::File process_;
  char* base_ = nullptr;
};

// The rows as the program lists them (their flags are checked in the grid's own tests).
const auto& kRows = mOpenGL::kFlagRows;

// How many formats the display offers: every window of the display has this list.
int FormatCount() {
  HDC dc = GetDC(GetDesktopWindow());
  int n = DescribePixelFormat(dc, 1, 0, nullptr);
  ReleaseDC(GetDesktopWindow(), dc);
  return n;
}

using PixelFormatsTab = e2e::VelmoraTest;

TEST_F(PixelFormatsTab, OpensOverTheMainWindowSortsFromOutsideAndOpensAgain) {
  const int n = FormatCount();
  ASSERT_GT(n, 0);
  std::vector<std::string> byName;
  for (const auto& r : kRows) byName.push_back(r.text);
  std::sort(byName.begin(), byName.end());

  for (int opening = 1; opening <= 2; ++opening) {
    SCOPED_TRACE(testing::Message() << "opening " << opening);
    e2e::ClickAt(Label("Pixel Formats"), 5, 5);
    HWND browser = program->WaitWindow("FPixelFormat", nullptr, 20000);
    ASSERT_NE(browser, nullptr) << "the browser did not open";
    const std::string caption = e2e::Text(browser);
    const std::string prefix = "Pixel Format Descriptor List: Selected = ";
    ASSERT_EQ(caption.substr(0, prefix.size()), prefix);
    const int selected = std::atoi(caption.c_str() + prefix.size());
    EXPECT_TRUE(selected >= 1 && selected <= n) << caption;
    EXPECT_EQ(std::to_string(selected), caption.substr(prefix.size()));
    EXPECT_EQ(GetWindow(browser, GW_OWNER), main);
    EXPECT_FALSE(IsWindowEnabled(main)) << "the browser is modal";
    ASSERT_NE(e2e::FindControl(browser, "Button", "Show all formats"), nullptr);
    std::vector<HWND> views = e2e::FindControls(browser, "SysListView32");
    ASSERT_EQ(views.size(), 1u);

    RemoteListView grid(program->Id(), views.front());
    ASSERT_TRUE(grid.ok());
    EXPECT_EQ(grid.ColumnCount(), n + 1);
    ASSERT_EQ(grid.ItemCount(), 14);
    for (int r = 0; r < 14; ++r) EXPECT_EQ(grid.ItemText(r, 0), kRows[r].text);
    if (opening == 1) e2e::SaveWindowImage(browser, e2e::ShotPath("pixelformats_browser"));
    grid.ClickHeader(0);
    EXPECT_TRUE(e2e::WaitFor([&] { return grid.Column(0) == byName; }, 5000))
        << "a click on the Flag header sorts by name";

    if (opening == 1)
      e2e::Press(e2e::FindControl(browser, "Button", "Close"));
    else
      PostMessageA(browser, WM_CLOSE, 0, 0);
    EXPECT_TRUE(e2e::WaitFor([&] { return !IsWindow(browser); }, 10000));
    EXPECT_TRUE(e2e::WaitFor([&] { return IsWindowEnabled(main) != 0; }, 5000));
  }
  Quit();
}

}  // namespace
