#pragma once
// The thirteen visual tests: their captions, the texts shown while they run
// and asked after them, and the result of the test in progress.
#include <cstdint>
#include <string>

#include "win32/text.h"

namespace tests {

using win32::kTestCount;
inline constexpr int kInteractionTest = 12;

inline constexpr const char* kTestCaptions[kTestCount] = {
    "Multiple Access", "Point Size",    "Text Output",  "Rendering",  "Line Drawing",
    "Hidden Lines",    "Colour Access", "Colour Float", "Grey Float", "Display Lists",
    "Big Lists",       "Zoom",          "Interaction"};

// kind 0: the question asked after the run; kind 1: the description shown
// while it runs. Lines are joined by a lone CR. Empty outside 0..12.
std::string TestText(int32_t index, int16_t kind);

// The result of the test in progress: 0 passed so far, -1 the user said No,
// any other value an error code of the test window or the quad view.
inline int32_t TestErrorCode = 0;

// "OK (#7)" and "Error -1 (#7)".
using win32::ErrorLabel;
using win32::OkLabel;

}  // namespace tests
