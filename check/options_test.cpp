#include "check/options.h"

#include <gtest/gtest.h>

namespace check {
namespace {

TEST(ParseOptions, ModesAndErrors) {
  using M = ModeChoice;
  const struct {
    std::vector<std::string> args;
    M mode;
    int index;
    const char* error;  // a part of the message; nullptr when the line is accepted
  } cases[] = {
      {{}, M::HostFile, 0, nullptr},
      {{"--mode", "software"}, M::Software, 0, nullptr},
      {{"--mode", "hardware"}, M::Hardware, 0, nullptr},
      {{"--mode", "7"}, M::Index, 7, nullptr},
      {{"--mode", "2147483647"}, M::Index, 2147483647, nullptr},
      {{"--mode", "2147483648"}, M::HostFile, 0, "2147483648"},
      {{"--mode", "0"}, M::HostFile, 0, "pixel-format index"},
      {{"--mode", "-3"}, M::HostFile, 0, "-3"},
      {{"--mode", "7x"}, M::HostFile, 0, "7x"},
      {{"--mode", "Software"}, M::HostFile, 0, "Software"},
      {{"--mode"}, M::HostFile, 0, "needs a value"},
      {{"--mode", "--quiet"}, M::HostFile, 0, "needs a value"},
      {{"--mode", "1", "--mode", "2"}, M::HostFile, 0, "twice"},
      {{"--log"}, M::HostFile, 0, "file name"},
      {{"--json", ""}, M::HostFile, 0, "file name"},
      {{"--frobnicate"}, M::HostFile, 0, "--frobnicate"},
      {{"-q"}, M::HostFile, 0, "-q"},
  };
  for (const auto& c : cases) {
    std::string joined;
    for (const auto& a : c.args) joined += "[" + a + "]";
    SCOPED_TRACE(joined);
    ParsedOptions p = ParseOptions(c.args);
    ASSERT_EQ(p.options.has_value(), c.error == nullptr) << p.error;
    if (p.options) {
      EXPECT_EQ(p.options->mode, c.mode);
      EXPECT_EQ(p.options->index, c.index);
    } else {
      EXPECT_NE(p.error.find(c.error), std::string::npos) << p.error;
    }
  }
}

TEST(ParseOptions, FlagsAndFilesInAnyOrder) {
  ParsedOptions p = ParseOptions({"--quiet", "--json", "out.json", "--redraw", "--log",
                                  "C:\\x y\\log.txt", "--no-tests", "--profiles"});
  ASSERT_TRUE(p.options) << p.error;
  EXPECT_TRUE(p.options->quiet && p.options->redraw && p.options->noTests && p.options->profiles);
  EXPECT_EQ(p.options->jsonFile.value_or(""), "out.json");
  EXPECT_EQ(p.options->logFile.value_or(""), "C:\\x y\\log.txt");
  const Options none = *ParseOptions({}).options;
  EXPECT_FALSE(none.quiet || none.redraw || none.noTests || none.profiles || none.logFile ||
               none.jsonFile);
}

}  // namespace
}  // namespace check
