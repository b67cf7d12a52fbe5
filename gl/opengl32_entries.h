#pragma once
// Every GL and WGL entry point the program, its tests and its benchmarks
// call, with the bytes of its arguments (the @N of its stdcall name). A
// wrong count shows at link time as an undefined __imp__ symbol.
#define VELMORA_GL_ENTRY_POINTS(X)                                                       \
  X(glBegin, 4) X(glCallList, 4) X(glCallLists, 12) X(glClear, 4) X(glClearColor, 16)   \
  X(glColor3f, 12) X(glColor3fv, 4) X(glCullFace, 4) X(glDeleteLists, 8)                 \
  X(glDisable, 4) X(glEdgeFlag, 4) X(glEnable, 4) X(glEnd, 0) X(glEndList, 0)            \
  X(glFinish, 0) X(glFlush, 0) X(glFrontFace, 4) X(glGenLists, 4) X(glGetError, 0)       \
  X(glGetFloatv, 8) X(glGetIntegerv, 8) X(glGetString, 4) X(glIsList, 4)                 \
  X(glListBase, 4) X(glLoadIdentity, 0) X(glMatrixMode, 4) X(glNewList, 8) X(glOrtho, 48)                   \
  X(glPixelStorei, 8) X(glPointSize, 4) X(glPolygonMode, 8) X(glRasterPos3f, 12)         \
  X(glReadBuffer, 4) X(glReadPixels, 28) X(glRectf, 16) X(glRotatef, 16) X(glShadeModel, 4)             \
  X(glTranslatef, 12) X(glVertex3d, 24) X(glVertex3f, 12) X(glViewport, 16)              \
  X(wglCreateContext, 4) X(wglDeleteContext, 4) X(wglGetCurrentContext, 0)              \
  X(wglGetCurrentDC, 0) X(wglGetProcAddress, 4) X(wglMakeCurrent, 8) X(wglUseFontBitmapsA, 16)

// The external name of an entry point's import slot, as the compiler emits
// it for calls: decorated stdcall names on 32-bit Windows, plain names on
// 64-bit.
#ifdef _WIN64
#define VELMORA_GL_IMPORT_NAME(name, bytes) "__imp_" #name
#else
#define VELMORA_GL_IMPORT_NAME(name, bytes) "__imp__" #name "@" #bytes
#endif
