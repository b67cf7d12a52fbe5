#pragma once
// The host program's settings file: three little-endian 32-bit integers
// (hardware mode, pixel-format index, force redraw) and bytes behind them
// that are kept as they are.
#include <cstdint>
#include <string>
#include <string_view>

namespace shell {

struct HostSettings {
  bool present = false;  // false: no file, or one too short to hold two values
  int32_t VoraSH = 0;
  int32_t VoraPixelFormat = 0;
  bool hasRedraw = false;  // the file held a third value
  int32_t VoraRedraw = 0;
  std::string VoraSettingsTail;  // every byte behind the first 12
};

// Reads the file's bytes. Fewer than 8 bytes count as no file; fewer than
// 12 leave VoraRedraw at `previousRedraw`.
HostSettings ParseHostSettings(std::string_view bytes, int32_t previousRedraw = 0);

// The bytes the file holds after the three values and the kept tail are
// written over `current` (the file as it stands) from offset 0 without
// truncating it: bytes of `current` beyond what is written stay.
std::string ComposeHostSettings(std::string_view current, int32_t sh, int32_t pixelFormat,
                                int32_t redraw, std::string_view tail);

// Windows directory + "\VORAhogl.ini".
std::string HostSettingsPath();

// True when a directory search for the path finds an entry.
bool FileExists(const std::string& path);

struct FileResult {
  bool ok = true;
  std::string reason;  // the system's words for the failure
};

FileResult ReadWholeFile(const std::string& path, std::string& bytes);
// Writes the bytes beside the file and then replaces it, so that the file
// is never left half-written.
FileResult ReplaceFileContents(const std::string& path, std::string_view bytes);
std::string SystemMessage(unsigned long code);

}  // namespace shell
