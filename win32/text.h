#pragma once
// Small texts every part of the program shares, as pure functions: the
// blank trimming of the report, upper case, the number of visual tests and
// the verdict labels that the General page writes and the report copies.
// No Windows headers.
#include <cstdint>
#include <string>
#include <string_view>

namespace win32 {

// The visual tests of the General page (indices 0 to 12).
inline constexpr int kTestCount = 13;

// "OK (#7)" and "Error -1 (#7)" for pixel format 7.
inline std::string OkLabel(int pixelFormat) { return "OK (#" + std::to_string(pixelFormat) + ")"; }
inline std::string ErrorLabel(int32_t code, int pixelFormat) {
  return "Error " + std::to_string(code) + " (#" + std::to_string(pixelFormat) + ")";
}

// Blanks only, at both ends; tabs and line ends stay.
inline std::string Trim(std::string_view s) {
  size_t a = s.find_first_not_of(' ');
  if (a == std::string_view::npos) return {};
  size_t b = s.find_last_not_of(' ');
  return std::string(s.substr(a, b - a + 1));
}

// ASCII letters only, as the registry comparisons need.
inline std::string Upper(std::string_view s) {
  std::string r(s);
  for (char& c : r)
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  return r;
}

}  // namespace win32
