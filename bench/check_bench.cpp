// VelmoraCheck.exe as a whole process: --no-tests beside a floor program
// that makes a context and reads the four strings, run in pairs; and the
// full check beside the sum of the scenes' own frame times (51 frames each,
// timer taken out, as scenes_bench draws them).
#include <windows.h>

#include <cstdio>
#include <string>
#include <vector>

#include "bench/bench_util.h"
#include "bench/scene_ticks.h"
#include "e2e/driver.h"
#include "win32/ui.h"

namespace {

// The time from start to end of `exe args`, its output drained.
double RunMs(const std::string& exe, const std::string& args) {
  e2e::CapturedRun run = e2e::RunCaptured(exe, args);
  return run.started ? run.ms : -1;
}

}  // namespace

int main(int argc, char** argv) {
  int runs = argc > 1 ? std::atoi(argv[1]) : 7;
  const std::string dir = win32::ModuleDirectory();
  const std::string check = dir + "\\..\\VelmoraCheck.exe";
  const std::string floor = dir + "\\floor_check.exe";
  // Warm both: the first process to load the driver pays for the disk.
  RunMs(check, "--no-tests --quiet");
  RunMs(floor, "");
  std::vector<double> ours, probed, floors;
  for (int i = 0; i < runs; ++i) {
    ours.push_back(RunMs(check, "--no-tests --quiet"));
    probed.push_back(RunMs(check, "--no-tests --quiet --profiles"));
    floors.push_back(RunMs(floor, ""));
  }
  std::printf("VelmoraCheck, median of %d paired process runs\n", runs);
  bench::Report("--no-tests, process start to exit", bench::Median(ours), bench::Median(floors),
                1.3);
  bench::Report("--no-tests --profiles", bench::Median(probed), bench::Median(floors), 1.3);

  double scenes = 0;
  for (int mode = 0; mode < tests::kInteractionTest; ++mode) scenes += bench::SceneTicksMs(mode, 51);
  std::vector<double> full;
  for (int i = 0; i < 3; ++i) full.push_back(RunMs(check, "--quiet"));
  std::printf("full check (13 tests, quad view, report) beside the scenes' 51 frames each\n");
  bench::Report("full check, process start to exit", bench::Median(full), scenes, 1.2);
  return 0;
}
