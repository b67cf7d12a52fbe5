#pragma once
// The verdict labels of the General page as decisions over plain values:
// the quad view's label and result text as its button composes them, and
// the label of a test judged by the automatic check instead of a person.
#include <cstdint>
#include <optional>
#include <string>

namespace shell {

struct QuadViewOutcome {
  std::string label;
  // The new QuadViewText; nothing leaves the text of the last good run.
  std::optional<std::string> text;
};

// From what ShowMe gave back (status 1: `result` holds the result bits;
// otherwise it is the label). With `picturesPassed` false a run that went
// through is labelled as a user's No.
QuadViewOutcome QuadViewVerdict(short status, const std::string& result, int pixelFormat,
                                bool picturesPassed = true);

// A visual test without a person: the window's error code wins; a run that
// went through is OK only when its pictures passed the automatic check.
std::string UnattendedTestLabel(int32_t errorCode, bool picturesPassed, int pixelFormat);

}  // namespace shell
