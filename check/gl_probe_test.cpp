#include "check/gl_probe.h"

#include <gtest/gtest.h>

#include <set>

namespace check {
namespace {

TEST(HasExtension, WholeWordsOnly) {
  EXPECT_TRUE(HasExtension("GL_EXT_texture3D GL_ARB_multitexture", "GL_ARB_multitexture"));
  EXPECT_TRUE(HasExtension("GL_ARB_multitexture GL_EXT_texture3D", "GL_ARB_multitexture"));
  EXPECT_FALSE(HasExtension("GL_ARB_multitexture_extra", "GL_ARB_multitexture"));
  EXPECT_FALSE(HasExtension("XGL_ARB_multitexture", "GL_ARB_multitexture"));
  EXPECT_TRUE(HasExtension("GL_EXT_texture3Dx GL_EXT_texture3D ", "GL_EXT_texture3D"));
  EXPECT_FALSE(HasExtension("", "GL_EXT_texture3D"));
  EXPECT_FALSE(HasExtension("GL_EXT_texture3D", ""));
}

TEST(UnresolvedEntryPoints, NamesOnlyMissingEntriesOfNamedExtensionsOfBothLists) {
  const std::set<std::string> missing = {"glClientActiveTextureARB", "wglSwapIntervalEXT",
                                         "glLockArraysEXT"};  // its extension is not named
  auto gaps = UnresolvedEntryPoints("GL_EXT_texture3D GL_ARB_multitexture",
                                    "WGL_ARB_extensions_string WGL_EXT_swap_control",
                                    [&](const char* name) { return missing.count(name) == 0; });
  ASSERT_EQ(gaps.size(), 2u);
  EXPECT_EQ(gaps[0].extension, "GL_ARB_multitexture");
  EXPECT_EQ(gaps[0].unresolved, std::vector<std::string>{"glClientActiveTextureARB"});
  EXPECT_EQ(gaps[1].extension, "WGL_EXT_swap_control");
  EXPECT_EQ(gaps[1].unresolved, std::vector<std::string>{"wglSwapIntervalEXT"});
}

}  // namespace
}  // namespace check
