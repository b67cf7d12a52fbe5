#pragma once
// The quad-view test run without a person: the window is opened, every
// redraw path is taken with the boxes as they start, the four views are
// checked after each, and the window closes with its result.
#include <string>

#include "quadview/quadform.h"
#include "quadview/scene.h"
#include "tests/autocheck.h"

namespace quadview {

struct UnattendedQuadRun {
  short status = 0;    // what ShowMe returns: 1 when the test ran through
  std::string result;  // ShowMe's text: the result bits, or the error label
  tests::AutoVerdict verdict;
};
// `compile` makes the views' scene (tests give a broken one).
UnattendedQuadRun RunUnattended(const QuadHost& host, SceneCompiler compile = CompileSceneList);

}  // namespace quadview
