#include "shell/mode.h"

#include <cstdlib>

namespace shell {

void ModeSettings::Tag(const char* tag, bool enabled) {
  view.tag = tag;
  view.setEnabled = enabled;
}

// NOTE: a host file holding 1 instead of -1 for "redraw" always reads as
// different from the current choice; the comparison is on the raw value.
void ModeSettings::TagByRedraw() {
  if (VoraRedraw != HostBool(CurrentOGLRedraw))
    Tag("[VORA New]", true);
  else
    Tag("[VORA Current]", false);
}

void ModeSettings::SetCurrentOGLPixelFormat(int index) {
  currentPixelFormat_ = index;
  view.pixelFormatText = std::to_string(index);
}

void ModeSettings::Load(const HostSettings& host) {
  if (!host.present) {
    Tag("[Default]", true);
    return;
  }
  VoraSH = host.VoraSH;
  VoraPixelFormat = host.VoraPixelFormat;
  VoraRedraw = host.VoraRedraw;
  VoraSettingsTail = host.VoraSettingsTail;
  view.forceRedraw = VoraRedraw != 0;
  SetCurrentOGLPixelFormat(VoraPixelFormat);
  CurrentSH = VoraSH != 0;
  CurrentOGLRedraw = VoraRedraw != 0;
  if (VoraPixelFormat < 1) {
    view.pixelFormatText = "0";
    Select(VoraSH != 0 ? ModeOption::Hardware : ModeOption::Software);
  } else {
    Select(ModeOption::Explicit);
    view.pixelFormatText = std::to_string(VoraPixelFormat);
  }
  Tag("[VORA Current]", false);
}

void ModeSettings::Select(ModeOption option) {
  if (view.option == option) return;
  view.option = option;
  switch (option) {
    case ModeOption::Software: SWPixelFormat_Opt_Click(); break;
    case ModeOption::Hardware: HWPixelFormat_Opt_Click(); break;
    case ModeOption::Explicit: PixelFormat_Opt_Click(); break;
  }
}

void ModeSettings::SWPixelFormat_Opt_Click() {
  view.option = ModeOption::Software;
  if (view.useVora) {
    if (VoraSH != 0)
      Tag("[VORA New]", true);
    else
      Tag("[VORA Current]", false);
    view.pixelFormatText = std::to_string(VoraPixelFormat);
  } else {
    Tag("[Default]", false);
    view.pixelFormatText = "0";
  }
  CurrentSH = false;
}

void ModeSettings::HWPixelFormat_Opt_Click() {
  view.option = ModeOption::Hardware;
  if (VoraSH != 0)
    Tag("[VORA Current]", false);
  else
    Tag(view.useVora ? "[VORA New]" : "[New]", true);
  view.pixelFormatText = view.useVora ? std::to_string(VoraPixelFormat) : "0";
  CurrentSH = true;
  SetCurrentOGLPixelFormat(0);
}

// An explicit index always counts as hardware mode; the index itself
// decides which format is used.
void ModeSettings::PixelFormat_Opt_Click() {
  view.option = ModeOption::Explicit;
  Tag(view.useVora ? "[VORA New]" : "[New]", true);
  CurrentSH = true;
}

void ModeSettings::PixelFormat_Tbx_Click() { Select(ModeOption::Explicit); }

// NOTE: with "Use VORA Settings" ticked the typed index goes into the host
// value, not the current one, and the box keeps the text as typed.
bool ModeSettings::PixelFormat_Tbx_LostFocus(const std::string& text) {
  auto value = ParseIndex(text);
  if (!value || *value == INT32_MIN) return false;
  int32_t index = std::abs(*value);
  if (view.useVora) {
    Tag("[VORA New]", true);
    VoraPixelFormat = index;
    view.pixelFormatText = text;
  } else {
    Tag("[New]", true);
    SetCurrentOGLPixelFormat(index);
  }
  return true;
}

void ModeSettings::PrevPF_Cbt_Click() {
  Select(ModeOption::Explicit);
  if (currentPixelFormat_ > 1) SetCurrentOGLPixelFormat(currentPixelFormat_ - 1);
}

void ModeSettings::NextPF_Cbt_Click(int formatCount) {
  Select(ModeOption::Explicit);
  if (currentPixelFormat_ < formatCount) SetCurrentOGLPixelFormat(currentPixelFormat_ + 1);
}

void ModeSettings::ForceRedraw_Chk_Click(bool ticked) {
  view.forceRedraw = ticked;
  CurrentOGLRedraw = ticked;
  TagByRedraw();
}

void ModeSettings::SetHWSW_Chk_Click(bool ticked) {
  view.useVora = ticked;
  if (!ticked) {
    view.pixelFormatText = "0";
    SetCurrentOGLPixelFormat(0);
    CurrentOGLRedraw = false;
    Select(ModeOption::Software);
    return;
  }
  if (VoraPixelFormat > 0) {
    Select(ModeOption::Explicit);
    SetCurrentOGLPixelFormat(VoraPixelFormat);
    return;
  }
  SetCurrentOGLPixelFormat(VoraPixelFormat);
  if (VoraSH != 0) {
    TagByRedraw();
    Select(ModeOption::Hardware);
  } else {
    Tag("[VORA New]", true);
    Select(ModeOption::Software);
  }
}

void ModeSettings::SettingsWritten() {
  Tag("[VORA Current]", false);
  VoraPixelFormat = currentPixelFormat_;
  VoraSH = HostBool(CurrentSH);
  VoraRedraw = HostBool(CurrentOGLRedraw);
  if (VoraPixelFormat < 1) {
    view.pixelFormatText = std::to_string(VoraPixelFormat);
    Select(VoraSH != 0 ? ModeOption::Hardware : ModeOption::Software);
  } else {
    Select(ModeOption::Explicit);
    view.pixelFormatText = std::to_string(VoraPixelFormat);
  }
}

// Digits with an optional fraction ("1.5"), read to the nearest whole
// number with halves going to the even one, as a typed number is read.
std::optional<int32_t> ParseIndex(const std::string& text) {
  size_t i = 0, n = text.size();
  auto blank = [](char c) { return c == ' ' || c == '\t'; };
  auto digit = [](char c) { return c >= '0' && c <= '9'; };
  while (i < n && blank(text[i])) ++i;
  while (n > i && blank(text[n - 1])) --n;
  bool negative = false;
  if (i < n && (text[i] == '+' || text[i] == '-')) negative = text[i++] == '-';
  int64_t value = 0;
  bool any = false;
  for (; i < n && digit(text[i]); ++i, any = true) {
    value = value * 10 + (text[i] - '0');
    if (value > 2147483648LL) return std::nullopt;
  }
  if (i < n && text[i] == '.') {
    size_t first = ++i;
    for (; i < n && digit(text[i]); ++i) any = true;
    if (first < i) {
      // Only the first fraction digit and whether any other is non-zero
      // matter for rounding to the nearest whole number.
      int lead = text[first] - '0';
      bool rest = text.find_first_not_of('0', first + 1) < i;
      if (lead > 5 || (lead == 5 && (rest || value % 2 == 1))) ++value;
    }
  }
  if (!any || i != n) return std::nullopt;
  if (negative) value = -value;
  if (value > INT32_MAX || value < INT32_MIN) return std::nullopt;
  return static_cast<int32_t>(value);
}

}  // namespace shell
