#include "check/summary.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <nlohmann/json.hpp>

#include "check/options.h"

namespace check {
namespace {

using nlohmann::json;

tests::AutoVerdict Verdict(bool passed) {
  return {{{"ramp", passed, passed ? "all 51 steps" : "ramp stopped at step 30 of 51"}}};
}

TEST(Decide, ExitCodesFollowTheOutcome) {
  struct Case {
    bool usable;
    DWORD flags;
    bool allPassed;
    int exitCode;
  } cases[] = {
      {true, 0x25, true, kExitHardwarePassed},           // not generic: ICD
      {true, 0x25 | 0x40 | 0x1000, true, kExitHardwarePassed},  // MCD
      {true, 0x25 | 0x40, true, kExitSoftwarePassed},
      {true, 0x25 | 0x40, false, kExitTestFailed},
      {true, 0x25, false, kExitTestFailed},
      {false, 0x25, true, kExitNoOpenGL},
      {false, 0x25, false, kExitNoOpenGL},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.flags);
    EXPECT_EQ(ExitCode(Decide(c.usable, c.flags, c.allPassed)), c.exitCode);
  }
}

TEST(AllPassed, EveryTestAndTheQuadViewMustPass) {
  std::vector<TestSummary> good = {{"Point Size", 51, 0, "OK (#1)", Verdict(true)}};
  QuadSummary quadGood{1, "3", "OK (#1)", "", Verdict(true)};
  EXPECT_TRUE(AllPassed({}, std::nullopt)) << "nothing run is vacuously passed";
  EXPECT_TRUE(AllPassed(good, quadGood));
  auto windowFailed = good;
  windowFailed[0].errorCode = 21;
  EXPECT_FALSE(AllPassed(windowFailed, quadGood));
  auto pictureFailed = good;
  pictureFailed[0].verdict = Verdict(false);
  EXPECT_FALSE(AllPassed(pictureFailed, quadGood));
  auto noChecks = good;
  noChecks[0].verdict = {};
  EXPECT_FALSE(AllPassed(noChecks, quadGood)) << "a test without checks is not a pass";
  QuadSummary quadError = quadGood;
  quadError.status = 2;
  EXPECT_FALSE(AllPassed(good, quadError));
}

TEST(ComposeJson, ParsesBackWithTheFieldsAndUtf8Text) {
  CheckSummary s;
  s.programVersion = "1.0.0.1";
  s.machine.ComputerName = "PC\xE9";  // e acute in the Western code page
  s.machine.ScreenWidth = 1024;
  s.openglLoaded = s.contextMade = true;
  s.pixelFormat = 3;
  s.pixelFormatCount = 40;
  s.flags = 0x25 | 0x40;
  s.colorBits = 24;
  s.renderer = "R \"quoted\"\ttab";
  s.probe.limits = {{"GL_MAX_TEXTURE_SIZE", {2048}}, {"GL_MAX_VIEWPORT_DIMS", {4096, 2048}}};
  s.probe.gaps = {{"WGL_EXT_swap_control", {"wglSwapIntervalEXT"}}};
  s.testsRun = true;
  s.tests = {{"Point Size", 51, 0, "Error -1 (#3)", Verdict(false)}};
  s.quadView = QuadSummary{1, "3", "OK (#3)", "\r\n  Form Resize", Verdict(true)};
  s.driverLines = {"No drivers registered"};
  s.driverFiles = {{"C:\\windows\\system32\\X.DLL", report::DriverFileInfo{"Co", "Desc", "1.2"}}};
  s.glErrorText = "\r\nAPI Error: 5";
  s.outcome = Decide(true, s.flags, AllPassed(s.tests, s.quadView));

  json j = json::parse(ComposeJson(s));
  EXPECT_EQ(j["program"]["version"], "1.0.0.1");
  EXPECT_EQ(j["machine"]["screen"]["width"], 1024);
  EXPECT_EQ(j["opengl"]["pixelFormat"]["index"], 3);
  EXPECT_EQ(j["opengl"]["pixelFormat"]["class"], "software");
  EXPECT_EQ(j["opengl"]["pixelFormat"]["colorBits"], 24);
  EXPECT_EQ(j["opengl"]["pixelFormatCount"], 40);
  EXPECT_EQ(j["opengl"]["strings"]["renderer"], s.renderer);
  EXPECT_EQ(j["opengl"]["limits"]["GL_MAX_VIEWPORT_DIMS"], json({4096, 2048}));
  EXPECT_EQ(j["opengl"]["limits"]["GL_MAX_TEXTURE_SIZE"], 2048);
  EXPECT_TRUE(j["opengl"]["wglExtensions"].is_null());
  EXPECT_EQ(j["opengl"]["unresolvedEntryPoints"][0]["unresolved"][0], "wglSwapIntervalEXT");
  EXPECT_EQ(j["verdict"]["exitCode"], kExitTestFailed);
  EXPECT_EQ(j["tests"][0]["verdict"]["checks"][0]["saw"], "ramp stopped at step 30 of 51");
  EXPECT_EQ(j["tests"][0]["verdict"]["passed"], false);
  EXPECT_EQ(j["quadView"]["status"], 1);
  EXPECT_EQ(j["drivers"]["files"][0]["version"]["version"], "1.2");
  EXPECT_EQ(j["deviceFailures"], s.glErrorText);

  // The computer name came through the code page into UTF-8.
  std::string name = j["machine"]["computer"];
  wchar_t expected = 0;
  MultiByteToWideChar(CP_ACP, 0, "\xE9", 1, &expected, 1);
  if (GetACP() == 1252) {
    EXPECT_EQ(name, "PC\xC3\xA9");
  }
  wchar_t back[8] = {};
  int n = MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, name.data(),
                              static_cast<int>(name.size()), back, 8);
  ASSERT_EQ(n, 3);
  EXPECT_EQ(back[2], expected);
}

}  // namespace
}  // namespace check
