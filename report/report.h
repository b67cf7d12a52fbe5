#pragma once
// The Specifications report: one plain text composed from values the
// handler gathered (machine, pixel format, OpenGL strings, test labels).
#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "win32/text.h"

namespace report {

inline constexpr const char* kLineEnd = "\r\n";
using win32::kTestCount;

struct SystemPart {
  std::string ComputerName;
  std::string UserText;  // full name on NT, else the user name
  std::string Platform;
  bool IsWinNT = false;
  std::string Version;
  std::string Processor;
  int ScreenWidth = 0;
  int ScreenHeight = 0;
};

struct OpenGLPart {
  // Set when the context could not be made for an invalid pixel format
  // (error 2000); the section then holds only this description.
  std::optional<std::string> Failure;
  std::string ModeTag;  // "-HW ", "-SW " or ""
  int PixelFormat = 0;
  uint32_t Flags = 0;
  int ColorBits = 0;
  int DepthBits = 0;
  std::string Renderer, Version, Vendor, Extensions;
};

struct TestPart {
  std::array<std::string, kTestCount> Captions;
  std::array<std::string, kTestCount> Labels;
  std::string QuadViewCaption;
  int ForceRedraw = 0;  // the check box value, 0 or 1
  std::string QuadViewLabel;
  std::string QuadViewText;
};

struct ReportInputs {
  SystemPart System;
  OpenGLPart OpenGL;
  TestPart Tests;
  // The descriptor as it stands after the context set-up, for the extra
  // flag lines (its flags word and its first 16-bit field, nSize).
  uint32_t DescriptorFlags = 0;
  uint16_t DescriptorSize = 0;
};

std::string ComposeReport(const ReportInputs& in);

// Left-justified in `width` characters: padded with blanks or cut.
std::string FixedField(std::string_view text, size_t width);
// "TRUE" or "FALSE".
const char* BoolText(bool value);

// The log-file name proposed after a report: only when the name box still
// ends in "LogFile.txt"; nothing when the user typed a name of their own.
std::optional<std::string> ProposeLogFileName(std::string_view current, std::string_view id,
                                              std::string_view computer, std::string_view user,
                                              int width, int height, int colorBits,
                                              std::string_view modeTag, int pixelFormat);

}  // namespace report
