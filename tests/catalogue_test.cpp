#include "tests/catalogue.h"

#include <gtest/gtest.h>

namespace {

using tests::TestText;

TEST(TestText, LinesAreJoinedByALoneCarriageReturnAndOutsideIsEmpty) {
  for (int i = 0; i < tests::kTestCount; ++i)
    for (int16_t kind : {0, 1}) {
      std::string text = TestText(i, kind);
      EXPECT_FALSE(text.empty()) << i << "/" << kind;
      EXPECT_EQ(text.find('\n'), std::string::npos) << i << "/" << kind;
    }
  EXPECT_EQ(TestText(-1, 0) + TestText(13, 1) + TestText(3, 2), "");
}

TEST(TestText, WordingKeptAsItAlwaysWas) {
  struct Case {
    int index;
    int16_t kind;
    const char* fragment;
  } cases[] = {
      {5, 1, "\rYou should see only the edges of an quadrangle."},
      {5, 0, "\rDid you see only the edges of an quadrangle?"},
      {8, 1, "coloured light grey,\r the opposite corner point coloured white and inbetween a "
             "smooth light grey filling?"},
      {8, 0, "Did you see a square with one corner point coloured light grey,\r the opposite"},
      {10, 1, "with a each pyramid composed of a solid part and a wireframe.\r"},
      {10, 0, "with a each pyramid composed of a solid part and a wireframe?\r"},
      {9, 1, "one is solid, the other one is a wireframe."},
      {9, 0, "one is solid the other one is a wireframe?"},
      {6, 1, "changing colours.\rThe color sequence should be: red-white-green-black-blue"},
      {12, 0, "positions of the point in the right window - \ranswer NO.\rDid you see two windows"},
      {12, 1, "this indicates an update problem."},
      {1, 0, "Did you see a point (of circular/quadrangular shape), zooming in?"},
  };
  for (const auto& c : cases)
    EXPECT_NE(TestText(c.index, c.kind).find(c.fragment), std::string::npos)
        << TestText(c.index, c.kind);
  EXPECT_EQ(tests::OkLabel(7), "OK (#7)");
  EXPECT_EQ(tests::ErrorLabel(-1, 7), "Error -1 (#7)");
}

}  // namespace
