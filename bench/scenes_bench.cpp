// Frames per second of every test scene with the timer taken out: each
// tick (both views drawn and swapped) is delivered as soon as the last one
// is done.
#include <cstdio>

#include "bench/scene_ticks.h"

// Ticks per second over the 50 ticks before the window closes itself.
double TicksPerSecond(int mode) { return 50 * 1000.0 / bench::SceneTicksMs(mode, 50); }

int main() {
  std::printf("scene frames per second (each frame draws and swaps both views)\n");
  for (int mode = 0; mode < tests::kInteractionTest; ++mode) {
    std::vector<double> runs;
    for (int i = 0; i < 3; ++i) runs.push_back(TicksPerSecond(mode));
    std::printf("%-16s %8.1f frames/s\n", tests::kTestCaptions[mode], bench::Median(runs));
    std::fflush(stdout);
  }
  return 0;
}
