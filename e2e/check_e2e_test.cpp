// VelmoraCheck.exe run as its own process: the same report and log as the main window's, its
// exit codes, and its output files when they cannot be written.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include <cstdio>
#include <string>

#include "e2e/fixture.h"

namespace {

using e2e::BuildDir;
using e2e::ReadFileBytes;
using nlohmann::json;

std::string CheckExe() { return BuildDir() + "\\VelmoraCheck.exe"; }

// Runs VelmoraCheck.exe with `args` in the build folder.
e2e::CapturedRun RunCheck(const std::string& args, const std::string& exe = CheckExe()) {
  return e2e::RunCaptured(exe, args, BuildDir());
}

// Runs it with `args` and "--json" into a file of the build folder; the file parsed (discarded
// when it does not parse).
json RunForJson(const std::string& args, e2e::CapturedRun& run) {
  const std::string path = BuildDir() + "\\velmora_check.json";
  DeleteFileA(path.c_str());
  run = RunCheck(args + " --json velmora_check.json");
  json j = json::parse(ReadFileBytes(path), nullptr, false);
  DeleteFileA(path.c_str());
  return j;
}

// The first pixel format of the display whose flags `usable` accepts; 0 if none.
template <class F>
int FirstFormat(F usable) {
  HDC screen = GetDC(nullptr);
  int found = 0;
  for (int i = 1, n = DescribePixelFormat(screen, 1, 0, nullptr); i <= n && !found; ++i) {
    PIXELFORMATDESCRIPTOR pfd{};
    DescribePixelFormat(screen, i, sizeof pfd, &pfd);
    if (usable(pfd.dwFlags)) found = i;
  }
  ReleaseDC(nullptr, screen);
  return found;
}

using CheckAgainstVelmora = e2e::VelmoraTest;

TEST_F(CheckAgainstVelmora, PrintsTheReportAndWritesTheLogAsTheMainWindowDoes) {
  const std::string shown = CheckSpecifications();
  ASSERT_EQ(shown.rfind("Computer: ", 0), 0u) << shown;
  e2e::ClickAt(Label("Save Log"), 5, 5);
  AnswerQuestion(IDNO);
  const std::string guiLog = SaveLog("velmora_check_gui_log.txt");
  Quit();

  const std::string cliLog = BuildDir() + "\\velmora_check_cli_log.txt";
  DeleteFileA(cliLog.c_str());
  e2e::CapturedRun run = RunCheck("--no-tests --log velmora_check_cli_log.txt");
  ASSERT_TRUE(run.started) << CheckExe();
  EXPECT_EQ(run.out.substr(0, shown.size()), shown) << "not the report the main window showed";
  EXPECT_EQ(run.out.compare(shown.size(), 11, "\r\nWindows: "), 0) << "the real Windows follows";
  EXPECT_NE(run.out.find("\r\nDisplay adapters:\r\nAdapter 1: "), std::string::npos);
  EXPECT_NE(run.out.find("\r\nNotes:\r\n"), std::string::npos);
  const std::string written = ReadFileBytes(cliLog);
  DeleteFileA(cliLog.c_str());
  // The first line holds the time of writing: equal up to the date, and after the line.
  const size_t header = std::string("Velmora LogFile Vs.1.0.0.1  ").size();
  EXPECT_EQ(written.substr(0, header), guiLog.substr(0, header));
  const size_t cliEnd = written.find('\n'), guiEnd = guiLog.find('\n');
  ASSERT_TRUE(cliEnd != std::string::npos && guiEnd != std::string::npos);
  EXPECT_EQ(written.substr(cliEnd), guiLog.substr(guiEnd));
  EXPECT_NE(written.find(shown, cliEnd), std::string::npos);
}

TEST(VelmoraCheck, BadCommandLinesEndWithCode64) {
  for (const char* args :
       {"--frobnicate", "--mode", "--mode 0", "--mode fast", "--mode 99999", "--log"}) {
    SCOPED_TRACE(args);
    e2e::CapturedRun run = RunCheck(std::string("--no-tests ") + args);
    ASSERT_TRUE(run.started);
    EXPECT_EQ(run.exitCode, 64u);
    EXPECT_EQ(run.out, "") << "nothing on stdout";
  }
}

TEST(VelmoraCheck, ExitCodeFollowsTheVerdictsItReports) {
  e2e::CapturedRun run;
  json j = RunForJson("", run);
  ASSERT_TRUE(run.started);
  ASSERT_FALSE(j.is_discarded()) << "the JSON does not parse";
  ASSERT_EQ(j["tests"].size(), 13u);
  bool allPassed = j["quadView"]["status"] == 1 && j["quadView"]["verdict"]["passed"] == true;
  for (const auto& t : j["tests"]) {
    EXPECT_NE(run.out.find(t["name"].get<std::string>() + " "), std::string::npos)
        << "a progress line per test";
    allPassed = allPassed && t["errorCode"] == 0 && t["verdict"]["passed"] == true;
  }
  const std::string cls = j["opengl"]["pixelFormat"]["class"];
  DWORD expected = !allPassed ? 2 : cls == "software" ? 1 : 0;
  EXPECT_EQ(run.exitCode, expected) << run.out;
  EXPECT_EQ(run.exitCode, 0u) << "this driver's formats are ICD and every scene draws right";
  EXPECT_EQ(j["verdict"]["exitCode"], expected);
  EXPECT_NE(run.out.find("\r\nGeneral Tests:\r\n"), std::string::npos);
}

// A format that cannot draw into a window makes the test windows fail for real, whatever the
// pictures' checks say.
TEST(VelmoraCheck, AFormatThatCannotDrawFailsTheTests) {
  int unusable = FirstFormat([](DWORD flags) {
    return !(flags & PFD_DRAW_TO_WINDOW) || !(flags & PFD_SUPPORT_OPENGL);
  });
  if (!unusable) GTEST_SKIP() << "every pixel format of this display can draw into a window";
  e2e::CapturedRun run = RunCheck("--quiet --mode " + std::to_string(unusable));
  ASSERT_TRUE(run.started);
  EXPECT_EQ(run.exitCode, 2u) << "format " << unusable << "\n" << run.out;
}

// A generic format that draws into a window is software rendering: with nothing failed, that
// is exit code 1.
TEST(VelmoraCheck, AGenericFormatEndsWithCode1) {
  int generic = FirstFormat([](DWORD flags) {
    const DWORD needed = PFD_DRAW_TO_WINDOW | PFD_SUPPORT_OPENGL | PFD_GENERIC_FORMAT;
    return (flags & needed) == needed && !(flags & PFD_GENERIC_ACCELERATED);
  });
  if (!generic) GTEST_SKIP() << "this display has no generic window format";
  e2e::CapturedRun run;
  json j = RunForJson("--no-tests --quiet --mode " + std::to_string(generic), run);
  ASSERT_TRUE(run.started);
  EXPECT_EQ(run.exitCode, 1u) << "format " << generic;
  ASSERT_FALSE(j.is_discarded());
  EXPECT_EQ(j["opengl"]["pixelFormat"]["class"], "software");
  EXPECT_NE(run.out.find("\r\n Software \r\n"), std::string::npos) << "the report says so too";
}

// The prefix set to Windows 10 as winecfg sets it: the report keeps what GetVersionExA
// answers, the JSON names the Windows that runs.
TEST(VelmoraCheck, TheJsonNamesTheRealWindowsAndTheReportKeepsTheAnsweredOne) {
  if (!e2e::RunCommand("winecfg.exe -v win10", 30000))
    GTEST_SKIP() << "winecfg is not here: not under Wine";
  e2e::CapturedRun run;
  json j = RunForJson("--no-tests --quiet --profiles", run);
  e2e::RunCommand("winecfg.exe -v win7", 30000);
  ASSERT_TRUE(run.started);
  ASSERT_FALSE(j.is_discarded());
  EXPECT_EQ(j["windows"]["major"], 10);
  EXPECT_EQ(j["windows"]["build"], 18362);
  const std::string line = j["windows"]["line"];
  EXPECT_NE(line.find("build 18362"), std::string::npos);
  EXPECT_NE(run.out.find("\r\nVersion:  (Build 9200)\r\n"), std::string::npos)
      << "the report shows what GetVersionExA answers:\n" << run.out.substr(0, 300);
  EXPECT_NE(run.out.find("\r\nWindows: " + line + "\r\n"), std::string::npos);
  EXPECT_NE(run.out.find("Windows answers older programs as Windows 8 (build 9200)"),
            std::string::npos)
      << "the notes say so";
}

// Mesa offers core and compatibility profiles of 4.5; asking for them changes nothing of the
// report that follows.
TEST(VelmoraCheck, FindsTheDriversProfilesAndTheReportStaysTheSame) {
  e2e::CapturedRun probed;
  json j = RunForJson("--no-tests --quiet --profiles", probed);
  e2e::CapturedRun plain = RunCheck("--no-tests --quiet");
  ASSERT_TRUE(probed.started && plain.started);
  ASSERT_FALSE(j.is_discarded());
  const auto& p = j["opengl_profiles"];
  ASSERT_TRUE(p.is_object());
  ASSERT_TRUE(p["core"].is_object()) << p.dump();
  EXPECT_GE(p["core"]["major"].get<int>() * 10 + p["core"]["minor"].get<int>(), 32);
  EXPECT_FALSE(p["core"]["shadingLanguageVersion"].get<std::string>().empty());
  ASSERT_TRUE(p["compatibility"].is_object());
  EXPECT_GE(p["compatibility"]["major"].get<int>(), 3);
  size_t end = plain.out.find("\r\nWindows: ");
  ASSERT_NE(end, std::string::npos);
  EXPECT_EQ(probed.out.substr(0, end), plain.out.substr(0, end)) << "the same report";
  EXPECT_NE(probed.out.find("\r\nOpenGL profiles: " + p["text"].get<std::string>() + "\r\n"),
            std::string::npos);
}

// A copy of the program under a name of its own, for which Wine is told in this prefix's
// registry to refuse opengl32.dll; other runs are not touched.
TEST(VelmoraCheck, WithoutOpenGLEndsWithCode3) {
  const std::string name = "VelmoraCheck_nogl.exe", copy = BuildDir() + "\\" + name;
  ASSERT_TRUE(CopyFileA(CheckExe().c_str(), copy.c_str(), FALSE));
  const std::string appKey = "Software\\Wine\\AppDefaults\\" + name;
  HKEY key = nullptr;
  ASSERT_EQ(RegCreateKeyExA(HKEY_CURRENT_USER, (appKey + "\\DllOverrides").c_str(), 0, nullptr,
                            0, KEY_WRITE, nullptr, &key, nullptr),
            ERROR_SUCCESS);
  RegSetValueExA(key, "opengl32", 0, REG_SZ, reinterpret_cast<const BYTE*>(""), 1);
  RegCloseKey(key);
  e2e::CapturedRun run = RunCheck("--quiet", copy);
  RegDeleteKeyA(HKEY_CURRENT_USER, (appKey + "\\DllOverrides").c_str());
  RegDeleteKeyA(HKEY_CURRENT_USER, appKey.c_str());
  DeleteFileA(copy.c_str());
  ASSERT_TRUE(run.started);
  EXPECT_EQ(run.exitCode, 3u);
  EXPECT_EQ(run.out.substr(0, 13), "DLL missing\r\n") << "the report is \"DLL missing\" alone";
  EXPECT_EQ(run.out.compare(11, 11, "\r\nWindows: "), 0);
}

TEST(VelmoraCheck, AnOutputFileThatCannotBeWrittenStaysAsItWas) {
  const std::string path = BuildDir() + "\\velmora_check_readonly.json";
  SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_NORMAL);
  if (FILE* f = fopen(path.c_str(), "wb")) {
    fputs("kept", f);
    fclose(f);
  }
  SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_READONLY);
  for (const char* args : {"--json velmora_check_readonly.json",
                           "--log C:\\velmora_no_such_folder\\log.txt", "--json bad|name.json"}) {
    SCOPED_TRACE(args);
    e2e::CapturedRun run = RunCheck(std::string("--no-tests --quiet ") + args);
    ASSERT_TRUE(run.started);
    EXPECT_EQ(run.exitCode, 73u);
  }
  EXPECT_EQ(ReadFileBytes(path), "kept");
  SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_NORMAL);
  DeleteFileA(path.c_str());
}

}  // namespace
