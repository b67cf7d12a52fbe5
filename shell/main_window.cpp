#include "shell/main_window.h"

#include <commctrl.h>

#include <string_view>

#include "res/version.h"
#include "win32/ui.h"

namespace shell {
namespace {

using win32::CreateControl;
using win32::TwipRect;

constexpr char kClassName[] = "Velmora_Main";
constexpr COLORREF kLightYellow = 0xC0FFFF;
constexpr UINT_PTR kLoadTimer = 1;

// Window layout, in twips.
constexpr int kClientWidth = 9600;
constexpr int kClientHeight = 7200;
constexpr TwipRect kPageRect{120, 480, 9360, 5640};

constexpr char kPageTabCaptions[4][10] = {"Library", "General", "Save Log", "Drivers"};

constexpr DWORD kButton = WS_VISIBLE | WS_TABSTOP | BS_PUSHBUTTON;
constexpr DWORD kLabel = WS_VISIBLE | SS_LEFT;

// The version of this executable, from its version resource.
struct OwnVersion {
  int major = 0, minor = 0, revision = 0;
  std::string company;
};

OwnVersion ReadOwnVersion() {
  OwnVersion v;
  std::string path = win32::ModulePath();
  DWORD handle = 0;
  DWORD size = GetFileVersionInfoSizeA(path.c_str(), &handle);
  if (size == 0) return v;
  std::vector<char> data(size);
  if (!GetFileVersionInfoA(path.c_str(), 0, size, data.data())) return v;
  VS_FIXEDFILEINFO* fixed = nullptr;
  UINT len = 0;
  if (VerQueryValueA(data.data(), "\\", reinterpret_cast<void**>(&fixed), &len) &&
      len >= sizeof(VS_FIXEDFILEINFO)) {
    v.major = HIWORD(fixed->dwFileVersionMS);
    v.minor = LOWORD(fixed->dwFileVersionMS);
    v.revision = LOWORD(fixed->dwFileVersionLS);
  }
  char* company = nullptr;
  if (VerQueryValueA(data.data(), "\\StringFileInfo\\040904e4\\CompanyName",
                     reinterpret_cast<void**>(&company), &len) &&
      company && len > 0)
    v.company.assign(company, strnlen(company, len));
  return v;
}

}  // namespace

// The index box's own mouse messages make the click: a click of the mouse
// and a click posted by an automation tool then behave alike, and the
// option is selected once per click.
LRESULT CALLBACK VelmoraMain::IndexBoxProc(HWND box, UINT msg, WPARAM wp, LPARAM lp,
                                           UINT_PTR id, DWORD_PTR self) {
  LRESULT result = DefSubclassProc(box, msg, wp, lp);
  if (msg == WM_LBUTTONDOWN || msg == WM_LBUTTONDBLCLK)
    reinterpret_cast<VelmoraMain*>(self)->PixelFormat_Tbx_Click();
  else if (msg == WM_NCDESTROY)
    RemoveWindowSubclass(box, IndexBoxProc, id);
  return result;
}

std::string GLHintText() {
  return std::string("Caution:") + "\r" +
         "If one of these general OpenGL performance checks fails, your hardware settings are "
         "not fully compatible." +
         "\r" +
         "OpenGL-based application may not run correctly. Heavy breakdowns may occur without "
         "any cause." +
         "\r" + "\r" + "Hint:" + "\r" +
         " In some cases it is necessary to change the OpenGL hardware acceleration settings," +
         "to download new drivers or to switch to another screen resolution and color depth.";
}

std::string VersionLabelText(int major, int minor, int revision) {
  return "Vs." + std::to_string(major) + "." + std::to_string(minor) + "." + "0" + "." +
         std::to_string(revision) + "  ";
}

VelmoraMain::VelmoraMain(std::string hostSettingsPath)
    : hostSettingsPath_(hostSettingsPath.empty() ? HostSettingsPath() : std::move(hostSettingsPath)),
      yellowBrush_(CreateSolidBrush(kLightYellow)),
      whiteBrush_(CreateSolidBrush(RGB(255, 255, 255))),
      drivers_({registry_, driverDllPaths_, reportContext_, [this] { FocusControl(kQuit); }}) {}

VelmoraMain::~VelmoraMain() { mOpenGL::SetModeSource(nullptr); }

bool VelmoraMain::Create() {
  HICON icon = LoadIconA(GetModuleHandleA(nullptr), MAKEINTRESOURCEA(1));
  if (!RegisterClassOnce(kClassName, 0, reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1), icon))
    return false;
  const DWORD style = WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU | WS_MINIMIZEBOX | WS_CLIPCHILDREN;
  RECT rc{0, 0, win32::TwipsToPixelsX(kClientWidth), win32::TwipsToPixelsY(kClientHeight)};
  AdjustWindowRectEx(&rc, style, FALSE, WS_EX_CONTROLPARENT);
  if (!Window::Create(WS_EX_CONTROLPARENT, kClassName, win32::kAppTitle, style, CW_USEDEFAULT,
                      CW_USEDEFAULT, rc.right - rc.left, rc.bottom - rc.top, nullptr))
    return false;
  mOpenGL::SetModeSource(this);
  CreateControls();
  Form_Load();
  SetTimer(hwnd(), kLoadTimer, 10, nullptr);
  return true;
}

HWND VelmoraMain::Control(int id) {
  if (HWND c = GetDlgItem(panels_[0], id)) return c;
  if (HWND c = GetDlgItem(hwnd(), id)) return c;
  CompleteLoad();
  for (HWND panel : panels_)
    if (HWND c = GetDlgItem(panel, id)) return c;
  return GetDlgItem(hwnd(), id);
}

std::unique_ptr<GLPicture> VelmoraMain::LoadOpenGLPicture() {
  RECT r{};
  HWND first = GetDlgItem(hwnd(), kOpenGLPicture);
  GetWindowRect(first, &r);
  MapWindowPoints(nullptr, hwnd(), reinterpret_cast<POINT*>(&r), 2);
  return std::make_unique<GLPicture>(hwnd(), r);
}

void VelmoraMain::CreateControls() {
  HWND w = hwnd();
  for (int i = 0; i < 4; ++i) {
    tabs_[i] = CreateControl(w, "STATIC", kPageTabCaptions[i],
                             kLabel | SS_NOTIFY | SS_CENTER | SS_CENTERIMAGE | WS_BORDER,
                             {120 + i * 1440, 120, 1380, 330}, kLibraryTab + i);
  }
  CreateControl(w, "STATIC", "Pixel Formats", kLabel | SS_NOTIFY | SS_CENTER | SS_CENTERIMAGE | WS_BORDER,
                {7920, 120, 1560, 330}, kPixelFormatsTab);
  panels_[0] = win32::CreatePanel(w, kPageRect, kLibraryPanel, false);
  CreateLibraryPage(panels_[0]);
  CreateControl(w, "BUTTON", "<< Back", kButton, {5160, 6240, 1335, 420}, kBack);
  CreateControl(w, "BUTTON", "Next >>", kButton, {6600, 6240, 1335, 420}, kNext);
  CreateControl(w, "BUTTON", "Quit", kButton, {8145, 6240, 1335, 420}, kQuit);
  CreateControl(w, "STATIC", "", kLabel, {120, 6780, 6960, 300}, kAttributionLabel);
  CreateControl(w, "STATIC", "", kLabel | SS_RIGHT, {7200, 6720, 2280, 360}, kVersionLabel);
  // The device layer's drawing surface; never shown.
  CreateControl(w, "STATIC", "", SS_BLACKRECT, {120, 6240, 300, 300}, kOpenGLPicture);
}

// The pages not shown at start are made once the first one is on screen,
// so that the window appears as soon as it can.
void VelmoraMain::CompleteLoad() {
  if (loadComplete_ || !hwnd()) return;
  loadComplete_ = true;
  for (int i = 1; i < 4; ++i) {
    panels_[i] = win32::CreatePanel(hwnd(), kPageRect, kLibraryPanel + i, false);
    SetWindowPos(panels_[i], HWND_BOTTOM, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
  }
  CreateGeneralPage(panels_[1]);
  CreateSaveLogPage(panels_[2]);
  drivers_.Create(panels_[3]);
  win32::SetText(Control(kGLHintLbl), GLHintText());
  SetLogDirectory(win32::ModuleDirectory());
}

void VelmoraMain::CreateLibraryPage(HWND p) {
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

void VelmoraMain::CreateGeneralPage(HWND p) {
  CreateControl(p, "STATIC", "", kLabel, {0, 0, 9360, 1680}, kGLHintLbl);
  for (int i = 0; i < kTestCount; ++i) {
    int column = i < 7 ? 0 : 1;
    int row = i < 7 ? i : i - 7;
    int x = column * 4680;
    int y = 1800 + row * 480;
    CreateControl(p, "BUTTON", tests::kTestCaptions[i], kButton, {x, y, 2040, 390}, kGLTestCbt0 + i);
    CreateControl(p, "STATIC", "", kLabel | SS_CENTERIMAGE, {x + 2100, y, 2520, 390},
                  kGLTestLbl0 + i);
  }
  CreateControl(p, "BUTTON", "Run All", kButton, {4680, 1800 + 6 * 480, 2040, 390}, kRunAll);
  CreateControl(p, "BUTTON", "QuadView", kButton, {0, 1800 + 7 * 480, 2040, 390}, kQuadViewCbt);
  CreateControl(p, "STATIC", "", kLabel | SS_CENTERIMAGE, {2100, 1800 + 7 * 480, 2520, 390},
                kQuadViewLbl);
}

void VelmoraMain::CreateSaveLogPage(HWND p) {
  CreateControl(p, "COMBOBOX", "", WS_VISIBLE | WS_TABSTOP | WS_VSCROLL | CBS_DROPDOWNLIST,
                {0, 0, 4440, 3000}, kLogDrv);
  CreateControl(p, "STATIC", "", kLabel | SS_PATHELLIPSIS | SS_NOPREFIX, {0, 450, 4440, 270},
                kLogPath);
  CreateControl(p, "LISTBOX", "",
                WS_VISIBLE | WS_TABSTOP | WS_VSCROLL | LBS_NOTIFY | LBS_NOINTEGRALHEIGHT,
                {0, 780, 4440, 4260}, kLogDir, WS_EX_CLIENTEDGE);
  CreateControl(p, "LISTBOX", "",
                WS_VISIBLE | WS_TABSTOP | WS_VSCROLL | LBS_NOTIFY | LBS_SORT | LBS_NOINTEGRALHEIGHT,
                {4680, 0, 4680, 5040}, kLogFile, WS_EX_CLIENTEDGE);
  CreateControl(p, "EDIT", "LogFile.txt", WS_VISIBLE | WS_TABSTOP | ES_AUTOHSCROLL,
                {0, 5190, 6840, 330}, kFileTbx, WS_EX_CLIENTEDGE);
  CreateControl(p, "BUTTON", "Save Log", kButton, {7080, 5130, 2280, 450}, kSaveLogCbt);
}

void VelmoraMain::Form_Load() {
  OwnVersion version = ReadOwnVersion();
  win32::SetText(Control(kAttributionLabel), version.company);
  HWND vs = Control(kVersionLabel);
  win32::SetText(vs, VersionLabelText(version.major, version.minor, version.revision));
  TwipRect vsRect = win32::WindowRectTwips(vs);
  TwipRect attribution = win32::WindowRectTwips(Control(kAttributionLabel));
  win32::MoveTwips(vs, {vsRect.left, attribution.top, vsRect.width, attribution.height});
  ReadHostSettings();
  currentPage_ = 0;
  SetMyState();
}

void VelmoraMain::ReadHostSettings() {
  if (FileExists(hostSettingsPath_)) {
    std::string bytes;
    FileResult read = ReadWholeFile(hostSettingsPath_, bytes);
    if (!read.ok) {
      win32::MsgBox(hwnd(),
                    "The host settings file\r\n" + hostSettingsPath_ +
                        "\r\ncould not be read: " + read.reason +
                        ".\r\nVelmora starts with its default settings; the file is left as it is.",
                    win32::kAppTitle, MB_OK | MB_ICONEXCLAMATION);
    } else {
      mode_.Load(ParseHostSettings(bytes, mode_.VoraRedraw));
    }
  } else {
    mode_.Load(HostSettings{});
  }
  ShowMode();
}

void VelmoraMain::ShowMode() {
  const ModeView& v = mode_.view;
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

void VelmoraMain::SetCurrentOGLPixelFormat(int index) {
  mode_.SetCurrentOGLPixelFormat(index);
  ShowMode();
}

bool VelmoraMain::Ask(const char* question) {
  return win32::MsgBox(hwnd(), question, "Just Checking!", MB_YESNO) == IDYES;
}

void VelmoraMain::ShowPanel(int page) {
  HWND panel = panels_[page];
  win32::MoveTwips(panel, kPageRect);
  SetWindowPos(panel, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_SHOWWINDOW);
}

void VelmoraMain::PaintTab(int page) {
  yellowTab_ = page;
  for (HWND tab : tabs_) InvalidateRect(tab, nullptr, TRUE);
}

// NOTE: the panel shown behind a question stays visible beside the new
// page after the first two questions and is hidden after the third; the
// next page switch hides all panels again.
void VelmoraMain::SetMyState() {
  if (currentPage_ != 0) CompleteLoad();
  for (HWND panel : panels_)
    if (panel) ShowWindow(panel, SW_HIDE);
  PaintTab(-1);
  EnableWindow(Control(kNext), TRUE);
  EnableWindow(Control(kBack), TRUE);
  switch (currentPage_) {
    case 0:
      ShowPanel(0);
      PaintTab(0);
      break;
    case 1:
      if (!specsAsked_) {
        ShowPanel(0);
        if (Ask("Do you want to 'Check Specifications' before going on?")) {
          Specs_Cbt_Click();
          ShowWindow(panels_[0], SW_HIDE);
        } else {
          specsAsked_ = true;
        }
        ShowWindow(panels_[0], SW_SHOW);
      }
      ShowPanel(1);
      PaintTab(1);
      break;
    case 2:
      if (!testsAsked_) {
        ShowPanel(1);
        if (Ask("Do you want to Run all the tests before going on?")) {
          GLTestRunAll_Cbt_Click();
          ShowWindow(panels_[1], SW_HIDE);
        } else {
          testsAsked_ = true;
        }
        ShowWindow(panels_[1], SW_SHOW);
      }
      ShowPanel(2);
      PaintTab(2);
      RefreshLogFiles();
      break;
    case 3:
      if (!logAsked_) {
        ShowPanel(1);
        if (Ask("Do you want to Save the Log File before going on?"))
          SaveLog_Cbt_Click();
        else
          logAsked_ = true;
        ShowWindow(panels_[1], SW_HIDE);
      }
      ShowPanel(3);
      PaintTab(3);
      FocusControl(kDriversCbt);
      break;
  }
  if (currentPage_ == 0) EnableWindow(Control(kBack), FALSE);
  if (currentPage_ == 3) EnableWindow(Control(kNext), FALSE);
}

void VelmoraMain::Library_SetLbl_Click() {
  currentPage_ = 0;
  SetMyState();
}
void VelmoraMain::General_SetLbl_Click() {
  currentPage_ = 1;
  SetMyState();
}
void VelmoraMain::SaveLog_SetLbl_Click() {
  currentPage_ = 2;
  SetMyState();
}
void VelmoraMain::Drivers_SetLbl_Click() {
  currentPage_ = 3;
  SetMyState();
}

void VelmoraMain::Back_Cbt_Click() {
  if (currentPage_ > 0) {
    --currentPage_;
    SetMyState();
  }
}

// NOTE: the bound is 4, one past the last page; Next is disabled on the
// last page, so only a press from code could go beyond it.
void VelmoraMain::Next_Cbt_Click() {
  if (currentPage_ < 4) {
    ++currentPage_;
    SetMyState();
  }
}

void VelmoraMain::Quit_Cbt_Click() { DestroyWindow(hwnd()); }

void VelmoraMain::SWPixelFormat_Opt_Click() {
  mode_.SWPixelFormat_Opt_Click();
  ShowMode();
}
void VelmoraMain::HWPixelFormat_Opt_Click() {
  mode_.HWPixelFormat_Opt_Click();
  ShowMode();
}
void VelmoraMain::PixelFormat_Opt_Click() {
  mode_.PixelFormat_Opt_Click();
  ShowMode();
}
// A click into the box with "Pixel Format :" already selected changes
// nothing, so the text being typed stays as it is.
void VelmoraMain::PixelFormat_Tbx_Click() {
  if (mode_.view.option == ModeOption::Explicit) return;
  mode_.PixelFormat_Tbx_Click();
  ShowMode();
}

void VelmoraMain::PixelFormat_Tbx_LostFocus() {
  // Leaving the box counts even when its text did not change: the index
  // it shows is the one taken.
  std::string text = win32::GetText(Control(kPixelFormatTbx));
  if (!mode_.PixelFormat_Tbx_LostFocus(text)) {
    win32::SetText(Control(kPixelFormatTbx), shownIndexText_);
    win32::MsgBox(hwnd(),
                  "\"" + text + "\" is not a pixel-format number.\r\n"
                  "Type a whole number such as 3. The settings were left as they were.",
                  win32::kAppTitle, MB_OK | MB_ICONEXCLAMATION);
    return;
  }
  ShowMode();
}

void VelmoraMain::PrevPF_Cbt_Click() {
  mode_.PrevPF_Cbt_Click();
  ShowMode();
  Specs_Cbt_Click();
}

void VelmoraMain::NextPF_Cbt_Click() {
  mode_.NextPF_Cbt_Click(mOpenGL::GetPixelFormatCount());
  ShowMode();
  Specs_Cbt_Click();
}

void VelmoraMain::ForceRedraw_Chk_Click() {
  mode_.ForceRedraw_Chk_Click(SendMessageA(Control(kForceRedrawChk), BM_GETCHECK, 0, 0) ==
                              BST_CHECKED);
  ShowMode();
}

void VelmoraMain::SetHWSW_Chk_Click() {
  mode_.SetHWSW_Chk_Click(SendMessageA(Control(kSetHWSWChk), BM_GETCHECK, 0, 0) == BST_CHECKED);
  ShowMode();
}

void VelmoraMain::SetVORAHWSW_Cbt_Click() {
  std::string current;
  FileResult result;
  if (FileExists(hostSettingsPath_)) result = ReadWholeFile(hostSettingsPath_, current);
  if (result.ok) {
    result = ReplaceFileContents(
        hostSettingsPath_,
        ComposeHostSettings(current, HostBool(mode_.CurrentSH), mode_.CurrentOGLPixelFormat(),
                            HostBool(mode_.CurrentOGLRedraw), mode_.VoraSettingsTail));
  }
  if (!result.ok) {
    win32::MsgBox(hwnd(),
                  "The settings could not be written to\r\n" + hostSettingsPath_ + "\r\n" +
                      result.reason +
                      ".\r\nThe file was left unchanged and the settings shown stay as they were.",
                  win32::kAppTitle, MB_OK | MB_ICONEXCLAMATION);
    return;
  }
  mode_.SettingsWritten();
  ShowMode();
}

void VelmoraMain::FocusControl(int id) {
  focus_ = Control(id);
  SetFocus(focus_);
}

HBRUSH VelmoraMain::TabBrush(HWND tab) {
  for (int i = 0; i < 4; ++i)
    if (tabs_[i] == tab) return i == yellowTab_ ? yellowBrush_.get() : GetSysColorBrush(COLOR_BTNFACE);
  return nullptr;
}

LRESULT VelmoraMain::HandleMessage(UINT msg, WPARAM wp, LPARAM lp) {
  switch (msg) {
    case WM_COMMAND:
      OnCommand(LOWORD(wp), HIWORD(wp), reinterpret_cast<HWND>(lp));
      return 0;
    case WM_CTLCOLORSTATIC: {
      HWND ctl = reinterpret_cast<HWND>(lp);
      HDC dc = reinterpret_cast<HDC>(wp);
      if (HBRUSH brush = TabBrush(ctl)) {
        SetBkColor(dc, brush == yellowBrush_.get() ? kLightYellow : GetSysColor(COLOR_BTNFACE));
        return reinterpret_cast<LRESULT>(brush);
      }
      if (ctl == Control(kSpecsTbx)) {
        SetBkColor(dc, RGB(255, 255, 255));
        return reinterpret_cast<LRESULT>(whiteBrush_.get());
      }
      break;
    }
    case WM_ACTIVATE:
      if (LOWORD(wp) == WA_INACTIVE) {
        HWND focus = GetFocus();
        if (focus && IsChild(hwnd(), focus)) focus_ = focus;
      }
      break;
    case WM_SETFOCUS:
      if (focus_ && IsWindow(focus_) && IsWindowVisible(focus_) && IsWindowEnabled(focus_)) {
        SetFocus(focus_);
        return 0;
      }
      break;
    case WM_TIMER:
      if (wp == kLoadTimer) {
        KillTimer(hwnd(), kLoadTimer);
        CompleteLoad();
      }
      return 0;
    case WM_CLOSE:
      Quit_Cbt_Click();
      return 0;
    case WM_DESTROY:
      mOpenGL::SetModeSource(nullptr);
      PostQuitMessage(0);
      return 0;
  }
  return Default(msg, wp, lp);
}

void VelmoraMain::OnCommand(int id, int code, HWND from) {
  // A disabled control cannot be clicked, whatever a message may claim.
  if (from && !IsWindowEnabled(from)) return;
  if (drivers_.OnCommand(id, code)) return;
  if (id >= kGLTestCbt0 && id < kGLTestCbt0 + kTestCount) {
    if (code == BN_CLICKED) GLTest_Cbt_Click(id - kGLTestCbt0);
    return;
  }
  switch (id) {
    case kLibraryTab: if (code == STN_CLICKED) Library_SetLbl_Click(); break;
    case kGeneralTab: if (code == STN_CLICKED) General_SetLbl_Click(); break;
    case kSaveLogTab: if (code == STN_CLICKED) SaveLog_SetLbl_Click(); break;
    case kDriversTab: if (code == STN_CLICKED) Drivers_SetLbl_Click(); break;
    case kPixelFormatsTab: if (code == STN_CLICKED) CheckPixelFormats_SetLbl_Click(); break;
    case kBack: Back_Cbt_Click(); break;
    case kNext: Next_Cbt_Click(); break;
    case kQuit: Quit_Cbt_Click(); break;
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
    case kRunAll: GLTestRunAll_Cbt_Click(); break;
    case kQuadViewCbt: QuadView_Cbt_Click(); break;
    case kSaveLogCbt: SaveLog_Cbt_Click(); break;
    case kLogDrv: if (code == CBN_SELCHANGE) Log_Drv_Change(); break;
    case kLogDir: if (code == LBN_DBLCLK) Log_Dir_Change(); break;
    case kLogFile: if (code == LBN_SELCHANGE) Log_File_Click(); break;
  }
}

}  // namespace shell

namespace shell {

void VelmoraMain::GLTestRunAll_Cbt_Click() {
  if (!OpenGLOrTell(hwnd(), "Run All")) return;  // one box, not fourteen
  for (int i = 0; i < kTestCount; ++i) GLTest_Cbt_Click(i);
  QuadView_Cbt_Click();
  FocusControl(kNext);
  testsAsked_ = true;
}

}  // namespace shell
