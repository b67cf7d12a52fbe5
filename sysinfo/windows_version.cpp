#include "sysinfo/windows_version.h"

#include <cstdlib>

#include "sysinfo/registry.h"

namespace sysinfo {
namespace {

// RTL_OSVERSIONINFOW as the kernel fills it.
struct KernelVersion {
  ULONG size, major, minor, build, platform;
  WCHAR servicePack[128];
};
using RtlGetVersionFn = LONG(WINAPI*)(KernelVersion*);

}  // namespace

RealWindowsFacts CaptureRealWindows() {
  RealWindowsFacts f;
  if (HMODULE ntdll = GetModuleHandleA("ntdll.dll")) {
    auto get = reinterpret_cast<RtlGetVersionFn>(
        reinterpret_cast<void*>(GetProcAddress(ntdll, "RtlGetVersion")));
    KernelVersion v{};
    v.size = sizeof v;
    if (get && get(&v) == 0) f.Major = v.major, f.Minor = v.minor, f.Build = v.build;
  }
  cRegistry key(HKEY_LOCAL_MACHINE, "SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion");
  for (const RegValue& v : key.EnumerateValues().Values) {
    if (v.Name == "ProductName") f.ProductName = v.Data;
    else if (v.Name == "EditionID") f.EditionID = v.Data;
    else if (v.Name == "DisplayVersion") f.DisplayVersion = v.Data;
    else if (v.Name == "ReleaseId") f.ReleaseId = v.Data;
    else if (v.Name == "CurrentBuild") f.CurrentBuild = v.Data;
    else if (v.Name == "UBR" && v.Type == REG_DWORD && v.Raw.size() == sizeof(DWORD))
      f.UBR = *reinterpret_cast<const DWORD*>(v.Raw.data());
  }
  BOOL wow = FALSE;
  using IsWow64ProcessFn = BOOL(WINAPI*)(HANDLE, BOOL*);
  auto isWow = reinterpret_cast<IsWow64ProcessFn>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA("kernel32.dll"), "IsWow64Process")));
  f.Is64Bit = isWow && isWow(GetCurrentProcess(), &wow) && wow;
  return f;
}

std::string RealWindowsLine(const RealWindowsFacts& f) {
  DWORD build = f.Build ? f.Build : static_cast<DWORD>(std::strtoul(f.CurrentBuild.c_str(), nullptr, 10));
  std::string name = f.ProductName;
  if (name.empty()) {
    name = "Windows";
    if (f.Major) name += " " + std::to_string(f.Major) + "." + std::to_string(f.Minor);
    if (!f.EditionID.empty()) name += " " + f.EditionID;
  }
  const std::string ten = "Windows 10";
  if (build >= 22000 && f.Major == 10) {
    size_t at = name.find(ten);
    if (at != std::string::npos) name.replace(at, ten.size(), "Windows 11");
  }
  const std::string& release = f.DisplayVersion.empty() ? f.ReleaseId : f.DisplayVersion;
  if (!release.empty()) name += " " + release;
  std::string details = build ? "build " + std::to_string(build) : "build unknown";
  if (build && f.UBR) details += "." + std::to_string(*f.UBR);
  details += f.Is64Bit ? ", 64-bit" : ", 32-bit";
  return name + " (" + details + ")";
}

}  // namespace sysinfo
