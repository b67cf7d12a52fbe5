#pragma once
// Plain-language notes on why OpenGL runs the way it does on this machine,
// and the lines of the Drivers page's adapter list: pure functions of the
// gathered facts, callable without any window.
#include <windows.h>

#include <optional>
#include <string>
#include <vector>

#include "gl/pixelformat_rules.h"
#include "sysinfo/display_adapters.h"
#include "sysinfo/windows_version.h"

namespace report {

using mOpenGL::FormatClass;

struct AdapterFacts {
  std::vector<sysinfo::DisplayAdapter> Adapters;
  sysinfo::ProcessFacts Process;
  int LegacyRegistrations = 0;  // drivers found under the legacy OpenGL keys
  // From the last Specifications report; ReportRan false when there was none.
  bool ReportRan = false;
  std::string Renderer;
  std::optional<FormatClass> Class;  // nothing when no report ran
  sysinfo::LoadedOpenGL Loaded;
  // The Windows this program is told (GetVersionExA) and the one that runs.
  DWORD AnsweredMajor = 0, AnsweredMinor = 0, AnsweredBuild = 0;
  std::optional<sysinfo::RealWindowsFacts> RealWindows;
  // Whether a core profile of 3.2 or later can be made; nothing when the
  // driver was not asked.
  std::optional<bool> ModernOpenGL;
};

inline constexpr char kNoProblems[] = "No problems found.";

// The notes that apply, in the table's order; kNoProblems alone when none.
std::vector<std::string> AdapterNotes(const AdapterFacts& facts);
// The notes as the notes box shows them: one paragraph each.
std::string NotesText(const std::vector<std::string>& notes);

// The driver list that applies to this process: the Wow one for a 32-bit
// program on 64-bit Windows.
const std::vector<sysinfo::DriverFile>& ApplicableDrivers(const sysinfo::DisplayAdapter& a,
                                                          bool wow64);

// Lines of the adapter list: each adapter with its driver package and
// OpenGL driver files, then the OpenGL module that really runs.
std::vector<std::string> AdapterLines(const AdapterFacts& facts);

}  // namespace report
