// VelmoraCheck.exe run as its own process: the same report and log as the
// main window's, its exit codes, and its output files when they cannot be
// written.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include <cstdio>
#include <string>

#include "e2e/fixture.h"
#include "win32/handle.h"

namespace {

using e2e::BuildDir;

using CheckRun = e2e::CapturedRun;

std::string CheckExe() { return BuildDir() + "\\VelmoraCheck.exe"; }

// Runs VelmoraCheck.exe with `args` in the build folder.
CheckRun RunCheck(const std::string& args, const std::string& exe = CheckExe()) {
  return e2e::RunCaptured(exe, args, BuildDir());
}

using e2e::ReadFileBytes;

// The log without its first line, which holds the time of writing.
std::string AfterHeader(const std::string& log) {
  size_t end = log.find('\n');
  return end == std::string::npos ? std::string() : log.substr(end + 1);
}
std::string HeaderBeforeDate(const std::string& log) {
  return log.substr(0, std::string("Velmora LogFile Vs.1.0.0.1  ").size());
}

using CheckAgainstVelmora = e2e::VelmoraTest;

TEST_F(CheckAgainstVelmora, PrintsTheReportAndWritesTheLogAsTheMainWindowDoes) {
  HWND report = ReportBox();
  ASSERT_NE(report, nullptr);
  e2e::Press(Button("Check Specifications"));
  ASSERT_TRUE(e2e::WaitFor([&] { return e2e::Text(report).rfind("Computer: ", 0) == 0; }, 20000));
  const std::string shown = e2e::Text(report);
  e2e::ClickAt(Label("Save Log"), 5, 5);
  AnswerQuestion(IDNO);
  const std::string guiLog = SaveLog("velmora_check_gui_log.txt");
  Quit();

  const std::string cliLog = BuildDir() + "\\velmora_check_cli_log.txt";
  DeleteFileA(cliLog.c_str());
  CheckRun run = RunCheck("--no-tests --log velmora_check_cli_log.txt");
  ASSERT_TRUE(run.started) << CheckExe();
  EXPECT_EQ(run.out.substr(0, shown.size()), shown) << "the report differs from the one the main window showed";
  EXPECT_EQ(run.out.compare(shown.size(), 11, "\r\nWindows: "), 0) << "the real Windows follows the report";
  EXPECT_NE(run.out.find("\r\nDisplay adapters:\r\nAdapter 1: "), std::string::npos);
  EXPECT_NE(run.out.find("\r\nNotes:\r\n"), std::string::npos);
  const std::string written = ReadFileBytes(cliLog);
  DeleteFileA(cliLog.c_str());
  EXPECT_EQ(HeaderBeforeDate(written), HeaderBeforeDate(guiLog));
  EXPECT_EQ(AfterHeader(written), AfterHeader(guiLog));
  EXPECT_NE(AfterHeader(written).find(shown), std::string::npos);
}

TEST(VelmoraCheck, BadCommandLinesEndWithCode64) {
  for (const char* args : {"--frobnicate", "--mode", "--mode 0", "--mode fast", "--mode 99999",
                           "--log"}) {
    SCOPED_TRACE(args);
    CheckRun run = RunCheck(std::string("--no-tests ") + args);
    ASSERT_TRUE(run.started);
    EXPECT_EQ(run.exitCode, 64u);
    EXPECT_EQ(run.out, "") << "nothing on stdout";
  }
}

TEST(VelmoraCheck, ExitCodeFollowsTheVerdictsItReports) {
  const std::string json = BuildDir() + "\\velmora_check_full.json";
  DeleteFileA(json.c_str());
  CheckRun run = RunCheck("--json velmora_check_full.json");
  ASSERT_TRUE(run.started);
  nlohmann::json j = nlohmann::json::parse(ReadFileBytes(json), nullptr, false);
  DeleteFileA(json.c_str());
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

// A format that cannot draw into a window makes the test windows fail for
// real, whatever the pictures' checks say.
TEST(VelmoraCheck, AFormatThatCannotDrawFailsTheTests) {
  HDC screen = GetDC(nullptr);
  int count = DescribePixelFormat(screen, 1, 0, nullptr);
  int unusable = 0;
  for (int i = 1; i <= count && !unusable; ++i) {
    PIXELFORMATDESCRIPTOR pfd{};
    DescribePixelFormat(screen, i, sizeof pfd, &pfd);
    if (!(pfd.dwFlags & PFD_DRAW_TO_WINDOW) || !(pfd.dwFlags & PFD_SUPPORT_OPENGL)) unusable = i;
  }
  ReleaseDC(nullptr, screen);
  if (!unusable) GTEST_SKIP() << "every pixel format of this display can draw into a window";
  CheckRun run = RunCheck("--quiet --mode " + std::to_string(unusable));
  ASSERT_TRUE(run.started);
  EXPECT_EQ(run.exitCode, 2u) << "format " << unusable << "\n" << run.out;
}

// A generic format that draws into a window is software rendering: with
// nothing failed, that is exit code 1.
TEST(VelmoraCheck, AGenericFormatEndsWithCode1) {
  HDC screen = GetDC(nullptr);
  int count = DescribePixelFormat(screen, 1, 0, nullptr);
  int generic = 0;
  for (int i = 1; i <= count && !generic; ++i) {
    PIXELFORMATDESCRIPTOR pfd{};
    DescribePixelFormat(screen, i, sizeof pfd, &pfd);
    const DWORD needed = PFD_DRAW_TO_WINDOW | PFD_SUPPORT_OPENGL | PFD_GENERIC_FORMAT;
    if ((pfd.dwFlags & needed) == needed && !(pfd.dwFlags & PFD_GENERIC_ACCELERATED)) generic = i;
  }
  ReleaseDC(nullptr, screen);
  if (!generic) GTEST_SKIP() << "this display has no generic window format";
  const std::string json = BuildDir() + "\\velmora_check_generic.json";
  CheckRun run = RunCheck("--no-tests --quiet --json velmora_check_generic.json --mode " +
                          std::to_string(generic));
  nlohmann::json j = nlohmann::json::parse(ReadFileBytes(json), nullptr, false);
  DeleteFileA(json.c_str());
  ASSERT_TRUE(run.started);
  EXPECT_EQ(run.exitCode, 1u) << "format " << generic;
  ASSERT_FALSE(j.is_discarded());
  EXPECT_EQ(j["opengl"]["pixelFormat"]["class"], "software");
  EXPECT_NE(run.out.find("\r\n Software \r\n"), std::string::npos) << "the report says so too";
}

// The prefix set to Windows 10 as winecfg sets it: the report keeps what
// GetVersionExA answers, the JSON names the Windows that runs.
TEST(VelmoraCheck, TheJsonNamesTheRealWindowsAndTheReportKeepsTheAnsweredOne) {
  auto winecfg = [](const char* version) {
    STARTUPINFOA si{};
    si.cb = sizeof si;
    PROCESS_INFORMATION pi{};
    std::string cmd = std::string("winecfg.exe -v ") + version;
    if (!CreateProcessA(nullptr, cmd.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &si, &pi))
      return false;
    WaitForSingleObject(pi.hProcess, 30000);
    CloseHandle(pi.hThread);
    CloseHandle(pi.hProcess);
    return true;
  };
  if (!winecfg("win10")) GTEST_SKIP() << "winecfg is not here: not under Wine";
  const std::string json = BuildDir() + "\\velmora_check_win10.json";
  CheckRun run = RunCheck("--no-tests --quiet --profiles --json velmora_check_win10.json");
  winecfg("win7");
  nlohmann::json j = nlohmann::json::parse(ReadFileBytes(json), nullptr, false);
  DeleteFileA(json.c_str());
  ASSERT_TRUE(run.started);
  ASSERT_FALSE(j.is_discarded());
  EXPECT_EQ(j["windows"]["major"], 10);
  EXPECT_EQ(j["windows"]["build"], 18362);
  EXPECT_NE(j["windows"]["line"].get<std::string>().find("build 18362"), std::string::npos);
  EXPECT_NE(run.out.find("\r\nVersion:  (Build 9200)\r\n"), std::string::npos)
      << "the report shows what GetVersionExA answers:\n" << run.out.substr(0, 300);
  EXPECT_NE(run.out.find("\r\nWindows: " + j["windows"]["line"].get<std::string>() + "\r\n"),
            std::string::npos);
  EXPECT_NE(run.out.find("Windows answers older programs as Windows 8 (build 9200)"), std::string::npos)
      << "the notes say so";
}

// Mesa offers core and compatibility profiles of 4.5; asking for them
// changes nothing of the report that follows.
TEST(VelmoraCheck, FindsTheDriversProfilesAndTheReportStaysTheSame) {
  const std::string json = BuildDir() + "\\velmora_check_profiles.json";
  CheckRun probed = RunCheck("--no-tests --quiet --profiles --json velmora_check_profiles.json");
  CheckRun plain = RunCheck("--no-tests --quiet");
  nlohmann::json j = nlohmann::json::parse(ReadFileBytes(json), nullptr, false);
  DeleteFileA(json.c_str());
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

// A copy of the program under a name of its own, for which Wine is told in
// this prefix's registry to refuse opengl32.dll; other runs are not touched.
TEST(VelmoraCheck, WithoutOpenGLEndsWithCode3) {
  const std::string name = "VelmoraCheck_nogl.exe";
  const std::string copy = BuildDir() + "\\" + name;
  ASSERT_TRUE(CopyFileA(CheckExe().c_str(), copy.c_str(), FALSE));
  const std::string appKey = "Software\\Wine\\AppDefaults\\" + name;
  HKEY key = nullptr;
  ASSERT_EQ(RegCreateKeyExA(HKEY_CURRENT_USER, (appKey + "\\DllOverrides").c_str(), 0, nullptr,
                            0, KEY_WRITE, nullptr, &key, nullptr),
            ERROR_SUCCESS);
  RegSetValueExA(key, "opengl32", 0, REG_SZ, reinterpret_cast<const BYTE*>(""), 1);
  RegCloseKey(key);
  CheckRun run = RunCheck("--quiet", copy);
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
  for (const std::string& args :
       {std::string("--json velmora_check_readonly.json"),
        std::string("--log C:\\velmora_no_such_folder\\log.txt"),
        std::string("--json bad|name.json")}) {
    SCOPED_TRACE(args);
    CheckRun run = RunCheck("--no-tests --quiet " + args);
    ASSERT_TRUE(run.started);
    EXPECT_EQ(run.exitCode, 73u);
  }
  EXPECT_EQ(ReadFileBytes(path), "kept");
  SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_NORMAL);
  DeleteFileA(path.c_str());
}

}  // namespace
