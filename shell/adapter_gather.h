#pragma once
// The facts behind the Drivers page's adapter list and notes, gathered the
// same way for the main window and for VelmoraCheck.exe.
#include <windows.h>

#include <map>
#include <optional>
#include <string>

#include "report/adapter_notes.h"
#include "sysinfo/display_adapters.h"

namespace shell {

// What the last report's context showed.
struct ReportContextSeen {
  sysinfo::ContextModules Modules;
  std::string Renderer;
  DWORD Flags = 0;
};

// `legacyRegistrations`: lines of the legacy driver scan; `modernOpenGL`:
// whether a core profile of 3.2 or later could be made, if the driver was
// asked; `versions` remembers loaded modules' file versions between calls.
report::AdapterFacts GatherAdapterFacts(int legacyRegistrations, const ReportContextSeen& seen,
                                        std::optional<bool> modernOpenGL,
                                        std::map<std::string, std::string>* versions);

}  // namespace shell
