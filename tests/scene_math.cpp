#include "tests/scene_math.h"

namespace tests {

float WrappedOffset(int t, float speed) {
  float s = static_cast<float>(t) * speed;
  return s > 1.0f ? s - 2.0f : s;
}

float Angle(int t, float period) { return static_cast<float>(t) / period * 360.0f; }

std::array<float, 3> ColourRamp(int t) {
  auto f = [](int from, int t) { return static_cast<float>(t - from) / 10.0f; };
  if (t < 10) return {f(0, t), 0, 0};
  if (t < 20) return {1, f(10, t), f(10, t)};
  if (t < 30) return {1 - f(20, t), 1, 1 - f(20, t)};
  if (t < 40) return {0, 1 - f(30, t), 0};
  if (t <= 50) return {0, 0, f(40, t)};
  return {0, 0, 0};
}

float ZoomSize(int t) { return 0.04f * static_cast<float>(70 - t); }

std::array<float, 2> ViewCoordinates(int x, int y, int width, int height) {
  if (width <= 0 || height <= 0) return {0, 0};
  return {2.0f * static_cast<float>(x) / static_cast<float>(width) - 1.0f,
          1.0f - 2.0f * static_cast<float>(y) / static_cast<float>(height)};
}

// The white corner is opposite the grey one; the other corners and the
// centre are light grey.
const std::array<QuadVertex, 5> kQuadrangle = {{
    {-0.5, -0.5, 0, 0xFFFFFF},
    {0.5, -0.5, 0, 0xCCCCCC},
    {0.5, 0.5, 0, 0x999999},
    {-0.5, 0.5, 0, 0xCCCCCC},
    {0.0, 0.0, 0, 0xCCCCCC},
}};

// Fans from the centre: only the second edge of each (corner to corner)
// is a border of the quadrangle.
const std::array<QuadTriangle, 4> kQuadTriangles = {{
    {{4, 0, 1}, 2},
    {{4, 1, 2}, 2},
    {{4, 2, 3}, 2},
    {{4, 3, 0}, 2},
}};

}  // namespace tests
