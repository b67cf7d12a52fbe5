// Starts Velmora.exe and VelmoraCheck.exe as their own processes and drives them from outside
// through standard controls and real message boxes.
#include <windows.h>

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include <functional>
#include <string>

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

e2e::CapturedRun RunCheck(const std::string& args) {
  return e2e::RunCaptured(e2e::BuildDir() + "\\VelmoraCheck.exe", args, e2e::BuildDir());
}

// VelmoraCheck.exe prints the report the window showed and writes the same log.
TEST_F(Velmora, ChecksTheSpecificationsSavesTheLogAndCheckSaysTheSame) {
  const std::string text = CheckSpecifications();
  ASSERT_EQ(text.rfind("Computer: ", 0), 0u) << text;
  const std::string log = SaveLog("velmora_e2e_log.txt");
  const std::string rule(60, '=');
  const size_t body = log.find("\r\r\n");
  ASSERT_EQ(log.rfind("Velmora LogFile Vs.", 0), 0u) << log;
  ASSERT_NE(body, std::string::npos) << log;
  EXPECT_EQ(log.substr(body), "\r\r\n" + rule + "\r\nDriver Registry:No drivers registered\r\n" +
                                  rule + "\r\n" + text);
  Quit();

  const std::string cliLog = e2e::BuildDir() + "\\velmora_check_cli_log.txt";
  DeleteFileA(cliLog.c_str());
  const e2e::CapturedRun run = RunCheck("--no-tests --log velmora_check_cli_log.txt");
  const std::string written = e2e::ReadFileBytes(cliLog);
  DeleteFileA(cliLog.c_str());
  ASSERT_TRUE(run.started);
  EXPECT_EQ(run.out.substr(0, text.size()), text) << "not the report the main window showed";
  EXPECT_EQ(run.out.compare(text.size(), 11, "\r\nWindows: "), 0) << "the real Windows follows";
  // The log's first line holds the time of writing: equal up to the date, and after the line.
  ASSERT_NE(written.find('\n'), std::string::npos) << written;
  EXPECT_EQ(written.substr(0, 28), log.substr(0, 28));
  EXPECT_EQ(written.substr(written.find('\n')), log.substr(log.find('\n')));
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

// Software mode with the index -7, which no software format matches, so the driver is handed -7
// and refuses it: a failure box per picture, and the failures end the log after the report.
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
  auto reportShows = [&](const std::string& text) {
    return [&, text] { return Text(report).find(text) != std::string::npos ? report : nullptr; };
  };
  Press(Button("Check Specifications"));
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

  const std::string bytes = SaveLog("LogFile.txt");
  const size_t third = bytes.find("\r\n" + std::string(60, '=') + "\r\n\r\nVB DLL Error: ");
  ASSERT_NE(third, std::string::npos) << bytes;
  EXPECT_NE(bytes.find("SetPixelFormat(hdc, -7, ModulePFD) = False", third), std::string::npos);
  EXPECT_NE(bytes.find("hGLRC = wglCreateContext(ExtenderHdc)", third), std::string::npos);
  EXPECT_LT(bytes.find(Text(report)), third) << "the report comes first";
  Quit();
}

// This driver's formats are ICD and every scene draws right.
TEST(VelmoraCheck, AFullRunPassesWithCode0AndTheJsonSaysWhy) {
  const std::string path = e2e::BuildDir() + "\\velmora_check.json";
  DeleteFileA(path.c_str());
  const e2e::CapturedRun run = RunCheck("--json velmora_check.json");
  nlohmann::json j = nlohmann::json::parse(e2e::ReadFileBytes(path), nullptr, false);
  DeleteFileA(path.c_str());
  ASSERT_TRUE(run.started);
  ASSERT_FALSE(j.is_discarded()) << "the JSON does not parse";
  EXPECT_EQ(run.exitCode, 0u) << run.out;
  EXPECT_EQ(j["verdict"]["exitCode"], 0);
  ASSERT_EQ(j["tests"].size(), 13u);
  for (const auto& t : j["tests"])
    EXPECT_TRUE(t["errorCode"] == 0 && t["verdict"]["passed"] == true) << t["name"];
  EXPECT_TRUE(j["quadView"]["status"] == 1 && j["quadView"]["verdict"]["passed"] == true);
}

}  // namespace
