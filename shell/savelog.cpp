// The Save Log page: drive, folder and "*.txt" file lists kept by the
// system's own list functions, and the file name box.
#include <cctype>
#include <vector>

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
void ListInto(HWND panel, const std::string& spec, int id, int pathId, UINT types) {
  std::vector<char> buf(spec.begin(), spec.end());
  buf.resize(spec.size() + MAX_PATH, '\0');
  DlgDirListA(panel, buf.data(), id, pathId, types);
}

}  // namespace

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

void VelmoraMain::Log_Drv_Change() {
  char drive[MAX_PATH] = {};
  if (!DlgDirSelectComboBoxExA(Panel(2), drive, MAX_PATH, kLogDrv)) {
    // Drives come back as "c:"; the folder is that drive's current one.
    SetLogDirectory(drive);
  }
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
