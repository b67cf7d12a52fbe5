#include "report/adapter_notes.h"

#include <gtest/gtest.h>

namespace {

using report::AdapterFacts;
using sysinfo::DisplayAdapter;
using sysinfo::DriverFile;

DriverFile File(const char* registered, bool exists = true) {
  return {registered, std::string("C:\\Windows\\System32\\") + registered, exists, "1.0"};
}

DisplayAdapter Adapter(const char* description, std::vector<DriverFile> gl = {},
                       std::vector<DriverFile> wow = {}, bool attached = true) {
  DisplayAdapter a;
  a.DeviceName = "\\\\.\\DISPLAY1", a.Description = description, a.Attached = attached;
  a.Values.OpenGL = std::move(gl), a.Values.OpenGLWow = std::move(wow);
  return a;
}

AdapterFacts Facts(std::vector<DisplayAdapter> adapters, bool wow64 = false) {
  AdapterFacts f;
  f.Adapters = std::move(adapters), f.Process.Wow64 = wow64;
  return f;
}

// After a report whose context ran `renderer`, with these driver modules loaded.
AdapterFacts Ran(AdapterFacts f, const char* renderer, report::FormatClass cls,
                 std::vector<std::string> icds = {}) {
  f.ReportRan = f.Loaded.Known = true, f.Renderer = renderer, f.Class = cls;
  f.Loaded.Generic.push_back({"C:\\Windows\\System32\\opengl32.dll", false, ""});
  for (auto& p : icds) f.Loaded.Icds.push_back({p, true, ""});
  return f;
}

// Told Windows `major`.`minor` build `build` on a machine that runs Windows 10 22H2.
AdapterFacts Answered(AdapterFacts f, DWORD major, DWORD minor, DWORD build) {
  f.AnsweredMajor = major, f.AnsweredMinor = minor, f.AnsweredBuild = build;
  f.RealWindows =
      sysinfo::RealWindowsFacts{10, 0, 19045, "Windows 10 Pro", "", "22H2", "", "", 3803, true};
  return f;
}

// Words that tell one note from the others.
const char kRemote[] = "This is a remote session", kSoftware[] = "runs in software",
           kBasic[] = "basic display driver", kVirtual[] = "virtual machine",
           kHybrid[] = "more than one graphics adapter", kMissing[] = "is missing",
           kNoWow[] = "no 32-bit OpenGL driver", kNotLoaded[] = "did not load the registered",
           kDiffers[] = "is not the one", kNone[] = "names an OpenGL driver",
           kOlderWindows[] = "answers older programs", kNoModern[] = "need modern OpenGL";
const char* const kFine = report::kNoProblems;

TEST(AdapterNotes, Table) {
  using C = report::FormatClass;
  const DisplayAdapter acme =
      Adapter("Acme Graphics 5000", {File("acmeogl64.dll")}, {File("acmeogl32.dll")});
  const AdapterFacts hw = Facts({acme});
  AdapterFacts remote = hw;
  AdapterFacts everything = Answered(Ran(hw, "GDI Generic", C::Generic), 6, 2, 9200);
  remote.Process.RemoteSession = true;
  everything.ModernOpenGL = false;
  const struct {
    const char* name;
    AdapterFacts facts;
    std::vector<const char*> want;  // a word of each note, in order
  } cases[] = {
      {"registered name matched without path or case",
       Ran(hw, "Acme", C::ICD, {"C:\\Other\\ACMEOGL64.DLL"}), {kFine}},
      {"wow but the 64-bit module",
       Ran(Facts({acme}, true), "Acme", C::ICD, {"C:\\x\\acmeogl64.dll"}), {kDiffers}},
      {"remote session", remote, {kRemote}},
      {"basic adapter", Facts({Adapter("Microsoft Basic Display Adapter")}), {kBasic, kNone}},
      {"virtual machine", Facts({Adapter("VMware SVGA 3D", {File("vm3dgl.dll")})}), {kVirtual}},
      {"hybrid graphics", Facts({acme, Adapter("Other GPU 9", {File("othergl.dll")}, {}, false)}),
       {kHybrid}},
      {"driver files missing",
       Facts({Adapter("Acme", {File("gone.dll", false)}, {File("gone32.dll", false)})}),
       {kMissing, kMissing}},
      {"no wow name on 64-bit", Facts({Adapter("Acme", {File("acmeogl64.dll")})}, true), {kNoWow}},
      {"generic in use, older Windows told and no core profile of 3.2", everything,
       {kSoftware, kNotLoaded, kOlderWindows, kNoModern}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    const std::vector<std::string> notes = report::AdapterNotes(c.facts);
    ASSERT_EQ(notes.size(), c.want.size());
    for (size_t i = 0; i < notes.size(); ++i)
      EXPECT_NE(notes[i].find(c.want[i]), std::string::npos) << notes[i];
  }
  EXPECT_EQ(report::AdapterNotes(Answered(hw, 6, 2, 9200)),  // word for word
            std::vector<std::string>{
                "Windows answers older programs as Windows 8 (build 9200); this machine runs "
                "Windows 10 Pro 22H2 (build 19045.3803, 64-bit). The report shows the first."});
}

TEST(AdapterLines, DriversAndTheModuleThatRan) {
  DisplayAdapter a =
      Adapter("Acme", {File("a.dll"), File("b.dll", false)}, {{"c", "D:\\c.dll", true, ""}});
  a.Primary = true, a.Values.ProviderName = "Acme Inc.", a.Values.DriverDate = "1-2-2024";
  a.ClassKey = "SYSTEM\\Class\\0001";
  AdapterFacts f = Ran(Facts({a, Adapter("Bare", {}, {}, false)}), "Acme",
                       report::FormatClass::ICD, {"C:\\DS\\a.dll"});
  EXPECT_EQ(report::AdapterLines(f),
            (std::vector<std::string>{
                "Adapter 1: Acme (\\\\.\\DISPLAY1, primary, attached)",
                "    Driver: Acme Inc., 1-2-2024",
                "    OpenGL driver: C:\\Windows\\System32\\a.dll, version 1.0",
                "    OpenGL driver: C:\\Windows\\System32\\b.dll (file missing)",
                "    OpenGL driver (32-bit): D:\\c.dll (no version data)",
                "    Key: HKLM\\SYSTEM\\Class\\0001",
                "Adapter 2: Bare (\\\\.\\DISPLAY1, not attached)",
                "    Driver: not named in the registry",
                "    OpenGL driver: none registered",
                "Process: 32-bit program on 32-bit Windows, local session",
                "OpenGL in use: driver C:\\DS\\a.dll",
            }));
}

}  // namespace
