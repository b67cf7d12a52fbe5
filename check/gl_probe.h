#pragma once
// What VelmoraCheck asks of the report's context beyond the report: the
// OpenGL 1.1 implementation limits, the WGL extension string and which
// entry points of the named extensions do not resolve.
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace check {

struct GLLimit {
  std::string name;         // "GL_MAX_TEXTURE_SIZE"
  std::vector<int> values;  // two for GL_MAX_VIEWPORT_DIMS
};

struct ExtensionGap {
  std::string extension;
  std::vector<std::string> unresolved;  // entry points wglGetProcAddress did not give
};

struct GLProbe {
  std::vector<GLLimit> limits;
  std::optional<std::string> wglExtensions;  // only where wglGetExtensionsStringARB exists
  std::vector<ExtensionGap> gaps;            // extensions named with an unresolved entry point
};

// Whether the blank-separated list names `extension` as a whole word.
bool HasExtension(std::string_view list, std::string_view extension);

// For every extension of our table that either list names, the entry points
// `resolves` says no to; extensions whose entry points all resolve are left
// out.
std::vector<ExtensionGap> UnresolvedEntryPoints(
    std::string_view glExtensions, std::string_view wglExtensions,
    const std::function<bool(const char* entryPoint)>& resolves);

// Reads the limits, the WGL string and the gaps of the context current on
// the device context `dc`.
GLProbe ProbeCurrentContext(void* dc, std::string_view glExtensions);

}  // namespace check
