// The registry reader, and the display adapters' keys and module lists read with it.
#include "sysinfo/registry.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "sysinfo/display_adapters.h"
#include "win32/ui.h"

namespace {

using namespace sysinfo;
using Texts = std::vector<std::string>;

std::string Sz(const std::string& text) { return text + '\0'; }

// A scratch key under HKCU, removed with everything below it afterwards.
class RegistryKey : public ::testing::Test {
 protected:
  void TearDown() override { RegDeleteTreeA(HKEY_CURRENT_USER, path_.c_str()); }
  // Stores `data` as given in the value `name` of the key `sub`, made when missing.
  void Set(const std::string& sub, const char* name, DWORD type, const std::string& data) {
    ASSERT_EQ(RegSetKeyValueA(HKEY_CURRENT_USER, (path_ + sub).c_str(), name, type, data.data(),
                              static_cast<DWORD>(data.size())),
              ERROR_SUCCESS);
  }
  AdapterKeyValues ReadAdapter(const std::string& sub) {
    return ReadAdapterKey(HKEY_CURRENT_USER, path_ + sub, "C:\\Sys", "W:\\Wow");
  }
  const std::string path_ = "Software\\VelmoraSysinfoTest" + std::to_string(GetCurrentProcessId());
};

TEST_F(RegistryKey, ReadStringValueCutsAtTheFirstNulAndRefusesOtherTypes) {
  const struct {
    const char* name;
    DWORD type;
    std::string stored;
    std::optional<std::string> read;
  } cases[] = {
      {"Plain", REG_SZ, Sz("GenuineIntel"), "GenuineIntel"},
      {"Empty", REG_SZ, "", ""},
      {"Unterminated", REG_SZ, "GenuineIntel", "GenuineIntel"},
      {"Embedded", REG_SZ, Sz(std::string("ab\0cd", 5)), "ab"},
      {"Number", REG_DWORD, std::string("\7\0\0\0", 4), std::nullopt},
      {"Expand", REG_EXPAND_SZ, Sz("%SystemRoot%\\x"), "%SystemRoot%\\x"},  // not expanded
  };
  for (const auto& c : cases) Set("", c.name, c.type, c.stored);
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(ReadStringValue(HKEY_CURRENT_USER, path_, c.name), c.read);
  }
  EXPECT_EQ(ReadStringValue(HKEY_CURRENT_USER, path_, "Missing"), std::nullopt);
  EXPECT_EQ(ReadStringValue(HKEY_CURRENT_USER, path_ + "\\NoSuchKey", "Plain"), std::nullopt);
}

TEST_F(RegistryKey, EnumerateValuesOnceTheKeyIsThere) {
  cRegistry reg(HKEY_CURRENT_USER, path_);
  EXPECT_FALSE(reg.KeyExists());
  EXPECT_FALSE(reg.EnumerateValues().Ok);
  EXPECT_FALSE(reg.EnumerateSections().Ok);
  EXPECT_EQ(reg.Value("Unterminated"), std::nullopt);

  Set("", "Dword", REG_DWORD, std::string("\x78\x56\x34\x12", 4));
  Set("", "Unterminated", REG_SZ, "abc");
  auto values = reg.EnumerateValues();
  ASSERT_TRUE(values.Ok);
  ASSERT_EQ(values.Count(), 2u);
  std::sort(values.Values.begin(), values.Values.end(),
            [](const auto& a, const auto& b) { return a.Name < b.Name; });
  const auto& dword = values.Values[0];
  EXPECT_EQ(dword.Name + "|" + dword.Data, "Dword|");
  EXPECT_EQ(dword.Type, static_cast<DWORD>(REG_DWORD));
  EXPECT_EQ(dword.Raw, (std::vector<BYTE>{0x78, 0x56, 0x34, 0x12}));
  EXPECT_EQ(values.Values[1].Name + "|" + values.Values[1].Data, "Unterminated|abc");
}

// Driver names as multi-strings (cut at the empty string, or unterminated), full and bare.
TEST_F(RegistryKey, AdapterKeysAndTheClassEntries) {
  const std::string fixture = win32::ModuleDirectory() + "\\vtestdrv.dll";
  Set("\\0000", "DriverDesc", REG_SZ, "Acme 5000");
  Set("\\0000", "ProviderName", REG_SZ, Sz("Acme"));
  const std::string names = Sz(fixture) + Sz("nosuchgl") + Sz("") + Sz("late");
  Set("\\0000", "OpenGLDriverName", REG_MULTI_SZ, names);
  Set("\\0000", "OpenGLDriverNameWow", REG_MULTI_SZ, "acmegl32.dll");
  Set("\\0001", "DriverDesc", REG_BINARY, "Acme");  // the wrong type reads as missing

  AdapterKeyValues v = ReadAdapter("\\0000");
  EXPECT_TRUE(v.Found);
  EXPECT_EQ(v.DriverDesc + "|" + v.ProviderName, "Acme 5000|Acme");
  ASSERT_EQ(v.OpenGL.size(), 2u);
  EXPECT_EQ(v.OpenGL[0].Path + "|" + v.OpenGL[0].Version, fixture + "|6.14.10.8217");
  EXPECT_TRUE(v.OpenGL[0].Exists);
  EXPECT_EQ(v.OpenGL[1].Path + "|" + v.OpenGL[1].Version, "C:\\Sys\\nosuchgl.dll|");
  EXPECT_FALSE(v.OpenGL[1].Exists);
  ASSERT_EQ(v.OpenGLWow.size(), 1u);
  EXPECT_EQ(v.OpenGLWow[0].Path, "W:\\Wow\\acmegl32.dll");

  EXPECT_FALSE(ReadAdapter("\\0009").Found);

  std::vector<ClassEntry> entries = ReadClassEntries(HKEY_CURRENT_USER, path_ + "\\\\");
  ASSERT_EQ(entries.size(), 2u);
  EXPECT_EQ(entries[0].Subkey + "|" + entries[0].DriverDesc, "0000|Acme 5000");
  EXPECT_EQ(entries[1].Subkey + "|" + entries[1].DriverDesc, "0001|");
  EXPECT_TRUE(ReadClassEntries(HKEY_CURRENT_USER, path_ + "\\gone").empty());
}

TEST(ChooseClassSubkey, Table) {
  EXPECT_EQ(MachineRelativePath("\\REGISTRY\\MACHINE\\System\\\\Video\\0000\\"),
            "System\\Video\\0000");
  EXPECT_EQ(MachineRelativePath("\\Registry\\User\\A"), "");
  EXPECT_EQ(ResolveDriverPath(" acmeogl.DLL ", "D:\\Sys"), "D:\\Sys\\acmeogl.DLL");
  const std::vector<ClassEntry> entries = {
      {"0000", "Acme"}, {"0001", "Other"}, {"0002", "Other"}, {"0003", ""}};
  const char* const cases[][3] = {
      {"acme", "Video\\{g}\\0003", "0000"},   // the description decides, in any case
      {"Other", "Video\\{g}\\0002", "0002"},  // two alike: the video key's number
      {"Other", "Video\\{g}\\0000", ""},      // ... but only one that matches
  };
  for (const auto& c : cases)
    EXPECT_EQ(ChooseClassSubkey(entries, c[0], c[1]), c[2]) << c[0] << " " << c[1];
}

TEST(ClassifyOpenGLModules, Table) {
  ContextModules m;
  m.Known = true;
  m.Before = {"C:\\Windows\\System32\\kernel32.dll", "C:\\WINDOWS\\system32\\OPENGL32.DLL"};
  m.After = {"C:\\Windows\\System32\\kernel32.dll", "C:\\WINDOWS\\system32\\OPENGL32.DLL",
             "C:\\Windows\\SysWOW64\\opengl32.dll", "C:\\App\\opengl32.dll",
             "C:\\DS\\acmeicd32.dll", "C:\\DS\\vendorgl.dll", "C:\\Windows\\System32\\glu32.dll",
             "C:\\Windows\\System32\\dxgi.dll"};
  LoadedOpenGL got = ClassifyOpenGLModules(m, "c:\\windows\\system32", {"VendorGL"});
  ASSERT_TRUE(got.Known);
  ASSERT_EQ(got.Generic.size(), 2u);
  EXPECT_TRUE(!got.Generic[0].NewWithContext && got.Generic[1].NewWithContext);
  Texts icds;
  for (const auto& i : got.Icds) icds.push_back(i.Path);
  EXPECT_EQ(icds,
            (Texts{"C:\\App\\opengl32.dll", "C:\\DS\\acmeicd32.dll", "C:\\DS\\vendorgl.dll"}));
  EXPECT_FALSE(ClassifyOpenGLModules({}, "c:\\windows\\system32", {}).Known);
}

// Around a real context the system's own opengl32.dll is found as generic, with its version.
TEST(LoadedOpenGLModules, AroundARealContext) {
  win32::OwnedWindow wnd(CreateWindowA("STATIC", "", WS_POPUP, 0, 0, 32, 32, nullptr, nullptr,
                                       GetModuleHandleA(nullptr), nullptr));
  win32::WindowDC dc(wnd.get());
  PIXELFORMATDESCRIPTOR pfd{};
  pfd.nSize = sizeof pfd, pfd.nVersion = 1, pfd.cColorBits = 24;
  pfd.dwFlags = PFD_DRAW_TO_WINDOW | PFD_SUPPORT_OPENGL;
  ContextModules m{true, LoadedModulePaths(), {}};
  const int format = ChoosePixelFormat(dc.get(), &pfd);
  HGLRC rc =
      format && SetPixelFormat(dc.get(), format, &pfd) ? wglCreateContext(dc.get()) : nullptr;
  if (rc && wglMakeCurrent(dc.get(), rc)) m.After = LoadedModulePaths();
  wglMakeCurrent(nullptr, nullptr);
  if (rc) wglDeleteContext(rc);
  if (m.After.empty()) GTEST_SKIP() << "no OpenGL context can be made here";
  char dir[MAX_PATH] = {};
  GetSystemDirectoryA(dir, MAX_PATH);
  LoadedOpenGL gl = ClassifyOpenGLModules(m, dir, {});
  ASSERT_FALSE(gl.Generic.empty()) << "the system's opengl32.dll is loaded";
  EXPECT_EQ(Lower(gl.Generic[0].Path), Lower(std::string(dir) + "\\opengl32.dll"));
  ReadModuleVersions(gl);
  EXPECT_FALSE(gl.Generic[0].Version.empty());
  for (const auto& icd : gl.Icds)
    EXPECT_NE(Lower(FileNameOf(icd.Path)), "opengl32.dll") << icd.Path;
}

}  // namespace
