#include "quadview/quadform.h"

#include <commctrl.h>

#include <utility>

#include "quadview/layout.h"
#include "win32/ui.h"

namespace quadview {
namespace {

using win32::TwipRect;

constexpr UINT kUnloadMessage = WM_APP + 1;

// Design sizes, in twips.
constexpr int kClientWidth = 9600;
constexpr int kClientHeight = 7800;
constexpr TwipRect kDescRect{120, 120, kClientWidth - 240, 1440};
constexpr int kButtonWidth = 1215, kButtonHeight = 375;
constexpr int kCopyWidth = 1500;
constexpr int kCheckWidth = 2280, kCheckHeight = 255;
constexpr int kCheckLeft[4] = {120, 2520, 120, 2520};
constexpr const char* kCheckCaptions[4] = {"Fix Form Resize", "Fix Form Paint", "Fix Pic Resize",
                                           "Fix Pic Paint"};

constexpr DWORD kButton = win32::kPushButton;
constexpr DWORD kCheckBox = WS_VISIBLE | WS_TABSTOP | BS_AUTOCHECKBOX;

bool Shown(HWND wnd) { return wnd && (GetWindowLongA(wnd, GWL_STYLE) & WS_VISIBLE) != 0; }

BOOL CALLBACK CollectEnabled(HWND wnd, LPARAM lp) {
  auto* list = reinterpret_cast<std::vector<HWND>*>(lp);
  if (IsWindowVisible(wnd) && IsWindowEnabled(wnd)) list->push_back(wnd);
  return TRUE;
}

}  // namespace

int ShiftState() {
  return (GetKeyState(VK_SHIFT) < 0 ? 1 : 0) | (GetKeyState(VK_CONTROL) < 0 ? 2 : 0) |
         (GetKeyState(VK_MENU) < 0 ? 4 : 0);
}

QuadForm::QuadForm(QuadHost host, const Design& design)
    : host_(std::move(host)), design_(design) {}

QuadForm::~QuadForm() { RestoreOtherWindows(); }

QuadForm::Busy::~Busy() {
  if (--form_.busy_ == 0 && form_.pendingUnload_ && form_.hwnd())
    PostMessageA(form_.hwnd(), kUnloadMessage, static_cast<WPARAM>(*form_.pendingUnload_), 0);
}

HWND QuadForm::Control(int id) const { return hwnd() ? GetDlgItem(hwnd(), id) : nullptr; }

Picture* QuadForm::MapPic(int index) const {
  if (index < 0 || index >= 4) return nullptr;
  return mapPic_[static_cast<size_t>(index)].get();
}

int QuadForm::Value(int checkBoxId) const {
  HWND box = Control(checkBoxId);
  return box ? static_cast<int>(SendMessageA(box, BM_GETCHECK, 0, 0)) : 0;
}

FixBoxes QuadForm::Boxes() const {
  return {Value(kFormResizeChk), Value(kFormPaintChk), Value(kOpenGLPicResizeChk), Value(kOpenGLPicPaintChk)};
}

short QuadForm::QuadResult() const { return quadview::QuadResult(Boxes()); }

void QuadForm::SetFixBoxesVisible(bool visible) {
  for (int id = kFormResizeChk; id <= kOpenGLPicPaintChk; ++id)
    ShowWindow(Control(id), visible ? SW_SHOWNA : SW_HIDE);
}

bool QuadForm::Load(const RECT* place) {
  if (Loaded()) return true;
  if (!RegisterClassOnce(design_.className, 0, reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1),
                         LoadIconA(GetModuleHandleA(nullptr), MAKEINTRESOURCEA(1))))
    return false;
  const DWORD style = WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN;
  RECT rc{0, 0, win32::TwipsToPixelsX(kClientWidth), win32::TwipsToPixelsY(kClientHeight)};
  AdjustWindowRectEx(&rc, style, FALSE, WS_EX_CONTROLPARENT);
  int x = CW_USEDEFAULT, y = CW_USEDEFAULT;
  if (place) {
    rc = *place;
    x = place->left;
    y = place->top;
  }
  if (!Window::Create(WS_EX_CONTROLPARENT, design_.className, "Velmora", style, x, y,
                      rc.right - rc.left, rc.bottom - rc.top, nullptr))
    return false;
  CreateControls();
  Initialize();
  Form_Load();
  ready_ = true;
  Form_Resize();
  return true;
}

void QuadForm::CreateControls() {
  using win32::CreateControl;
  HWND w = hwnd();
  PictureEvents& events = *this;
  CreateControl(w, "STATIC", "", WS_VISIBLE | SS_LEFT | SS_NOPREFIX, kDescRect, kGLTestDescLbl);
  // Put above QuadPic below, so that it lies over the views when shown.
  if (design_.redrawAndCopy)
    CreateControl(w, "BUTTON", "Copy Picture", WS_TABSTOP | BS_PUSHBUTTON,
                  {0, 0, kCopyWidth, kButtonHeight}, kCopyPictureCmd);
  quadPic_ = std::make_unique<Picture>(events, -1, design_.quadPicKind);
  quadPic_->Create(w, {105, kDescRect.top + kDescRect.height + 105, kClientWidth - 210, 4000},
                   kQuadPic, WS_VISIBLE | WS_CLIPCHILDREN | WS_CLIPSIBLINGS, WS_EX_CLIENTEDGE);
  for (int i = 0; i < 4; ++i) {
    auto& pic = mapPic_[static_cast<size_t>(i)];
    pic = std::make_unique<Picture>(events, i, design_.mapPicKind);
    pic->Create(quadPic_->hwnd(), {15 + (i / 2) * 4000, 15 + (i % 2) * 2000, 3900, 1900},
                kMapPic0 + i,
                (design_.mapPicsShown ? WS_VISIBLE : 0) | WS_BORDER | WS_CLIPCHILDREN |
                    WS_CLIPSIBLINGS,
                0);
  }
  for (int i = 0; i < 4; ++i)
    CreateControl(w, "BUTTON", kCheckCaptions[i], kCheckBox,
                  {kCheckLeft[i], kClientHeight - (i < 2 ? 330 : 30) - kCheckHeight, kCheckWidth,
                   kCheckHeight},
                  kFormResizeChk + i);
  // NOTE: Redraw_Cbt is laid out in Error_Cbt's place. Error_Cbt is put on
  // top (and both clip each other) so that the test's answer stays
  // clickable; Redraw_Cbt is still reached with the Tab key.
  const int buttonTop = kClientHeight - 60 - kButtonHeight;
  const int errorLeft = kClientWidth - 120 - kButtonWidth - 120 - kButtonWidth;
  HWND error = CreateControl(w, "BUTTON", "Error", kButton | WS_CLIPSIBLINGS,
                             {errorLeft, buttonTop, kButtonWidth, kButtonHeight}, kErrorCbt);
  if (design_.redrawAndCopy)
    CreateControl(w, "BUTTON", "Redraw", kButton | WS_CLIPSIBLINGS,
                  {errorLeft, buttonTop, kButtonWidth, kButtonHeight}, kRedrawCbt);
  CreateControl(w, "BUTTON", "Close", kButton,
                {kClientWidth - 120 - kButtonWidth, buttonTop, kButtonWidth, kButtonHeight},
                kCloseCbt);
  const UINT keep = SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE;
  SetWindowPos(error, HWND_TOP, 0, 0, 0, 0, keep);
  if (HWND copy = Control(kCopyPictureCmd)) SetWindowPos(copy, HWND_TOP, 0, 0, 0, 0, keep);
  activeControl_ = Control(kCloseCbt);
}

void QuadForm::Initialize() {
  win32::SetText(Control(kGLTestDescLbl), DescriptionText());
  win32::SetText(hwnd(), WindowCaption(host_.quadViewCaption));
  const int fix = InitialFormFixValue(host_.currentOGLRedraw);
  SendMessageA(Control(kFormResizeChk), BM_SETCHECK, fix, 0);
  SendMessageA(Control(kFormPaintChk), BM_SETCHECK, fix, 0);
  Form_Initialize();
}

// Key preview: every control hands its key-up to the window first.
void QuadForm::Form_Load() {
  for (HWND child = GetWindow(hwnd(), GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT))
    SetWindowSubclass(child, KeyPreviewProc, 1, reinterpret_cast<DWORD_PTR>(this));
}

LRESULT CALLBACK QuadForm::KeyPreviewProc(HWND wnd, UINT msg, WPARAM wp, LPARAM lp, UINT_PTR id,
                                          DWORD_PTR self) {
  auto* form = reinterpret_cast<QuadForm*>(self);
  switch (msg) {
    case WM_KEYUP:
      form->Form_KeyUp(static_cast<int>(wp), ShiftState());
      break;
    case WM_SETFOCUS:
      form->activeControl_ = wnd;
      break;
    case WM_NCDESTROY:
      RemoveWindowSubclass(wnd, KeyPreviewProc, id);
      break;
  }
  return DefSubclassProc(wnd, msg, wp, lp);
}

void QuadForm::Form_KeyUp(int keyCode, int shift) {
  switch (KeyUpAction(keyCode, shift)) {
    case KeyAction::ToggleFixBoxes:
      SetFixBoxesVisible(!Shown(Control(kFormResizeChk)));
      break;
    case KeyAction::ToggleCopyPicture:
      ToggleCopyPicture();
      break;
    case KeyAction::None:
      break;
  }
}

void QuadForm::LayOut() {
  using win32::WindowRectTwips;
  HWND desc = Control(kGLTestDescLbl), close = Control(kCloseCbt), error = Control(kErrorCbt);
  HWND copy = Control(kCopyPictureCmd), redraw = Control(kRedrawCbt);
  if (!desc || !close || !error || !quadPic_ || !quadPic_->hwnd()) return;
  LayoutInput in;
  win32::ClientSizeTwips(hwnd(), in.width, in.height);
  TwipRect descRect = WindowRectTwips(desc), closeRect = WindowRectTwips(close),
           errorRect = WindowRectTwips(error);
  in.descHeight = descRect.height;
  in.closeWidth = closeRect.width;
  in.closeHeight = closeRect.height;
  in.errorWidth = errorRect.width;
  in.errorHeight = errorRect.height;
  TwipRect copyRect{};
  if (copy) {
    copyRect = WindowRectTwips(copy);
    in.copyWidth = copyRect.width;
    in.copyHeight = copyRect.height;
  }
  std::array<TwipRect, 4> checks{};
  for (int i = 0; i < 4; ++i) {
    checks[i] = WindowRectTwips(Control(kFormResizeChk + i));
    in.checkHeights[i] = checks[i].height;
  }
  TwipRect pic = WindowRectTwips(quadPic_->hwnd());
  win32::ClientSizeTwips(quadPic_->hwnd(), in.picInnerWidth, in.picInnerHeight);
  in.picFrameWidth = pic.width - in.picInnerWidth;
  in.picFrameHeight = pic.height - in.picInnerHeight;
  in.picLeft = pic.left;
  in.picTop = pic.top;

  const FormLayout out = ComputeLayout(in);
  if (out.descWidth)
    win32::MoveTwips(desc, {descRect.left, descRect.top, *out.descWidth, descRect.height});
  if (out.quadPic) {
    const TwipBox& b = *out.quadPic;
    win32::MoveTwips(quadPic_->hwnd(), {b.left, b.top, b.width, b.height});
  }
  for (int i = 0; i < 4; ++i) {
    Picture* view = MapPic(i);
    if (!out.mapPic[i] || !view || !view->hwnd()) continue;
    const TwipBox& b = *out.mapPic[i];
    win32::MoveTwips(view->hwnd(), {b.left, b.top, b.width, b.height});
  }
  if (copy)
    win32::MoveTwips(copy, {out.copyButton.left, out.copyButton.top, copyRect.width,
                            copyRect.height});
  for (int i = 0; i < 4; ++i)
    win32::MoveTwips(Control(kFormResizeChk + i),
                     {checks[i].left, out.checkTops[i], checks[i].width, checks[i].height});
  win32::MoveTwips(close, {out.close.left, out.close.top, closeRect.width, closeRect.height});
  win32::MoveTwips(error, {out.error.left, out.error.top, errorRect.width, errorRect.height});
  if (redraw) {
    TwipRect r = WindowRectTwips(redraw);
    win32::MoveTwips(redraw, {out.redraw.left, out.redraw.top, r.width, r.height});
  }
}

void QuadForm::OnCommand(int id, int code) {
  if (code != BN_CLICKED) return;
  switch (id) {
    case kCloseCbt:
      Close_Cbt_Click();
      break;
    case kErrorCbt:
      Error_Cbt_Click();
      break;
    case IDOK: {
      // Enter on a focused push button presses it, as in any dialog.
      HWND focus = GetFocus();
      if (focus && GetParent(focus) == hwnd() &&
          (GetWindowLongA(focus, GWL_STYLE) & BS_TYPEMASK) == BS_PUSHBUTTON)
        SendMessageA(focus, BM_CLICK, 0, 0);
      break;
    }
  }
}

void QuadForm::Close_Cbt_Click() { Unload(kFormCode); }
void QuadForm::Error_Cbt_Click() { Unload(kFormCode); }

// The close is never cancelled; a close from the system menu, from
// Windows shutting down or from another program hides the window first.
void QuadForm::Form_QueryUnload(int mode) {
  if (HidesOnQueryUnload(mode)) ShowWindow(hwnd(), SW_HIDE);
}

void QuadForm::Unload(int mode) {
  if (!hwnd()) return;
  Form_QueryUnload(mode);
  if (busy_ > 0) {
    pendingUnload_ = mode;
    return;
  }
  pendingUnload_.reset();
  endedByError_ = activeControl_ != nullptr && activeControl_ == Control(kErrorCbt);
  resultAtUnload_ = QuadResult();
  ready_ = false;
  // Teardown: the derived window's contexts go first, then the other
  // windows get their input back (so that focus returns to them), then the
  // pictures let go of their device contexts, then the window goes.
  Form_Unload();
  RestoreOtherWindows();
  for (auto& view : mapPic_)
    if (view) view->ReleaseDC();
  if (quadPic_) quadPic_->ReleaseDC();
  DestroyWindow(hwnd());
}

short QuadForm::ShowMe(std::string& result) {
  if (!Loaded() && !Load()) {
    result = "ERROR";
    return 2;
  }
  DisableOtherWindows();
  win32::RunModal(hwnd(), nullptr);
  // The loop also ends when the program is asked to quit.
  if (Loaded()) Unload(kFormCode);
  RestoreOtherWindows();
  if (endedByError_) {
    result = "ERROR";
    return 2;
  }
  result = std::to_string(resultAtUnload_);
  return 1;
}

short QuadForm::ShowUnattended(std::string& result, const std::function<void()>& drive) {
  if (!Loaded() && !Load()) {
    result = "ERROR";
    return 2;
  }
  ShowWindow(hwnd(), SW_SHOWNOACTIVATE);
  UpdateWindow(hwnd());
  drive();
  if (Loaded()) Close_Cbt_Click();
  if (endedByError_) {
    result = "ERROR";
    return 2;
  }
  result = std::to_string(resultAtUnload_);
  return 1;
}

// Shown modally without an owner, the window still keeps the user away
// from the program's other windows until it is closed.
void QuadForm::DisableOtherWindows() {
  previousActive_ = GetActiveWindow();
  std::vector<HWND> enabled;
  EnumThreadWindows(GetCurrentThreadId(), CollectEnabled, reinterpret_cast<LPARAM>(&enabled));
  for (HWND wnd : enabled) {
    if (wnd == hwnd()) continue;
    EnableWindow(wnd, FALSE);
    disabled_.push_back(wnd);
  }
}

void QuadForm::RestoreOtherWindows() {
  if (disabled_.empty() && !previousActive_) return;
  for (HWND wnd : disabled_)
    if (IsWindow(wnd)) EnableWindow(wnd, TRUE);
  disabled_.clear();
  HWND back = std::exchange(previousActive_, nullptr);
  if (back && back != hwnd() && IsWindow(back) && IsWindowVisible(back)) SetActiveWindow(back);
}

LRESULT QuadForm::HandleMessage(UINT msg, WPARAM wp, LPARAM lp) {
  switch (msg) {
    case WM_COMMAND:
      if (ready_) OnCommand(LOWORD(wp), HIWORD(wp));
      return 0;
    case WM_SIZE:
      if (ready_) Form_Resize();
      return 0;
    case WM_PAINT: {
      PAINTSTRUCT ps;
      BeginPaint(hwnd(), &ps);
      if (ready_) Form_Paint();
      EndPaint(hwnd(), &ps);
      return 0;
    }
    case WM_KEYUP:
      Form_KeyUp(static_cast<int>(wp), ShiftState());
      return 0;
    case WM_ACTIVATE:
      if (LOWORD(wp) != WA_INACTIVE && activeControl_ && IsWindow(activeControl_) &&
          IsWindowVisible(activeControl_) && IsWindowEnabled(activeControl_)) {
        SetFocus(activeControl_);
        return 0;
      }
      break;
    case WM_SYSCOMMAND:
      if ((wp & 0xFFF0) == SC_CLOSE) closeMode_ = kFormControlMenu;
      break;
    case WM_CLOSE: {
      // A close that did not come through the system menu was asked for
      // by another program, as the task manager does.
      int mode = closeMode_.value_or(kAppTaskManager);
      closeMode_.reset();
      Unload(mode);
      return 0;
    }
    case WM_QUERYENDSESSION:
      return TRUE;
    case WM_ENDSESSION:
      if (wp) Unload(kAppWindows);
      return 0;
    case kUnloadMessage:
      Unload(static_cast<int>(wp));
      return 0;
    case WM_DESTROY:
      ready_ = false;
      break;
  }
  return Default(msg, wp, lp);
}

}  // namespace quadview
