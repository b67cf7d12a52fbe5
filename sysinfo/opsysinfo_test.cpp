#include "sysinfo/opsysinfo.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

namespace {

using sysinfo::COpSysInfo;
using sysinfo::OsVersionCapture;

constexpr DWORD k9x = VER_PLATFORM_WIN32_WINDOWS;
constexpr DWORD kNT = VER_PLATFORM_WIN32_NT;

OsVersionCapture Os(DWORD major, DWORD minor, DWORD build, DWORD platform, const char* csd) {
  OsVersionCapture c;
  c.MajorVersion = major;
  c.MinorVersion = minor;
  c.BuildNumber = build;
  c.PlatformId = platform;
  c.CSDVersion = csd;
  return c;
}

OsVersionCapture WithEx(OsVersionCapture c, WORD spMajor, BYTE type, WORD suite) {
  c.ServicePackMajor = spMajor;
  c.ProductType = type;
  c.SuiteMask = suite;
  return c;
}

OsVersionCapture WithOptions(OsVersionCapture c, const char* productType) {
  c.ProductOptions = productType;
  return c;
}

struct TextCase {
  const char* name;
  OsVersionCapture os;
  const char* platform;
  const char* id;
  const char* version;
  const char* productId;
  const char* servicePack;
};

TEST(COpSysInfo, TextsTable) {
  const TextCase cases[] = {
      {"95 without letter", Os(4, 0, 950, k9x, ""), "Windows 95 ", "Win95 ", "", "Windows 95 ", ""},
      {"95 B is OSR1 but Win95b", Os(4, 0, 1111, k9x, "B"), "Windows 95 OSR1 ", "Win95b ", "",
       "Windows 95 OSR1 ", ""},
      {"95 C", Os(4, 3, 1212, k9x, " C"), "Windows 95 OSR2 ", "Win95c ", "", "Windows 95 OSR2 ",
       ""},
      {"95 other letter", Os(4, 0, 950, k9x, "X"), "Windows 95 X ", "Win95_X ", "", "Windows 95 X ",
       ""},
      {"98 A padded as the system reports it", Os(4, 10, 0x040A08AE, k9x, " A "), "Windows 98 SE ",
       "Win98SE ", "", "Windows 98 SE ", ""},
      {"98 other letter", Os(4, 10, 1998, k9x, "B"), "Windows 98 B ", "Win98_B ", "",
       "Windows 98 B ", ""},
      {"Me", Os(4, 90, 3000, k9x, ""), "Windows Me  ", "WinME_ ", "", "Windows Me  ", ""},
      {"NT 3.51 workstation from the registry",
       WithOptions(Os(3, 51, 1057, kNT, "Service Pack 5"), "WinNT"), "Windows NT Workstation ",
       "WinNT3 WS ", "v3.51Service Pack 5 (Build 1057)",
       "Windows NT Workstation v3.51 Service Pack 5 (Build 1057)", ""},
      {"NT 4 SP6 ignores its extended record",
       WithOptions(WithEx(Os(4, 0, 1381, kNT, "Service Pack 6"), 6, VER_NT_WORKSTATION, 0x200),
                   "ServerNT"),
       "Windows NT Server ", "WinNT4 S ", "v4.0Service Pack 6 (Build 1381)",
       "Windows NT Server v4.0 Service Pack 6 (Build 1381)", ""},
      {"NT 4 product type in lower case", WithOptions(Os(4, 0, 1381, kNT, ""), "winnt"),
       "Windows NT Workstation ", "WinNT4 WS ", "v4.0 (Build 1381)",
       "Windows NT Workstation v4.0  (Build 1381)", ""},
      {"NT 4 other product type gives no suffix", WithOptions(Os(4, 0, 1381, kNT, ""), "LanmanNT"),
       "Windows NT ", "WinNT4 ", "v4.0 (Build 1381)", "Windows NT v4.0  (Build 1381)", ""},
      {"2000 server", WithEx(Os(5, 0, 2195, kNT, "Service Pack 4"), 4, VER_NT_SERVER, 0),
       "Windows 2000 Server ", "Win2k S ", "Service Pack 4 (Build 2195)",
       "Windows 2000 Server Service Pack 4 (Build 2195)", "v4.0"},
      {"2000 advanced server", WithEx(Os(5, 0, 2195, kNT, ""), 0, VER_NT_SERVER, 0x2),
       "Windows 2000 Advanced Server ", "Win2k AS ", " (Build 2195)",
       "Windows 2000 Advanced Server  (Build 2195)", "v0.0"},
      {"data center wins over advanced", WithEx(Os(5, 0, 2195, kNT, ""), 0, VER_NT_SERVER, 0x82),
       "Windows 2000 DataCenter Server ", "Win2k DS ", " (Build 2195)",
       "Windows 2000 DataCenter Server  (Build 2195)", "v0.0"},
      {"XP home", WithEx(Os(5, 1, 2600, kNT, "Service Pack 2"), 2, VER_NT_WORKSTATION, 0x300),
       "Windows XP Home Version ", "WinXP Home ", "Service Pack 2 (Build 2600)",
       "Windows XP Home Version Service Pack 2 (Build 2600)", "v2.0"},
      {"domain controller", WithEx(Os(5, 2, 3790, kNT, ""), 0, VER_NT_DOMAIN_CONTROLLER, 0x2),
       "Windows XP Domain Controller ", "WinXP DC ", " (Build 3790)",
       "Windows XP Domain Controller  (Build 3790)", "v0.0"},
      {"extended record without type asks the registry",
       WithOptions(Os(5, 0, 2195, kNT, ""), "ServerNT"), "Windows 2000 Server ", "Win2k S ",
       " (Build 2195)", "Windows 2000 Server  (Build 2195)", "v0.0"},
      {"6.0 falls into the 2000 family", WithEx(Os(6, 0, 6002, kNT, ""), 0, VER_NT_WORKSTATION, 0),
       "Windows 2000 Professional Version ", "Win2k Pro ", " (Build 6002)",
       "Windows 2000 Professional Version  (Build 6002)", "v0.0"},
      {"build 40000 prints negative", WithEx(Os(5, 1, 40000, kNT, "x"), 0, VER_NT_WORKSTATION, 0),
       "Windows XP Professional Version ", "WinXP Pro ", "x (Build -25536)",
       "Windows XP Professional Version x (Build -25536)", "v0.0"},
      {"failed version query", OsVersionCapture{}, "Unknown Windows ", "Win ", "",
       "Unknown Windows ", ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    COpSysInfo os(c.os);
    EXPECT_EQ(os.Platform(), c.platform);
    EXPECT_EQ(os.ID(), c.id);
    EXPECT_EQ(os.Version(), c.version);
    EXPECT_EQ(os.ProductID(), c.productId);
    EXPECT_EQ(os.ServicePack(), c.servicePack);
  }
}

TEST(COpSysInfo, FamilyBooleansAtTheBoundaries) {
  // NT, NT4, 2000, XP, 95, 98, Me
  using Flags = std::array<bool, 7>;
  const struct {
    const char* name;
    OsVersionCapture os;
    Flags expected;
  } cases[] = {
      {"9x minor 9", Os(4, 9, 0, k9x, ""), {0, 0, 0, 0, 1, 0, 0}},
      {"9x minor 10", Os(4, 10, 0, k9x, ""), {0, 0, 0, 0, 0, 1, 0}},
      {"9x minor 89", Os(4, 89, 0, k9x, ""), {0, 0, 0, 0, 0, 1, 0}},
      {"9x minor 90", Os(4, 90, 0, k9x, ""), {0, 0, 0, 0, 0, 0, 1}},
      {"NT 3", Os(3, 51, 0, kNT, ""), {1, 0, 0, 0, 0, 0, 0}},
      {"NT 4", Os(4, 0, 0, kNT, ""), {1, 1, 0, 0, 0, 0, 0}},
      {"NT 5.0", Os(5, 0, 0, kNT, ""), {1, 0, 1, 0, 0, 0, 0}},
      {"NT 5.1", Os(5, 1, 0, kNT, ""), {1, 0, 0, 1, 0, 0, 0}},
      {"NT 6.1", Os(6, 1, 0, kNT, ""), {1, 0, 0, 1, 0, 0, 0}},
      {"platform 0", Os(3, 10, 0, 0, ""), {0, 0, 0, 0, 0, 0, 0}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    COpSysInfo os(c.os);
    EXPECT_EQ((Flags{os.IsWinNT(), os.IsWinNT4(), os.IsWin2000(), os.IsWinXP(), os.IsWin95(),
                     os.IsWin98(), os.IsWinMe()}),
              c.expected);
  }
}

TEST(COpSysInfo, BuildTextIsTheLowWordSigned) {
  EXPECT_EQ(COpSysInfo::BuildText(0x040A08AE), 2222);  // 9x keeps the version in the high word
  EXPECT_EQ(COpSysInfo::BuildText(32767), 32767);
  EXPECT_EQ(COpSysInfo::BuildText(32768), -32768);
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
  EXPECT_EQ(os.Version(), "Service Pack 1 (Build 7601)");
  EXPECT_EQ(os.ServicePack(), "v1.0");
  EXPECT_EQ(COpSysInfo().Platform(), os.Platform());
}

}  // namespace
