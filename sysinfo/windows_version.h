#pragma once
// The Windows the machine really runs. GetVersionExA answers a program
// without a newer compatibility declaration as an older Windows (the report
// keeps that answer); the kernel's own version call and the CurrentVersion
// key tell the truth.
#include <windows.h>

#include <optional>
#include <string>

namespace sysinfo {

struct RealWindowsFacts {
  DWORD Major = 0, Minor = 0, Build = 0;  // from RtlGetVersion; 0 when it is missing
  std::string ProductName, EditionID, DisplayVersion, ReleaseId, CurrentBuild;
  std::optional<DWORD> UBR;  // the update build revision
  bool Is64Bit = false;      // the Windows, not this 32-bit program
};

RealWindowsFacts CaptureRealWindows();

// One line such as "Windows 11 Pro 23H2 (build 22631.2861, 64-bit)".
// Windows 11 is named from its build (22000 and later), since its product
// name still says Windows 10.
std::string RealWindowsLine(const RealWindowsFacts& f);

}  // namespace sysinfo
