#include "gl/pyramid_grid.h"

namespace mOpenGL {

void EmitGridPyramid(const PyramidPlace& p) {
  const double s = kPyramidSize;
  const double x = p.x, y = p.y, z0 = p.z0;
  auto base = [&] {
    glVertex3d(x + s, y - s, z0);
    glVertex3d(x + s, y + s, z0);
    glVertex3d(x - s, y + s, z0);
    glVertex3d(x - s, y - s, z0);
    glVertex3d(x + s, y - s, z0);
  };

  glColor3f(1, 0, 0);
  glBegin(GL_POINTS);
  glVertex3d(x, y, z0 + 3 * s);
  base();
  glEnd();

  // A wire pyramid pointing towards +z.
  glPolygonMode(GL_FRONT_AND_BACK, GL_LINE);
  glColor3f(0, 0, 0);
  glBegin(GL_TRIANGLE_FAN);
  glVertex3d(x, y, z0 + 3 * s);
  base();
  glEnd();

  // A shaded solid pyramid pointing towards -z.
  glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
  glBegin(GL_TRIANGLE_FAN);
  glColor3f(0, 1, 0);
  glVertex3d(x, y, z0 - 3 * s);
  glColor3f(0, 0, 0.5f);
  base();
  glEnd();
}

std::vector<PyramidPlace> PyramidGridPlaces() {
  std::vector<PyramidPlace> places;
  places.reserve(882);
  for (int i = -10; i <= 10; ++i)
    for (int j = -10; j <= 10; ++j) places.push_back({i / 10.0, 0.3 * j / 10.0, 0.4});
  for (int i = -10; i <= 10; ++i)
    for (int j = -10; j <= 10; ++j) places.push_back({0.3 * j / 10.0, i / 10.0, -0.4});
  return places;
}

void EmitPyramidGrid() {
  for (const PyramidPlace& p : PyramidGridPlaces()) EmitGridPyramid(p);
}

}  // namespace mOpenGL
