// The "Pixel Formats" tab of the running program, driven from outside: the
// browser opens over the main window, its grid (a standard list view) is
// read through the memory of Velmora's process, two header clicks sort a
// column up and down, and Close brings the main window back.
#include <windows.h>

#include <commctrl.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "gl/pixelformat_rules.h"
#include "e2e/driver.h"
#include "win32/handle.h"
#include "win32/ui.h"

namespace {

using e2e::BuildDir;
using e2e::ShotPath;
using e2e::VelmoraExe;

// A block of memory in another process, for the list-view and header
// messages that carry pointers.
class RemoteMemory {
 public:
  RemoteMemory(DWORD pid, size_t size)
      : process_(OpenProcess(PROCESS_VM_OPERATION | PROCESS_VM_READ | PROCESS_VM_WRITE, FALSE,
                             pid)) {
    if (process_)
      base_ = static_cast<char*>(
          VirtualAllocEx(process_.get(), nullptr, size, MEM_COMMIT, PAGE_READWRITE));
  }
  ~RemoteMemory() {
    if (base_) VirtualFreeEx(process_.get(), base_, 0, MEM_RELEASE);
  }
  bool ok() const { return base_ != nullptr; }
  char* at(size_t offset) const { return base_ + offset; }
  bool Write(const void* data, size_t size, size_t offset = 0) {
    return WriteProcessMemory(process_.get(), at(offset), data, size, nullptr) != FALSE;
  }
  bool Read(void* data, size_t size, size_t offset = 0) {
    return ReadProcessMemory(process_.get(), at(offset), data, size, nullptr) != FALSE;
  }

 private:
  win32::File process_;
  char* base_ = nullptr;
};

// Reads a list view of another process as an automation tool does.
class RemoteListView {
 public:
  RemoteListView(DWORD pid, HWND lv)
      : lv_(lv),
        header_(reinterpret_cast<HWND>(SendMessageA(lv, LVM_GETHEADER, 0, 0))),
        memory_(pid, 4096) {}
  bool ok() const { return memory_.ok() && header_; }
  HWND header() const { return header_; }
  int ItemCount() const { return static_cast<int>(SendMessageA(lv_, LVM_GETITEMCOUNT, 0, 0)); }
  int ColumnCount() const {
    return static_cast<int>(SendMessageA(header_, HDM_GETITEMCOUNT, 0, 0));
  }
  int ColumnWidth(int column) const {
    return static_cast<int>(SendMessageA(lv_, LVM_GETCOLUMNWIDTH, column, 0));
  }
  std::string ItemText(int row, int column) {
    LVITEMA item{};
    item.iSubItem = column;
    item.cchTextMax = kTextSize;
    item.pszText = memory_.at(kTextOffset);
    memory_.Write(&item, sizeof item);
    auto n = static_cast<size_t>(
        SendMessageA(lv_, LVM_GETITEMTEXTA, row, reinterpret_cast<LPARAM>(memory_.at(0))));
    return ReadText(n);
  }
  std::string ColumnText(int column) {
    LVCOLUMNA col{};
    col.mask = LVCF_TEXT;
    col.cchTextMax = kTextSize;
    col.pszText = memory_.at(kTextOffset);
    memory_.Write(&col, sizeof col);
    if (!SendMessageA(lv_, LVM_GETCOLUMNA, column, reinterpret_cast<LPARAM>(memory_.at(0))))
      return "(no column)";
    char text[kTextSize + 1] = {};
    memory_.Read(text, kTextSize, kTextOffset);
    return text;
  }
  RECT HeaderItemRect(int column) {
    RECT r{};
    memory_.Write(&r, sizeof r);
    SendMessageA(header_, HDM_GETITEMRECT, column, reinterpret_cast<LPARAM>(memory_.at(0)));
    memory_.Read(&r, sizeof r);
    return r;
  }
  std::vector<std::string> Column(int column) {
    std::vector<std::string> v;
    for (int r = 0, n = ItemCount(); r < n; ++r) v.push_back(ItemText(r, column));
    return v;
  }

 private:
  static constexpr int kTextSize = 256;
  static constexpr size_t kTextOffset = 512;
  std::string ReadText(size_t n) {
    n = std::min<size_t>(n, kTextSize);
    std::string s(n, '\0');
    if (n) memory_.Read(s.data(), n, kTextOffset);
    return s;
  }
  HWND lv_;
  HWND header_;
  RemoteMemory memory_;
};

// The rows as the program lists them (their flags are checked against
// literal values in the grid's own tests).
const auto& kRows = mOpenGL::kFlagRows;

// The flags of every format the display offers, as a window of this
// process sees them: every window of the display has the same list.
std::vector<DWORD> DisplayFormats() {
  HDC dc = GetDC(GetDesktopWindow());
  PIXELFORMATDESCRIPTOR pfd{};
  int n = DescribePixelFormat(dc, 1, sizeof pfd, &pfd);
  std::vector<DWORD> flags;
  for (int i = 1; i <= n; ++i) {
    pfd = {};
    DescribePixelFormat(dc, i, sizeof pfd, &pfd);
    flags.push_back(pfd.dwFlags);
  }
  ReleaseDC(GetDesktopWindow(), dc);
  return flags;
}

class PixelFormatsTab : public ::testing::Test {
 protected:
  void SetUp() override {
    program = std::make_unique<e2e::Program>(VelmoraExe(), BuildDir());
    ASSERT_TRUE(program->Started()) << VelmoraExe();
    main = program->WaitMainWindow();
    ASSERT_NE(main, nullptr) << "the main window did not show";
  }
  void TearDown() override {
    if (main && IsWindow(main)) {
      e2e::Press(e2e::FindControl(main, "Button", "Quit"));
      EXPECT_TRUE(program->WaitExit(10000));
    }
  }
  HWND OpenBrowser() {
    e2e::ClickAt(e2e::FindControl(main, "Static", "Pixel Formats"), 5, 5);
    return program->WaitWindow("FPixelFormat", nullptr, 20000);
  }
  void ClickHeader(RemoteListView& grid, int column) {
    RECT r = grid.HeaderItemRect(column);
    LPARAM at = MAKELPARAM((r.left + r.right) / 2, (r.top + r.bottom) / 2);
    PostMessageA(grid.header(), WM_LBUTTONDOWN, MK_LBUTTON, at);
    PostMessageA(grid.header(), WM_LBUTTONUP, 0, at);
  }

  std::unique_ptr<e2e::Program> program;
  HWND main = nullptr;
};

TEST_F(PixelFormatsTab, ShowsEveryFormatSortsAColumnAndCloses) {
  std::vector<DWORD> formats = DisplayFormats();
  ASSERT_FALSE(formats.empty());
  const int n = static_cast<int>(formats.size());

  HWND browser = OpenBrowser();
  ASSERT_NE(browser, nullptr) << "the browser did not open";
  std::string caption = e2e::Text(browser);
  const std::string prefix = "Pixel Format Descriptor List: Selected = ";
  ASSERT_EQ(caption.substr(0, prefix.size()), prefix);
  int selected = std::atoi(caption.substr(prefix.size()).c_str());
  EXPECT_GE(selected, 1);
  EXPECT_LE(selected, n);
  EXPECT_EQ(std::to_string(selected), caption.substr(prefix.size()));
  EXPECT_EQ(GetWindow(browser, GW_OWNER), main);
  EXPECT_FALSE(IsWindowEnabled(main)) << "the browser is modal";
  ASSERT_NE(e2e::FindControl(browser, "Button", "Close"), nullptr);
  ASSERT_NE(e2e::FindControl(browser, "Button", "Show all formats"), nullptr);

  std::vector<HWND> views = e2e::FindControls(browser, "SysListView32");
  ASSERT_EQ(views.size(), 1u);
  RemoteListView grid(program->Id(), views.front());
  ASSERT_TRUE(grid.ok());
  ASSERT_EQ(grid.ColumnCount(), n + 1);
  ASSERT_EQ(grid.ItemCount(), 14);
  EXPECT_EQ(grid.ColumnText(0), "Flag");
  for (int r = 0; r < 14; ++r) EXPECT_EQ(grid.ItemText(r, 0), kRows[r].text);
  int mixed = 0;
  for (int i = 1; i <= n; ++i) {
    SCOPED_TRACE(testing::Message() << "format " << i);
    ASSERT_EQ(grid.ColumnText(i), std::to_string(i));
    EXPECT_GT(grid.ColumnWidth(i), 0);
    bool emptySeen = false, markBelowEmpty = false;
    for (int r = 0; r < 14; ++r) {
      std::string expected = (formats[i - 1] & kRows[r].flag) ? "X" : "";
      ASSERT_EQ(grid.ItemText(r, i), expected) << kRows[r].text;
      emptySeen |= expected.empty();
      markBelowEmpty |= emptySeen && !expected.empty();
    }
    // A column whose sort moves rows either way.
    if (mixed == 0 && markBelowEmpty) mixed = i;
  }
  e2e::SaveWindowImage(browser, ShotPath("pixelformats_browser"));

  ASSERT_NE(mixed, 0) << "no format column with a marked cell below an empty one";
  std::multiset<std::vector<std::string>> rowsBefore;
  for (int r = 0; r < 14; ++r) rowsBefore.insert({grid.ItemText(r, 0), grid.ItemText(r, mixed)});
  struct Step {
    const char* what;
    const char* first;   // the text of the rows that come first
    const char* second;
  };
  for (Step s : {Step{"first click: ascending", "", "X"}, Step{"second click: descending", "X", ""}}) {
    SCOPED_TRACE(s.what);
    ClickHeader(grid, mixed);
    std::vector<std::string> cells;
    bool sorted = e2e::WaitFor([&] {
      cells = grid.Column(mixed);
      auto firstEnd = std::find(cells.begin(), cells.end(), s.second);
      return std::find(firstEnd, cells.end(), s.first) == cells.end() &&
             firstEnd != cells.begin();
    }, 5000);
    EXPECT_TRUE(sorted) << "column " << mixed;
    std::multiset<std::vector<std::string>> rowsAfter;
    for (int r = 0; r < 14; ++r) rowsAfter.insert({grid.ItemText(r, 0), grid.ItemText(r, mixed)});
    EXPECT_EQ(rowsAfter, rowsBefore) << "rows moved whole";
  }
  e2e::SaveWindowImage(browser, ShotPath("pixelformats_sorted"));

  e2e::Press(e2e::FindControl(browser, "Button", "Close"));
  EXPECT_TRUE(e2e::WaitFor([&] { return !IsWindow(browser); }, 10000));
  EXPECT_TRUE(e2e::WaitFor([&] { return IsWindowEnabled(main) != 0; }, 5000));
}

TEST_F(PixelFormatsTab, TheFlagColumnSortsByNameAndTheBrowserOpensAgain) {
  for (int round = 0; round < 2; ++round) {
    SCOPED_TRACE(testing::Message() << "opening " << round + 1);
    HWND browser = OpenBrowser();
    ASSERT_NE(browser, nullptr);
    std::vector<HWND> views = e2e::FindControls(browser, "SysListView32");
    ASSERT_EQ(views.size(), 1u);
    RemoteListView grid(program->Id(), views.front());
    ASSERT_TRUE(grid.ok());
    std::vector<std::string> byName;
    for (const auto& r : kRows) byName.push_back(r.text);
    std::sort(byName.begin(), byName.end());
    ClickHeader(grid, 0);
    EXPECT_TRUE(e2e::WaitFor([&] { return grid.Column(0) == byName; }, 5000));
    PostMessageA(browser, WM_CLOSE, 0, 0);
    EXPECT_TRUE(e2e::WaitFor([&] { return !IsWindow(browser); }, 10000));
    EXPECT_TRUE(e2e::WaitFor([&] { return IsWindowEnabled(main) != 0; }, 5000));
  }
}

}  // namespace
