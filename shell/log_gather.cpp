#include "shell/log_gather.h"

#include <windows.h>

#include "gl/mopengl.h"
#include "sysinfo/fileversioninfo.h"
#include "sysinfo/opsysinfo.h"

namespace shell {

std::string LogDateTime() {
  char date[128] = {}, time[128] = {};
  GetDateFormatA(LOCALE_USER_DEFAULT, DATE_SHORTDATE, nullptr, nullptr, date, sizeof date);
  GetTimeFormatA(LOCALE_USER_DEFAULT, 0, nullptr, nullptr, time, sizeof time);
  return std::string(date) + " " + time;
}

report::LogInputs GatherLog(const std::string& versionLabel,
                            const std::vector<std::string>& driverLines,
                            const report::DriverPathList& driverDllPaths,
                            const std::string& reportText) {
  report::LogInputs log;
  log.VersionLabel = versionLabel;
  log.DateTime = LogDateTime();
  log.DriverLines = driverLines;
  for (int i = 1; i <= driverDllPaths.FileCount(); ++i) {
    sysinfo::cFileVersionInfo version;
    version.FullPathName(driverDllPaths.Element(i));
    if (version.Available())
      log.DriverFiles.push_back(
          {version.CompanyName(), version.FileDescription(), version.FileVersion()});
  }
  log.Report = reportText;
  log.GLErrorText = mOpenGL::GetGLErrorText();
  return log;
}

std::vector<std::string> ScanDriverLines(sysinfo::cRegistry& registry,
                                         report::DriverPathList& driverDllPaths) {
  driverDllPaths.CutBack();
  sysinfo::cFileVersionInfo versions;
  report::DriverScanContext context{registry, versions.SystemDirectory(), driverDllPaths,
                                    [](const std::string& path) {
                                      sysinfo::cFileVersionInfo file;
                                      file.FullPathName(path);
                                      return file.Available() ? file.FileVersion()
                                                              : std::string();
                                    },
                                    {}};
  report::DriverScan scan = report::ScanOpenGLDrivers(context, sysinfo::COpSysInfo().IsWinNT());
  registry.Close();
  if (scan.Lines.empty()) return {"No drivers registered"};
  return scan.Lines;
}

}  // namespace shell
