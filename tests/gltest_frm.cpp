#include "tests/gltest_frm.h"

#include "gl/mopengl.h"
#include "tests/catalogue.h"
#include "tests/scene_math.h"
#include "win32/ui.h"

namespace tests {
namespace {

using win32::CreateControl;

constexpr char kClassName[] = "GLTest_frm";
constexpr char kViewClass[] = "Velmora_GLView";
// What a view tells its window.
constexpr UINT kViewPaint = WM_APP + 1;
constexpr UINT kViewMouseUp = WM_APP + 2;
constexpr UINT kViewMouseMove = WM_APP + 3;

constexpr UINT kTimerInterval = 100;  // ms

// The views draw with OpenGL only: no background erase, painting inside
// BeginPaint/EndPaint by their window.
LRESULT CALLBACK ViewProc(HWND wnd, UINT msg, WPARAM wp, LPARAM lp) {
  int id = GetDlgCtrlID(wnd);
  switch (msg) {
    case WM_ERASEBKGND:
      return TRUE;
    case WM_PAINT: {
      PAINTSTRUCT ps;
      BeginPaint(wnd, &ps);
      SendMessageA(GetParent(wnd), kViewPaint, id, 0);
      EndPaint(wnd, &ps);
      return 0;
    }
    case WM_LBUTTONUP:
    case WM_RBUTTONUP:
    case WM_MBUTTONUP:
      SendMessageA(GetParent(wnd), kViewMouseUp, id, lp);
      return 0;
    case WM_MOUSEMOVE:
      SendMessageA(GetParent(wnd), kViewMouseMove, id, lp);
      return 0;
  }
  return DefWindowProcA(wnd, msg, wp, lp);
}

HWND CreateView(HWND parent, win32::TwipRect r, int id) {
  static const bool registered =
      win32::RegisterSimpleClass(kViewClass, CS_OWNDC, ViewProc, reinterpret_cast<LPCSTR>(IDC_CROSS));
  if (!registered) return nullptr;
  return CreateControl(parent, kViewClass, "", WS_VISIBLE | WS_CLIPSIBLINGS, r, id, WS_EX_CLIENTEDGE);
}

}  // namespace


GLTest_frm::GLTest_frm() {
  const DWORD style = WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU | WS_CLIPCHILDREN;
  RECT rc{0, 0, win32::TwipsToPixelsX(9300), win32::TwipsToPixelsY(6600)};
  AdjustWindowRectEx(&rc, style, FALSE, 0);
  if (!RegisterClassOnce(kClassName, 0, reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1),
                         LoadIconA(GetModuleHandleA(nullptr), MAKEINTRESOURCEA(1))) ||
      !Create(0, kClassName, win32::kAppTitle, style, CW_USEDEFAULT, CW_USEDEFAULT,
              rc.right - rc.left, rc.bottom - rc.top, nullptr)) {
    errorCode_ = 1;
    return;
  }
  desc_ = CreateControl(hwnd(), "STATIC", "", WS_VISIBLE | SS_LEFT | SS_NOPREFIX,
                        {120, 120, 9060, 1080}, kDesc);
  mapPic_ = CreateView(hwnd(), {120, 1320, 4440, 4440}, kMapPic);
  mapPic2_ = CreateView(hwnd(), {4740, 1320, 4440, 4440}, kMapPic2);
  wait_ = CreateControl(hwnd(), "STATIC", "Please wait:", WS_VISIBLE | SS_LEFT,
                        {120, 5970, 3000, 300}, kWait);
  abort_ = CreateControl(hwnd(), "BUTTON", "Abort", WS_VISIBLE | WS_TABSTOP | BS_PUSHBUTTON,
                         {7680, 5880, 1500, 420}, kAbort);
  if (!mapPic_ || !mapPic2_ || !abort_) errorCode_ = 1;
  dc1_ = win32::WindowDC(mapPic_);
  dc2_ = win32::WindowDC(mapPic2_);
  Form_Load();
}

GLTest_frm::~GLTest_frm() {
  if (hwnd() && !unloaded_) Form_Unload();
}

void GLTest_frm::Form_Load() { frame_ = 0; }

void GLTest_frm::Init(const std::string& testCaption) {
  win32::SetText(desc_, TestText(mode_, 1));
  win32::SetText(hwnd(), testCaption + " " + win32::GetText(hwnd()));
  if (mode_ != kInteractionTest) {
    timerOn_ = SetTimer(hwnd(), kTimerId, kTimerInterval, nullptr) != 0;
    win32::SetText(abort_, "Abort");
  } else {
    KillTimer(hwnd(), kTimerId);
    timerOn_ = false;
    win32::SetText(abort_, "Close");
  }
  painted_ = 0;
}

int GLTest_frm::ShowModal(HWND owner) {
  if (hwnd() && !unloaded_ && errorCode_ == 0) win32::RunModal(hwnd(), owner);
  return errorCode_;
}

// Each view gets a context of its own: whatever context is current is put
// aside first, so that the device layer makes a new one for this view.
// The scenes later draw with whichever context was made last, in both views.
// A view whose pixel format could not be set has shown that failure once;
// it is not tried again in this window and its frames draw nothing.
void GLTest_frm::PrepareView(int view) {
  wglMakeCurrent(nullptr, nullptr);
  mOpenGL::Surface surface(ViewDC(view));
  if (!mOpenGL::InitRC())
    win32::MsgBox(hwnd(), "No GL Access (" + std::to_string(view) + ")", win32::kAppTitle, MB_OK);
  if (mOpenGL::Platform().GetPixelFormat(ViewDC(view)) == 0) {
    noFormat_[view] = true;
    return;
  }
  contexts_[view] = mOpenGL::TakeCurrentContext();
  mOpenGL::MakeCurrentGL();
  glClearColor(0, 0, 0, 0);
  glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
  glColor3f(1, 1, 1);
  // NOTE: a fresh set of font lists each time, freed only with the context.
  GLuint base = 0;
  mOpenGL::DrawTextGL("INIT " + std::to_string(view), 0, 0, 0, base);
  SwapBuffers(ViewDC(view));
}

void GLTest_frm::InitView1() { PrepareView(1); }

void GLTest_frm::Redraw() { PrepareView(2); }

void GLTest_frm::DrawScene(int view) {
  mOpenGL::Surface surface(ViewDC(view));
  switch (mode_) {
    case 0: DrawPoints(); break;
    case 1: DrawGL_PointSize(); break;
    case 2: DrawWords(view); break;
    case 3: DrawQuads(); break;
    case 4: DrawTets(); break;
    case 5: DrawPolygon(); break;
    case 6: DrawColors(view); break;
    case 7: DrawBlend(); break;
    case 8: DrawGL_GreyFloat(); break;
    case 9: DrawListTets(view); break;
    case 10: DrawBigList(view); break;
    case 11: DrawBigZoom(view); break;
    case 12: DrawGL_Interaction(); break;
  }
}

// A frame fails when the window has a context but the scene could not draw
// with it on this view. Without any context (a failed InitRC, already told
// by "No GL Access") the frames just draw nothing.
void GLTest_frm::RenderView(int view, bool check) {
  if (noFormat_[view]) return;
  DrawScene(view);
  bool haveContext = contexts_[1] || contexts_[2];
  bool drawn = wglGetCurrentContext() && wglGetCurrentDC() == ViewDC(view);
  if (haveContext && !drawn) errorCode_ = 21;
  if (check && drawn) CheckFrame(view);
  SwapBuffers(ViewDC(view));
}

// The back buffer still holds the frame: it is read before the swap.
void GLTest_frm::CheckFrame(int view) {
  FrameFacts f;
  f.mode = mode_;
  f.frame = frame_;
  f.view = view;
  f.sceneList = sceneList_[static_cast<size_t>(view)];
  f.fontBase = fontBase_[static_cast<size_t>(view)];
  f.click = {squareX_, squareY_};
  if (!SceneChecker::Wants(f)) return;
  GLfloat m[16] = {};
  glGetFloatv(GL_MODELVIEW_MATRIX, m);
  f.modelviewX = m[0];
  glFinish();
  checker_.Check(f, ReadView(view));
}

Picture GLTest_frm::ReadView(int view) const {
  RECT rc{};
  GetClientRect(View(view), &rc);
  Picture p;
  p.width = rc.right;
  p.height = rc.bottom;
  p.rgb.resize(static_cast<size_t>(p.width) * static_cast<size_t>(p.height) * 3);
  glPixelStorei(GL_PACK_ALIGNMENT, 1);
  glReadPixels(0, 0, p.width, p.height, GL_RGB, GL_UNSIGNED_BYTE, p.rgb.data());
  return p;
}

void GLTest_frm::Form_Paint() {
  if (painted_ || busy_) return;
  Busy busy(busy_);
  InitView1();
  RenderView(1);
  Redraw();
  RenderView(2);
  if (mode_ == kInteractionTest) RenderView(2);
  if (IsWindowVisible(hwnd())) painted_ = -1;
}

void GLTest_frm::MapPic_Paint(int view) {
  if (frame_ != 0 || !painted_ || busy_) return;
  Busy busy(busy_);
  RenderView(view);
  if (view == 2 && mode_ == kInteractionTest) RenderView(2);
}

// NOTE: the countdown shows 0 and then -1 on the last tick; the test runs
// 51 ticks. A tick that comes while a message box of a frame is up (its
// loop keeps the timer running) is dropped, not drawn inside that frame.
void GLTest_frm::GLTimer_Timer() {
  if (busy_) return;
  Busy busy(busy_);
  RenderView(1, true);
  RenderView(2, true);
  ++frame_;
  win32::SetText(wait_, "Please wait: " + std::to_string(50 - frame_));
  if (frame_ > 50) {
    frame_ = 0;
    Abort_Cbt_Click();
  }
}

int GLTest_frm::RunUnattended() {
  if (!hwnd() || unloaded_) return 0;
  KillTimer(hwnd(), kTimerId);
  ShowWindow(hwnd(), SW_SHOWNOACTIVATE);
  UpdateWindow(hwnd());
  Form_Paint();
  auto pump = [] {
    MSG msg;
    while (PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE)) {
      TranslateMessage(&msg);
      DispatchMessageA(&msg);
    }
  };
  pump();
  int frames = 0;
  if (mode_ == kInteractionTest) {
    RECT rc{};
    GetClientRect(mapPic_, &rc);
    // A click a quarter of the way in from the top-left corner.
    MapPic_MouseUp(rc.right / 4, rc.bottom / 4);
    frames = 1;
    Abort_Cbt_Click();
  } else {
    while (!unloaded_) {
      GLTimer_Timer();
      ++frames;
      pump();
    }
  }
  return frames;
}

void GLTest_frm::Abort_Cbt_Click() {
  if (unloaded_) return;
  Form_Unload();
}

void GLTest_frm::MapPic_MouseUp(int x, int y) {
  if (mode_ != kInteractionTest && !(GetWindowLongA(abort_, GWL_STYLE) & BS_DEFPUSHBUTTON)) {
    SendMessageA(hwnd(), DM_SETDEFID, kAbort, 0);
    SendMessageA(abort_, BM_SETSTYLE, BS_DEFPUSHBUTTON, TRUE);
  }
  RECT rc{};
  GetClientRect(mapPic_, &rc);
  auto xy = ViewCoordinates(x, y, rc.right, rc.bottom);
  squareX_ = xy[0];
  squareY_ = xy[1];
  if (busy_) return;
  Busy busy(busy_);
  RenderView(1);
  RenderView(2);
  RenderView(2, true);
}

// Presents the right view's back buffer without drawing: a driver that
// keeps a stale back buffer shows the old and the new square in turn.
void GLTest_frm::MapPic2_MouseMove() {
  if (mode_ == kInteractionTest) SwapBuffers(dc2_.get());
}

// Teardown order: stop the timer, make no context current and delete the
// views' contexts, release the device contexts, then the window.
void GLTest_frm::Form_Unload() {
  unloaded_ = true;
  KillTimer(hwnd(), kTimerId);
  HGLRC deleted = mOpenGL::DeleteGLContext();
  for (auto& rc : contexts_) {
    HGLRC own = rc.release();
    if (own != deleted && !mOpenGL::DeleteRenderingContext(own) && errorCode_ == 0)
      errorCode_ = 2;
  }
  dc1_.reset();
  dc2_.reset();
  HWND wnd = hwnd();
  win32::EndModal(wnd);
  DestroyWindow(wnd);
}

LRESULT GLTest_frm::HandleMessage(UINT msg, WPARAM wp, LPARAM lp) {
  switch (msg) {
    case WM_PAINT: {
      PAINTSTRUCT ps;
      BeginPaint(hwnd(), &ps);
      Form_Paint();
      EndPaint(hwnd(), &ps);
      return 0;
    }
    case kViewPaint:
      MapPic_Paint(static_cast<int>(wp) == kMapPic ? 1 : 2);
      return 0;
    case kViewMouseUp:
      if (static_cast<int>(wp) == kMapPic)
        MapPic_MouseUp(static_cast<short>(LOWORD(lp)), static_cast<short>(HIWORD(lp)));
      return 0;
    case kViewMouseMove:
      if (static_cast<int>(wp) == kMapPic2) MapPic2_MouseMove();
      return 0;
    case WM_TIMER:
      if (wp == kTimerId && !unloaded_) GLTimer_Timer();
      return 0;
    case WM_COMMAND:
      if (LOWORD(wp) == kAbort || LOWORD(wp) == IDCANCEL) Abort_Cbt_Click();
      return 0;
    case WM_CLOSE:
      // Closing from the system menu ends the test as Abort does.
      Abort_Cbt_Click();
      return 0;
  }
  return Default(msg, wp, lp);
}

}  // namespace tests
