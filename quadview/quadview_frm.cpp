#include "quadview/quadview_frm.h"

#include <vector>

#include "gl/mopengl.h"
#include "quadview/mbitblt.h"
#include "quadview/quadprint_frm.h"
#include "quadview/scene.h"
#include "win32/ui.h"

namespace quadview {
namespace {

// A view's picture in a memory device context, read back from OpenGL.
// GDI cannot read an OpenGL window's device context on every driver, so
// the copy to the twin reads the pixels through OpenGL instead.
class ViewImage {
 public:
  ViewImage(HDC reference, int width, int height) : dc_(CreateCompatibleDC(reference)) {
    BITMAPINFO bi{};
    bi.bmiHeader.biSize = sizeof bi.bmiHeader;
    bi.bmiHeader.biWidth = width;
    bi.bmiHeader.biHeight = height;  // bottom-up, as OpenGL reads rows
    bi.bmiHeader.biPlanes = 1;
    bi.bmiHeader.biBitCount = 32;
    bi.bmiHeader.biCompression = BI_RGB;
    void* bits = nullptr;
    bitmap_.reset(CreateDIBSection(dc_.get(), &bi, DIB_RGB_COLORS, &bits, nullptr, 0));
    if (!dc_ || !bitmap_ || !bits) return;
    old_ = SelectObject(dc_.get(), bitmap_.get());
    GdiFlush();
    std::vector<unsigned char> rgba(static_cast<size_t>(width) * height * 4);
    glPixelStorei(GL_PACK_ALIGNMENT, 4);
    glReadBuffer(GL_BACK);
    glReadPixels(0, 0, width, height, GL_RGBA, GL_UNSIGNED_BYTE, rgba.data());
    auto* out = static_cast<unsigned char*>(bits);
    for (size_t i = 0; i + 3 < rgba.size(); i += 4) {
      out[i] = rgba[i + 2];
      out[i + 1] = rgba[i + 1];
      out[i + 2] = rgba[i];
      out[i + 3] = 0;
    }
  }
  ~ViewImage() {
    if (old_) SelectObject(dc_.get(), old_);
  }
  ViewImage(const ViewImage&) = delete;
  ViewImage& operator=(const ViewImage&) = delete;
  HDC dc() const { return old_ ? dc_.get() : nullptr; }

 private:
  win32::Gdi<HBITMAP> bitmap_;
  win32::MemDC dc_;
  HGDIOBJ old_ = nullptr;
};

}  // namespace

QuadView_frm::QuadView_frm(QuadHost host)
    : QuadForm(std::move(host), Design{"Velmora_QuadView", true, Picture::Kind::Container,
                                       Picture::Kind::OpenGL, true}) {}

QuadView_frm::~QuadView_frm() {
  Unload(kFormCode);
  // The twin is made here if it never was, so that this step cannot fail.
  QuadPrint().Unload(kFormCode);
}

HGLRC QuadView_frm::ViewContext(int index) const {
  return index >= 0 && index < kViewCount ? contexts_[static_cast<size_t>(index)].get() : nullptr;
}

void QuadView_frm::Form_Initialize() { state_.bRefreshDone = false; }

int QuadView_frm::ViewOfContext(HGLRC rc) const {
  for (int i = 0; i < kViewCount; ++i)
    if (rc && contexts_[static_cast<size_t>(i)].get() == rc) return i;
  return -1;
}

bool QuadView_frm::BindView(int index) {
  Picture* view = MapPic(index);
  HDC dc = view ? view->hDC() : nullptr;
  lastSetView_ = view ? index : -1;
  if (index < 0 || index >= kViewCount ||
      !mOpenGL::Bind(contexts_[static_cast<size_t>(index)], dc))
    return false;
  mOpenGL::Surface surface(dc);
  mOpenGL::MakeCurrentGL();
  return true;
}

void QuadView_frm::Swapped(int view, SwapPath path) {
  // A copy, so that the observer may replace itself.
  if (auto observer = swapObserver_) observer(view, path);
}

void QuadView_frm::Redraw(short index) {
  Busy busy(*this);
  const bool inRange = index >= 0 && index < kViewCount;
  if (inRange) {
    if (!BindView(index)) return;
  } else {
    // No view of its own: the view the layer was last pointed at.
    if (!wglGetCurrentContext() || lastSetView_ < 0) return;
    mOpenGL::Surface surface(MapPic(lastSetView_)->hDC());
    mOpenGL::MakeCurrentGL();
  }
  glClearColor(1, 1, 1, 0);
  glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
  glEnable(GL_DEPTH_TEST);
  std::array<GLint, 2> maxDims{};
  std::array<GLint, 4> viewport{};
  glGetIntegerv(GL_MAX_VIEWPORT_DIMS, maxDims.data());
  glGetIntegerv(GL_VIEWPORT, viewport.data());
  if (state_.InfoShown == 0) {
    HWND desc = Control(kGLTestDescLbl);
    win32::SetText(desc, win32::GetText(desc) +
                             ViewportInfoText({maxDims[0], maxDims[1]},
                                              {viewport[0], viewport[1], viewport[2], viewport[3]}));
    ++state_.InfoShown;
  }
  if (!inRange) {
    // There is no view and no list for such an index.
    glPointSize(3);
    glFlush();
    return;
  }
  SIZE size = MapPic(index)->ClientSize();
  DrawScene(index, size.cx, size.cy, state_.ViewList[static_cast<size_t>(index)], compileScene_);
}

void QuadView_frm::RefreshGL() {
  if (inRefreshGL_) return;
  inRefreshGL_ = true;
  Busy busy(*this);
  for (int i = 0; i < kViewCount; ++i) {
    // The views keep no retained image, so there is no auto-redraw to
    // switch off; each draws on its own device context.
    Picture* view = MapPic(i);
    if (!view) continue;
    HDC dc = view->hDC();
    lastSetView_ = i;
    mOpenGL::Surface surface(dc);
    // Each view gets a context of its own: with none current, InitRC makes
    // one for this view's device context. A view set up before (a first
    // paint while the window was hidden) only binds its own again.
    auto& rc = contexts_[static_cast<size_t>(i)];
    if (rc)
      mOpenGL::Bind(rc, dc);
    else
      wglMakeCurrent(nullptr, nullptr);
    if (!mOpenGL::InitRC()) win32::MsgBox(hwnd(), "No GL Access (1)", win32::kAppTitle, MB_OK);
    if (!rc && ViewOfContext(wglGetCurrentContext()) < 0)
      rc = mOpenGL::TakeCurrentContext();
    if (BindView(i)) {
      glClearColor(0, 0, 0, 0);
      glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
      glColor3f(1, 1, 1);
      // The font lists are made afresh for each mark and go with the
      // context; the base is not kept.
      GLuint fontBase = 0;
      mOpenGL::DrawTextGL("INIT " + std::to_string(i), 0, 0, 0, fontBase);
    }
    view->Refresh();
    SwapBuffers(dc);
    if (rc) Swapped(i, SwapPath::RefreshGL);
  }
  inRefreshGL_ = false;
}

void QuadView_frm::RedrawPic(short index) {
  if (state_.bInRedraw) return;
  Busy busy(*this);
  state_.bInRedraw = true;
  Picture* view = MapPic(index);
  if (view) lastSetView_ = index;
  Redraw(index);
  if (view && ViewContext(index)) {
    SwapBuffers(view->hDC());
    Swapped(index, SwapPath::RedrawPic);
  }
  state_.bInRedraw = false;
}

void QuadView_frm::SwapPic(short index) {
  if (state_.bInSwap) return;
  Busy busy(*this);
  state_.bInSwap = true;
  if (BindView(index)) {
    SwapBuffers(MapPic(index)->hDC());
    Swapped(index, SwapPath::SwapPic);
  }
  state_.bInSwap = false;
}

// NOTE: swaps the view whose device context was set last, which need not
// be the view being painted; the picture-paint path has always done so.
void QuadView_frm::SwapLastSet() {
  Busy busy(*this);
  int view = lastSetView_;
  if (view < 0 || !BindView(view)) return;
  SwapBuffers(MapPic(view)->hDC());
  Swapped(view, SwapPath::PicPaint);
}

void QuadView_frm::RedrawAll() {
  for (short i = 0; i < kViewCount; ++i) RedrawPic(i);
}

void QuadView_frm::SwapAll() {
  for (short i = 0; i < kViewCount; ++i) SwapPic(i);
}

void QuadView_frm::Form_Paint() {
  Busy busy(*this);
  if (state_.bRefreshDone) {
    RedrawAll();
    return;
  }
  // A paint raised while the views are being set up (by a message box)
  // must not set them up a second time inside the first.
  if (inFirstPaint_) return;
  inFirstPaint_ = true;
  RefreshGL();
  if (Value(kFormPaintChk) == 1)
    RedrawAll();
  else
    SwapAll();
  if (IsWindowVisible(hwnd())) {
    state_.bRefreshDone = true;
    RedrawAll();
  }
  inFirstPaint_ = false;
}

void QuadView_frm::Form_Resize() {
  Busy busy(*this);
  LayOut();
  if (!state_.bRefreshDone) return;
  if (Value(kFormResizeChk) == 1)
    RedrawAll();
  else
    SwapAll();
}

void QuadView_frm::MapPic_Resize(int index) {
  if (Value(kOpenGLPicResizeChk) == 1)
    RedrawPic(static_cast<short>(index));
  else
    SwapPic(static_cast<short>(index));
}

void QuadView_frm::MapPic_Paint(int index) {
  if (Value(kOpenGLPicPaintChk) == 1)
    SwapPic(static_cast<short>(index));
  else
    SwapLastSet();
}

void QuadView_frm::Picture_Resize(int index) {
  if (Ready() && index >= 0) MapPic_Resize(index);
}

void QuadView_frm::Picture_Paint(int index) {
  if (Ready() && index >= 0) MapPic_Paint(index);
}

void QuadView_frm::OpenGLPicResize_Chk_Click() {
  if (Value(kOpenGLPicResizeChk) == 1) RedrawAll();
}

void QuadView_frm::OpenGLPicPaint_Chk_Click() {
  if (Value(kOpenGLPicPaintChk) == 1) SwapAll();
}

void QuadView_frm::Redraw_Cbt_Click() { RedrawAll(); }

void QuadView_frm::ToggleCopyPicture() {
  HWND copy = Control(kCopyPictureCmd);
  bool shown = copy && (GetWindowLongA(copy, GWL_STYLE) & WS_VISIBLE) != 0;
  ShowWindow(copy, shown ? SW_HIDE : SW_SHOWNA);
}

void QuadView_frm::CopyPicture_cmd_Click() {
  QuadPrint_frm& twin = QuadPrint();
  twin.SetHost(Host());
  if (!twin.Loaded()) {
    // The twin takes this window's size, so that its layout puts the four
    // places exactly where the views are here.
    RECT place{};
    GetWindowRect(hwnd(), &place);
    if (!twin.Load(&place)) return;
  }
  HDC picture = twin.QuadPic() ? twin.QuadPic()->hDC() : nullptr;
  if (!picture) return;
  // Busy until the twin is closed again: a close of this window meanwhile
  // waits for the twin.
  Busy busy(*this);
  for (short i = 0; i < kViewCount; ++i) {
    Picture* view = MapPic(i);
    if (!view || !ViewContext(i)) continue;
    SIZE size = view->ClientSize();
    if (size.cx <= 0 || size.cy <= 0) continue;
    Redraw(i);
    ViewImage image(picture, size.cx, size.cy);
    POINT at{0, 0};
    MapWindowPoints(view->hwnd(), QuadPic()->hwnd(), &at, 1);
    HDC dest = picture, back = picture, src = image.dc();
    if (!src) continue;
    SourceRect rect{0, 0, size.cx - 1, size.cy - 1};
    int16_t x = static_cast<int16_t>(at.x), y = static_cast<int16_t>(at.y);
    COLORREF transparent = RGB(255, 255, 255);  // the views' clear colour
    MBitBlt(dest, back, src, rect, x, y, transparent);
  }
  std::string ignored;
  twin.ShowMe(ignored);
}

void QuadView_frm::OnCommand(int id, int code) {
  if (code == BN_CLICKED) {
    switch (id) {
      case kRedrawCbt:
        Redraw_Cbt_Click();
        return;
      case kCopyPictureCmd:
        CopyPicture_cmd_Click();
        return;
      case kOpenGLPicResizeChk:
        OpenGLPicResize_Chk_Click();
        return;
      case kOpenGLPicPaintChk:
        OpenGLPicPaint_Chk_Click();
        return;
      case kFormResizeChk:
      case kFormPaintChk:
        return;
    }
  }
  QuadForm::OnCommand(id, code);
}

// Teardown: each view's own context is made current and deleted through
// the device layer (which leaves no context current); the lists go with
// their contexts.
// What a view shows, read with the view's own context: a single-buffered
// view's only buffer, a double-buffered view's back buffer after its swap
// (the copy the swap presented; the front buffer of a child window cannot
// be read back on every system).
void QuadView_frm::CheckViews(const std::string& path) {
  for (int k = 0; k < kViewCount; ++k) {
    tests::Picture p;
    Picture* view = MapPic(k);
    HGLRC rc = ViewContext(k);
    if (view && rc && wglMakeCurrent(view->hDC(), rc)) {
      RECT r{};
      GetClientRect(view->hwnd(), &r);
      p.width = r.right;
      p.height = r.bottom;
      p.rgb.resize(static_cast<size_t>(p.width) * static_cast<size_t>(p.height) * 3);
      GLint doubleBuffered = 0;
      glGetIntegerv(GL_DOUBLEBUFFER, &doubleBuffered);
      glPixelStorei(GL_PACK_ALIGNMENT, 1);
      glReadBuffer(doubleBuffered ? GL_BACK : GL_FRONT);
      glReadPixels(0, 0, p.width, p.height, GL_RGB, GL_UNSIGNED_BYTE, p.rgb.data());
    }
    checker_.CheckQuadView(path, k, p);
  }
}

void QuadView_frm::Form_Unload() {
  if (state_.bRefreshDone) CheckViews("the last redraw");
  for (auto& rc : contexts_) rc.reset();
  lastSetView_ = -1;
}

}  // namespace quadview
