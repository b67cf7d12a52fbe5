#include "sysinfo/opsysinfo.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "sysinfo/windows_version.h"

namespace {

using sysinfo::COpSysInfo;
using sysinfo::OsVersionCapture;
using sysinfo::RealWindowsFacts;

constexpr DWORD k9x = VER_PLATFORM_WIN32_WINDOWS;
constexpr DWORD kNT = VER_PLATFORM_WIN32_NT;

OsVersionCapture Os(DWORD major, DWORD minor, DWORD build, DWORD platform, const char* csd,
                    const char* productOptions = "") {
  OsVersionCapture c;
  c.MajorVersion = major;
  c.MinorVersion = minor;
  c.BuildNumber = build;
  c.PlatformId = platform;
  c.CSDVersion = csd;
  c.ProductOptions = productOptions;
  return c;
}

OsVersionCapture WithEx(OsVersionCapture c, WORD spMajor, BYTE type, WORD suite) {
  c.ServicePackMajor = spMajor;
  c.ProductType = type;
  c.SuiteMask = suite;
  return c;
}

// The family boundaries (9x minor 9/10, 89/90; NT major 4/5, minor 0/1) are
// among the rows.
TEST(COpSysInfo, TextsTable) {
  const struct {
    const char* name;
    OsVersionCapture os;
    const char* texts;  // Platform|ID|Version|ProductID|ServicePack
  } cases[] = {
      {"95 without letter", Os(4, 0, 950, k9x, ""), "Windows 95 |Win95 ||Windows 95 |"},
      {"95 B is OSR1 but Win95b", Os(4, 0, 1111, k9x, "B"),
       "Windows 95 OSR1 |Win95b ||Windows 95 OSR1 |"},
      {"95 C", Os(4, 9, 1212, k9x, " C"), "Windows 95 OSR2 |Win95c ||Windows 95 OSR2 |"},
      {"95 other letter", Os(4, 0, 950, k9x, "X"), "Windows 95 X |Win95_X ||Windows 95 X |"},
      {"98 A padded as the system reports it", Os(4, 10, 0x040A08AE, k9x, " A "),
       "Windows 98 SE |Win98SE ||Windows 98 SE |"},
      {"98 other letter", Os(4, 89, 1998, k9x, "B"), "Windows 98 B |Win98_B ||Windows 98 B |"},
      {"Me", Os(4, 90, 3000, k9x, ""), "Windows Me  |WinME_ ||Windows Me  |"},
      {"NT 3.51 workstation from the registry, in any case",
       Os(3, 51, 1057, kNT, "Service Pack 5", "winnt"),
       "Windows NT Workstation |WinNT3 WS |v3.51Service Pack 5 (Build 1057)|"
       "Windows NT Workstation v3.51 Service Pack 5 (Build 1057)|"},
      {"NT 4 SP6 ignores its extended record",
       WithEx(Os(4, 0, 1381, kNT, "Service Pack 6", "ServerNT"), 6, VER_NT_WORKSTATION, 0x200),
       "Windows NT Server |WinNT4 S |v4.0Service Pack 6 (Build 1381)|"
       "Windows NT Server v4.0 Service Pack 6 (Build 1381)|"},
      {"NT 4 other product type gives no suffix", Os(4, 0, 1381, kNT, "", "LanmanNT"),
       "Windows NT |WinNT4 |v4.0 (Build 1381)|Windows NT v4.0  (Build 1381)|"},
      {"2000 server", WithEx(Os(5, 0, 2195, kNT, "Service Pack 4"), 4, VER_NT_SERVER, 0),
       "Windows 2000 Server |Win2k S |Service Pack 4 (Build 2195)|"
       "Windows 2000 Server Service Pack 4 (Build 2195)|v4.0"},
      {"2000 advanced server", WithEx(Os(5, 0, 2195, kNT, ""), 0, VER_NT_SERVER, 0x2),
       "Windows 2000 Advanced Server |Win2k AS | (Build 2195)|"
       "Windows 2000 Advanced Server  (Build 2195)|v0.0"},
      {"data center wins over advanced", WithEx(Os(5, 0, 2195, kNT, ""), 0, VER_NT_SERVER, 0x82),
       "Windows 2000 DataCenter Server |Win2k DS | (Build 2195)|"
       "Windows 2000 DataCenter Server  (Build 2195)|v0.0"},
      {"XP home", WithEx(Os(5, 1, 2600, kNT, "Service Pack 2"), 2, VER_NT_WORKSTATION, 0x300),
       "Windows XP Home Version |WinXP Home |Service Pack 2 (Build 2600)|"
       "Windows XP Home Version Service Pack 2 (Build 2600)|v2.0"},
      {"domain controller", WithEx(Os(5, 2, 3790, kNT, ""), 0, VER_NT_DOMAIN_CONTROLLER, 0x2),
       "Windows XP Domain Controller |WinXP DC | (Build 3790)|"
       "Windows XP Domain Controller  (Build 3790)|v0.0"},
      {"extended record without type asks the registry", Os(5, 0, 2195, kNT, "", "ServerNT"),
       "Windows 2000 Server |Win2k S | (Build 2195)|Windows 2000 Server  (Build 2195)|v0.0"},
      {"6.0 falls into the 2000 family", WithEx(Os(6, 0, 6002, kNT, ""), 0, VER_NT_WORKSTATION, 0),
       "Windows 2000 Professional Version |Win2k Pro | (Build 6002)|"
       "Windows 2000 Professional Version  (Build 6002)|v0.0"},
      {"build prints its low word, signed",
       WithEx(Os(5, 1, 0x00019C40, kNT, "x"), 0, VER_NT_WORKSTATION, 0),
       "Windows XP Professional Version |WinXP Pro |x (Build -25536)|"
       "Windows XP Professional Version x (Build -25536)|v0.0"},
      {"failed version query", OsVersionCapture{}, "Unknown Windows |Win ||Unknown Windows |"},
  };
  for (const auto& c : cases) {
    COpSysInfo os(c.os);
    EXPECT_EQ(os.Platform() + "|" + os.ID() + "|" + os.Version() + "|" + os.ProductID() + "|" +
                  os.ServicePack(),
              c.texts)
        << c.name;
  }
}

// The system the tests run on reports 6.1 build 7601 with Service Pack 1,
// product type 1 without suite bits, and "WinNT" in ProductOptions.
TEST(COpSysInfoOnThisSystem, DescribesTheRunningWindows) {
  auto captured = sysinfo::CaptureOsVersion();
  if (captured.MajorVersion != 6 || captured.MinorVersion != 1 || captured.BuildNumber != 7601)
    GTEST_SKIP() << "expects the 6.1 build 7601 system the tests are run on";
  EXPECT_EQ(captured.ProductOptions, "WinNT");
  COpSysInfo os(captured);
  EXPECT_EQ(os.CSDVersion(), "Service Pack 1");
  EXPECT_EQ(os.ProductType(), VER_NT_WORKSTATION);
  EXPECT_EQ(os.ProductID(), "Windows XP Professional Version Service Pack 1 (Build 7601)");
  EXPECT_EQ(os.ID(), "WinXP Pro ");
  EXPECT_EQ(os.ServicePack(), "v1.0");
  EXPECT_EQ(COpSysInfo().Platform(), os.Platform());
}

RealWindowsFacts Facts(DWORD major, DWORD build, const char* product, const char* display,
                       std::optional<DWORD> ubr, bool is64) {
  RealWindowsFacts f;
  f.Major = major, f.Build = build;
  f.ProductName = product;
  f.DisplayVersion = display;
  f.UBR = ubr;
  f.Is64Bit = is64;
  return f;
}

TEST(RealWindowsLine, Table) {
  RealWindowsFacts releaseIdOnly = Facts(10, 19042, "Windows 10 Enterprise", "", 1288, true);
  releaseIdOnly.ReleaseId = "2009";
  RealWindowsFacts noName = Facts(10, 0, "", "", std::nullopt, false);
  noName.EditionID = "Professional";
  noName.CurrentBuild = "19045";
  const struct {
    const char* name;
    RealWindowsFacts facts;
    const char* line;
  } cases[] = {
      {"7", Facts(6, 7601, "Windows 7 Professional", "", std::nullopt, true),
       "Windows 7 Professional (build 7601, 64-bit)"},
      {"8.1", Facts(6, 9600, "Windows 8.1 Pro", "", 20778, false),
       "Windows 8.1 Pro (build 9600.20778, 32-bit)"},
      {"10", Facts(10, 19045, "Windows 10 Pro", "22H2", 3803, true),
       "Windows 10 Pro 22H2 (build 19045.3803, 64-bit)"},
      {"11 still calls itself 10", Facts(10, 22631, "Windows 10 Pro", "23H2", 2861, true),
       "Windows 11 Pro 23H2 (build 22631.2861, 64-bit)"},
      {"Server of an 11-era build keeps its name",
       Facts(10, 26100, "Windows Server 2025 Standard", "24H2", 1742, true),
       "Windows Server 2025 Standard 24H2 (build 26100.1742, 64-bit)"},
      {"release id when no display version", releaseIdOnly,
       "Windows 10 Enterprise 2009 (build 19042.1288, 64-bit)"},
      {"no product name, build from the key", noName,
       "Windows 10.0 Professional (build 19045, 32-bit)"},
      {"nothing known", RealWindowsFacts{}, "Windows (build unknown, 32-bit)"},
  };
  for (const auto& c : cases) EXPECT_EQ(sysinfo::RealWindowsLine(c.facts), c.line) << c.name;
}

TEST(CaptureRealWindows, NeverOlderThanWhatThisProgramIsTold) {
  RealWindowsFacts f = sysinfo::CaptureRealWindows();
  EXPECT_GT(f.Build, 0u);
  OSVERSIONINFOA answered{};
  answered.dwOSVersionInfoSize = sizeof answered;
  ASSERT_TRUE(GetVersionExA(&answered));
  EXPECT_GE(f.Major * 100 + f.Minor, answered.dwMajorVersion * 100 + answered.dwMinorVersion);
}

}  // namespace
