#include "report/log.h"

namespace report {
namespace {

const std::string kRule = std::string(60, '=') + "\r\n";

// Every line of the file ends with CR LF; a text that already does is not
// given another.
std::string Lines(const std::string& text) {
  if (text.size() >= 2 && text.compare(text.size() - 2, 2, "\r\n") == 0) return text;
  return text + "\r\n";
}

}  // namespace

std::string ComposeLog(const LogInputs& in) {
  // NOTE: the header line carries an extra CR before its line end.
  std::string log = "Velmora LogFile " + in.VersionLabel + " " + in.DateTime + "\r" + "\r\n";
  log += kRule;
  for (const std::string& line : in.DriverLines) {
    size_t colon = line.find(':');
    log += "Driver Registry:" + (colon == std::string::npos ? line : line.substr(colon + 1)) + "\r\n";
  }
  for (const DriverFileInfo& f : in.DriverFiles) {
    log += "Driver Company: " + f.Company + "\r\n";
    log += "Driver Description: " + f.Description + "\r\n";
    log += "Driver Version: " + f.Version + "\r\n";
  }
  log += kRule;
  log += Lines(in.Report);
  if (!in.GLErrorText.empty()) {
    log += kRule;
    log += Lines(in.GLErrorText);
  }
  return log;
}

}  // namespace report
