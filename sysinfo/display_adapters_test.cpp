#include "sysinfo/display_adapters.h"

#include <gtest/gtest.h>

#include "sysinfo/registry.h"
#include "win32/handle.h"
#include "win32/ui.h"

namespace {

using namespace sysinfo;

std::string SystemDir() {
  char dir[MAX_PATH] = {};
  GetSystemDirectoryA(dir, MAX_PATH);
  return dir;
}

TEST(StringsFromData, Table) {
  using S = std::vector<std::string>;
  const struct {
    DWORD type;
    std::string data;
    S want;
  } cases[] = {
      {REG_SZ, std::string("a.dll\0", 6), S{"a.dll"}},
      {REG_SZ, "unterminated", S{"unterminated"}},
      {REG_SZ, std::string("\0", 1), S{}},
      {REG_MULTI_SZ, std::string("a\0b\0\0", 5), S{"a", "b"}},
      {REG_MULTI_SZ, std::string("a\0b", 3), S{"a", "b"}},
      {REG_MULTI_SZ, std::string("a\0\0b\0\0", 6), S{"a"}},
      {REG_MULTI_SZ, "", S{}},
      {REG_DWORD, std::string("\1\0\0\0", 4), S{}},
      {REG_BINARY, "a.dll", S{}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.data);
    EXPECT_EQ(StringsFromData(c.type, reinterpret_cast<const BYTE*>(c.data.data()), c.data.size()),
              c.want);
  }
}

TEST(DisplayAdapterPaths, Table) {
  EXPECT_EQ(MachineRelativePath("\\Registry\\Machine\\System\\CurrentControlSet\\Control\\Video\\{x}\\0000"),
            "System\\CurrentControlSet\\Control\\Video\\{x}\\0000");
  EXPECT_EQ(MachineRelativePath("\\REGISTRY\\MACHINE\\A\\"), "A");
  EXPECT_EQ(MachineRelativePath("\\Registry\\User\\A"), "");
  EXPECT_EQ(MachineRelativePath(""), "");
  const struct {
    const char* registered;
    const char* want;
  } resolves[] = {
      {"C:\\Windows\\System32\\DriverStore\\FileRepository\\x\\acmeogl.dll",
       "C:\\Windows\\System32\\DriverStore\\FileRepository\\x\\acmeogl.dll"},
      {"acmeogl", "D:\\Sys\\acmeogl.dll"},
      {"acmeogl.dll", "D:\\Sys\\acmeogl.dll"},
      {" acmeogl.DLL ", "D:\\Sys\\acmeogl.DLL"},
      {"", ""},
  };
  for (const auto& c : resolves) EXPECT_EQ(ResolveDriverPath(c.registered, "D:\\Sys"), c.want) << c.registered;
}

TEST(ChooseClassSubkey, Table) {
  std::vector<ClassEntry> entries = {{"0000", "Acme"}, {"0001", "Other"}, {"0002", "Other"}, {"0003", ""}};
  const struct {
    const char* description;
    const char* videoKey;
    const char* want;
  } cases[] = {
      {"acme", "Video\\{g}\\0003", "0000"},   // the description decides, in any case
      {"Other", "Video\\{g}\\0002", "0002"},  // two alike: the video key's number
      {"Other", "Video\\{g}\\0000", ""},      // ... but only one that matches
      {"Unknown", "Video\\{g}\\0003", "0003"},
      {"Unknown", "Video\\{g}\\0009", ""},
      {"", "", ""},
  };
  for (const auto& c : cases) EXPECT_EQ(ChooseClassSubkey(entries, c.description, c.videoKey), c.want) << c.description;
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
  EXPECT_FALSE(got.Generic[0].NewWithContext);
  EXPECT_TRUE(got.Generic[1].NewWithContext);
  std::vector<std::string> icds;
  for (const auto& i : got.Icds) icds.push_back(i.Path);
  EXPECT_EQ(icds, (std::vector<std::string>{"C:\\App\\opengl32.dll", "C:\\DS\\acmeicd32.dll",
                                            "C:\\DS\\vendorgl.dll"}));
  EXPECT_FALSE(ClassifyOpenGLModules({}, "c:\\windows\\system32", {}).Known);
}

// Adapter class keys written under a root of the test's own, removed
// afterwards: names as strings and multi-strings, full and bare, missing
// files, wrong types, an empty key and twenty adapters.
class AdapterKeys : public ::testing::Test {
 protected:
  void SetUp() override {
    root_ = "Software\\VelmoraAdaptersTest" + std::to_string(GetCurrentProcessId()) + "\\Class";
    for (int i = 0; i < 20; ++i) {
      char sub[8];
      snprintf(sub, sizeof sub, "%04d", 100 + i);
      Key(sub);
      if (i >= 5) Set(sub, "DriverDesc", REG_SZ, "Adapter " + std::to_string(i) + std::string(1, '\0'));
    }
    Set("0100", "DriverDesc", REG_SZ, std::string("Acme 5000\0", 10));
    Set("0100", "ProviderName", REG_SZ, std::string("Acme\0", 5));
    Set("0100", "DriverVersion", REG_SZ, std::string("31.0.1\0", 7));
    Set("0100", "DriverDate", REG_SZ, std::string("1-2-2024\0", 9));
    Set("0100", "OpenGLDriverName", REG_SZ, std::string("opengl32\0", 9));
    fixture_ = win32::ModuleDirectory() + "\\vtestdrv.dll";
    Set("0101", "OpenGLDriverName", REG_MULTI_SZ, fixture_ + '\0' + "nosuchgl" + '\0' + '\0');
    Set("0101", "OpenGLDriverNameWow", REG_SZ, "unterminated.dll");
    Set("0102", "OpenGLDriverName", REG_DWORD, std::string("\1\0\0\0", 4));
    Set("0102", "DriverDesc", REG_BINARY, "Acme");
  }
  void TearDown() override {
    RegDeleteTreeA(HKEY_LOCAL_MACHINE, root_.substr(0, root_.rfind('\\')).c_str());
  }
  void Key(const std::string& sub) {
    HKEY k = nullptr;
    ASSERT_EQ(RegCreateKeyExA(HKEY_LOCAL_MACHINE, (root_ + "\\" + sub).c_str(), 0, nullptr, 0,
                              KEY_WRITE, nullptr, &k, nullptr),
              ERROR_SUCCESS);
    RegCloseKey(k);
  }
  void Set(const std::string& sub, const char* name, DWORD type, const std::string& data) {
    win32::Key k;
    HKEY raw = nullptr;
    ASSERT_EQ(RegOpenKeyExA(HKEY_LOCAL_MACHINE, (root_ + "\\" + sub).c_str(), 0, KEY_WRITE, &raw),
              ERROR_SUCCESS);
    k.reset(raw);
    ASSERT_EQ(RegSetValueExA(raw, name, 0, type, reinterpret_cast<const BYTE*>(data.data()),
                             static_cast<DWORD>(data.size())),
              ERROR_SUCCESS);
  }
  AdapterKeyValues Read(const char* sub) {
    return ReadAdapterKey(HKEY_LOCAL_MACHINE, root_ + "\\" + sub, SystemDir(), "W:\\Wow");
  }
  std::string root_, fixture_;
};

TEST_F(AdapterKeys, StringBareNameInTheSystemDirectory) {
  AdapterKeyValues v = Read("0100");
  EXPECT_TRUE(v.Found);
  EXPECT_EQ((std::vector<std::string>{v.DriverDesc, v.ProviderName, v.DriverVersion, v.DriverDate}),
            (std::vector<std::string>{"Acme 5000", "Acme", "31.0.1", "1-2-2024"}));
  ASSERT_EQ(v.OpenGL.size(), 1u);
  EXPECT_EQ(v.OpenGL[0].Path, SystemDir() + "\\opengl32.dll");
  EXPECT_TRUE(v.OpenGL[0].Exists);
  EXPECT_FALSE(v.OpenGL[0].Version.empty());
  EXPECT_TRUE(v.OpenGLWow.empty());
}

TEST_F(AdapterKeys, MultiStringFullPathAndMissingFile) {
  AdapterKeyValues v = Read("0101");
  ASSERT_EQ(v.OpenGL.size(), 2u);
  EXPECT_EQ(v.OpenGL[0].Path, fixture_);
  EXPECT_TRUE(v.OpenGL[0].Exists);
  EXPECT_EQ(v.OpenGL[0].Version, "6.14.10.8217");
  EXPECT_EQ(v.OpenGL[1].Path, SystemDir() + "\\nosuchgl.dll");
  EXPECT_FALSE(v.OpenGL[1].Exists);
  EXPECT_EQ(v.OpenGL[1].Version, "");
  ASSERT_EQ(v.OpenGLWow.size(), 1u);
  EXPECT_EQ(v.OpenGLWow[0].Path, "W:\\Wow\\unterminated.dll");
}

TEST_F(AdapterKeys, WrongTypesEmptyAndMissingKeys) {
  AdapterKeyValues wrong = Read("0102");
  EXPECT_TRUE(wrong.Found);
  EXPECT_TRUE(wrong.OpenGL.empty());
  EXPECT_EQ(wrong.DriverDesc, "");
  AdapterKeyValues empty = Read("0103");
  EXPECT_TRUE(empty.Found);
  EXPECT_TRUE(empty.DriverDesc.empty() && empty.OpenGL.empty() && empty.OpenGLWow.empty());
  EXPECT_FALSE(Read("0999").Found);
  EXPECT_FALSE(ReadAdapterKey(HKEY_LOCAL_MACHINE, "", "", "").Found);
}

TEST_F(AdapterKeys, TwentyAdaptersFoundAndMatched) {
  std::vector<ClassEntry> entries = ReadClassEntries(HKEY_LOCAL_MACHINE, root_);
  ASSERT_EQ(entries.size(), 20u);
  EXPECT_EQ(entries[0].DriverDesc, "Acme 5000");
  EXPECT_EQ(entries[19].Subkey, "0119");
  EXPECT_EQ(entries[19].DriverDesc, "Adapter 19");
  EXPECT_EQ(ChooseClassSubkey(entries, "Adapter 7", "Video\\{g}\\0000"), "0107");
  EXPECT_TRUE(ReadClassEntries(HKEY_LOCAL_MACHINE, root_ + "\\gone").empty());
}

TEST(DisplayAdapters, WhatTheSystemLists) {
  std::vector<DisplayAdapter> adapters = GatherDisplayAdapters();
  ASSERT_FALSE(adapters.empty());
  int primary = 0;
  for (const auto& a : adapters) {
    SCOPED_TRACE(a.Description);
    primary += a.Primary;
    EXPECT_FALSE(a.DeviceName.empty());
    if (!a.VideoKey.empty()) {
      EXPECT_TRUE(a.Values.Found) << a.VideoKey;
    }
    if (!a.ClassKey.empty()) {
      EXPECT_EQ(Lower(a.Values.DriverDesc), Lower(a.Description));
    }
  }
  EXPECT_EQ(primary, 1);
}

// The OpenGL modules around a real context: the implementation this system
// loads is found as generic (the system's own opengl32) or as a driver.
TEST(LoadedOpenGLModules, AroundARealContext) {
  win32::OwnedWindow wnd(CreateWindowA("STATIC", "", WS_POPUP, 0, 0, 32, 32, nullptr, nullptr,
                                       GetModuleHandleA(nullptr), nullptr));
  HDC dc = GetDC(wnd.get());
  PIXELFORMATDESCRIPTOR pfd{};
  pfd.nSize = sizeof pfd;
  pfd.nVersion = 1;
  pfd.dwFlags = PFD_DRAW_TO_WINDOW | PFD_SUPPORT_OPENGL;
  pfd.cColorBits = 24;
  ContextModules m;
  m.Known = true;
  m.Before = LoadedModulePaths();
  int format = ChoosePixelFormat(dc, &pfd);
  HGLRC rc = format && SetPixelFormat(dc, format, &pfd) ? wglCreateContext(dc) : nullptr;
  if (!rc) {
    ReleaseDC(wnd.get(), dc);
    GTEST_SKIP() << "no OpenGL context can be made here";
  }
  wglMakeCurrent(dc, rc);
  m.After = LoadedModulePaths();
  wglMakeCurrent(nullptr, nullptr);
  wglDeleteContext(rc);
  ReleaseDC(wnd.get(), dc);
  EXPECT_GT(m.After.size(), 3u);
  LoadedOpenGL gl = ClassifyOpenGLModules(m, SystemDir(), {});
  ASSERT_FALSE(gl.Generic.empty()) << "the system's opengl32.dll is loaded";
  EXPECT_EQ(Lower(gl.Generic[0].Path), Lower(SystemDir() + "\\opengl32.dll"));
  ReadModuleVersions(gl);
  EXPECT_FALSE(gl.Generic[0].Version.empty());
  for (const auto& icd : gl.Icds) EXPECT_NE(Lower(FileNameOf(icd.Path)), "opengl32.dll") << icd.Path;
}

}  // namespace
