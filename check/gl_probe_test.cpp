#include "check/gl_probe.h"

#include <gtest/gtest.h>

#include <set>

namespace check {
namespace {

TEST(HasExtension, WholeWordsOnly) {
  const struct {
    const char* list;
    const char* name;
    bool found;
  } cases[] = {
      {"GL_EXT_texture3D GL_ARB_multitexture", "GL_ARB_multitexture", true},
      {"GL_ARB_multitexture GL_EXT_texture3D", "GL_ARB_multitexture", true},
      {"GL_ARB_multitexture", "GL_ARB_multitexture", true},
      {"GL_ARB_multitexture_extra", "GL_ARB_multitexture", false},
      {"XGL_ARB_multitexture", "GL_ARB_multitexture", false},
      {"GL_EXT_texture GL_EXT_texture3D", "GL_EXT_texture3D", true},
      {"GL_EXT_texture3Dx GL_EXT_texture3D ", "GL_EXT_texture3D", true},
      {"", "GL_EXT_texture3D", false},
      {"GL_EXT_texture3D", "", false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.list) + " / " + c.name);
    EXPECT_EQ(HasExtension(c.list, c.name), c.found);
  }
}

TEST(UnresolvedEntryPoints, NamesOnlyMissingEntriesOfNamedExtensions) {
  const std::set<std::string> missing = {"glClientActiveTextureARB", "wglSwapIntervalEXT",
                                         "glLockArraysEXT"};
  // GL_EXT_compiled_vertex_array is not named, so its missing entry does not count; the WGL
  // list is searched as well as the GL one.
  auto gaps = UnresolvedEntryPoints("GL_EXT_texture3D GL_ARB_multitexture",
                                    "WGL_ARB_extensions_string WGL_EXT_swap_control",
                                    [&](const char* name) { return missing.count(name) == 0; });
  ASSERT_EQ(gaps.size(), 2u);
  EXPECT_EQ(gaps[0].extension, "GL_ARB_multitexture");
  EXPECT_EQ(gaps[0].unresolved, std::vector<std::string>{"glClientActiveTextureARB"});
  EXPECT_EQ(gaps[1].extension, "WGL_EXT_swap_control");
  EXPECT_EQ(gaps[1].unresolved, std::vector<std::string>{"wglSwapIntervalEXT"});
  EXPECT_TRUE(UnresolvedEntryPoints("", "", [](const char*) { return false; }).empty());
}

}  // namespace
}  // namespace check
