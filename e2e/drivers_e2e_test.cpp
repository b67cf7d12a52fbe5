// The Drivers page of a running Velmora.exe, read from outside: the legacy
// list, the display adapters and the notes after one press of the button.
#include <gtest/gtest.h>

#include "e2e/fixture.h"
#include "report/adapter_notes.h"
#include "sysinfo/fileversioninfo.h"

namespace {

using Velmora = e2e::VelmoraTest;

// The report's renderer, as its "Renderer: " line shows it.
std::string RendererOf(const std::string& report) {
  size_t at = report.find("\r\nRenderer: ");
  if (at == std::string::npos) return {};
  at += 12;
  return report.substr(at, report.find("\r\n", at) - at);
}

TEST_F(Velmora, DriversPageListsAdaptersAndNotes) {
  HWND report = ReportBox();
  ASSERT_NE(report, nullptr);
  e2e::Press(Button("Check Specifications"));
  ASSERT_TRUE(e2e::WaitFor([&] { return e2e::Text(report).rfind("Computer: ", 0) == 0; }, 20000));
  const std::string renderer = RendererOf(e2e::Text(report));

  e2e::ClickAt(Label("Drivers"), 5, 5);
  EXPECT_EQ(AnswerQuestion(IDNO), "Do you want to Save the Log File before going on?");
  HWND drivers = Button("Hardware Acceleration Drivers registered");
  ASSERT_TRUE(ShownOnScreen(drivers));
  HWND page = GetParent(drivers);
  HWND adapters = nullptr, notes = nullptr, legacy = nullptr;
  for (HWND l : e2e::FindControls(page, "ListBox"))
    ((GetWindowLongA(l, GWL_STYLE) & LBS_USETABSTOPS) ? legacy : adapters) = l;
  for (HWND e : e2e::FindControls(page, "Edit"))
    if (GetWindowLongA(e, GWL_STYLE) & ES_MULTILINE) notes = e;
  ASSERT_TRUE(legacy && adapters && notes);
  ASSERT_NE(e2e::FindControl(page, "Static", "Display adapters"), nullptr);
  e2e::Press(drivers);
  ASSERT_TRUE(e2e::WaitFor([&] { return !e2e::Text(notes).empty(); }, 10000));
  Sleep(300);  // let the boxes paint what they were given
  e2e::SaveWindowImage(main, e2e::ShotPath("page3_drivers_adapters"));

  // The same machine seen from this process; only the module that ran
  // differs, so the loaded-module lines are compared by what they must say.
  report::AdapterFacts facts;
  facts.Adapters = sysinfo::GatherDisplayAdapters();
  facts.Process = sysinfo::GatherProcessFacts();
  ASSERT_FALSE(facts.Adapters.empty()) << "the system lists no adapter";
  std::vector<std::string> lines = report::AdapterLines(facts);
  lines.pop_back();  // "press Check Specifications": the program has run it
  std::string gl = std::string("OpenGL in use: Windows' generic OpenGL ") +
                   sysinfo::cFileVersionInfo().SystemDirectory() + "\\opengl32.dll";
  LRESULT count = SendMessageA(adapters, LB_GETCOUNT, 0, 0);
  ASSERT_EQ(count, static_cast<LRESULT>(lines.size() + 1));
  // Item texts do not cross process borders reliably; their lengths do.
  for (size_t i = 0; i < lines.size(); ++i)
    EXPECT_EQ(SendMessageA(adapters, LB_GETTEXTLEN, i, 0), static_cast<LRESULT>(lines[i].size()))
        << lines[i];
  EXPECT_GE(SendMessageA(adapters, LB_GETTEXTLEN, count - 1, 0), static_cast<LRESULT>(gl.size()))
      << "the last line names the OpenGL module that ran";

  facts.ReportRan = true;
  facts.Renderer = renderer;
  facts.Class = report::FormatClass::ICD;  // the notes below do not turn on it unless software
  OSVERSIONINFOA answered{};
  answered.dwOSVersionInfoSize = sizeof answered;
  GetVersionExA(&answered);
  facts.AnsweredMajor = answered.dwMajorVersion;
  facts.AnsweredMinor = answered.dwMinorVersion;
  facts.AnsweredBuild = answered.dwBuildNumber & 0xFFFF;
  facts.RealWindows = sysinfo::CaptureRealWindows();
  facts.ModernOpenGL = true;  // this driver makes core profiles
  EXPECT_EQ(e2e::Text(notes), report::NotesText(report::AdapterNotes(facts)));
  EXPECT_EQ(SendMessageA(legacy, LB_GETCOUNT, 0, 0), 1) << "the legacy list is unchanged";
  Quit();
}

}  // namespace
