#pragma once
// Velmora_Main: the wizard window with its four pages (Library, General,
// Save Log, Drivers), the rendering choice and the host settings file.
#include <windows.h>

#include <array>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "gl/mopengl.h"
#include "gl/profiles.h"
#include "shell/adapter_gather.h"
#include "shell/drivers_page.h"
#include "report/adapter_notes.h"
#include "report/driver_scan.h"
#include "shell/glpicture.h"
#include "shell/mode.h"
#include "sysinfo/registry.h"
#include "tests/catalogue.h"
#include "tests/gltest_frm.h"
#include "win32/handle.h"
#include "win32/ui.h"
#include "win32/window.h"

namespace shell {

// Control ids of the main window and its pages.
enum ControlId : int {
  kLibraryPanel = 100, kGeneralPanel, kSaveLogPanel, kDriversPanel,
  kLibraryTab = 110, kGeneralTab, kSaveLogTab, kDriversTab, kPixelFormatsTab,
  kBack = 120, kNext, kQuit, kVersionLabel, kAttributionLabel, kOpenGLPicture,
  kSettingsFrame = 200, kSWPixelFormatOpt, kHWPixelFormatOpt, kPixelFormatOpt,
  kPixelFormatTbx, kPrevPF, kNextPF, kForceRedrawChk, kSetHWSWChk, kSetVORAHWSW,
  kSpecsCbt, kSpecsTbx,
  kGLHintLbl = 300, kRunAll, kQuadViewCbt, kQuadViewLbl,
  kGLTestCbt0 = 320,  // 13 buttons
  kGLTestLbl0 = 340,  // 13 labels
  kLogDrv = 400, kLogDir, kLogFile, kFileTbx, kSaveLogCbt, kLogPath,
  // 500 on: the Drivers page's own (shell/drivers_page.h).
};

using tests::kTestCount;

// The caution and hint text of the General page.
std::string GLHintText();
// "Vs." major "." minor ".0." revision and two blanks.
std::string VersionLabelText(int major, int minor, int revision);

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
  bool CurrentSH() const override { return mode_.CurrentSH; }
  int CurrentOGLPixelFormat() const override { return mode_.CurrentOGLPixelFormat(); }
  void SetCurrentOGLPixelFormat(int index) override;
  bool CurrentOGLRedraw() const { return mode_.CurrentOGLRedraw; }
  const ModeSettings& Mode() const { return mode_; }

  int CurrentPage() const { return currentPage_; }
  bool SpecsAsked() const { return specsAsked_; }
  bool TestsAsked() const { return testsAsked_; }
  bool LogAsked() const { return logAsked_; }
  const std::string& QuadViewText() const { return quadViewText_; }
  const std::string& HostSettingsFile() const { return hostSettingsPath_; }
  std::string LabelTip(int labelId) { return labelTips_.Get(Control(labelId)); }

  HWND Control(int id);
  // Loads OpenGL_Pbx(1), a fresh picture beside OpenGL_Pbx(0) for one
  // use of the device layer; unloaded when the result goes.
  std::unique_ptr<GLPicture> LoadOpenGLPicture();
  HWND Panel(int page) {
    CompleteLoad();
    return panels_[static_cast<size_t>(page)];
  }

  // Handlers, named as the controls and events they serve.
  void Form_Load();
  void SetMyState();
  void Library_SetLbl_Click();
  void General_SetLbl_Click();
  void SaveLog_SetLbl_Click();
  void Drivers_SetLbl_Click();
  void Back_Cbt_Click();
  void Next_Cbt_Click();
  void Quit_Cbt_Click();
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
  void GLTestRunAll_Cbt_Click();
  void SaveLog_Cbt_Click();
  const report::DriverPathList& DriverDllPaths() const { return driverDllPaths_; }
  DriversPage& Drivers() { return drivers_; }
  void Log_Drv_Change();
  void Log_Dir_Change();
  void Log_File_Click();

  // The folder the Save Log page's lists show (a drive root keeps its "\").
  const std::string& LogDirectory() const { return logDirectory_; }
  void SetLogDirectory(const std::string& directory);
  void RefreshLogFiles();

  // --- visual tests (shell/tests_page.cpp) ---
  void GLTest_Cbt_Click(int index);
  // --- end of visual tests ---

  // --- quad view (shell/quadview_page.cpp) ---
  void QuadView_Cbt_Click();
  // --- end of quad view ---

  // --- pixel-format browser (shell/pixelformats_tab.cpp) ---
  void CheckPixelFormats_SetLbl_Click();
  // --- end of pixel-format browser ---

 protected:
  LRESULT HandleMessage(UINT msg, WPARAM wp, LPARAM lp) override;

 private:
  static LRESULT CALLBACK IndexBoxProc(HWND box, UINT msg, WPARAM wp, LPARAM lp, UINT_PTR id,
                                       DWORD_PTR self);
  void CreateControls();
  void CreateLibraryPage(HWND page);
  void CreateGeneralPage(HWND page);
  void CreateSaveLogPage(HWND page);
  void OnCommand(int id, int code, HWND from);
  void ShowPanel(int page);
  void PaintTab(int page);
  void ShowMode();           // mirrors the rendering choice into the controls
  void ReadHostSettings();
  bool Ask(const char* question);
  // Gives a control the focus and remembers it, so that the window hands
  // the focus back to it whenever the window itself gets it.
  void FocusControl(int id);
  HBRUSH TabBrush(HWND tab);

  std::string hostSettingsPath_;
  ModeSettings mode_;
  int currentPage_ = 0;
  bool specsAsked_ = false;
  bool testsAsked_ = false;
  bool logAsked_ = false;
  std::string quadViewText_;
  int yellowTab_ = -1;
  std::array<HWND, 4> panels_{};
  std::array<HWND, 4> tabs_{};
  win32::Gdi<HBRUSH> yellowBrush_;
  win32::Gdi<HBRUSH> whiteBrush_;
  bool loadComplete_ = false;
  HWND focus_ = nullptr;
  // The window of the test in progress; made for each test, dropped after.
  std::unique_ptr<tests::GLTest_frm> GLTest_frm_;
  sysinfo::cRegistry registry_;
  report::DriverPathList driverDllPaths_;
  // What the last report's context showed, read by the Drivers page.
  ReportContextSeen reportContext_;
  DriversPage drivers_;
  std::string shownIndexText_;  // index text as last shown, restored on bad input
  std::string logDirectory_;
  win32::LabelTips labelTips_;  // the automatic check's verdict on each test label
};

}  // namespace shell
