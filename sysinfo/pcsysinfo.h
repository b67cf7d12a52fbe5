#pragma once
// Processor identification: one line naming the processors' maker, count,
// family and model, composed from what GetSystemInfo and the registry's
// processor description said at creation.
#include <windows.h>

#include <cstdint>
#include <string>

namespace sysinfo {

struct CpuCapture {
  WORD ProcessorArchitecture = PROCESSOR_ARCHITECTURE_INTEL;
  DWORD ProcessorType = 0;
  WORD ProcessorLevel = 0;
  WORD ProcessorRevision = 0;
  DWORD NumberOfProcessors = 0;
  DWORD_PTR ActiveProcessorMask = 0;
  DWORD AllocationGranularity = 0;
  DWORD OemId = 0;
  DWORD PageSize = 0;
  std::uintptr_t MinApplicationAddress = 0;
  std::uintptr_t MaxApplicationAddress = 0;
  // "VendorIdentifier" of the first processor in the registry; empty when
  // it cannot be read.
  std::string VendorId;
  // Processors the registry describes (sub-keys of CentralProcessor).
  DWORD ProcessorKeyCount = 0;
};

CpuCapture CaptureCpu();

class cPcSysInfo {
 public:
  cPcSysInfo();  // captures from the running system
  explicit cPcSysInfo(const CpuCapture& captured);

  // Maker word + count word + family word + model text.
  std::string Processor() const;
  std::string CPUArchitecture() const;  // the maker word, e.g. "Intel "
  const std::string& VendorId() const { return c_.VendorId; }
  DWORD CPUID() const { return c_.ProcessorType; }
  std::string CPUFamily() const;  // the family word, e.g. "Pentium "
  std::string CPUModel() const;   // the model text, e.g. "II"
  std::string CPUStep() const;    // e.g. ", Stepping 2"
  DWORD_PTR ActiveProcessorMask() const { return c_.ActiveProcessorMask; }
  DWORD AllocationGranularity() const { return c_.AllocationGranularity; }
  DWORD NumberOfProcessors() const { return c_.NumberOfProcessors; }
  DWORD OemId() const { return c_.OemId; }
  DWORD PageSize() const { return c_.PageSize; }
  std::uintptr_t MaxApplicationAddress() const { return c_.MaxApplicationAddress; }
  std::uintptr_t MinApplicationAddress() const { return c_.MinApplicationAddress; }

 private:
  enum class Maker {
    Intel,
    AMD,
    Cyrix,
    NexGen,
    Centaur,
    Rise,
    UMC,
    OtherX86,
    MIPS,
    Alpha,
    PPC,
    Unknown
  };
  Maker WhichMaker() const;
  std::string CountWord() const;

  CpuCapture c_;
  int family_ = 0;
  int model_ = 0;
  int stepping_ = 0;
};

}  // namespace sysinfo
