#include "sysinfo/fileversioninfo.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "win32/ui.h"

namespace {

using sysinfo::cFileVersionInfo;
using sysinfo::VersionData;

TEST(cFileVersionInfo, FixedRecordTexts) {
  EXPECT_EQ(cFileVersionInfo::FlagsText(0x40), "Unknown");  // outside the known bits
  EXPECT_EQ(cFileVersionInfo::OSText(0x30003), "OS/2-16 PM-32");
  EXPECT_EQ(cFileVersionInfo::FailureText(1815), "    (n/a) - 1815");
  for (DWORD error : {0u, 1811u, 1816u})  // only the resource errors are named
    EXPECT_EQ(cFileVersionInfo::FailureText(error), "    (n/a)") << error;
  cFileVersionInfo cut(VersionData{{0xFF, 0x00, 0x34, 0x00, 0x00, 0x00}, 0});  // beyond the data
  EXPECT_FALSE(cut.Available());
  EXPECT_EQ(cut.VerFile() + "|" + cut.FileFlags() + "|" + cut.CompanyName(), "    (n/a)||");
}

std::string Fixture(const char* name) { return win32::ModuleDirectory() + "\\" + name; }
using Texts = std::vector<std::string>;

TEST(cFileVersionInfoOnFiles, StringsUnderUsEnglishOnlyNoTranslationAndNoVersionData) {
  cFileVersionInfo info;
  info.FullPathName(Fixture("vtestdrv.dll"));
  ASSERT_TRUE(info.Available()) << "error " << info.LastError();
  EXPECT_EQ((Texts{info.VerFile(), info.VerProduct(), info.VerStructure(), info.FileFlags(),
                   info.FileOS(), info.FileType(), info.FileSubType()}),
            (Texts{"06.14.0010.8217", "03.02.0001.0000", "01.00", "Debug PreRel", "NT-Win32",
                   "Driver", "Display drv"}));
  Texts entries;
  for (int i = 0; i < 15; ++i) entries.push_back(info.PredefinedValue(i));
  EXPECT_EQ(entries, (Texts{"German", "Fixture for the version reader", "Velmora Test Graphics",
                            "Velmora test display driver", "6.14.10.8217", "vtestdrv",
                            "Copyright (C) Velmora", "", "vtestdrv.dll", "Velmora fixtures",
                            "3.2.1", "", "", "Velmora test mark one", ""}));

  info.FullPathName(Fixture("vnotrans.dll"));
  ASSERT_TRUE(info.Available()) << "error " << info.LastError();
  EXPECT_EQ((Texts{info.VerFile(), info.FileFlags(), info.FileOS(), info.FileType(),
                   info.FileSubType(), info.Language(), info.CompanyName(), info.FileVersion()}),
            (Texts{"01.02.0003.0004", "Unknown", "Unknown", "DLL", "", "", "", ""}));

  info.FullPathName(win32::ModulePath());  // a program without version data
  EXPECT_FALSE(info.Available());
  EXPECT_EQ(info.LastError(), static_cast<DWORD>(ERROR_RESOURCE_DATA_NOT_FOUND));
  EXPECT_EQ(info.VerFile() + "|" + info.FileVersion(), "    (n/a) - 1812|    (n/a) - 1812");
  EXPECT_EQ(info.FileType() + info.FileOS(), "");
}

}  // namespace
