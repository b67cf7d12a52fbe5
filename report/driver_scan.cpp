#include "report/driver_scan.h"

namespace report {
namespace {

void ScanKey(DriverScanContext& c, const std::string& key, const std::string& prefix,
             DriverScan& scan) {
  sysinfo::cRegistry& reg = c.Registry;
  reg.ClassKey(HKEY_LOCAL_MACHINE);
  reg.SectionKey(key);
  if (!reg.KeyExists()) return;
  if (c.Progress) c.Progress(reg.KeyHandle(), key);

  // Every string value names a driver DLL; values of other types are skipped.
  auto addValues = [&](const sysinfo::RegValues& values, const std::string& linePrefix,
                       const std::string* subKey) {
    if (values.Count() == 0) return;
    scan.TabStops = DriverTabStops(prefix, values.LongestNameLength);
    for (const auto& v : values.Values) {
      if (v.Type != REG_SZ) continue;
      std::string path = DriverDllPath(c.SystemDirectory, v.Data);
      c.Paths.Add(path);
      std::string version = c.FileVersionOf ? c.FileVersionOf(path) : std::string();
      // NOTE: the version read for a value directly in the key is not shown.
      std::string line = linePrefix + "\t" + v.Name + "\t" + v.Data;
      if (subKey) line += "\t" + version;
      scan.Lines.push_back(line);
    }
  };

  addValues(reg.EnumerateValues(), prefix, nullptr);
  for (const std::string& sub : reg.EnumerateSections().Names) {
    reg.SectionKey(key + "\\" + sub);
    addValues(reg.EnumerateValues(), prefix + sub, &sub);
  }
  reg.Close();
}

}  // namespace

void DriverPathList::Add(const std::string& path) {
  if (paths_.size() == 1 && paths_[0].empty())
    paths_[0] = path;
  else
    paths_.push_back(path);
}

int DriverPathList::FileCount() const {
  if (paths_.size() == 1) return paths_[0].empty() ? 0 : 1;
  return UpperBound();
}

std::string DriverDllPath(std::string_view systemDirectory, std::string_view dllName) {
  std::string name(dllName);
  for (char& ch : name)
    if (ch >= 'a' && ch <= 'z') ch = static_cast<char>(ch - 'a' + 'A');
  return std::string(systemDirectory) + "\\" + name + ".DLL";
}

std::vector<int> DriverTabStops(std::string_view prefix, size_t longestName) {
  int first = static_cast<int>(prefix.size()) + 8;
  int second = first + (longestName < 1 ? 10 : static_cast<int>(longestName));
  return {first, second};
}

DriverScan ScanOpenGLDrivers(DriverScanContext& context, bool isWinNT) {
  DriverScan scan;
  const std::string base = isWinNT ? "Software\\Microsoft\\Windows NT\\CurrentVersion\\"
                                   : "Software\\Microsoft\\Windows\\CurrentVersion\\";
  const std::string prefix = isWinNT ? "Windows NT: " : "Windows: ";
  ScanKey(context, base + "OpenGLDrivers", prefix, scan);
  ScanKey(context, base + "OpenGL Drivers", prefix, scan);
  return scan;
}

}  // namespace report
