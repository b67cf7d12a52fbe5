#include "shell/main_window.h"

#include <vector>

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

constexpr DWORD kButton = win32::kPushButton;
constexpr DWORD kLabel = win32::kPlainLabel;

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

std::string VersionLabelText(int major, int minor, int revision) {
  return "Vs." + std::to_string(major) + "." + std::to_string(minor) + "." + "0" + "." +
         std::to_string(revision) + "  ";
}

VelmoraMain::VelmoraMain(std::string hostSettingsPath)
    : hostSettingsPath_(hostSettingsPath.empty() ? HostSettingsPath() : std::move(hostSettingsPath)),
      yellowBrush_(CreateSolidBrush(kLightYellow)),
      whiteBrush_(CreateSolidBrush(RGB(255, 255, 255))),
      drivers_({state_.registry, state_.driverDllPaths, state_.reportContext,
                [this] { FocusControl(kQuit); }}) {}

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
  library_.Create(panels_[0]);
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
  general_.Create(panels_[1]);
  saveLog_.Create(panels_[2]);
  drivers_.Create(panels_[3]);
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
      state_.mode.Load(ParseHostSettings(bytes, state_.mode.VoraRedraw));
    }
  } else {
    state_.mode.Load(HostSettings{});
  }
  library_.ShowMode();
}

void VelmoraMain::SetCurrentOGLPixelFormat(int index) {
  state_.mode.SetCurrentOGLPixelFormat(index);
  library_.ShowMode();
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
      if (!state_.specsAsked) {
        ShowPanel(0);
        if (Ask("Do you want to 'Check Specifications' before going on?")) {
          library_.Specs_Cbt_Click();
          ShowWindow(panels_[0], SW_HIDE);
        } else {
          state_.specsAsked = true;
        }
        ShowWindow(panels_[0], SW_SHOW);
      }
      ShowPanel(1);
      PaintTab(1);
      break;
    case 2:
      if (!state_.testsAsked) {
        ShowPanel(1);
        if (Ask("Do you want to Run all the tests before going on?")) {
          general_.GLTestRunAll_Cbt_Click();
          ShowWindow(panels_[1], SW_HIDE);
        } else {
          state_.testsAsked = true;
        }
        ShowWindow(panels_[1], SW_SHOW);
      }
      ShowPanel(2);
      PaintTab(2);
      saveLog_.RefreshLogFiles();
      break;
    case 3:
      if (!state_.logAsked) {
        ShowPanel(1);
        if (Ask("Do you want to Save the Log File before going on?"))
          saveLog_.SaveLog_Cbt_Click();
        else
          state_.logAsked = true;
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
  if (library_.OnCommand(id, code) || general_.OnCommand(id, code) ||
      saveLog_.OnCommand(id, code) || drivers_.OnCommand(id, code))
    return;
  switch (id) {
    case kLibraryTab: if (code == STN_CLICKED) Library_SetLbl_Click(); break;
    case kGeneralTab: if (code == STN_CLICKED) General_SetLbl_Click(); break;
    case kSaveLogTab: if (code == STN_CLICKED) SaveLog_SetLbl_Click(); break;
    case kDriversTab: if (code == STN_CLICKED) Drivers_SetLbl_Click(); break;
    case kPixelFormatsTab: if (code == STN_CLICKED) CheckPixelFormats_SetLbl_Click(); break;
    case kBack: Back_Cbt_Click(); break;
    case kNext: Next_Cbt_Click(); break;
    case kQuit: Quit_Cbt_Click(); break;
  }
}

}  // namespace shell

