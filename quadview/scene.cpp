#include "quadview/scene.h"

namespace quadview {

void EmitShape(const ShapePlace& p) {
  const double s = kShapeSize;
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

std::vector<ShapePlace> ScenePlaces() {
  std::vector<ShapePlace> places;
  places.reserve(882);
  for (int i = -10; i <= 10; ++i)
    for (int j = -10; j <= 10; ++j) places.push_back({i / 10.0, 0.3 * j / 10.0, 0.4});
  for (int i = -10; i <= 10; ++i)
    for (int j = -10; j <= 10; ++j) places.push_back({0.3 * j / 10.0, i / 10.0, -0.4});
  return places;
}

void EmitScene() {
  for (const ShapePlace& p : ScenePlaces()) EmitShape(p);
}

GLuint CompileSceneList() {
  GLuint list = glGenLists(1);
  glNewList(list, GL_COMPILE);
  EmitScene();
  glEndList();
  return list;
}

void DrawScene(int view, int width, int height, GLuint& list, SceneCompiler compile) {
  glViewport(0, 0, width, height);
  // NOTE: the orthographic matrix is loaded over at once by the identity on
  // the same (model-view) matrix; the matrix mode is never changed, so the
  // scene is drawn in normalised device coordinates stretched to the view.
  // The order is intended and stays.
  glOrtho(-10, width + 10, height + 10, -10, -1000, 1000);
  glLoadIdentity();
  if (view >= 0 && view < kViewCount) {
    const ViewRotation& r = kViewRotations[view];
    glRotatef(r.z, 0, 0, 1);
    glRotatef(r.y, 0, 1, 0);
    glRotatef(r.x, 1, 0, 0);
    if (list == 0 && compile) list = compile();
  }
  glPointSize(3);
  if (list != 0) glCallList(list);
  glFlush();
}

}  // namespace quadview
