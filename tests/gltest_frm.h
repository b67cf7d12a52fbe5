#pragma once
// GLTest_frm: the modal window one visual test runs in. Two views side by
// side, each with its own device context and rendering context, animated
// by a 100 ms timer for 51 ticks (the interaction test waits for Close).
#include <windows.h>
#include <GL/gl.h>

#include <array>
#include <string>

#include "gl/mopengl.h"
#include "tests/autocheck.h"
#include "tests/picture_check.h"
#include "win32/handle.h"
#include "win32/window.h"

namespace tests {

class GLTest_frm : public win32::Window {
 public:
  GLTest_frm();
  ~GLTest_frm() override;

  int mode() const { return mode_; }
  void mode(int m) { mode_ = m; }

  // Prepares the window for the current mode; `testCaption` is the caption
  // of the main window's button of this test.
  void Init(const std::string& testCaption);
  // Shows the window modally over `owner` until it is unloaded; returns
  // the window's error code (0 when nothing failed; see ErrorCode).
  int ShowModal(HWND owner);
  // 1 the window could not be loaded, 2 a failure while unloading, 21 a
  // frame that could not be drawn on its view; 0 when nothing failed.
  int ErrorCode() const { return errorCode_; }
  // Prepares view 2 (the view's own context, "INIT 2").
  void Redraw();
  // Runs the test without a person and without the timer: shows the window
  // without activating it, draws the 51 frames back to back (the
  // interaction test clicks into view 1 and closes) and unloads it.
  // Returns the frames drawn.
  int RunUnattended();
  // What the automatic check saw on the frames drawn so far.
  const AutoVerdict& Verdict() const { return checker_.Verdict(); }

  // The scenes, one per test, drawn into the view whose device context the
  // device layer holds (ExtenderHdc); none swaps buffers.
  void DrawGL_Interaction();
  void DrawGL_PointSize();
  void DrawPolygon();
  void DrawGL_GreyFloat();
  void DrawBigList(int view);
  void DrawBigZoom(int view);
  void DrawPoints();
  void DrawTets();
  void DrawColors(int view);
  void DrawWords(int view);
  void DrawListTets(int view);
  void DrawQuads();
  void DrawBlend();

 protected:
  LRESULT HandleMessage(UINT msg, WPARAM wp, LPARAM lp) override;

 private:
  enum Id { kAbort = 1, kMapPic, kMapPic2, kDesc, kWait };
  static constexpr UINT_PTR kTimerId = 1;

  void Form_Load();
  void Form_Paint();
  void InitView1();
  void PrepareView(int view);
  // Draws one frame into a view; `check` also lets the automatic check
  // look at it (the animation frames and the interaction click).
  void RenderView(int view, bool check = false);
  void CheckFrame(int view);
  Picture ReadView(int view) const;
  void DrawScene(int view);
  void GLTimer_Timer();
  void Abort_Cbt_Click();
  void MapPic_MouseUp(int x, int y);
  void MapPic2_MouseMove();
  void MapPic_Paint(int view);
  void Form_Unload();
  HWND View(int view) const { return view == 1 ? mapPic_ : mapPic2_; }
  HDC ViewDC(int view) const { return view == 1 ? dc1_.get() : dc2_.get(); }
  void StandardSetUp(float r, float g, float b);

  int mode_ = 0;
  int errorCode_ = 0;
  int frame_ = 0;
  short painted_ = 0;
  float squareX_ = 0, squareY_ = 0;
  std::array<GLuint, 3> fontBase_{};   // per view, 1 and 2
  std::array<GLuint, 3> sceneList_{};  // per view, 1 and 2
  std::array<mOpenGL::RenderingContext, 3> contexts_;  // each view's own, 1 and 2
  HWND mapPic_ = nullptr, mapPic2_ = nullptr;
  win32::WindowDC dc1_, dc2_;  // the views' own (CS_OWNDC)
  HWND abort_ = nullptr, desc_ = nullptr, wait_ = nullptr;
  std::array<bool, 3> noFormat_{};     // views whose pixel format could not be set
  bool timerOn_ = false;
  bool unloaded_ = false;
  // Set while a view is prepared or a frame drawn: a message box shown
  // there runs a message loop that must not start another frame.
  bool busy_ = false;
  SceneChecker checker_;
  struct Busy {
    explicit Busy(bool& flag) : flag_(flag) { flag_ = true; }
    ~Busy() { flag_ = false; }
    bool& flag_;
  };
};

}  // namespace tests
