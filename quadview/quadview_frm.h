#pragma once
// QuadView_frm: the quad-view redraw test. Four OpenGL views, each with its
// own device and rendering context, inside one resizable window; four
// boxes choose between a full redraw and a mere buffer swap on each of the
// four redraw paths (form resize, form paint, picture resize, picture
// paint).
#include <windows.h>
#include <GL/gl.h>

#include <array>
#include <functional>
#include <string>

#include "gl/mopengl.h"
#include "quadview/quadform.h"
#include "quadview/scene.h"
#include "tests/picture_check.h"
#include "win32/handle.h"

namespace quadview {

class QuadView_frm : public QuadForm {
 public:
  explicit QuadView_frm(QuadHost host = {});
  // Termination: also unloads the program-wide print twin.
  ~QuadView_frm() override;

  // Draws the scene into view `index` (0..3) without swapping buffers.
  void Redraw(short index) override;
  // Sets up a rendering context for each view and shows "INIT k" in it.
  void RefreshGL() override;
  // Redraws view `index` and swaps its buffers; dropped while one runs.
  void RedrawPic(short index);
  // Presents what view `index`'s back buffer holds; dropped while one runs.
  void SwapPic(short index);

  // The automatic check: reads what the four views show and checks each
  // for the pyramid grid on white, named after the redraw path just taken.
  // The window also checks its views once more as it closes.
  void CheckViews(const std::string& path);
  const tests::AutoVerdict& Verdict() const { return checker_.Verdict(); }

  // Handlers.
  void Redraw_Cbt_Click();
  void CopyPicture_cmd_Click();
  void OpenGLPicResize_Chk_Click();
  void OpenGLPicPaint_Chk_Click();
  void MapPic_Resize(int index);
  void MapPic_Paint(int index);

  struct WindowState {
    bool bRefreshDone = false;          // the first paint has set the views up
    std::array<GLuint, 4> ViewList{};   // each view's scene list; 0 not built
    short InfoShown = 0;                // how often the viewport figures were shown
    bool bInRedraw = false;             // RedrawPic is running
    bool bInSwap = false;               // SwapPic is running
  };
  const WindowState& State() const { return state_; }
  HGLRC ViewContext(int index) const;

  // Tells a test after every buffer swap which view was presented and by
  // which path; the view's context is current on its device context then.
  enum class SwapPath { RefreshGL, RedrawPic, SwapPic, PicPaint };
  void SetSwapObserver(std::function<void(int view, SwapPath path)> observer) {
    swapObserver_ = std::move(observer);
  }
  // Lets a test compile a smaller scene into the views' lists, so that a
  // storm of resizes stays short; set before the first paint.
  void SetSceneCompiler(SceneCompiler compile) { compileScene_ = compile; }

 protected:
  void Form_Initialize() override;
  void Form_Paint() override;
  void Form_Resize() override;
  void Form_Unload() override;
  void OnCommand(int id, int code) override;
  void ToggleCopyPicture() override;
  void Picture_Paint(int index) override;
  void Picture_Resize(int index) override;

 private:
  // Points the device layer at view `index` and makes the view's own
  // context current on its device context; false if it has none yet.
  bool BindView(int index);
  void SwapLastSet();
  void Swapped(int view, SwapPath path);
  void RedrawAll();
  void SwapAll();
  int ViewOfContext(HGLRC rc) const;

  WindowState state_;
  std::array<mOpenGL::RenderingContext, 4> contexts_;
  // The view whose device context the window last pointed the device
  // layer at: the picture-paint path swaps that one.
  int lastSetView_ = -1;
  bool inFirstPaint_ = false;
  bool inRefreshGL_ = false;
  std::function<void(int, SwapPath)> swapObserver_;
  SceneCompiler compileScene_ = CompileSceneList;
  tests::SceneChecker checker_;
};

}  // namespace quadview
