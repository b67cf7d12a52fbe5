#include "check/options.h"

#include <gtest/gtest.h>

namespace check {
namespace {

struct Case {
  std::vector<std::string> args;
  bool ok;
  ModeChoice mode;
  int index;
  const char* errorPart;  // a word the message must hold
};

TEST(ParseOptions, Table) {
  const Case cases[] = {
      {{}, true, ModeChoice::HostFile, 0, ""},
      {{"--mode", "software"}, true, ModeChoice::Software, 0, ""},
      {{"--mode", "hardware"}, true, ModeChoice::Hardware, 0, ""},
      {{"--mode", "7"}, true, ModeChoice::Index, 7, ""},
      {{"--mode", "2147483647"}, true, ModeChoice::Index, 2147483647, ""},
      {{"--mode", "2147483648"}, false, ModeChoice::HostFile, 0, "2147483648"},
      {{"--mode", "0"}, false, ModeChoice::HostFile, 0, "pixel-format index"},
      {{"--mode", "-3"}, false, ModeChoice::HostFile, 0, "-3"},
      {{"--mode", "7x"}, false, ModeChoice::HostFile, 0, "7x"},
      {{"--mode", "Software"}, false, ModeChoice::HostFile, 0, "Software"},
      {{"--mode"}, false, ModeChoice::HostFile, 0, "needs a value"},
      {{"--mode", "--quiet"}, false, ModeChoice::HostFile, 0, "needs a value"},
      {{"--mode", "1", "--mode", "2"}, false, ModeChoice::HostFile, 0, "twice"},
      {{"--log"}, false, ModeChoice::HostFile, 0, "file name"},
      {{"--json", ""}, false, ModeChoice::HostFile, 0, "file name"},
      {{"--frobnicate"}, false, ModeChoice::HostFile, 0, "--frobnicate"},
      {{"-q"}, false, ModeChoice::HostFile, 0, "-q"},
  };
  for (const Case& c : cases) {
    std::string joined;
    for (const auto& a : c.args) joined += "[" + a + "]";
    SCOPED_TRACE(joined);
    ParsedOptions p = ParseOptions(c.args);
    ASSERT_EQ(p.options.has_value(), c.ok) << p.error;
    if (c.ok) {
      EXPECT_EQ(p.options->mode, c.mode);
      EXPECT_EQ(p.options->index, c.index);
    } else {
      EXPECT_NE(p.error.find(c.errorPart), std::string::npos) << p.error;
    }
  }
}

TEST(ParseOptions, FlagsAndFilesInAnyOrder) {
  ParsedOptions p = ParseOptions(
      {"--quiet", "--json", "out.json", "--redraw", "--log", "C:\\x y\\log.txt", "--no-tests", "--profiles"});
  ASSERT_TRUE(p.options) << p.error;
  EXPECT_TRUE(p.options->quiet);
  EXPECT_TRUE(p.options->redraw);
  EXPECT_TRUE(p.options->noTests);
  EXPECT_TRUE(p.options->profiles);
  EXPECT_EQ(p.options->jsonFile.value_or(""), "out.json");
  EXPECT_EQ(p.options->logFile.value_or(""), "C:\\x y\\log.txt");
  ParsedOptions none = ParseOptions({});
  EXPECT_FALSE(none.options->quiet || none.options->redraw || none.options->noTests ||
               none.options->profiles);
  EXPECT_FALSE(none.options->logFile || none.options->jsonFile);
}

}  // namespace
}  // namespace check
