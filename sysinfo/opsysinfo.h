#pragma once
// Operating-system identification: the version record is captured once and
// every text (long name, short code, version, product line) is composed
// from it by plain code.
#include <windows.h>

#include <string>

namespace sysinfo {

// What the system says about its version, as it said it.
struct OsVersionCapture {
  // Basic record (GetVersionExA, 148 bytes); all zero when the call failed.
  DWORD MajorVersion = 0;
  DWORD MinorVersion = 0;
  DWORD BuildNumber = 0;
  DWORD PlatformId = 0;
  std::string CSDVersion;
  // Extended record (156 bytes) as the system filled it; zero when the
  // system has none. Whether it counts is decided by the family rules.
  WORD ServicePackMajor = 0;
  WORD ServicePackMinor = 0;
  WORD SuiteMask = 0;
  BYTE ProductType = 0;
  BYTE Reserved = 0;
  // "ProductType" under HKLM ProductOptions; empty when missing.
  std::string ProductOptions;
};

OsVersionCapture CaptureOsVersion();

class COpSysInfo {
 public:
  COpSysInfo();  // captures from the running system
  explicit COpSysInfo(const OsVersionCapture& captured);

  std::string Platform() const;
  std::string ID() const;
  std::string Version() const;
  std::string ProductID() const;
  std::string ServicePack() const;
  DWORD MajorVersion() const { return v_.MajorVersion; }
  DWORD MinorVersion() const { return v_.MinorVersion; }
  DWORD BuildNumber() const { return v_.BuildNumber; }
  DWORD PlatformID() const { return v_.PlatformId; }
  WORD ServicePackMajor() const { return extended_ ? v_.ServicePackMajor : WORD{0}; }
  WORD ServicePackMinor() const { return extended_ ? v_.ServicePackMinor : WORD{0}; }
  WORD SuiteMask() const { return extended_ ? v_.SuiteMask : WORD{0}; }
  BYTE ProductType() const { return extended_ ? v_.ProductType : BYTE{0}; }
  BYTE Reserved() const { return extended_ ? v_.Reserved : BYTE{0}; }
  bool IsWinNT() const { return nt_; }
  bool IsWinNT4() const { return nt4_; }
  bool IsWin2000() const { return win2000_; }
  bool IsWinXP() const { return xp_; }
  bool IsWin95() const { return win95_; }
  bool IsWin98() const { return win98_; }
  bool IsWinMe() const { return me_; }
  const std::string& CSDVersion() const { return v_.CSDVersion; }

  // The build number as printed: its low 16 bits, signed.
  static int BuildText(DWORD build) { return static_cast<short>(LOWORD(build)); }

 private:
  enum class Words { Long, Short };
  std::string Name(Words words) const;
  std::string Suffix(Words words) const;
  std::string BuildPart() const;

  OsVersionCapture v_;
  bool nt_ = false, nt3_ = false, nt4_ = false, win2000_ = false, xp_ = false;
  bool win95_ = false, win98_ = false, me_ = false;
  bool extended_ = false;  // the extended record counts
};

}  // namespace sysinfo
