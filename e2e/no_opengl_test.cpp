// Velmora on a machine without a usable opengl32.dll: ctest runs this program (and so the
// Velmora.exe it starts) with Wine told to refuse the DLL.
#include <gtest/gtest.h>

#include <string>

#include "e2e/fixture.h"

namespace {

const char kNotAvailable[] =
    "OpenGL is not available on this computer (opengl32.dll could not be loaded), "
    "so this check cannot be run.";

class VelmoraWithoutOpenGL : public e2e::VelmoraTest {
 protected:
  void SetUp() override {
    if (HMODULE opengl = LoadLibraryA("opengl32.dll")) {
      FreeLibrary(opengl);
      GTEST_SKIP() << "opengl32.dll loads here; ctest runs this test with it disabled";
    }
    VelmoraTest::SetUp();
  }
};

TEST_F(VelmoraWithoutOpenGL, ReportsTheMissingDllAndStillSavesTheLogAndListsDrivers) {
  ASSERT_EQ(CheckSpecifications("DLL missing"), "DLL missing");
  EXPECT_NE(e2e::FindControl(main, "Edit", "LogFile.txt"), nullptr) << "no file name proposed";
  e2e::SaveWindowImage(main, e2e::ShotPath("no_opengl_library"));

  e2e::Press(Button("Next >>"));
  EXPECT_EQ(AnswerQuestion(IDNO), "Do you want to 'Check Specifications' before going on?");
  ASSERT_TRUE(ShownOnScreen(Button("Point Size")));
  // Each verdict label is made right after its button.
  HWND pointLabel = GetWindow(Button("Point Size"), GW_HWNDNEXT);
  HWND quadLabel = GetWindow(Button("QuadView"), GW_HWNDNEXT);
  ASSERT_TRUE(pointLabel && quadLabel);
  const std::string pointBefore = e2e::Text(pointLabel), quadBefore = e2e::Text(quadLabel);
  e2e::Press(Button("Point Size"));
  EXPECT_EQ(AnswerQuestion(IDOK, "Point Size"), kNotAvailable);
  e2e::Press(Button("QuadView"));
  EXPECT_EQ(AnswerQuestion(IDOK, "QuadView"), kNotAvailable);
  e2e::ClickAt(Label("Pixel Formats"), 5, 5);
  EXPECT_EQ(AnswerQuestion(IDOK, "Pixel Formats"), kNotAvailable);
  EXPECT_EQ(e2e::Text(pointLabel), pointBefore);
  EXPECT_EQ(e2e::Text(quadLabel), quadBefore);
  EXPECT_EQ(e2e::Text(ReportBox()), "DLL missing");
  e2e::SaveWindowImage(main, e2e::ShotPath("no_opengl_general"));

  e2e::ClickAt(Label("Save Log"), 5, 5);
  EXPECT_EQ(AnswerQuestion(IDNO), "Do you want to Run all the tests before going on?");
  const std::string bytes = SaveLog("velmora_e2e_nogl_log.txt");
  EXPECT_EQ(bytes.rfind("Velmora LogFile Vs.", 0), 0u) << bytes;
  const std::string tail = std::string(60, '=') + "\r\nDLL missing\r\n";
  EXPECT_TRUE(bytes.size() >= tail.size() && bytes.substr(bytes.size() - tail.size()) == tail)
      << bytes;

  e2e::ClickAt(Label("Drivers"), 5, 5);
  HWND drivers = Button("Hardware Acceleration Drivers registered");
  ASSERT_TRUE(ShownOnScreen(drivers));
  e2e::Press(drivers);
  HWND list = DriverList();
  ASSERT_NE(list, nullptr);
  EXPECT_TRUE(e2e::WaitFor([&] { return SendMessageA(list, LB_GETCOUNT, 0, 0) == 1; }, 5000));
  e2e::SaveWindowImage(main, e2e::ShotPath("no_opengl_drivers"));
  Quit();
}

}  // namespace
