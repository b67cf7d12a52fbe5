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
  a.DeviceName = "\\\\.\\DISPLAY1";
  a.Description = description;
  a.Attached = attached;
  a.Values.OpenGL = std::move(gl);
  a.Values.OpenGLWow = std::move(wow);
  return a;
}

AdapterFacts Facts(std::vector<DisplayAdapter> adapters, bool wow64 = false) {
  AdapterFacts f;
  f.Adapters = std::move(adapters);
  f.Process.Wow64 = wow64;
  return f;
}

AdapterFacts Ran(AdapterFacts f, const char* renderer, report::FormatClass cls,
                 std::vector<std::string> icds = {}) {
  f.ReportRan = true;
  f.Renderer = renderer;
  f.Class = cls;
  f.Loaded.Known = true;
  f.Loaded.Generic.push_back({"C:\\Windows\\System32\\opengl32.dll", false, ""});
  for (auto& p : icds) f.Loaded.Icds.push_back({p, true, ""});
  return f;
}

// The Windows answered as `major`.`minor` build `build` on a machine that
// runs Windows 10 22H2.
AdapterFacts Answered(AdapterFacts f, DWORD major, DWORD minor, DWORD build) {
  f.AnsweredMajor = major, f.AnsweredMinor = minor, f.AnsweredBuild = build;
  sysinfo::RealWindowsFacts real;
  real.Major = 10, real.Build = 19045, real.UBR = 3803, real.Is64Bit = true;
  real.ProductName = "Windows 10 Pro", real.DisplayVersion = "22H2";
  f.RealWindows = real;
  return f;
}

AdapterFacts Modern(AdapterFacts f, bool modern) {
  f.ModernOpenGL = modern;
  return f;
}

// Words that tell one note from the others.
enum Note { kRemote, kSoftware, kBasic, kVirtual, kHybrid, kMissing, kNoWow, kNotLoaded, kDiffers,
            kNone, kOlderWindows, kNoModern, kFine };
const char* const kMarks[] = {"This is a remote session", "runs in software",
                              "basic display driver", "virtual machine",
                              "more than one graphics adapter", "is missing",
                              "no 32-bit OpenGL driver", "did not load the registered",
                              "is not the one", "names an OpenGL driver",
                              "answers older programs", "Programs that need modern OpenGL",
                              report::kNoProblems};

std::vector<Note> Kinds(const std::vector<std::string>& notes) {
  std::vector<Note> kinds;
  for (const std::string& n : notes) {
    int marks = 0;
    for (int k = 0; k <= kFine; ++k)
      if (n.find(kMarks[k]) != std::string::npos) ++marks, kinds.push_back(static_cast<Note>(k));
    EXPECT_EQ(marks, 1) << "one mark in each note: " << n;
  }
  return kinds;
}

TEST(AdapterNotes, Table) {
  using C = report::FormatClass;
  const DisplayAdapter acme =
      Adapter("Acme Graphics 5000", {File("acmeogl64.dll")}, {File("acmeogl32.dll")});
  const AdapterFacts hw = Facts({acme}), wow = Facts({acme}, true);
  AdapterFacts remote = hw;
  remote.Process.RemoteSession = true;
  const AdapterFacts basic = Facts({Adapter("Microsoft Basic Display Adapter")});
  const DisplayAdapter only64 = Adapter("Acme", {File("acmeogl64.dll")});
  const AdapterFacts none = Facts({Adapter("Old Card")});
  AdapterFacts legacy = none;
  legacy.LegacyRegistrations = 1;
  AdapterFacts unknownRunning = Answered(hw, 6, 2, 9200);
  unknownRunning.RealWindows->Major = 0;

  const struct {
    const char* name;
    AdapterFacts facts;
    std::vector<Note> want;
  } cases[] = {
      {"hardware driver loaded", Ran(hw, "Acme 5000", C::ICD, {"C:\\DS\\acmeogl64.dll"}), {kFine}},
      {"registered name matched without path or case",
       Ran(hw, "Acme", C::ICD, {"C:\\Other\\ACMEOGL64.DLL"}), {kFine}},
      {"wow picks the 32-bit name", Ran(wow, "Acme", C::ICD, {"C:\\x\\acmeogl32.dll"}), {kFine}},
      {"wow but the 64-bit module", Ran(wow, "Acme", C::ICD, {"C:\\x\\acmeogl64.dll"}), {kDiffers}},
      {"another driver loaded", Ran(hw, "Acme", C::ICD, {"C:\\x\\oldogl.dll"}), {kDiffers}},
      {"generic in use", Ran(hw, "GDI Generic", C::Generic), {kSoftware, kNotLoaded}},
      {"generic by class with an unknown icd", Ran(hw, "Acme", C::ICD), {kFine}},
      {"software rasteriser name",
       Ran(hw, "llvmpipe (LLVM 15.0.6, 256 bits)", C::ICD, {"C:\\x\\acmeogl64.dll"}), {kSoftware}},
      {"remote session", remote, {kRemote}},
      {"remote session, software", Ran(remote, "GDI Generic", C::Generic),
       {kRemote, kSoftware, kNotLoaded}},
      {"basic adapter", basic, {kBasic, kNone}},
      {"basic adapter, software", Ran(basic, "GDI Generic", C::Generic),
       {kSoftware, kBasic, kNone}},
      {"virtual machine", Facts({Adapter("VMware SVGA 3D", {File("vm3dgl.dll")})}), {kVirtual}},
      {"hybrid graphics", Facts({acme, Adapter("Other GPU 9", {File("othergl.dll")}, {}, false)}),
       {kHybrid}},
      {"one card on two screens", Facts({acme, acme}), {kFine}},
      {"driver files missing",
       Facts({Adapter("Acme", {File("gone.dll", false)}, {File("gone32.dll", false)})}),
       {kMissing, kMissing}},
      {"no wow name on 64-bit", Facts({only64}, true), {kNoWow}},
      {"no wow name on 32-bit Windows", Facts({only64}), {kFine}},
      {"no adapter driver but legacy keys", legacy, {kFine}},
      {"no OpenGL driver anywhere", none, {kNone}},
      {"no adapters at all", AdapterFacts{}, {kNone}},
      {"Windows answers an older version", Answered(hw, 6, 2, 9200), {kOlderWindows}},
      {"Windows answers the version it runs", Answered(hw, 10, 0, 19045), {kFine}},
      {"the running version unknown", unknownRunning, {kFine}},
      {"no core profile of 3.2", Modern(hw, false), {kNoModern}},
      {"a core profile", Modern(hw, true), {kFine}},
      {"software, older Windows and no core profile",
       Modern(Answered(Ran(hw, "GDI Generic", C::Generic), 6, 2, 9200), false),
       {kSoftware, kNotLoaded, kOlderWindows, kNoModern}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(Kinds(report::AdapterNotes(c.facts)), c.want);
  }
}

TEST(AdapterNotes, OlderWindowsNamesBoth) {
  auto notes =
      report::AdapterNotes(Answered(Facts({Adapter("Acme", {File("a.dll")})}), 6, 2, 9200));
  ASSERT_EQ(notes.size(), 1u);
  EXPECT_EQ(notes[0],
            "Windows answers older programs as Windows 8 (build 9200); this machine runs Windows "
            "10 Pro 22H2 (build 19045.3803, 64-bit). The report shows the first.");
}

TEST(AdapterLines, DriversAndTheModuleThatRan) {
  DisplayAdapter a =
      Adapter("Acme", {File("a.dll"), File("b.dll", false)}, {{"c", "D:\\c.dll", true, ""}});
  a.Primary = true;
  a.Values.ProviderName = "Acme Inc.";
  a.Values.DriverDate = "1-2-2024";
  a.ClassKey = "SYSTEM\\Class\\0001";
  AdapterFacts f =
      Ran(Facts({a, Adapter("Bare", {}, {}, false)}), "Acme", report::FormatClass::ICD,
          {"C:\\DS\\a.dll"});
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
