// OpenGL is loaded at run time. Were opengl32.dll an import of Velmora.exe,
// Windows would refuse to start the program on a machine without it, and
// the program could not tell the user what is missing.
//
// <GL/gl.h> declares every GL and WGL function dllimport, so each call goes
// through an import slot such as __imp__glBegin@4. This file defines those
// slots itself (and no target links opengl32), so the table below *is* what
// every call site already calls through: no call site changes. Each slot
// starts at a stub of the function's own type; the first call through any
// stub loads the DLL and fills all slots, then goes on to the real function.
// Without the DLL the stubs stay and return zero.
#include <windows.h>
#include <GL/gl.h>

#include "gl/mopengl.h"
#include "gl/opengl32_entries.h"

namespace mOpenGL {
namespace {

// The stub of the slot `Slot`: loads OpenGL on first use and forwards;
// without OpenGL it answers zero (no context, no string, no error). Its
// type is the slot's own, so the compiler checks the calling convention.
template <auto Slot>
struct Stub;
template <class R, class... A, R(APIENTRY** Slot)(A...)>
struct Stub<Slot> {
  static R APIENTRY Call(A... args) {
    // The caller may be about to read GetLastError for its own call.
    DWORD kept = GetLastError();
    bool loaded = LoadOpenGL();
    SetLastError(kept);
    if (loaded) return (*Slot)(args...);
    return R();
  }
};

}  // namespace

// The import slots.
namespace slots {
#define VELMORA_GL_SLOT(name, bytes) \
  decltype(&::name) name asm(VELMORA_GL_IMPORT_NAME(name, bytes)) = &Stub<&name>::Call;
VELMORA_GL_ENTRY_POINTS(VELMORA_GL_SLOT)
#undef VELMORA_GL_SLOT
}  // namespace slots

namespace {

// Fills every slot from `dll`, or none when one entry point is missing (a
// half-filled table would mix stubs and real calls on one context).
bool FillSlots(HMODULE dll) {
#define VELMORA_GL_FIND(name, bytes)                  \
  FARPROC name = GetProcAddress(dll, #name);          \
  if (!name) return false;
  VELMORA_GL_ENTRY_POINTS(VELMORA_GL_FIND)
#undef VELMORA_GL_FIND
#define VELMORA_GL_SET(name, bytes) slots::name = reinterpret_cast<decltype(slots::name)>(name);
  VELMORA_GL_ENTRY_POINTS(VELMORA_GL_SET)
#undef VELMORA_GL_SET
  return true;
}

}  // namespace

bool LoadOpenGL() {
  // Once per process, and never unloaded: the slots point into the DLL.
  static const bool loaded = [] {
    HMODULE dll = LoadLibraryA(kOpenGLDll);
    if (!dll) return false;
    if (FillSlots(dll)) return true;
    FreeLibrary(dll);
    return false;
  }();
  return loaded;
}

}  // namespace mOpenGL
