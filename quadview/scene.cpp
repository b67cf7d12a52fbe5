#include "quadview/scene.h"

#include "gl/pyramid_grid.h"

namespace quadview {

GLuint CompileSceneList() {
  GLuint list = glGenLists(1);
  glNewList(list, GL_COMPILE);
  mOpenGL::EmitPyramidGrid();
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
