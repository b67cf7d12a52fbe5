#include "check/options.h"

#include <cstdlib>

namespace check {
namespace {

// A pixel-format index: decimal digits only, 1 up to the 32-bit limit.
std::optional<int> ParseFormatIndex(const std::string& text) {
  if (text.empty() || text.size() > 10) return std::nullopt;
  for (char c : text)
    if (c < '0' || c > '9') return std::nullopt;
  long long value = std::strtoll(text.c_str(), nullptr, 10);
  if (value < 1 || value > 0x7FFFFFFF) return std::nullopt;
  return static_cast<int>(value);
}

}  // namespace

ParsedOptions ParseOptions(const std::vector<std::string>& args) {
  Options o;
  bool modeSeen = false;
  auto fail = [](std::string why) { return ParsedOptions{std::nullopt, std::move(why)}; };
  for (size_t i = 0; i < args.size(); ++i) {
    const std::string& a = args[i];
    auto value = [&](std::string& out) {
      if (i + 1 >= args.size() || args[i + 1].empty() || args[i + 1].rfind("--", 0) == 0)
        return false;
      out = args[++i];
      return true;
    };
    std::string v;
    if (a == "--mode") {
      if (modeSeen) return fail("--mode is given twice");
      modeSeen = true;
      if (!value(v)) return fail("--mode needs a value: software, hardware or a pixel-format index");
      if (v == "software") {
        o.mode = ModeChoice::Software;
      } else if (v == "hardware") {
        o.mode = ModeChoice::Hardware;
      } else if (auto index = ParseFormatIndex(v)) {
        o.mode = ModeChoice::Index;
        o.index = *index;
      } else {
        return fail("--mode " + v +
                    ": not software, hardware or a pixel-format index (a whole number from 1)");
      }
    } else if (a == "--log" || a == "--json") {
      auto& target = a == "--log" ? o.logFile : o.jsonFile;
      if (target) return fail(a + " is given twice");
      if (!value(v)) return fail(a + " needs a file name");
      target = v;
    } else if (a == "--redraw") {
      o.redraw = true;
    } else if (a == "--no-tests") {
      o.noTests = true;
    } else if (a == "--quiet") {
      o.quiet = true;
    } else if (a == "--profiles") {
      o.profiles = true;
    } else {
      return fail("unknown option: " + a);
    }
  }
  return {o, {}};
}

std::string UsageText() {
  return "usage: VelmoraCheck [--mode software|hardware|N] [--redraw] [--no-tests]\n"
         "                    [--log FILE] [--json FILE] [--quiet] [--profiles]\n"
         "  --mode      the rendering mode (default: the VORA settings file as Velmora reads it)\n"
         "  --redraw    force redraw, as the Force Redraw box\n"
         "  --no-tests  only the report, no visual tests\n"
         "  --log FILE  write the log file as Save Log does\n"
         "  --json FILE write a machine-readable summary\n"
         "  --quiet     no progress lines\n"
         "  --profiles  also ask the driver for its highest core and compatibility profiles\n"
         "exit codes: 0 hardware and every test passed, 1 every test passed but software only,\n"
         "            2 a test failed, 3 no usable OpenGL, 64 bad command line,\n"
         "            73 an output file could not be written\n";
}

}  // namespace check
