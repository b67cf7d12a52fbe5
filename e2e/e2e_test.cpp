// Starts Velmora.exe as a separate process and drives it from outside: the pages, the report,
// the log, the Drivers page and the test windows.
#include <gtest/gtest.h>

#include <cstring>
#include <utility>

#include "e2e/fixture.h"
#include "report/adapter_notes.h"
#include "sysinfo/fileversioninfo.h"

namespace {

using e2e::ShotPath;
using Velmora = e2e::VelmoraTest;

TEST_F(Velmora, WalksThroughThePagesAnsweringNo) {
  e2e::SaveWindowImage(main, ShotPath("page0_library"));
  EXPECT_FALSE(IsWindowEnabled(Button("<< Back")));
  EXPECT_TRUE(Button("OpenGL Settings [Default]") || Button("OpenGL Settings [VORA Current]"))
      << "the settings frame shows its state";

  e2e::Press(Button("Next >>"));
  EXPECT_EQ(AnswerQuestion(IDNO), "Do you want to 'Check Specifications' before going on?");
  ASSERT_TRUE(ShownOnScreen(Button("Point Size")));
  e2e::SaveWindowImage(main, ShotPath("page1_general"));

  e2e::ClickAt(Label("Save Log"), 5, 5);
  EXPECT_EQ(AnswerQuestion(IDNO), "Do you want to Run all the tests before going on?");
  ASSERT_TRUE(ShownOnScreen(Button("Save Log")));
  e2e::SaveWindowImage(main, ShotPath("page2_savelog"));

  e2e::Press(Button("Next >>"));
  EXPECT_EQ(AnswerQuestion(IDNO), "Do you want to Save the Log File before going on?");
  ASSERT_TRUE(ShownOnScreen(Button("Hardware Acceleration Drivers registered")));
  EXPECT_FALSE(IsWindowEnabled(Button("Next >>")));
  e2e::SaveWindowImage(main, ShotPath("page3_drivers"));

  // Every question was answered No, so going round again asks nothing.
  e2e::ClickAt(Label("Library"), 5, 5);
  e2e::Press(Button("Next >>"));
  ASSERT_TRUE(ShownOnScreen(Button("Point Size")));
  EXPECT_EQ(program->WaitMessageBox("Just Checking!", 500), nullptr);
  Quit();
}

TEST_F(Velmora, ChecksTheSpecificationsSavesTheLogAndListsDriversAndAdapters) {
  const std::string text = CheckSpecifications();
  ASSERT_EQ(text.rfind("Computer: ", 0), 0u) << text;
  EXPECT_NE(text.find("\r\nGeneral Tests:\r\n"), std::string::npos);
  const size_t at = text.find("\r\nRenderer: ");
  ASSERT_NE(at, std::string::npos);
  const std::string renderer = text.substr(at + 12, text.find("\r\n", at + 12) - at - 12);
  bool proposed = false;
  for (HWND edit : e2e::FindControls(main, "Edit")) {
    const std::string t = e2e::Text(edit);
    proposed |= t.size() >= 12 && t.compare(t.size() - 12, 12, " LogFile.txt") == 0;
  }
  EXPECT_TRUE(proposed) << "a log-file name was proposed";

  e2e::ClickAt(Label("Save Log"), 5, 5);
  EXPECT_EQ(AnswerQuestion(IDNO), "Do you want to Run all the tests before going on?");
  const std::string bytes = SaveLog("velmora_e2e_log.txt");
  const std::string rule(60, '=');
  EXPECT_EQ(bytes.rfind("Velmora LogFile Vs.", 0), 0u);
  EXPECT_NE(bytes.find("\r\r\n" + rule + "\r\nDriver Registry:No drivers registered\r\n" + rule +
                       "\r\n" + text),
            std::string::npos);
  e2e::SaveWindowImage(main, ShotPath("page2_saved"));

  // The log was saved, so the Drivers page asks nothing.
  e2e::ClickAt(Label("Drivers"), 5, 5);
  HWND drivers = Button("Hardware Acceleration Drivers registered");
  ASSERT_TRUE(ShownOnScreen(drivers));
  EXPECT_EQ(program->WaitMessageBox("Just Checking!", 300), nullptr);
  HWND page = GetParent(drivers), legacy = DriverList(), adapters = nullptr, notes = nullptr;
  for (HWND l : e2e::FindControls(page, "ListBox"))
    if (l != legacy) adapters = l;
  for (HWND e : e2e::FindControls(page, "Edit"))
    if (GetWindowLongA(e, GWL_STYLE) & ES_MULTILINE) notes = e;
  ASSERT_TRUE(legacy && adapters && notes);
  ASSERT_NE(e2e::FindControl(page, "Static", "Display adapters"), nullptr);
  e2e::Press(drivers);
  ASSERT_TRUE(e2e::WaitFor([&] { return !e2e::Text(notes).empty(); }, 10000));
  ASSERT_TRUE(e2e::WaitFor([&] { return SendMessageA(legacy, LB_GETCOUNT, 0, 0) == 1; }, 5000));
  // Item texts do not cross process borders reliably; their lengths do.
  EXPECT_EQ(SendMessageA(legacy, LB_GETTEXTLEN, 0, 0),
            static_cast<LRESULT>(strlen("No drivers registered")));
  Sleep(300);  // let the boxes paint what they were given
  e2e::SaveWindowImage(main, ShotPath("page3_drivers_adapters"));

  // The same machine seen from this process; only the OpenGL module that ran differs.
  report::AdapterFacts facts;
  facts.Adapters = sysinfo::GatherDisplayAdapters();
  facts.Process = sysinfo::GatherProcessFacts();
  ASSERT_FALSE(facts.Adapters.empty()) << "the system lists no adapter";
  std::vector<std::string> lines = report::AdapterLines(facts);
  lines.pop_back();  // "press Check Specifications": the program has run it
  const LRESULT count = SendMessageA(adapters, LB_GETCOUNT, 0, 0);
  ASSERT_EQ(count, static_cast<LRESULT>(lines.size() + 1));
  for (size_t i = 0; i < lines.size(); ++i)
    EXPECT_EQ(SendMessageA(adapters, LB_GETTEXTLEN, i, 0), static_cast<LRESULT>(lines[i].size()))
        << lines[i];
  const std::string gl = std::string("OpenGL in use: Windows' generic OpenGL ") +
                         sysinfo::cFileVersionInfo().SystemDirectory() + "\\opengl32.dll";
  EXPECT_GE(SendMessageA(adapters, LB_GETTEXTLEN, count - 1, 0), static_cast<LRESULT>(gl.size()))
      << "the last line names the OpenGL module that ran";

  facts.ReportRan = true;
  facts.Renderer = renderer;
  facts.Class = report::FormatClass::ICD;  // the notes do not turn on it unless software
  OSVERSIONINFOA answered{};
  answered.dwOSVersionInfoSize = sizeof answered;
  GetVersionExA(&answered);
  facts.AnsweredMajor = answered.dwMajorVersion;
  facts.AnsweredMinor = answered.dwMinorVersion;
  facts.AnsweredBuild = answered.dwBuildNumber & 0xFFFF;
  facts.RealWindows = sysinfo::CaptureRealWindows();
  facts.ModernOpenGL = true;  // this driver makes core profiles
  EXPECT_EQ(e2e::Text(notes), report::NotesText(report::AdapterNotes(facts)));
  Quit();
}

TEST_F(Velmora, RunsPointSizeTwiceAndTheInteractionTest) {
  e2e::Press(Button("Next >>"));
  AnswerQuestion(IDNO);
  ASSERT_TRUE(ShownOnScreen(Button("Point Size")));
  HWND report = ReportBox();
  auto reportShows = [&](const std::string& line) {
    return e2e::WaitFor([&] { return e2e::Text(report).find(line) != std::string::npos; }, 20000);
  };
  for (const auto& [answer, label] : {std::pair{IDYES, "OK (#"}, std::pair{IDNO, "Error -1 (#"}}) {
    SCOPED_TRACE(label);
    e2e::Press(Button("Point Size"));
    EXPECT_EQ(AnswerQuestion(IDOK, "Point Size"),
              "Please wait until the check window disappears (5 sec.)");
    HWND testWindow = program->WaitWindow("GLTest_frm", "Point Size Velmora");
    ASSERT_NE(testWindow, nullptr);
    ASSERT_TRUE(e2e::WaitFor([&] { return !IsWindow(testWindow); }, 20000)) << "closed by itself";
    EXPECT_EQ(AnswerQuestion(answer, "Point Size"),
              "Did you see a point (of circular/quadrangular shape), zooming in?");
    ASSERT_TRUE(reportShows(std::string("Point Size:         \t") + label));
  }
  e2e::SaveWindowImage(main, ShotPath("page1_after_tests"));

  e2e::Press(Button("Interaction"));
  HWND testWindow = program->WaitWindow("GLTest_frm", "Interaction Velmora");
  ASSERT_NE(testWindow, nullptr);
  auto views = e2e::FindControls(testWindow, "Velmora_GLView");
  ASSERT_EQ(views.size(), 2u);
  e2e::ClickAt(views[0], 10, 10);
  PostMessageA(views[1], WM_MOUSEMOVE, 0, MAKELPARAM(40, 40));
  PostMessageA(views[1], WM_MOUSEMOVE, 0, MAKELPARAM(50, 50));
  e2e::SaveWindowImage(testWindow, ShotPath("interaction_window"));
  HWND close = e2e::FindControl(testWindow, "Button", "Close");
  ASSERT_NE(close, nullptr);
  e2e::Press(close);
  ASSERT_NE(AnswerQuestion(IDYES, "Interaction"), "(no question)");
  EXPECT_TRUE(reportShows("Interaction:        \tOK (#"));
  Quit();
}

TEST_F(Velmora, ClosingTheWindowEndsTheProgram) {
  PostMessageA(main, WM_CLOSE, 0, 0);
  EXPECT_TRUE(program->WaitExit(10000));
}

}  // namespace
