#include "shell/specs_gather.h"

#include "sysinfo/opsysinfo.h"
#include "sysinfo/pcsysinfo.h"
#include "sysinfo/ussysinfo.h"
#include "win32/handle.h"

namespace shell {
namespace {

std::string QueryGLString(GLenum name) {
  const GLubyte* text = glGetString(name);
  return text ? reinterpret_cast<const char*>(text) : "No Info found";
}

}  // namespace

std::string ModeTag(ModeOption option) {
  return option == ModeOption::Hardware   ? "-HW "
         : option == ModeOption::Software ? "-SW "
                                          : "";
}

std::optional<std::string> SpecsGathering::LogFileName(const std::string& current) const {
  const auto& s = inputs.System;
  return report::ProposeLogFileName(current, osId, s.ComputerName, s.UserText, s.ScreenWidth,
                                    s.ScreenHeight, colorBits, modeTag, pixelFormat);
}

std::optional<SpecsGathering> GatherSpecifications(const SpecsRequest& request) {
  win32::Module opengl(mOpenGL::Platform().LoadDll(mOpenGL::kOpenGLDll));
  if (!opengl) return std::nullopt;

  SpecsGathering g;
  report::ReportInputs& in = g.inputs;
  sysinfo::COpSysInfo os;
  sysinfo::cPcSysInfo pc;
  sysinfo::cUsSysInfo user;
  in.System.ComputerName = user.ComputerName();
  in.System.UserText = sysinfo::ReportedUser(user);
  in.System.Platform = os.Platform();
  in.System.IsWinNT = os.IsWinNT();
  in.System.Version = os.Version();
  in.System.Processor = pc.Processor();
  in.System.ScreenWidth = GetSystemMetrics(SM_CXSCREEN);
  in.System.ScreenHeight = GetSystemMetrics(SM_CYSCREEN);
  g.osId = os.ID();

  {
    auto picture = request.loadPicture();
    mOpenGL::Surface surface(picture->dc());
    mOpenGL::ClearErr();
    std::vector<std::string> before = sysinfo::LoadedModulePaths();
    mOpenGL::InitRC();
    g.modules = {true, std::move(before), sysinfo::LoadedModulePaths()};
    const mOpenGL::RuntimeError& failure = mOpenGL::LastRuntimeError();
    const PIXELFORMATDESCRIPTOR& pfd = mOpenGL::Descriptor();
    if (failure.Number == ERROR_INVALID_PIXEL_FORMAT) {
      in.OpenGL.Failure = failure.Description;
      mOpenGL::ClearErr();
    } else {
      g.contextMade = wglGetCurrentContext() != nullptr;
      in.OpenGL.ModeTag = request.modeTag;
      in.OpenGL.PixelFormat = request.mode->CurrentOGLPixelFormat();
      in.OpenGL.Flags = pfd.dwFlags;
      in.OpenGL.ColorBits = pfd.cColorBits;
      in.OpenGL.DepthBits = pfd.cDepthBits;
      in.OpenGL.Renderer = QueryGLString(GL_RENDERER);
      in.OpenGL.Version = QueryGLString(GL_VERSION);
      in.OpenGL.Vendor = QueryGLString(GL_VENDOR);
      in.OpenGL.Extensions = QueryGLString(GL_EXTENSIONS);
      if (g.contextMade && request.whileCurrent) request.whileCurrent();
      mOpenGL::DeleteGLContext();
    }
  }
  const PIXELFORMATDESCRIPTOR& pfd = mOpenGL::Descriptor();
  in.DescriptorFlags = pfd.dwFlags;
  in.DescriptorSize = pfd.nSize;
  in.Tests = request.tests;
  g.modeTag = request.modeTag;
  g.pixelFormat = request.mode->CurrentOGLPixelFormat();
  g.colorBits = pfd.cColorBits;
  return g;
}

}  // namespace shell
