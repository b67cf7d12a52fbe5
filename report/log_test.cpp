#include "report/log.h"

#include <gtest/gtest.h>

namespace {

const std::string kRule = std::string(60, '=') + "\r\n";
const std::string kDashes = std::string(60, '-') + "\r\n";

TEST(ComposeLog, WholeLogByteForByte) {
  report::LogInputs in;
  in.VersionLabel = "Vs.1.0.0.1  ";
  in.DateTime = "11/21/2026 6:40:00 AM";
  in.DriverLines = {"Windows NT: \tvlmdrv\tvlmdrv", "Windows NT: Sub\tDll\topengl32\t6.1.7601"};
  in.DriverFiles = {{"Acme", "Acme OpenGL", "1.2.3.4"}, {"Wine", "Wine OpenGL", "6.1.7601"}};
  in.Report = "Computer: VM\r\n" + kDashes;
  EXPECT_EQ(report::ComposeLog(in),
            "Velmora LogFile Vs.1.0.0.1   11/21/2026 6:40:00 AM\r\r\n" + kRule +
                "Driver Registry: \tvlmdrv\tvlmdrv\r\n"
                "Driver Registry: Sub\tDll\topengl32\t6.1.7601\r\n"
                "Driver Company: Acme\r\n"
                "Driver Description: Acme OpenGL\r\n"
                "Driver Version: 1.2.3.4\r\n"
                "Driver Company: Wine\r\n"
                "Driver Description: Wine OpenGL\r\n"
                "Driver Version: 6.1.7601\r\n" +
                kRule + "Computer: VM\r\n" + kDashes);
}

TEST(ComposeLog, NoDriversTheInitialReportTextAndRecordedFailures) {
  report::LogInputs in;
  in.VersionLabel = "Vs.1.0.0.1  ";
  in.DateTime = "d";
  in.DriverLines = {"No drivers registered"};
  in.Report =
      "Select Software or Hardware mode to test; Then\r\nPress \"Check Specifications\" to update";
  const std::string log = "Velmora LogFile Vs.1.0.0.1   d\r\r\n" + kRule +
                          "Driver Registry:No drivers registered\r\n" + kRule + in.Report;
  EXPECT_EQ(report::ComposeLog(in), log + "\r\n");
  // Recorded failures follow a third rule.
  in.GLErrorText = "\r\nAPI Error: 0 - hGLRC = wglCreateContext(ExtenderHdc)";
  EXPECT_EQ(report::ComposeLog(in),
            log + "\r\n" + kRule + "\r\nAPI Error: 0 - hGLRC = wglCreateContext(ExtenderHdc)\r\n");
}

}  // namespace
