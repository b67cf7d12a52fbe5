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
  const DWORD icd = 0x25, generic = icd | 0x40, mcd = generic | 0x1000;
  const struct {
    const char* name;
    bool usable;
    DWORD flags;
    bool allPassed;
    int exitCode;
  } cases[] = {
      {"ICD passed", true, icd, true, kExitHardwarePassed},
      {"MCD passed", true, mcd, true, kExitHardwarePassed},
      {"software passed", true, generic, true, kExitSoftwarePassed},
      {"software failed", true, generic, false, kExitTestFailed},
      {"ICD failed", true, icd, false, kExitTestFailed},
      {"no OpenGL", false, icd, true, kExitNoOpenGL},
      {"no OpenGL, failed", false, icd, false, kExitNoOpenGL},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(ExitCode(Decide(c.usable, c.flags, c.allPassed)), c.exitCode);
  }
}

TEST(AllPassed, EveryTestAndTheQuadViewMustPass) {
  const std::vector<TestSummary> good = {{"Point Size", 51, 0, "OK (#1)", Verdict(true)}};
  const QuadSummary quadGood{1, "3", "OK (#1)", "", Verdict(true)};
  EXPECT_TRUE(AllPassed({}, std::nullopt)) << "nothing run is vacuously passed";
  EXPECT_TRUE(AllPassed(good, quadGood));
  auto failed = good;
  failed[0].errorCode = 21;
  EXPECT_FALSE(AllPassed(failed, quadGood)) << "the window failed";
  failed[0] = good[0];
  failed[0].verdict = Verdict(false);
  EXPECT_FALSE(AllPassed(failed, quadGood)) << "the picture failed";
  failed[0].verdict = {};
  EXPECT_FALSE(AllPassed(failed, quadGood)) << "a test without checks is not a pass";
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
  const std::string name = j["machine"]["computer"];
  wchar_t acute = 0, back[8] = {};
  MultiByteToWideChar(CP_ACP, 0, "\xE9", 1, &acute, 1);
  int n = MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, name.data(),
                              static_cast<int>(name.size()), back, 8);
  EXPECT_EQ(std::wstring(back, n > 0 ? n : 0), std::wstring(L"PC") + acute);
}

}  // namespace
}  // namespace check
