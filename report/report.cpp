#include "report/report.h"

#include "gl/pixelformat_rules.h"
#include "win32/text.h"

namespace report {
namespace {

const std::string kSeparator = std::string(60, '-') + kLineEnd;

std::string Line(std::string_view text) { return std::string(text) + kLineEnd; }

// The OpenGL string lines are trimmed as a whole, line end included, so
// blanks before the line end stay.
std::string TrimmedLine(std::string_view text) { return win32::Trim(Line(text)); }

void AddOpenGL(std::string& r, const OpenGLPart& gl) {
  if (gl.Failure) {
    r += kLineEnd + *gl.Failure + kLineEnd + kLineEnd + kLineEnd;
    return;
  }
  r += Line("PixelFormat " + gl.ModeTag + "#" + std::to_string(gl.PixelFormat));
  r += kLineEnd;
  r += Line("Flags " + std::to_string(gl.Flags));
  r += kSeparator;
  r += Line("Color Buffer: \t" + std::to_string(gl.ColorBits) + " Bits");
  r += Line("Depth Buffer: \t" + std::to_string(gl.DepthBits) + " Bits");
  r += kSeparator;
  r += TrimmedLine("Renderer: " + gl.Renderer);
  size_t blank = gl.Version.find(' ');
  if (blank != std::string::npos && blank > 0) {
    r += TrimmedLine("Version:    " + gl.Version.substr(0, blank));
    r += TrimmedLine("Driver:     " + gl.Version.substr(blank + 1));
  } else {
    // A version that begins with a blank is shown whole, without that blank.
    size_t start = gl.Version.find_first_not_of(' ');
    r += TrimmedLine("Version:    " + (start == std::string::npos ? "" : gl.Version.substr(start)));
  }
  r += TrimmedLine("Vendor:     " + gl.Vendor);
  r += Line(gl.Renderer == "GDI Generic" ? "(This means use of OpenGL software)"
                                         : "(This means use of OpenGL drivers)");
  r += kSeparator;
  auto flag = [&](const char* label, uint32_t bit) {
    r += Line(std::string(label) + "\t" + BoolText(gl.Flags & bit));
  };
  flag("Flag DoubleBuffer (H1) - Required :  ", mOpenGL::kDoubleBuffer);
  flag("Flag DrawToWindow (H4) - Required :  ", mOpenGL::kDrawToWindow);
  flag("Flag OpenGLSupport (H20) - Required :", mOpenGL::kSupportOpenGL);
  r += kSeparator;
  flag("Flag GenericFormat (&H40) :          ", mOpenGL::kGenericFormat);
  flag("Flag GenericAccelerated (&H1000) :   ", mOpenGL::kGenericAccelerated);
  r += Line("OpenGL Implementation (H40/H1000):   ");
  switch (mOpenGL::Classify(gl.Flags)) {
    case mOpenGL::FormatClass::ICD: r += Line(" Full Hardware Acceleration - [ICD]"); break;
    case mOpenGL::FormatClass::MCD: r += Line(" Partial Hardware Acceleration - [MCD]"); break;
    case mOpenGL::FormatClass::Generic: r += Line(" Software "); break;
  }
  r += kSeparator;
  r += win32::Trim(std::string("Extensions: ") + kLineEnd + gl.Extensions + kLineEnd);
  r += kSeparator;
}

// NOTE: the 20-character field cuts long captions, ":" included.
void AddTests(std::string& r, const TestPart& t) {
  r += Line("General Tests:");
  auto verdict = [](const std::string& label) {
    std::string text = win32::Trim(label);
    return text.empty() ? std::string("? Not checked ?") : text;
  };
  for (int i = 0; i < kTestCount; ++i)
    r += TrimmedLine(FixedField(t.Captions[i] + ":", 20) + "\t" + verdict(t.Labels[i]));
  std::string quad = win32::Trim(t.QuadViewLabel).empty()
                         ? std::string("? Not checked ?")
                         : win32::Trim(t.QuadViewLabel) + " " + t.QuadViewText;
  r += TrimmedLine(FixedField(t.QuadViewCaption + "  [" + std::to_string(t.ForceRedraw) + "] :", 20) +
                   "\t" + quad);
  r += kSeparator;
}

// NOTE: the hexadecimal values in these labels are not the bits tested,
// and the last line tests nSize (always 40), so it always reads FALSE.
void AddExtraFlags(std::string& r, uint32_t flags, uint16_t size) {
  struct Extra {
    const char* label;
    bool set;
  };
  const Extra extras[] = {
      {"Flag Stereo (&H2) :", (flags & 0x2) != 0},
      {"Flag DrawToBitmap (&H8) :", (flags & 0x8) != 0},
      {"Flag SupportGDI (&H10) :", (flags & 0x10) != 0},
      {"Flag NeedPalette (&H2) :", (flags & 0x80) != 0},
      {"Flag NeedSystemPalette (&H8) :", (flags & 0x100) != 0},
      {"Flag SwapExchange (&H10) :", (flags & 0x200) != 0},
      {"Flag SwapCopy (&H2) :", (flags & 0x400) != 0},
      {"Flag SwapLayerBuffers (&H8) :", (flags & 0x800) != 0},
      {"Flag SupportDirectDraw (&H10) :", (flags & 0x2000) != 0},
      {"Flag Color (&H10) :", (size & 0x2000) != 0},
  };
  for (const auto& e : extras) r += Line(FixedField(e.label, 35) + "\t" + BoolText(e.set));
  r += kSeparator;
}

}  // namespace

std::string FixedField(std::string_view text, size_t width) {
  std::string s(text.substr(0, width));
  s.resize(width, ' ');
  return s;
}

const char* BoolText(bool value) { return value ? "TRUE" : "FALSE"; }

std::string ComposeReport(const ReportInputs& in) {
  const SystemPart& s = in.System;
  std::string r;
  r += Line("Computer: " + s.ComputerName);
  r += Line("User: " + s.UserText);
  r += Line("OS: " + s.Platform);
  if (s.IsWinNT) r += Line("Version: " + s.Version);
  r += Line("Processor: " + s.Processor);
  r += Line("Screen Resolution: " + std::to_string(s.ScreenWidth) + "x" +
            std::to_string(s.ScreenHeight));
  r += kSeparator;
  AddOpenGL(r, in.OpenGL);
  AddTests(r, in.Tests);
  AddExtraFlags(r, in.DescriptorFlags, in.DescriptorSize);
  return r;
}

std::optional<std::string> ProposeLogFileName(std::string_view current, std::string_view id,
                                              std::string_view computer, std::string_view user,
                                              int width, int height, int colorBits,
                                              std::string_view modeTag, int pixelFormat) {
  constexpr std::string_view kDefault = "LogFile.txt";
  if (current.size() < kDefault.size() || current.substr(current.size() - kDefault.size()) != kDefault)
    return std::nullopt;
  return std::string(id) + std::string(computer) + " " + std::string(user) + " " +
         std::to_string(width) + "x" + std::to_string(height) + "x" + std::to_string(colorBits) +
         std::string(modeTag) + "#" + std::to_string(pixelFormat) + " LogFile.txt";
}

}  // namespace report
