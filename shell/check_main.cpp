// VelmoraCheck.exe: the unattended check. Runs the visual tests without a
// person, judges them by their automatic checks, prints the Specifications
// report and writes the log and a JSON summary on request.
#include <windows.h>
#include <fcntl.h>
#include <io.h>

#include <cstdio>
#include <string>
#include <vector>

#include "check/gl_probe.h"
#include "check/options.h"
#include "check/summary.h"
#include "gl/mopengl.h"
#include "gl/profiles.h"
#include "quadview/unattended.h"
#include "res/version.h"
#include "shell/adapter_gather.h"
#include "shell/glpicture.h"
#include "shell/host_settings.h"
#include "shell/log_gather.h"
#include "shell/main_window.h"
#include "shell/mode.h"
#include "shell/specs_gather.h"
#include "shell/verdict_labels.h"
#include "sysinfo/fileversioninfo.h"
#include "sysinfo/registry.h"
#include "sysinfo/windows_version.h"
#include "tests/autocheck.h"
#include "tests/catalogue.h"
#include "win32/ui.h"

namespace {

void Out(const std::string& text) {
  std::fwrite(text.data(), 1, text.size(), stdout);
  std::fflush(stdout);
}

void Err(const std::string& text) {
  std::fwrite(text.data(), 1, text.size(), stderr);
  std::fflush(stderr);
}

// The device layer asks the rendering choice here, as it asks the main
// window in Velmora.exe.
class CheckMode : public mOpenGL::ModeSource {
 public:
  explicit CheckMode(shell::ModeSettings& mode) : mode_(mode) {}
  bool CurrentSH() const override { return mode_.CurrentSH; }
  int CurrentOGLPixelFormat() const override { return mode_.CurrentOGLPixelFormat(); }
  void SetCurrentOGLPixelFormat(int index) override { mode_.SetCurrentOGLPixelFormat(index); }

 private:
  shell::ModeSettings& mode_;
};

// The rendering choice: the host file as Velmora reads it at start-up, or
// the Library page's options as the user would set them.
shell::ModeSettings ChooseMode(const check::Options& o) {
  shell::ModeSettings mode;
  shell::HostSettings host;
  const std::string path = shell::HostSettingsPath();
  if (o.mode == check::ModeChoice::HostFile && shell::FileExists(path)) {
    std::string bytes;
    shell::FileResult read = shell::ReadWholeFile(path, bytes);
    if (read.ok)
      host = shell::ParseHostSettings(bytes, mode.VoraRedraw);
    else
      Err("VelmoraCheck: the host settings file " + path + " could not be read (" + read.reason +
          "); the default settings are used\n");
  }
  mode.Load(host);
  switch (o.mode) {
    case check::ModeChoice::HostFile: break;
    case check::ModeChoice::Software: mode.Select(shell::ModeOption::Software); break;
    case check::ModeChoice::Hardware: mode.HWPixelFormat_Opt_Click(); break;
    case check::ModeChoice::Index:
      mode.Select(shell::ModeOption::Explicit);
      mode.PixelFormat_Tbx_LostFocus(std::to_string(o.index));
      break;
  }
  if (o.redraw) mode.ForceRedraw_Chk_Click(true);
  return mode;
}

// A hidden window that holds the report's OpenGL_Pbx(1).
class HostWindow {
 public:
  HostWindow() {
    if (win32::RegisterSimpleClass("VelmoraCheck_Host", 0))
      wnd_ = CreateWindowExA(0, "VelmoraCheck_Host", "VelmoraCheck", WS_POPUP, 0, 0, 320, 240,
                             nullptr, nullptr, GetModuleHandleA(nullptr), nullptr);
  }
  ~HostWindow() {
    if (wnd_) DestroyWindow(wnd_);
  }
  HostWindow(const HostWindow&) = delete;
  HostWindow& operator=(const HostWindow&) = delete;
  HWND hwnd() const { return wnd_; }

 private:
  HWND wnd_ = nullptr;
};

int DescribedFormatCount(HWND wnd) {
  HDC dc = GetDC(wnd);
  int count = dc ? DescribePixelFormat(dc, 1, 0, nullptr) : 0;
  if (dc) ReleaseDC(wnd, dc);
  return count;
}

// The device layer's boxes cannot be answered here: their text goes to
// stderr and the answer is the one that ends the failing step.
int AnswerBox(HWND, const std::string& text, const std::string& title, UINT style) {
  Err("VelmoraCheck: [" + title + "] " + text + "\n");
  switch (style & MB_TYPEMASK) {
    case MB_ABORTRETRYIGNORE: return IDABORT;
    case MB_YESNO: return IDNO;
    case MB_YESNOCANCEL: return IDNO;
    case MB_OKCANCEL: return IDOK;
    default: return IDOK;
  }
}

bool WriteOutput(const std::string& what, const std::string& path, const std::string& bytes) {
  shell::FileResult written = shell::ReplaceFileContents(path, bytes);
  if (written.ok) return true;
  Err("VelmoraCheck: the " + what + " " + path + " could not be written (" + written.reason +
      "); an existing file of that name was left as it was\n");
  return false;
}

std::string Padded(const std::string& text, size_t width) {
  return text.size() >= width ? text : text + std::string(width - text.size(), ' ');
}

}  // namespace

int main(int argc, char** argv) {
  // The report's lines end in CR LF of their own.
  _setmode(_fileno(stdout), _O_BINARY);
  std::vector<std::string> args(argv + 1, argv + argc);
  check::ParsedOptions parsed = check::ParseOptions(args);
  if (!parsed.options) {
    Err("VelmoraCheck: " + parsed.error + "\n" + check::UsageText());
    return check::kExitUsage;
  }
  const check::Options& o = *parsed.options;
  win32::SetMsgBoxHook(AnswerBox);

  shell::ModeSettings mode = ChooseMode(o);
  CheckMode modeSource(mode);
  mOpenGL::SetModeSource(&modeSource);

  check::CheckSummary summary;
  summary.programVersion = VELMORA_VERSION_TEXT;
  summary.openglLoaded = mOpenGL::OpenGLAvailable();
  HostWindow host;
  if (!host.hwnd()) {
    Err("VelmoraCheck: the window for the OpenGL context could not be made\n");
    return check::kExitNoOpenGL;
  }
  if (o.mode == check::ModeChoice::Index && summary.openglLoaded) {
    int count = DescribedFormatCount(host.hwnd());
    if (o.index > count) {
      Err("VelmoraCheck: --mode " + std::to_string(o.index) +
          ": out of range; this display has pixel formats 1 to " + std::to_string(count) + "\n" +
          check::UsageText());
      return check::kExitUsage;
    }
  }

  // The driver's highest profiles, asked on a window of their own before
  // anything else uses OpenGL: the tests and the report run as without it.
  if (o.profiles && summary.openglLoaded) summary.profiles = mOpenGL::ProbeProfiles();

  report::TestPart testPart;
  for (int i = 0; i < tests::kTestCount; ++i) testPart.Captions[i] = tests::kTestCaptions[i];
  testPart.QuadViewCaption = "QuadView";
  testPart.ForceRedraw = mode.CurrentOGLRedraw ? 1 : 0;

  if (!o.noTests && summary.openglLoaded) {
    summary.testsRun = true;
    for (int i = 0; i < tests::kTestCount; ++i) {
      tests::UnattendedRun run = tests::RunUnattended(i, tests::kTestCaptions[i]);
      std::string label = shell::UnattendedTestLabel(run.errorCode, run.verdict.Passed(),
                                                      mode.CurrentOGLPixelFormat());
      testPart.Labels[i] = label;
      summary.tests.push_back({tests::kTestCaptions[i], run.frames, run.errorCode, label,
                               run.verdict});
      if (!o.quiet)
        Out(Padded(tests::kTestCaptions[i], 16) + " " + std::to_string(run.frames) +
            " frames  " + label + "  " + run.verdict.Text() + "\r\n");
    }
    quadview::UnattendedQuadRun quad =
        quadview::RunUnattended({testPart.QuadViewCaption, mode.CurrentOGLRedraw});
    shell::QuadViewOutcome outcome = shell::QuadViewVerdict(
        quad.status, quad.result, mode.CurrentOGLPixelFormat(), quad.verdict.Passed());
    testPart.QuadViewLabel = outcome.label;
    if (outcome.text) testPart.QuadViewText = *outcome.text;
    summary.quadView = check::QuadSummary{quad.status, quad.result, outcome.label,
                                          testPart.QuadViewText, quad.verdict};
    if (!o.quiet)
      Out(Padded(testPart.QuadViewCaption, 16) + " status " + std::to_string(quad.status) +
          "  " + outcome.label + "  " + quad.verdict.Text() + "\r\n");
  }

  // The report, gathered as "Check Specifications" gathers it.
  std::string reportText = "DLL missing";
  shell::ReportContextSeen seen;
  if (summary.openglLoaded) {
    shell::SpecsRequest request;
    request.loadPicture = [&] {
      return std::make_unique<shell::GLPicture>(host.hwnd(), RECT{8, 8, 28, 28});
    };
    request.mode = &modeSource;
    request.modeTag = shell::ModeTag(mode.view.option);
    request.tests = testPart;
    request.whileCurrent = [&] {
      const GLubyte* text = glGetString(GL_EXTENSIONS);
      std::string extensions = text ? reinterpret_cast<const char*>(text) : "";
      summary.probe = check::ProbeCurrentContext(mOpenGL::CurrentSurface(), extensions);
      summary.pixelFormatCount = mOpenGL::GetPixelFormatCount();
    };
    if (auto gathered = shell::GatherSpecifications(request)) {
      reportText = gathered->Text();
      const report::OpenGLPart& gl = gathered->inputs.OpenGL;
      summary.machine = gathered->inputs.System;
      summary.contextMade = gathered->contextMade;
      summary.contextFailure = gl.Failure;
      summary.pixelFormat = gl.PixelFormat;
      summary.flags = gl.Flags;
      summary.colorBits = gl.ColorBits;
      summary.depthBits = gl.DepthBits;
      summary.renderer = gl.Renderer;
      summary.version = gl.Version;
      summary.vendor = gl.Vendor;
      summary.extensions = gl.Extensions;
      seen = {gathered->modules, gl.Renderer, gl.Flags};
    }
  }
  Out(reportText);

  bool usable = summary.openglLoaded && summary.contextMade;
  summary.outcome =
      check::Decide(usable, summary.flags, check::AllPassed(summary.tests, summary.quadView));

  report::DriverPathList paths;
  sysinfo::cRegistry registry;
  summary.driverLines = shell::ScanDriverLines(registry, paths);
  for (int i = 1; i <= paths.FileCount(); ++i) {
    sysinfo::cFileVersionInfo version;
    version.FullPathName(paths.Element(i));
    check::DriverFile file{paths.Element(i), std::nullopt};
    if (version.Available())
      file.version = report::DriverFileInfo{version.CompanyName(), version.FileDescription(),
                                            version.FileVersion()};
    summary.driverFiles.push_back(file);
  }
  summary.glErrorText = mOpenGL::GetGLErrorText();

  // After the report: the Windows that really runs, the driver's highest
  // profiles, the display adapters and the notes, as the Drivers page has
  // them.
  summary.windows = sysinfo::CaptureRealWindows();
  std::optional<bool> modern;
  if (summary.profiles) modern = summary.profiles->Core.has_value();
  int legacy = summary.driverLines == std::vector<std::string>{"No drivers registered"}
                   ? 0
                   : static_cast<int>(summary.driverLines.size());
  report::AdapterFacts facts = shell::GatherAdapterFacts(legacy, seen, modern, nullptr);
  summary.adapters = facts.Adapters;
  summary.adapterLines = report::AdapterLines(facts);
  summary.notes = report::AdapterNotes(facts);
  std::string after = "\r\nWindows: " + sysinfo::RealWindowsLine(summary.windows) + "\r\n" +
                      "OpenGL profiles: " +
                      (summary.profiles ? mOpenGL::ProfilesText(*summary.profiles)
                                        : std::string("not asked (--profiles)")) +
                      "\r\n\r\nDisplay adapters:\r\n";
  for (const std::string& line : summary.adapterLines) after += line + "\r\n";
  after += "\r\nNotes:\r\n";
  for (const std::string& note : summary.notes) after += note + "\r\n";
  Out(after);

  bool written = true;
  if (o.logFile) {
    report::LogInputs log = shell::GatherLog(
        shell::VersionLabelText(VELMORA_VERSION_MAJOR, VELMORA_VERSION_MINOR,
                                VELMORA_VERSION_REVISION),
        summary.driverLines, paths, reportText);
    written = WriteOutput("log file", *o.logFile, report::ComposeLog(log)) && written;
  }
  if (o.jsonFile)
    written = WriteOutput("JSON file", *o.jsonFile, check::ComposeJson(summary)) && written;
  if (!written) return check::kExitCannotWrite;
  return check::ExitCode(summary.outcome);
}
