#pragma once
// The display adapters Windows lists and the OpenGL driver each one's own
// registry key names (on Vista and later the driver is registered there,
// not under the legacy OpenGL driver keys); the OpenGL modules loaded in
// this process; and the few facts about the process that decide which
// driver applies. Gathering is split from the pure pieces that tests call.
#include <windows.h>

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace sysinfo {

// The display device class key under HKEY_LOCAL_MACHINE.
inline constexpr char kDisplayClassKey[] =
    "SYSTEM\\CurrentControlSet\\Control\\Class\\{4d36e968-e325-11ce-bfc1-08002be10318}";

struct DriverFile {
  std::string Registered;  // as the key names it
  std::string Path;        // full path it resolves to
  bool Exists = false;
  std::string Version;  // the file version, empty when it has none
};

// The values of one adapter key; every field empty when it is missing.
struct AdapterKeyValues {
  bool Found = false;  // the key could be opened
  std::string DriverDesc, ProviderName, DriverVersion, DriverDate;
  std::vector<DriverFile> OpenGL;     // OpenGLDriverName
  std::vector<DriverFile> OpenGLWow;  // OpenGLDriverNameWow (32-bit programs on 64-bit Windows)
};

struct DisplayAdapter {
  std::string DeviceName;   // "\\.\DISPLAY1"
  std::string Description;  // "Wine Adapter"
  std::string DeviceKey;    // as EnumDisplayDevicesA gives it
  bool Primary = false;
  bool Attached = false;
  std::string VideoKey;  // DeviceKey below HKEY_LOCAL_MACHINE
  std::string ClassKey;  // the display class key chosen for it, or empty
  AdapterKeyValues Values;  // class key's values, the video key's where it has none
};

struct ClassEntry {
  std::string Subkey;      // "0000"
  std::string DriverDesc;  // its description
};

// The path below HKEY_LOCAL_MACHINE of a "\Registry\Machine\..." key; an
// empty text for keys of other roots.
std::string MachineRelativePath(std::string_view deviceKey);

// A registered driver name as a file path: full paths stay; a bare name is
// looked up in `directory`, with ".dll" added when it has no extension.
std::string ResolveDriverPath(std::string_view registered, std::string_view directory);

// The class subkey of an adapter: the one whose description equals the
// adapter's, the one with the video key's number when several or none do.
std::string ChooseClassSubkey(const std::vector<ClassEntry>& entries, std::string_view description,
                              std::string_view videoKey);

// Fills the fields `primary` lacks from `fallback`.
AdapterKeyValues MergeKeyValues(AdapterKeyValues primary, const AdapterKeyValues& fallback);

// Reads one adapter key. Bare driver names are looked up in `nativeDirectory`
// (OpenGLDriverName) and `wowDirectory` (OpenGLDriverNameWow); each named
// file is checked and its version read.
AdapterKeyValues ReadAdapterKey(HKEY root, std::string_view path, std::string_view nativeDirectory,
                                std::string_view wowDirectory);
// The subkeys of a class key with their descriptions.
std::vector<ClassEntry> ReadClassEntries(HKEY root, std::string_view classKey);

// Every adapter EnumDisplayDevicesA lists with what its keys say.
std::vector<DisplayAdapter> GatherDisplayAdapters(HKEY root = HKEY_LOCAL_MACHINE,
                                                  std::string_view classKey = kDisplayClassKey);

struct ProcessFacts {
  bool Wow64 = false;          // a 32-bit program on 64-bit Windows
  bool RemoteSession = false;  // GetSystemMetrics(SM_REMOTESESSION)
};
ProcessFacts GatherProcessFacts();

// Full paths of the modules loaded in this process, through a tool-help
// snapshot (kernel32 alone, so the program keeps to system DLLs).
std::vector<std::string> LoadedModulePaths();

// The module lists taken just before and after the report's context was made.
struct ContextModules {
  bool Known = false;
  std::vector<std::string> Before, After;
};

struct LoadedModule {
  std::string Path;
  bool NewWithContext = false;  // not loaded before the context was made
  std::string Version;          // filled by ReadModuleVersions
};

struct LoadedOpenGL {
  bool Known = false;
  std::vector<LoadedModule> Generic;  // the system's own opengl32.dll
  std::vector<LoadedModule> Icds;     // any other OpenGL module: the driver chosen
};

// Sorts the modules loaded after the context: the system directory's
// opengl32.dll is the generic implementation; modules named like a
// registered driver, or OpenGL-like by name, are ICDs. Paths compare
// without regard to case.
LoadedOpenGL ClassifyOpenGLModules(const ContextModules& modules, std::string_view systemDirectory,
                                   const std::vector<std::string>& registeredNames);

// Reads the file version of every module found. A loaded module's file
// cannot change while it is loaded, so versions already read are taken
// from `known` (path -> version) when given, and new ones added to it.
void ReadModuleVersions(LoadedOpenGL& loaded, std::map<std::string, std::string>* known = nullptr);

std::string FileNameOf(std::string_view path);
std::string Lower(std::string_view text);

}  // namespace sysinfo
