// The Drivers page: the OpenGL drivers registered with Windows under the
// legacy keys, the display adapters with the drivers their own keys name,
// and notes on why OpenGL runs as it does.
#include "shell/drivers_page.h"

#include <algorithm>

#include "sysinfo/display_adapters.h"
#include "sysinfo/fileversioninfo.h"
#include "sysinfo/opsysinfo.h"
#include "win32/ui.h"

namespace shell {
namespace {

// Tab positions given in characters; a list box counts in dialog units,
// four to an average character.
void SetListTabStops(HWND list, const std::vector<int>& characters) {
  std::vector<int> units;
  for (int c : characters) units.push_back(c * 4);
  SendMessageA(list, LB_SETTABSTOPS, units.size(), reinterpret_cast<LPARAM>(units.data()));
}

// A horizontal scroll range wide enough for the longest line.
void FitHorizontalExtent(HWND list, const std::vector<int>& characters) {
  HDC dc = GetDC(list);
  HGDIOBJ old = SelectObject(dc, reinterpret_cast<HFONT>(SendMessageA(list, WM_GETFONT, 0, 0)));
  TEXTMETRICA tm{};
  GetTextMetricsA(dc, &tm);
  std::vector<int> stops;
  for (int c : characters) stops.push_back(c * tm.tmAveCharWidth);
  int widest = 0;
  int count = static_cast<int>(SendMessageA(list, LB_GETCOUNT, 0, 0));
  for (int i = 0; i < count; ++i) {
    LRESULT len = SendMessageA(list, LB_GETTEXTLEN, i, 0);
    if (len == LB_ERR) continue;
    std::string line(static_cast<size_t>(len) + 1, '\0');
    SendMessageA(list, LB_GETTEXT, i, reinterpret_cast<LPARAM>(line.data()));
    DWORD extent = GetTabbedTextExtentA(dc, line.c_str(), static_cast<int>(len),
                                        static_cast<int>(stops.size()), stops.data());
    widest = std::max(widest, static_cast<int>(LOWORD(extent)));
  }
  SelectObject(dc, old);
  ReleaseDC(list, dc);
  SendMessageA(list, LB_SETHORIZONTALEXTENT, widest + 8, 0);
}

}  // namespace

void DriversPage::Create(HWND p) {
  panel_ = p;
  using win32::CreateControl;
  CreateControl(p, "LISTBOX", "",
                WS_VISIBLE | WS_TABSTOP | WS_VSCROLL | WS_HSCROLL | LBS_NOTIFY | LBS_USETABSTOPS |
                    LBS_NOINTEGRALHEIGHT,
                {0, 0, 9360, 1860}, kDriversLbx, WS_EX_CLIENTEDGE);
  CreateControl(p, "BUTTON", "Hardware Acceleration Drivers registered",
                win32::kPushButton, {0, 1950, 5400, 480}, kDriversCbt);
  CreateControl(p, "STATIC", "Display adapters", win32::kPlainLabel, {0, 2550, 4680, 255},
                kAdaptersLbl);
  CreateControl(p, "LISTBOX", "",
                WS_VISIBLE | WS_TABSTOP | WS_VSCROLL | WS_HSCROLL | LBS_NOINTEGRALHEIGHT,
                {0, 2805, 9360, 1515}, kAdaptersLbx, WS_EX_CLIENTEDGE);
  CreateControl(p, "STATIC", "Notes", win32::kPlainLabel, {0, 4410, 4680, 255}, kNotesLbl);
  CreateControl(p, "EDIT", "",
                WS_VISIBLE | WS_TABSTOP | WS_VSCROLL | ES_MULTILINE | ES_READONLY | ES_AUTOVSCROLL,
                {0, 4665, 9360, 960}, kNotesTbx, WS_EX_CLIENTEDGE);
}

bool DriversPage::OnCommand(int id, int) {
  if (id < kDriversLbx || id > kNotesTbx) return false;
  if (id == kDriversCbt) Drivers_Cbt_Click();
  return true;
}

void DriversPage::Drivers_Cbt_Click() {
  bool showProgress = false;
  ReadOpenGLKey(showProgress);
  ShowDisplayAdapters();
}

void DriversPage::ShowDisplayAdapters() {
  // The driver's profiles do not change while the program runs: it is
  // asked once, on its own window, and only when OpenGL is there at all.
  if (!profiles_ && mOpenGL::OpenGLAvailable()) profiles_ = mOpenGL::ProbeProfiles();
  std::optional<bool> modern;
  if (profiles_) modern = profiles_->Core.has_value();
  report::AdapterFacts facts =
      GatherAdapterFacts(legacyRegistrations_, host_.reportContext, modern, &moduleVersions_);

  // Setting a box's text costs more than composing it: a press that finds
  // what the page already shows leaves the boxes alone.
  HWND list = Control(kAdaptersLbx);
  std::vector<std::string> lines = report::AdapterLines(facts);
  if (lines != shownAdapterLines_) {
    SendMessageA(list, WM_SETREDRAW, FALSE, 0);
    SendMessageA(list, LB_RESETCONTENT, 0, 0);
    for (const std::string& line : lines)
      SendMessageA(list, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(line.c_str()));
    FitHorizontalExtent(list, {});
    SendMessageA(list, WM_SETREDRAW, TRUE, 0);
    InvalidateRect(list, nullptr, TRUE);
    shownAdapterLines_ = std::move(lines);
  }
  HWND notes = Control(kNotesTbx);
  std::string text = report::NotesText(report::AdapterNotes(facts));
  if (win32::GetText(notes) != text) win32::SetText(notes, text);
}

void DriversPage::ReadOpenGLKey(bool& showProgress) {
  HWND list = Control(kDriversLbx);
  auto add = [&](const std::string& line) {
    SendMessageA(list, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(line.c_str()));
  };
  if (!win32::Module(LoadLibraryA("advapi32.dll"))) {
    add("DLL missing");
    return;
  }
  SendMessageA(list, LB_RESETCONTENT, 0, 0);
  host_.driverDllPaths.CutBack();
  sysinfo::cFileVersionInfo versions;
  report::DriverScanContext context{
      host_.registry, versions.SystemDirectory(), host_.driverDllPaths,
      [](const std::string& path) {
        sysinfo::cFileVersionInfo file;
        file.FullPathName(path);
        return file.Available() ? file.FileVersion() : std::string();
      },
      [&](HKEY handle, const std::string& key) {
        if (showProgress)
          win32::MsgBox(GetAncestor(panel_, GA_ROOT),
                        "Searching for entries in key #" +
                            std::to_string(reinterpret_cast<UINT_PTR>(handle)) + "\n\n" + key,
                        win32::kAppTitle, MB_OK);
      }};
  report::DriverScan scan = report::ScanOpenGLDrivers(context, sysinfo::COpSysInfo().IsWinNT());
  legacyRegistrations_ = static_cast<int>(scan.Lines.size());
  host_.registry.Close();
  if (!scan.TabStops.empty()) SetListTabStops(list, scan.TabStops);
  for (const std::string& line : scan.Lines) add(line);
  if (SendMessageA(list, LB_GETCOUNT, 0, 0) == 0) add("No drivers registered");
  FitHorizontalExtent(list, scan.TabStops);
  if (host_.focusQuit) host_.focusQuit();
}

}  // namespace shell
