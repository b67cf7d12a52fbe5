#include "check/gl_probe.h"

#include <windows.h>
#include <GL/gl.h>

#include <iterator>

namespace check {
namespace {

struct ExtensionEntries {
  const char* extension;
  std::vector<const char*> entryPoints;
};

// Common extensions that define entry points, with the ones a program
// using them would look up first.
const std::vector<ExtensionEntries>& ExtensionTable() {
  static const std::vector<ExtensionEntries> table = {
      {"GL_ARB_multitexture", {"glActiveTextureARB", "glClientActiveTextureARB",
                               "glMultiTexCoord2fARB"}},
      {"GL_ARB_vertex_buffer_object",
       {"glBindBufferARB", "glBufferDataARB", "glGenBuffersARB", "glDeleteBuffersARB"}},
      {"GL_ARB_vertex_program", {"glGenProgramsARB", "glBindProgramARB", "glProgramStringARB"}},
      {"GL_ARB_shader_objects",
       {"glCreateShaderObjectARB", "glShaderSourceARB", "glCompileShaderARB"}},
      {"GL_ARB_occlusion_query", {"glGenQueriesARB", "glBeginQueryARB", "glEndQueryARB"}},
      {"GL_ARB_window_pos", {"glWindowPos2iARB"}},
      {"GL_EXT_compiled_vertex_array", {"glLockArraysEXT", "glUnlockArraysEXT"}},
      {"GL_EXT_draw_range_elements", {"glDrawRangeElementsEXT"}},
      {"GL_EXT_blend_color", {"glBlendColorEXT"}},
      {"GL_EXT_blend_minmax", {"glBlendEquationEXT"}},
      {"GL_EXT_texture3D", {"glTexImage3DEXT"}},
      {"GL_EXT_framebuffer_object",
       {"glBindFramebufferEXT", "glGenFramebuffersEXT", "glCheckFramebufferStatusEXT"}},
      {"GL_EXT_point_parameters", {"glPointParameterfEXT"}},
      {"WGL_ARB_extensions_string", {"wglGetExtensionsStringARB"}},
      {"WGL_ARB_pixel_format", {"wglGetPixelFormatAttribivARB", "wglChoosePixelFormatARB"}},
      {"WGL_ARB_pbuffer", {"wglCreatePbufferARB", "wglGetPbufferDCARB"}},
      {"WGL_ARB_make_current_read", {"wglMakeContextCurrentARB"}},
      {"WGL_ARB_create_context", {"wglCreateContextAttribsARB"}},
      {"WGL_EXT_swap_control", {"wglSwapIntervalEXT", "wglGetSwapIntervalEXT"}},
  };
  return table;
}

using GetProcAddressFn = PROC(WINAPI*)(LPCSTR);
using GetExtensionsStringFn = const char*(WINAPI*)(HDC);

}  // namespace

bool HasExtension(std::string_view list, std::string_view extension) {
  if (extension.empty()) return false;
  for (size_t at = list.find(extension); at != std::string_view::npos;
       at = list.find(extension, at + 1)) {
    bool startsWord = at == 0 || list[at - 1] == ' ';
    size_t end = at + extension.size();
    bool endsWord = end == list.size() || list[end] == ' ';
    if (startsWord && endsWord) return true;
  }
  return false;
}

std::vector<ExtensionGap> UnresolvedEntryPoints(
    std::string_view glExtensions, std::string_view wglExtensions,
    const std::function<bool(const char*)>& resolves) {
  std::vector<ExtensionGap> gaps;
  for (const ExtensionEntries& e : ExtensionTable()) {
    if (!HasExtension(glExtensions, e.extension) && !HasExtension(wglExtensions, e.extension))
      continue;
    ExtensionGap gap{e.extension, {}};
    for (const char* entry : e.entryPoints)
      if (!resolves(entry)) gap.unresolved.push_back(entry);
    if (!gap.unresolved.empty()) gaps.push_back(std::move(gap));
  }
  return gaps;
}

GLProbe ProbeCurrentContext(void* dc, std::string_view glExtensions) {
  GLProbe probe;
  static const struct {
    const char* name;
    GLenum pname;
    int count;
  } kLimits[] = {
      {"GL_MAX_TEXTURE_SIZE", GL_MAX_TEXTURE_SIZE, 1},
      {"GL_MAX_VIEWPORT_DIMS", GL_MAX_VIEWPORT_DIMS, 2},
      {"GL_MAX_LIGHTS", GL_MAX_LIGHTS, 1},
      {"GL_MAX_CLIP_PLANES", GL_MAX_CLIP_PLANES, 1},
      {"GL_MAX_MODELVIEW_STACK_DEPTH", GL_MAX_MODELVIEW_STACK_DEPTH, 1},
      {"GL_MAX_PROJECTION_STACK_DEPTH", GL_MAX_PROJECTION_STACK_DEPTH, 1},
      {"GL_MAX_TEXTURE_STACK_DEPTH", GL_MAX_TEXTURE_STACK_DEPTH, 1},
      {"GL_MAX_ATTRIB_STACK_DEPTH", GL_MAX_ATTRIB_STACK_DEPTH, 1},
      {"GL_MAX_CLIENT_ATTRIB_STACK_DEPTH", GL_MAX_CLIENT_ATTRIB_STACK_DEPTH, 1},
      {"GL_MAX_LIST_NESTING", GL_MAX_LIST_NESTING, 1},
  };
  for (const auto& l : kLimits) {
    GLint values[2] = {};
    glGetIntegerv(l.pname, values);
    probe.limits.push_back({l.name, std::vector<int>(values, values + l.count)});
  }
  glGetError();  // a limit this implementation does not know leaves no error behind

  // wglGetProcAddress is not among the calls the program makes through its
  // import slots, so it is asked of the loaded DLL itself.
  HMODULE opengl = GetModuleHandleA("opengl32.dll");
  auto getProc = opengl ? reinterpret_cast<GetProcAddressFn>(
                              reinterpret_cast<void*>(GetProcAddress(opengl, "wglGetProcAddress")))
                        : nullptr;
  auto resolves = [&](const char* name) {
    if (!getProc) return false;
    auto p = reinterpret_cast<INT_PTR>(getProc(name));
    // Some drivers return small numbers instead of nullptr for a failure.
    return p != 0 && p != 1 && p != 2 && p != 3 && p != -1;
  };
  if (getProc) {
    auto getExtensions = reinterpret_cast<GetExtensionsStringFn>(
        reinterpret_cast<void*>(getProc("wglGetExtensionsStringARB")));
    if (getExtensions)
      if (const char* text = getExtensions(static_cast<HDC>(dc))) probe.wglExtensions = text;
  }
  probe.gaps = UnresolvedEntryPoints(glExtensions, probe.wglExtensions.value_or(""), resolves);
  return probe;
}

}  // namespace check
