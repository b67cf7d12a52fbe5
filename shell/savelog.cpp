// The Save Log page: drive, folder and "*.txt" file lists kept by the
// system's own list functions, and the file name box.
#include <cctype>
#include <vector>

#include "report/log.h"
#include "shell/host_settings.h"
#include "shell/log_gather.h"
#include "shell/main_window.h"
#include "win32/ui.h"

namespace shell {
namespace {

std::string FullPath(const std::string& path) {
  char buf[MAX_PATH * 4];
  DWORD n = GetFullPathNameA(path.c_str(), sizeof buf, buf, nullptr);
  return n > 0 && n < sizeof buf ? std::string(buf, n) : path;
}

// DlgDirList writes into the path it is given, so it gets a copy.
void ListInto(HWND panel, const std::string& pattern, int id, int pathId, UINT types) {
  std::vector<char> buf(pattern.begin(), pattern.end());
  buf.resize(pattern.size() + MAX_PATH, '\0');
  DlgDirListA(panel, buf.data(), id, pathId, types);
}

std::string ListLine(HWND list, int index) {
  LRESULT len = SendMessageA(list, LB_GETTEXTLEN, index, 0);
  if (len == LB_ERR) return {};
  std::string line(static_cast<size_t>(len) + 1, '\0');
  len = SendMessageA(list, LB_GETTEXT, index, reinterpret_cast<LPARAM>(line.data()));
  line.resize(len > 0 ? static_cast<size_t>(len) : 0);
  return line;
}

}  // namespace

// Writes the log beside the chosen file and then replaces it, so that a
// failure leaves an existing file as it was.
void VelmoraMain::SaveLog_Cbt_Click() {
  std::string directory = logDirectory_.back() == '\\' ? logDirectory_ : logDirectory_ + "\\";
  std::string file = directory + win32::GetText(Control(kFileTbx));

  bool showProgress = false;
  drivers_.ReadOpenGLKey(showProgress);
  HWND drivers = Control(kDriversLbx);
  std::vector<std::string> driverLines;
  int count = static_cast<int>(SendMessageA(drivers, LB_GETCOUNT, 0, 0));
  for (int i = 0; i < count; ++i) {
    SendMessageA(drivers, LB_SETCURSEL, i, 0);
    driverLines.push_back(ListLine(drivers, i));
  }
  report::LogInputs log = GatherLog(win32::GetText(Control(kVersionLabel)), driverLines,
                                    driverDllPaths_, win32::GetText(Control(kSpecsTbx)));

  FileResult written = ReplaceFileContents(file, report::ComposeLog(log));
  if (!written.ok) {
    win32::MsgBox(hwnd(),
                  "The log file could not be saved:\r\n" + file + "\r\n" + written.reason +
                      ".\r\nAn existing file of that name was left as it was.",
                  win32::kAppTitle, MB_OK | MB_ICONEXCLAMATION);
    return;
  }
  RefreshLogFiles();
  logAsked_ = true;
}

void VelmoraMain::SetLogDirectory(const std::string& directory) {
  std::string dir = FullPath(directory);
  // A root keeps its separator ("C:\"); other folders have none at the end.
  if (dir.size() > 3 && (dir.back() == '\\' || dir.back() == '/')) dir.pop_back();
  logDirectory_ = dir;
  HWND panel = Panel(2);
  std::string withSep = dir.back() == '\\' ? dir : dir + "\\";
  std::vector<char> drive(withSep.begin(), withSep.end());
  drive.resize(withSep.size() + MAX_PATH, '\0');
  DlgDirListComboBoxA(panel, drive.data(), kLogDrv, 0, DDL_DRIVES | DDL_EXCLUSIVE);
  if (dir.size() > 1 && dir[1] == ':') {
    std::string entry = std::string("[-") + static_cast<char>(tolower(dir[0])) + "-]";
    SendMessageA(Control(kLogDrv), CB_SELECTSTRING, static_cast<WPARAM>(-1),
                 reinterpret_cast<LPARAM>(entry.c_str()));
  }
  ListInto(panel, withSep + "*.*", kLogDir, kLogPath, DDL_DIRECTORY | DDL_EXCLUSIVE);
  RefreshLogFiles();
}

void VelmoraMain::RefreshLogFiles() {
  std::string withSep = logDirectory_.back() == '\\' ? logDirectory_ : logDirectory_ + "\\";
  ListInto(Panel(2), withSep + "*.txt", kLogFile, 0, DDL_READWRITE);
}

// The drive list gives the chosen drive as "x:" (its result says that the
// entry is a drive, not a file); the lists then show that drive's current
// folder.
void VelmoraMain::Log_Drv_Change() {
  char drive[MAX_PATH] = {};
  DlgDirSelectComboBoxExA(Panel(2), drive, MAX_PATH, kLogDrv);
  if (drive[0]) SetLogDirectory(drive);
}

void VelmoraMain::Log_Dir_Change() {
  char sub[MAX_PATH] = {};
  DlgDirSelectExA(Panel(2), sub, MAX_PATH, kLogDir);
  if (!sub[0]) return;
  std::string base = logDirectory_.back() == '\\' ? logDirectory_ : logDirectory_ + "\\";
  SetLogDirectory(base + sub);
}

void VelmoraMain::Log_File_Click() {
  HWND list = Control(kLogFile);
  LRESULT sel = SendMessageA(list, LB_GETCURSEL, 0, 0);
  if (sel == LB_ERR) return;
  LRESULT len = SendMessageA(list, LB_GETTEXTLEN, sel, 0);
  if (len == LB_ERR) return;
  std::string name(static_cast<size_t>(len) + 1, '\0');
  len = SendMessageA(list, LB_GETTEXT, sel, reinterpret_cast<LPARAM>(name.data()));
  name.resize(len > 0 ? static_cast<size_t>(len) : 0);
  win32::SetText(Control(kFileTbx), name);
}

}  // namespace shell
