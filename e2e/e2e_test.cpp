// Starts Velmora.exe as a separate process and drives it from outside.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>

#include "e2e/fixture.h"
#include "win32/ui.h"

namespace {

using e2e::BuildDir;
using e2e::ShotPath;
using e2e::VelmoraExe;

using Velmora = e2e::VelmoraTest;

TEST_F(Velmora, WalksThroughThePagesAnsweringNo) {
  e2e::SaveWindowImage(main, ShotPath("page0_library"));
  EXPECT_FALSE(IsWindowEnabled(Button("<< Back")));
  HWND groupBox = e2e::FindControl(main, "Button", "OpenGL Settings [Default]");
  HWND groupBoxFromFile = e2e::FindControl(main, "Button", "OpenGL Settings [VORA Current]");
  EXPECT_TRUE(groupBox || groupBoxFromFile) << "the settings frame shows its state";

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
  HWND drivers = Button("Hardware Acceleration Drivers registered");
  ASSERT_TRUE(ShownOnScreen(drivers));
  EXPECT_FALSE(IsWindowEnabled(Button("Next >>")));
  e2e::SaveWindowImage(main, ShotPath("page3_drivers"));

  // Every question was answered No, so going round again asks nothing.
  e2e::ClickAt(Label("Library"), 5, 5);
  e2e::Press(Button("Next >>"));
  ASSERT_TRUE(ShownOnScreen(Button("Point Size")));
  EXPECT_EQ(program->WaitMessageBox("Just Checking!", 500), nullptr);
  Quit();
}

TEST_F(Velmora, ChecksTheSpecificationsSavesTheLogAndListsDrivers) {
  HWND report = ReportBox();
  ASSERT_NE(report, nullptr);
  e2e::Press(Button("Check Specifications"));
  ASSERT_TRUE(e2e::WaitFor([&] { return e2e::Text(report).rfind("Computer: ", 0) == 0; }, 20000));
  std::string text = e2e::Text(report);
  EXPECT_NE(text.find("\r\nRenderer: "), std::string::npos);
  EXPECT_NE(text.find("\r\nGeneral Tests:\r\n"), std::string::npos);

  bool proposed = false;
  for (HWND edit : e2e::FindControls(main, "Edit")) {
    std::string t = e2e::Text(edit);
    if (t.size() > 11 && t.substr(t.size() - 12) == " LogFile.txt") proposed = true;
  }
  EXPECT_TRUE(proposed) << "a log-file name was proposed";

  e2e::ClickAt(Label("Save Log"), 5, 5);
  EXPECT_EQ(AnswerQuestion(IDNO), "Do you want to Run all the tests before going on?");
  std::string bytes = SaveLog("velmora_e2e_log.txt");
  EXPECT_EQ(bytes.rfind("Velmora LogFile Vs.", 0), 0u);
  EXPECT_NE(bytes.find("\r\r\n" + std::string(60, '=') + "\r\nDriver Registry:No drivers registered\r\n" +
                       std::string(60, '=') + "\r\n" + text),
            std::string::npos);
  e2e::SaveWindowImage(main, ShotPath("page2_saved"));

  // The log was saved, so the Drivers page asks nothing.
  e2e::ClickAt(Label("Drivers"), 5, 5);
  HWND drivers = Button("Hardware Acceleration Drivers registered");
  ASSERT_TRUE(ShownOnScreen(drivers));
  EXPECT_EQ(program->WaitMessageBox("Just Checking!", 300), nullptr);
  e2e::Press(drivers);
  HWND list = nullptr;
  for (HWND l : e2e::FindControls(main, "ListBox"))
    if (GetWindowLongA(l, GWL_STYLE) & LBS_USETABSTOPS) list = l;
  ASSERT_NE(list, nullptr);
  ASSERT_TRUE(e2e::WaitFor([&] { return SendMessageA(list, LB_GETCOUNT, 0, 0) == 1; }, 5000));
  // Item texts do not cross process borders reliably; their length does.
  EXPECT_EQ(SendMessageA(list, LB_GETTEXTLEN, 0, 0),
            static_cast<LRESULT>(strlen("No drivers registered")));
  Quit();
}

TEST_F(Velmora, RunsPointSizeTwiceAndTheInteractionTest) {
  e2e::Press(Button("Next >>"));
  AnswerQuestion(IDNO);
  ASSERT_TRUE(ShownOnScreen(Button("Point Size")));
  HWND report = ReportBox();

  struct Run {
    int answer;
    const char* label;
  } runs[] = {{IDYES, "OK (#"}, {IDNO, "Error -1 (#"}};
  for (const auto& run : runs) {
    SCOPED_TRACE(run.label);
    e2e::Press(Button("Point Size"));
    HWND notice = program->WaitMessageBox("Point Size");
    ASSERT_NE(notice, nullptr);
    EXPECT_EQ(e2e::MessageBoxText(notice), "Please wait until the check window disappears (5 sec.)");
    e2e::Answer(notice, IDOK);
    HWND testWindow = program->WaitWindow("GLTest_frm", "Point Size Velmora");
    ASSERT_NE(testWindow, nullptr);
    ASSERT_TRUE(e2e::WaitFor([&] { return !IsWindow(testWindow); }, 20000)) << "closed by itself";
    HWND question = program->WaitMessageBox("Point Size");
    ASSERT_NE(question, nullptr);
    EXPECT_EQ(e2e::MessageBoxText(question),
              "Did you see a point (of circular/quadrangular shape), zooming in?");
    e2e::Answer(question, run.answer);
    ASSERT_TRUE(e2e::WaitFor([&] {
      return e2e::Text(report).find(std::string("Point Size:         \t") + run.label) != std::string::npos;
    }, 20000));
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
  HWND question = program->WaitMessageBox("Interaction");
  ASSERT_NE(question, nullptr);
  e2e::Answer(question, IDYES);
  EXPECT_TRUE(e2e::WaitFor([&] {
    return e2e::Text(report).find("Interaction:        \tOK (#") != std::string::npos;
  }, 20000));
  Quit();
}

TEST_F(Velmora, ClosingTheWindowEndsTheProgram) {
  PostMessageA(main, WM_CLOSE, 0, 0);
  EXPECT_TRUE(program->WaitExit(10000));
}

}  // namespace
