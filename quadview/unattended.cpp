#include "quadview/unattended.h"

namespace quadview {

UnattendedQuadRun RunUnattended(const QuadHost&) {
  UnattendedQuadRun run;
  run.status = 0;
  run.result = "Error 1 (not run)";
  return run;
}

}  // namespace quadview
