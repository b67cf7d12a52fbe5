#include "sysinfo/fileversioninfo.h"

#include <gtest/gtest.h>

#include <cstring>
#include <initializer_list>
#include <string>
#include <vector>

#include "win32/ui.h"

namespace {

using sysinfo::cFileVersionInfo;
using sysinfo::VersionData;
using Bytes = std::vector<BYTE>;

TEST(cFileVersionInfo, FixedRecordTexts) {
  EXPECT_EQ(cFileVersionInfo::FlagsText(0x40), "Unknown");  // outside the known bits
  EXPECT_EQ(cFileVersionInfo::OSText(0x30003), "OS/2-16 PM-32");
  EXPECT_EQ(cFileVersionInfo::FailureText(1815), "    (n/a) - 1815");
  for (DWORD error : {0u, 1811u, 1816u})  // only the resource errors are named
    EXPECT_EQ(cFileVersionInfo::FailureText(error), "    (n/a)") << error;
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

Bytes Table(const wchar_t* block, std::initializer_list<Bytes> children) {
  return Node(block, {}, 0, 1, children);
}

Bytes Translation(const Bytes& value) {
  return Table(L"VarFileInfo", {Node(L"Translation", value, value.size(), 0)});
}

Bytes Root(std::initializer_list<Bytes> children, size_t fixedSize = sizeof(VS_FIXEDFILEINFO)) {
  VS_FIXEDFILEINFO f{};
  f.dwSignature = VS_FFI_SIGNATURE;
  f.dwFileVersionMS = MAKELONG(2, 1), f.dwFileVersionLS = MAKELONG(4, 3);
  f.dwFileFlagsMask = 0x3F, f.dwFileFlags = 0x21;
  const BYTE* p = reinterpret_cast<const BYTE*>(&f);
  return Node(L"VS_VERSION_INFO", Bytes(p, p + fixedSize), fixedSize, 0, children);
}

TEST(cFileVersionInfo, VersionDataShapes) {
  const Bytes own =
      Table(L"040704E4", {Text(L"CompanyName", L"Eigene"), Text(L"FileDescription", L"Treiber")});
  const Bytes ownNoCompany = Table(L"040704E4", {Text(L"FileDescription", L"Treiber")});
  const Bytes us =
      Table(L"040904E4", {Text(L"CompanyName", L"Own"), Text(L"FileDescription", L"Driver")});
  const Bytes usNoCompany = Table(L"040904E4", {Text(L"FileDescription", L"Driver")});
  auto german = [](std::initializer_list<Bytes> tables) {  // 0x0407, code page 1252
    return Root({Table(L"StringFileInfo", tables), Translation({0x07, 0x04, 0xE4, 0x04})});
  };
  const struct {
    const char* name;
    Bytes blob;
    const char* strings;  // company|description; nullptr: not available
  } cases[] = {
      {"the translation's own table", german({own, us}), "Eigene|Treiber"},
      {"no company anywhere keeps the translation's table", german({ownNoCompany, usNoCompany}),
       "|Treiber"},
      {"fixed record cut short", Root({}, 20), nullptr},
      {"length beyond the data", Bytes{0xFF, 0x00, 0x34, 0x00, 0x00, 0x00}, nullptr},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    cFileVersionInfo info(VersionData{c.blob, 0});
    EXPECT_EQ(info.Available(), c.strings != nullptr);
    EXPECT_EQ(info.VerFile(), c.strings ? "01.02.0003.0004" : "    (n/a)");
    EXPECT_EQ(info.FileFlags(), c.strings ? "Debug Special" : "");
    EXPECT_EQ(info.CompanyName() + "|" + info.FileDescription(), c.strings ? c.strings : "|");
  }
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
