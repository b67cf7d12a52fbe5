// "Check Specifications": gathers the machine's and the driver's values
// and shows the composed report.
#include <cmath>

#include "report/report.h"
#include "shell/main_window.h"
#include "sysinfo/opsysinfo.h"
#include "sysinfo/pcsysinfo.h"
#include "sysinfo/ussysinfo.h"
#include "win32/ui.h"

namespace shell {
namespace {

std::string QueryGLString(GLenum name) {
  const GLubyte* text = glGetString(name);
  return text ? reinterpret_cast<const char*>(text) : "No Info found";
}

// Tab positions of the report box, in the box's dialog units.
void SetTextBoxTabStops(HWND box, const std::vector<int>& stops) {
  SendMessageA(box, EM_SETTABSTOPS, stops.size(), reinterpret_cast<LPARAM>(stops.data()));
}

}  // namespace

void VelmoraMain::Specs_Cbt_Click() {
  HWND box = Control(kSpecsTbx);
  win32::Module opengl(LoadLibraryA("opengl32.dll"));
  if (!opengl) {
    win32::SetText(box, "DLL missing");
    return;
  }
  win32::SetText(box, "Error");
  // The second stop is where the values after the 37-character labels go.
  const int labelStop = static_cast<int>(std::lround(37 * 0.75));
  SetTextBoxTabStops(box, {0, labelStop});

  sysinfo::COpSysInfo os;
  sysinfo::cPcSysInfo pc;
  sysinfo::cUsSysInfo user;
  report::ReportInputs in;
  in.System.ComputerName = user.ComputerName();
  in.System.UserText = sysinfo::ReportedUser(user);
  in.System.Platform = os.Platform();
  in.System.IsWinNT = os.IsWinNT();
  in.System.Version = os.Version();
  in.System.Processor = pc.Processor();
  in.System.ScreenWidth = GetSystemMetrics(SM_CXSCREEN);
  in.System.ScreenHeight = GetSystemMetrics(SM_CYSCREEN);

  auto& device = mOpenGL::State();
  std::string modeTag = mode_.view.option == ModeOption::Hardware   ? "-HW "
                        : mode_.view.option == ModeOption::Software ? "-SW "
                                                                    : "";
  {
    auto picture = LoadOpenGLPicture();
    device.ExtenderHdc = picture->dc();
    mOpenGL::ClearErr();
    auto modulesBefore = sysinfo::LoadedModulePaths();
    mOpenGL::InitRC();
    reportContext_ = {{true, std::move(modulesBefore), sysinfo::LoadedModulePaths()}, "", 0};
    if (device.Err.Number == ERROR_INVALID_PIXEL_FORMAT) {
      in.OpenGL.Failure = device.Err.Description;
      mOpenGL::ClearErr();
    } else {
      in.OpenGL.ModeTag = modeTag;
      in.OpenGL.PixelFormat = CurrentOGLPixelFormat();
      in.OpenGL.Flags = device.ModulePFD.dwFlags;
      in.OpenGL.ColorBits = device.ModulePFD.cColorBits;
      in.OpenGL.DepthBits = device.ModulePFD.cDepthBits;
      in.OpenGL.Renderer = QueryGLString(GL_RENDERER);
      in.OpenGL.Version = QueryGLString(GL_VERSION);
      in.OpenGL.Vendor = QueryGLString(GL_VENDOR);
      in.OpenGL.Extensions = QueryGLString(GL_EXTENSIONS);
      reportContext_.Renderer = in.OpenGL.Renderer;
      reportContext_.Flags = in.OpenGL.Flags;
      mOpenGL::DeleteGLContext();
    }
  }
  in.DescriptorFlags = device.ModulePFD.dwFlags;
  in.DescriptorSize = device.ModulePFD.nSize;

  for (int i = 0; i < kTestCount; ++i) {
    in.Tests.Captions[i] = win32::GetText(Control(kGLTestCbt0 + i));
    in.Tests.Labels[i] = win32::GetText(Control(kGLTestLbl0 + i));
  }
  in.Tests.QuadViewCaption = win32::GetText(Control(kQuadViewCbt));
  in.Tests.ForceRedraw =
      SendMessageA(Control(kForceRedrawChk), BM_GETCHECK, 0, 0) == BST_CHECKED ? 1 : 0;
  in.Tests.QuadViewLabel = win32::GetText(Control(kQuadViewLbl));
  in.Tests.QuadViewText = quadViewText_;

  std::string text = report::ComposeReport(in);
  if (auto name = report::ProposeLogFileName(
          win32::GetText(Control(kFileTbx)), os.ID(), user.ComputerName(), in.System.UserText,
          in.System.ScreenWidth, in.System.ScreenHeight, device.ModulePFD.cColorBits, modeTag,
          CurrentOGLPixelFormat()))
    win32::SetText(Control(kFileTbx), *name);
  win32::SetText(box, text);
  FocusControl(kNext);
  specsAsked_ = true;
}

}  // namespace shell
