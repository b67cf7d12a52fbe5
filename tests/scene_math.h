#pragma once
// The arithmetic of the scenes: where things are at frame t, which colour
// the colour test shows, how far the zoom test looks.
#include <array>

namespace tests {

// Offset of the moving objects: t × speed, wrapped once to just above -1
// when it passes 1.
float WrappedOffset(int t, float speed);
// Degrees for a period of `period` frames.
float Angle(int t, float period);
// The colour-access ramp: black, red, white, green, black, blue, then black.
std::array<float, 3> ColourRamp(int t);
// Half-size of the zoom test's orthographic volume.
float ZoomSize(int t);
// Mouse position in a view's client area to view coordinates (-1..1, y up).
std::array<float, 2> ViewCoordinates(int x, int y, int width, int height);

// One vertex of the quadrangle shared by the hidden-line and grey tests.
struct QuadVertex {
  double x, y, z;
  unsigned colour;  // 0x00BBGGRR
};
// Four corners around the centre (half-size 0.5), then the centre.
extern const std::array<QuadVertex, 5> kQuadrangle;
// Triangles over kQuadrangle as vertex indices; each with an edge mask (bit
// 1 first edge, bit 2 second, bit 4 third) that leaves the inner edges out.
struct QuadTriangle {
  int v[3];
  int edges;
};
extern const std::array<QuadTriangle, 4> kQuadTriangles;

}  // namespace tests
