#include "report/driver_scan.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "win32/handle.h"

namespace {

using report::DriverPathList;
using Lines = std::vector<std::string>;

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
  // A second scan appends behind the kept first path.
  list.Add("A");
  list.Add("B");
  EXPECT_EQ((Lines{list.Element(1), list.Element(2), list.Element(3)}), (Lines{"A", "A", "B"}));
  EXPECT_EQ(list.UpperBound(), 3);
}

TEST(DriverTabStops, PrefixPlusEightThenLongestNameOrTen) {
  EXPECT_EQ(report::DriverTabStops("Windows NT: ", 7), (std::vector<int>{20, 27}));
  EXPECT_EQ(report::DriverTabStops("Windows: ", 0), (std::vector<int>{17, 27}));
}

const std::string kNtKey = "Software\\Microsoft\\Windows NT\\CurrentVersion\\OpenGLDrivers";
const std::string kNtKeyBlank = "Software\\Microsoft\\Windows NT\\CurrentVersion\\OpenGL Drivers";

// Registrations written into HKEY_LOCAL_MACHINE for one test, removed after.
class Registrations : public ::testing::Test {
 protected:
  void TearDown() override {
    RegDeleteTreeA(HKEY_LOCAL_MACHINE, kNtKey.c_str());
    RegDeleteTreeA(HKEY_LOCAL_MACHINE, kNtKeyBlank.c_str());
  }
  void Write(const std::string& key, const std::string& name, DWORD type, const void* data,
             size_t size) {
    HKEY k = nullptr;
    ASSERT_EQ(RegCreateKeyExA(HKEY_LOCAL_MACHINE, key.c_str(), 0, nullptr, 0, KEY_WRITE, nullptr,
                              &k, nullptr),
              ERROR_SUCCESS);
    win32::Key owned(k);
    ASSERT_EQ(RegSetValueExA(k, name.c_str(), 0, type, static_cast<const BYTE*>(data),
                             static_cast<DWORD>(size)),
              ERROR_SUCCESS);
  }
  void Set(const std::string& key, const std::string& name, const std::string& text) {
    Write(key, name, REG_SZ, text.c_str(), text.size() + 1);
  }
  void Set(const std::string& key, const std::string& name, DWORD number) {
    Write(key, name, REG_DWORD, &number, sizeof number);
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
  Set(kNtKey, "acme", "acmegl");
  Set(kNtKey, "Version", 3);
  Set(kNtKey + "\\Board", "Dll", "boardgl");
  Set(kNtKey + "\\Board", "Flags", 1);
  Set(kNtKeyBlank, "Other", "OTHERGL");
  auto scan = Scan();
  EXPECT_EQ(scan.Lines, (Lines{"Windows NT: \tacme\tacmegl",
                               "Windows NT: Board\tDll\tboardgl\tv(C:\\SYS\\BOARDGL.DLL)",
                               "Windows NT: \tOther\tOTHERGL"}));
  EXPECT_EQ(scan.TabStops, (std::vector<int>{20, 25}));
  ASSERT_EQ(paths.UpperBound(), 3);
  EXPECT_EQ((Lines{paths.Element(1), paths.Element(2), paths.Element(3)}),
            (Lines{"C:\\SYS\\ACMEGL.DLL", "C:\\SYS\\BOARDGL.DLL", "C:\\SYS\\OTHERGL.DLL"}));
}

TEST_F(Registrations, NonStringValuesAndThe9xKeysOnNTGiveNoLine) {
  Set(kNtKey, "Version", 2);
  Set(kNtKey, "DriverVersion", 5);
  EXPECT_TRUE(Scan().Lines.empty());
  EXPECT_EQ(paths.FileCount(), 0);
  Set(kNtKey, "acme", "acmegl");
  EXPECT_TRUE(Scan(false).Lines.empty()) << "only the 9x family's keys are read";
}

TEST_F(Registrations, HundredsOfRegistrationsAndLongNames) {
  for (int i = 0; i < 300; ++i) Set(kNtKey, "drv" + std::to_string(i), "d" + std::to_string(i));
  const std::string longName(16383, 'n'), longData(60000, 'x');
  Set(kNtKeyBlank, longName, longData);
  Set(kNtKeyBlank, "empty", "");
  auto scan = Scan();
  ASSERT_EQ(scan.Lines.size(), 302u);
  // Compared by presence so that a failure does not print 76,000 characters.
  for (const std::string& line : {"Windows NT: \t" + longName + "\t" + longData,
                                  std::string("Windows NT: \tempty\t"),
                                  std::string("Windows NT: \tdrv299\td299")})
    EXPECT_EQ(std::count(scan.Lines.begin(), scan.Lines.end(), line), 1) << line.substr(0, 40);
  EXPECT_EQ(paths.UpperBound(), 302);
  EXPECT_EQ(scan.TabStops, (std::vector<int>{20, 20 + 16383}));
}

}  // namespace
