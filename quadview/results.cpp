#include "quadview/results.h"

#include <charconv>

namespace quadview {

short QuadResult(const FixBoxes& b) {
  short r = 0;
  if (b.formResize != 0) r |= 1;
  if (b.formPaint != 0) r |= 2;
  if (b.picResize != 0) r |= 4;
  if (b.picPaint != 0) r |= 8;
  return r;
}

std::string QuadViewText(short result) {
  static constexpr const char* kLabels[4] = {
      "Form Resize          ",
      "Form Paint           ",
      "OpenGL Picture Resize",
      "OpenGL Picture Paint ",
  };
  std::string text;
  for (int bit = 0; bit < 4; ++bit)
    text += std::string("\r\n") + "  " + kLabels[bit] + "\t" +
            ((result >> bit) & 1 ? "TRUE" : "FALSE");
  return text;
}

std::optional<short> ParseQuadResult(std::string_view text) {
  short value = 0;
  auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (ec != std::errc() || end != text.data() + text.size() || text.empty()) return std::nullopt;
  return value;
}

std::string DescriptionText() {
  return std::string(
             "This tests the ability to Zoom to the full screen size and the redraw performance.") +
         "\r" + "\r" +
         "Do the graphics show correctly when the window is Maximized or Restored?" + "\r" +
         "Do the graphics show correctly when the window is Resized?" + "\r" +
         "Did you see the graphics without any grey or black areas?";
}

std::string WindowCaption(std::string_view quadViewCaption) {
  return std::string(quadViewCaption) + " " + "Velmora";
}

std::string ViewportInfoText(const std::array<int, 2>& maxDims, const std::array<int, 4>& vp) {
  auto n = [](int v) { return std::to_string(v); };
  return "\n\n" + n(maxDims[0]) + ", " + n(maxDims[1]) + " - " + n(vp[0]) + ", " + n(vp[1]) +
         ", " + n(vp[2]) + ", " + n(vp[3]);
}

int InitialFormFixValue(bool currentOGLRedraw) {
  int asBoolean = currentOGLRedraw ? -1 : 0;
  return asBoolean < 0 ? -asBoolean : asBoolean;
}

KeyAction KeyUpAction(int keyCode, int shift) {
  if ((shift & 2) == 0) return KeyAction::None;
  if (keyCode == 86) return KeyAction::ToggleFixBoxes;     // V
  if (keyCode == 67) return KeyAction::ToggleCopyPicture;  // C
  return KeyAction::None;
}

bool HidesOnQueryUnload(int mode) {
  return mode == kFormControlMenu || mode == kAppWindows || mode == kAppTaskManager;
}

}  // namespace quadview
