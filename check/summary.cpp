#include "check/summary.h"

#include <windows.h>

#include <nlohmann/json.hpp>

#include "check/options.h"
#include "gl/mopengl.h"

namespace check {
namespace {

using nlohmann::json;

json Text(const std::string& s) { return AnsiToUtf8(s); }

json Checks(const tests::AutoVerdict& verdict) {
  json checks = json::array();
  for (const tests::PictureCheck& c : verdict.checks)
    checks.push_back({{"name", Text(c.name)}, {"passed", c.passed}, {"saw", Text(c.saw)}});
  return {{"passed", verdict.Passed()}, {"text", Text(verdict.Text())}, {"checks", checks}};
}

}  // namespace

std::string AnsiToUtf8(const std::string& text) {
  if (text.empty()) return text;
  int n = MultiByteToWideChar(CP_ACP, 0, text.data(), static_cast<int>(text.size()), nullptr, 0);
  if (n <= 0) return {};
  std::wstring wide(static_cast<size_t>(n), L'\0');
  MultiByteToWideChar(CP_ACP, 0, text.data(), static_cast<int>(text.size()), wide.data(), n);
  int m = WideCharToMultiByte(CP_UTF8, 0, wide.data(), n, nullptr, 0, nullptr, nullptr);
  if (m <= 0) return {};
  std::string utf8(static_cast<size_t>(m), '\0');
  WideCharToMultiByte(CP_UTF8, 0, wide.data(), n, utf8.data(), m, nullptr, nullptr);
  return utf8;
}

const char* FormatClassName(DWORD flags) {
  switch (mOpenGL::Classify(flags)) {
    case mOpenGL::FormatClass::ICD: return "ICD";
    case mOpenGL::FormatClass::MCD: return "MCD";
    case mOpenGL::FormatClass::Generic: return "software";
  }
  return "software";
}

bool AllPassed(const std::vector<TestSummary>& tests, const std::optional<QuadSummary>& quad) {
  for (const TestSummary& t : tests)
    if (t.errorCode != 0 || !t.verdict.Passed()) return false;
  return !quad || (quad->status == 1 && quad->verdict.Passed());
}

Outcome Decide(bool usableOpenGL, DWORD flags, bool allPassed) {
  if (!usableOpenGL) return Outcome::NoOpenGL;
  if (!allPassed) return Outcome::TestFailed;
  return mOpenGL::Classify(flags) == mOpenGL::FormatClass::Generic ? Outcome::SoftwarePassed
                                                                    : Outcome::HardwarePassed;
}

int ExitCode(Outcome outcome) {
  switch (outcome) {
    case Outcome::HardwarePassed: return kExitHardwarePassed;
    case Outcome::SoftwarePassed: return kExitSoftwarePassed;
    case Outcome::TestFailed: return kExitTestFailed;
    case Outcome::NoOpenGL: return kExitNoOpenGL;
  }
  return kExitNoOpenGL;
}

const char* OutcomeName(Outcome outcome) {
  switch (outcome) {
    case Outcome::HardwarePassed: return "hardware, every test passed";
    case Outcome::SoftwarePassed: return "software only, every test passed";
    case Outcome::TestFailed: return "a test failed";
    case Outcome::NoOpenGL: return "no usable OpenGL";
  }
  return "";
}

std::string ComposeJson(const CheckSummary& s) {
  json j;
  j["program"] = {{"name", "Velmora"}, {"version", Text(s.programVersion)}};
  const report::SystemPart& m = s.machine;
  j["machine"] = {{"computer", Text(m.ComputerName)}, {"user", Text(m.UserText)},
                  {"os", Text(m.Platform)},           {"version", Text(m.Version)},
                  {"processor", Text(m.Processor)},
                  {"screen", {{"width", m.ScreenWidth}, {"height", m.ScreenHeight}}}};
  j["verdict"] = {{"class", OutcomeName(s.outcome)}, {"exitCode", ExitCode(s.outcome)}};

  json gl;
  gl["loaded"] = s.openglLoaded;
  gl["contextMade"] = s.contextMade;
  if (s.contextFailure) gl["contextFailure"] = Text(*s.contextFailure);
  if (s.contextMade) {
    gl["pixelFormat"] = {{"index", s.pixelFormat},
                         {"flags", s.flags},
                         {"class", FormatClassName(s.flags)},
                         {"colorBits", s.colorBits},
                         {"depthBits", s.depthBits}};
    gl["strings"] = {{"vendor", Text(s.vendor)},
                     {"renderer", Text(s.renderer)},
                     {"version", Text(s.version)},
                     {"extensions", Text(s.extensions)}};
    json limits = json::object();
    for (const GLLimit& l : s.probe.limits)
      limits[l.name] = l.values.size() == 1 ? json(l.values[0]) : json(l.values);
    gl["limits"] = limits;
    gl["wglExtensions"] = s.probe.wglExtensions ? json(Text(*s.probe.wglExtensions)) : json();
    json gaps = json::array();
    for (const ExtensionGap& g : s.probe.gaps)
      gaps.push_back({{"extension", g.extension}, {"unresolved", g.unresolved}});
    gl["unresolvedEntryPoints"] = gaps;
  }
  gl["pixelFormatCount"] = s.pixelFormatCount;
  j["opengl"] = gl;

  json tests = json::array();
  for (const TestSummary& t : s.tests)
    tests.push_back({{"name", Text(t.name)},
                     {"frames", t.frames},
                     {"errorCode", t.errorCode},
                     {"label", Text(t.label)},
                     {"verdict", Checks(t.verdict)}});
  j["testsRun"] = s.testsRun;
  j["tests"] = tests;
  if (s.quadView) {
    const QuadSummary& q = *s.quadView;
    j["quadView"] = {{"status", q.status},   {"result", Text(q.result)},
                     {"label", Text(q.label)}, {"text", Text(q.text)},
                     {"verdict", Checks(q.verdict)}};
  } else {
    j["quadView"] = nullptr;
  }

  json files = json::array();
  for (const DriverFile& f : s.driverFiles) {
    json file = {{"path", Text(f.path)}};
    if (f.version)
      file["version"] = {{"company", Text(f.version->Company)},
                         {"description", Text(f.version->Description)},
                         {"version", Text(f.version->Version)}};
    else
      file["version"] = nullptr;
    files.push_back(file);
  }
  json lines = json::array();
  for (const std::string& l : s.driverLines) lines.push_back(Text(l));
  j["drivers"] = {{"registered", lines}, {"files", files}};
  j["deviceFailures"] = Text(s.glErrorText);

  const sysinfo::RealWindowsFacts& w = s.windows;
  j["windows"] = {{"major", w.Major},
                  {"minor", w.Minor},
                  {"build", w.Build},
                  {"productName", Text(w.ProductName)},
                  {"editionId", Text(w.EditionID)},
                  {"displayVersion", Text(w.DisplayVersion)},
                  {"releaseId", Text(w.ReleaseId)},
                  {"currentBuild", Text(w.CurrentBuild)},
                  {"ubr", w.UBR ? json(*w.UBR) : json()},
                  {"is64Bit", w.Is64Bit},
                  {"line", Text(sysinfo::RealWindowsLine(w))}};
  if (s.profiles) {
    auto profile = [](const std::optional<mOpenGL::ProfileInfo>& p) {
      if (!p) return json();
      return json{{"major", p->Major},
                  {"minor", p->Minor},
                  {"version", Text(p->Version)},
                  {"renderer", Text(p->Renderer)},
                  {"shadingLanguageVersion", Text(p->ShadingLanguage)}};
    };
    j["opengl_profiles"] = {{"createContextAttribs", s.profiles->CreateContextAttribs},
                            {"core", profile(s.profiles->Core)},
                            {"compatibility", profile(s.profiles->Compatibility)},
                            {"text", mOpenGL::ProfilesText(*s.profiles)}};
  } else {
    j["opengl_profiles"] = nullptr;
  }
  json adapters = json::array();
  for (const sysinfo::DisplayAdapter& a : s.adapters) {
    auto files = [](const std::vector<sysinfo::DriverFile>& list) {
      json out = json::array();
      for (const sysinfo::DriverFile& d : list)
        out.push_back({{"registered", Text(d.Registered)},
                       {"path", Text(d.Path)},
                       {"exists", d.Exists},
                       {"version", Text(d.Version)}});
      return out;
    };
    adapters.push_back({{"device", Text(a.DeviceName)},
                        {"description", Text(a.Description)},
                        {"primary", a.Primary},
                        {"attached", a.Attached},
                        {"classKey", Text(a.ClassKey)},
                        {"driverDescription", Text(a.Values.DriverDesc)},
                        {"provider", Text(a.Values.ProviderName)},
                        {"driverVersion", Text(a.Values.DriverVersion)},
                        {"driverDate", Text(a.Values.DriverDate)},
                        {"openglDrivers", files(a.Values.OpenGL)},
                        {"openglDriversWow", files(a.Values.OpenGLWow)}});
  }
  json adapterLines = json::array(), notes = json::array();
  for (const std::string& l : s.adapterLines) adapterLines.push_back(Text(l));
  for (const std::string& n : s.notes) notes.push_back(Text(n));
  j["displayAdapters"] = {{"adapters", adapters}, {"lines", adapterLines}};
  j["notes"] = notes;
  return j.dump(2) + "\n";
}

}  // namespace check
