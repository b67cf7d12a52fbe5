#include "sysinfo/registry.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

namespace {

using sysinfo::cRegistry;

std::string Sz(const std::string& text) { return text + '\0'; }

TEST(Normalize, Table) {
  const char* const cases[][2] = {
      {"\\Software\\\\Vendor\\", "Software\\Vendor"},
      {"Software\\Windows NT\\OpenGL Drivers\\\\", "Software\\Windows NT\\OpenGL Drivers"},
      {"\\\\\\", ""},
      {"", ""},
      {"Key/With/Slashes", "Key/With/Slashes"},  // a slash is part of a key name
  };
  for (const auto& c : cases) EXPECT_EQ(cRegistry::Normalize(c[0]), c[1]) << c[0];
}

TEST(StringsFromData, Table) {
  using S = std::vector<std::string>;
  const struct {
    DWORD type;
    std::string data;
    S want;
  } cases[] = {
      {REG_SZ, "unterminated", S{"unterminated"}},
      {REG_SZ, Sz(""), S{}},
      {REG_MULTI_SZ, std::string("a\0b\0\0", 5), S{"a", "b"}},
      {REG_MULTI_SZ, std::string("a\0b", 3), S{"a", "b"}},
      {REG_MULTI_SZ, std::string("a\0\0b\0\0", 6), S{"a"}},
      {REG_MULTI_SZ, "", S{}},
      {REG_BINARY, "a.dll", S{}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.data);
    const BYTE* data = reinterpret_cast<const BYTE*>(c.data.data());
    EXPECT_EQ(sysinfo::StringsFromData(c.type, data, c.data.size()), c.want);
  }
}

// A scratch key under HKCU, removed with everything below it afterwards.
class RegistryKey : public ::testing::Test {
 protected:
  void TearDown() override { RegDeleteTreeA(HKEY_CURRENT_USER, path_.c_str()); }
  // Makes the key `sub` and, unless `type` is REG_NONE, stores `data` in it as given.
  void Set(const std::string& sub, const std::string& name, DWORD type, const std::string& data) {
    HKEY raw = nullptr;
    ASSERT_EQ(RegCreateKeyExA(HKEY_CURRENT_USER, (path_ + sub).c_str(), 0, nullptr, 0, KEY_WRITE,
                              nullptr, &raw, nullptr),
              ERROR_SUCCESS);
    win32::Key key(raw);
    if (type == REG_NONE) return;
    ASSERT_EQ(RegSetValueExA(raw, name.c_str(), 0, type, reinterpret_cast<const BYTE*>(data.data()),
                             static_cast<DWORD>(data.size())),
              ERROR_SUCCESS);
  }
  const std::string path_ = "Software\\VelmoraSysinfoTest" + std::to_string(GetCurrentProcessId());
};

TEST_F(RegistryKey, ReadStringValueCutsAtTheFirstNulAndRefusesOtherTypes) {
  const std::string longText(100000, 'x');
  const struct {
    const char* name;
    DWORD type;  // REG_NONE: not written
    std::string stored;
    std::optional<std::string> read;
  } cases[] = {
      {"Plain", REG_SZ, Sz("GenuineIntel"), "GenuineIntel"},
      {"Missing", REG_NONE, "", std::nullopt},
      {"Empty", REG_SZ, "", ""},
      {"OnlyNul", REG_SZ, Sz(""), ""},
      {"Unterminated", REG_SZ, "GenuineIntel", "GenuineIntel"},
      {"Embedded", REG_SZ, Sz(std::string("ab\0cd", 5)), "ab"},
      {"Number", REG_DWORD, std::string("\7\0\0\0", 4), std::nullopt},
      {"Binary", REG_BINARY, "abc", std::nullopt},
      {"Expand", REG_EXPAND_SZ, Sz("%SystemRoot%\\x"), "%SystemRoot%\\x"},  // not expanded
      {"Long", REG_SZ, Sz(longText), longText},
  };
  for (const auto& c : cases) Set("", c.name, c.type, c.stored);
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(sysinfo::ReadStringValue(HKEY_CURRENT_USER, path_, c.name), c.read);
  }
  EXPECT_EQ(sysinfo::ReadStringValue(HKEY_CURRENT_USER, path_ + "\\NoSuchKey", "Plain"),
            std::nullopt);
}

TEST_F(RegistryKey, EnumerateValuesGivesNamesDataTypesAndLongestName) {
  const std::string longName(300, 'n'), longData(70000, 'd');
  Set("", "vtestdrv", REG_SZ, Sz("vtestdrv"));
  Set("", "Dword", REG_DWORD, std::string("\x78\x56\x34\x12", 4));
  Set("", "Unterminated", REG_SZ, "abc");
  Set("", longName, REG_SZ, Sz(longData));

  auto values = cRegistry(HKEY_CURRENT_USER, path_).EnumerateValues();
  ASSERT_TRUE(values.Ok);
  ASSERT_EQ(values.Count(), 4u);
  EXPECT_EQ(values.LongestNameLength, 300u);
  std::sort(values.Values.begin(), values.Values.end(),
            [](const auto& a, const auto& b) { return a.Name < b.Name; });
  const auto& dword = values.Values[0];
  EXPECT_EQ(dword.Name + "|" + dword.Data, "Dword|");
  EXPECT_EQ(dword.Type, static_cast<DWORD>(REG_DWORD));
  EXPECT_EQ(dword.Raw, (std::vector<BYTE>{0x78, 0x56, 0x34, 0x12}));
  EXPECT_EQ(values.Values[1].Name + "|" + values.Values[1].Data, "Unterminated|abc");
  EXPECT_EQ(values.Values[2].Name, longName);
  EXPECT_EQ(values.Values[2].Data, longData);
  EXPECT_EQ(values.Values[3].Name + "|" + values.Values[3].Data, "vtestdrv|vtestdrv");
  EXPECT_EQ(values.Values[3].Type, static_cast<DWORD>(REG_SZ));
}

TEST_F(RegistryKey, EnumerateSectionsAndNormalisedSubKeyPaths) {
  Set("\\Mcd", "", REG_NONE, "");
  Set("\\Icd With Blank", "", REG_NONE, "");
  Set("", "Top", REG_SZ, Sz("x"));
  cRegistry reg;
  reg.ClassKey(HKEY_CURRENT_USER);
  reg.SectionKey(path_ + "\\");
  auto sections = reg.EnumerateSections();
  ASSERT_TRUE(sections.Ok);
  std::sort(sections.Names.begin(), sections.Names.end());
  EXPECT_EQ(sections.Names, (std::vector<std::string>{"Icd With Blank", "Mcd"}));

  reg.SectionKey(path_ + "\\\\Mcd\\");
  EXPECT_EQ(reg.SectionKey(), path_ + "\\Mcd");
  auto empty = reg.EnumerateValues();
  EXPECT_TRUE(empty.Ok);
  EXPECT_EQ(empty.Count(), 0u);
  EXPECT_EQ(empty.LongestNameLength, 0u);
}

TEST_F(RegistryKey, MissingKeyIsAFailureResultAndANewRootClosesTheKey) {
  cRegistry reg(HKEY_CURRENT_USER, path_ + "\\Absent");
  EXPECT_FALSE(reg.KeyExists());
  EXPECT_FALSE(reg.EnumerateValues().Ok);
  EXPECT_FALSE(reg.EnumerateSections().Ok);
  EXPECT_EQ(reg.Value("Top"), std::nullopt);

  Set("", "Top", REG_SZ, Sz("here"));
  reg.SectionKey(path_);
  EXPECT_EQ(reg.Value("Top"), "here");
  reg.ClassKey(HKEY_CLASSES_ROOT);
  EXPECT_EQ(reg.KeyHandle(), nullptr);
  EXPECT_FALSE(reg.KeyExists());
}

}  // namespace
