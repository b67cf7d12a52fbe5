#pragma once
// The scan of the OpenGL drivers registered with Windows: one list line per
// registration and the full paths of the driver DLLs.
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "sysinfo/registry.h"

namespace report {

// The driver DLL paths, numbered from 1. A new scan cuts the list back to
// its first element, which keeps what it held: pressing the scan twice
// therefore lists the first path of the earlier scan again.
class DriverPathList {
 public:
  void CutBack() { paths_.resize(1); }
  void Add(const std::string& path);
  int UpperBound() const { return static_cast<int>(paths_.size()); }
  const std::string& Element(int index) const { return paths_.at(static_cast<size_t>(index - 1)); }
  // How many elements name a driver file: the upper bound, except that a
  // single empty element counts as none.
  int FileCount() const;

 private:
  std::vector<std::string> paths_{std::string()};
};

struct DriverScan {
  std::vector<std::string> Lines;
  std::vector<int> TabStops;  // in characters; the last pair set wins
};

// System directory + "\" + the DLL name in capitals + ".DLL".
std::string DriverDllPath(std::string_view systemDirectory, std::string_view dllName);
// Tab positions for a key's lines: prefix length + 8, then that plus the
// longest value-name length (10 when there is none).
std::vector<int> DriverTabStops(std::string_view prefix, size_t longestName);

struct DriverScanContext {
  sysinfo::cRegistry& Registry;
  std::string SystemDirectory;
  DriverPathList& Paths;
  // The file version of a DLL, empty when it has none.
  std::function<std::string(const std::string& path)> FileVersionOf;
  // Called before a key's values are read, when progress is to be shown.
  std::function<void(HKEY handle, const std::string& key)> Progress;
};

// Scans the driver keys of the NT family or of the 9x family, both
// spellings, under HKEY_LOCAL_MACHINE.
DriverScan ScanOpenGLDrivers(DriverScanContext& context, bool isWinNT);

}  // namespace report
