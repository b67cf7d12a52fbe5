#pragma once
// What a correct picture of each visual test looks like at the frames where
// it can be checked: plain functions over the pixels read back from a view
// and the few facts the window knows about the frame. The test window and
// the program's own tests use these same definitions.
#include <array>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "tests/autocheck.h"

namespace tests {

struct Rgb {
  int r = 0, g = 0, b = 0;
  bool operator==(const Rgb&) const = default;
};
bool Near(Rgb a, Rgb b, int tolerance = 3);

// RGB pixels of a view, bottom row first (as glReadPixels gives them).
struct Picture {
  int width = 0, height = 0;
  std::vector<unsigned char> rgb;
  Rgb at(int x, int y) const;
  // The pixel at view coordinates (-1..1 on both axes).
  Rgb atView(float vx, float vy) const;
  int count(const std::function<bool(Rgb)>& pred) const;
  // Mean position of the pixels for which pred holds, in view coordinates;
  // {-9, -9} when there are none.
  std::array<float, 2> centroid(const std::function<bool(Rgb)>& pred) const;
};

// What the window knows about a frame besides its pixels.
struct FrameFacts {
  int mode = 0;
  int frame = 0;  // the frame counter the scene drew with
  int view = 1;
  unsigned sceneList = 0;     // the view's scene list (0: none)
  unsigned fontBase = 0;      // the view's font lists (0: none)
  float modelviewX = 0;       // first element of the modelview matrix
  std::array<float, 2> click{};  // the interaction test's square
};

// Collects the named checks of one test run, frame by frame. A check that
// failed once stays failed with what it saw first.
class SceneChecker {
 public:
  // Whether this frame is one the scene's checks look at.
  static bool Wants(const FrameFacts& f);
  void Check(const FrameFacts& f, const Picture& p);
  // A view of the quad view after a redraw path: the pyramid grid on white.
  void CheckQuadView(const std::string& path, int view, const Picture& p);
  const AutoVerdict& Verdict() const { return verdict_; }

 private:
  void Record(const std::string& name, bool passed, const std::string& saw);
  // Facts of earlier frames that later frames are checked against.
  std::map<std::string, double> memory_;
  AutoVerdict verdict_;
};

}  // namespace tests
