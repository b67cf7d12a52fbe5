// The Save Log page: drive, folder and "*.txt" file lists kept by the
// system's own list functions, and the file name box.
#include "shell/save_log_page.h"

#include <cctype>
#include <vector>

#include "report/log.h"
#include "shell/host_settings.h"
#include "shell/log_gather.h"
#include "shell/main_window.h"
#include "win32/ui.h"

namespace shell {
namespace {

using win32::CreateControl;
constexpr DWORD kButton = win32::kPushButton;
constexpr DWORD kLabel = win32::kPlainLabel;

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

void SaveLogPage::Create(HWND p) {
  panel_ = p;
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
  SetLogDirectory(win32::ModuleDirectory());
}

bool SaveLogPage::OnCommand(int id, int code) {
  switch (id) {
    case kSaveLogCbt: SaveLog_Cbt_Click(); break;
    case kLogDrv: if (code == CBN_SELCHANGE) Log_Drv_Change(); break;
    case kLogDir: if (code == LBN_DBLCLK) Log_Dir_Change(); break;
    case kLogFile: if (code == LBN_SELCHANGE) Log_File_Click(); break;
    default: return id >= kLogDrv && id <= kLogPath;
  }
  return true;
}

std::string SaveLogPage::DirectoryWithSeparator() const {
  return logDirectory_.back() == '\\' ? logDirectory_ : logDirectory_ + "\\";
}

// Writes the log beside the chosen file and then replaces it, so that a
// failure leaves an existing file as it was.
void SaveLogPage::SaveLog_Cbt_Click() {
  std::string directory = DirectoryWithSeparator();
  std::string file = directory + win32::GetText(Control(kFileTbx));

  bool showProgress = false;
  main_.Drivers().ReadOpenGLKey(showProgress);
  HWND drivers = main_.Control(kDriversLbx);
  std::vector<std::string> driverLines;
  int count = static_cast<int>(SendMessageA(drivers, LB_GETCOUNT, 0, 0));
  for (int i = 0; i < count; ++i) {
    SendMessageA(drivers, LB_SETCURSEL, i, 0);
    driverLines.push_back(ListLine(drivers, i));
  }
  report::LogInputs log = GatherLog(win32::GetText(main_.Control(kVersionLabel)), driverLines,
                                    main_.State().driverDllPaths,
                                    win32::GetText(main_.Control(kSpecsTbx)));

  FileResult written = ReplaceFileContents(file, report::ComposeLog(log));
  if (!written.ok) {
    win32::MsgBox(main_.hwnd(),
                  "The log file could not be saved:\r\n" + file + "\r\n" + written.reason +
                      ".\r\nAn existing file of that name was left as it was.",
                  win32::kAppTitle, MB_OK | MB_ICONEXCLAMATION);
    return;
  }
  RefreshLogFiles();
  main_.State().logAsked = true;
}

void SaveLogPage::SetLogDirectory(const std::string& directory) {
  std::string dir = FullPath(directory);
  // A root keeps its separator ("C:\"); other folders have none at the end.
  if (dir.size() > 3 && (dir.back() == '\\' || dir.back() == '/')) dir.pop_back();
  logDirectory_ = dir;
  std::string withSep = DirectoryWithSeparator();
  std::vector<char> drive(withSep.begin(), withSep.end());
  drive.resize(withSep.size() + MAX_PATH, '\0');
  DlgDirListComboBoxA(panel_, drive.data(), kLogDrv, 0, DDL_DRIVES | DDL_EXCLUSIVE);
  if (dir.size() > 1 && dir[1] == ':') {
    std::string entry = std::string("[-") + static_cast<char>(tolower(dir[0])) + "-]";
    SendMessageA(Control(kLogDrv), CB_SELECTSTRING, static_cast<WPARAM>(-1),
                 reinterpret_cast<LPARAM>(entry.c_str()));
  }
  ListInto(panel_, withSep + "*.*", kLogDir, kLogPath, DDL_DIRECTORY | DDL_EXCLUSIVE);
  RefreshLogFiles();
}

void SaveLogPage::RefreshLogFiles() {
  ListInto(panel_, DirectoryWithSeparator() + "*.txt", kLogFile, 0, DDL_READWRITE);
}

// The drive list gives the chosen drive as "x:" (its result says that the
// entry is a drive, not a file); the lists then show that drive's current
// folder.
void SaveLogPage::Log_Drv_Change() {
  char drive[MAX_PATH] = {};
  DlgDirSelectComboBoxExA(panel_, drive, MAX_PATH, kLogDrv);
  if (drive[0]) SetLogDirectory(drive);
}

void SaveLogPage::Log_Dir_Change() {
  char sub[MAX_PATH] = {};
  DlgDirSelectExA(panel_, sub, MAX_PATH, kLogDir);
  if (!sub[0]) return;
  SetLogDirectory(DirectoryWithSeparator() + sub);
}

void SaveLogPage::Log_File_Click() {
  HWND list = Control(kLogFile);
  LRESULT sel = SendMessageA(list, LB_GETCURSEL, 0, 0);
  if (sel == LB_ERR || SendMessageA(list, LB_GETTEXTLEN, sel, 0) == LB_ERR) return;
  win32::SetText(Control(kFileTbx), ListLine(list, static_cast<int>(sel)));
}

}  // namespace shell
