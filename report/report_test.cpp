// The report and the log, byte for byte.
#include "report/report.h"
#include "report/log.h"

#include <gtest/gtest.h>

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
      {"GDI Generic means software", [](In in) { in.OpenGL.Renderer = "GDI Generic"; },
       "\r\n(This means use of OpenGL software)\r\n"},
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

}  // namespace
