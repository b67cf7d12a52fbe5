#include "e2e/driver.h"

#include <cstring>
#include <fstream>
#include <iterator>

#include "win32/handle.h"
#include "win32/ui.h"

namespace e2e {

namespace {

// Starts `exe` (from the command line when null), its output going to `out` when set.
bool Spawn(const char* exe, std::string cmd, const std::string& workDir, PROCESS_INFORMATION& pi,
           HANDLE out = nullptr) {
  STARTUPINFOA si{};
  si.cb = sizeof si;
  if (out) {
    si.dwFlags = STARTF_USESTDHANDLES;
    si.hStdOutput = out;
    si.hStdError = GetStdHandle(STD_ERROR_HANDLE);
    si.hStdInput = GetStdHandle(STD_INPUT_HANDLE);
  }
  return CreateProcessA(exe, cmd.data(), nullptr, nullptr, out != nullptr, 0, nullptr,
                        workDir.empty() ? nullptr : workDir.c_str(), &si, &pi) != FALSE;
}

// Windows of this class and text (any when null); with `pid`, that process's visible top levels.
struct Search {
  DWORD pid;
  const char* cls;
  const char* text;
  std::vector<HWND> found;
};

BOOL CALLBACK Collect(HWND wnd, LPARAM lp) {
  auto* s = reinterpret_cast<Search*>(lp);
  DWORD pid = 0;
  GetWindowThreadProcessId(wnd, &pid);
  char cls[256] = {};
  GetClassNameA(wnd, cls, sizeof cls);
  if ((!s->pid || (pid == s->pid && IsWindowVisible(wnd))) && _stricmp(cls, s->cls) == 0 &&
      (!s->text || Text(wnd) == s->text))
    s->found.push_back(wnd);
  return TRUE;
}

std::vector<HWND> Find(HWND parent, DWORD pid, const char* cls, const char* text) {
  Search s{pid, cls, text, {}};
  auto lp = reinterpret_cast<LPARAM>(&s);
  pid ? EnumWindows(Collect, lp) : EnumChildWindows(parent, Collect, lp);
  return s.found;
}

}  // namespace

Program::Program(const std::string& exe, const std::string& workDir) {
  PROCESS_INFORMATION pi{};
  if (Spawn(exe.c_str(), "\"" + exe + "\"", workDir, pi)) {
    process_ = pi.hProcess;
    id_ = pi.dwProcessId;
    CloseHandle(pi.hThread);
  }
}

Program::~Program() {
  if (!process_) return;
  if (WaitForSingleObject(process_, 0) == WAIT_TIMEOUT) {
    TerminateProcess(process_, 99);
    WaitForSingleObject(process_, 5000);
  }
  CloseHandle(process_);
}

HWND Program::WaitWindow(const char* cls, const char* title, int ms) const {
  HWND found = nullptr;
  WaitFor([&] {
    std::vector<HWND> all = id_ ? Find(nullptr, id_, cls, title) : std::vector<HWND>{};
    found = all.empty() ? nullptr : all.front();
    return found != nullptr;
  }, ms);
  return found;
}

bool Program::WaitExit(int ms, DWORD* code) const {
  if (!process_ || WaitForSingleObject(process_, static_cast<DWORD>(ms)) != WAIT_OBJECT_0)
    return false;
  if (code) GetExitCodeProcess(process_, code);
  return true;
}

HWND FindControl(HWND parent, const char* cls, const std::string& text) {
  std::vector<HWND> all = Find(parent, 0, cls, text.c_str());
  return all.empty() ? nullptr : all.front();
}

std::vector<HWND> FindControls(HWND parent, const char* cls) {
  return Find(parent, 0, cls, nullptr);
}

std::string Text(HWND wnd) {
  // WM_GETTEXT works across processes for standard controls.
  LRESULT n = SendMessageA(wnd, WM_GETTEXTLENGTH, 0, 0);
  std::string s(static_cast<size_t>(n) + 1, '\0');
  n = SendMessageA(wnd, WM_GETTEXT, s.size(), reinterpret_cast<LPARAM>(s.data()));
  s.resize(n > 0 ? static_cast<size_t>(n) : 0);
  return s;
}

void Press(HWND button) { PostMessageA(button, BM_CLICK, 0, 0); }

void ClickAt(HWND wnd, int x, int y) {
  PostMessageA(wnd, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(x, y));
  PostMessageA(wnd, WM_LBUTTONUP, 0, MAKELPARAM(x, y));
}

void Answer(HWND box, int buttonId) {
  if (HWND button = GetDlgItem(box, buttonId)) Press(button);
}

std::string MessageBoxText(HWND box) {
  HWND text = GetDlgItem(box, 0xFFFF);  // the box's static text control
  return text ? Text(text) : std::string();
}

std::string BuildDir() { return win32::ModuleDirectory() + "\\.."; }
std::string VelmoraExe() { return BuildDir() + "\\Velmora.exe"; }

std::string ReadFileBytes(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

bool RunCommand(const std::string& commandLine) {
  PROCESS_INFORMATION pi{};
  if (!Spawn(nullptr, commandLine, {}, pi)) return false;
  CloseHandle(pi.hThread);
  CloseHandle(pi.hProcess);
  return true;
}

CapturedRun RunCaptured(const std::string& exe, const std::string& args,
                        const std::string& workDir) {
  CapturedRun run;
  SECURITY_ATTRIBUTES sa{sizeof sa, nullptr, TRUE};
  HANDLE readEnd = nullptr, writeEnd = nullptr;
  if (!CreatePipe(&readEnd, &writeEnd, &sa, 0)) return run;
  win32::File reader(readEnd);
  SetHandleInformation(readEnd, HANDLE_FLAG_INHERIT, 0);
  PROCESS_INFORMATION pi{};
  LARGE_INTEGER freq{}, t0{}, t1{};
  QueryPerformanceFrequency(&freq);
  QueryPerformanceCounter(&t0);
  run.started = Spawn(exe.c_str(), "\"" + exe + "\" " + args, workDir, pi, writeEnd);
  CloseHandle(writeEnd);
  if (!run.started) return run;
  char buf[4096];
  DWORD got = 0;
  while (ReadFile(reader.get(), buf, sizeof buf, &got, nullptr) && got > 0)
    run.out.append(buf, got);
  WaitForSingleObject(pi.hProcess, 300000);
  QueryPerformanceCounter(&t1);
  run.ms = 1000.0 * static_cast<double>(t1.QuadPart - t0.QuadPart) /
           static_cast<double>(freq.QuadPart);
  GetExitCodeProcess(pi.hProcess, &run.exitCode);
  CloseHandle(pi.hProcess);
  CloseHandle(pi.hThread);
  return run;
}

}  // namespace e2e
