#pragma once
// The quad view's scene: the pyramid grid, compiled once per view into a
// display list and replayed with the view's rotation.
#include <windows.h>
#include <GL/gl.h>

namespace quadview {

inline constexpr int kViewCount = 4;

// Angles in degrees, applied about z, then y, then x.
struct ViewRotation {
  float z, y, x;
};
inline constexpr ViewRotation kViewRotations[kViewCount] = {
    {0, 0, 0},    // front
    {0, 0, 90},
    {45, 0, 0},
    {0, 90, 90},
};

// Generates one list name and compiles (without executing) the scene into it.
GLuint CompileSceneList();
using SceneCompiler = GLuint (*)();

// Steps that follow the clear of a view of `width` x `height` pixels:
// viewport, projection, the view's rotation, the list (compiled by
// `compile` into `list` first when it is 0), point size, flush. No buffer
// swap.
void DrawScene(int view, int width, int height, GLuint& list,
               SceneCompiler compile = CompileSceneList);

}  // namespace quadview
