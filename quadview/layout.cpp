#include "quadview/layout.h"

namespace quadview {
namespace {

std::optional<TwipBox> Box(int left, int top, int width, int height) {
  if (width < 0 || height < 0) return std::nullopt;
  return TwipBox{left, top, width, height};
}

}  // namespace

FormLayout ComputeLayout(const LayoutInput& in) {
  const int W = in.width, H = in.height, L = in.descHeight, C = in.closeHeight;
  FormLayout out;
  if (W - 240 >= 0) out.descWidth = W - 240;

  out.quadPic = Box(105, L + 240 - 15, W - 240 + 30, H - 480 - L - C + 30);
  // The views and the copy button follow QuadPic as it is after its move;
  // a refused move leaves its old place and size in force.
  int w = in.picInnerWidth, h = in.picInnerHeight;
  int picLeft = out.quadPic ? out.quadPic->left : in.picLeft;
  int picTop = out.quadPic ? out.quadPic->top : in.picTop;
  if (out.quadPic) {
    w = out.quadPic->width - in.picFrameWidth;
    h = out.quadPic->height - in.picFrameHeight;
    if (w < 0) w = 0;
    if (h < 0) h = 0;
  }
  const int viewW = w / 2 - 30, viewH = h / 2 - 30;
  out.mapPic[0] = Box(15, 15, viewW, viewH);
  out.mapPic[1] = Box(15, h / 2 + 15, viewW, viewH);
  out.mapPic[2] = Box(w / 2 + 15, 15, viewW, viewH);
  out.mapPic[3] = Box(w / 2 + 15, h / 2 + 15, viewW, viewH);

  out.copyButton = {picLeft + w / 2 - in.copyWidth / 2, picTop + h / 2 - in.copyHeight / 2};

  out.checkTops[0] = H - 330 - in.checkHeights[0];
  out.checkTops[1] = H - 330 - in.checkHeights[1];
  out.checkTops[2] = H - 30 - in.checkHeights[2];
  out.checkTops[3] = H - 30 - in.checkHeights[3];

  out.close = {W - 120 - in.closeWidth, H - 60 - in.closeHeight};
  const int errorLeft = W - 120 - in.closeWidth - 120 - in.errorWidth;
  out.error = {errorLeft, out.close.top};
  // NOTE: Redraw_Cbt takes Error_Cbt's place; the two buttons share it.
  out.redraw = {errorLeft, H - 60 - in.errorHeight};
  return out;
}

}  // namespace quadview
