#pragma once
// The Save Log page: drive, folder and "*.txt" file lists kept by the
// system's own list functions, the file name box and "Save Log".
#include <windows.h>

#include <string>

namespace shell {

class VelmoraMain;

enum SaveLogPageId : int {
  kLogDrv = 400, kLogDir, kLogFile, kFileTbx, kSaveLogCbt, kLogPath,
};

class SaveLogPage {
 public:
  explicit SaveLogPage(VelmoraMain& main) : main_(main) {}

  void Create(HWND panel);
  // True when `id` is one of the page's controls (handled or not).
  bool OnCommand(int id, int code);

  void SaveLog_Cbt_Click();
  void Log_Drv_Change();
  void Log_Dir_Change();
  void Log_File_Click();

  // The folder the lists show (a drive root keeps its "\").
  const std::string& LogDirectory() const { return logDirectory_; }
  void SetLogDirectory(const std::string& directory);
  void RefreshLogFiles();

 private:
  HWND Control(int id) const { return GetDlgItem(panel_, id); }
  std::string DirectoryWithSeparator() const;

  VelmoraMain& main_;
  HWND panel_ = nullptr;
  std::string logDirectory_;
};

}  // namespace shell
