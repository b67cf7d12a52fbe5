// The scenes of the visual tests, one per test; each sets the state it
// relies on and draws into the view the device layer holds.
#include "gl/mopengl.h"
#include "gl/pyramid_grid.h"
#include "tests/gltest_frm.h"
#include "tests/scene_math.h"

namespace tests {
namespace {

constexpr float kBase = 0.2f;    // half-size of the pyramid pair's base
constexpr float kApex = 0.6f;

void Enable(GLenum cap, bool on) { on ? glEnable(cap) : glDisable(cap); }

void ClearTo(float r, float g, float b) {
  glClearColor(r, g, b, 0);
  glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
}

// NOTE: these scenes set the orthographic volume and then load the
// identity, which replaces it; they draw in normalised coordinates.
void OrthoThenIdentity() {
  glOrtho(-1, 1, -1, 1, -1, 1);
  glLoadIdentity();
}

void BaseCorner(int i) {
  static const float corners[4][2] = {{kBase, -kBase}, {kBase, kBase}, {-kBase, kBase}, {-kBase, -kBase}};
  glVertex3f(corners[i % 4][0], corners[i % 4][1], 0);
}

// One fan per half: apex, the four base corners and the first again.
void PyramidHalf(float apexZ, const float* apexColour, const float* baseColour) {
  glBegin(GL_TRIANGLE_FAN);
  if (apexColour) glColor3fv(apexColour);
  glVertex3f(0, 0, apexZ);
  if (baseColour) glColor3fv(baseColour);
  for (int i = 0; i <= 4; ++i) BaseCorner(i);
  glEnd();
}

void PyramidPair(const float* apexColour = nullptr, const float* baseColour = nullptr) {
  PyramidHalf(kApex, apexColour, baseColour);
  PyramidHalf(-kApex, apexColour, baseColour);
}

const float kRed[] = {1, 0, 0};
const float kGreen[] = {0, 1, 0};
const float kBlack[] = {0, 0, 0};
const float kDarkBlue[] = {0, 0, 0.5f};

// A list of the view's, dropped at frame 0 so that every run compiles it
// afresh; deleted with a count of 1, as it is made.
void RestartList(int t, GLuint& list) {
  if (t == 0 && list != 0) {
    glDeleteLists(list, 1);
    list = 0;
  }
}

template <class Compile>
void CallList(GLuint& list, Compile compile) {
  if (list == 0) {
    list = glGenLists(1);
    glNewList(list, GL_COMPILE);
    compile();
    glEndList();
  }
  glCallList(list);
}

void QuadrangleTriangles(bool coloured) {
  glBegin(GL_TRIANGLES);
  for (const auto& tri : kQuadTriangles) {
    for (int k = 0; k < 3; ++k) {
      const QuadVertex& v = kQuadrangle[static_cast<size_t>(tri.v[k])];
      glEdgeFlag((tri.edges >> k) & 1 ? GL_TRUE : GL_FALSE);
      if (coloured)
        glColor3f((v.colour & 0xFF) / 255.0f, ((v.colour >> 8) & 0xFF) / 255.0f,
                  ((v.colour >> 16) & 0xFF) / 255.0f);
      glVertex3d(v.x, v.y, v.z);
    }
  }
  glEnd();
  glEdgeFlag(GL_TRUE);
}

}  // namespace

void GLTest_frm::StandardSetUp(float r, float g, float b) {
  mOpenGL::MakeCurrentGL();
  ClearTo(r, g, b);
  glLoadIdentity();
  glOrtho(-1, 1, -1, 1, -1, 1);
}

void GLTest_frm::DrawPoints() {
  float s = WrappedOffset(frame_, 0.05f);
  StandardSetUp(0, 0, 0);
  Enable(GL_DEPTH_TEST, false);
  glColor3f(1, 1, 1);
  glPointSize(3);
  glBegin(GL_POINTS);
  glVertex3f(s, s, 0);
  glEnd();
}

void GLTest_frm::DrawGL_PointSize() {
  StandardSetUp(0, 0, 0);
  Enable(GL_DEPTH_TEST, false);
  glColor3f(1, 1, 1);
  glPointSize(static_cast<float>(frame_ + 2));
  glBegin(GL_POINTS);
  glVertex3f(0, 0, 0);
  glEnd();
}

void GLTest_frm::DrawWords(int view) {
  float s = WrappedOffset(frame_, 0.05f);
  RestartList(frame_, fontBase_[static_cast<size_t>(view)]);
  mOpenGL::MakeCurrentGL();
  ClearTo(0, 0, 0);
  Enable(GL_DEPTH_TEST, false);
  glColor3f(1, 1, 1);
  mOpenGL::DrawTextGL("View " + std::to_string(view), s, s, 0, fontBase_[static_cast<size_t>(view)]);
}

// Bright faces wound counter-clockwise, dark faces clockwise: with culling
// only the cube's outside faces show.
void GLTest_frm::DrawQuads() {
  float s = WrappedOffset(frame_, 0.02f);
  const float a = 0.2f;
  mOpenGL::MakeCurrentGL();
  ClearTo(1, 1, 1);
  Enable(GL_DEPTH_TEST, true);
  Enable(GL_CULL_FACE, true);
  glCullFace(GL_BACK);
  OrthoThenIdentity();
  glTranslatef(s, s, 0);
  glRotatef(Angle(frame_, 120), 0, 1, 1);
  glRotatef(Angle(frame_, 30), 0, 0, 1);
  glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
  glFrontFace(GL_CCW);
  glBegin(GL_QUADS);
  glColor3f(1, 0, 0);  // +z
  glVertex3f(-a, -a, a), glVertex3f(a, -a, a), glVertex3f(a, a, a), glVertex3f(-a, a, a);
  glColor3f(0, 1, 0);  // +y
  glVertex3f(-a, a, a), glVertex3f(a, a, a), glVertex3f(a, a, -a), glVertex3f(-a, a, -a);
  glColor3f(0, 0, 1);  // +x
  glVertex3f(a, -a, a), glVertex3f(a, -a, -a), glVertex3f(a, a, -a), glVertex3f(a, a, a);
  glEnd();
  glFrontFace(GL_CW);
  glBegin(GL_QUADS);
  glColor3f(0.5f, 0, 0);  // -z
  glVertex3f(-a, -a, -a), glVertex3f(a, -a, -a), glVertex3f(a, a, -a), glVertex3f(-a, a, -a);
  glColor3f(0, 0.5f, 0);  // -y
  glVertex3f(-a, -a, a), glVertex3f(a, -a, a), glVertex3f(a, -a, -a), glVertex3f(-a, -a, -a);
  glColor3f(0, 0, 0.5f);  // -x
  glVertex3f(-a, -a, a), glVertex3f(-a, -a, -a), glVertex3f(-a, a, -a), glVertex3f(-a, a, a);
  glEnd();
  glFrontFace(GL_CCW);
  Enable(GL_CULL_FACE, false);
}

void GLTest_frm::DrawTets() {
  float s = WrappedOffset(frame_, 0.02f);
  mOpenGL::MakeCurrentGL();
  ClearTo(1, 1, 1);
  Enable(GL_DEPTH_TEST, true);
  OrthoThenIdentity();
  glTranslatef(s, s, 0);
  glRotatef(Angle(frame_, 120), 0, 1, 1);
  glRotatef(Angle(frame_, 30), 0, 0, 1);
  glPolygonMode(GL_FRONT_AND_BACK, GL_LINE);
  glColor3f(0, 0, 0);
  PyramidPair();
  glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
}

// The inner edges carry a false edge flag: in line mode only the border of
// the quadrangle may show.
void GLTest_frm::DrawPolygon() {
  mOpenGL::MakeCurrentGL();
  ClearTo(1, 1, 1);
  Enable(GL_DEPTH_TEST, true);
  OrthoThenIdentity();
  glRotatef(Angle(frame_, 120), 0, 1, 1);
  glRotatef(Angle(frame_, 120), 0, 0, 1);
  glPolygonMode(GL_FRONT_AND_BACK, GL_LINE);
  glColor3f(0, 0, 0);
  QuadrangleTriangles(false);
  glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
}

void GLTest_frm::DrawColors(int) {
  auto c = ColourRamp(frame_);
  mOpenGL::MakeCurrentGL();
  ClearTo(c[0], c[1], c[2]);
}

void GLTest_frm::DrawBlend() {
  StandardSetUp(1, 1, 1);
  glShadeModel(GL_SMOOTH);
  Enable(GL_DEPTH_TEST, true);
  Enable(GL_CULL_FACE, true);
  glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
  glFrontFace(GL_CCW);
  glRotatef(Angle(frame_, 60), 0, 0, 1);
  glBegin(GL_QUADS);
  glColor3f(1, 0, 0), glVertex3f(-0.4f, -0.4f, 0);
  glColor3f(0, 1, 0), glVertex3f(0.4f, -0.4f, 0);
  glColor3f(0, 0, 1), glVertex3f(0.4f, 0.4f, 0);
  glColor3f(1, 1, 1), glVertex3f(-0.4f, 0.4f, 0);
  glEnd();
  Enable(GL_CULL_FACE, false);
}

void GLTest_frm::DrawGL_GreyFloat() {
  StandardSetUp(1, 1, 1);
  glShadeModel(GL_SMOOTH);
  Enable(GL_DEPTH_TEST, true);
  glRotatef(Angle(frame_, 120), 0, 0, 1);
  glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
  QuadrangleTriangles(true);
}

void GLTest_frm::DrawListTets(int view) {
  float s = WrappedOffset(frame_, 0.05f);
  GLuint& list = sceneList_[static_cast<size_t>(view)];
  RestartList(frame_, list);
  StandardSetUp(1, 1, 1);
  Enable(GL_DEPTH_TEST, true);
  glTranslatef(s, s, 0);
  glRotatef(Angle(frame_, 60), 0, 1, 1);
  glRotatef(Angle(frame_, 30), 0, 0, 1);
  CallList(list, [] {
    glPointSize(5);
    glColor3fv(kRed);
    glBegin(GL_POINTS);
    for (int i = 0; i < 4; ++i) BaseCorner(i);
    glVertex3f(0, 0, kApex);
    glVertex3f(0, 0, -kApex);
    glEnd();
    glPolygonMode(GL_FRONT_AND_BACK, GL_LINE);
    glColor3fv(kBlack);
    PyramidPair();
    glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
    PyramidPair(kGreen, kDarkBlue);
  });
}

void GLTest_frm::DrawBigList(int view) {
  GLuint& list = sceneList_[static_cast<size_t>(view)];
  RestartList(frame_, list);
  mOpenGL::MakeCurrentGL();
  ClearTo(1, 1, 1);
  Enable(GL_DEPTH_TEST, true);
  glLoadIdentity();
  glOrtho(-10, 10, -10, 10, -10, 10);
  glRotatef(45, 0, 0, 1);
  glRotatef(Angle(frame_, 60), 0, 1, 0);
  glPointSize(3);
  CallList(list, mOpenGL::EmitPyramidGrid);
}

void GLTest_frm::DrawBigZoom(int view) {
  GLuint& list = sceneList_[static_cast<size_t>(view)];
  RestartList(frame_, list);
  mOpenGL::MakeCurrentGL();
  GLint viewport[4] = {}, maxDims[2] = {};
  glGetIntegerv(GL_VIEWPORT, viewport);
  glGetIntegerv(GL_MAX_VIEWPORT_DIMS, maxDims);
  glViewport(0, 0, viewport[2] < maxDims[0] ? viewport[2] : maxDims[0],
             viewport[3] < maxDims[1] ? viewport[3] : maxDims[1]);
  ClearTo(1, 1, 1);
  Enable(GL_DEPTH_TEST, true);
  float z = ZoomSize(frame_);
  glLoadIdentity();
  glOrtho(-z, z, -z, z, -1000, 1000);
  glRotatef(45, 0, 0, 1);
  glRotatef(Angle(frame_, 60), 0, 1, 0);
  glPointSize(3);
  CallList(list, mOpenGL::EmitPyramidGrid);
}

void GLTest_frm::DrawGL_Interaction() {
  mOpenGL::MakeCurrentGL();
  ClearTo(0, 0, 0);
  Enable(GL_DEPTH_TEST, false);
  glColor3f(1, 1, 1);
  glLoadIdentity();
  glOrtho(-1, 1, -1, 1, -1, 1);
  glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
  glFrontFace(GL_CCW);
  const float h = 0.1f, x = squareX_, y = squareY_;
  glBegin(GL_QUADS);
  glVertex3f(x - h, y - h, 0), glVertex3f(x + h, y - h, 0);
  glVertex3f(x + h, y + h, 0), glVertex3f(x - h, y + h, 0);
  glEnd();
}

}  // namespace tests
