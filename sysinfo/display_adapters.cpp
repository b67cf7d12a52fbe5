#include "sysinfo/display_adapters.h"

#include <tlhelp32.h>

#include <algorithm>

#include "sysinfo/fileversioninfo.h"
#include "sysinfo/registry.h"
#include "win32/handle.h"
#include "win32/text.h"

namespace sysinfo {
namespace {

bool StartsWithNoCase(std::string_view text, std::string_view prefix) {
  return text.size() >= prefix.size() && Lower(text.substr(0, prefix.size())) == Lower(prefix);
}

std::string LastPart(std::string_view path) {
  size_t at = path.find_last_of('\\');
  return std::string(at == std::string_view::npos ? path : path.substr(at + 1));
}

std::string StripExtension(std::string name) {
  size_t dot = name.find_last_of('.');
  if (dot != std::string::npos) name.resize(dot);
  return name;
}

std::string VersionOf(const std::string& path) {
  cFileVersionInfo info;
  info.FullPathName(path);
  if (!info.Available()) return {};
  return info.FileVersion().empty() ? info.VerFile() : info.FileVersion();
}

DriverFile InspectDriver(const std::string& registered, std::string_view directory) {
  DriverFile file;
  file.Registered = registered;
  file.Path = ResolveDriverPath(registered, directory);
  file.Exists = GetFileAttributesA(file.Path.c_str()) != INVALID_FILE_ATTRIBUTES;
  if (file.Exists) file.Version = VersionOf(file.Path);
  return file;
}

std::string SystemDirectory() {
  char dir[MAX_PATH] = {};
  UINT n = GetSystemDirectoryA(dir, MAX_PATH);
  return n > 0 && n < MAX_PATH ? std::string(dir, n) : std::string();
}

// Where a 32-bit program on 64-bit Windows reaches the real system
// directory: its own "system32" is redirected to the 32-bit one.
std::string NativeSystemDirectory(bool wow64) {
  if (!wow64) return SystemDirectory();
  char dir[MAX_PATH] = {};
  UINT n = GetWindowsDirectoryA(dir, MAX_PATH);
  return n > 0 && n < MAX_PATH ? std::string(dir, n) + "\\Sysnative" : SystemDirectory();
}

}  // namespace

std::string Lower(std::string_view text) {
  std::string out(text);
  for (char& c : out)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  return out;
}

std::string FileNameOf(std::string_view path) {
  size_t at = path.find_last_of("\\/:");
  return std::string(at == std::string_view::npos ? path : path.substr(at + 1));
}

std::string MachineRelativePath(std::string_view deviceKey) {
  constexpr std::string_view kMachine = "\\Registry\\Machine\\";
  if (!StartsWithNoCase(deviceKey, kMachine)) return {};
  return cRegistry::Normalize(deviceKey.substr(kMachine.size()));
}

std::string ResolveDriverPath(std::string_view registered, std::string_view directory) {
  std::string name = win32::Trim(registered);
  if (name.empty()) return {};
  if (name.find_first_of("\\/:") != std::string::npos) return name;
  if (FileNameOf(name).find('.') == std::string::npos) name += ".dll";
  return std::string(directory) + "\\" + name;
}

std::string ChooseClassSubkey(const std::vector<ClassEntry>& entries, std::string_view description,
                              std::string_view videoKey) {
  const ClassEntry* match = nullptr;
  int matches = 0;
  for (const ClassEntry& e : entries)
    if (!description.empty() && Lower(e.DriverDesc) == Lower(description)) {
      match = &e;
      ++matches;
    }
  if (matches == 1) return match->Subkey;
  std::string number = LastPart(videoKey);
  for (const ClassEntry& e : entries)
    if (!number.empty() && e.Subkey == number &&
        (matches == 0 || Lower(e.DriverDesc) == Lower(description)))
      return e.Subkey;
  return {};
}

AdapterKeyValues MergeKeyValues(AdapterKeyValues primary, const AdapterKeyValues& fallback) {
  auto fill = [](auto& field, const auto& other) {
    if (field.empty()) field = other;
  };
  primary.Found = primary.Found || fallback.Found;
  fill(primary.DriverDesc, fallback.DriverDesc);
  fill(primary.ProviderName, fallback.ProviderName);
  fill(primary.DriverVersion, fallback.DriverVersion);
  fill(primary.DriverDate, fallback.DriverDate);
  fill(primary.OpenGL, fallback.OpenGL);
  fill(primary.OpenGLWow, fallback.OpenGLWow);
  return primary;
}

AdapterKeyValues ReadAdapterKey(HKEY root, std::string_view path, std::string_view nativeDirectory,
                                std::string_view wowDirectory) {
  AdapterKeyValues v;
  cRegistry reg(root, path);
  if (path.empty() || !reg.KeyExists()) return v;
  v.Found = true;
  v.DriverDesc = reg.Value("DriverDesc").value_or("");
  v.ProviderName = reg.Value("ProviderName").value_or("");
  v.DriverVersion = reg.Value("DriverVersion").value_or("");
  v.DriverDate = reg.Value("DriverDate").value_or("");
  for (const std::string& name : reg.Strings("OpenGLDriverName"))
    v.OpenGL.push_back(InspectDriver(name, nativeDirectory));
  for (const std::string& name : reg.Strings("OpenGLDriverNameWow"))
    v.OpenGLWow.push_back(InspectDriver(name, wowDirectory));
  return v;
}

std::vector<ClassEntry> ReadClassEntries(HKEY root, std::string_view classKey) {
  std::vector<ClassEntry> entries;
  cRegistry reg(root, classKey);
  for (const std::string& sub : reg.EnumerateSections().Names) {
    cRegistry one(root, std::string(classKey) + "\\" + sub);
    entries.push_back({sub, one.Value("DriverDesc").value_or("")});
  }
  return entries;
}

std::vector<DisplayAdapter> GatherDisplayAdapters(HKEY root, std::string_view classKey) {
  std::vector<DisplayAdapter> adapters;
  const bool wow64 = GatherProcessFacts().Wow64;
  const std::string native = NativeSystemDirectory(wow64), system = SystemDirectory();
  std::vector<ClassEntry> entries;
  bool entriesRead = false;
  DISPLAY_DEVICEA device{};
  device.cb = sizeof device;
  for (DWORD i = 0; EnumDisplayDevicesA(nullptr, i, &device, 0); ++i) {
    // The structure's strings are fixed arrays; cut them at their size.
    auto text = [](const char* s, size_t n) { return std::string(s, strnlen(s, n)); };
    DisplayAdapter a;
    a.DeviceName = text(device.DeviceName, sizeof device.DeviceName);
    a.Description = text(device.DeviceString, sizeof device.DeviceString);
    a.DeviceKey = text(device.DeviceKey, sizeof device.DeviceKey);
    a.Primary = (device.StateFlags & DISPLAY_DEVICE_PRIMARY_DEVICE) != 0;
    a.Attached = (device.StateFlags & DISPLAY_DEVICE_ATTACHED_TO_DESKTOP) != 0;
    a.VideoKey = MachineRelativePath(a.DeviceKey);
    if (!entriesRead) {
      entries = ReadClassEntries(root, classKey);
      entriesRead = true;
    }
    std::string sub = ChooseClassSubkey(entries, a.Description, a.VideoKey);
    if (!sub.empty()) a.ClassKey = std::string(classKey) + "\\" + sub;
    a.Values = MergeKeyValues(ReadAdapterKey(root, a.ClassKey, native, system),
                              ReadAdapterKey(root, a.VideoKey, native, system));
    adapters.push_back(std::move(a));
    device = {};
    device.cb = sizeof device;
  }
  return adapters;
}

ProcessFacts GatherProcessFacts() {
  ProcessFacts facts;
  // Looked up at run time: older systems have no IsWow64Process.
  using IsWow64Fn = BOOL(WINAPI*)(HANDLE, PBOOL);
  auto isWow64 = reinterpret_cast<IsWow64Fn>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA("kernel32.dll"), "IsWow64Process")));
  BOOL wow = FALSE;
  facts.Wow64 = isWow64 && isWow64(GetCurrentProcess(), &wow) && wow;
  facts.RemoteSession = GetSystemMetrics(SM_REMOTESESSION) != 0;
  return facts;
}

// The loader's own list through kernel32's K32EnumProcessModules where
// Windows has it (7 and later): a tool-help snapshot costs a round trip per
// module under some systems and is taken only where that call is missing.
std::vector<std::string> LoadedModulePaths() {
  std::vector<std::string> paths;
  using EnumModules = BOOL(WINAPI*)(HANDLE, HMODULE*, DWORD, DWORD*);
  auto enumModules = reinterpret_cast<EnumModules>(reinterpret_cast<void*>(
      GetProcAddress(GetModuleHandleA("kernel32.dll"), "K32EnumProcessModules")));
  if (enumModules) {
    std::vector<HMODULE> modules(256);
    DWORD needed = 0;
    while (enumModules(GetCurrentProcess(), modules.data(),
                       static_cast<DWORD>(modules.size() * sizeof(HMODULE)), &needed) &&
           needed > modules.size() * sizeof(HMODULE))
      modules.resize(needed / sizeof(HMODULE));
    if (needed) {
      modules.resize(std::min<size_t>(modules.size(), needed / sizeof(HMODULE)));
      for (HMODULE m : modules) {
        char path[MAX_PATH * 2] = {};
        DWORD n = GetModuleFileNameA(m, path, sizeof path);
        if (n > 0 && n < sizeof path) paths.emplace_back(path, n);
      }
      return paths;
    }
  }
  win32::File snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPMODULE, 0));
  if (!snapshot) return paths;
  MODULEENTRY32 entry{};
  entry.dwSize = sizeof entry;
  for (BOOL ok = Module32First(snapshot.get(), &entry); ok; ok = Module32Next(snapshot.get(), &entry))
    paths.emplace_back(entry.szExePath, strnlen(entry.szExePath, sizeof entry.szExePath));
  return paths;
}

LoadedOpenGL ClassifyOpenGLModules(const ContextModules& modules, std::string_view systemDirectory,
                                   const std::vector<std::string>& registeredNames) {
  LoadedOpenGL result;
  result.Known = modules.Known;
  if (!modules.Known) return result;
  // A 32-bit program on 64-bit Windows sees the system's copy in SysWOW64.
  auto isGeneric = [system = Lower(systemDirectory)](const std::string& lower) {
    if (FileNameOf(lower) != "opengl32.dll") return false;
    std::string dir = lower.substr(0, lower.size() - std::string_view("\\opengl32.dll").size());
    return dir == system || (dir.size() >= 9 && dir.substr(dir.size() - 9) == "\\syswow64");
  };
  std::vector<std::string> registered;
  for (const std::string& name : registeredNames)
    registered.push_back(Lower(StripExtension(FileNameOf(win32::Trim(name)))));
  std::vector<std::string> before;
  for (const std::string& p : modules.Before) before.push_back(Lower(p));
  // Name parts of the OpenGL drivers graphics vendors ship and of
  // drop-in OpenGL libraries.
  constexpr std::string_view kHints[] = {"ogl", "icd", "opengl", "mesa", "gldrv"};
  for (const std::string& path : modules.After) {
    const std::string lower = Lower(path);
    LoadedModule m{path, std::find(before.begin(), before.end(), lower) == before.end(), {}};
    if (isGeneric(lower)) {
      result.Generic.push_back(m);
      continue;
    }
    const std::string base = StripExtension(FileNameOf(lower));
    bool named = std::find(registered.begin(), registered.end(), base) != registered.end();
    bool hinted = std::any_of(std::begin(kHints), std::end(kHints),
                              [&](std::string_view h) { return base.find(h) != std::string::npos; });
    if (named || hinted) result.Icds.push_back(m);
  }
  return result;
}

void ReadModuleVersions(LoadedOpenGL& loaded, std::map<std::string, std::string>* known) {
  for (auto* list : {&loaded.Generic, &loaded.Icds})
    for (LoadedModule& m : *list) {
      if (known) {
        auto at = known->find(Lower(m.Path));
        if (at == known->end()) at = known->emplace(Lower(m.Path), VersionOf(m.Path)).first;
        m.Version = at->second;
      } else {
        m.Version = VersionOf(m.Path);
      }
    }
}

}  // namespace sysinfo
