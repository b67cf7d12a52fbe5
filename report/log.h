#pragma once
// The log file a support engineer receives: a header, the registered
// drivers with their version data, the report, and the device layer's
// recorded failures.
#include <string>
#include <vector>

namespace report {

struct DriverFileInfo {
  std::string Company, Description, Version;
};

struct LogInputs {
  std::string VersionLabel;  // the text of the version label
  std::string DateTime;
  std::vector<std::string> DriverLines;  // the Drivers list, in order
  std::vector<DriverFileInfo> DriverFiles;  // the driver files with version data
  std::string Report;        // the report box's text as it stands
  std::string GLErrorText;   // empty: no failure was recorded
};

std::string ComposeLog(const LogInputs& in);

}  // namespace report
