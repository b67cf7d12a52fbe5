#pragma once
// The rendering choice of the Library page ("OpenGL Settings" frame) as
// plain state: which option is selected, what the index box and check boxes
// show, the frame caption and whether "Set VORA to these settings" is
// enabled. The window only mirrors this state into its controls.
#include <cstdint>
#include <optional>
#include <string>

#include "shell/host_settings.h"

namespace shell {

enum class ModeOption { Software, Hardware, Explicit };

struct ModeView {
  ModeOption option = ModeOption::Software;  // the designed state
  std::string pixelFormatText = "0";
  bool forceRedraw = false;  // ForceRedraw_Chk
  bool useVora = false;      // SetHWSW_Chk
  std::string tag = "[Default]";
  bool setEnabled = true;
  std::string Caption() const { return "OpenGL Settings " + tag; }
};

class ModeSettings {
 public:
  // Start-up: the host settings as read (present false: no usable file).
  void Load(const HostSettings& host);

  void SWPixelFormat_Opt_Click();
  void HWPixelFormat_Opt_Click();
  void PixelFormat_Opt_Click();
  void PixelFormat_Tbx_Click();
  // The index box lost the focus with `text` in it. A text that is not a
  // whole number leaves everything as it was and returns false.
  bool PixelFormat_Tbx_LostFocus(const std::string& text);
  void PrevPF_Cbt_Click();
  void NextPF_Cbt_Click(int formatCount);
  void ForceRedraw_Chk_Click(bool ticked);
  void SetHWSW_Chk_Click(bool ticked);
  // After the host file was written with CurrentSH, CurrentOGLPixelFormat
  // and CurrentOGLRedraw.
  void SettingsWritten();

  // Selects an option as the program does: its click runs only when it was
  // not selected already.
  void Select(ModeOption option);

  int CurrentOGLPixelFormat() const { return currentPixelFormat_; }
  // Setting the index also shows it in the index box.
  void SetCurrentOGLPixelFormat(int index);
  bool CurrentSH = false;
  bool CurrentOGLRedraw = false;

  int32_t VoraSH = 0;
  int32_t VoraPixelFormat = 0;
  int32_t VoraRedraw = 0;
  std::string VoraSettingsTail;

  ModeView view;

 private:
  void Tag(const char* tag, bool enabled);
  void TagByRedraw();
  int currentPixelFormat_ = 0;
};

// A whole number as the index box accepts it (blanks around, optional
// sign); nothing when the text is not one or does not fit 32 bits.
std::optional<int32_t> ParseIndex(const std::string& text);

// -1 for true, 0 for false, as booleans are stored in the host file.
inline int32_t HostBool(bool b) { return b ? -1 : 0; }

}  // namespace shell
