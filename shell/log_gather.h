#pragma once
// What Save Log gathers besides the report: the header's version and time,
// the Drivers list, the version data of the driver files and the device
// layer's recorded failures. The main window and VelmoraCheck.exe both
// gather through here, so that they write the same log.
#include <string>
#include <vector>

#include "report/driver_scan.h"
#include "report/log.h"
#include "sysinfo/registry.h"

namespace shell {

// The date and time in the user's own short formats.
std::string LogDateTime();

// `driverLines` as the Drivers list shows them after a fresh scan.
report::LogInputs GatherLog(const std::string& versionLabel,
                            const std::vector<std::string>& driverLines,
                            const report::DriverPathList& driverDllPaths,
                            const std::string& reportText);

// The Drivers list's lines for a scan without a list box: what the scan
// found, or the one line "No drivers registered".
std::vector<std::string> ScanDriverLines(sysinfo::cRegistry& registry,
                                         report::DriverPathList& driverDllPaths);

}  // namespace shell
