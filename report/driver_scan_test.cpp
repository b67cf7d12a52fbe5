#include "report/driver_scan.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "win32/handle.h"

namespace {

using report::DriverPathList;

TEST(DriverPathList, CutBackKeepsTheFirstElement) {
  DriverPathList list;
  EXPECT_EQ(list.FileCount(), 0);
  list.Add("A");
  EXPECT_EQ(list.UpperBound(), 1);
  EXPECT_EQ(list.FileCount(), 1);
  list.Add("B");
  list.Add("C");
  EXPECT_EQ(list.FileCount(), 3);
  list.CutBack();
  EXPECT_EQ(list.UpperBound(), 1);
  EXPECT_EQ(list.Element(1), "A");
  // A second scan appends behind the kept first path.
  list.Add("A");
  list.Add("B");
  EXPECT_EQ(list.UpperBound(), 3);
  EXPECT_EQ(list.Element(1), "A");
  EXPECT_EQ(list.Element(2), "A");
  EXPECT_EQ(list.Element(3), "B");
}

TEST(DriverDllPath, NameInCapitalsWithDllEnding) {
  EXPECT_EQ(report::DriverDllPath("C:\\windows\\system32", "nvoglnt"),
            "C:\\windows\\system32\\NVOGLNT.DLL");
  EXPECT_EQ(report::DriverDllPath("C:\\S", "Mixed.Case"), "C:\\S\\MIXED.CASE.DLL");
  EXPECT_EQ(report::DriverDllPath("C:\\S", ""), "C:\\S\\.DLL");
}

TEST(DriverTabStops, PrefixPlusEightThenLongestName) {
  EXPECT_EQ(report::DriverTabStops("Windows NT: ", 7), (std::vector<int>{20, 27}));
  EXPECT_EQ(report::DriverTabStops("Windows: ", 0), (std::vector<int>{17, 27}));
}

const char kNtKey[] = "Software\\Microsoft\\Windows NT\\CurrentVersion\\OpenGLDrivers";
const char kNtKeyBlank[] = "Software\\Microsoft\\Windows NT\\CurrentVersion\\OpenGL Drivers";

// Registrations written into HKEY_LOCAL_MACHINE for one test, removed after.
class Registrations : public ::testing::Test {
 protected:
  void TearDown() override {
    RegDeleteTreeA(HKEY_LOCAL_MACHINE, kNtKey);
    RegDeleteTreeA(HKEY_LOCAL_MACHINE, kNtKeyBlank);
  }
  void SetString(const std::string& key, const std::string& name, const std::string& data) {
    HKEY k = nullptr;
    ASSERT_EQ(RegCreateKeyExA(HKEY_LOCAL_MACHINE, key.c_str(), 0, nullptr, 0, KEY_WRITE, nullptr,
                              &k, nullptr),
              ERROR_SUCCESS);
    win32::Key owned(k);
    RegSetValueExA(k, name.c_str(), 0, REG_SZ, reinterpret_cast<const BYTE*>(data.c_str()),
                   static_cast<DWORD>(data.size() + 1));
  }
  void SetDword(const std::string& key, const std::string& name, DWORD value) {
    HKEY k = nullptr;
    ASSERT_EQ(RegCreateKeyExA(HKEY_LOCAL_MACHINE, key.c_str(), 0, nullptr, 0, KEY_WRITE, nullptr,
                              &k, nullptr),
              ERROR_SUCCESS);
    win32::Key owned(k);
    RegSetValueExA(k, name.c_str(), 0, REG_DWORD, reinterpret_cast<const BYTE*>(&value), 4);
  }
  report::DriverScan Scan(bool nt = true) {
    report::DriverScanContext context{registry, "C:\\SYS", paths,
                                      [](const std::string& path) { return "v(" + path + ")"; },
                                      nullptr};
    return report::ScanOpenGLDrivers(context, nt);
  }
  sysinfo::cRegistry registry;
  DriverPathList paths;
};

TEST_F(Registrations, BothSpellingsValuesAndSubKeys) {
  SetString(kNtKey, "acme", "acmegl");
  SetDword(kNtKey, "Version", 3);
  SetString(std::string(kNtKey) + "\\Board", "Dll", "boardgl");
  SetDword(std::string(kNtKey) + "\\Board", "Flags", 1);
  SetString(kNtKeyBlank, "Other", "OTHERGL");
  auto scan = Scan();
  EXPECT_EQ(scan.Lines, (std::vector<std::string>{
                            "Windows NT: \tacme\tacmegl",
                            "Windows NT: Board\tDll\tboardgl\tv(C:\\SYS\\BOARDGL.DLL)",
                            "Windows NT: \tOther\tOTHERGL",
                        }));
  EXPECT_EQ(scan.TabStops, (std::vector<int>{20, 25}));
  ASSERT_EQ(paths.UpperBound(), 3);
  EXPECT_EQ(paths.Element(1), "C:\\SYS\\ACMEGL.DLL");
  EXPECT_EQ(paths.Element(2), "C:\\SYS\\BOARDGL.DLL");
  EXPECT_EQ(paths.Element(3), "C:\\SYS\\OTHERGL.DLL");
}

TEST_F(Registrations, OnlyNonStringValuesGiveNoLine) {
  SetDword(kNtKey, "Version", 2);
  SetDword(kNtKey, "DriverVersion", 5);
  auto scan = Scan();
  EXPECT_TRUE(scan.Lines.empty());
  EXPECT_EQ(paths.FileCount(), 0);
}

TEST_F(Registrations, NineXFamilyKeysAreNotReadOnNT) {
  SetString(kNtKey, "acme", "acmegl");
  EXPECT_TRUE(Scan(false).Lines.empty());
}

TEST_F(Registrations, HundredsOfRegistrationsAndLongNames) {
  for (int i = 0; i < 300; ++i) SetString(kNtKey, "drv" + std::to_string(i), "d" + std::to_string(i));
  std::string longName(16383, 'n');
  std::string longData(60000, 'x');
  SetString(kNtKeyBlank, longName, longData);
  SetString(kNtKeyBlank, "empty", "");
  auto scan = Scan();
  ASSERT_EQ(scan.Lines.size(), 302u);
  auto has = [&](const std::string& line) {
    return std::find(scan.Lines.begin(), scan.Lines.end(), line) != scan.Lines.end();
  };
  // Compared by presence so that a failure does not print 76,000 characters.
  EXPECT_TRUE(has("Windows NT: \t" + longName + "\t" + longData));
  EXPECT_TRUE(has("Windows NT: \tempty\t"));
  EXPECT_TRUE(has("Windows NT: \tdrv299\td299"));
  EXPECT_EQ(paths.UpperBound(), 302);
  EXPECT_EQ(scan.TabStops, (std::vector<int>{20, 20 + 16383}));
}

}  // namespace
