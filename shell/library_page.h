#pragma once
// The Library page: the rendering choice (best software format, best
// hardware format or a pixel format by number), the host settings file,
// and "Check Specifications" with the report it shows.
#include <windows.h>

#include <string>

namespace shell {

class VelmoraMain;
class ModeSettings;

enum LibraryPageId : int {
  kSettingsFrame = 200, kSWPixelFormatOpt, kHWPixelFormatOpt, kPixelFormatOpt,
  kPixelFormatTbx, kPrevPF, kNextPF, kForceRedrawChk, kSetHWSWChk, kSetVORAHWSW,
  kSpecsCbt, kSpecsTbx,
};

class LibraryPage {
 public:
  explicit LibraryPage(VelmoraMain& main) : main_(main) {}

  void Create(HWND panel);
  // True when `id` is one of the page's controls (handled or not).
  bool OnCommand(int id, int code);
  // Mirrors the rendering choice into the controls.
  void ShowMode();

  void SWPixelFormat_Opt_Click();
  void HWPixelFormat_Opt_Click();
  void PixelFormat_Opt_Click();
  void PixelFormat_Tbx_Click();
  void PixelFormat_Tbx_LostFocus();
  void PrevPF_Cbt_Click();
  void NextPF_Cbt_Click();
  void ForceRedraw_Chk_Click();
  void SetHWSW_Chk_Click();
  void SetVORAHWSW_Cbt_Click();
  void Specs_Cbt_Click();

 private:
  static LRESULT CALLBACK IndexBoxProc(HWND box, UINT msg, WPARAM wp, LPARAM lp, UINT_PTR id,
                                       DWORD_PTR self);
  HWND Control(int id) const { return GetDlgItem(panel_, id); }
  bool Checked(int id) const;
  ModeSettings& Mode();

  VelmoraMain& main_;
  HWND panel_ = nullptr;
  std::string shownIndexText_;  // index text as last shown, restored on bad input
};

}  // namespace shell
