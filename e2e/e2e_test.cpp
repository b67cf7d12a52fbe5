// Starts Velmora.exe as its own process and drives it from outside through its standard controls
// and real message boxes: the pages, the report and the log (beside VelmoraCheck.exe's), the
// index box, the test windows, the quad view and the Pixel Formats browser.
#include <windows.h>

#include <commctrl.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <string>
#include <vector>

#include "e2e/fixture.h"

namespace {

using e2e::Press;
using e2e::Text;
using e2e::WaitFor;
using Velmora = e2e::VelmoraTest;

// Whether the window has the keyboard focus in its own thread.
bool HasFocus(HWND wnd) {
  GUITHREADINFO info{};
  info.cbSize = sizeof info;
  return GetGUIThreadInfo(GetWindowThreadProcessId(wnd, nullptr), &info) && info.hwndFocus == wnd;
}

// Real key presses, as the keyboard sends them to the window once it is the active one.
void Keys(HWND wnd, BYTE hold, BYTE key) {
  SetForegroundWindow(wnd);
  WaitFor([&] { return GetForegroundWindow() == wnd; }, 2000);
  keybd_event(hold, 0, 0, 0);
  keybd_event(key, 0, 0, 0);
  keybd_event(key, 0, KEYEVENTF_KEYUP, 0);
  keybd_event(hold, 0, KEYEVENTF_KEYUP, 0);
}

// The lengths of a list box's entries (their texts do not cross process borders reliably).
std::vector<LRESULT> Lengths(HWND list) {
  std::vector<LRESULT> lengths;
  for (LRESULT i = 0, n = SendMessageA(list, LB_GETCOUNT, 0, 0); i < n; ++i)
    lengths.push_back(SendMessageA(list, LB_GETTEXTLEN, i, 0));
  return lengths;
}

TEST_F(Velmora, WalksThroughThePagesAnsweringNoAndClosing) {
  EXPECT_FALSE(IsWindowEnabled(Button("<< Back")));
  EXPECT_NE(Button("OpenGL Settings [Default]"), nullptr) << "the settings frame shows its state";
  Press(Button("Next >>"));
  EXPECT_EQ(AnswerQuestion(IDNO), "Do you want to 'Check Specifications' before going on?");
  ASSERT_TRUE(ShownOnScreen(Button("Point Size")));
  e2e::ClickAt(Label("Save Log"), 5, 5);
  EXPECT_EQ(AnswerQuestion(IDNO), "Do you want to Run all the tests before going on?");
  ASSERT_TRUE(ShownOnScreen(Button("Save Log")));
  Press(Button("Next >>"));
  EXPECT_EQ(AnswerQuestion(IDNO), "Do you want to Save the Log File before going on?");
  ASSERT_TRUE(ShownOnScreen(Button("Hardware Acceleration Drivers registered")));
  EXPECT_FALSE(IsWindowEnabled(Button("Next >>")));
  PostMessageA(main, WM_CLOSE, 0, 0);
  EXPECT_TRUE(program->WaitExit(10000)) << "closing the window ends the program";
}

// The Drivers page lists the adapters as VelmoraCheck.exe does, which prints the report the
// window showed and writes the same log.
TEST_F(Velmora, ChecksTheSpecificationsSavesTheLogListsDriversAndCheckSaysTheSame) {
  const std::string text = CheckSpecifications();
  ASSERT_EQ(text.rfind("Computer: ", 0), 0u) << text;
  e2e::ClickAt(Label("Save Log"), 5, 5);
  AnswerQuestion(IDNO);
  const std::string log = SaveLog("velmora_e2e_log.txt");
  const std::string rule(60, '=');
  const size_t body = log.find("\r\r\n");
  ASSERT_EQ(log.rfind("Velmora LogFile Vs.", 0), 0u) << log;
  ASSERT_NE(body, std::string::npos) << log;
  EXPECT_EQ(log.substr(body), "\r\r\n" + rule + "\r\nDriver Registry:No drivers registered\r\n" +
                                  rule + "\r\n" + text);

  e2e::ClickAt(Label("Drivers"), 5, 5);
  HWND drivers = Button("Hardware Acceleration Drivers registered");
  ASSERT_TRUE(ShownOnScreen(drivers));
  HWND page = GetParent(drivers), legacy = DriverList(), adapters = nullptr, notes = nullptr;
  for (HWND l : e2e::FindControls(page, "ListBox"))
    if (l != legacy) adapters = l;
  for (HWND e : e2e::FindControls(page, "Edit"))
    if (GetWindowLongA(e, GWL_STYLE) & ES_MULTILINE) notes = e;
  ASSERT_TRUE(legacy && adapters && notes);
  Press(drivers);
  ASSERT_TRUE(WaitFor([&] { return !Text(notes).empty(); }, 10000));
  EXPECT_TRUE(WaitFor([&] { return Lengths(legacy) == std::vector<LRESULT>{21}; }, 5000))
      << "\"No drivers registered\"";
  const std::vector<LRESULT> adapterLines = Lengths(adapters);
  Quit();

  const std::string cliLog = e2e::BuildDir() + "\\velmora_check_cli_log.txt";
  DeleteFileA(cliLog.c_str());
  const e2e::CapturedRun run = e2e::RunCaptured(e2e::BuildDir() + "\\VelmoraCheck.exe",
                                                "--no-tests --log velmora_check_cli_log.txt",
                                                e2e::BuildDir());
  const std::string written = e2e::ReadFileBytes(cliLog);
  DeleteFileA(cliLog.c_str());
  ASSERT_TRUE(run.started);
  EXPECT_EQ(run.out.substr(0, text.size()), text) << "not the report the main window showed";
  EXPECT_EQ(run.out.compare(text.size(), 11, "\r\nWindows: "), 0) << "the real Windows follows";
  // The log's first line holds the time of writing: equal up to the date, and after the line.
  ASSERT_NE(written.find('\n'), std::string::npos) << written;
  EXPECT_EQ(written.substr(0, 28), log.substr(0, 28));
  EXPECT_EQ(written.substr(written.find('\n')), log.substr(log.find('\n')));
  std::vector<LRESULT> cliAdapterLines;
  const size_t from = run.out.find("\r\nDisplay adapters:\r\n");
  const size_t to = run.out.find("\r\n\r\nNotes:");
  ASSERT_TRUE(from != std::string::npos && to != std::string::npos && from < to) << run.out;
  for (size_t at = from + 21; at < to + 2; at = run.out.find("\r\n", at) + 2)
    cliAdapterLines.push_back(static_cast<LRESULT>(run.out.find("\r\n", at) - at));
  EXPECT_EQ(adapterLines, cliAdapterLines) << "the adapter lines by their lengths";
}

// The index box taken by a posted mouse down and up, as an automation tool clicks, and by a
// pointer click on the display.
TEST_F(Velmora, AClickIntoTheIndexBoxSelectsTheExplicitOptionAndTheReportUsesTheIndex) {
  for (bool pointer : {false, true}) {
    SCOPED_TRACE(pointer ? "a pointer click on the display" : "a posted mouse down and up");
    if (pointer) Start();
    ASSERT_TRUE(Checked("Best software format"));
    HWND box = nullptr, option = Button("Pixel Format :");
    for (HWND edit : e2e::FindControls(main, "Edit"))
      if (!box && GetDlgCtrlID(GetParent(edit)) == GetDlgCtrlID(GetParent(option)) &&
          !(GetWindowLongA(edit, GWL_STYLE) & ES_MULTILINE))
        box = edit;
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
    ASSERT_TRUE(WaitFor([&] { return HasFocus(box); }, 5000)) << "the click gave it the focus";

    SendMessageA(box, WM_SETTEXT, 0, reinterpret_cast<LPARAM>("2"));
    e2e::ClickAt(box, 5, 3);
    Sleep(200);
    EXPECT_EQ(Text(box), "2") << "a second click keeps the text typed";
    PostMessageA(box, WM_KEYDOWN, VK_TAB, 0);
    PostMessageA(box, WM_KEYUP, VK_TAB, 0);
    ASSERT_TRUE(WaitFor([&] { return !HasFocus(box); }, 5000)) << "Tab left the box";
    EXPECT_NE(CheckSpecifications().find("\r\nPixelFormat #2\r\n"), std::string::npos);
    Quit();
  }
}

// The test window closes by itself within its time; the answer reaches the report.
TEST_F(Velmora, RunsTheTimedPointSizeTest) {
  Press(Button("Next >>"));
  AnswerQuestion(IDNO);
  ASSERT_TRUE(ShownOnScreen(Button("Point Size")));
  Press(Button("Point Size"));
  EXPECT_EQ(AnswerQuestion(IDOK, "Point Size"),
            "Please wait until the check window disappears (5 sec.)");
  HWND testWindow = program->WaitWindow("GLTest_frm", "Point Size Velmora");
  ASSERT_NE(testWindow, nullptr);
  ASSERT_TRUE(WaitFor([&] { return !IsWindow(testWindow); }, 20000)) << "closed by itself";
  EXPECT_EQ(AnswerQuestion(IDYES, "Point Size"),
            "Did you see a point (of circular/quadrangular shape), zooming in?");
  HWND report = ReportBox();
  EXPECT_TRUE(WaitFor([&] {
    return Text(report).find("Point Size:         \tOK (#") != std::string::npos;
  }, 20000)) << Text(report);
  Quit();
}

TEST_F(Velmora, QuadViewTakesKeysAndTicksAndEndsByAltF4IntoTheReport) {
  Press(Button("Next >>"));
  AnswerQuestion(IDNO);
  ASSERT_TRUE(ShownOnScreen(Button("QuadView")));
  Press(Button("QuadView"));
  HWND qv = program->WaitWindow("Velmora_QuadView", "QuadView Velmora");
  ASSERT_NE(qv, nullptr) << "the quad view did not show";
  EXPECT_FALSE(IsWindowEnabled(main)) << "the main window waits";
  HWND picResize = e2e::FindControl(qv, "Button", "Fix Pic Resize");
  Press(picResize);
  EXPECT_TRUE(
      WaitFor([&] { return SendMessageA(picResize, BM_GETCHECK, 0, 0) == BST_CHECKED; }, 5000));

  HWND copy = e2e::FindControl(qv, "Button", "Copy Picture");
  ASSERT_NE(copy, nullptr);
  EXPECT_FALSE(IsWindowVisible(copy));
  Keys(qv, VK_CONTROL, 'C');
  EXPECT_TRUE(WaitFor([&] { return IsWindowVisible(copy) != 0; }, 5000)) << "Ctrl+C shows it";
  Keys(qv, VK_MENU, VK_F4);
  EXPECT_TRUE(WaitFor([&] { return !IsWindow(qv); }, 10000)) << "Alt+F4 ends it as Close does";
  HWND label = GetWindow(Button("QuadView"), GW_HWNDNEXT);  // made right after its button
  ASSERT_TRUE(WaitFor([&] { return Text(label).rfind("OK (#", 0) == 0; }, 15000)) << Text(label);
  EXPECT_TRUE(IsWindowEnabled(main));
  const std::string lines = Text(label) +
                            " \r\n  Form Resize          \tFALSE"
                            "\r\n  Form Paint           \tFALSE"
                            "\r\n  OpenGL Picture Resize\tTRUE"
                            "\r\n  OpenGL Picture Paint \tFALSE";
  HWND report = ReportBox();
  EXPECT_TRUE(WaitFor([&] { return Text(report).find(lines) != std::string::npos; }, 20000))
      << Text(report);
  Quit();
}

// The grid's cells, widths and sorts are checked in process.
TEST_F(Velmora, PixelFormatsOpensModallyOverTheMainWindowAndClosesFromOutside) {
  e2e::ClickAt(Label("Pixel Formats"), 5, 5);
  HWND browser = program->WaitWindow("FPixelFormat", nullptr, 20000);
  ASSERT_NE(browser, nullptr) << "the browser did not open";
  const std::string caption = Text(browser), prefix = "Pixel Format Descriptor List: Selected = ";
  ASSERT_EQ(caption.rfind(prefix, 0), 0u) << caption;
  EXPECT_GE(std::atoi(caption.c_str() + prefix.size()), 1) << caption;
  EXPECT_EQ(GetWindow(browser, GW_OWNER), main);
  EXPECT_FALSE(IsWindowEnabled(main)) << "the browser is modal";
  const std::vector<HWND> grid = e2e::FindControls(browser, "SysListView32");
  ASSERT_EQ(grid.size(), 1u);
  EXPECT_EQ(SendMessageA(grid[0], LVM_GETITEMCOUNT, 0, 0), 14) << "a row per flag";
  Press(e2e::FindControl(browser, "Button", "Close"));
  EXPECT_TRUE(WaitFor([&] { return !IsWindow(browser) && IsWindowEnabled(main); }, 10000));
  Quit();
}

// A host settings file in software mode with the index -7: no software format is
// double-buffered under every driver, so -7 is handed on and the driver refuses it. The real
// failure boxes come once per picture, the label follows the answer, and the recorded failures
// end the log after the report.
TEST_F(Velmora, APixelFormatTheDriverRefusesIsToldOncePerViewAndEndsTheLog) {
  Quit();
  Start(std::string("\0\0\0\0\xF9\xFF\xFF\xFF\0\0\0\0", 12));
  HWND report = ReportBox(), question = nullptr;
  // Answers every "SetDCPixelFormat" box until `until` gives a window; returns how many.
  auto answerFormatBoxes = [&](const std::function<HWND()>& until) {
    int count = 0;
    while (!(question = until()) && count <= 8) {
      HWND box = program->WaitWindow("#32770", "SetDCPixelFormat", 200);
      if (!box) continue;
      ++count;
      EXPECT_FALSE(IsWindowEnabled(main)) << "nothing else takes input while the box is up";
      EXPECT_NE(e2e::MessageBoxText(box).find("SetPixelFormat(hdc, -7, ModulePFD) = False"),
                std::string::npos);
      e2e::Answer(box, IDOK);
      WaitFor([&] { return !IsWindow(box); }, 5000);
    }
    return count;
  };
  Press(Button("Check Specifications"));
  auto reportShows = [&](const std::string& text) {
    return [&, text]() -> HWND { return Text(report).find(text) != std::string::npos ? report
                                                                                      : nullptr; };
  };
  EXPECT_EQ(answerFormatBoxes(reportShows("Computer: ")), 1)
      << "the report's picture shows the failure once";
  EXPECT_NE(Text(report).find("Cannot Create GL Context  0 = wglCreateContext("),
            std::string::npos) << Text(report);

  Press(Button("Next >>"));
  ASSERT_TRUE(ShownOnScreen(Button("Point Size")));
  Press(Button("Point Size"));
  ASSERT_NE(AnswerQuestion(IDOK, "Point Size"), "(no question)") << "the notice";
  EXPECT_EQ(answerFormatBoxes([&] { return program->WaitWindow("#32770", "Point Size", 0); }), 2)
      << "once per view, not once per frame";
  ASSERT_NE(question, nullptr);
  EXPECT_EQ(e2e::MessageBoxText(question),
            "Did you see a point (of circular/quadrangular shape), zooming in?");
  e2e::Answer(question, IDNO);
  // The runner then runs the report again, whose picture fails once more.
  EXPECT_EQ(answerFormatBoxes(reportShows("Point Size:         \tError -1 (#-7)")), 1);
  EXPECT_NE(e2e::FindControl(main, "Static", "Error -1 (#-7)"), nullptr);

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
