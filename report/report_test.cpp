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

// The lines between the vendor line's predecessor and the next separator.
std::string Section(const std::string& report, const std::string& from, const std::string& to) {
  size_t a = report.find(from);
  size_t b = report.find(to, a == std::string::npos ? 0 : a);
  if (a == std::string::npos || b == std::string::npos) return "(missing)";
  return report.substr(a, b - a);
}

TEST(ComposeReport, VersionAndDriverSplit) {
  struct Case {
    const char* version;
    const char* lines;
  } cases[] = {
      {"1.1", "Version:    1.1\r\n"},
      {"1.1.0 Build 4.10", "Version:    1.1.0\r\nDriver:     Build 4.10\r\n"},
      {" 1.1 Mesa", "Version:    1.1 Mesa\r\n"},
      {"2.1 Mesa  ", "Version:    2.1\r\nDriver:     Mesa  \r\n"},
      {"", "Version:    \r\n"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.version);
    auto in = Typical();
    in.OpenGL.Version = c.version;
    EXPECT_EQ(Section(ComposeReport(in), "Version:    ", "Vendor:"), c.lines);
  }
}

TEST(ComposeReport, RendererAndImplementationVerdicts) {
  struct Case {
    const char* renderer;
    uint32_t flags;
    const char* meaning;
    const char* verdict;
  } cases[] = {
      {"GDI Generic", 0x40, "(This means use of OpenGL software)", " Software "},
      {"gdi generic", 0x40, "(This means use of OpenGL drivers)", " Software "},
      {"GDI Generic ", 0x40, "(This means use of OpenGL drivers)", " Software "},
      {"Some Board", 0x1040, "(This means use of OpenGL drivers)",
       " Partial Hardware Acceleration - [MCD]"},
      {"Some Board", 0x1000, "(This means use of OpenGL drivers)",
       " Full Hardware Acceleration - [ICD]"},
      {"Some Board", 0x25, "(This means use of OpenGL drivers)", " Full Hardware Acceleration - [ICD]"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.renderer) + " " + std::to_string(c.flags));
    auto in = Typical();
    in.OpenGL.Renderer = c.renderer;
    in.OpenGL.Flags = c.flags;
    std::string r = ComposeReport(in);
    EXPECT_NE(r.find(std::string("\r\n") + c.meaning + "\r\n"), std::string::npos);
    EXPECT_NE(r.find(std::string("OpenGL Implementation (H40/H1000):   \r\n") + c.verdict + "\r\n"),
              std::string::npos);
  }
}

TEST(ComposeReport, RequiredFlagsFollowTheirBits) {
  auto in = Typical();
  in.OpenGL.Flags = 0x4 | 0x1000;
  std::string r = ComposeReport(in);
  EXPECT_NE(r.find("Flag DoubleBuffer (H1) - Required :  \tFALSE\r\n"), std::string::npos);
  EXPECT_NE(r.find("Flag DrawToWindow (H4) - Required :  \tTRUE\r\n"), std::string::npos);
  EXPECT_NE(r.find("Flag OpenGLSupport (H20) - Required :\tFALSE\r\n"), std::string::npos);
  EXPECT_NE(r.find("Flag GenericFormat (&H40) :          \tFALSE\r\n"), std::string::npos);
  EXPECT_NE(r.find("Flag GenericAccelerated (&H1000) :   \tTRUE\r\n"), std::string::npos);
}

TEST(ComposeReport, EachExtraFlagLineTestsItsOwnBit) {
  struct Case {
    uint32_t bit;
    const char* label;
  } cases[] = {{0x2, "Flag Stereo (&H2) :"},           {0x8, "Flag DrawToBitmap (&H8) :"},
               {0x10, "Flag SupportGDI (&H10) :"},     {0x80, "Flag NeedPalette (&H2) :"},
               {0x100, "Flag NeedSystemPalette (&H8) :"}, {0x200, "Flag SwapExchange (&H10) :"},
               {0x400, "Flag SwapCopy (&H2) :"},       {0x800, "Flag SwapLayerBuffers (&H8) :"},
               {0x2000, "Flag SupportDirectDraw (&H10) :"}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.label);
    auto in = Typical();
    in.DescriptorFlags = c.bit;
    std::string r = ComposeReport(in);
    size_t trues = 0;
    for (size_t at = r.find("\tTRUE"); at != std::string::npos; at = r.find("\tTRUE", at + 1))
      if (r.rfind("Flag ", at) > r.find("General Tests:")) ++trues;
    EXPECT_EQ(trues, 1u);
    EXPECT_NE(r.find(report::FixedField(c.label, 35) + "\tTRUE\r\n"), std::string::npos);
  }
}

TEST(ComposeReport, ColourFlagReadsTheSizeFieldSoItIsFalse) {
  auto in = Typical();
  in.DescriptorFlags = 0xFFFFFFFF;
  in.DescriptorSize = 40;
  EXPECT_NE(ComposeReport(in).find("Flag Color (&H10) :                \tFALSE\r\n"), std::string::npos);
  in.DescriptorSize = 0x2000;
  EXPECT_NE(ComposeReport(in).find("Flag Color (&H10) :                \tTRUE\r\n"), std::string::npos);
}

TEST(ComposeReport, TestCaptionsInATwentyCharacterField) {
  struct Case {
    const char* caption;
    const char* line;
  } cases[] = {
      {"Zoom", "Zoom:               \t? Not checked ?\r\n"},
      {"ABCDEFGHIJKLMNOPQRS", "ABCDEFGHIJKLMNOPQRS:\t? Not checked ?\r\n"},
      {"ABCDEFGHIJKLMNOPQRST", "ABCDEFGHIJKLMNOPQRST\t? Not checked ?\r\n"},
      {"ABCDEFGHIJKLMNOPQRSTUVW", "ABCDEFGHIJKLMNOPQRST\t? Not checked ?\r\n"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.caption);
    auto in = Typical();
    in.Tests.Captions[0] = c.caption;
    EXPECT_NE(ComposeReport(in).find(std::string("General Tests:\r\n") + c.line), std::string::npos);
  }
}

TEST(ComposeReport, QuadViewLineCarriesTheRedrawBoxAndResultText) {
  auto in = Typical();
  in.Tests.ForceRedraw = 1;
  in.Tests.QuadViewLabel = "OK (#5)";
  in.Tests.QuadViewText = "\r\n  Form Resize          \tTRUE\r\n  Form Paint           \tFALSE";
  EXPECT_NE(ComposeReport(in).find("QuadView  [1] :     \tOK (#5) \r\n  Form Resize          \tTRUE\r\n"
                                   "  Form Paint           \tFALSE\r\n" +
                                   kDash),
            std::string::npos);
}

TEST(ComposeReport, PixelFormatLineWithoutModeTag) {
  auto in = Typical();
  in.OpenGL.ModeTag = "";
  in.OpenGL.PixelFormat = 7;
  EXPECT_NE(ComposeReport(in).find(kDash + "PixelFormat #7\r\n\r\nFlags "), std::string::npos);
}

TEST(ComposeReport, InvalidPixelFormatKeepsOnlyTheErrorInTheOpenGLSection) {
  auto in = Typical();
  in.OpenGL.Failure = "Cannot Create GL Context  0 = wglCreateContext(1234) ";
  std::string r = ComposeReport(in);
  EXPECT_NE(r.find("Screen Resolution: 1280x1024\r\n" + kDash +
                   "\r\nCannot Create GL Context  0 = wglCreateContext(1234) \r\n\r\n\r\n"
                   "General Tests:\r\n"),
            std::string::npos);
  EXPECT_EQ(r.find("PixelFormat"), std::string::npos);
  EXPECT_NE(r.find("Flag Color (&H10) :"), std::string::npos);
}

TEST(ComposeReport, NineXFamilyHasNoVersionLine) {
  auto in = Typical();
  in.System.IsWinNT = false;
  in.System.Version = "ignored";
  EXPECT_EQ(ComposeReport(in).find("Version: ignored"), std::string::npos);
  EXPECT_NE(ComposeReport(in).find("OS: Windows XP Professional Version \r\nProcessor: "),
            std::string::npos);
}

TEST(ProposeLogFileName, OnlyRenamesTheDefaultName) {
  struct Case {
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
    SCOPED_TRACE(c.current);
    EXPECT_EQ(report::ProposeLogFileName(c.current, "WinXP Pro ", "VM", "root", 1280, 1024, 32,
                                         "-SW ", 5),
              c.proposed);
  }
  EXPECT_EQ(report::ProposeLogFileName("LogFile.txt", "Win2k ", "PC", "Ann", 640, 480, 8, "", 7),
            "Win2k PC Ann 640x480x8#7 LogFile.txt");
}

TEST(FixedField, PadsAndCuts) {
  EXPECT_EQ(report::FixedField("ab", 4), "ab  ");
  EXPECT_EQ(report::FixedField("abcdef", 4), "abcd");
  EXPECT_EQ(report::FixedField("", 2), "  ");
  EXPECT_EQ(win32::Trim("  a b \t "), "a b \t");
}

}  // namespace
