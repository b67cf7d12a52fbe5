#include "quadview/layout.h"

#include <gtest/gtest.h>

namespace {

using quadview::ComputeLayout;
using quadview::LayoutInput;
using quadview::TwipBox;
using quadview::TwipPos;
using Box = std::optional<TwipBox>;

// The design sizes, in twips: a sunken QuadPic with 60 twips of frame.
LayoutInput Design(int width, int height) {
  return {.width = width, .height = height, .descHeight = 1440, .closeWidth = 1215,
          .closeHeight = 375, .errorWidth = 1215, .errorHeight = 375, .copyWidth = 1500,
          .copyHeight = 375, .checkHeights = {255, 255, 255, 255}, .picFrameWidth = 60,
          .picFrameHeight = 60, .picLeft = 105, .picTop = 1665, .picInnerWidth = 500,
          .picInnerHeight = 400};
}

// The four views: columns at 15 and `right`, rows at 15 and `bottom`, all `w` x `h`.
std::array<Box, 4> Views(int right, int bottom, int w, int h) {
  return {TwipBox{15, 15, w, h}, TwipBox{15, bottom, w, h}, TwipBox{right, 15, w, h},
          TwipBox{right, bottom, w, h}};
}

struct LayoutCase {
  const char* name;
  LayoutInput in;
  std::optional<int> descWidth;
  Box quadPic;
  std::array<Box, 4> views;
  TwipPos copy;
  std::array<int, 4> checkTops;
  TwipPos close, error, redraw;
};

TEST(ComputeLayout, Table) {
  const LayoutCase cases[] = {
      {"design size, odd inner height halves down", Design(9600, 7800), 9360,
       TwipBox{105, 1665, 9390, 5535}, Views(4680, 2752, 4635, 2707), {4020, 4215},
       {7215, 7215, 7515, 7515}, {8265, 7365}, {6930, 7365}, {6930, 7365}},
      {"too small: refused moves keep QuadPic's old place and size", Design(200, 300),
       std::nullopt, std::nullopt, Views(265, 215, 220, 170), {-395, 1678},
       {-285, -285, 15, 15}, {-1135, -135}, {-2470, -135}, {-2470, -135}},
  };
  for (const LayoutCase& c : cases) {
    SCOPED_TRACE(c.name);
    auto out = ComputeLayout(c.in);
    EXPECT_EQ(out.descWidth, c.descWidth);
    EXPECT_EQ(out.quadPic, c.quadPic);
    for (int i = 0; i < 4; ++i) EXPECT_EQ(out.mapPic[i], c.views[i]) << "view " << i;
    EXPECT_EQ(out.copyButton, c.copy);
    EXPECT_EQ(out.checkTops, c.checkTops);
    EXPECT_EQ(out.close, c.close);
    EXPECT_EQ(out.error, c.error);
    EXPECT_EQ(out.redraw, c.redraw);
  }
}

}  // namespace
