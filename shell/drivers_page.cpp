// The Drivers page: the OpenGL drivers registered with Windows under the
// legacy keys, the display adapters with the drivers their own keys name,
// and notes on why OpenGL runs as it does.
#include <algorithm>

#include "gl/profiles.h"
#include "shell/adapter_gather.h"
#include "shell/main_window.h"
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

void VelmoraMain::Drivers_Cbt_Click() {
  bool showProgress = false;
  ReadOpenGLKey(showProgress);
  ShowDisplayAdapters();
}

void VelmoraMain::ShowDisplayAdapters() {
  // The driver's profiles do not change while the program runs: it is
  // asked once, on its own window, and only when OpenGL is there at all.
  if (!profiles_ && mOpenGL::OpenGLAvailable()) profiles_ = mOpenGL::ProbeProfiles();
  std::optional<bool> modern;
  if (profiles_) modern = profiles_->Core.has_value();
  report::AdapterFacts facts =
      GatherAdapterFacts(legacyRegistrations_, reportContext_, modern, &moduleVersions_);

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

void VelmoraMain::ReadOpenGLKey(bool& showProgress) {
  HWND list = Control(kDriversLbx);
  auto add = [&](const std::string& line) {
    SendMessageA(list, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(line.c_str()));
  };
  if (!win32::Module(LoadLibraryA("advapi32.dll"))) {
    add("DLL missing");
    return;
  }
  SendMessageA(list, LB_RESETCONTENT, 0, 0);
  driverDllPaths_.CutBack();
  sysinfo::cFileVersionInfo versions;
  report::DriverScanContext context{
      registry_, versions.SystemDirectory(), driverDllPaths_,
      [](const std::string& path) {
        sysinfo::cFileVersionInfo file;
        file.FullPathName(path);
        return file.Available() ? file.FileVersion() : std::string();
      },
      [&](HKEY handle, const std::string& key) {
        if (showProgress)
          win32::MsgBox(hwnd(),
                        "Searching for entries in key #" +
                            std::to_string(reinterpret_cast<UINT_PTR>(handle)) + "\n\n" + key,
                        win32::kAppTitle, MB_OK);
      }};
  report::DriverScan scan = report::ScanOpenGLDrivers(context, sysinfo::COpSysInfo().IsWinNT());
  legacyRegistrations_ = static_cast<int>(scan.Lines.size());
  registry_.Close();
  if (!scan.TabStops.empty()) SetListTabStops(list, scan.TabStops);
  for (const std::string& line : scan.Lines) add(line);
  if (SendMessageA(list, LB_GETCOUNT, 0, 0) == 0) add("No drivers registered");
  FitHorizontalExtent(list, scan.TabStops);
  FocusControl(kQuit);
}

}  // namespace shell
