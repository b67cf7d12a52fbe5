#pragma once
// Everything VelmoraCheck found, as plain data, and its JSON text.
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "check/gl_probe.h"
#include "gl/profiles.h"
#include "report/log.h"
#include "report/report.h"
#include "sysinfo/display_adapters.h"
#include "sysinfo/windows_version.h"
#include "tests/autocheck.h"

namespace check {

struct TestSummary {
  std::string name;
  int frames = 0;
  int32_t errorCode = 0;
  std::string label;  // as the report shows it
  tests::AutoVerdict verdict;
};

struct QuadSummary {
  short status = 0;
  std::string result;
  std::string label;
  std::string text;  // QuadViewText
  tests::AutoVerdict verdict;
};

struct DriverFile {
  std::string path;
  std::optional<report::DriverFileInfo> version;  // nothing: no version data
};

enum class Outcome { HardwarePassed, SoftwarePassed, TestFailed, NoOpenGL };

struct CheckSummary {
  std::string programVersion;
  report::SystemPart machine;
  bool openglLoaded = false;
  bool contextMade = false;
  std::optional<std::string> contextFailure;  // the report's error-2000 text
  int pixelFormat = 0;
  int pixelFormatCount = 0;
  DWORD flags = 0;
  int colorBits = 0, depthBits = 0;
  std::string renderer, version, vendor, extensions;
  GLProbe probe;
  bool testsRun = false;
  std::vector<TestSummary> tests;
  std::optional<QuadSummary> quadView;
  std::vector<std::string> driverLines;
  std::vector<DriverFile> driverFiles;
  std::string glErrorText;
  Outcome outcome = Outcome::NoOpenGL;
  // The Windows that really runs, the driver's highest profiles (nothing
  // when they were not asked for), the display adapters and the notes.
  sysinfo::RealWindowsFacts windows;
  std::optional<mOpenGL::Profiles> profiles;
  std::vector<sysinfo::DisplayAdapter> adapters;
  std::vector<std::string> adapterLines;
  std::vector<std::string> notes;
};

// "ICD", "MCD" or "software", as the report classifies the flags.
const char* FormatClassName(DWORD flags);

// Every test passed (vacuously when none ran): the automatic check of each
// passed and no window failed.
bool AllPassed(const std::vector<TestSummary>& tests, const std::optional<QuadSummary>& quad);
Outcome Decide(bool usableOpenGL, DWORD flags, bool allPassed);
int ExitCode(Outcome outcome);
const char* OutcomeName(Outcome outcome);

// The summary as JSON; every string is taken as ANSI code-page text and
// written as UTF-8.
std::string ComposeJson(const CheckSummary& summary);

// ANSI code-page text as UTF-8.
std::string AnsiToUtf8(const std::string& text);

}  // namespace check
