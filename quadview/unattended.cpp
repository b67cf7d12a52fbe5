#include "quadview/unattended.h"

#include "quadview/quadview_frm.h"

namespace quadview {
namespace {

void Pump() {
  MSG msg;
  while (PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE)) {
    TranslateMessage(&msg);
    DispatchMessageA(&msg);
  }
}

}  // namespace

// The redraw paths in the order a user meets them: the first paint, a
// resize of the window (which resizes the views too), a repaint of the
// window and a repaint of each view.
UnattendedQuadRun RunUnattended(const QuadHost& host, SceneCompiler compile) {
  UnattendedQuadRun run;
  QuadView_frm frm(host);
  frm.SetSceneCompiler(compile);
  auto checkViews = [&](const std::string& path) {
    Pump();
    frm.CheckViews(path);
  };
  run.status = frm.ShowUnattended(run.result, [&] {
    checkViews("the first paint");
    RECT r{};
    GetWindowRect(frm.hwnd(), &r);
    SetWindowPos(frm.hwnd(), nullptr, 0, 0, r.right - r.left + 48, r.bottom - r.top + 32,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    checkViews("a resize");
    RedrawWindow(frm.hwnd(), nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
    checkViews("a repaint of the window");
    for (int k = 0; k < 4; ++k)
      if (Picture* view = frm.MapPic(k))
        RedrawWindow(view->hwnd(), nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
    checkViews("a repaint of the views");
  });
  run.verdict = frm.Verdict();
  return run;
}

}  // namespace quadview
