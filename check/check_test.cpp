// VelmoraCheck's pieces: its command line, the extension probe, the verdict and the JSON.
#include <gtest/gtest.h>
#include <windows.h>

#include <nlohmann/json.hpp>

#include <set>
#include <string>
#include <utility>
#include <vector>

#include "check/gl_probe.h"
#include "check/options.h"
#include "check/summary.h"

namespace check {
namespace {

using nlohmann::json;

TEST(ParseOptions, ModesFlagsAndFilesInAnyOrder) {
  using M = ModeChoice;
  auto mode = [](const std::vector<std::string>& args) {
    ParsedOptions p = ParseOptions(args);
    return p.options ? std::pair(p.options->mode, p.options->index) : std::pair(M::HostFile, -1);
  };
  EXPECT_EQ(mode({"--mode", "software"}), std::pair(M::Software, 0));
  EXPECT_EQ(mode({"--mode", "2147483647"}), std::pair(M::Index, 2147483647));
  ParsedOptions p = ParseOptions({"--quiet", "--json", "out.json", "--redraw", "--log",
                                  "C:\\x y\\log.txt", "--no-tests", "--profiles"});
  ASSERT_TRUE(p.options) << p.error;
  EXPECT_TRUE(p.options->quiet && p.options->redraw && p.options->noTests && p.options->profiles);
  EXPECT_EQ(p.options->jsonFile.value_or(""), "out.json");
  EXPECT_EQ(p.options->logFile.value_or(""), "C:\\x y\\log.txt");
}

TEST(ParseOptions, RefusedLinesNameTheirFault) {
  const std::pair<std::vector<std::string>, const char*> cases[] = {
      {{"--mode", "2147483648"}, "2147483648"},   {{"--mode", "0"}, "--mode 0"},
      {{"--mode", "7x"}, "7x"},                   {{"--mode", "--quiet"}, "needs a value"},
      {{"--mode", "1", "--mode", "2"}, "twice"},  {{"--frobnicate"}, "--frobnicate"},
  };
  for (const auto& [args, fault] : cases) {
    ParsedOptions p = ParseOptions(args);
    EXPECT_TRUE(!p.options && p.error.find(fault) != std::string::npos)
        << testing::PrintToString(args) << ": " << p.error;
  }
}

TEST(HasExtension, WholeWordsOnly) {
  EXPECT_TRUE(HasExtension("GL_EXT_texture3Dx GL_EXT_texture3D ", "GL_EXT_texture3D"));
  EXPECT_FALSE(HasExtension("GL_ARB_multitexture_extra", "GL_ARB_multitexture"));
  EXPECT_FALSE(HasExtension("XGL_ARB_multitexture", "GL_ARB_multitexture"));
  EXPECT_FALSE(HasExtension("GL_EXT_texture3D", ""));
}

TEST(UnresolvedEntryPoints, NamesOnlyMissingEntriesOfNamedExtensionsOfBothLists) {
  const std::set<std::string> missing = {"glClientActiveTextureARB", "wglSwapIntervalEXT",
                                         "glLockArraysEXT"};  // its extension is not named
  auto gaps = UnresolvedEntryPoints("GL_EXT_texture3D GL_ARB_multitexture",
                                    "WGL_ARB_extensions_string WGL_EXT_swap_control",
                                    [&](const char* name) { return missing.count(name) == 0; });
  ASSERT_EQ(gaps.size(), 2u);
  EXPECT_EQ(gaps[0].extension, "GL_ARB_multitexture");
  EXPECT_EQ(gaps[0].unresolved, std::vector<std::string>{"glClientActiveTextureARB"});
  EXPECT_EQ(gaps[1].extension, "WGL_EXT_swap_control");
  EXPECT_EQ(gaps[1].unresolved, std::vector<std::string>{"wglSwapIntervalEXT"});
}

tests::AutoVerdict Verdict(bool passed) {
  return {{{"ramp", passed, passed ? "all 51 steps" : "ramp stopped at step 30 of 51"}}};
}

TEST(Outcome, ExitCodesFollowTheFormatAndTheVerdicts) {
  const DWORD icd = 0x25, generic = icd | 0x40;
  EXPECT_EQ(ExitCode(Decide(true, generic, true)), kExitSoftwarePassed);
  EXPECT_EQ(ExitCode(Decide(true, generic, false)), kExitTestFailed);
  const QuadSummary quad{1, "3", "OK (#1)", "", Verdict(true)};
  EXPECT_TRUE(AllPassed({}, std::nullopt)) << "nothing run is vacuously passed";
  EXPECT_TRUE(AllPassed({{"Point Size", 51, 0, "OK (#1)", Verdict(true)}}, quad));
  EXPECT_FALSE(AllPassed({{"Point Size", 51, 21, "", Verdict(true)}}, quad)) << "the window";
  EXPECT_FALSE(AllPassed({{"Point Size", 51, 0, "", Verdict(false)}}, quad)) << "the picture";
  EXPECT_FALSE(AllPassed({{"Point Size", 51, 0, "", {}}}, quad)) << "no checks is no pass";
}

TEST(ComposeJson, ParsesBackWithTheFieldsAndUtf8Text) {
  CheckSummary s;
  s.machine.ComputerName = "PC\xE9";  // e acute in the Western code page
  s.contextMade = true;
  s.flags = 0x25 | 0x40;
  s.probe.limits = {{"GL_MAX_TEXTURE_SIZE", {2048}}, {"GL_MAX_VIEWPORT_DIMS", {4096, 2048}}};
  s.tests = {{"Point Size", 51, 0, "Error -1 (#3)", Verdict(false)}};
  s.driverFiles = {{"C:\\windows\\system32\\X.DLL", report::DriverFileInfo{"Co", "Desc", "1.2"}},
                   {"C:\\windows\\system32\\Y.DLL", std::nullopt}};
  json j = json::parse(ComposeJson(s));
  EXPECT_EQ(j["opengl"]["pixelFormat"]["class"], "software");
  EXPECT_EQ(j["opengl"]["limits"]["GL_MAX_VIEWPORT_DIMS"], json({4096, 2048}));
  EXPECT_EQ(j["opengl"]["limits"]["GL_MAX_TEXTURE_SIZE"], 2048);
  EXPECT_EQ(j["tests"][0]["verdict"]["checks"][0]["saw"], "ramp stopped at step 30 of 51");
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
