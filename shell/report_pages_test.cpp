// The report, driver and log pages of the real main window, in process.
#include <gtest/gtest.h>

#include <regex>

#include "gl/device_state.h"
#include "report/report.h"
#include "shell/host_settings.h"
#include "shell/main_window.h"
#include "sysinfo/fileversioninfo.h"
#include "sysinfo/opsysinfo.h"
#include "testsupport/testsupport.h"
#include "win32/handle.h"
#include "win32/ui.h"

namespace {

using namespace shell;

const char kNtKey[] = "Software\\Microsoft\\Windows NT\\CurrentVersion\\OpenGLDrivers";
const char kNtKeyBlank[] = "Software\\Microsoft\\Windows NT\\CurrentVersion\\OpenGL Drivers";

std::string TempDir() {
  char dir[MAX_PATH];
  GetTempPathA(MAX_PATH, dir);
  std::string d = std::string(dir) + "velmora_pages_test";
  CreateDirectoryA(d.c_str(), nullptr);
  return d;
}

void SetString(const char* key, const char* name, const char* data) {
  HKEY k = nullptr;
  RegCreateKeyExA(HKEY_LOCAL_MACHINE, key, 0, nullptr, 0, KEY_WRITE, nullptr, &k, nullptr);
  win32::Key owned(k);
  RegSetValueExA(k, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(data),
                 static_cast<DWORD>(strlen(data) + 1));
}

std::string ReadFile(const std::string& path) {
  std::string bytes;
  EXPECT_TRUE(ReadWholeFile(path, bytes).ok) << path;
  return bytes;
}

class Pages : public ::testing::Test {
 protected:
  void SetUp() override {
    dir = TempDir();
    main = std::make_unique<VelmoraMain>(dir + "\\no_host_file.ini");
    ASSERT_TRUE(main->Create());
    ShowWindow(main->hwnd(), SW_SHOW);
    testsupport::Pump();
    mOpenGL::State().GLErrorText.clear();
  }
  void TearDown() override {
    main.reset();
    RegDeleteTreeA(HKEY_LOCAL_MACHINE, kNtKey);
    RegDeleteTreeA(HKEY_LOCAL_MACHINE, kNtKeyBlank);
  }
  HWND C(int id) { return main->Control(id); }
  void Click(int id) { SendMessageA(C(id), BM_CLICK, 0, 0); }
  std::string Text(int id) { return win32::GetText(C(id)); }
  std::vector<std::string> DriverLines() {
    std::vector<std::string> lines;
    HWND list = C(kDriversLbx);
    for (int i = 0; i < SendMessageA(list, LB_GETCOUNT, 0, 0); ++i) {
      char buf[4096] = {};
      SendMessageA(list, LB_GETTEXT, i, reinterpret_cast<LPARAM>(buf));
      lines.push_back(buf);
    }
    return lines;
  }
  // The pixel format the device layer must choose for this mode, worked
  // out here from the formats a window of this machine offers.
  static int ExpectedFormat(bool hardware, PIXELFORMATDESCRIPTOR& pfd) {
    testsupport::PlainWindow w;
    int count = DescribePixelFormat(w.dc(), 1, 40, nullptr);
    int index = mOpenGL::PickPixelFormat(count, 0, hardware, [&](int i) {
      DescribePixelFormat(w.dc(), i, 40, &pfd);
      return pfd.dwFlags;
    });
    DescribePixelFormat(w.dc(), index, 40, &pfd);
    return index;
  }
  static std::string GLString(GLenum name) {
    testsupport::PlainWindow w;
    PIXELFORMATDESCRIPTOR pfd{};
    DescribePixelFormat(w.dc(), 1, 40, &pfd);
    SetPixelFormat(w.dc(), 1, &pfd);
    HGLRC rc = wglCreateContext(w.dc());
    wglMakeCurrent(w.dc(), rc);
    std::string s = reinterpret_cast<const char*>(glGetString(name));
    wglMakeCurrent(nullptr, nullptr);
    wglDeleteContext(rc);
    return s;
  }

  std::string dir;
  testsupport::MsgBoxRecorder boxes;
  std::unique_ptr<VelmoraMain> main;
};

TEST_F(Pages, CheckSpecificationsReportsWhatTheSystemSays) {
  Click(kSpecsCbt);
  std::string r = Text(kSpecsTbx);
  PIXELFORMATDESCRIPTOR pfd{};
  int format = ExpectedFormat(false, pfd);
  sysinfo::COpSysInfo os;
  EXPECT_EQ(r.rfind("Computer: ", 0), 0u);
  EXPECT_NE(r.find("\r\nOS: " + os.Platform() + "\r\n"), std::string::npos);
  EXPECT_NE(r.find("\r\nScreen Resolution: " + std::to_string(GetSystemMetrics(SM_CXSCREEN)) + "x" +
                   std::to_string(GetSystemMetrics(SM_CYSCREEN)) + "\r\n"),
            std::string::npos);
  EXPECT_NE(r.find("\r\nPixelFormat -SW #" + std::to_string(format) + "\r\n\r\nFlags " +
                   std::to_string(pfd.dwFlags) + "\r\n"),
            std::string::npos);
  EXPECT_NE(r.find("Color Buffer: \t" + std::to_string(pfd.cColorBits) + " Bits\r\n"),
            std::string::npos);
  std::string version = GLString(GL_VERSION);
  size_t blank = version.find(' ');
  ASSERT_NE(blank, std::string::npos) << "this driver's version has a driver part";
  EXPECT_NE(r.find("\r\nRenderer: " + GLString(GL_RENDERER) + "\r\nVersion:    " +
                   version.substr(0, blank) + "\r\nDriver:     " + version.substr(blank + 1) +
                   "\r\nVendor:     " + GLString(GL_VENDOR) + "\r\n"),
            std::string::npos);
  EXPECT_NE(r.find("\r\nQuadView  [0] :     \t? Not checked ?\r\n"), std::string::npos);
  EXPECT_EQ(r.substr(r.size() - 62), std::string(60, '-') + "\r\n");
  EXPECT_EQ(main->CurrentOGLPixelFormat(), format);
  EXPECT_EQ(Text(kPixelFormatTbx), std::to_string(format));
  EXPECT_TRUE(main->SpecsAsked());
  EXPECT_EQ(GetFocus(), C(kNext));
  EXPECT_EQ(wglGetCurrentContext(), nullptr) << "the report's context is gone";
  EXPECT_TRUE(boxes.calls().empty());
  std::regex name(os.ID() + ".* \\d+x\\d+x" + std::to_string(pfd.cColorBits) + "-SW #" +
                  std::to_string(format) + " LogFile\\.txt");
  EXPECT_TRUE(std::regex_match(Text(kFileTbx), name)) << Text(kFileTbx);
}

TEST_F(Pages, HardwareModeAndVerdictLabelsReachTheReport) {
  Click(kHWPixelFormatOpt);
  win32::SetText(C(kGLTestLbl0 + 1), "OK (#5)");
  win32::SetText(C(kFileTbx), "mylog.txt");
  Click(kSpecsCbt);
  std::string r = Text(kSpecsTbx);
  PIXELFORMATDESCRIPTOR pfd{};
  int format = ExpectedFormat(true, pfd);
  EXPECT_NE(r.find("PixelFormat -HW #" + std::to_string(format) + "\r\n"), std::string::npos);
  EXPECT_NE(r.find("Point Size:         \tOK (#5)\r\n"), std::string::npos);
  EXPECT_EQ(Text(kFileTbx), "mylog.txt") << "a name of the user's own stays";
}

TEST_F(Pages, ExplicitFormatThatCannotBeSetReportsTheError) {
  // In software mode, with no software format here, an index beyond the
  // count is handed back unchanged and cannot be set.
  win32::SetText(C(kPixelFormatTbx), "100000");
  SendMessageA(main->hwnd(), WM_COMMAND, MAKEWPARAM(kPixelFormatTbx, EN_KILLFOCUS),
               reinterpret_cast<LPARAM>(C(kPixelFormatTbx)));
  ASSERT_FALSE(main->CurrentSH());
  Click(kSpecsCbt);
  std::string r = Text(kSpecsTbx);
  EXPECT_NE(r.find("\r\n" + std::string(60, '-') + "\r\n\r\nCannot Create GL Context  0 = wglCreateContext("),
            std::string::npos)
      << r.substr(0, 600);
  EXPECT_NE(r.find(") \r\n\r\n\r\nGeneral Tests:\r\n"), std::string::npos);
  EXPECT_EQ(r.find("PixelFormat "), std::string::npos);
  ASSERT_FALSE(boxes.calls().empty());
  EXPECT_EQ(boxes.calls()[0].title, "SetDCPixelFormat");
  EXPECT_FALSE(mOpenGL::GetGLErrorText().empty());
}

TEST_F(Pages, DriversListBothKeysAndKeepPaths) {
  SetString(kNtKey, "acme", "acmegl");
  SetString((std::string(kNtKey) + "\\Board").c_str(), "Dll", "opengl32");
  SetString(kNtKeyBlank, "Other", "othergl");
  Click(kDriversCbt);
  sysinfo::cFileVersionInfo gl;
  gl.FullPathName(gl.SystemDirectory() + "\\OPENGL32.DLL");
  ASSERT_TRUE(gl.Available());
  EXPECT_EQ(DriverLines(), (std::vector<std::string>{
                               "Windows NT: \tacme\tacmegl",
                               "Windows NT: Board\tDll\topengl32\t" + gl.FileVersion(),
                               "Windows NT: \tOther\tothergl"}));
  const auto& paths = main->State().driverDllPaths;
  ASSERT_EQ(paths.UpperBound(), 3);
  EXPECT_EQ(paths.Element(3), gl.SystemDirectory() + "\\OTHERGL.DLL");
  EXPECT_EQ(GetFocus(), C(kQuit));
  Click(kDriversCbt);
  EXPECT_EQ(DriverLines().size(), 3u);
  ASSERT_EQ(paths.UpperBound(), 4) << "the first path of the earlier scan stays in front";
  EXPECT_EQ(paths.Element(1), paths.Element(2));
}

TEST_F(Pages, NoDriversRegistered) {
  Click(kDriversCbt);
  EXPECT_EQ(DriverLines(), (std::vector<std::string>{"No drivers registered"}));
}

TEST_F(Pages, SavedLogByteForByte) {
  SetString(kNtKey, "gl", "opengl32");
  Click(kSpecsCbt);
  main->SaveLog().SetLogDirectory(dir);
  win32::SetText(C(kFileTbx), "saved.txt");
  std::string file = dir + "\\saved.txt";
  DeleteFileA(file.c_str());
  Click(kSaveLogCbt);
  ASSERT_TRUE(boxes.calls().empty()) << boxes.calls()[0].text;
  std::string log = ReadFile(file);
  sysinfo::cFileVersionInfo gl;
  gl.FullPathName(gl.SystemDirectory() + "\\OPENGL32.DLL");
  std::string header = "Velmora LogFile " + Text(kVersionLabel) + " ";
  ASSERT_EQ(log.rfind(header, 0), 0u);
  size_t headerEnd = log.find("\r\r\n");
  ASSERT_NE(headerEnd, std::string::npos);
  std::string rule(60, '=');
  EXPECT_EQ(log.substr(headerEnd), "\r\r\n" + rule + "\r\n" +
                                       "Driver Registry: \tgl\topengl32\r\n"
                                       "Driver Company: " + gl.CompanyName() + "\r\n" +
                                       "Driver Description: " + gl.FileDescription() + "\r\n" +
                                       "Driver Version: " + gl.FileVersion() + "\r\n" + rule +
                                       "\r\n" + Text(kSpecsTbx));
  EXPECT_TRUE(main->LogAsked());
  LRESULT found = SendMessageA(C(kLogFile), LB_FINDSTRINGEXACT, static_cast<WPARAM>(-1),
                               reinterpret_cast<LPARAM>("saved.txt"));
  EXPECT_NE(found, LB_ERR) << "the file list shows the new file";
  // Saving again leaves only the second content.
  win32::SetText(C(kSpecsTbx), "second\r\n");
  Click(kSaveLogCbt);
  log = ReadFile(file);
  EXPECT_EQ(log.substr(log.size() - 70), rule + "\r\nsecond\r\n");
  DeleteFileA(file.c_str());
}

TEST_F(Pages, LogAtADriveRootHasNoDoubledSeparator) {
  main->SaveLog().SetLogDirectory("C:\\");
  EXPECT_EQ(main->SaveLog().LogDirectory(), "C:\\");
  win32::SetText(C(kFileTbx), "velmora_root_test.txt");
  Click(kSaveLogCbt);
  EXPECT_TRUE(FileExists("C:\\velmora_root_test.txt"));
  DeleteFileA("C:\\velmora_root_test.txt");
}

TEST_F(Pages, LogThatCannotBeWrittenIsReportedAndNothingIsLost) {
  main->SaveLog().SetLogDirectory(dir);
  std::string existing = dir + "\\keep.txt";
  SetFileAttributesA(existing.c_str(), FILE_ATTRIBUTE_NORMAL);
  ASSERT_TRUE(ReplaceFileContents(existing, "precious").ok);
  struct Case {
    const char* what;
    std::string name;
  } cases[] = {{"missing folder", "no such folder\\log.txt"}, {"read-only file", "keep.txt"}};
  SetFileAttributesA(existing.c_str(), FILE_ATTRIBUTE_READONLY);
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    boxes.Clear();
    win32::SetText(C(kFileTbx), c.name);
    Click(kSaveLogCbt);
    ASSERT_EQ(boxes.calls().size(), 1u);
    EXPECT_NE(boxes.calls()[0].text.find(dir + "\\" + c.name), std::string::npos)
        << boxes.calls()[0].text;
    EXPECT_EQ(Text(kFileTbx), c.name);
    EXPECT_FALSE(main->LogAsked());
  }
  SetFileAttributesA(existing.c_str(), FILE_ATTRIBUTE_NORMAL);
  EXPECT_EQ(ReadFile(existing), "precious");
  DeleteFileA(existing.c_str());
}

}  // namespace
