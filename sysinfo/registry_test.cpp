#include "sysinfo/registry.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

namespace {

using sysinfo::cRegistry;

TEST(Normalize, Table) {
  const struct {
    const char* in;
    const char* out;
  } cases[] = {
      {"\\Software\\\\Vendor\\", "Software\\Vendor"},
      {"Software\\Windows NT\\OpenGL Drivers\\\\", "Software\\Windows NT\\OpenGL Drivers"},
      {"\\\\\\", ""},
      {"", ""},
      {"Key/With/Slashes", "Key/With/Slashes"},  // a slash is part of a key name
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.in);
    EXPECT_EQ(cRegistry::Normalize(c.in), c.out);
  }
}

// A scratch key under HKCU, removed with everything below it afterwards.
class RegistryKey : public ::testing::Test {
 protected:
  void SetUp() override {
    path_ = "Software\\VelmoraSysinfoTest" + std::to_string(GetCurrentProcessId());
    HKEY raw = nullptr;
    ASSERT_EQ(RegCreateKeyExA(HKEY_CURRENT_USER, path_.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS,
                              nullptr, &raw, nullptr),
              ERROR_SUCCESS);
    key_.reset(raw);
  }
  void TearDown() override {
    key_.reset();
    RegDeleteTreeA(HKEY_CURRENT_USER, path_.c_str());
  }
  void SetBytes(const char* name, DWORD type, const void* data, size_t size) {
    ASSERT_EQ(RegSetValueExA(key_.get(), name, 0, type, static_cast<const BYTE*>(data),
                             static_cast<DWORD>(size)),
              ERROR_SUCCESS);
  }
  void SetText(const char* name, const std::string& text, DWORD type = REG_SZ) {
    SetBytes(name, type, text.c_str(), text.size() + 1);
  }
  void AddSubKey(const std::string& name) {
    HKEY raw = nullptr;
    ASSERT_EQ(RegCreateKeyExA(key_.get(), name.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr,
                              &raw, nullptr),
              ERROR_SUCCESS);
    RegCloseKey(raw);
  }
  std::optional<std::string> Read(const char* name) {
    return sysinfo::ReadStringValue(HKEY_CURRENT_USER, path_, name);
  }

  std::string path_;
  win32::Key key_;
};

TEST_F(RegistryKey, ReadStringValueGivesEmptyOrNothingForBadValues) {
  const std::string longText(100000, 'x');
  const DWORD number = 7;
  SetText("Plain", "GenuineIntel");
  SetBytes("Empty", REG_SZ, "", 0);
  SetBytes("OnlyNul", REG_SZ, "", 1);
  SetBytes("Unterminated", REG_SZ, "GenuineIntelXYZ", 12);
  SetBytes("Embedded", REG_SZ, "ab\0cd", 6);
  SetBytes("Number", REG_DWORD, &number, sizeof number);
  SetBytes("Binary", REG_BINARY, "abc", 3);
  SetText("Expand", "%SystemRoot%\\x", REG_EXPAND_SZ);
  SetText("Long", longText);

  const struct {
    const char* value;
    std::optional<std::string> expected;
  } cases[] = {
      {"Plain", "GenuineIntel"},
      {"Missing", std::nullopt},
      {"Empty", ""},
      {"OnlyNul", ""},
      {"Unterminated", "GenuineIntel"},
      {"Embedded", "ab"},
      {"Number", std::nullopt},
      {"Binary", std::nullopt},
      {"Expand", "%SystemRoot%\\x"},  // read as stored, not expanded
      {"Long", longText},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.value);
    EXPECT_EQ(Read(c.value), c.expected);
  }
  EXPECT_EQ(sysinfo::ReadStringValue(HKEY_CURRENT_USER, path_ + "\\NoSuchKey", "Plain"),
            std::nullopt);
}

TEST_F(RegistryKey, EnumerateValuesGivesNamesDataTypesAndLongestName) {
  const std::string longName(300, 'n');
  const std::string longData(70000, 'd');
  const DWORD number = 0x12345678;
  SetText("vtestdrv", "vtestdrv");
  SetBytes("Dword", REG_DWORD, &number, sizeof number);
  SetBytes("Unterminated", REG_SZ, "abcdef", 3);
  SetText(longName.c_str(), longData);

  cRegistry reg(HKEY_CURRENT_USER, path_);
  ASSERT_TRUE(reg.KeyExists());
  auto values = reg.EnumerateValues();
  ASSERT_TRUE(values.Ok);
  ASSERT_EQ(values.Count(), 4u);
  EXPECT_EQ(values.LongestNameLength, 300u);
  std::sort(values.Values.begin(), values.Values.end(),
            [](const auto& a, const auto& b) { return a.Name < b.Name; });
  const auto& dword = values.Values[0];
  EXPECT_EQ(dword.Name, "Dword");
  EXPECT_EQ(dword.Type, static_cast<DWORD>(REG_DWORD));
  EXPECT_EQ(dword.Data, "");
  ASSERT_EQ(dword.Raw.size(), sizeof number);
  EXPECT_EQ(dword.Raw[0], 0x78);
  EXPECT_EQ(values.Values[1].Name, "Unterminated");
  EXPECT_EQ(values.Values[1].Data, "abc");
  EXPECT_EQ(values.Values[2].Name, longName);
  EXPECT_EQ(values.Values[2].Data, longData);
  EXPECT_EQ(values.Values[3].Name, "vtestdrv");
  EXPECT_EQ(values.Values[3].Data, "vtestdrv");
  EXPECT_EQ(values.Values[3].Type, static_cast<DWORD>(REG_SZ));
}

TEST_F(RegistryKey, EnumerateSectionsAndNormalisedSubKeyPaths) {
  AddSubKey("Mcd");
  AddSubKey("Icd With Blank");
  SetText("Top", "x");
  cRegistry reg;
  reg.ClassKey(HKEY_CURRENT_USER);
  reg.SectionKey(path_ + "\\");
  auto sections = reg.EnumerateSections();
  ASSERT_TRUE(sections.Ok);
  ASSERT_EQ(sections.Count(), 2u);
  std::sort(sections.Names.begin(), sections.Names.end());
  EXPECT_EQ(sections.Names, (std::vector<std::string>{"Icd With Blank", "Mcd"}));

  reg.SectionKey(path_ + "\\\\Mcd\\");
  EXPECT_EQ(reg.SectionKey(), path_ + "\\Mcd");
  ASSERT_TRUE(reg.KeyExists());
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

  SetText("Top", "here");
  reg.SectionKey(path_);
  ASSERT_TRUE(reg.KeyExists());
  EXPECT_EQ(reg.Value("Top"), "here");
  reg.ClassKey(HKEY_CLASSES_ROOT);
  EXPECT_EQ(reg.KeyHandle(), nullptr);
  EXPECT_FALSE(reg.KeyExists());
}

TEST(RegistryOnThisSystem, OneProcessorKeyPerProcessor) {
  SYSTEM_INFO si{};
  GetSystemInfo(&si);
  cRegistry reg(HKEY_LOCAL_MACHINE, "HARDWARE\\DESCRIPTION\\System\\CentralProcessor");
  auto sections = reg.EnumerateSections();
  ASSERT_TRUE(sections.Ok);
  EXPECT_EQ(sections.Count(), si.dwNumberOfProcessors);
  EXPECT_EQ(sections.Names.front(), "0");
}

}  // namespace
