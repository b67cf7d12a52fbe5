#pragma once
// What "Check Specifications" gathers before it composes the report: the
// machine, the pixel format and OpenGL strings of a context made on a fresh
// OpenGL_Pbx(1), and the test verdicts the caller hands in. The main window
// and VelmoraCheck.exe both gather through here, so that the same settings
// and verdicts give the same report text.
#include <windows.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "gl/mopengl.h"
#include "report/report.h"
#include "shell/glpicture.h"
#include "shell/mode.h"
#include "sysinfo/display_adapters.h"

namespace shell {

// "-HW ", "-SW " or "" for an explicit index.
std::string ModeTag(ModeOption option);

struct SpecsRequest {
  // Loads OpenGL_Pbx(1): a fresh surface for the report's one context.
  std::function<std::unique_ptr<GLPicture>()> loadPicture;
  // The rendering choice; its index is read after the context set-up,
  // which writes back the index actually used.
  const mOpenGL::ModeSource* mode = nullptr;
  std::string modeTag;
  report::TestPart tests;
  // Called while the report's context is current (not when none was made).
  std::function<void()> whileCurrent;
};

struct SpecsGathering {
  report::ReportInputs inputs;
  // For the log-file name: these hold even when the context failed.
  std::string osId;  // COpSysInfo ID
  std::string modeTag;
  int pixelFormat = 0;
  int colorBits = 0;
  bool contextMade = false;  // a rendering context was current
  // The modules loaded just before and after the context was made: which
  // OpenGL implementation really ran.
  sysinfo::ContextModules modules;
  std::string Text() const { return report::ComposeReport(inputs); }
  // The proposal for the log-file name box holding `current`.
  std::optional<std::string> LogFileName(const std::string& current) const;
};

// Nothing when opengl32.dll cannot be loaded (the report then reads
// "DLL missing").
std::optional<SpecsGathering> GatherSpecifications(const SpecsRequest& request);

}  // namespace shell
