#include "shell/host_settings.h"

#include <windows.h>
#include <gtest/gtest.h>

#include "win32/handle.h"

namespace {

using shell::ComposeHostSettings;
using shell::ParseHostSettings;

std::string Bytes(std::initializer_list<int> values) {
  std::string s;
  for (int v : values) s.push_back(static_cast<char>(v));
  return s;
}

std::string Ints(std::initializer_list<int32_t> values) {
  std::string s;
  for (int32_t v : values)
    for (int i = 0; i < 4; ++i) s.push_back(static_cast<char>((static_cast<uint32_t>(v) >> (8 * i)) & 0xFF));
  return s;
}

struct ParseCase {
  const char* name;
  std::string bytes;
  bool present;
  int32_t sh, pf, redraw;
  size_t tailSize;
};

TEST(ParseHostSettings, Table) {
  const ParseCase cases[] = {
      {"empty file counts as none", "", false, 0, 0, 7, 0},
      {"seven bytes count as none", Bytes({1, 0, 0, 0, 2, 0, 0}), false, 0, 0, 7, 0},
      {"eight bytes keep the previous redraw", Ints({-1, 0}), true, -1, 0, 7, 0},
      {"eleven bytes keep the previous redraw", Ints({0, 5}) + Bytes({1, 1, 1}), true, 0, 5, 7, 0},
      {"twelve bytes", Ints({-1, 3, -1}), true, -1, 3, -1, 0},
      {"twenty bytes keep eight tail bytes", Ints({0, -4, 1, 7, 9}), true, 0, -4, 1, 8},
      {"values are little-endian", Bytes({0x78, 0x56, 0x34, 0x12, 0xFF, 0xFF, 0xFF, 0x7F}), true,
       0x12345678, INT32_MAX, 7, 0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    auto s = ParseHostSettings(c.bytes, 7);
    EXPECT_EQ(s.present, c.present);
    EXPECT_EQ(s.VoraSH, c.sh);
    EXPECT_EQ(s.VoraPixelFormat, c.pf);
    EXPECT_EQ(s.VoraRedraw, c.redraw);
    EXPECT_EQ(s.VoraSettingsTail.size(), c.tailSize);
  }
}

struct ComposeCase {
  const char* name;
  std::string current;
  std::string tail;
  std::string expected;
};

TEST(ComposeHostSettings, WritesOverTheFileWithoutTruncating) {
  const std::string tail8 = Bytes({1, 2, 3, 4, 5, 6, 7, 8});
  const ComposeCase cases[] = {
      {"no file gives 12 bytes", "", "", Ints({-1, 7, 0})},
      {"20-byte file keeps bytes 12-19", Ints({0, 0, 0}) + tail8, tail8, Ints({-1, 7, 0}) + tail8},
      {"8-byte file grows to 12", Ints({0, 2}), "", Ints({-1, 7, 0})},
      {"bytes beyond the kept tail stay", Ints({0, 0, 0}) + tail8 + "XYZ", tail8,
       Ints({-1, 7, 0}) + tail8 + "XYZ"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(ComposeHostSettings(c.current, -1, 7, 0, c.tail), c.expected);
  }
}

class HostFile : public ::testing::Test {
 protected:
  void SetUp() override {
    char dir[MAX_PATH];
    GetTempPathA(MAX_PATH, dir);
    path = std::string(dir) + "velmora_hostfile_test.ini";
    DeleteFileA(path.c_str());
  }
  void TearDown() override {
    SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_NORMAL);
    DeleteFileA(path.c_str());
    RemoveDirectoryA(path.c_str());
  }
  std::string Read() {
    std::string bytes;
    EXPECT_TRUE(shell::ReadWholeFile(path, bytes).ok);
    return bytes;
  }
  std::string path;
};

TEST_F(HostFile, RoundTripOfSeveralMegabytes) {
  std::string data = Ints({-1, 12, -1}) + std::string(4 * 1024 * 1024, 'q');
  ASSERT_TRUE(shell::ReplaceFileContents(path, data).ok);
  EXPECT_TRUE(shell::FileExists(path));
  EXPECT_EQ(Read(), data);
  EXPECT_FALSE(shell::FileExists(path + ".~new"));
}

TEST_F(HostFile, FolderInItsPlaceIsRefused) {
  ASSERT_TRUE(CreateDirectoryA(path.c_str(), nullptr));
  std::string bytes;
  auto read = shell::ReadWholeFile(path, bytes);
  EXPECT_FALSE(read.ok);
  auto write = shell::ReplaceFileContents(path, "abc");
  EXPECT_FALSE(write.ok);
  EXPECT_NE(write.reason.find("folder"), std::string::npos);
}

TEST_F(HostFile, LockedFileIsLeftUnchanged) {
  ASSERT_TRUE(shell::ReplaceFileContents(path, "old contents").ok);
  win32::File lock(CreateFileA(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
  ASSERT_TRUE(lock);
  auto write = shell::ReplaceFileContents(path, "new contents");
  EXPECT_FALSE(write.ok);
  EXPECT_FALSE(write.reason.empty());
  lock.reset();
  EXPECT_EQ(Read(), "old contents");
  EXPECT_FALSE(shell::FileExists(path + ".~new"));
}

TEST(HostSettingsPath, IsInTheWindowsDirectory) {
  char windows[MAX_PATH];
  UINT n = GetWindowsDirectoryA(windows, MAX_PATH);
  EXPECT_EQ(shell::HostSettingsPath(), std::string(windows, n) + "\\VORAhogl.ini");
}

}  // namespace
