// The report, the log and the driver scan.
#include "report/report.h"
#include "report/driver_scan.h"
#include "report/log.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

using report::ComposeReport;
using report::ReportInputs;

const std::string kDash = std::string(60, '-') + "\r\n";
const std::string kRule = std::string(60, '=') + "\r\n";

ReportInputs Typical() {
  ReportInputs in;
  in.System = {"VM", "root", "Windows XP Professional Version ", true,
               "Service Pack 1 (Build 7601)", "Intel Dual Pentium 207(unknown)", 1280, 1024};
  auto& gl = in.OpenGL;
  gl.ModeTag = "-SW ", gl.PixelFormat = 5, gl.Flags = 0x65, gl.ColorBits = 32, gl.DepthBits = 24;
  gl.Renderer = "llvmpipe (LLVM 15.0.6, 256 bits)";
  gl.Version = "4.5 (Compatibility Profile) Mesa 22.3.6";
  gl.Vendor = "Mesa/X.org";
  gl.Extensions = "GL_ARB_multisample GL_EXT_abgr ";
  const char* captions[] = {"Multiple Access", "Point Size",   "Text Output",  "Rendering",
                            "Line Drawing",    "Hidden Lines", "Colour Access", "Colour Float",
                            "Grey Float",      "Display Lists", "Big Lists",   "Zoom",
                            "Interaction"};
  for (int i = 0; i < report::kTestCount; ++i) in.Tests.Captions[i] = captions[i];
  in.Tests.Labels[1] = "OK (#5)", in.Tests.Labels[6] = " Error -1 (#5) ";
  in.Tests.QuadViewCaption = "QuadView";
  in.DescriptorFlags = 0x65, in.DescriptorSize = 40;
  return in;
}

TEST(ComposeReport, WholeReportByteForByte) {
  std::string expected =
      "Computer: VM\r\n"
      "User: root\r\n"
      "OS: Windows XP Professional Version \r\n"
      "Version: Service Pack 1 (Build 7601)\r\n"
      "Processor: Intel Dual Pentium 207(unknown)\r\n"
      "Screen Resolution: 1280x1024\r\n" +
      kDash +
      "PixelFormat -SW #5\r\n"
      "\r\n"
      "Flags 101\r\n" +
      kDash +
      "Color Buffer: \t32 Bits\r\n"
      "Depth Buffer: \t24 Bits\r\n" +
      kDash +
      "Renderer: llvmpipe (LLVM 15.0.6, 256 bits)\r\n"
      "Version:    4.5\r\n"
      "Driver:     (Compatibility Profile) Mesa 22.3.6\r\n"
      "Vendor:     Mesa/X.org\r\n"
      "(This means use of OpenGL drivers)\r\n" +
      kDash +
      "Flag DoubleBuffer (H1) - Required :  \tTRUE\r\n"
      "Flag DrawToWindow (H4) - Required :  \tTRUE\r\n"
      "Flag OpenGLSupport (H20) - Required :\tTRUE\r\n" +
      kDash +
      "Flag GenericFormat (&H40) :          \tTRUE\r\n"
      "Flag GenericAccelerated (&H1000) :   \tFALSE\r\n"
      "OpenGL Implementation (H40/H1000):   \r\n"
      " Software \r\n" +
      kDash +
      "Extensions: \r\n"
      "GL_ARB_multisample GL_EXT_abgr \r\n" +
      kDash +
      "General Tests:\r\n"
      "Multiple Access:    \t? Not checked ?\r\n"
      "Point Size:         \tOK (#5)\r\n"
      "Text Output:        \t? Not checked ?\r\n"
      "Rendering:          \t? Not checked ?\r\n"
      "Line Drawing:       \t? Not checked ?\r\n"
      "Hidden Lines:       \t? Not checked ?\r\n"
      "Colour Access:      \tError -1 (#5)\r\n"
      "Colour Float:       \t? Not checked ?\r\n"
      "Grey Float:         \t? Not checked ?\r\n"
      "Display Lists:      \t? Not checked ?\r\n"
      "Big Lists:          \t? Not checked ?\r\n"
      "Zoom:               \t? Not checked ?\r\n"
      "Interaction:        \t? Not checked ?\r\n"
      "QuadView  [0] :     \t? Not checked ?\r\n" +
      kDash +
      "Flag Stereo (&H2) :                \tFALSE\r\n"
      "Flag DrawToBitmap (&H8) :          \tFALSE\r\n"
      "Flag SupportGDI (&H10) :           \tFALSE\r\n"
      "Flag NeedPalette (&H2) :           \tFALSE\r\n"
      "Flag NeedSystemPalette (&H8) :     \tFALSE\r\n"
      "Flag SwapExchange (&H10) :         \tFALSE\r\n"
      "Flag SwapCopy (&H2) :              \tFALSE\r\n"
      "Flag SwapLayerBuffers (&H8) :      \tFALSE\r\n"
      "Flag SupportDirectDraw (&H10) :    \tFALSE\r\n"
      "Flag Color (&H10) :                \tFALSE\r\n" +
      kDash;
  EXPECT_EQ(ComposeReport(Typical()), expected);
}

// Typical() with one change, and a run of text the report then holds.
TEST(ComposeReport, Parts) {
  using In = ReportInputs&;
  const struct {
    const char* name;
    void (*change)(In);
    std::string part;
  } cases[] = {
      {"leading blank: no split", [](In in) { in.OpenGL.Version = " 1.1 Mesa"; },
       "\r\nVersion:    1.1 Mesa\r\nVendor:"},
      {"trailing blanks kept", [](In in) { in.OpenGL.Version = "2.1 Mesa  "; },
       "\r\nVersion:    2.1\r\nDriver:     Mesa  \r\nVendor:"},
      {"GDI Generic means software", [](In in) { in.OpenGL.Renderer = "GDI Generic"; },
       "\r\n(This means use of OpenGL software)\r\n"},
      {"... written exactly so", [](In in) { in.OpenGL.Renderer = "gdi generic"; },
       "\r\n(This means use of OpenGL drivers)\r\n"},
      {"required flags follow their bits; not generic is an ICD",
       [](In in) { in.OpenGL.Flags = 0x1004; },
       "Flag DoubleBuffer (H1) - Required :  \tFALSE\r\n"
       "Flag DrawToWindow (H4) - Required :  \tTRUE\r\n"
       "Flag OpenGLSupport (H20) - Required :\tFALSE\r\n" +
           kDash +
           "Flag GenericFormat (&H40) :          \tFALSE\r\n"
           "Flag GenericAccelerated (&H1000) :   \tTRUE\r\n"
           "OpenGL Implementation (H40/H1000):   \r\n Full Hardware Acceleration - [ICD]\r\n"},
      {"generic and accelerated is an MCD", [](In in) { in.OpenGL.Flags = 0x1065; },
       "(H40/H1000):   \r\n Partial Hardware Acceleration - [MCD]\r\n"},
      {"caption of 20: no colon", [](In in) { in.Tests.Captions[0] = "ABCDEFGHIJKLMNOPQRST"; },
       "General Tests:\r\nABCDEFGHIJKLMNOPQRST\t? Not checked ?\r\n"},
      {"9x family: no version line", [](In in) { in.System.IsWinNT = false; },
       "OS: Windows XP Professional Version \r\nProcessor: "},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    ReportInputs in = Typical();
    c.change(in);
    const std::string r = ComposeReport(in);
    EXPECT_NE(r.find(c.part), std::string::npos) << "no\n" << c.part << "\nin\n" << r;
  }
}

// The extra flag lines' labels do not name the bits they read: the report with all of them
// FALSE but the one whose bit is set (0: the last line, which reads nSize's bit 0x2000).
TEST(ComposeReport, EachExtraFlagLineReadsItsOwnBit) {
  const std::string allFalse = ComposeReport(Typical());
  size_t at = allFalse.find("Flag Stereo");
  ASSERT_NE(at, std::string::npos);
  for (uint32_t bit : {0x2u, 0x8u, 0x10u, 0x80u, 0x100u, 0x200u, 0x400u, 0x800u, 0x2000u, 0u}) {
    SCOPED_TRACE(bit);
    ReportInputs in = Typical();
    in.DescriptorFlags = bit;
    if (!bit) in.DescriptorSize = 0x2000;
    at = allFalse.find("\tFALSE", at);
    ASSERT_NE(at, std::string::npos);
    std::string expected = allFalse;
    expected.replace(at++, 6, "\tTRUE");
    EXPECT_EQ(ComposeReport(in), expected);
  }
}

TEST(ComposeLog, WholeLogByteForByte) {
  report::LogInputs in;
  in.VersionLabel = "Vs.1.0.0.1  ";
  in.DateTime = "11/21/2026 6:40:00 AM";
  in.DriverLines = {"Windows NT: \tvlmdrv\tvlmdrv", "Windows NT: Sub\tDll\topengl32\t6.1.7601"};
  in.DriverFiles = {{"Acme", "Acme OpenGL", "1.2.3.4"}, {"Wine", "Wine OpenGL", "6.1.7601"}};
  in.Report = "Computer: VM\r\n";
  EXPECT_EQ(report::ComposeLog(in),
            "Velmora LogFile Vs.1.0.0.1   11/21/2026 6:40:00 AM\r\r\n" + kRule +
                "Driver Registry: \tvlmdrv\tvlmdrv\r\n"
                "Driver Registry: Sub\tDll\topengl32\t6.1.7601\r\n"
                "Driver Company: Acme\r\n"
                "Driver Description: Acme OpenGL\r\n"
                "Driver Version: 1.2.3.4\r\n"
                "Driver Company: Wine\r\n"
                "Driver Description: Wine OpenGL\r\n"
                "Driver Version: 6.1.7601\r\n" +
                kRule + "Computer: VM\r\n");
  // No drivers; a report without a line end gets one; recorded failures follow a third rule.
  in.DriverLines = {"No drivers registered"};
  in.DriverFiles.clear();
  in.Report = "Select Software or Hardware mode";
  in.GLErrorText = "\r\nAPI Error: 0 - hGLRC = wglCreateContext(ExtenderHdc)";
  EXPECT_EQ(report::ComposeLog(in),
            "Velmora LogFile Vs.1.0.0.1   11/21/2026 6:40:00 AM\r\r\n" + kRule +
                "Driver Registry:No drivers registered\r\n" + kRule +
                "Select Software or Hardware mode\r\n" + kRule + in.GLErrorText + "\r\n");
}

const std::string kNtKey = "Software\\Microsoft\\Windows NT\\CurrentVersion\\OpenGLDrivers";
const std::string kNtKeyBlank = "Software\\Microsoft\\Windows NT\\CurrentVersion\\OpenGL Drivers";

// Registrations written into HKEY_LOCAL_MACHINE for one test, removed after.
class Registrations : public ::testing::Test {
 protected:
  void TearDown() override {
    RegDeleteTreeA(HKEY_LOCAL_MACHINE, kNtKey.c_str());
    RegDeleteTreeA(HKEY_LOCAL_MACHINE, kNtKeyBlank.c_str());
  }
  void Set(const std::string& key, const std::string& name, const std::string& text,
           DWORD type = REG_SZ) {
    ASSERT_EQ(RegSetKeyValueA(HKEY_LOCAL_MACHINE, key.c_str(), name.c_str(), type, text.c_str(),
                              static_cast<DWORD>(text.size() + (type == REG_SZ ? 1 : 0))),
              ERROR_SUCCESS);
  }
  report::DriverScan Scan(bool nt = true) {
    report::DriverScanContext context{registry, "C:\\SYS", paths,
                                      [](const std::string& path) { return "v(" + path + ")"; },
                                      nullptr};
    return report::ScanOpenGLDrivers(context, nt);
  }
  sysinfo::cRegistry registry;
  report::DriverPathList paths;
};

TEST_F(Registrations, NonStringValuesAndThe9xKeysOnNTGiveNoLine) {
  Set(kNtKey, "Version", std::string("\2\0\0\0", 4), REG_DWORD);
  EXPECT_TRUE(Scan().Lines.empty());
  EXPECT_EQ(paths.FileCount(), 0);
  Set(kNtKey, "acme", "acmegl");
  EXPECT_TRUE(Scan(false).Lines.empty()) << "only the 9x family's keys are read";
}

// The longest name the registry allows and long data, compared by presence so that a failure
// does not print 76,000 characters. Tab stops: the prefix + 8, then the longest name (or 10).
TEST_F(Registrations, LongNamesAndDataAndTheTabStops) {
  const std::string longName(16383, 'n'), longData(60000, 'x');
  Set(kNtKey, "acme", "acmegl");
  Set(kNtKeyBlank, longName, longData);
  Set(kNtKeyBlank, "empty", "");
  auto scan = Scan();
  ASSERT_EQ(scan.Lines.size(), 3u);
  for (const std::string& line : {"Windows NT: \t" + longName + "\t" + longData,
                                  std::string("Windows NT: \tempty\t"),
                                  std::string("Windows NT: \tacme\tacmegl")})
    EXPECT_EQ(std::count(scan.Lines.begin(), scan.Lines.end(), line), 1) << line.substr(0, 40);
  EXPECT_EQ(paths.UpperBound(), 3);
  EXPECT_EQ(scan.TabStops, (std::vector<int>{20, 20 + 16383})) << "the last key's";
  EXPECT_EQ(report::DriverTabStops("Windows: ", 0), (std::vector<int>{17, 27}));
}

}  // namespace
