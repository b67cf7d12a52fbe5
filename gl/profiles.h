#pragma once
// The highest OpenGL profiles the driver can make, found on a window and
// device context of its own, so that nothing the device layer holds (its
// device context, its context, its recorded failures) is touched.
#include <optional>
#include <string>

namespace mOpenGL {

struct ProfileInfo {
  int Major = 0, Minor = 0;
  std::string Version, Renderer, ShadingLanguage;
};

struct Profiles {
  bool CreateContextAttribs = false;  // wglCreateContextAttribsARB exists
  bool ProfileExtension = false;      // WGL_ARB_create_context_profile is named
  std::optional<ProfileInfo> Core;           // 3.2 and later
  std::optional<ProfileInfo> Compatibility;  // 3.0 and later
};

Profiles ProbeProfiles();

// "core 4.5, compatibility 4.5", or "legacy context only" without the entry
// point; a missing profile reads "none".
std::string ProfilesText(const Profiles& p);

}  // namespace mOpenGL
