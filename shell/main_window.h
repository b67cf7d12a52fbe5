#pragma once
// Velmora_Main: the wizard window. It keeps the navigation between its four
// pages (Library, General, Save Log, Drivers), the state they share and the
// host settings file, and hands each page the commands of its controls.
#include <windows.h>

#include <array>
#include <memory>
#include <string>

#include "gl/mopengl.h"
#include "report/driver_scan.h"
#include "shell/adapter_gather.h"
#include "shell/drivers_page.h"
#include "shell/general_page.h"
#include "shell/glpicture.h"
#include "shell/library_page.h"
#include "shell/mode.h"
#include "shell/save_log_page.h"
#include "sysinfo/registry.h"
#include "tests/catalogue.h"
#include "win32/handle.h"
#include "win32/window.h"

namespace shell {

// Control ids of the main window; each page keeps its own (200 on the
// Library page, 300 General, 400 Save Log, 500 Drivers).
enum ControlId : int {
  kLibraryPanel = 100, kGeneralPanel, kSaveLogPanel, kDriversPanel,
  kLibraryTab = 110, kGeneralTab, kSaveLogTab, kDriversTab, kPixelFormatsTab,
  kBack = 120, kNext, kQuit, kVersionLabel, kAttributionLabel, kOpenGLPicture,
};

using tests::kTestCount;

// "Vs." major "." minor ".0." revision and two blanks.
std::string VersionLabelText(int major, int minor, int revision);

// What the pages share: the rendering choice, the three questions the
// navigation asks once, and what one page's work leaves for another.
struct WizardState {
  ModeSettings mode;
  bool specsAsked = false;
  bool testsAsked = false;
  bool logAsked = false;
  std::string quadViewText;           // the quad view's last result, for the report
  ReportContextSeen reportContext;    // what the last report's context showed
  sysinfo::cRegistry registry;
  report::DriverPathList driverDllPaths;  // of the last driver scan, for the log
};

class VelmoraMain : public win32::Window, public mOpenGL::ModeSource {
 public:
  // `hostSettingsPath` empty: the Windows directory's VORAhogl.ini.
  explicit VelmoraMain(std::string hostSettingsPath = {});
  ~VelmoraMain() override;

  // Creates the window and loads what the first page shows; the caller
  // shows it. The other pages are made by CompleteLoad, on a timer that
  // fires once the first page is painted (timer messages come after paint
  // messages), or as soon as anything asks for one of their controls.
  bool Create();
  void CompleteLoad();

  // The rendering choice, read by the device layer and the test windows.
  bool CurrentSH() const override { return state_.mode.CurrentSH; }
  int CurrentOGLPixelFormat() const override { return state_.mode.CurrentOGLPixelFormat(); }
  void SetCurrentOGLPixelFormat(int index) override;
  bool CurrentOGLRedraw() const { return state_.mode.CurrentOGLRedraw; }
  const ModeSettings& Mode() const { return state_.mode; }

  int CurrentPage() const { return currentPage_; }
  bool SpecsAsked() const { return state_.specsAsked; }
  bool TestsAsked() const { return state_.testsAsked; }
  bool LogAsked() const { return state_.logAsked; }
  const std::string& QuadViewText() const { return state_.quadViewText; }
  const std::string& HostSettingsFile() const { return hostSettingsPath_; }
  WizardState& State() { return state_; }

  // Any control of the window or its pages, by id.
  HWND Control(int id);
  // Loads OpenGL_Pbx(1), a fresh picture beside OpenGL_Pbx(0) for one
  // use of the device layer; unloaded when the result goes.
  std::unique_ptr<GLPicture> LoadOpenGLPicture();
  HWND Panel(int page) {
    CompleteLoad();
    return panels_[static_cast<size_t>(page)];
  }
  // Gives a control the focus and remembers it, so that the window hands
  // the focus back to it whenever the window itself gets it.
  void FocusControl(int id);

  // The pages; asking for one makes them all.
  LibraryPage& Library() { return library_; }
  GeneralPage& General() { CompleteLoad(); return general_; }
  SaveLogPage& SaveLog() { CompleteLoad(); return saveLog_; }
  DriversPage& Drivers() { CompleteLoad(); return drivers_; }

  // Handlers of the window's own controls.
  void Form_Load();
  void SetMyState();
  void Library_SetLbl_Click();
  void General_SetLbl_Click();
  void SaveLog_SetLbl_Click();
  void Drivers_SetLbl_Click();
  void Back_Cbt_Click();
  void Next_Cbt_Click();
  void Quit_Cbt_Click();
  void CheckPixelFormats_SetLbl_Click();  // shell/pixelformats_tab.cpp

 protected:
  LRESULT HandleMessage(UINT msg, WPARAM wp, LPARAM lp) override;

 private:
  void CreateControls();
  void OnCommand(int id, int code, HWND from);
  void ShowPanel(int page);
  void PaintTab(int page);
  void ReadHostSettings();
  bool Ask(const char* question);
  HBRUSH TabBrush(HWND tab);

  std::string hostSettingsPath_;
  WizardState state_;
  int currentPage_ = 0;
  int yellowTab_ = -1;
  std::array<HWND, 4> panels_{};
  std::array<HWND, 4> tabs_{};
  win32::Gdi<HBRUSH> yellowBrush_;
  win32::Gdi<HBRUSH> whiteBrush_;
  bool loadComplete_ = false;
  HWND focus_ = nullptr;
  LibraryPage library_{*this};
  GeneralPage general_{*this};
  SaveLogPage saveLog_{*this};
  DriversPage drivers_;
};

}  // namespace shell
