#include "sysinfo/display_adapters.h"

#include <gtest/gtest.h>

#include "win32/handle.h"
#include "win32/ui.h"

namespace {

using namespace sysinfo;

std::string SystemDir() {
  char dir[MAX_PATH] = {};
  GetSystemDirectoryA(dir, MAX_PATH);
  return dir;
}

TEST(DisplayAdapterPaths, Table) {
  EXPECT_EQ(MachineRelativePath("\\Registry\\Machine\\System\\Control\\Video\\{x}\\0000"),
            "System\\Control\\Video\\{x}\\0000");
  EXPECT_EQ(MachineRelativePath("\\REGISTRY\\MACHINE\\A\\"), "A");
  EXPECT_EQ(MachineRelativePath("\\Registry\\User\\A"), "");
  EXPECT_EQ(MachineRelativePath(""), "");
  const char* const resolves[][2] = {
      {"C:\\Windows\\System32\\DriverStore\\x\\acmeogl.dll",
       "C:\\Windows\\System32\\DriverStore\\x\\acmeogl.dll"},
      {"acmeogl", "D:\\Sys\\acmeogl.dll"},
      {"acmeogl.dll", "D:\\Sys\\acmeogl.dll"},
      {" acmeogl.DLL ", "D:\\Sys\\acmeogl.DLL"},
      {"", ""},
  };
  for (const auto& c : resolves) EXPECT_EQ(ResolveDriverPath(c[0], "D:\\Sys"), c[1]) << c[0];
}

TEST(ChooseClassSubkey, Table) {
  const std::vector<ClassEntry> entries = {
      {"0000", "Acme"}, {"0001", "Other"}, {"0002", "Other"}, {"0003", ""}};
  const char* const cases[][3] = {
      {"acme", "Video\\{g}\\0003", "0000"},   // the description decides, in any case
      {"Other", "Video\\{g}\\0002", "0002"},  // two alike: the video key's number
      {"Other", "Video\\{g}\\0000", ""},      // ... but only one that matches
      {"Unknown", "Video\\{g}\\0003", "0003"},
      {"Unknown", "Video\\{g}\\0009", ""},
      {"", "", ""},
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
  EXPECT_FALSE(got.Generic[0].NewWithContext);
  EXPECT_TRUE(got.Generic[1].NewWithContext);
  std::vector<std::string> icds;
  for (const auto& i : got.Icds) icds.push_back(i.Path);
  EXPECT_EQ(icds, (std::vector<std::string>{"C:\\App\\opengl32.dll", "C:\\DS\\acmeicd32.dll",
                                            "C:\\DS\\vendorgl.dll"}));
  EXPECT_FALSE(ClassifyOpenGLModules({}, "c:\\windows\\system32", {}).Known);
}

// A display class key of the test's own under HKCU, removed afterwards: 20
// adapters, the first four with names as strings and multi-strings, full and
// bare, missing files, wrong types, and an empty key.
class AdapterKeys : public ::testing::Test {
 protected:
  void SetUp() override {
    for (int i = 0; i < 20; ++i)
      Set(100 + i, "DriverDesc", i < 5 ? REG_NONE : REG_SZ, "Adapter " + std::to_string(i) + '\0');
    Set(100, "DriverDesc", REG_SZ, std::string("Acme 5000\0", 10));
    Set(100, "ProviderName", REG_SZ, std::string("Acme\0", 5));
    Set(100, "DriverVersion", REG_SZ, std::string("31.0.1\0", 7));
    Set(100, "DriverDate", REG_SZ, std::string("1-2-2024\0", 9));
    Set(100, "OpenGLDriverName", REG_SZ, std::string("opengl32\0", 9));
    Set(101, "OpenGLDriverName", REG_MULTI_SZ, fixture_ + '\0' + "nosuchgl" + '\0' + '\0');
    Set(101, "OpenGLDriverNameWow", REG_SZ, "unterminated.dll");
    Set(102, "OpenGLDriverName", REG_DWORD, std::string("\1\0\0\0", 4));
    Set(102, "DriverDesc", REG_BINARY, "Acme");
  }
  void TearDown() override { RegDeleteTreeA(HKEY_CURRENT_USER, root_.c_str()); }
  static std::string Sub(int number) { return "0" + std::to_string(number); }
  // Makes the subkey and, unless `type` is REG_NONE, stores `data` in it as given.
  void Set(int number, const char* name, DWORD type, const std::string& data) {
    HKEY raw = nullptr;
    ASSERT_EQ(RegCreateKeyExA(HKEY_CURRENT_USER, (root_ + "\\" + Sub(number)).c_str(), 0, nullptr,
                              0, KEY_WRITE, nullptr, &raw, nullptr),
              ERROR_SUCCESS);
    win32::Key key(raw);
    if (type == REG_NONE) return;
    ASSERT_EQ(RegSetValueExA(raw, name, 0, type, reinterpret_cast<const BYTE*>(data.data()),
                             static_cast<DWORD>(data.size())),
              ERROR_SUCCESS);
  }
  AdapterKeyValues Read(int number) {
    return ReadAdapterKey(HKEY_CURRENT_USER, root_ + "\\" + Sub(number), SystemDir(), "W:\\Wow");
  }
  const std::string root_ = "Software\\VelmoraAdaptersTest" + std::to_string(GetCurrentProcessId());
  const std::string fixture_ = win32::ModuleDirectory() + "\\vtestdrv.dll";
};

TEST_F(AdapterKeys, StringAndMultiStringNamesFullAndBare) {
  AdapterKeyValues v = Read(100);
  EXPECT_TRUE(v.Found);
  EXPECT_EQ((std::vector<std::string>{v.DriverDesc, v.ProviderName, v.DriverVersion, v.DriverDate}),
            (std::vector<std::string>{"Acme 5000", "Acme", "31.0.1", "1-2-2024"}));
  ASSERT_EQ(v.OpenGL.size(), 1u);
  EXPECT_EQ(v.OpenGL[0].Path, SystemDir() + "\\opengl32.dll");
  EXPECT_TRUE(v.OpenGL[0].Exists);
  EXPECT_FALSE(v.OpenGL[0].Version.empty());
  EXPECT_TRUE(v.OpenGLWow.empty());

  v = Read(101);
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
  AdapterKeyValues wrong = Read(102);
  EXPECT_TRUE(wrong.Found);
  EXPECT_TRUE(wrong.OpenGL.empty());
  EXPECT_EQ(wrong.DriverDesc, "");
  AdapterKeyValues empty = Read(103);
  EXPECT_TRUE(empty.Found);
  EXPECT_TRUE(empty.DriverDesc.empty() && empty.OpenGL.empty() && empty.OpenGLWow.empty());
  EXPECT_FALSE(Read(999).Found);
  EXPECT_FALSE(ReadAdapterKey(HKEY_CURRENT_USER, "", "", "").Found);
}

TEST_F(AdapterKeys, TwentyAdaptersFoundAndMatched) {
  std::vector<ClassEntry> entries = ReadClassEntries(HKEY_CURRENT_USER, root_);
  ASSERT_EQ(entries.size(), 20u);
  EXPECT_EQ(entries[0].DriverDesc, "Acme 5000");
  EXPECT_EQ(entries[19].Subkey + " " + entries[19].DriverDesc, "0119 Adapter 19");
  EXPECT_EQ(ChooseClassSubkey(entries, "Adapter 7", "Video\\{g}\\0000"), "0107");
  EXPECT_TRUE(ReadClassEntries(HKEY_CURRENT_USER, root_ + "\\gone").empty());
}

TEST(DisplayAdapters, WhatTheSystemLists) {
  std::vector<DisplayAdapter> adapters = GatherDisplayAdapters();
  ASSERT_FALSE(adapters.empty());
  int primary = 0;
  for (const auto& a : adapters) {
    SCOPED_TRACE(a.Description);
    primary += a.Primary;
    EXPECT_FALSE(a.DeviceName.empty());
    if (!a.VideoKey.empty()) { EXPECT_TRUE(a.Values.Found) << a.VideoKey; }
    if (!a.ClassKey.empty()) { EXPECT_EQ(Lower(a.Values.DriverDesc), Lower(a.Description)); }
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
  ContextModules m{true, LoadedModulePaths(), {}};
  int format = ChoosePixelFormat(dc, &pfd);
  HGLRC rc = format && SetPixelFormat(dc, format, &pfd) ? wglCreateContext(dc) : nullptr;
  if (rc) {
    wglMakeCurrent(dc, rc);
    m.After = LoadedModulePaths();
    wglMakeCurrent(nullptr, nullptr);
    wglDeleteContext(rc);
  }
  ReleaseDC(wnd.get(), dc);
  if (!rc) GTEST_SKIP() << "no OpenGL context can be made here";
  EXPECT_GT(m.After.size(), 3u);
  LoadedOpenGL gl = ClassifyOpenGLModules(m, SystemDir(), {});
  ASSERT_FALSE(gl.Generic.empty()) << "the system's opengl32.dll is loaded";
  EXPECT_EQ(Lower(gl.Generic[0].Path), Lower(SystemDir() + "\\opengl32.dll"));
  ReadModuleVersions(gl);
  EXPECT_FALSE(gl.Generic[0].Version.empty());
  for (const auto& icd : gl.Icds)
    EXPECT_NE(Lower(FileNameOf(icd.Path)), "opengl32.dll") << icd.Path;
}

}  // namespace
