#include "sysinfo/opsysinfo.h"

#include <cstring>

#include "sysinfo/registry.h"
#include "win32/text.h"

namespace sysinfo {
namespace {

constexpr char kProductOptionsKey[] = "SYSTEM\\CurrentControlSet\\Control\\ProductOptions";
constexpr WORD kSuiteEnterprise = 0x2;
constexpr WORD kSuiteDataCenter = 0x80;
constexpr WORD kSuitePersonal = 0x200;

static_assert(sizeof(OSVERSIONINFOA) == 148 && sizeof(OSVERSIONINFOEXA) == 156);

}  // namespace

OsVersionCapture CaptureOsVersion() {
  OsVersionCapture c;
  OSVERSIONINFOA basic{};
  basic.dwOSVersionInfoSize = sizeof basic;
  if (!GetVersionExA(&basic)) return c;
  c.MajorVersion = basic.dwMajorVersion;
  c.MinorVersion = basic.dwMinorVersion;
  c.BuildNumber = basic.dwBuildNumber;
  c.PlatformId = basic.dwPlatformId;
  c.CSDVersion.assign(basic.szCSDVersion, strnlen(basic.szCSDVersion, sizeof basic.szCSDVersion));

  // Systems before NT 4 SP6 refuse the extended size; the fields stay 0.
  OSVERSIONINFOEXA ex{};
  ex.dwOSVersionInfoSize = sizeof ex;
  if (GetVersionExA(reinterpret_cast<OSVERSIONINFOA*>(&ex))) {
    c.ServicePackMajor = ex.wServicePackMajor;
    c.ServicePackMinor = ex.wServicePackMinor;
    c.SuiteMask = ex.wSuiteMask;
    c.ProductType = ex.wProductType;
    c.Reserved = ex.wReserved;
  }
  c.ProductOptions =
      ReadStringValue(HKEY_LOCAL_MACHINE, kProductOptionsKey, "ProductType").value_or("");
  return c;
}

COpSysInfo::COpSysInfo() : COpSysInfo(CaptureOsVersion()) {}

COpSysInfo::COpSysInfo(const OsVersionCapture& captured) : v_(captured) {
  if (v_.PlatformId == VER_PLATFORM_WIN32_WINDOWS) {
    win95_ = v_.MinorVersion < 10;
    win98_ = v_.MinorVersion >= 10 && v_.MinorVersion < 90;
    me_ = v_.MinorVersion >= 90;
  } else if (v_.PlatformId == VER_PLATFORM_WIN32_NT) {
    nt_ = true;
    if (v_.MajorVersion < 4) {
      nt3_ = true;
    } else if (v_.MajorVersion == 4) {
      // NOTE: NT 4 would take the extended record when its service-pack
      // major number is above 0, but that number is looked at before the
      // record is read, so it is always 0 here: NT 4 never uses the
      // extended record, not even on service pack 6.
      nt4_ = true;
    } else {
      win2000_ = v_.MinorVersion < 1;
      xp_ = !win2000_;
      extended_ = true;
    }
  }
}

std::string COpSysInfo::Name(Words words) const {
  const bool lng = words == Words::Long;
  const std::string& csd = v_.CSDVersion;
  // 9x systems pad the letter with blanks (" A "); the letter decides.
  const std::string letter = win32::Trim(csd);
  if (win95_) {
    if (letter.empty()) return lng ? "Windows 95 " : "Win95 ";
    if (letter == "A") return lng ? "Windows 95 OEM " : "Win95a ";
    if (letter == "B") return lng ? "Windows 95 OSR1 " : "Win95b ";
    if (letter == "C") return lng ? "Windows 95 OSR2 " : "Win95c ";
    return lng ? "Windows 95 " + csd + " " : "Win95_" + csd + " ";
  }
  if (win98_) {
    if (letter.empty()) return lng ? "Windows 98 " : "Win98 ";
    if (letter == "A") return lng ? "Windows 98 SE " : "Win98SE ";
    return lng ? "Windows 98 " + csd + " " : "Win98_" + csd + " ";
  }
  if (me_) return lng ? "Windows Me " + csd + " " : "WinME_" + csd + " ";
  if (nt3_) return lng ? "Windows NT " : "WinNT3 ";
  if (nt4_) return lng ? "Windows NT " : "WinNT4 ";
  if (win2000_) return lng ? "Windows 2000 " : "Win2k ";
  if (xp_) return lng ? "Windows XP " : "WinXP ";
  return lng ? "Unknown Windows " : "Win ";
}

std::string COpSysInfo::Suffix(Words words) const {
  if (!nt_) return {};
  const bool lng = words == Words::Long;
  const WORD suite = SuiteMask();
  switch (ProductType()) {
    case 0: {
      const std::string options = win32::Upper(v_.ProductOptions);
      if (options == "WINNT") return lng ? "Workstation " : "WS ";
      if (options == "SERVERNT") return lng ? "Server " : "S ";
      return {};
    }
    case VER_NT_WORKSTATION:
      if (suite & kSuitePersonal) return lng ? "Home Version " : "Home ";
      return lng ? "Professional Version " : "Pro ";
    case VER_NT_DOMAIN_CONTROLLER: return lng ? "Domain Controller " : "DC ";
    case VER_NT_SERVER:
      if (suite & kSuiteDataCenter) return lng ? "DataCenter Server " : "DS ";
      if (suite & kSuiteEnterprise) return lng ? "Advanced Server " : "AS ";
      return lng ? "Server " : "S ";
    default: return {};
  }
}

std::string COpSysInfo::BuildPart() const {
  return " (Build " + std::to_string(BuildText(v_.BuildNumber)) + ")";
}

std::string COpSysInfo::Platform() const { return Name(Words::Long) + Suffix(Words::Long); }

std::string COpSysInfo::ID() const { return Name(Words::Short) + Suffix(Words::Short); }

std::string COpSysInfo::Version() const {
  if (!nt_) return {};
  if (nt3_ || nt4_) {
    // NOTE: no blank between the minor number and the service-pack text.
    return "v" + std::to_string(v_.MajorVersion) + "." + std::to_string(v_.MinorVersion) +
           v_.CSDVersion + BuildPart();
  }
  return v_.CSDVersion + BuildPart();
}

std::string COpSysInfo::ProductID() const {
  if (nt_ && extended_) return Platform() + v_.CSDVersion + BuildPart();
  if (nt3_ || nt4_) {
    return Platform() + "v" + std::to_string(v_.MajorVersion) + "." +
           std::to_string(v_.MinorVersion) + " " + v_.CSDVersion + BuildPart();
  }
  return Platform();
}

std::string COpSysInfo::ServicePack() const {
  if (!nt_ || !extended_) return {};
  return "v" + std::to_string(v_.ServicePackMajor) + "." + std::to_string(v_.ServicePackMinor);
}

}  // namespace sysinfo
