#include "gl/profiles.h"

#include <gtest/gtest.h>

#include "gl/device_state.h"
#include "testsupport/testsupport.h"

namespace {

using mOpenGL::ProfileInfo;

TEST(ProfilesText, Table) {
  EXPECT_EQ(mOpenGL::ProfilesText({}), "legacy context only");
  EXPECT_EQ(mOpenGL::ProfilesText({true, true, ProfileInfo{4, 5, "", "", ""},
                                   ProfileInfo{4, 6, "", "", ""}}),
            "core 4.5, compatibility 4.6");
  EXPECT_EQ(mOpenGL::ProfilesText({true, false, std::nullopt, ProfileInfo{3, 0, "", "", ""}}),
            "core none, compatibility 3.0");
}

// The driver here (Mesa under Wine) offers modern profiles; the probe finds
// them and leaves the device layer's context current as it was.
TEST(ProbeProfiles, FindsTheDriversProfilesAndLeavesTheCurrentContextAlone) {
  testsupport::PlainWindow window;
  mOpenGL::State() = {};
  mOpenGL::State().ExtenderHdc = window.dc();
  ASSERT_TRUE(mOpenGL::InitRC());
  HGLRC current = wglGetCurrentContext();
  if (!current) GTEST_SKIP() << "no GL context could be made here";
  SetLastError(1234);
  mOpenGL::Profiles p = mOpenGL::ProbeProfiles();
  EXPECT_EQ(GetLastError(), 1234u);
  EXPECT_EQ(wglGetCurrentContext(), current);
  EXPECT_EQ(wglGetCurrentDC(), window.dc());
  EXPECT_EQ(mOpenGL::GetGLErrorText(), "");
  ASSERT_TRUE(p.CreateContextAttribs) << "this driver has wglCreateContextAttribsARB";
  ASSERT_TRUE(p.Core);
  EXPECT_GE(p.Core->Major * 10 + p.Core->Minor, 32);
  const std::string version = std::to_string(p.Core->Major) + "." + std::to_string(p.Core->Minor);
  EXPECT_EQ(p.Core->Version.rfind(version, 0), 0u) << p.Core->Version;
  EXPECT_FALSE(p.Core->Renderer.empty());
  EXPECT_FALSE(p.Core->ShadingLanguage.empty());
  ASSERT_TRUE(p.Compatibility);
  EXPECT_GE(p.Compatibility->Major, 3);
  mOpenGL::DeleteGLContext();
}

}  // namespace
