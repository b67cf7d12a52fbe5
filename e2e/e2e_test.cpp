// Starts Velmora.exe as a separate process and drives it from outside.
#include <gtest/gtest.h>

#include "e2e/driver.h"
#include "win32/ui.h"

namespace {

std::string BuildDir() { return win32::ModuleDirectory() + "\\.."; }
std::string VelmoraExe() { return BuildDir() + "\\Velmora.exe"; }
std::string ShotPath(const char* name) {
  std::string dir = BuildDir() + "\\screenshots";
  CreateDirectoryA(dir.c_str(), nullptr);
  return dir + "\\" + name + ".bmp";
}

class Velmora : public ::testing::Test {
 protected:
  void SetUp() override {
    program = std::make_unique<e2e::Program>(VelmoraExe(), BuildDir());
    ASSERT_TRUE(program->Started()) << VelmoraExe();
    main = program->WaitWindow("Velmora_Main", "Velmora");
    ASSERT_NE(main, nullptr) << "the main window did not show";
    // The pages behind the first are made once the first is on screen.
    ASSERT_TRUE(e2e::WaitFor([&] { return Button("Run All") != nullptr; }, 10000));
  }
  HWND Button(const char* caption) { return e2e::FindControl(main, "Button", caption); }
  HWND Label(const char* caption) { return e2e::FindControl(main, "Static", caption); }
  // Answers the next "Just Checking!" question and returns its text.
  std::string AnswerQuestion(int id) {
    HWND box = program->WaitMessageBox("Just Checking!");
    if (!box) return "(no question)";
    std::string text = e2e::MessageBoxText(box);
    e2e::Answer(box, id);
    e2e::WaitFor([&] { return !IsWindow(box); }, 5000);
    return text;
  }
  bool ShownOnScreen(HWND w) {
    return e2e::WaitFor([&] { return IsWindowVisible(w) != 0; }, 5000);
  }
  void Quit() {
    e2e::Press(Button("Quit"));
    DWORD code = 1;
    ASSERT_TRUE(program->WaitExit(10000, &code)) << "Quit did not end the program";
    EXPECT_EQ(code, 0u);
  }

  std::unique_ptr<e2e::Program> program;
  HWND main = nullptr;
};

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

TEST_F(Velmora, ClosingTheWindowEndsTheProgram) {
  PostMessageA(main, WM_CLOSE, 0, 0);
  EXPECT_TRUE(program->WaitExit(10000));
}

}  // namespace
