// The machine as the report's first lines name it: the Windows, the processor, the user.
#include "sysinfo/opsysinfo.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "sysinfo/pcsysinfo.h"
#include "sysinfo/ussysinfo.h"
#include "sysinfo/windows_version.h"

namespace {

using namespace sysinfo;

constexpr DWORD k9x = VER_PLATFORM_WIN32_WINDOWS;
constexpr DWORD kNT = VER_PLATFORM_WIN32_NT;

// A capture; `type`, `suite` and `sp` are the extended record's.
OsVersionCapture Os(DWORD major, DWORD minor, DWORD build, DWORD platform, const char* csd,
                    const char* productOptions = "", BYTE type = 0, WORD suite = 0, WORD sp = 0) {
  OsVersionCapture c;
  c.MajorVersion = major, c.MinorVersion = minor, c.BuildNumber = build;
  c.PlatformId = platform, c.CSDVersion = csd, c.ProductOptions = productOptions;
  c.ProductType = type, c.SuiteMask = suite, c.ServicePackMajor = sp;
  return c;
}

TEST(COpSysInfo, TextsTable) {
  const struct {
    const char* name;
    OsVersionCapture os;
    const char* texts;  // Platform|ID|Version|ProductID|ServicePack
  } cases[] = {
      {"98 A padded as the system reports it", Os(4, 10, 0x040A08AE, k9x, " A "),
       "Windows 98 SE |Win98SE ||Windows 98 SE |"},
      {"NT 3.51 workstation from the registry, in any case",
       Os(3, 51, 1057, kNT, "Service Pack 5", "winnt"),
       "Windows NT Workstation |WinNT3 WS |v3.51Service Pack 5 (Build 1057)|"
       "Windows NT Workstation v3.51 Service Pack 5 (Build 1057)|"},
      {"2000 advanced server", Os(5, 0, 2195, kNT, "Service Pack 4", "", VER_NT_SERVER, 0x2, 4),
       "Windows 2000 Advanced Server |Win2k AS |Service Pack 4 (Build 2195)|"
       "Windows 2000 Advanced Server Service Pack 4 (Build 2195)|v4.0"},
      {"build prints its low word, signed", Os(5, 1, 0x00019C40, kNT, "x", "", VER_NT_WORKSTATION),
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

// The system the tests run on: 6.1 build 7601 SP1, a workstation, "WinNT" in ProductOptions.
TEST(COpSysInfoOnThisSystem, DescribesTheRunningWindows) {
  const OsVersionCapture captured = CaptureOsVersion();
  if (captured.MajorVersion != 6 || captured.MinorVersion != 1 || captured.BuildNumber != 7601)
    GTEST_SKIP() << "expects the 6.1 build 7601 system the tests are run on";
  EXPECT_EQ(captured.ProductOptions, "WinNT");
  EXPECT_EQ(COpSysInfo(captured).ProductID(),
            "Windows XP Professional Version Service Pack 1 (Build 7601)");
  EXPECT_EQ(COpSysInfo(captured).ServicePack(), "v1.0");
}

TEST(RealWindowsLine, Table) {
  const struct {
    const char* name;
    // Major, Minor, Build, ProductName, EditionID, DisplayVersion, ReleaseId, CurrentBuild,
    // UBR, Is64Bit
    RealWindowsFacts facts;
    const char* line;
  } cases[] = {
      {"11 still calls itself 10", {10, 0, 22631, "Windows 10 Pro", "", "23H2", "", "", 2861, true},
       "Windows 11 Pro 23H2 (build 22631.2861, 64-bit)"},
      {"no product name, build from the key",
       {10, 0, 0, "", "Professional", "", "", "19045", {}, false},
       "Windows 10.0 Professional (build 19045, 32-bit)"},
      {"nothing known", RealWindowsFacts{}, "Windows (build unknown, 32-bit)"},
  };
  for (const auto& c : cases) EXPECT_EQ(RealWindowsLine(c.facts), c.line) << c.name;
}

CpuCapture Cpu(const char* vendor, DWORD type, WORD level, WORD revision, DWORD count = 1,
               WORD arch = PROCESSOR_ARCHITECTURE_INTEL) {
  CpuCapture c;
  c.ProcessorArchitecture = arch;
  c.VendorId = vendor;
  c.ProcessorType = type, c.ProcessorLevel = level, c.ProcessorRevision = revision;
  c.NumberOfProcessors = c.ProcessorKeyCount = count;
  return c;
}

TEST(cPcSysInfo, ProcessorTable) {
  const struct {
    const char* name;
    CpuCapture cpu;
    const char* processor;
  } cases[] = {
      {"9x names the family by type only", Cpu("GenuineIntel", 486, 0, 0), "Intel 486 0(unknown)"},
      {"level above the type's family wins", Cpu("GenuineIntel", 386, 6, 0x0600),
       "Intel Pentium Celeron"},
      {"family 15, two registered processors", Cpu("GenuineIntel", 586, 15, 0x0009, 2),
       "Intel Dual Pentium 4 Xeon"},
      {"AMD family 5 leaves the family word out", Cpu("AuthenticAMD", 586, 5, 0x0800),
       "AMD K6-2 Processor (Model 8)"},
      {"other architecture", Cpu("", 0, 7, 0x0102, 1, PROCESSOR_ARCHITECTURE_IA64),
       "(unknown CPU) 7(unknown) (unknown Model)"},
  };
  for (const auto& c : cases) EXPECT_EQ(cPcSysInfo(c.cpu).Processor(), c.processor) << c.name;
  EXPECT_EQ(cPcSysInfo(Cpu("GenuineIntel", 586, 6, 0xCF02)).CPUStep(), ", Stepping 2");
}

// The machine the tests run on: two Intel family 6 model 207 stepping 2, which no table names.
TEST(cPcSysInfoOnThisSystem, DescribesTheRunningProcessor) {
  SYSTEM_INFO si{};
  GetSystemInfo(&si);
  cPcSysInfo pc;
  EXPECT_EQ(pc.VendorId().size(), 12u) << "vendor '" << pc.VendorId() << "'";
  if (pc.VendorId() != "GenuineIntel" || si.dwNumberOfProcessors != 2 || si.wProcessorLevel != 6 ||
      si.wProcessorRevision != 0xCF02)
    GTEST_SKIP() << "expects the two-processor Intel machine the tests are run on";
  EXPECT_EQ(pc.Processor() + pc.CPUStep(), "Intel Dual Pentium 207(unknown), Stepping 2");
}

TEST(ServerName, PrefixedUnlessItAlreadyHoldsTwoBackslashes) {
  EXPECT_EQ(ServerName("\\VM") + "|" + ServerName("A\\\\B"), "\\\\\\VM|A\\\\B");
  EXPECT_EQ(FromWide(nullptr), "");
  EXPECT_EQ(FromWide(L"Jos\u00E9 M\u00FCller"), "Jos\xE9 M\xFCller");
}

// The account is asked for on NT only; a failed query keeps the texts it had.
TEST(cUsSysInfo, ReportedUserIsTheFullNameOnNTAndTheLogonNameElsewhere) {
  std::vector<std::wstring> asked;
  std::optional<UserAccount> answer = UserAccount{"jo", "comment", "user comment", "Jo Full"};
  AccountReader reader = [&](const std::wstring& server, const std::wstring& user) {
    asked.push_back(server + L"|" + user);
    return answer;
  };
  cUsSysInfo ninetyFive(UserCapture{false, "PC", "jo\xE9"}, reader);
  EXPECT_EQ(ReportedUser(ninetyFive), "jo\xE9");
  EXPECT_TRUE(asked.empty());

  cUsSysInfo nt(UserCapture{true, "PC", "jo\xE9"}, reader);
  EXPECT_EQ(ReportedUser(nt), "Jo Full");
  EXPECT_EQ(asked, std::vector<std::wstring>{L"\\\\PC|jo\u00E9"});
  answer.reset();
  EXPECT_EQ(ReportedUser(nt), "Jo Full") << "the failed query kept the record";
  cUsSysInfo unread(UserCapture{true, "PC", "jo"}, reader);
  EXPECT_EQ(ReportedUser(unread), "") << "NT without a record: no name at all";
}

// Wine's accounts have the user's name and no full name: the report's user line ends there.
TEST(cUsSysInfoOnThisSystem, ReadsNamesAndTheAccountRecord) {
  cUsSysInfo user;
  EXPECT_FALSE(user.ComputerName().empty());
  EXPECT_LE(user.ComputerName().size(), 15u);
  ASSERT_FALSE(user.UserName().empty());
  EXPECT_TRUE(user.UserNetworkInfo());
  EXPECT_EQ(user.Name(), user.UserName()) << "the account record was not read";
  EXPECT_EQ(user.FullName(), "");
}

}  // namespace
