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

TEST(Outcome, ExitCodesFollowTheFormatAndTheVerdicts) {
  const DWORD icd = 0x25, generic = icd | 0x40;
  EXPECT_EQ(ExitCode(Decide(true, icd, true)), kExitHardwarePassed);
  EXPECT_EQ(ExitCode(Decide(true, generic, true)), kExitSoftwarePassed);
  EXPECT_EQ(ExitCode(Decide(true, generic, false)), kExitTestFailed);
  EXPECT_EQ(ExitCode(Decide(false, icd, false)), kExitNoOpenGL);
  // Every test and the quad view must pass.
  const TestSummary good{"Point Size", 51, 0, "OK (#1)", Verdict(true)};
  const QuadSummary quad{1, "3", "OK (#1)", "", Verdict(true)};
  EXPECT_TRUE(AllPassed({}, std::nullopt)) << "nothing run is vacuously passed";
  EXPECT_TRUE(AllPassed({good}, quad));
  EXPECT_FALSE(AllPassed({{"Point Size", 51, 21, "", Verdict(true)}}, quad)) << "the window";
  EXPECT_FALSE(AllPassed({{"Point Size", 51, 0, "", Verdict(false)}}, quad)) << "the picture";
  EXPECT_FALSE(AllPassed({{"Point Size", 51, 0, "", {}}}, quad)) << "no checks is no pass";
  EXPECT_FALSE(AllPassed({good}, QuadSummary{2, "3", "", "", Verdict(true)}));
}

TEST(ComposeJson, ParsesBackWithTheFieldsAndUtf8Text) {
  CheckSummary s;
  s.machine.ComputerName = "PC\xE9";  // e acute in the Western code page
  s.openglLoaded = s.contextMade = true;
  s.flags = 0x25 | 0x40;
  s.probe.limits = {{"GL_MAX_TEXTURE_SIZE", {2048}}, {"GL_MAX_VIEWPORT_DIMS", {4096, 2048}}};
  s.probe.gaps = {{"WGL_EXT_swap_control", {"wglSwapIntervalEXT"}}};
  s.testsRun = true;
  s.tests = {{"Point Size", 51, 0, "Error -1 (#3)", Verdict(false)}};
  s.driverFiles = {{"C:\\windows\\system32\\X.DLL", report::DriverFileInfo{"Co", "Desc", "1.2"}},
                   {"C:\\windows\\system32\\Y.DLL", std::nullopt}};
  json j = json::parse(ComposeJson(s));
  EXPECT_EQ(j["opengl"]["pixelFormat"]["class"], "software");
  EXPECT_EQ(j["opengl"]["limits"]["GL_MAX_VIEWPORT_DIMS"], json({4096, 2048}));
  EXPECT_EQ(j["opengl"]["limits"]["GL_MAX_TEXTURE_SIZE"], 2048);
  EXPECT_TRUE(j["opengl"]["wglExtensions"].is_null());
  EXPECT_EQ(j["opengl"]["unresolvedEntryPoints"][0]["unresolved"][0], "wglSwapIntervalEXT");
  EXPECT_EQ(j["tests"][0]["verdict"]["checks"][0]["saw"], "ramp stopped at step 30 of 51");
  EXPECT_TRUE(j["quadView"].is_null());
  EXPECT_EQ(j["drivers"]["files"][0]["version"]["version"], "1.2");
  EXPECT_TRUE(j["drivers"]["files"][1]["version"].is_null());
  wchar_t acute = 0;  // the computer name came through the code page into UTF-8
  MultiByteToWideChar(CP_ACP, 0, "\xE9", 1, &acute, 1);
  char utf8[8] = {};
  WideCharToMultiByte(CP_UTF8, 0, &acute, 1, utf8, sizeof utf8, nullptr, nullptr);
  EXPECT_EQ(j["machine"]["computer"], std::string("PC") + utf8);
}

}  // namespace
}  // namespace check
