#include "check/options.h"

#include <gtest/gtest.h>

namespace check {
namespace {

TEST(ParseOptions, ModesFlagsAndFilesInAnyOrder) {
  using M = ModeChoice;
  auto mode = [](const std::vector<std::string>& args) {
    ParsedOptions p = ParseOptions(args);
    return p.options ? std::pair(p.options->mode, p.options->index) : std::pair(M::HostFile, -1);
  };
  EXPECT_EQ(mode({}), std::pair(M::HostFile, 0));
  EXPECT_EQ(mode({"--mode", "software"}), std::pair(M::Software, 0));
  EXPECT_EQ(mode({"--mode", "hardware"}), std::pair(M::Hardware, 0));
  EXPECT_EQ(mode({"--mode", "2147483647"}), std::pair(M::Index, 2147483647));
  ParsedOptions p = ParseOptions({"--quiet", "--json", "out.json", "--redraw", "--log",
                                  "C:\\x y\\log.txt", "--no-tests", "--profiles"});
  ASSERT_TRUE(p.options) << p.error;
  EXPECT_TRUE(p.options->quiet && p.options->redraw && p.options->noTests && p.options->profiles);
  EXPECT_EQ(p.options->jsonFile.value_or(""), "out.json");
  EXPECT_EQ(p.options->logFile.value_or(""), "C:\\x y\\log.txt");
}

TEST(ParseOptions, RefusedLinesNameTheirFault) {
  const std::pair<std::vector<std::string>, const char*> cases[] = {
      {{"--mode", "2147483648"}, "2147483648"},
      {{"--mode", "0"}, "pixel-format index"},
      {{"--mode", "7x"}, "7x"},
      {{"--mode", "--quiet"}, "needs a value"},
      {{"--log"}, "file name"},
      {{"--mode", "1", "--mode", "2"}, "twice"},
      {{"--frobnicate"}, "--frobnicate"},
  };
  for (const auto& [args, fault] : cases) {
    ParsedOptions p = ParseOptions(args);
    EXPECT_TRUE(!p.options && p.error.find(fault) != std::string::npos)
        << testing::PrintToString(args) << ": " << p.error;
  }
}

}  // namespace
}  // namespace check
