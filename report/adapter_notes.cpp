#include "report/adapter_notes.h"

#include <algorithm>
#include <string_view>

namespace report {
namespace {

using sysinfo::DisplayAdapter;
using sysinfo::DriverFile;
using sysinfo::Lower;

enum class AdapterKind { Hardware, Basic, Virtual };

// Descriptions (parts, lower case) of Windows' own fallback adapters and
// of the adapters virtual machines and remote sessions emulate.
constexpr struct {
  std::string_view Part;
  AdapterKind Kind;
} kAdapterKinds[] = {
    {"microsoft basic display", AdapterKind::Basic},
    {"microsoft basic render", AdapterKind::Basic},
    {"standard vga", AdapterKind::Basic},
    {"vga compatible", AdapterKind::Basic},
    {"vmware", AdapterKind::Virtual},
    {"virtualbox", AdapterKind::Virtual},
    {"hyper-v", AdapterKind::Virtual},
    {"qxl", AdapterKind::Virtual},
    {"virtio", AdapterKind::Virtual},
    {"parallels", AdapterKind::Virtual},
    {"citrix", AdapterKind::Virtual},
    {"remote display adapter", AdapterKind::Virtual},
    {"bochs", AdapterKind::Virtual},
};

// Renderer names of software rasterisers.
constexpr std::string_view kSoftwareRenderers[] = {"gdi generic", "llvmpipe", "softpipe", "swrast",
                                                   "swiftshader"};

bool Contains(std::string_view text, std::string_view part) {
  return Lower(text).find(part) != std::string::npos;
}

AdapterKind KindOf(const DisplayAdapter& a) {
  for (const auto& k : kAdapterKinds)
    if (Contains(a.Description, k.Part)) return k.Kind;
  return AdapterKind::Hardware;
}

std::string Quoted(std::string_view s) { return "\"" + std::string(s) + "\""; }

bool HasOpenGLDriver(const DisplayAdapter& a) {
  return !a.Values.OpenGL.empty() || !a.Values.OpenGLWow.empty();
}

std::string BaseName(std::string_view path) {
  std::string name = Lower(sysinfo::FileNameOf(path));
  size_t dot = name.find_last_of('.');
  return dot == std::string::npos ? name : name.substr(0, dot);
}

std::string JoinQuoted(const std::vector<std::string>& items) {
  std::string out;
  for (const std::string& s : items) out += (out.empty() ? "" : ", ") + Quoted(s);
  return out;
}

void Remote(const AdapterFacts& f, std::vector<std::string>& notes) {
  if (!f.Process.RemoteSession) return;
  notes.push_back(
      "This is a remote session: Windows draws OpenGL for it in software or with the remote "
      "session's own driver, not with the graphics card. Run VORA at the computer itself.");
}

void Software(const AdapterFacts& f, std::vector<std::string>& notes) {
  if (!f.ReportRan) return;
  bool softwareName = std::any_of(std::begin(kSoftwareRenderers), std::end(kSoftwareRenderers),
                                  [&](std::string_view n) { return Contains(f.Renderer, n); });
  if (!softwareName && f.Class != FormatClass::Generic) return;
  notes.push_back("OpenGL runs in software here (renderer " + Quoted(f.Renderer) +
                  "): VORA will draw slowly. Install the current driver from the graphics "
                  "card's maker, then check again.");
}

void AdapterKinds(const AdapterFacts& f, std::vector<std::string>& notes) {
  std::vector<std::string> seen;
  for (const DisplayAdapter& a : f.Adapters) {
    if (std::find(seen.begin(), seen.end(), a.Description) != seen.end()) continue;
    seen.push_back(a.Description);
    switch (KindOf(a)) {
      case AdapterKind::Basic:
        notes.push_back(Quoted(a.Description) +
                        " is Windows' basic display driver: the graphics card's own driver is "
                        "not installed, so there is no hardware OpenGL. Install the driver from "
                        "the graphics card's maker.");
        break;
      case AdapterKind::Virtual:
        notes.push_back(Quoted(a.Description) +
                        " is the display adapter of a virtual machine or remote session: OpenGL "
                        "is emulated or drawn in software. Turn on 3D acceleration in the "
                        "virtual machine's settings, or run VORA on a physical computer.");
        break;
      case AdapterKind::Hardware:
        break;
    }
  }
}

void Hybrid(const AdapterFacts& f, std::vector<std::string>& notes) {
  // An adapter drives the desktop or brings an OpenGL driver; the second
  // GPU of a notebook often drives no screen of its own.
  std::vector<std::string> active;
  for (const DisplayAdapter& a : f.Adapters)
    if ((a.Attached || HasOpenGLDriver(a)) && KindOf(a) == AdapterKind::Hardware &&
        std::find(active.begin(), active.end(), a.Description) == active.end())
      active.push_back(a.Description);
  if (active.size() < 2) return;
  notes.push_back("This computer has more than one graphics adapter (" + JoinQuoted(active) +
                  "): Windows may run VORA on another one than the one checked here. Choose "
                  "the GPU for VORA and Velmora in Windows' graphics settings or the card "
                  "maker's control panel.");
}

void MissingFiles(const AdapterFacts& f, std::vector<std::string>& notes) {
  std::vector<std::string> seen;
  for (const DisplayAdapter& a : f.Adapters)
    for (const auto* list : {&a.Values.OpenGL, &a.Values.OpenGLWow})
      for (const DriverFile& d : *list) {
        if (d.Exists || std::find(seen.begin(), seen.end(), d.Path) != seen.end()) continue;
        seen.push_back(d.Path);
        notes.push_back("The OpenGL driver file " + Quoted(d.Path) + " that " +
                        Quoted(a.Description) +
                        " names is missing: the driver installation is damaged. Reinstall the "
                        "graphics driver.");
      }
}

void WowMissing(const AdapterFacts& f, std::vector<std::string>& notes) {
  if (!f.Process.Wow64) return;
  std::vector<std::string> seen;
  for (const DisplayAdapter& a : f.Adapters) {
    if (a.Values.OpenGL.empty() || !a.Values.OpenGLWow.empty()) continue;
    if (std::find(seen.begin(), seen.end(), a.Description) != seen.end()) continue;
    seen.push_back(a.Description);
    notes.push_back(Quoted(a.Description) +
                    " registers no 32-bit OpenGL driver: 32-bit programs like this one get only "
                    "software OpenGL. Install the complete driver package from the graphics "
                    "card's maker, with its 32-bit parts.");
  }
}

void LoadedDiffers(const AdapterFacts& f, std::vector<std::string>& notes) {
  if (!f.ReportRan || !f.Loaded.Known) return;
  std::vector<std::string> registered;
  for (const DisplayAdapter& a : f.Adapters)
    for (const DriverFile& d : ApplicableDrivers(a, f.Process.Wow64))
      if (std::find(registered.begin(), registered.end(), d.Registered) == registered.end())
        registered.push_back(d.Registered);
  if (registered.empty()) return;
  auto isRegistered = [&](const sysinfo::LoadedModule& m) {
    return std::any_of(registered.begin(), registered.end(),
                       [&](const std::string& r) { return BaseName(r) == BaseName(m.Path); });
  };
  if (f.Loaded.Icds.empty()) {
    if (f.Class != FormatClass::Generic) return;
    notes.push_back("Windows did not load the registered OpenGL driver (" + JoinQuoted(registered) +
                    ") for this program: its generic OpenGL ran instead. Reinstall the graphics "
                    "driver, or check that the screen is connected to the graphics card.");
    return;
  }
  if (std::any_of(f.Loaded.Icds.begin(), f.Loaded.Icds.end(), isRegistered)) return;
  notes.push_back("The OpenGL driver that ran (" + Quoted(f.Loaded.Icds.front().Path) +
                  ") is not the one the display adapters register (" + JoinQuoted(registered) +
                  "): an old driver or another GPU's driver is in use. Update the graphics "
                  "driver, or choose the GPU for VORA in Windows' graphics settings.");
}

void NoDriver(const AdapterFacts& f, std::vector<std::string>& notes) {
  if (f.LegacyRegistrations > 0) return;
  if (std::any_of(f.Adapters.begin(), f.Adapters.end(), HasOpenGLDriver)) return;
  notes.push_back(
      "No display adapter names an OpenGL driver: only Windows' own generic OpenGL is "
      "available, which draws in software. Install the driver from the graphics card's maker.");
}

// The names of the versions GetVersionExA answers with.
std::string AnsweredName(DWORD major, DWORD minor) {
  static const struct {
    DWORD major, minor;
    const char* name;
  } kNames[] = {{5, 0, "Windows 2000"}, {5, 1, "Windows XP"}, {5, 2, "Windows XP x64"},
                {6, 0, "Windows Vista"}, {6, 1, "Windows 7"},   {6, 2, "Windows 8"},
                {6, 3, "Windows 8.1"},   {10, 0, "Windows 10"}};
  for (const auto& n : kNames)
    if (n.major == major && n.minor == minor) return n.name;
  return "Windows " + std::to_string(major) + "." + std::to_string(minor);
}

void WindowsAnswered(const AdapterFacts& f, std::vector<std::string>& notes) {
  if (!f.RealWindows || !f.RealWindows->Major || !f.AnsweredMajor) return;
  const sysinfo::RealWindowsFacts& real = *f.RealWindows;
  if (real.Major == f.AnsweredMajor && real.Minor == f.AnsweredMinor && real.Build == f.AnsweredBuild)
    return;
  notes.push_back("Windows answers older programs as " + AnsweredName(f.AnsweredMajor, f.AnsweredMinor) +
                  " (build " + std::to_string(f.AnsweredBuild) + "); this machine runs " +
                  sysinfo::RealWindowsLine(real) + ". The report shows the first.");
}

void NoModernOpenGL(const AdapterFacts& f, std::vector<std::string>& notes) {
  if (!f.ModernOpenGL || *f.ModernOpenGL) return;
  notes.push_back(
      "This driver cannot make a core OpenGL context of version 3.2 or later. Programs that need "
      "modern OpenGL will not run with this driver; install the current driver from the "
      "graphics card's maker.");
}

using Rule = void (*)(const AdapterFacts&, std::vector<std::string>&);
constexpr Rule kRules[] = {Remote,       Software,   AdapterKinds,  Hybrid,   MissingFiles,
                           WowMissing,   LoadedDiffers, NoDriver, WindowsAnswered, NoModernOpenGL};

std::string DriverLine(const char* label, const DriverFile& d) {
  std::string line = std::string("    ") + label + ": " + d.Path;
  if (!d.Exists) return line + " (file missing)";
  return line + (d.Version.empty() ? " (no version data)" : ", version " + d.Version);
}

}  // namespace

const std::vector<DriverFile>& ApplicableDrivers(const DisplayAdapter& a, bool wow64) {
  return wow64 ? a.Values.OpenGLWow : a.Values.OpenGL;
}

std::vector<std::string> AdapterNotes(const AdapterFacts& facts) {
  std::vector<std::string> notes;
  for (Rule rule : kRules) rule(facts, notes);
  if (notes.empty()) notes.push_back(kNoProblems);
  return notes;
}

std::string NotesText(const std::vector<std::string>& notes) {
  std::string text;
  for (const std::string& n : notes) text += (text.empty() ? "" : "\r\n\r\n") + n;
  return text;
}

std::vector<std::string> AdapterLines(const AdapterFacts& facts) {
  std::vector<std::string> lines;
  int number = 0;
  for (const DisplayAdapter& a : facts.Adapters) {
    std::string state = a.DeviceName;
    if (a.Primary) state += ", primary";
    state += a.Attached ? ", attached" : ", not attached";
    lines.push_back("Adapter " + std::to_string(++number) + ": " + a.Description + " (" + state + ")");
    const auto& v = a.Values;
    std::string package = v.ProviderName;
    for (const std::string* part : {&v.DriverVersion, &v.DriverDate})
      if (!part->empty()) package += (package.empty() ? "" : ", ") + *part;
    lines.push_back("    Driver: " + (package.empty() ? std::string("not named in the registry") : package));
    if (v.OpenGL.empty() && v.OpenGLWow.empty()) lines.push_back("    OpenGL driver: none registered");
    for (const DriverFile& d : v.OpenGL) lines.push_back(DriverLine("OpenGL driver", d));
    for (const DriverFile& d : v.OpenGLWow) lines.push_back(DriverLine("OpenGL driver (32-bit)", d));
    if (!a.ClassKey.empty() || !a.VideoKey.empty())
      lines.push_back("    Key: HKLM\\" + (a.ClassKey.empty() ? a.VideoKey : a.ClassKey));
  }
  if (facts.Adapters.empty()) lines.push_back("No display adapters listed");
  lines.push_back(std::string("Process: 32-bit program on ") +
                  (facts.Process.Wow64 ? "64-bit" : "32-bit") + " Windows, " +
                  (facts.Process.RemoteSession ? "remote" : "local") + " session");
  if (!facts.ReportRan || !facts.Loaded.Known) {
    lines.push_back("OpenGL in use: press \"Check Specifications\" on the Library page to see");
    return lines;
  }
  auto moduleLine = [](const char* what, const sysinfo::LoadedModule& m) {
    return std::string("OpenGL in use: ") + what + " " + m.Path +
           (m.Version.empty() ? std::string() : ", version " + m.Version);
  };
  for (const auto& m : facts.Loaded.Icds) lines.push_back(moduleLine("driver", m));
  if (facts.Loaded.Icds.empty()) {
    for (const auto& m : facts.Loaded.Generic) lines.push_back(moduleLine("Windows' generic OpenGL", m));
    if (facts.Loaded.Generic.empty()) lines.push_back("OpenGL in use: no OpenGL module found");
  }
  return lines;
}

}  // namespace report
