#include "sysinfo/pcsysinfo.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using sysinfo::cPcSysInfo;
using sysinfo::CpuCapture;

CpuCapture Cpu(const char* vendor, DWORD type, WORD level, WORD revision, DWORD count = 1,
               WORD arch = PROCESSOR_ARCHITECTURE_INTEL) {
  CpuCapture c;
  c.ProcessorArchitecture = arch;
  c.VendorId = vendor;
  c.ProcessorType = type;
  c.ProcessorLevel = level;
  c.ProcessorRevision = revision;
  c.NumberOfProcessors = count;
  c.ProcessorKeyCount = count;
  return c;
}

// The report is written in the ANSI code page: \xAE and \x99 are its
// registered and trade mark signs.
TEST(cPcSysInfo, ProcessorTable) {
  const struct {
    const char* name;
    CpuCapture cpu;
    const char* processor;
  } cases[] = {
      {"single", Cpu("GenuineIntel", 586, 6, 0x0301), "Intel Pentium II"},
      {"two", Cpu("GenuineIntel", 586, 6, 0x0503, 2), "Intel Dual Pentium II, II Xeon"},
      {"four", Cpu("GenuineIntel", 586, 6, 0x0801, 4), "Intel Quad Pentium III, III XEON"},
      {"family 7", Cpu("GenuineIntel", 586, 7, 0x0100), "Intel 7(unknown INTEL) 1(unknown)"},
      {"9x names the family by type only", Cpu("GenuineIntel", 486, 0, 0), "Intel 486 0(unknown)"},
      {"level above the type's family wins", Cpu("GenuineIntel", 386, 6, 0x0600),
       "Intel Pentium Celeron"},
      {"type's family above the level stays", Cpu("GenuineIntel", 586, 4, 0x0300),
       "Intel Pentium OverDrive for 486"},
      {"family 15, two registered processors", Cpu("GenuineIntel", 586, 15, 0x0009, 2),
       "Intel Dual Pentium 4 Xeon"},
      {"family 15 model 3", Cpu("GenuineIntel", 586, 15, 0x0303), "Intel Pentium 3(unknown)"},
      {"AMD family 4", Cpu("AuthenticAMD", 486, 4, 0x0800),
       "AMD Am486  \xAE and Am5 X 86 \xAE Processors"},
      {"AMD family 5 leaves the family word out", Cpu("AuthenticAMD", 586, 5, 0x0800),
       "AMD K6-2 Processor (Model 8)"},
      {"AMD family 6", Cpu("AuthenticAMD", 586, 6, 0x0301, 2), "AMD Dual Duron\x99 Processor"},
      {"AMD family 23", Cpu("AuthenticAMD", 586, 23, 0x0102), "AMD 23(unknown AMD) 1(unknown)"},
      {"Cyrix", Cpu("CyrixInstead", 586, 5, 0x0204), "Cyrix 5(unknown Cyrix) 2(unknown)"},
      {"UMC keeps its trailing blank", Cpu("UMC UMC UMC ", 486, 4, 0),
       "UMC 4(unknown UMC) 0(unknown)"},
      {"UMC without the blank", Cpu("UMC UMC UMC", 486, 4, 0),
       "(unknown CPU) 4(unknown) 0(unknown)"},
      {"no vendor recorded", Cpu("", 586, 6, 0x0301), "(unknown CPU) 6(unknown) 3(unknown)"},
      {"MIPS", Cpu("", 4000, 2, 0x0003, 1, PROCESSOR_ARCHITECTURE_MIPS), "MIPS R4000 Revision 3"},
      {"Alpha", Cpu("", 21064, 21164, 0x0105, 2, PROCESSOR_ARCHITECTURE_ALPHA),
       "Alpha Dual 21164 Model B"},
      {"PowerPC", Cpu("", 603, 6, 0x0102, 1, PROCESSOR_ARCHITECTURE_PPC), "PPC 603+ Revision 1.2"},
      {"other architecture", Cpu("", 0, 7, 0x0102, 1, PROCESSOR_ARCHITECTURE_IA64),
       "(unknown CPU) 7(unknown) (unknown Model)"},
  };
  for (const auto& c : cases) EXPECT_EQ(cPcSysInfo(c.cpu).Processor(), c.processor) << c.name;
  EXPECT_EQ(cPcSysInfo(Cpu("GenuineIntel", 586, 6, 0xCF02)).CPUStep(), ", Stepping 2");
  EXPECT_EQ(cPcSysInfo(Cpu("", 21064, 21164, 0x0105, 1, PROCESSOR_ARCHITECTURE_ALPHA)).CPUStep(),
            ", Pass 5");
  EXPECT_EQ(cPcSysInfo(Cpu("", 4000, 2, 0x0003, 1, PROCESSOR_ARCHITECTURE_MIPS)).CPUStep(), "");
}

// The machine the tests run on: two Intel family 6 model 207 stepping 2
// processors, which no table names.
TEST(cPcSysInfoOnThisSystem, DescribesTheRunningProcessor) {
  SYSTEM_INFO si{};
  GetSystemInfo(&si);
  cPcSysInfo pc;
  EXPECT_EQ(pc.NumberOfProcessors(), si.dwNumberOfProcessors);
  EXPECT_EQ(pc.CPUID(), si.dwProcessorType);
  EXPECT_EQ(pc.VendorId().size(), 12u) << "vendor '" << pc.VendorId() << "'";
  if (pc.VendorId() != "GenuineIntel" || si.dwNumberOfProcessors != 2 || si.wProcessorLevel != 6 ||
      si.wProcessorRevision != 0xCF02)
    GTEST_SKIP() << "expects the two-processor Intel machine the tests are run on";
  EXPECT_EQ(pc.Processor(), "Intel Dual Pentium 207(unknown)");
  EXPECT_EQ(pc.CPUStep(), ", Stepping 2");
}

}  // namespace
