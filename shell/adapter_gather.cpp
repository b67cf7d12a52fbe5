#include "shell/adapter_gather.h"

#include "sysinfo/fileversioninfo.h"

namespace shell {

report::AdapterFacts GatherAdapterFacts(int legacyRegistrations, const ReportContextSeen& seen,
                                        std::optional<bool> modernOpenGL,
                                        std::map<std::string, std::string>* versions) {
  report::AdapterFacts facts;
  facts.Adapters = sysinfo::GatherDisplayAdapters();
  facts.Process = sysinfo::GatherProcessFacts();
  facts.LegacyRegistrations = legacyRegistrations;
  facts.ReportRan = seen.Modules.Known && !seen.Renderer.empty();
  facts.Renderer = seen.Renderer;
  if (facts.ReportRan) facts.Class = mOpenGL::Classify(seen.Flags);
  std::vector<std::string> registered;
  for (const auto& adapter : facts.Adapters)
    for (const auto& driver : report::ApplicableDrivers(adapter, facts.Process.Wow64))
      registered.push_back(driver.Registered);
  facts.Loaded = sysinfo::ClassifyOpenGLModules(
      seen.Modules, sysinfo::cFileVersionInfo().SystemDirectory(), registered);
  sysinfo::ReadModuleVersions(facts.Loaded, versions);
  OSVERSIONINFOA answered{};
  answered.dwOSVersionInfoSize = sizeof answered;
  if (GetVersionExA(&answered)) {
    facts.AnsweredMajor = answered.dwMajorVersion;
    facts.AnsweredMinor = answered.dwMinorVersion;
    facts.AnsweredBuild = answered.dwBuildNumber & 0xFFFF;
  }
  facts.RealWindows = sysinfo::CaptureRealWindows();
  facts.ModernOpenGL = modernOpenGL;
  return facts;
}

}  // namespace shell
