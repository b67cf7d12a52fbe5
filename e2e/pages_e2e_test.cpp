// The Library and Save Log pages driven from outside as a user or an automation tool drives
// them: clicks into the index box, typed indices, another drive, and a settings file whose
// pixel format cannot be set.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <functional>

#include "e2e/fixture.h"

namespace {

using e2e::Answer;
using e2e::MessageBoxText;
using e2e::Press;
using e2e::Text;
using e2e::WaitFor;

// Whether the window has the keyboard focus in its own thread.
bool HasFocus(HWND wnd) {
  GUITHREADINFO info{};
  info.cbSize = sizeof info;
  return GetGUIThreadInfo(GetWindowThreadProcessId(wnd, nullptr), &info) && info.hwndFocus == wnd;
}

void WriteBytes(const std::string& path, const std::string& bytes) {
  if (FILE* f = fopen(path.c_str(), "wb")) {
    fwrite(bytes.data(), 1, bytes.size(), f);
    fclose(f);
  }
}

std::string LittleEndian(std::initializer_list<int32_t> values) {
  std::string bytes;
  for (int32_t v : values)
    for (int i = 0; i < 4; ++i) bytes += static_cast<char>(static_cast<uint32_t>(v) >> (8 * i));
  return bytes;
}

// The host settings file in the Windows folder, holding `bytes` (absent when there are none)
// while the object lives.
class HostSettingsFile {
 public:
  explicit HostSettingsFile(const std::string& bytes = {}) {
    char dir[MAX_PATH] = {};
    GetWindowsDirectoryA(dir, MAX_PATH);
    path_ = std::string(dir) + "\\VORAhogl.ini";
    DeleteFileA(path_.c_str());
    if (!bytes.empty()) WriteBytes(path_, bytes);
  }
  ~HostSettingsFile() { DeleteFileA(path_.c_str()); }
  std::string Bytes() const { return e2e::ReadFileBytes(path_); }

 private:
  std::string path_;
};

// A drive letter of the Wine prefix pointed, while the object lives, at a folder of ours that
// holds note.txt and sub\inner-notes.txt.
class MappedDrive {
 public:
  MappedDrive() {
    char prefix[MAX_PATH] = {};
    if (!GetEnvironmentVariableA("WINEPREFIX", prefix, MAX_PATH)) return;
    DWORD used = GetLogicalDrives();
    for (char c = 'y'; c > 'm' && !letter_; --c)
      if (!(used & (1u << (c - 'a')))) letter_ = c;
    if (!letter_) return;
    const std::string unixDir = "/tmp/velmora-drive-" + std::to_string(GetCurrentProcessId());
    hostDir_ = "Z:" + unixDir;
    std::replace(hostDir_.begin(), hostDir_.end(), '/', '\\');
    CreateDirectoryA(hostDir_.c_str(), nullptr);
    CreateDirectoryA((hostDir_ + "\\sub").c_str(), nullptr);
    WriteBytes(hostDir_ + "\\note.txt", "");
    WriteBytes(hostDir_ + "\\sub\\inner-notes.txt", "");
    link_ = std::string(prefix) + "/dosdevices/" + letter_ + ":";
    // A host program cannot be waited for; wait for the drive to show instead.
    if (!e2e::RunCommand("/bin/ln -sfn " + unixDir + " " + link_) ||
        !WaitFor([&] { return GetFileAttributesA(Root("sub").c_str()) != INVALID_FILE_ATTRIBUTES; },
                 5000))
      letter_ = 0;
  }
  ~MappedDrive() {
    if (hostDir_.empty()) return;
    if (!link_.empty()) e2e::RunCommand("/bin/rm -f " + link_);
    for (const char* file : {"\\sub\\inner-notes.txt", "\\note.txt", "\\LogFile.txt"})
      DeleteFileA((hostDir_ + file).c_str());
    RemoveDirectoryA((hostDir_ + "\\sub").c_str());
    RemoveDirectoryA(hostDir_.c_str());
  }
  char Letter() const { return letter_; }
  std::string Root(const std::string& name) const { return std::string(1, letter_) + ":\\" + name; }

 private:
  char letter_ = 0;
  std::string hostDir_, link_;
};

// Entries of a list by the lengths of their texts (texts do not cross process borders
// reliably).
std::vector<LRESULT> Lengths(HWND list) {
  std::vector<LRESULT> lengths;
  LRESULT n = SendMessageA(list, LB_GETCOUNT, 0, 0);
  for (LRESULT i = 0; i < n; ++i) lengths.push_back(SendMessageA(list, LB_GETTEXTLEN, i, 0));
  return lengths;
}

class PagesTest : public e2e::VelmoraTest {
 protected:
  void SetUp() override {}  // each test prepares its files first, then starts the program
  HWND IndexBox() {
    for (HWND edit : e2e::FindControls(main, "Edit"))
      if (GetDlgCtrlID(GetParent(edit)) == GetDlgCtrlID(GetParent(Button("Pixel Format :"))) &&
          !(GetWindowLongA(edit, GWL_STYLE) & ES_MULTILINE))
        return edit;
    return nullptr;
  }
  // Types into the index box and leaves it with the Tab key.
  void TypeIndexAndLeave(const std::string& text) {
    HWND box = IndexBox();
    e2e::ClickAt(box, 3, 3);
    ASSERT_TRUE(WaitFor([&] { return HasFocus(box); }, 5000)) << "the click gave it the focus";
    SendMessageA(box, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str()));
    PostMessageA(box, WM_KEYDOWN, VK_TAB, 0);
    PostMessageA(box, WM_KEYUP, VK_TAB, 0);
    ASSERT_TRUE(WaitFor([&] { return !HasFocus(box); }, 5000)) << "Tab left the box";
  }
  // Answers every "SetDCPixelFormat" box until `until` gives a window, kept in `last`; the main
  // window must be disabled while each box is up. Returns how many boxes there were.
  int AnswerFormatBoxes(const std::function<HWND()>& until) {
    int count = 0;
    while (!(last = until()) && count <= 8) {
      HWND box = program->WaitMessageBox("SetDCPixelFormat", 200);
      if (!box) continue;
      ++count;
      EXPECT_FALSE(IsWindowEnabled(main)) << "nothing else takes input while the box is up";
      EXPECT_NE(MessageBoxText(box).find("SetPixelFormat(hdc, -7, ModulePFD) = False"),
                std::string::npos)
          << MessageBoxText(box);
      Answer(box, IDOK);
      WaitFor([&] { return !IsWindow(box); }, 5000);
    }
    return count;
  }
  HWND last = nullptr;
};

using LibraryPage = PagesTest;
using SaveLogPage = PagesTest;
using BrokenFormat = PagesTest;

TEST_F(LibraryPage, AClickIntoTheIndexBoxSelectsTheExplicitOption) {
  HostSettingsFile none;
  for (bool pointer : {true, false}) {
    SCOPED_TRACE(pointer ? "a pointer click on the display" : "a posted mouse down and up");
    Start();
    ASSERT_TRUE(Checked("Best software format"));
    HWND box = IndexBox();
    ASSERT_NE(box, nullptr);
    RECT r{};
    GetWindowRect(box, &r);
    if (!pointer)
      e2e::ClickAt(box, 4, 4);
    else if (!e2e::RunCommand("/usr/bin/xdotool mousemove --sync " +
                              std::to_string((r.left + r.right) / 2) + " " +
                              std::to_string((r.top + r.bottom) / 2) + " click 1"))
      GTEST_SKIP() << "xdotool cannot be started here";
    ASSERT_TRUE(WaitFor([&] { return Checked("Pixel Format :"); }, 10000));
    EXPECT_FALSE(Checked("Best software format"));
    EXPECT_TRUE(WaitFor([&] { return Button("OpenGL Settings [New]") != nullptr; }, 5000));

    TypeIndexAndLeave("2");
    EXPECT_NE(CheckSpecifications().find("\r\nPixelFormat #2\r\n"), std::string::npos)
        << "the report uses the typed index";
    Quit();
  }
}

TEST_F(LibraryPage, LeavingTheIndexBoxTakesTheIndexItShows) {
  HostSettingsFile file;
  Start();
  Press(Button("Pixel Format :"));
  TypeIndexAndLeave("5");
  Press(Button("Best software format"));
  ASSERT_TRUE(WaitFor([&] { return Text(IndexBox()) == "0"; }, 5000));
  Press(Button("Pixel Format :"));
  TypeIndexAndLeave("0");  // as shown: tabbing through the box
  Press(Button("Set VORA to these settings"));
  ASSERT_TRUE(WaitFor([&] { return file.Bytes().size() == 12; }, 5000));
  EXPECT_EQ(file.Bytes(), LittleEndian({-1, 0, 0})) << "the index the box showed is written";

  // A second click into the box while typing keeps the text typed.
  HWND index = IndexBox();
  e2e::ClickAt(index, 3, 3);
  ASSERT_TRUE(WaitFor([&] { return HasFocus(index); }, 5000));
  SendMessageA(index, WM_SETTEXT, 0, reinterpret_cast<LPARAM>("7"));
  e2e::ClickAt(index, 5, 3);
  Sleep(200);
  EXPECT_EQ(Text(index), "7");
  Quit();
}

TEST_F(SaveLogPage, ChoosingAnotherDrivePointsTheListsAndTheLogThere) {
  MappedDrive drive;
  if (!drive.Letter()) GTEST_SKIP() << "no drive letter could be mapped in this prefix";
  // Drives are listed in order of their letters.
  DWORD used = GetLogicalDrives();
  int target = 0;
  for (char c = 'a'; c < drive.Letter(); ++c) target += (used >> (c - 'a')) & 1;
  const std::string log = drive.Root("LogFile.txt");

  Start();
  e2e::ClickAt(Label("Save Log"), 5, 5);
  AnswerQuestion(IDNO);
  auto combos = e2e::FindControls(main, "ComboBox");
  ASSERT_EQ(combos.size(), 1u);
  HWND drives = combos[0], folders = nullptr, files = nullptr;
  for (HWND list : e2e::FindControls(GetParent(drives), "ListBox"))
    (GetWindowLongA(list, GWL_STYLE) & LBS_SORT ? files : folders) = list;
  ASSERT_TRUE(folders && files);
  ASSERT_TRUE(ShownOnScreen(drives));
  // The arrow keys in the closed list, as a user picks a drive.
  int at = static_cast<int>(SendMessageA(drives, CB_GETCURSEL, 0, 0));
  for (; at != target; at += at < target ? 1 : -1) {
    WPARAM key = at < target ? VK_DOWN : VK_UP;
    PostMessageA(drives, WM_KEYDOWN, key, 0);
    PostMessageA(drives, WM_KEYUP, key, 0);
  }
  ASSERT_TRUE(WaitFor([&] { return SendMessageA(drives, CB_GETCURSEL, 0, 0) == target; }, 5000));
  EXPECT_TRUE(WaitFor([&] { return Lengths(folders) == std::vector<LRESULT>{5}; }, 5000))
      << "the folder list shows [sub]";
  EXPECT_TRUE(WaitFor([&] { return Lengths(files) == std::vector<LRESULT>{8}; }, 5000))
      << "the file list shows note.txt";

  Press(Button("Save Log"));
  EXPECT_TRUE(WaitFor([&] { return GetFileAttributesA(log.c_str()) != INVALID_FILE_ATTRIBUTES; },
                      10000))
      << "the log is saved in the drive's root";
  EXPECT_TRUE(WaitFor([&] { return Lengths(files).size() == 2; }, 5000)) << "and listed there";

  // An automation tool's double-click on [sub]: the selection and the list's notification.
  SendMessageA(folders, LB_SETCURSEL, 0, 0);
  SendMessageA(GetParent(folders), WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(folders), LBN_DBLCLK),
               reinterpret_cast<LPARAM>(folders));
  EXPECT_TRUE(WaitFor([&] { return Lengths(files) == std::vector<LRESULT>{15}; }, 5000))
      << "a double-click on [sub] shows inner-notes.txt";
  Quit();
}

// Software mode with the index -7: no software format is double-buffered under every driver,
// so -7 is handed on and SetPixelFormat refuses it.
TEST_F(BrokenFormat, TheFailureIsShownOncePerViewAndTheRunEnds) {
  HostSettingsFile file(LittleEndian({0, -7, 0}));
  Start();
  HWND report = ReportBox();
  Press(Button("Check Specifications"));
  EXPECT_EQ(AnswerFormatBoxes([&]() -> HWND {
    return Text(report).rfind("Computer: ", 0) == 0 ? report : nullptr;
  }), 1) << "the report's picture shows the failure once";
  EXPECT_TRUE(WaitFor([&] { return IsWindowEnabled(main) != 0; }, 5000));
  EXPECT_NE(Text(report).find("Cannot Create GL Context  0 = wglCreateContext("),
            std::string::npos)
      << Text(report);

  Press(Button("Next >>"));
  ASSERT_TRUE(ShownOnScreen(Button("Point Size")));
  Press(Button("Point Size"));
  ASSERT_NE(AnswerQuestion(IDOK, "Point Size"), "(no question)") << "the notice";
  EXPECT_EQ(AnswerFormatBoxes([&] { return program->WaitMessageBox("Point Size", 0); }), 2)
      << "once per view, not once per frame";
  HWND question = last;
  ASSERT_NE(question, nullptr);
  EXPECT_EQ(MessageBoxText(question),
            "Did you see a point (of circular/quadrangular shape), zooming in?");
  Answer(question, IDNO);
  // The runner then runs the report again, whose picture fails once more.
  EXPECT_EQ(AnswerFormatBoxes([&]() -> HWND {
    return Text(report).find("Point Size:         \tError -1 (#-7)") != std::string::npos
               ? report
               : nullptr;
  }), 1);
  EXPECT_NE(e2e::FindControl(main, "Static", "Error -1 (#-7)"), nullptr)
      << "the label follows the answer";

  // The recorded failures end the log, after the report.
  e2e::ClickAt(Label("Save Log"), 5, 5);
  AnswerQuestion(IDNO);
  const std::string bytes = SaveLog("LogFile.txt");
  const size_t third = bytes.find("\r\n" + std::string(60, '=') + "\r\n\r\nVB DLL Error: ");
  ASSERT_NE(third, std::string::npos) << bytes;
  EXPECT_NE(bytes.find("SetPixelFormat(hdc, -7, ModulePFD) = False", third), std::string::npos);
  EXPECT_NE(bytes.find("hGLRC = wglCreateContext(ExtenderHdc)", third), std::string::npos);
  EXPECT_LT(bytes.find(Text(report)), third) << "the report comes first";
  Quit();
}

}  // namespace
