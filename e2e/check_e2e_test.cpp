// VelmoraCheck.exe run as its own process: its exit codes and its JSON summary. (Its report and
// log beside the main window's are compared in e2e_test, its run without OpenGL in
// no_opengl_test.)
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include <cstdio>
#include <string>

#include "e2e/driver.h"

namespace {

using e2e::BuildDir;
using nlohmann::json;

e2e::CapturedRun RunCheck(const std::string& args) {
  return e2e::RunCaptured(BuildDir() + "\\VelmoraCheck.exe", args, BuildDir());
}

TEST(VelmoraCheck, ABadCommandLineEndsWithCode64AndPrintsNothing) {
  const e2e::CapturedRun run = RunCheck("--no-tests --mode fast");
  ASSERT_TRUE(run.started);
  EXPECT_EQ(run.exitCode, 64u);
  EXPECT_EQ(run.out, "");
}

// This driver's formats are ICD and every scene draws right.
TEST(VelmoraCheck, AFullRunPassesWithCode0AndTheJsonSaysWhy) {
  const std::string path = BuildDir() + "\\velmora_check.json";
  DeleteFileA(path.c_str());
  const e2e::CapturedRun run = RunCheck("--json velmora_check.json");
  json j = json::parse(e2e::ReadFileBytes(path), nullptr, false);
  DeleteFileA(path.c_str());
  ASSERT_TRUE(run.started);
  ASSERT_FALSE(j.is_discarded()) << "the JSON does not parse";
  EXPECT_EQ(run.exitCode, 0u) << run.out;
  EXPECT_EQ(j["verdict"]["exitCode"], 0);
  EXPECT_NE(run.out.find("\r\nGeneral Tests:\r\n"), std::string::npos);
  ASSERT_EQ(j["tests"].size(), 13u);
  for (const auto& t : j["tests"]) {
    const std::string name = t["name"];
    EXPECT_NE(run.out.find(name + " "), std::string::npos) << "a progress line per test";
    EXPECT_TRUE(t["errorCode"] == 0 && t["verdict"]["passed"] == true) << name;
  }
  EXPECT_TRUE(j["quadView"]["status"] == 1 && j["quadView"]["verdict"]["passed"] == true);
}

// A format that cannot draw into a window makes the test windows fail for real, whatever the
// pictures' checks say.
TEST(VelmoraCheck, AFormatThatCannotDrawFailsTheTestsWithCode2) {
  HDC screen = GetDC(nullptr);
  int unusable = 0;
  for (int i = 1, n = DescribePixelFormat(screen, 1, 0, nullptr); i <= n && !unusable; ++i) {
    PIXELFORMATDESCRIPTOR pfd{};
    DescribePixelFormat(screen, i, sizeof pfd, &pfd);
    if (!(pfd.dwFlags & PFD_DRAW_TO_WINDOW) || !(pfd.dwFlags & PFD_SUPPORT_OPENGL)) unusable = i;
  }
  ReleaseDC(nullptr, screen);
  if (!unusable) GTEST_SKIP() << "every pixel format of this display can draw into a window";
  const e2e::CapturedRun run = RunCheck("--quiet --mode " + std::to_string(unusable));
  ASSERT_TRUE(run.started);
  EXPECT_EQ(run.exitCode, 2u) << "format " << unusable << "\n" << run.out;
}

TEST(VelmoraCheck, AnOutputFileThatCannotBeWrittenEndsWithCode73AndStaysAsItWas) {
  const std::string path = BuildDir() + "\\velmora_check_readonly.json";
  SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_NORMAL);
  if (FILE* f = fopen(path.c_str(), "wb")) {
    fputs("kept", f);
    fclose(f);
  }
  SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_READONLY);
  const e2e::CapturedRun run = RunCheck("--no-tests --quiet --json velmora_check_readonly.json");
  SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_NORMAL);
  const std::string kept = e2e::ReadFileBytes(path);
  DeleteFileA(path.c_str());
  ASSERT_TRUE(run.started);
  EXPECT_EQ(run.exitCode, 73u);
  EXPECT_EQ(kept, "kept");
}

}  // namespace
