#include "quadview/layout.h"

#include <gtest/gtest.h>

namespace {

using quadview::ComputeLayout;
using quadview::LayoutInput;
using quadview::TwipBox;
using quadview::TwipPos;
using Box = std::optional<TwipBox>;

// The design sizes: buttons 1215 x 375, copy button 1500 x 375, boxes 255
// high, a description 1440 high, a sunken QuadPic (60 twips of frame).
LayoutInput Design(int width, int height) {
  LayoutInput in;
  in.width = width;
  in.height = height;
  in.descHeight = 1440;
  in.closeWidth = in.errorWidth = 1215;
  in.closeHeight = in.errorHeight = 375;
  in.copyWidth = 1500;
  in.copyHeight = 375;
  in.checkHeights = {255, 255, 255, 255};
  in.picFrameWidth = in.picFrameHeight = 60;
  in.picLeft = 105;
  in.picTop = 1665;
  in.picInnerWidth = 500;
  in.picInnerHeight = 400;
  return in;
}

// The four views: left column at 15, right column at `right`, top row at
// 15, bottom row at `bottom`, all `w` x `h`.
std::array<Box, 4> Views(int right, int bottom, int w, int h) {
  return {TwipBox{15, 15, w, h}, TwipBox{15, bottom, w, h}, TwipBox{right, 15, w, h},
          TwipBox{right, bottom, w, h}};
}
const std::array<Box, 4> kNoViews{};

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
  LayoutInput tallError = Design(9600, 7800);
  tallError.errorWidth = 1000;
  tallError.errorHeight = 400;
  LayoutInput ownHeights = Design(9600, 7800);
  ownHeights.checkHeights = {200, 255, 300, 345};
  const LayoutCase cases[] = {
      {"design size", Design(9600, 7800), 9360, TwipBox{105, 1665, 9390, 5535},
       Views(4680, 2752, 4635, 2707), {4020, 4215}, {7215, 7215, 7515, 7515}, {8265, 7365},
       {6930, 7365}, {6930, 7365}},
      {"odd inner size halves down", Design(9615, 7815), 9375, TwipBox{105, 1665, 9405, 5550},
       Views(4687, 2760, 4642, 2715), {4027, 4223}, {7230, 7230, 7530, 7530}, {8280, 7380},
       {6945, 7380}, {6945, 7380}},
      {"too small: refused moves keep QuadPic's old place and size", Design(200, 300),
       std::nullopt, std::nullopt, Views(265, 215, 220, 170), {-395, 1678},
       {-285, -285, 15, 15}, {-1135, -135}, {-2470, -135}, {-2470, -135}},
      {"QuadPic too low only", Design(9600, 2000), 9360, std::nullopt, Views(265, 215, 220, 170),
       {-395, 1678}, {1415, 1415, 1715, 1715}, {8265, 1565}, {6930, 1565}, {6930, 1565}},
      {"views too narrow", Design(300, 7800), 60, TwipBox{105, 1665, 90, 5535}, kNoViews,
       {105 + 15 - 750, 4215}, {7215, 7215, 7515, 7515}, {-1035, 7365}, {-2370, 7365},
       {-2370, 7365}},
      {"QuadPic narrower than its frame", Design(240, 7800), 0, TwipBox{105, 1665, 30, 5535},
       kNoViews, {105 - 750, 4215}, {7215, 7215, 7515, 7515}, {-1095, 7365}, {-2430, 7365},
       {-2430, 7365}},
      {"Redraw shares Error's place from its own height", tallError, 9360,
       TwipBox{105, 1665, 9390, 5535}, Views(4680, 2752, 4635, 2707), {4020, 4215},
       {7215, 7215, 7515, 7515}, {8265, 7365}, {7145, 7365}, {7145, 7340}},
      {"each box keeps its own height", ownHeights, 9360, TwipBox{105, 1665, 9390, 5535},
       Views(4680, 2752, 4635, 2707), {4020, 4215}, {7270, 7215, 7470, 7425}, {8265, 7365},
       {6930, 7365}, {6930, 7365}},
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
