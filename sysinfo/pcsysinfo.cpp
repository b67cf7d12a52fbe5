#include "sysinfo/pcsysinfo.h"

#include "sysinfo/registry.h"

// The product texts carry the registered and trade mark signs in the ANSI
// code page the program writes its report in: 0xAE and 0x99 there. A blank
// follows every such escape, so no letter is read as a further hex digit.

namespace sysinfo {
namespace {

constexpr char kProcessorKey[] = "HARDWARE\\DESCRIPTION\\System\\CentralProcessor";
constexpr char kFirstProcessorKey[] = "HARDWARE\\DESCRIPTION\\System\\CentralProcessor\\0";

std::string Num(long long n) { return std::to_string(n); }

// Family by the old processor-type codes; 0 when the type does not say.
int FamilyFromType(DWORD type) {
  switch (type) {
    case PROCESSOR_INTEL_386: return 3;
    case PROCESSOR_INTEL_486: return 4;
    case PROCESSOR_INTEL_PENTIUM: return 5;
    default: return 0;
  }
}

std::string IntelModel(int family, int model, bool severalInRegistry) {
  if (family == 5) {
    switch (model) {
      case 1: return "60,66MHz";
      case 2: return "75MHz+";
      case 3: return "OverDrive for 486";
      case 4: return "w/MMX";
    }
  } else if (family == 6) {
    switch (model) {
      case 1: return "Pro";
      case 3: return "II";
      case 5: return "II, II Xeon";
      case 6: return "Celeron";
      case 7:
      case 8: return "III, III XEON";
      case 9: return "III XEON";
    }
  } else if (family == 15 && model <= 2) {
    return severalInRegistry ? "4 Xeon" : "4";
  }
  return Num(model) + "(unknown)";
}

std::string AmdModel(int family, int model) {
  if (family == 4) return " \xAE and Am5 X 86 \xAE Processors";
  if (family == 5) {
    switch (model) {
      case 0: return "K5\x99 Processor (Model 0)";
      case 1: return "K5 Processor (Model 1)";
      case 2: return "K5 Processor (Model 2)";
      case 3: return "K5 Processor (Model 3)";
      case 6: return "K6 \xAE Processor (Model 6)";
      case 7: return "K6 Processor (Model 7)";
      case 8: return "K6-2 Processor (Model 8)";
      case 9: return "K6-III Processor (Model 9)";
    }
  } else if (family == 6) {
    switch (model) {
      case 1: return "Athlon\x99 Processor (Model 1)";
      case 2: return "Athlon\x99 Processor (Model 2)";
      case 4: return "Athlon\x99 Processor (Model 4)";
      case 3: return "Duron\x99 Processor";
    }
  }
  return Num(model) + "(unknown)";
}

}  // namespace

CpuCapture CaptureCpu() {
  SYSTEM_INFO si{};
  GetSystemInfo(&si);
  CpuCapture c;
  c.ProcessorArchitecture = si.wProcessorArchitecture;
  c.ProcessorType = si.dwProcessorType;
  c.ProcessorLevel = si.wProcessorLevel;
  c.ProcessorRevision = si.wProcessorRevision;
  c.NumberOfProcessors = si.dwNumberOfProcessors;
  c.ActiveProcessorMask = si.dwActiveProcessorMask;
  c.AllocationGranularity = si.dwAllocationGranularity;
  c.OemId = si.dwOemId;
  c.PageSize = si.dwPageSize;
  c.MinApplicationAddress = reinterpret_cast<std::uintptr_t>(si.lpMinimumApplicationAddress);
  c.MaxApplicationAddress = reinterpret_cast<std::uintptr_t>(si.lpMaximumApplicationAddress);
  c.VendorId =
      ReadStringValue(HKEY_LOCAL_MACHINE, kFirstProcessorKey, "VendorIdentifier").value_or("");
  c.ProcessorKeyCount =
      static_cast<DWORD>(cRegistry(HKEY_LOCAL_MACHINE, kProcessorKey).EnumerateSections().Count());
  return c;
}

cPcSysInfo::cPcSysInfo() : cPcSysInfo(CaptureCpu()) {}

// The processor level is the second family value: Windows 9x leaves it 0
// and names the family only by the type code, NT reports 586 for every
// later processor and gives the real family as the level.
cPcSysInfo::cPcSysInfo(const CpuCapture& captured) : c_(captured) {
  const int level = c_.ProcessorLevel;
  family_ = FamilyFromType(c_.ProcessorType);
  if (family_ == 0) family_ = level;
  if (level > family_) family_ = level;
  model_ = HIBYTE(c_.ProcessorRevision);
  stepping_ = LOBYTE(c_.ProcessorRevision);
}

cPcSysInfo::Maker cPcSysInfo::WhichMaker() const {
  switch (c_.ProcessorArchitecture) {
    case PROCESSOR_ARCHITECTURE_INTEL: {
      const std::string& v = c_.VendorId;
      if (v == "GenuineIntel") return Maker::Intel;
      if (v == "AuthenticAMD") return Maker::AMD;
      if (v == "CyrixInstead") return Maker::Cyrix;
      if (v == "NexGenDriven") return Maker::NexGen;
      if (v == "CentaurHauls") return Maker::Centaur;
      if (v == "RiseRiseRise") return Maker::Rise;
      if (v == "UMC UMC UMC ") return Maker::UMC;
      return Maker::OtherX86;
    }
    case PROCESSOR_ARCHITECTURE_MIPS: return Maker::MIPS;
    case PROCESSOR_ARCHITECTURE_ALPHA: return Maker::Alpha;
    case PROCESSOR_ARCHITECTURE_PPC: return Maker::PPC;
    default: return Maker::Unknown;
  }
}

std::string cPcSysInfo::CPUArchitecture() const {
  switch (WhichMaker()) {
    case Maker::Intel: return "Intel ";
    case Maker::AMD: return "AMD ";
    case Maker::Cyrix: return "Cyrix ";
    case Maker::NexGen: return "NexGen ";
    case Maker::Centaur: return "Centaur ";
    case Maker::Rise: return "Rise ";
    case Maker::UMC: return "UMC ";
    case Maker::MIPS: return "MIPS ";
    case Maker::Alpha: return "Alpha ";
    case Maker::PPC: return "PPC ";
    case Maker::OtherX86:
    case Maker::Unknown: break;
  }
  return "(unknown CPU) ";
}

std::string cPcSysInfo::CountWord() const {
  switch (c_.NumberOfProcessors) {
    case 1: return "";
    case 2: return "Dual ";
    case 3: return "Triple ";
    case 4: return "Quad ";
    default: return Num(c_.NumberOfProcessors) + " ";
  }
}

std::string cPcSysInfo::CPUFamily() const {
  const int f = family_;
  const int level = c_.ProcessorLevel;
  switch (WhichMaker()) {
    case Maker::Intel:
      if (f == 3) return "386 ";
      if (f == 4) return "486 ";
      if (f == 5 || f == 6 || f == 15) return "Pentium ";
      return Num(f) + "(unknown INTEL) ";
    case Maker::AMD:
      if (f == 4) return "Am486 ";
      if (f == 5 || f == 6) return "";  // the model text names the product
      return Num(f) + "(unknown AMD) ";
    case Maker::Cyrix: return Num(f) + "(unknown Cyrix) ";
    case Maker::NexGen: return Num(f) + "(unknown NexGen) ";
    case Maker::Centaur: return Num(f) + "(unknown Centaur) ";
    case Maker::Rise: return Num(f) + "(unknown Rise) ";
    case Maker::UMC: return Num(f) + "(unknown UMC) ";
    case Maker::OtherX86: return Num(f) + "(unknown) ";
    case Maker::MIPS: return level <= 2 ? "R4000 " : "(unknown MIPS) ";
    case Maker::Alpha:
      if (level == 21064) return "21064 ";
      if (level == 21066) return "21066 ";
      if (level == 21164) return "21164 ";
      return "(unknown ALPHA) ";
    case Maker::PPC:
      switch (level) {
        case 1: return "601 ";
        case 3: return "603 ";
        case 4: return "604 ";
        case 6: return "603+ ";
        case 9: return "604+ ";
        case 20: return "620 ";
      }
      return "(unknown PPC) ";
    case Maker::Unknown: break;
  }
  return Num(f) + "(unknown) ";
}

// Revisions of the other architectures, as their makers number them:
// MIPS gives one revision byte, Alpha a model letter and a pass, PowerPC a
// version read as xx.yy.
std::string cPcSysInfo::CPUModel() const {
  switch (WhichMaker()) {
    case Maker::Intel: return IntelModel(family_, model_, c_.ProcessorKeyCount > 1);
    case Maker::AMD: return AmdModel(family_, model_);
    case Maker::MIPS: return "Revision " + Num(stepping_);
    case Maker::Alpha:
      if (model_ < 26) return "Model " + std::string(1, static_cast<char>('A' + model_));
      return "(unknown Model)";
    case Maker::PPC: return "Revision " + Num(model_) + "." + Num(stepping_);
    case Maker::Unknown: return "(unknown Model)";
    default: return Num(model_) + "(unknown)";
  }
}

std::string cPcSysInfo::CPUStep() const {
  switch (WhichMaker()) {
    case Maker::MIPS:
    case Maker::PPC:
    case Maker::Unknown: return "";
    case Maker::Alpha: return ", Pass " + Num(stepping_);
    default: return ", Stepping " + Num(stepping_);
  }
}

std::string cPcSysInfo::Processor() const {
  return CPUArchitecture() + CountWord() + CPUFamily() + CPUModel();
}

}  // namespace sysinfo
