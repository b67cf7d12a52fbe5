#pragma once
// How the program reads a pixel format's flags: the class of its driver
// (ICD, MCD or generic software), whether it can draw double-buffered
// OpenGL into a window, and the flags the pixel-format browser lists.
// Plain data and constexpr functions: no Windows headers, so the report,
// the browser, the device layer and their tests share one copy.
#include <array>
#include <cstdint>

namespace mOpenGL {

// The flag bits of a pixel-format descriptor (the PFD_ values of GDI).
inline constexpr uint32_t kDoubleBuffer = 0x1;
inline constexpr uint32_t kStereo = 0x2;
inline constexpr uint32_t kDrawToWindow = 0x4;
inline constexpr uint32_t kDrawToBitmap = 0x8;
inline constexpr uint32_t kSupportGDI = 0x10;
inline constexpr uint32_t kSupportOpenGL = 0x20;
inline constexpr uint32_t kGenericFormat = 0x40;
inline constexpr uint32_t kNeedPalette = 0x80;
inline constexpr uint32_t kNeedSystemPalette = 0x100;
inline constexpr uint32_t kSwapExchange = 0x200;
inline constexpr uint32_t kSwapCopy = 0x400;
inline constexpr uint32_t kSwapLayerBuffers = 0x800;
inline constexpr uint32_t kGenericAccelerated = 0x1000;
inline constexpr uint32_t kSupportDirectDraw = 0x2000;

// What an OpenGL window of the program needs of its format.
inline constexpr uint32_t kWindowOpenGLDoubleBuffer = kDrawToWindow | kSupportOpenGL | kDoubleBuffer;
constexpr bool DrawsDoubleBufferedOpenGLToAWindow(uint32_t flags) {
  return (flags & kWindowOpenGLDoubleBuffer) == kWindowOpenGLDoubleBuffer;
}

// ICD: not generic; MCD: generic and accelerated; generic alone: software.
// ICD and MCD count as hardware.
enum class FormatClass { ICD, MCD, Generic };
constexpr FormatClass Classify(uint32_t flags) {
  if (!(flags & kGenericFormat)) return FormatClass::ICD;
  return (flags & kGenericAccelerated) ? FormatClass::MCD : FormatClass::Generic;
}

// The browser's rows: one per flag, in the order the grid lists them.
struct FlagRow {
  const char* text;
  uint32_t flag;
};
inline constexpr std::array<FlagRow, 14> kFlagRows{{
    {"SUPPORT_OPENGL", kSupportOpenGL},
    {"DRAW_TO_WINDOW", kDrawToWindow},
    {"DOUBLEBUFFER", kDoubleBuffer},
    {"GENERIC_FORMAT", kGenericFormat},
    {"GENERIC_ACCELERATED", kGenericAccelerated},
    {"STEREO", kStereo},
    {"DRAW_TO_BITMAP", kDrawToBitmap},
    {"SUPPORT_GDI", kSupportGDI},
    {"NEED_PALETTE", kNeedPalette},
    {"NEED_SYSTEM_PALETTE", kNeedSystemPalette},
    {"SWAP_EXCHANGE", kSwapExchange},
    {"SWAP_COPY", kSwapCopy},
    {"SWAP_LAYER_BUFFERS", kSwapLayerBuffers},
    {"SUPPORT_DIRECTDRAW", kSupportDirectDraw},
}};

}  // namespace mOpenGL
