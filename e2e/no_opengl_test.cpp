// Velmora on a machine without a usable opengl32.dll: ctest runs this program (and so the
// programs it starts) with Wine told to refuse the DLL.
#include <gtest/gtest.h>

#include <string>

#include "e2e/fixture.h"

namespace {

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

TEST_F(VelmoraWithoutOpenGL, ReportsTheMissingDllSavesTheLogListsDriversAndCheckEndsWithCode3) {
  ASSERT_EQ(CheckSpecifications("DLL missing"), "DLL missing");
  e2e::Press(Button("Next >>"));
  AnswerQuestion(IDNO);
  ASSERT_TRUE(ShownOnScreen(Button("Point Size")));
  HWND label = GetWindow(Button("Point Size"), GW_HWNDNEXT);  // made right after its button
  ASSERT_NE(label, nullptr);
  const std::string before = e2e::Text(label);
  e2e::Press(Button("Point Size"));
  EXPECT_EQ(AnswerQuestion(IDOK, "Point Size"),
            "OpenGL is not available on this computer (opengl32.dll could not be loaded), "
            "so this check cannot be run.");
  EXPECT_EQ(e2e::Text(label), before);

  const std::string bytes = SaveLog("velmora_e2e_nogl_log.txt");
  const std::string tail = std::string(60, '=') + "\r\nDLL missing\r\n";
  EXPECT_EQ(bytes.rfind("Velmora LogFile Vs.", 0), 0u) << bytes;
  EXPECT_TRUE(bytes.ends_with(tail)) << bytes;
  e2e::ClickAt(Label("Drivers"), 5, 5);
  HWND drivers = Button("Hardware Acceleration Drivers registered");
  ASSERT_TRUE(ShownOnScreen(drivers));
  e2e::Press(drivers);
  HWND list = nullptr;  // the registered drivers, the only list with tab stops
  for (HWND l : e2e::FindControls(main, "ListBox"))
    if (GetWindowLongA(l, GWL_STYLE) & LBS_USETABSTOPS) list = l;
  EXPECT_TRUE(e2e::WaitFor([&] { return SendMessageA(list, LB_GETCOUNT, 0, 0) == 1; }, 5000));
  Quit();

  // VelmoraCheck.exe is refused the DLL too: the report alone, then the real Windows.
  const e2e::CapturedRun run =
      e2e::RunCaptured(e2e::BuildDir() + "\\VelmoraCheck.exe", "--quiet", e2e::BuildDir());
  ASSERT_TRUE(run.started);
  EXPECT_EQ(run.exitCode, 3u);
  EXPECT_EQ(run.out.substr(0, 22), "DLL missing\r\nWindows: ") << run.out;
}

}  // namespace
