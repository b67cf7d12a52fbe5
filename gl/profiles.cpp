#include "gl/profiles.h"

#include <windows.h>
#include <GL/gl.h>

#include <cstring>

#include "win32/window.h"

namespace mOpenGL {
namespace {

constexpr int kMajorVersion = 0x2091, kMinorVersion = 0x2092, kProfileMask = 0x9126;
constexpr int kCoreBit = 0x1, kCompatibilityBit = 0x2;
constexpr GLenum kShadingLanguageVersion = 0x8B8C;

using CreateContextAttribs = HGLRC(WINAPI*)(HDC, HGLRC, const int*);
using GetExtensionsString = const char*(WINAPI*)(HDC);

std::string String(GLenum name) {
  const GLubyte* s = glGetString(name);
  return s ? reinterpret_cast<const char*>(s) : "";
}

// The highest version from `major`.`minor` down to `lowest` that a context
// of this profile can be made for.
std::optional<ProfileInfo> Highest(CreateContextAttribs create, HDC dc, int profileBit, int lowest) {
  static const int kVersions[][2] = {{4, 6}, {4, 5}, {4, 4}, {4, 3}, {4, 2}, {4, 1},
                                     {4, 0}, {3, 3}, {3, 2}, {3, 1}, {3, 0}};
  for (const auto& v : kVersions) {
    if (v[0] * 10 + v[1] < lowest) break;
    const int attribs[] = {kMajorVersion, v[0], kMinorVersion, v[1], kProfileMask, profileBit, 0};
    HGLRC rc = create(dc, nullptr, attribs);
    if (!rc) continue;
    std::optional<ProfileInfo> found;
    if (wglMakeCurrent(dc, rc))
      found = ProfileInfo{v[0], v[1], String(GL_VERSION), String(GL_RENDERER),
                          String(kShadingLanguageVersion)};
    wglMakeCurrent(nullptr, nullptr);
    wglDeleteContext(rc);
    if (found) return found;
  }
  return std::nullopt;
}

// A hidden window with its own device context and a double-buffered
// format, gone with the object; dc() is null when the format could not be
// set.
class ProbeSurface {
 public:
  ProbeSurface() : window_(nullptr, RECT{0, 0, 16, 16}, 0) {
    if (!window_.dc()) return;
    PIXELFORMATDESCRIPTOR pfd{};
    pfd.nSize = sizeof pfd;
    pfd.nVersion = 1;
    pfd.dwFlags = PFD_DRAW_TO_WINDOW | PFD_SUPPORT_OPENGL | PFD_DOUBLEBUFFER;
    pfd.cColorBits = 24;
    int format = ChoosePixelFormat(window_.dc(), &pfd);
    usable_ = format && SetPixelFormat(window_.dc(), format, &pfd);
  }
  HDC dc() const { return usable_ ? window_.dc() : nullptr; }

 private:
  win32::DrawingWindow window_;
  bool usable_ = false;
};

}  // namespace

Profiles ProbeProfiles() {
  Profiles found;
  HGLRC previous = wglGetCurrentContext();
  HDC previousDC = wglGetCurrentDC();
  DWORD lastError = GetLastError();
  {
    ProbeSurface surface;
    HGLRC legacy = surface.dc() ? wglCreateContext(surface.dc()) : nullptr;
    if (legacy && wglMakeCurrent(surface.dc(), legacy)) {
      auto create = reinterpret_cast<CreateContextAttribs>(
          reinterpret_cast<void*>(wglGetProcAddress("wglCreateContextAttribsARB")));
      auto extensions = reinterpret_cast<GetExtensionsString>(
          reinterpret_cast<void*>(wglGetProcAddress("wglGetExtensionsStringARB")));
      const char* names = extensions ? extensions(surface.dc()) : nullptr;
      found.CreateContextAttribs = create != nullptr;
      found.ProfileExtension = names && std::strstr(names, "WGL_ARB_create_context_profile");
      wglMakeCurrent(nullptr, nullptr);
      if (create) {
        if (found.ProfileExtension) found.Core = Highest(create, surface.dc(), kCoreBit, 32);
        found.Compatibility = Highest(create, surface.dc(), kCompatibilityBit, 30);
      }
    }
    if (legacy) wglDeleteContext(legacy);
  }
  // Whatever was current before is current again, and the error state too.
  if (previous) wglMakeCurrent(previousDC, previous);
  SetLastError(lastError);
  return found;
}

std::string ProfilesText(const Profiles& p) {
  if (!p.CreateContextAttribs) return "legacy context only";
  auto text = [](const std::optional<ProfileInfo>& i) {
    return i ? std::to_string(i->Major) + "." + std::to_string(i->Minor) : std::string("none");
  };
  return "core " + text(p.Core) + ", compatibility " + text(p.Compatibility);
}

}  // namespace mOpenGL
