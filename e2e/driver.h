#pragma once
// Drives a running Velmora.exe from outside, as a user or an automation tool would: finds its
// windows and standard controls by class and text, presses buttons, answers message boxes.
#include <windows.h>

#include <string>
#include <vector>

namespace e2e {

class Program {
 public:
  // Starts the executable in `workDir`; ends the process if it still runs when destroyed.
  Program(const std::string& exe, const std::string& workDir);
  ~Program();
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  bool Started() const { return process_ != nullptr; }
  DWORD Id() const { return id_; }
  // Its visible top-level window of this class (and title, if given); message boxes: "#32770".
  HWND WaitWindow(const char* cls, const char* title, int ms = 15000) const;
  // True when the process ended within `ms`; its exit code goes to `code`.
  bool WaitExit(int ms, DWORD* code = nullptr) const;

 private:
  HANDLE process_ = nullptr;
  DWORD id_ = 0;
};

// The first descendant of `parent` of this class with exactly this text; all of the class.
HWND FindControl(HWND parent, const char* cls, const std::string& text);
std::vector<HWND> FindControls(HWND parent, const char* cls);
std::string Text(HWND wnd);

void Press(HWND button);  // as a mouse click does
void ClickAt(HWND wnd, int x, int y);  // posts a left click at a client point
void Answer(HWND box, int buttonId);  // presses the message box's button (IDYES …)
std::string MessageBoxText(HWND box);

template <class F>
bool WaitFor(F predicate, int ms) {
  DWORD end = GetTickCount() + static_cast<DWORD>(ms);
  while (!predicate()) {
    if (static_cast<LONG>(end - GetTickCount()) <= 0) return false;
    Sleep(20);
  }
  return true;
}

std::string ReadFileBytes(const std::string& path);  // empty when it cannot be read
bool RunCommand(const std::string& commandLine);  // host programs too; does not wait

// A program run to its end with its standard output read through a pipe.
struct CapturedRun {
  bool started = false;
  DWORD exitCode = 0;
  std::string out;
  double ms = 0;  // from start to exit
};
CapturedRun RunCaptured(const std::string& exe, const std::string& args,
                        const std::string& workDir = {});

// The build folder above the test programs' own, and Velmora.exe in it.
std::string BuildDir();
std::string VelmoraExe();

}  // namespace e2e
