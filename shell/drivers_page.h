#pragma once
// The Drivers page: the OpenGL drivers registered with Windows under the
// legacy keys, the display adapters with the drivers their own keys name,
// and notes on why OpenGL runs as it does. The page owns its controls and
// their handlers; the main window routes the page's commands here.
#include <windows.h>

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "gl/mopengl.h"
#include "gl/profiles.h"
#include "report/driver_scan.h"
#include "shell/adapter_gather.h"
#include "sysinfo/registry.h"

namespace shell {

enum DriversPageId : int {
  kDriversLbx = 500, kDriversCbt, kAdaptersLbl, kAdaptersLbx, kNotesLbl, kNotesTbx,
};

// What the page uses of the main window: its registry object and the
// driver-path list it keeps for the log, what the last report's context
// showed, and the move of the focus to Quit_Cbt that ends a scan.
struct DriversPageHost {
  sysinfo::cRegistry& registry;
  report::DriverPathList& driverDllPaths;
  const ReportContextSeen& reportContext;
  std::function<void()> focusQuit;
};

class DriversPage {
 public:
  explicit DriversPage(DriversPageHost host) : host_(std::move(host)) {}

  void Create(HWND panel);
  // True when `id` is one of the page's controls (handled or not).
  bool OnCommand(int id, int code);
  HWND Control(int id) const { return GetDlgItem(panel_, id); }

  void Drivers_Cbt_Click();
  // Lists the registered OpenGL drivers in Drivers_Lbx and keeps their
  // DLL paths; with showProgress each key is announced in a message box.
  void ReadOpenGLKey(bool& showProgress);
  // Fills the display adapter list and the notes box.
  void ShowDisplayAdapters();

 private:
  DriversPageHost host_;
  HWND panel_ = nullptr;
  std::optional<mOpenGL::Profiles> profiles_;  // asked at the first press
  int legacyRegistrations_ = 0;                // lines of the last legacy scan
  std::map<std::string, std::string> moduleVersions_;  // loaded module path -> file version
  std::vector<std::string> shownAdapterLines_;
};

}  // namespace shell
