#include "report/report.h"
#include "win32/text.h"

#include <gtest/gtest.h>

namespace {

using report::ComposeReport;
using report::ReportInputs;

const std::string kDash = std::string(60, '-') + "\r\n";

ReportInputs Typical() {
  ReportInputs in;
  in.System = {"VM", "root", "Windows XP Professional Version ", true,
               "Service Pack 1 (Build 7601)", "Intel Dual Pentium 207(unknown)", 1280, 1024};
  auto& gl = in.OpenGL;
  gl.ModeTag = "-SW ";
  gl.PixelFormat = 5;
  gl.Flags = 0x65;
  gl.ColorBits = 32;
  gl.DepthBits = 24;
  gl.Renderer = "llvmpipe (LLVM 15.0.6, 256 bits)";
  gl.Version = "4.5 (Compatibility Profile) Mesa 22.3.6";
  gl.Vendor = "Mesa/X.org";
  gl.Extensions = "GL_ARB_multisample GL_EXT_abgr ";
  const char* captions[] = {"Multiple Access", "Point Size",   "Text Output",  "Rendering",
                            "Line Drawing",    "Hidden Lines", "Colour Access", "Colour Float",
                            "Grey Float",      "Display Lists", "Big Lists",   "Zoom",
                            "Interaction"};
  for (int i = 0; i < report::kTestCount; ++i) in.Tests.Captions[i] = captions[i];
  in.Tests.Labels[1] = "OK (#5)";
  in.Tests.Labels[6] = " Error -1 (#5) ";
  in.Tests.QuadViewCaption = "QuadView";
  in.DescriptorFlags = 0x65;
  in.DescriptorSize = 40;
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

testing::AssertionResult Holds(const ReportInputs& in, const std::string& part) {
  std::string r = ComposeReport(in);
  if (r.find(part) != std::string::npos) return testing::AssertionSuccess();
  return testing::AssertionFailure() << "no\n" << part << "\nin\n" << r;
}

// Typical() with one change, and a run of text the report then holds.
TEST(ComposeReport, Parts) {
  using In = ReportInputs&;
  const struct {
    const char* name;
    void (*change)(In);
    std::string part;
  } cases[] = {
      {"version alone", [](In in) { in.OpenGL.Version = "1.1"; }, "\r\nVersion:    1.1\r\nVendor:"},
      {"leading blank: no split", [](In in) { in.OpenGL.Version = " 1.1 Mesa"; },
       "\r\nVersion:    1.1 Mesa\r\nVendor:"},
      {"trailing blanks kept", [](In in) { in.OpenGL.Version = "2.1 Mesa  "; },
       "\r\nVersion:    2.1\r\nDriver:     Mesa  \r\nVendor:"},
      {"no version", [](In in) { in.OpenGL.Version = ""; }, "\r\nVersion:    \r\nVendor:"},
      {"required flags follow their bits", [](In in) { in.OpenGL.Flags = 0x1004; },
       "Flag DoubleBuffer (H1) - Required :  \tFALSE\r\n"
       "Flag DrawToWindow (H4) - Required :  \tTRUE\r\n"
       "Flag OpenGLSupport (H20) - Required :\tFALSE\r\n" +
           kDash +
           "Flag GenericFormat (&H40) :          \tFALSE\r\n"
           "Flag GenericAccelerated (&H1000) :   \tTRUE\r\n"},
      {"colour flag reads the size", [](In in) { in.DescriptorFlags = 0xFFFFFFFF; },
       "Flag Color (&H10) :                \tFALSE\r\n"},
      {"... and its bit 0x2000", [](In in) { in.DescriptorSize = 0x2000; },
       "Flag Color (&H10) :                \tTRUE\r\n"},
      {"caption of 19", [](In in) { in.Tests.Captions[0] = "ABCDEFGHIJKLMNOPQRS"; },
       "General Tests:\r\nABCDEFGHIJKLMNOPQRS:\t? Not checked ?\r\n"},
      {"caption of 20", [](In in) { in.Tests.Captions[0] = "ABCDEFGHIJKLMNOPQRST"; },
       "General Tests:\r\nABCDEFGHIJKLMNOPQRST\t? Not checked ?\r\n"},
      {"caption cut", [](In in) { in.Tests.Captions[0] = "ABCDEFGHIJKLMNOPQRSTUVW"; },
       "General Tests:\r\nABCDEFGHIJKLMNOPQRST\t? Not checked ?\r\n"},
      {"quad view: redraw box and result text",
       [](In in) {
         in.Tests.ForceRedraw = 1;
         in.Tests.QuadViewLabel = "OK (#5)";
         in.Tests.QuadViewText =
             "\r\n  Form Resize          \tTRUE\r\n  Form Paint           \tFALSE";
       },
       "QuadView  [1] :     \tOK (#5) \r\n  Form Resize          \tTRUE\r\n"
       "  Form Paint           \tFALSE\r\n" +
           kDash},
      {"no mode tag", [](In in) { in.OpenGL.ModeTag = ""; },
       kDash + "PixelFormat #5\r\n\r\nFlags "},
      {"invalid pixel format: only the error in the OpenGL section",
       [](In in) { in.OpenGL.Failure = "Cannot Create GL Context  0 = wglCreateContext(1234) "; },
       "Screen Resolution: 1280x1024\r\n" + kDash +
           "\r\nCannot Create GL Context  0 = wglCreateContext(1234) \r\n\r\n\r\n"
           "General Tests:\r\n"},
      {"9x family: no version line", [](In in) { in.System.IsWinNT = false; },
       "OS: Windows XP Professional Version \r\nProcessor: "},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    ReportInputs in = Typical();
    c.change(in);
    EXPECT_TRUE(Holds(in, c.part));
  }
}

TEST(ComposeReport, RendererAndImplementationVerdicts) {
  const struct {
    const char* renderer;
    uint32_t flags;
    const char* meaning;
    const char* verdict;
  } cases[] = {
      {"GDI Generic", 0x40, "software", " Software "},
      {"gdi generic", 0x40, "drivers", " Software "},
      {"GDI Generic ", 0x40, "drivers", " Software "},
      {"Some Board", 0x1040, "drivers", " Partial Hardware Acceleration - [MCD]"},
      {"Some Board", 0x1000, "drivers", " Full Hardware Acceleration - [ICD]"},
      {"Some Board", 0x25, "drivers", " Full Hardware Acceleration - [ICD]"},
  };
  for (const auto& c : cases) {
    ReportInputs in = Typical();
    in.OpenGL.Renderer = c.renderer;
    in.OpenGL.Flags = c.flags;
    EXPECT_TRUE(Holds(in, std::string("\r\n(This means use of OpenGL ") + c.meaning + ")\r\n"));
    EXPECT_TRUE(Holds(in, std::string("(H40/H1000):   \r\n") + c.verdict + "\r\n"));
  }
}

TEST(ComposeReport, EachExtraFlagLineTestsItsOwnBit) {
  const std::pair<uint32_t, const char*> cases[] = {
      {0x2, "Flag Stereo (&H2) :"},          {0x8, "Flag DrawToBitmap (&H8) :"},
      {0x10, "Flag SupportGDI (&H10) :"},    {0x80, "Flag NeedPalette (&H2) :"},
      {0x100, "Flag NeedSystemPalette (&H8) :"}, {0x200, "Flag SwapExchange (&H10) :"},
      {0x400, "Flag SwapCopy (&H2) :"},      {0x800, "Flag SwapLayerBuffers (&H8) :"},
      {0x2000, "Flag SupportDirectDraw (&H10) :"}};
  const std::string allFalse = ComposeReport(Typical());
  for (const auto& [bit, label] : cases) {
    ReportInputs in = Typical();
    in.DescriptorFlags = bit;
    // The report with all extra flags false, this one's line alone true.
    std::string expected = allFalse;
    const std::string line = report::FixedField(label, 35) + "\tFALSE";
    ASSERT_NE(expected.find(line), std::string::npos) << label;
    expected.replace(expected.find(line), line.size(), report::FixedField(label, 35) + "\tTRUE");
    EXPECT_EQ(ComposeReport(in), expected) << label;
  }
}

TEST(ProposeLogFileName, OnlyRenamesTheDefaultName) {
  const struct {
    const char* current;
    std::optional<std::string> proposed;
  } cases[] = {
      {"LogFile.txt", "WinXP Pro VM root 1280x1024x32-SW #5 LogFile.txt"},
      {"WinXP Pro VM root 800x600x16-HW #2 LogFile.txt",
       "WinXP Pro VM root 1280x1024x32-SW #5 LogFile.txt"},
      {"mylog.txt", std::nullopt},
      {"logfile.txt", std::nullopt},
      {"LogFile.txt ", std::nullopt},
      {"", std::nullopt},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(report::ProposeLogFileName(c.current, "WinXP Pro ", "VM", "root", 1280, 1024, 32,
                                         "-SW ", 5),
              c.proposed)
        << c.current;
  }
  EXPECT_EQ(report::ProposeLogFileName("LogFile.txt", "Win2k ", "PC", "Ann", 640, 480, 8, "", 7),
            "Win2k PC Ann 640x480x8#7 LogFile.txt");
}

TEST(Trim, BlanksOnlyAtBothEnds) { EXPECT_EQ(win32::Trim("  a b \t "), "a b \t"); }

}  // namespace
