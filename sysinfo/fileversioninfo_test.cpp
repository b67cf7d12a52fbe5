#include "sysinfo/fileversioninfo.h"

#include <gtest/gtest.h>

#include <cstring>
#include <initializer_list>
#include <string>
#include <vector>

#include "win32/text.h"
#include "win32/ui.h"

namespace {

using sysinfo::cFileVersionInfo;
using sysinfo::VersionData;
using Bytes = std::vector<BYTE>;

TEST(cFileVersionInfo, FixedRecordTexts) {
  EXPECT_EQ(cFileVersionInfo::VersionText(MAKELONG(1, 6), MAKELONG(17514, 7601)),
            "06.01.7601.17514");
  EXPECT_EQ(cFileVersionInfo::VersionText(0x0064007B, 0xFFFF0005), "100.123.65535.0005");
  EXPECT_EQ(cFileVersionInfo::StructureText(0x00010000), "01.00");
  const struct {
    DWORD flags;
    const char* text;
  } flags[] = {
      {0x03, "Debug PreRel"}, {0x00, "Unknown"}, {0x30, "Info Special"}, {0x40, "Unknown"}};
  for (const auto& c : flags) {
    SCOPED_TRACE(c.flags);
    EXPECT_EQ(cFileVersionInfo::FlagsText(c.flags), c.text);
  }
  EXPECT_EQ(cFileVersionInfo::OSText(0x30003), "OS/2-16 PM-32");
  EXPECT_EQ(cFileVersionInfo::OSText(0x40000), "Unknown");
}

TEST(cFileVersionInfo, TypeAndSubtype) {
  const struct {
    DWORD type, subtype;
    const char* typeText;
    const char* subtypeText;
  } cases[] = {
      {3, 4, "Driver", "Display drv"}, {3, 10, "Driver", "Comm drv"}, {3, 11, "Driver", "kept"},
      {4, 3, "Font", "TrueType Font"}, {1, 4, "Application", "kept"}, {6, 0, "Unknown", "kept"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::to_string(c.type) + "/" + std::to_string(c.subtype));
    std::string type, subtype = "kept";
    cFileVersionInfo::TypeTexts(c.type, c.subtype, type, subtype);
    EXPECT_EQ(type + "|" + subtype, std::string(c.typeText) + "|" + c.subtypeText);
  }
}

TEST(cFileVersionInfo, FailureTextNamesOnlyTheResourceErrors) {
  const struct {
    DWORD error;
    const char* text;
  } cases[] = {{0, "    (n/a)"},
               {1811, "    (n/a)"},
               {1812, "    (n/a) - 1812"},
               {1815, "    (n/a) - 1815"},
               {1816, "    (n/a)"}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.error);
    EXPECT_EQ(cFileVersionInfo::FailureText(c.error), c.text);
  }
  cFileVersionInfo info(VersionData{{}, 1813});
  EXPECT_FALSE(info.Available());
  EXPECT_EQ(info.LastError(), 1813u);
  EXPECT_EQ(info.VerFile() + "|" + info.FileVersion(), "    (n/a) - 1813|    (n/a) - 1813");
}

// Version data laid out as the system stores it (UTF-16 keys, every node
// aligned to four bytes), for shapes no linked file has.
void Pad(Bytes& b) { b.resize((b.size() + 3) & ~size_t{3}, 0); }

void AppendWide(Bytes& b, const std::wstring& text) {
  for (wchar_t ch : text + L'\0') b.insert(b.end(), {LOBYTE(ch), HIBYTE(ch)});
}

Bytes Node(const wchar_t* key, const Bytes& value, size_t valueLength, WORD type,
           std::initializer_list<Bytes> children = {}) {
  Bytes b(6, 0);
  AppendWide(b, key);
  Pad(b);
  b.insert(b.end(), value.begin(), value.end());
  for (const auto& child : children) {
    Pad(b);
    b.insert(b.end(), child.begin(), child.end());
  }
  const WORD header[] = {static_cast<WORD>(b.size()), static_cast<WORD>(valueLength), type};
  std::memcpy(b.data(), header, sizeof header);
  return b;
}

Bytes Text(const wchar_t* key, const std::wstring& text) {
  Bytes v;
  AppendWide(v, text);
  return Node(key, v, text.size() + 1, 1);
}

Bytes Table(const wchar_t* block, std::initializer_list<Bytes> strings) {
  return Node(block, {}, 0, 1, strings);
}

Bytes Strings(std::initializer_list<Bytes> tables) {
  return Node(L"StringFileInfo", {}, 0, 1, tables);
}

Bytes Translation(const Bytes& value) {
  return Node(L"VarFileInfo", {}, 0, 1, {Node(L"Translation", value, value.size(), 0)});
}

Bytes Root(std::initializer_list<Bytes> children, size_t fixedSize = sizeof(VS_FIXEDFILEINFO)) {
  VS_FIXEDFILEINFO f{};
  f.dwSignature = VS_FFI_SIGNATURE;
  f.dwFileVersionMS = MAKELONG(2, 1);
  f.dwFileVersionLS = MAKELONG(4, 3);
  f.dwFileFlagsMask = 0x3F;
  f.dwFileFlags = 0x21;
  const BYTE* p = reinterpret_cast<const BYTE*>(&f);
  return Node(L"VS_VERSION_INFO", Bytes(p, p + fixedSize), fixedSize, 0, children);
}

struct BlobCase {
  const char* name;
  Bytes blob;
  bool available;
  const char* company;
  const char* description;
};

TEST(cFileVersionInfo, VersionDataShapes) {
  const Bytes german = {0x07, 0x04, 0xE4, 0x04};  // 0x0407, code page 1252
  const Bytes own =
      Table(L"040704E4", {Text(L"CompanyName", L"Eigene"), Text(L"FileDescription", L"Treiber")});
  const Bytes ownNoCompany = Table(L"040704E4", {Text(L"FileDescription", L"Treiber")});
  const Bytes us =
      Table(L"040904E4", {Text(L"CompanyName", L"Own"), Text(L"FileDescription", L"Driver")});
  const Bytes usNoCompany = Table(L"040904E4", {Text(L"FileDescription", L"Driver")});
  const Bytes usUnicode = Table(L"040904B0", {Text(L"CompanyName", L"Own")});
  const BlobCase cases[] = {
      {"the translation's own table", Root({Strings({own, us}), Translation(german)}), true,
       "Eigene", "Treiber"},
      {"company only in US English: every string from there",
       Root({Strings({ownNoCompany, us}), Translation(german)}), true, "Own", "Driver"},
      {"no company anywhere keeps the translation's table",
       Root({Strings({ownNoCompany, usNoCompany}), Translation(german)}), true, "", "Treiber"},
      {"the retry keeps the code page", Root({Strings({usUnicode}), Translation(german)}), true, "",
       ""},
      {"no translation table", Root({Strings({us})}), true, "", ""},
      {"translation shorter than one entry", Root({Strings({us}), Translation({0x09, 0x04})}), true,
       "", ""},
      {"fixed record cut short", Root({}, 20), false, "", ""},
      {"length beyond the data", Bytes{0xFF, 0x00, 0x34, 0x00, 0x00, 0x00}, false, "", ""},
      {"too short for a header", Bytes{0x04, 0x00}, false, "", ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    cFileVersionInfo info(VersionData{c.blob, 0});
    EXPECT_EQ(info.Available(), c.available);
    EXPECT_EQ(info.VerFile(), c.available ? "01.02.0003.0004" : "    (n/a)");
    EXPECT_EQ(info.FileFlags(), c.available ? "Debug Special" : "");
    EXPECT_EQ(info.CompanyName(), c.company);
    EXPECT_EQ(info.FileDescription(), c.description);
  }
}

std::string Fixture(const char* name) { return win32::ModuleDirectory() + "\\" + name; }

TEST(cFileVersionInfoOnFiles, DriverWithStringsUnderUsEnglishOnly) {
  cFileVersionInfo info;
  info.FullPathName(Fixture("vtestdrv.dll"));
  ASSERT_TRUE(info.Available()) << "error " << info.LastError();
  EXPECT_EQ(info.LastError(), 0u);
  using Texts = std::vector<std::string>;
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
  EXPECT_EQ(info.CompanyName(), entries[2]);
  EXPECT_EQ(cFileVersionInfo::PredefinedName(2), "Company Name");
  EXPECT_EQ(cFileVersionInfo::PredefinedName(15), "");
}

TEST(cFileVersionInfoOnFiles, ResourceWithoutTranslationKeepsTheFixedFields) {
  cFileVersionInfo info;
  info.FullPathName(Fixture("vnotrans.dll"));
  ASSERT_TRUE(info.Available()) << "error " << info.LastError();
  using Texts = std::vector<std::string>;
  EXPECT_EQ((Texts{info.VerFile(), info.FileFlags(), info.FileOS(), info.FileType(),
                   info.FileSubType(), info.Language(), info.CompanyName(), info.FileVersion()}),
            (Texts{"01.02.0003.0004", "Unknown", "Unknown", "DLL", "", "", "", ""}));
}

TEST(cFileVersionInfoOnFiles, FilesWithoutVersionData) {
  const std::string missingDir = win32::ModuleDirectory() + "\\no-such-dir\\x.dll";
  const std::string tooLong = win32::ModuleDirectory() + "\\" + std::string(300, 'a') + ".dll";
  const struct {
    const char* name;
    std::string path;
    DWORD error;
  } cases[] = {
      // A program with no resources at all.
      {"no version resource", win32::ModulePath(), ERROR_RESOURCE_DATA_NOT_FOUND},
      {"missing file", Fixture("no-such-file.dll"), ERROR_FILE_NOT_FOUND},
      {"missing directory", missingDir, ERROR_PATH_NOT_FOUND},
      {"path longer than MAX_PATH", tooLong, 0},
  };
  cFileVersionInfo info;
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    info.FullPathName(Fixture("vtestdrv.dll"));
    ASSERT_TRUE(info.Available());
    info.FullPathName(c.path);
    EXPECT_FALSE(info.Available());
    EXPECT_EQ(info.FullPathName(), c.path);
    if (c.error) {
      EXPECT_EQ(info.LastError(), c.error);
    }
    EXPECT_NE(info.LastError(), 0u);
    EXPECT_EQ(info.VerFile(), cFileVersionInfo::FailureText(info.LastError()));
    EXPECT_EQ(info.CompanyName(), "");
    EXPECT_EQ(info.FileType(), "");
    EXPECT_EQ(info.Language(), "");
  }
}

// The driver scan builds system directory + "\" + NAME + ".DLL".
TEST(cFileVersionInfoOnFiles, SystemLibraryByTheDriverScanPath) {
  cFileVersionInfo info;
  ASSERT_FALSE(info.SystemDirectory().empty());
  EXPECT_NE(info.SystemDirectory().back(), '\\');
  info.FullPathName(info.SystemDirectory() + "\\" + win32::Upper("opengl32") + ".DLL");
  ASSERT_TRUE(info.Available()) << "error " << info.LastError();
  EXPECT_FALSE(info.FileVersion().empty());
  EXPECT_FALSE(info.CompanyName().empty());
  EXPECT_EQ(info.FileType(), "DLL");
}

}  // namespace
