// The Library page: the rendering choice, the host settings file and
// "Check Specifications".
#include "shell/library_page.h"

#include <commctrl.h>

#include <cmath>
#include <vector>

#include "shell/main_window.h"
#include "shell/specs_gather.h"
#include "win32/ui.h"

namespace shell {
namespace {

using win32::CreateControl;
constexpr DWORD kButton = win32::kPushButton;

// Tab positions of the report box, in the box's dialog units.
void SetTextBoxTabStops(HWND box, const std::vector<int>& stops) {
  SendMessageA(box, EM_SETTABSTOPS, stops.size(), reinterpret_cast<LPARAM>(stops.data()));
}

}  // namespace

// The index box's own mouse messages make the click: a click of the mouse
// and a click posted by an automation tool then behave alike, and the
// option is selected once per click.
LRESULT CALLBACK LibraryPage::IndexBoxProc(HWND box, UINT msg, WPARAM wp, LPARAM lp,
                                           UINT_PTR id, DWORD_PTR self) {
  LRESULT result = DefSubclassProc(box, msg, wp, lp);
  if (msg == WM_LBUTTONDOWN || msg == WM_LBUTTONDBLCLK)
    reinterpret_cast<LibraryPage*>(self)->PixelFormat_Tbx_Click();
  else if (msg == WM_NCDESTROY)
    RemoveWindowSubclass(box, IndexBoxProc, id);
  return result;
}

void LibraryPage::Create(HWND p) {
  panel_ = p;
  CreateControl(p, "BUTTON", "OpenGL Settings", WS_VISIBLE | BS_GROUPBOX, {0, 0, 3600, 3180},
                kSettingsFrame);
  CreateControl(p, "BUTTON", "Best software format",
                WS_VISIBLE | WS_TABSTOP | WS_GROUP | BS_AUTORADIOBUTTON, {180, 300, 3240, 300},
                kSWPixelFormatOpt);
  CreateControl(p, "BUTTON", "Best hardware format", WS_VISIBLE | BS_AUTORADIOBUTTON,
                {180, 660, 3240, 300}, kHWPixelFormatOpt);
  CreateControl(p, "BUTTON", "Pixel Format :", WS_VISIBLE | BS_AUTORADIOBUTTON,
                {180, 1020, 1500, 300}, kPixelFormatOpt);
  HWND indexBox = CreateControl(p, "EDIT", "0", WS_VISIBLE | WS_TABSTOP | WS_GROUP | ES_AUTOHSCROLL,
                                {1740, 1005, 720, 330}, kPixelFormatTbx, WS_EX_CLIENTEDGE);
  SetWindowSubclass(indexBox, IndexBoxProc, kPixelFormatTbx, reinterpret_cast<DWORD_PTR>(this));
  CreateControl(p, "BUTTON", "<", kButton, {2520, 1005, 420, 330}, kPrevPF);
  CreateControl(p, "BUTTON", ">", kButton, {3000, 1005, 420, 330}, kNextPF);
  CreateControl(p, "BUTTON", "Force Redraw", WS_VISIBLE | WS_TABSTOP | BS_AUTOCHECKBOX,
                {180, 1500, 3240, 300}, kForceRedrawChk);
  CreateControl(p, "BUTTON", "Use VORA Settings", WS_VISIBLE | WS_TABSTOP | BS_AUTOCHECKBOX,
                {180, 1860, 3240, 300}, kSetHWSWChk);
  CreateControl(p, "BUTTON", "Set VORA to these settings", kButton, {180, 2400, 3240, 480},
                kSetVORAHWSW);
  CreateControl(p, "BUTTON", "Check Specifications", kButton, {0, 3360, 3600, 480}, kSpecsCbt);
  CreateControl(p, "EDIT",
                "Select Software or Hardware mode to test; Then\r\n"
                "Press \"Check Specifications\" to update",
                WS_VISIBLE | WS_TABSTOP | WS_VSCROLL | ES_MULTILINE | ES_READONLY | ES_AUTOVSCROLL,
                {3720, 0, 5640, 5640}, kSpecsTbx, WS_EX_CLIENTEDGE);
}

bool LibraryPage::OnCommand(int id, int code) {
  switch (id) {
    case kSWPixelFormatOpt: if (code == BN_CLICKED) SWPixelFormat_Opt_Click(); break;
    case kHWPixelFormatOpt: if (code == BN_CLICKED) HWPixelFormat_Opt_Click(); break;
    case kPixelFormatOpt: if (code == BN_CLICKED) PixelFormat_Opt_Click(); break;
    case kPixelFormatTbx: if (code == EN_KILLFOCUS) PixelFormat_Tbx_LostFocus(); break;
    case kPrevPF: PrevPF_Cbt_Click(); break;
    case kNextPF: NextPF_Cbt_Click(); break;
    case kForceRedrawChk: if (code == BN_CLICKED) ForceRedraw_Chk_Click(); break;
    case kSetHWSWChk: if (code == BN_CLICKED) SetHWSW_Chk_Click(); break;
    case kSetVORAHWSW: SetVORAHWSW_Cbt_Click(); break;
    case kSpecsCbt: Specs_Cbt_Click(); break;
    default: return id >= kSettingsFrame && id <= kSpecsTbx;
  }
  return true;
}

ModeSettings& LibraryPage::Mode() { return main_.State().mode; }

bool LibraryPage::Checked(int id) const {
  return SendMessageA(Control(id), BM_GETCHECK, 0, 0) == BST_CHECKED;
}

void LibraryPage::ShowMode() {
  const ModeView& v = Mode().view;
  auto check = [&](int id, bool on) {
    SendMessageA(Control(id), BM_SETCHECK, on ? BST_CHECKED : BST_UNCHECKED, 0);
  };
  check(kSWPixelFormatOpt, v.option == ModeOption::Software);
  check(kHWPixelFormatOpt, v.option == ModeOption::Hardware);
  check(kPixelFormatOpt, v.option == ModeOption::Explicit);
  check(kForceRedrawChk, v.forceRedraw);
  check(kSetHWSWChk, v.useVora);
  if (win32::GetText(Control(kPixelFormatTbx)) != v.pixelFormatText)
    win32::SetText(Control(kPixelFormatTbx), v.pixelFormatText);
  shownIndexText_ = v.pixelFormatText;
  win32::SetText(Control(kSettingsFrame), v.Caption());
  EnableWindow(Control(kSetVORAHWSW), v.setEnabled);
}

void LibraryPage::SWPixelFormat_Opt_Click() {
  Mode().SWPixelFormat_Opt_Click();
  ShowMode();
}
void LibraryPage::HWPixelFormat_Opt_Click() {
  Mode().HWPixelFormat_Opt_Click();
  ShowMode();
}
void LibraryPage::PixelFormat_Opt_Click() {
  Mode().PixelFormat_Opt_Click();
  ShowMode();
}
// A click into the box with "Pixel Format :" already selected changes
// nothing, so the text being typed stays as it is.
void LibraryPage::PixelFormat_Tbx_Click() {
  if (Mode().view.option == ModeOption::Explicit) return;
  Mode().PixelFormat_Tbx_Click();
  ShowMode();
}

void LibraryPage::PixelFormat_Tbx_LostFocus() {
  // Leaving the box counts even when its text did not change: the index
  // it shows is the one taken.
  std::string text = win32::GetText(Control(kPixelFormatTbx));
  if (!Mode().PixelFormat_Tbx_LostFocus(text)) {
    win32::SetText(Control(kPixelFormatTbx), shownIndexText_);
    win32::MsgBox(main_.hwnd(),
                  "\"" + text + "\" is not a pixel-format number.\r\n"
                  "Type a whole number such as 3. The settings were left as they were.",
                  win32::kAppTitle, MB_OK | MB_ICONEXCLAMATION);
    return;
  }
  ShowMode();
}

void LibraryPage::PrevPF_Cbt_Click() {
  Mode().PrevPF_Cbt_Click();
  ShowMode();
  Specs_Cbt_Click();
}

void LibraryPage::NextPF_Cbt_Click() {
  Mode().NextPF_Cbt_Click(mOpenGL::GetPixelFormatCount());
  ShowMode();
  Specs_Cbt_Click();
}

void LibraryPage::ForceRedraw_Chk_Click() {
  Mode().ForceRedraw_Chk_Click(Checked(kForceRedrawChk));
  ShowMode();
}

void LibraryPage::SetHWSW_Chk_Click() {
  Mode().SetHWSW_Chk_Click(Checked(kSetHWSWChk));
  ShowMode();
}

void LibraryPage::SetVORAHWSW_Cbt_Click() {
  const std::string& path = main_.HostSettingsFile();
  ModeSettings& mode = Mode();
  std::string current;
  FileResult result;
  if (FileExists(path)) result = ReadWholeFile(path, current);
  if (result.ok) {
    result = ReplaceFileContents(
        path, ComposeHostSettings(current, HostBool(mode.CurrentSH), mode.CurrentOGLPixelFormat(),
                                  HostBool(mode.CurrentOGLRedraw), mode.VoraSettingsTail));
  }
  if (!result.ok) {
    win32::MsgBox(main_.hwnd(),
                  "The settings could not be written to\r\n" + path + "\r\n" + result.reason +
                      ".\r\nThe file was left unchanged and the settings shown stay as they were.",
                  win32::kAppTitle, MB_OK | MB_ICONEXCLAMATION);
    return;
  }
  mode.SettingsWritten();
  ShowMode();
}

void LibraryPage::Specs_Cbt_Click() {
  HWND box = Control(kSpecsTbx);
  if (!win32::Module(mOpenGL::Platform().LoadDll(mOpenGL::kOpenGLDll))) {
    win32::SetText(box, "DLL missing");
    return;
  }
  win32::SetText(box, "Error");
  // The second stop is where the values after the 37-character labels go.
  const int labelStop = static_cast<int>(std::lround(37 * 0.75));
  SetTextBoxTabStops(box, {0, labelStop});

  SpecsRequest request;
  request.loadPicture = [this] { return main_.LoadOpenGLPicture(); };
  request.mode = &main_;
  request.modeTag = ModeTag(Mode().view.option);
  for (int i = 0; i < kTestCount; ++i) {
    request.tests.Captions[i] = win32::GetText(main_.Control(kGLTestCbt0 + i));
    request.tests.Labels[i] = win32::GetText(main_.Control(kGLTestLbl0 + i));
  }
  request.tests.QuadViewCaption = win32::GetText(main_.Control(kQuadViewCbt));
  request.tests.ForceRedraw = Checked(kForceRedrawChk) ? 1 : 0;
  request.tests.QuadViewLabel = win32::GetText(main_.Control(kQuadViewLbl));
  request.tests.QuadViewText = main_.State().quadViewText;
  std::optional<SpecsGathering> gathered = GatherSpecifications(request);
  if (!gathered) {
    win32::SetText(box, "DLL missing");
    return;
  }

  const report::OpenGLPart& gl = gathered->inputs.OpenGL;
  main_.State().reportContext = {gathered->modules, gl.Renderer, gl.Flags};
  std::string text = gathered->Text();
  if (auto name = gathered->LogFileName(win32::GetText(main_.Control(kFileTbx))))
    win32::SetText(main_.Control(kFileTbx), *name);
  win32::SetText(box, text);
  main_.FocusControl(kNext);
  main_.State().specsAsked = true;
}

}  // namespace shell
