// The run-time loading of OpenGL: every call site reaches the DLL's own
// function, and the availability question follows the DLL.
#include <gtest/gtest.h>

#include "gl/mopengl.h"
#include "gl/opengl32_entries.h"

namespace {

TEST(LoadOpenGL, EverySlotPointsAtTheDllsOwnFunction) {
  ASSERT_TRUE(mOpenGL::LoadOpenGL());
  HMODULE dll = GetModuleHandleA(mOpenGL::kOpenGLDll);
  ASSERT_NE(dll, nullptr);
  // &::name reads the import slot the calls go through.
#define VELMORA_GL_CHECK(name, bytes)                                                  \
  EXPECT_EQ(reinterpret_cast<FARPROC>(&::name), GetProcAddress(dll, #name)) << #name;
  VELMORA_GL_ENTRY_POINTS(VELMORA_GL_CHECK)
#undef VELMORA_GL_CHECK
}

HMODULE WINAPI NoDll(LPCSTR) {
  SetLastError(ERROR_MOD_NOT_FOUND);
  return nullptr;
}

TEST(OpenGLAvailable, FollowsWhetherTheDllLoads) {
  EXPECT_TRUE(mOpenGL::OpenGLAvailable());
  mOpenGL::Platform().LoadDll = &NoDll;
  EXPECT_FALSE(mOpenGL::OpenGLAvailable());
  mOpenGL::ResetPlatform();
  EXPECT_TRUE(mOpenGL::OpenGLAvailable());
}

}  // namespace
