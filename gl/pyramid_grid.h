#pragma once
// The grid of 882 small pyramids that the big-list, zoom and quad-view
// scenes draw: two crossed bands of 21 x 21 pyramids.
#include <windows.h>
#include <GL/gl.h>

#include <vector>

namespace mOpenGL {

inline constexpr double kPyramidSize = 0.1;  // half-size of a base

struct PyramidPlace {
  double x, y, z0;
};
// Band A (2.0 wide, 0.6 high, at depth 0.4), then band B (the same band
// upright, at depth -0.4): 441 pyramids each.
std::vector<PyramidPlace> PyramidGridPlaces();

// One pyramid: red points at its upper apex and base, a black wire pyramid
// towards +z and a shaded solid one, green to dark blue, towards -z.
void EmitGridPyramid(const PyramidPlace& place);
// The whole grid; call between glNewList and glEndList.
void EmitPyramidGrid();

}  // namespace mOpenGL
