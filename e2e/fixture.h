#pragma once
// A running Velmora.exe with its main window found, and the steps the end-to-end tests repeat.
#include <gtest/gtest.h>

#include <fstream>
#include <memory>
#include <string>

#include "e2e/driver.h"

namespace e2e {

class VelmoraTest : public ::testing::Test {
 protected:
  void SetUp() override { Start(); }
  void TearDown() override { DeleteFileA(HostSettingsFile().c_str()); }
  static std::string HostSettingsFile() {
    char windows[MAX_PATH] = {};
    GetWindowsDirectoryA(windows, MAX_PATH);
    return std::string(windows) + "\\VORAhogl.ini";
  }
  // Starts the program without the host settings file, or with one of these bytes.
  void Start(const std::string& hostSettings = {}) {
    DeleteFileA(HostSettingsFile().c_str());
    if (!hostSettings.empty()) std::ofstream(HostSettingsFile(), std::ios::binary) << hostSettings;
    program = std::make_unique<Program>(VelmoraExe(), BuildDir());
    ASSERT_TRUE(program->Started()) << VelmoraExe();
    main = program->WaitWindow("Velmora_Main", "Velmora");
    ASSERT_NE(main, nullptr) << "the main window did not show";
    ASSERT_TRUE(WaitFor([&] { return Button("Run All") != nullptr; }, 15000)) << "its pages";
  }
  HWND Button(const char* caption) { return FindControl(main, "Button", caption); }
  HWND Label(const char* caption) { return FindControl(main, "Static", caption); }
  bool Checked(const char* caption) {
    return SendMessageA(Button(caption), BM_GETCHECK, 0, 0) == BST_CHECKED;
  }
  bool ShownOnScreen(HWND w) { return WaitFor([&] { return IsWindowVisible(w) != 0; }, 5000); }
  // The multi-line box the Specifications report is shown in.
  HWND ReportBox() {
    for (HWND edit : FindControls(main, "Edit"))
      if ((GetWindowLongA(edit, GWL_STYLE) & ES_MULTILINE) != 0) return edit;
    return nullptr;
  }
  // Presses "Check Specifications" and returns the report once it starts with `start`.
  std::string CheckSpecifications(const char* start = "Computer: ") {
    HWND report = ReportBox();
    SendMessageA(report, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(""));
    Press(Button("Check Specifications"));
    WaitFor([&] { return Text(report).rfind(start, 0) == 0; }, 20000);
    return Text(report);
  }
  // Answers the next message box with this title and returns its text.
  std::string AnswerQuestion(int id, const char* title = "Just Checking!") {
    HWND box = program->WaitWindow("#32770", title);
    if (!box) return "(no question)";
    std::string text = MessageBoxText(box);
    Answer(box, id);
    WaitFor([&] { return !IsWindow(box); }, 5000);
    return text;
  }
  // Goes to the Save Log page, saves the log under `name` in the build folder, returns its bytes.
  std::string SaveLog(const char* name) {
    ClickAt(Label("Save Log"), 5, 5);
    AnswerQuestion(IDNO);
    HWND fileName = nullptr;
    for (HWND edit : FindControls(main, "Edit"))
      if (Text(edit).ends_with("LogFile.txt")) fileName = edit;
    if (!fileName) return "(no log-file name box)";
    SendMessageA(fileName, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(name));
    std::string log = BuildDir() + "\\" + name;
    DeleteFileA(log.c_str());
    Press(Button("Save Log"));
    auto written = [&] { return GetFileAttributesA(log.c_str()) != INVALID_FILE_ATTRIBUTES; };
    if (!WaitFor(written, 10000)) return "(no log written)";
    Sleep(200);
    std::string bytes = ReadFileBytes(log);
    DeleteFileA(log.c_str());
    return bytes;
  }
  void Quit() {
    Press(Button("Quit"));
    DWORD code = 1;
    ASSERT_TRUE(program->WaitExit(10000, &code)) << "Quit did not end the program";
    EXPECT_EQ(code, 0u);
  }

  std::unique_ptr<Program> program;
  HWND main = nullptr;
};

}  // namespace e2e
