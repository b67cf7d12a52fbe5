// "Check Specifications": gathers the machine's and the driver's values
// and shows the composed report.
#include <cmath>

#include "shell/main_window.h"
#include "shell/specs_gather.h"
#include "win32/ui.h"

namespace shell {
namespace {

// Tab positions of the report box, in the box's dialog units.
void SetTextBoxTabStops(HWND box, const std::vector<int>& stops) {
  SendMessageA(box, EM_SETTABSTOPS, stops.size(), reinterpret_cast<LPARAM>(stops.data()));
}

}  // namespace

void VelmoraMain::Specs_Cbt_Click() {
  HWND box = Control(kSpecsTbx);
  if (!win32::Module(mOpenGL::Platform().LoadDll(mOpenGL::kOpenGLDll))) {
    win32::SetText(box, "DLL missing");
    return;
  }
  win32::SetText(box, "Error");
  // The second stop is where the values after the 37-character labels go.
  const int labelStop = static_cast<int>(std::lround(37 * 0.75));
  SetTextBoxTabStops(box, {0, labelStop});

  SpecsRequest request;
  request.loadPicture = [this] { return LoadOpenGLPicture(); };
  request.mode = this;
  request.modeTag = ModeTag(mode_.view.option);
  for (int i = 0; i < kTestCount; ++i) {
    request.tests.Captions[i] = win32::GetText(Control(kGLTestCbt0 + i));
    request.tests.Labels[i] = win32::GetText(Control(kGLTestLbl0 + i));
  }
  request.tests.QuadViewCaption = win32::GetText(Control(kQuadViewCbt));
  request.tests.ForceRedraw =
      SendMessageA(Control(kForceRedrawChk), BM_GETCHECK, 0, 0) == BST_CHECKED ? 1 : 0;
  request.tests.QuadViewLabel = win32::GetText(Control(kQuadViewLbl));
  request.tests.QuadViewText = quadViewText_;
  std::optional<SpecsGathering> gathered = GatherSpecifications(request);
  if (!gathered) {
    win32::SetText(box, "DLL missing");
    return;
  }

  const report::OpenGLPart& gl = gathered->inputs.OpenGL;
  reportContext_ = {gathered->modules, gl.Renderer, gl.Flags};
  std::string text = gathered->Text();
  if (auto name = gathered->LogFileName(win32::GetText(Control(kFileTbx))))
    win32::SetText(Control(kFileTbx), *name);
  win32::SetText(box, text);
  FocusControl(kNext);
  specsAsked_ = true;
}

}  // namespace shell
