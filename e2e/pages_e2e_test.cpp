// The Library and Save Log pages driven from outside as a user or an
// automation tool drives them: clicks into the index box, typed indices,
// another drive, and a settings file whose pixel format cannot be set.
#include <gtest/gtest.h>

#include <cstdio>
#include <functional>

#include "e2e/fixture.h"

namespace {

using e2e::Answer;
using e2e::MessageBoxText;
using e2e::Press;
using e2e::Text;
using e2e::WaitFor;

// Starts a program of the host system (xdotool, ln). The process cannot be
// waited for, so callers wait for what it does.
bool RunHostCommand(const std::string& commandLine) {
  STARTUPINFOA si{};
  si.cb = sizeof si;
  PROCESS_INFORMATION pi{};
  std::string cmd = commandLine;
  if (!CreateProcessA(nullptr, cmd.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &si, &pi))
    return false;
  CloseHandle(pi.hThread);
  CloseHandle(pi.hProcess);
  return true;
}

// Whether the window has the keyboard focus in its own thread.
bool HasFocus(HWND wnd) {
  GUITHREADINFO info{};
  info.cbSize = sizeof info;
  return GetGUIThreadInfo(GetWindowThreadProcessId(wnd, nullptr), &info) && info.hwndFocus == wnd;
}

using e2e::ReadFileBytes;

// The host settings file in the Windows folder, holding `bytes` (or absent)
// while the object lives and removed afterwards.
class HostSettingsFile {
 public:
  explicit HostSettingsFile(const std::string& bytes = {}) {
    char dir[MAX_PATH] = {};
    GetWindowsDirectoryA(dir, MAX_PATH);
    path_ = std::string(dir) + "\\VORAhogl.ini";
    DeleteFileA(path_.c_str());
    if (bytes.empty()) return;
    if (FILE* f = fopen(path_.c_str(), "wb")) {
      fwrite(bytes.data(), 1, bytes.size(), f);
      fclose(f);
    }
  }
  ~HostSettingsFile() { DeleteFileA(path_.c_str()); }
  std::string Bytes() const { return ReadFileBytes(path_); }

 private:
  std::string path_;
};

std::string LittleEndian(std::initializer_list<int32_t> values) {
  std::string bytes;
  for (int32_t v : values)
    for (int i = 0; i < 4; ++i) bytes += static_cast<char>((static_cast<uint32_t>(v) >> (8 * i)) & 0xFF);
  return bytes;
}

class LibraryPage : public e2e::VelmoraTest {
 protected:
  void SetUp() override {}  // each test writes its settings file first
  HWND IndexBox() {
    for (HWND edit : e2e::FindControls(main, "Edit"))
      if (GetDlgCtrlID(GetParent(edit)) == GetDlgCtrlID(GetParent(Button("Pixel Format :"))) &&
          !(GetWindowLongA(edit, GWL_STYLE) & ES_MULTILINE))
        return edit;
    return nullptr;
  }
  bool FrameCaption(const char* tag) {
    return WaitFor([&] {
      return e2e::FindControl(main, "Button", std::string("OpenGL Settings ") + tag) != nullptr;
    }, 5000);
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
  std::string CheckSpecifications() {
    HWND report = ReportBox();
    SendMessageA(report, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(""));
    Press(Button("Check Specifications"));
    WaitFor([&] { return Text(report).rfind("Computer: ", 0) == 0; }, 20000);
    return Text(report);
  }
};

TEST_F(LibraryPage, AClickIntoTheIndexBoxSelectsTheExplicitOption) {
  HostSettingsFile none;
  const struct {
    const char* how;
    bool pointer;
  } ways[] = {{"a pointer click on the display", true}, {"a posted mouse down and up", false}};
  for (const auto& way : ways) {
    SCOPED_TRACE(way.how);
    Start();
    ASSERT_TRUE(Checked("Best software format"));
    HWND box = IndexBox();
    ASSERT_NE(box, nullptr);
    if (way.pointer) {
      RECT r{};
      GetWindowRect(box, &r);
      std::string click = "/usr/bin/xdotool mousemove --sync " + std::to_string((r.left + r.right) / 2) +
                          " " + std::to_string((r.top + r.bottom) / 2) + " click 1";
      if (!RunHostCommand(click)) GTEST_SKIP() << "xdotool cannot be started here";
    } else {
      e2e::ClickAt(box, 4, 4);
    }
    ASSERT_TRUE(WaitFor([&] { return Checked("Pixel Format :"); }, 10000));
    EXPECT_FALSE(Checked("Best software format"));
    EXPECT_TRUE(FrameCaption("[New]"));

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

  const struct {
    const char* typed;
    const char* shown;
  } numbers[] = {{"1.5", "2"}, {"2.5", "2"}, {"-5", "5"}};
  for (const auto& n : numbers) {
    SCOPED_TRACE(n.typed);
    TypeIndexAndLeave(n.typed);
    EXPECT_TRUE(WaitFor([&] { return Text(IndexBox()) == n.shown; }, 5000)) << Text(IndexBox());
  }

  // A second click into the box while typing keeps the text typed.
  HWND index = IndexBox();
  e2e::ClickAt(index, 3, 3);
  ASSERT_TRUE(WaitFor([&] { return HasFocus(index); }, 5000));
  SendMessageA(index, WM_SETTEXT, 0, reinterpret_cast<LPARAM>("7"));
  e2e::ClickAt(index, 5, 3);
  Sleep(200);
  EXPECT_EQ(Text(index), "7");
  TypeIndexAndLeave("5");

  TypeIndexAndLeave("abc");
  HWND box = program->WaitMessageBox("Velmora");
  ASSERT_NE(box, nullptr) << "text that is not a number is told";
  EXPECT_NE(MessageBoxText(box).find("\"abc\" is not a pixel-format number"), std::string::npos);
  Answer(box, IDOK);
  EXPECT_TRUE(WaitFor([&] { return Text(IndexBox()) == "5"; }, 5000)) << "the shown index is back";

  // With "Use VORA Settings" ticked the typed index goes to the host value
  // and the box keeps what was typed.
  Press(Button("Use VORA Settings"));
  ASSERT_TRUE(WaitFor([&] { return Checked("Use VORA Settings"); }, 5000));
  TypeIndexAndLeave("-6");
  EXPECT_TRUE(FrameCaption("[VORA New]"));
  Sleep(300);
  EXPECT_EQ(Text(IndexBox()), "-6");
  Quit();
}

// A drive letter of the Wine prefix pointed at a folder of ours while the
// object lives.
class MappedDrive {
 public:
  MappedDrive() {
    char prefix[MAX_PATH] = {};
    if (!GetEnvironmentVariableA("WINEPREFIX", prefix, MAX_PATH)) return;
    DWORD used = GetLogicalDrives();
    for (char c = 'y'; c > 'm' && !letter_; --c)
      if (!(used & (1u << (c - 'a')))) letter_ = c;
    if (!letter_) return;
    unixDir_ = "/tmp/velmora-drive-" + std::to_string(GetCurrentProcessId());
    hostDir_ = "Z:" + unixDir_;
    for (char& c : hostDir_)
      if (c == '/') c = '\\';
    CreateDirectoryA(hostDir_.c_str(), nullptr);
    CreateDirectoryA((hostDir_ + "\\sub").c_str(), nullptr);
    WriteEmpty(hostDir_ + "\\note.txt");
    WriteEmpty(hostDir_ + "\\sub\\inner-notes.txt");
    link_ = std::string(prefix) + "/dosdevices/" + letter_ + ":";
    if (!RunHostCommand("/bin/ln -sfn " + unixDir_ + " " + link_) ||
        !WaitFor([&] { return GetFileAttributesA(Root("sub").c_str()) != INVALID_FILE_ATTRIBUTES; }, 5000))
      letter_ = 0;
  }
  ~MappedDrive() {
    if (!link_.empty()) RunHostCommand("/bin/rm -f " + link_);
    DeleteFileA((hostDir_ + "\\sub\\inner-notes.txt").c_str());
    DeleteFileA((hostDir_ + "\\note.txt").c_str());
    DeleteFileA((hostDir_ + "\\LogFile.txt").c_str());
    RemoveDirectoryA((hostDir_ + "\\sub").c_str());
    RemoveDirectoryA(hostDir_.c_str());
  }
  char Letter() const { return letter_; }
  std::string Root(const std::string& name) const { return std::string(1, letter_) + ":\\" + name; }

 private:
  static void WriteEmpty(const std::string& path) {
    if (FILE* f = fopen(path.c_str(), "wb")) fclose(f);
  }
  char letter_ = 0;
  std::string unixDir_, hostDir_, link_;
};

class SaveLogPage : public e2e::VelmoraTest {
 protected:
  void SetUp() override {}
  // The drive list and the folder and file lists beside it.
  void FindLists() {
    auto combos = e2e::FindControls(main, "ComboBox");
    ASSERT_EQ(combos.size(), 1u);
    drives = combos[0];
    for (HWND list : e2e::FindControls(GetParent(drives), "ListBox"))
      (GetWindowLongA(list, GWL_STYLE) & LBS_SORT ? files : folders) = list;
    ASSERT_TRUE(folders && files);
  }
  // Entries of a list, by the length of their texts (texts themselves do
  // not cross process borders reliably).
  static std::vector<LRESULT> Lengths(HWND list) {
    std::vector<LRESULT> lengths;
    LRESULT n = SendMessageA(list, LB_GETCOUNT, 0, 0);
    for (LRESULT i = 0; i < n; ++i) lengths.push_back(SendMessageA(list, LB_GETTEXTLEN, i, 0));
    return lengths;
  }
  void Notify(HWND control, int code) {
    SendMessageA(GetParent(control), WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(control), code),
                 reinterpret_cast<LPARAM>(control));
  }
  HWND drives = nullptr, folders = nullptr, files = nullptr;
};

TEST_F(SaveLogPage, ChoosingAnotherDrivePointsTheListsAndTheLogThere) {
  MappedDrive drive;
  if (!drive.Letter()) GTEST_SKIP() << "no drive letter could be mapped in this prefix";
  // Drives are listed in order of their letters.
  DWORD used = GetLogicalDrives();
  int target = 0;
  for (char c = 'a'; c < drive.Letter(); ++c) target += (used >> (c - 'a')) & 1;

  const struct {
    const char* how;
    bool keyboard;
  } ways[] = {{"the keyboard in the list", true}, {"CB_SETCURSEL and its notification", false}};
  for (const auto& way : ways) {
    SCOPED_TRACE(way.how);
    Start();
    e2e::ClickAt(Label("Save Log"), 5, 5);
    AnswerQuestion(IDNO);
    FindLists();
    ASSERT_TRUE(ShownOnScreen(drives));
    std::vector<LRESULT> before = Lengths(files);
    if (way.keyboard) {
      int at = static_cast<int>(SendMessageA(drives, CB_GETCURSEL, 0, 0));
      for (; at != target; at += at < target ? 1 : -1) {
        WPARAM key = at < target ? VK_DOWN : VK_UP;
        PostMessageA(drives, WM_KEYDOWN, key, 0);
        PostMessageA(drives, WM_KEYUP, key, 0);
      }
    } else {
      SendMessageA(drives, CB_SETCURSEL, target, 0);
      Notify(drives, CBN_SELCHANGE);
    }
    ASSERT_TRUE(WaitFor([&] { return SendMessageA(drives, CB_GETCURSEL, 0, 0) == target; }, 5000));
    EXPECT_TRUE(WaitFor([&] { return Lengths(folders) == std::vector<LRESULT>{5}; }, 5000))
        << "the folder list shows [sub]";
    EXPECT_TRUE(WaitFor([&] { return Lengths(files) == std::vector<LRESULT>{8}; }, 5000))
        << "the file list shows note.txt";

    Press(Button("Save Log"));
    EXPECT_TRUE(WaitFor([&] { return GetFileAttributesA(drive.Root("LogFile.txt").c_str()) !=
                                      INVALID_FILE_ATTRIBUTES; }, 10000))
        << "the log is saved in the drive's root";
    EXPECT_TRUE(WaitFor([&] { return Lengths(files).size() == 2; }, 5000)) << "and listed there";
    DeleteFileA(drive.Root("LogFile.txt").c_str());

    SendMessageA(folders, LB_SETCURSEL, 0, 0);
    Notify(folders, LBN_DBLCLK);
    EXPECT_TRUE(WaitFor([&] { return Lengths(files) == std::vector<LRESULT>{15}; }, 5000))
        << "a double-click on [sub] shows inner-notes.txt";
    Quit();
  }
}

// Software mode with the index -7: no software format is double-buffered
// under every driver, so -7 is handed on and SetPixelFormat refuses it.
class BrokenFormat : public LibraryPage {
 protected:
  // Answers every box with this title until `until` returns a window; the
  // main window must be disabled while each box is up.
  int AnswerFormatBoxes(const std::function<HWND()>& until) {
    int count = 0;
    for (;;) {
      if (HWND other = until()) {
        last = other;
        return count;
      }
      HWND box = program->WaitMessageBox("SetDCPixelFormat", 200);
      if (!box) continue;
      ++count;
      EXPECT_FALSE(IsWindowEnabled(main)) << "nothing else takes input while the box is up";
      EXPECT_NE(MessageBoxText(box).find("SetPixelFormat(hdc, -7, ModulePFD) = False"), std::string::npos)
          << MessageBoxText(box);
      Answer(box, IDOK);
      WaitFor([&] { return !IsWindow(box); }, 5000);
      if (count > 8) return count;
    }
  }
  HWND last = nullptr;
};

TEST_F(BrokenFormat, TheFailureIsShownOncePerViewAndTheRunEnds) {
  HostSettingsFile file(LittleEndian({0, -7, 0}));
  Start();
  HWND report = ReportBox();
  Press(Button("Check Specifications"));
  int boxes = AnswerFormatBoxes([&]() -> HWND {
    return Text(report).rfind("Computer: ", 0) == 0 ? report : nullptr;
  });
  EXPECT_EQ(boxes, 1) << "the report's picture shows the failure once";
  EXPECT_TRUE(WaitFor([&] { return IsWindowEnabled(main) != 0; }, 5000));
  std::string text = Text(report);
  EXPECT_NE(text.find("Cannot Create GL Context  0 = wglCreateContext("), std::string::npos) << text;

  Press(Button("Next >>"));
  ASSERT_TRUE(ShownOnScreen(Button("Point Size")));
  Press(Button("Point Size"));
  HWND notice = program->WaitMessageBox("Point Size");
  ASSERT_NE(notice, nullptr);
  Answer(notice, IDOK);
  WaitFor([&] { return !IsWindow(notice); }, 5000);
  boxes = AnswerFormatBoxes([&] { return program->WaitMessageBox("Point Size", 0); });
  EXPECT_EQ(boxes, 2) << "once per view, not once per frame";
  HWND question = last;
  ASSERT_NE(question, nullptr);
  EXPECT_EQ(MessageBoxText(question), "Did you see a point (of circular/quadrangular shape), zooming in?");
  Answer(question, IDNO);
  // The runner then runs the report again, whose picture fails once more.
  EXPECT_EQ(AnswerFormatBoxes([&]() -> HWND {
    return Text(report).find("Point Size:         \tError -1 (#-7)") != std::string::npos ? report : nullptr;
  }), 1);
  EXPECT_NE(e2e::FindControl(main, "Static", "Error -1 (#-7)"), nullptr) << "the label follows the answer";

  // The recorded failures end the log, after the report.
  e2e::ClickAt(Label("Save Log"), 5, 5);
  AnswerQuestion(IDNO);
  std::string bytes = SaveLog("LogFile.txt");
  std::string rule = std::string(60, '=') + "\r\n";
  size_t third = bytes.find("\r\n" + rule + "\r\nVB DLL Error: ");
  ASSERT_NE(third, std::string::npos) << bytes;
  EXPECT_NE(bytes.find("SetPixelFormat(hdc, -7, ModulePFD) = False", third), std::string::npos);
  EXPECT_NE(bytes.find("hGLRC = wglCreateContext(ExtenderHdc)", third), std::string::npos);
  EXPECT_NE(bytes.find(Text(report)), std::string::npos);
  EXPECT_LT(bytes.find(Text(report)), third);
  Quit();
}

}  // namespace
