#include "shell/verdict_labels.h"

#include <gtest/gtest.h>

namespace shell {
namespace {

TEST(UnattendedTestLabel, ErrorCodeFirstThenThePictures) {
  struct Case {
    int32_t code;
    bool passed;
    const char* label;
  } cases[] = {
      {0, true, "OK (#7)"},
      {0, false, "Error -1 (#7)"},
      {21, true, "Error 21 (#7)"},
      {12, false, "Error 12 (#7)"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.label);
    EXPECT_EQ(UnattendedTestLabel(c.code, c.passed, 7), c.label);
  }
}

TEST(QuadViewVerdict, LabelAndTextAsTheButtonComposesThem) {
  QuadViewOutcome ok = QuadViewVerdict(1, "5", 3);
  EXPECT_EQ(ok.label, "OK (#3)");
  ASSERT_TRUE(ok.text);
  EXPECT_EQ(*ok.text,
            "\r\n  Form Resize          \tTRUE\r\n  Form Paint           \tFALSE"
            "\r\n  OpenGL Picture Resize\tTRUE\r\n  OpenGL Picture Paint \tFALSE");

  QuadViewOutcome error = QuadViewVerdict(2, "ERROR", 3);
  EXPECT_EQ(error.label, "ERROR");
  EXPECT_FALSE(error.text) << "the last good run's text stays";

  QuadViewOutcome badPictures = QuadViewVerdict(1, "0", 3, false);
  EXPECT_EQ(badPictures.label, "Error -1 (#3)");
  EXPECT_TRUE(badPictures.text);
}

}  // namespace
}  // namespace shell
