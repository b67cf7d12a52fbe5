#pragma once
// Where the quad-view windows put their controls when they are resized:
// plain arithmetic in twips over the sizes the window reads, applied by the
// window afterwards.
#include <array>
#include <optional>

namespace quadview {

struct TwipBox {
  int left, top, width, height;
  bool operator==(const TwipBox&) const = default;
};

struct TwipPos {
  int left, top;
  bool operator==(const TwipPos&) const = default;
};

struct LayoutInput {
  int width = 0, height = 0;              // the window's inner size (W, H)
  int descHeight = 0;                     // GLTestDesc_Lbl's height (L)
  int closeWidth = 0, closeHeight = 0;    // Close_Cbt (C is its height)
  int errorWidth = 0, errorHeight = 0;    // Error_Cbt
  int copyWidth = 0, copyHeight = 0;      // CopyPicture_cmd
  std::array<int, 4> checkHeights{};      // the four Fix boxes, in the order
                                          // form resize, form paint, pic resize, pic paint
  int picFrameWidth = 0, picFrameHeight = 0;  // QuadPic's outer minus inner size
  int picLeft = 0, picTop = 0;                // QuadPic's place before the move
  int picInnerWidth = 0, picInnerHeight = 0;  // QuadPic's inner size before the move
};

// A move that would give a control a negative width or height is refused
// (the control keeps its place and size) and the layout goes on; such moves
// are empty here.
struct FormLayout {
  std::optional<int> descWidth;
  std::optional<TwipBox> quadPic;
  std::array<std::optional<TwipBox>, 4> mapPic;  // inside QuadPic's inner area
  TwipPos copyButton{};
  std::array<int, 4> checkTops{};
  TwipPos close{}, error{}, redraw{};
};

FormLayout ComputeLayout(const LayoutInput& in);

}  // namespace quadview
