// Velmora on a machine without a usable opengl32.dll. ctest runs this
// program (and so Velmora.exe, which inherits the setting) with Wine told
// to refuse opengl32.dll.
#include <gtest/gtest.h>

#include <string>

#include "e2e/driver.h"
#include "e2e/fixture.h"

namespace {

using e2e::ShotPath;

const char kNotAvailable[] =
    "OpenGL is not available on this computer (opengl32.dll could not be loaded), "
    "so this check cannot be run.";

class VelmoraWithoutOpenGL : public e2e::VelmoraTest {
 protected:
  void SetUp() override {
    HMODULE opengl = LoadLibraryA("opengl32.dll");
    if (opengl) {
      FreeLibrary(opengl);
      GTEST_SKIP() << "opengl32.dll loads here; ctest runs this test with it disabled";
    }
    VelmoraTest::SetUp();
  }
  // Reads the box titled `title` and answers OK.
  std::string NotAvailableBox(const char* title) {
    HWND box = program->WaitMessageBox(title);
    if (!box) return "(no box)";
    std::string text = e2e::MessageBoxText(box);
    e2e::Answer(box, IDOK);
    e2e::WaitFor([&] { return !IsWindow(box); }, 5000);
    return text;
  }
};

TEST_F(VelmoraWithoutOpenGL, ReportsTheMissingDllAndStillSavesTheLogAndListsDrivers) {
  HWND report = ReportBox();
  ASSERT_NE(report, nullptr);
  e2e::Press(Button("Check Specifications"));
  ASSERT_TRUE(e2e::WaitFor([&] { return e2e::Text(report) == "DLL missing"; }, 20000))
      << e2e::Text(report);
  EXPECT_NE(e2e::FindControl(main, "Edit", "LogFile.txt"), nullptr) << "no file name proposed";
  e2e::SaveWindowImage(main, ShotPath("no_opengl_library"));

  e2e::Press(Button("Next >>"));
  EXPECT_EQ(AnswerQuestion(IDNO), "Do you want to 'Check Specifications' before going on?");
  ASSERT_TRUE(ShownOnScreen(Button("Point Size")));
  // Each verdict label is made right after its button.
  HWND pointLabel = GetWindow(Button("Point Size"), GW_HWNDNEXT);
  HWND quadLabel = GetWindow(Button("QuadView"), GW_HWNDNEXT);
  ASSERT_NE(pointLabel, nullptr);
  ASSERT_NE(quadLabel, nullptr);
  const std::string pointBefore = e2e::Text(pointLabel);
  const std::string quadBefore = e2e::Text(quadLabel);

  e2e::Press(Button("Point Size"));
  EXPECT_EQ(NotAvailableBox("Point Size"), kNotAvailable);
  e2e::Press(Button("QuadView"));
  EXPECT_EQ(NotAvailableBox("QuadView"), kNotAvailable);
  e2e::ClickAt(Label("Pixel Formats"), 5, 5);
  EXPECT_EQ(NotAvailableBox("Pixel Formats"), kNotAvailable);
  EXPECT_EQ(e2e::Text(pointLabel), pointBefore);
  EXPECT_EQ(e2e::Text(quadLabel), quadBefore);
  EXPECT_EQ(e2e::Text(report), "DLL missing");
  e2e::SaveWindowImage(main, ShotPath("no_opengl_general"));

  e2e::ClickAt(Label("Save Log"), 5, 5);
  EXPECT_EQ(AnswerQuestion(IDNO), "Do you want to Run all the tests before going on?");
  std::string bytes = SaveLog("velmora_e2e_nogl_log.txt");
  EXPECT_EQ(bytes.rfind("Velmora LogFile Vs.", 0), 0u) << bytes;
  const std::string tail = std::string(60, '=') + "\r\nDLL missing\r\n";
  EXPECT_TRUE(bytes.size() >= tail.size() && bytes.substr(bytes.size() - tail.size()) == tail)
      << bytes;

  e2e::ClickAt(Label("Drivers"), 5, 5);
  HWND drivers = Button("Hardware Acceleration Drivers registered");
  ASSERT_TRUE(ShownOnScreen(drivers));
  e2e::Press(drivers);
  HWND list = nullptr;
  for (HWND l : e2e::FindControls(main, "ListBox"))
    if (GetWindowLongA(l, GWL_STYLE) & LBS_USETABSTOPS) list = l;
  ASSERT_NE(list, nullptr);
  EXPECT_TRUE(e2e::WaitFor([&] { return SendMessageA(list, LB_GETCOUNT, 0, 0) == 1; }, 5000));
  e2e::SaveWindowImage(main, ShotPath("no_opengl_drivers"));
  Quit();
}

}  // namespace
