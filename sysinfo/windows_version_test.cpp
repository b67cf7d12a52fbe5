#include "sysinfo/windows_version.h"

#include <gtest/gtest.h>

namespace {

using sysinfo::RealWindowsFacts;

RealWindowsFacts Facts(DWORD major, DWORD minor, DWORD build, const char* product, const char* display,
                       std::optional<DWORD> ubr, bool is64) {
  RealWindowsFacts f;
  f.Major = major, f.Minor = minor, f.Build = build;
  f.ProductName = product;
  f.DisplayVersion = display;
  f.UBR = ubr;
  f.Is64Bit = is64;
  return f;
}

TEST(RealWindowsLine, Table) {
  RealWindowsFacts releaseIdOnly = Facts(10, 0, 19042, "Windows 10 Enterprise", "", 1288, true);
  releaseIdOnly.ReleaseId = "2009";
  RealWindowsFacts noName = Facts(10, 0, 0, "", "", std::nullopt, false);
  noName.EditionID = "Professional";
  noName.CurrentBuild = "19045";
  RealWindowsFacts nothing;
  const struct {
    const char* name;
    RealWindowsFacts facts;
    const char* line;
  } cases[] = {
      {"7", Facts(6, 1, 7601, "Windows 7 Professional", "", std::nullopt, true),
       "Windows 7 Professional (build 7601, 64-bit)"},
      {"8.1", Facts(6, 3, 9600, "Windows 8.1 Pro", "", 20778, false),
       "Windows 8.1 Pro (build 9600.20778, 32-bit)"},
      {"10", Facts(10, 0, 19045, "Windows 10 Pro", "22H2", 3803, true),
       "Windows 10 Pro 22H2 (build 19045.3803, 64-bit)"},
      {"11 still calls itself 10", Facts(10, 0, 22631, "Windows 10 Pro", "23H2", 2861, true),
       "Windows 11 Pro 23H2 (build 22631.2861, 64-bit)"},
      {"Server", Facts(10, 0, 20348, "Windows Server 2022 Datacenter", "21H2", 2113, true),
       "Windows Server 2022 Datacenter 21H2 (build 20348.2113, 64-bit)"},
      {"Server of an 11-era build keeps its name",
       Facts(10, 0, 26100, "Windows Server 2025 Standard", "24H2", 1742, true),
       "Windows Server 2025 Standard 24H2 (build 26100.1742, 64-bit)"},
      {"release id when no display version", releaseIdOnly,
       "Windows 10 Enterprise 2009 (build 19042.1288, 64-bit)"},
      {"no product name, build from the key", noName, "Windows 10.0 Professional (build 19045, 32-bit)"},
      {"nothing known", nothing, "Windows (build unknown, 32-bit)"},
      {"Wine set to Windows 10", Facts(10, 0, 18362, "Microsoft Windows 10", "", std::nullopt, false),
       "Microsoft Windows 10 (build 18362, 32-bit)"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(sysinfo::RealWindowsLine(c.facts), c.line);
  }
}

TEST(CaptureRealWindows, KnowsTheRunningKernel) {
  RealWindowsFacts f = sysinfo::CaptureRealWindows();
  EXPECT_GE(f.Major, 5u);
  EXPECT_GT(f.Build, 0u);
  OSVERSIONINFOA answered{};
  answered.dwOSVersionInfoSize = sizeof answered;
  ASSERT_TRUE(GetVersionExA(&answered));
  EXPECT_GE(f.Major * 100 + f.Minor, answered.dwMajorVersion * 100 + answered.dwMinorVersion)
      << "never older than what this program is told";
}

}  // namespace
