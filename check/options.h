#pragma once
// VelmoraCheck.exe's command line, read by a pure function.
#include <optional>
#include <string>
#include <vector>

namespace check {

enum class ModeChoice { HostFile, Software, Hardware, Index };

struct Options {
  ModeChoice mode = ModeChoice::HostFile;
  int index = 0;  // with ModeChoice::Index: 1 or more
  bool redraw = false;
  bool noTests = false;
  bool quiet = false;
  bool profiles = false;  // ask the driver for its highest profiles
  std::optional<std::string> logFile;
  std::optional<std::string> jsonFile;
};

struct ParsedOptions {
  std::optional<Options> options;
  std::string error;  // set when options is empty
};

// `args` without the program name.
ParsedOptions ParseOptions(const std::vector<std::string>& args);

std::string UsageText();

// Exit codes.
inline constexpr int kExitHardwarePassed = 0;
inline constexpr int kExitSoftwarePassed = 1;
inline constexpr int kExitTestFailed = 2;
inline constexpr int kExitNoOpenGL = 3;
inline constexpr int kExitUsage = 64;
inline constexpr int kExitCannotWrite = 73;

}  // namespace check
