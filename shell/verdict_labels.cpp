#include "shell/verdict_labels.h"

#include "quadview/results.h"
#include "tests/catalogue.h"

namespace shell {

QuadViewOutcome QuadViewVerdict(short status, const std::string& result, int pixelFormat,
                                bool picturesPassed) {
  if (status != 1) return {result, std::nullopt};
  short r = quadview::ParseQuadResult(result).value_or(0);
  // NOTE: the text is cleared first, then the four lines are appended.
  std::string text;
  text += quadview::QuadViewText(r);
  return {picturesPassed ? tests::OkLabel(pixelFormat) : tests::ErrorLabel(-1, pixelFormat),
          text};
}

std::string UnattendedTestLabel(int32_t errorCode, bool picturesPassed, int pixelFormat) {
  if (errorCode != 0) return tests::ErrorLabel(errorCode, pixelFormat);
  return picturesPassed ? tests::OkLabel(pixelFormat) : tests::ErrorLabel(-1, pixelFormat);
}

}  // namespace shell
