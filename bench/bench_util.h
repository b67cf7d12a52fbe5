#pragma once
// Small helpers of the benchmarks: timing and medians.
#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace bench {

inline double NowMs() {
  static LARGE_INTEGER freq = [] {
    LARGE_INTEGER f;
    QueryPerformanceFrequency(&f);
    return f;
  }();
  LARGE_INTEGER t;
  QueryPerformanceCounter(&t);
  return 1000.0 * static_cast<double>(t.QuadPart) / static_cast<double>(freq.QuadPart);
}

inline double Median(std::vector<double> v) {
  if (v.empty()) return 0;
  std::sort(v.begin(), v.end());
  size_t n = v.size();
  return n % 2 ? v[n / 2] : (v[n / 2 - 1] + v[n / 2]) / 2;
}

inline void Report(const char* what, double ours, double floor, double target) {
  double ratio = floor > 0 ? ours / floor : 0;
  std::printf("%-40s %9.2f ms   floor %9.2f ms   ratio %5.2f (target <= %.2f)%s\n", what, ours,
              floor, ratio, target, ratio <= target ? "" : "  ABOVE TARGET");
  std::fflush(stdout);
}

}  // namespace bench
