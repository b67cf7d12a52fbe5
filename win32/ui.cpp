#include "win32/ui.h"

#include <commctrl.h>

#include <cmath>
#include <cstdlib>
#include <vector>

namespace win32 {
namespace {

MsgBoxHook& Hook() {
  static MsgBoxHook hook;
  return hook;
}

std::function<void()>& EndHook() {
  static std::function<void()> hook;
  return hook;
}

double ScreenDpi(int index) {
  HDC dc = GetDC(nullptr);
  int dpi = dc ? GetDeviceCaps(dc, index) : 96;
  if (dc) ReleaseDC(nullptr, dc);
  return dpi > 0 ? dpi : 96;
}

}  // namespace

int MsgBox(HWND owner, std::string_view text, std::string_view title, UINT style) {
  std::string t(text), c(title);
  if (Hook()) return Hook()(owner, t, c, style);
  return MessageBoxA(owner, t.c_str(), c.c_str(), style);
}

void SetMsgBoxHook(MsgBoxHook hook) { Hook() = std::move(hook); }

void EndProgram() {
  if (EndHook()) EndHook()();
  ExitProcess(0);
}

void SetEndProgramHook(std::function<void()> hook) { EndHook() = std::move(hook); }

double TwipsPerPixelX() {
  static const double tpp = 1440.0 / ScreenDpi(LOGPIXELSX);
  return tpp;
}
double TwipsPerPixelY() {
  static const double tpp = 1440.0 / ScreenDpi(LOGPIXELSY);
  return tpp;
}
int TwipsToPixelsX(int twips) { return static_cast<int>(std::lround(twips / TwipsPerPixelX())); }
int TwipsToPixelsY(int twips) { return static_cast<int>(std::lround(twips / TwipsPerPixelY())); }
int PixelsToTwipsX(int pixels) { return static_cast<int>(std::lround(pixels * TwipsPerPixelX())); }
int PixelsToTwipsY(int pixels) { return static_cast<int>(std::lround(pixels * TwipsPerPixelY())); }

HFONT DialogFont() {
  static HFONT font = [] {
    NONCLIENTMETRICSA ncm{};
    ncm.cbSize = sizeof ncm;
    if (SystemParametersInfoA(SPI_GETNONCLIENTMETRICS, sizeof ncm, &ncm, 0))
      return CreateFontIndirectA(&ncm.lfMessageFont);
    return static_cast<HFONT>(GetStockObject(DEFAULT_GUI_FONT));
  }();
  return font;
}

bool RegisterSimpleClass(const char* name, UINT style, WNDPROC proc, LPCSTR cursor) {
  WNDCLASSA existing{};
  if (GetClassInfoA(GetModuleHandleA(nullptr), name, &existing)) return true;
  WNDCLASSA wc{};
  wc.style = style;
  wc.lpfnWndProc = proc;
  wc.hInstance = GetModuleHandleA(nullptr);
  wc.hCursor = LoadCursorA(nullptr, cursor ? cursor : reinterpret_cast<LPCSTR>(IDC_ARROW));
  wc.lpszClassName = name;
  return RegisterClassA(&wc) != 0;
}

HWND CreateControl(HWND parent, const char* cls, std::string_view text, DWORD style, TwipRect r,
                   int id, DWORD exStyle) {
  std::string t(text);
  HWND wnd = CreateWindowExA(exStyle, cls, t.c_str(), WS_CHILD | style, TwipsToPixelsX(r.left),
                             TwipsToPixelsY(r.top), TwipsToPixelsX(r.width),
                             TwipsToPixelsY(r.height), parent,
                             reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)),
                             GetModuleHandleA(nullptr), nullptr);
  if (wnd) SendMessageA(wnd, WM_SETFONT, reinterpret_cast<WPARAM>(DialogFont()), FALSE);
  return wnd;
}

void MoveTwips(HWND wnd, TwipRect r) {
  MoveWindow(wnd, TwipsToPixelsX(r.left), TwipsToPixelsY(r.top), TwipsToPixelsX(r.width),
             TwipsToPixelsY(r.height), TRUE);
}

TwipRect WindowRectTwips(HWND wnd) {
  RECT rc{};
  GetWindowRect(wnd, &rc);
  MapWindowPoints(nullptr, GetParent(wnd), reinterpret_cast<POINT*>(&rc), 2);
  return {PixelsToTwipsX(rc.left), PixelsToTwipsY(rc.top), PixelsToTwipsX(rc.right - rc.left),
          PixelsToTwipsY(rc.bottom - rc.top)};
}

void ClientSizeTwips(HWND wnd, int& width, int& height) {
  RECT rc{};
  GetClientRect(wnd, &rc);
  width = PixelsToTwipsX(rc.right);
  height = PixelsToTwipsY(rc.bottom);
}

std::string GetText(HWND wnd) {
  int n = GetWindowTextLengthA(wnd);
  std::string s(static_cast<size_t>(n) + 1, '\0');
  n = GetWindowTextA(wnd, s.data(), n + 1);
  s.resize(n > 0 ? static_cast<size_t>(n) : 0);
  return s;
}

void SetText(HWND wnd, std::string_view text) {
  std::string t(text);
  SetWindowTextA(wnd, t.c_str());
}

std::string ModulePath() {
  std::vector<char> buf(MAX_PATH);
  for (;;) {
    DWORD n = GetModuleFileNameA(nullptr, buf.data(), static_cast<DWORD>(buf.size()));
    if (n < buf.size()) return std::string(buf.data(), n);
    buf.resize(buf.size() * 2);
  }
}

std::string ModuleDirectory() {
  std::string p = ModulePath();
  auto cut = p.find_last_of("\\/");
  return cut == std::string::npos ? std::string(".") : p.substr(0, cut);
}

}  // namespace win32

namespace win32 {
namespace {

LRESULT CALLBACK PanelProc(HWND wnd, UINT msg, WPARAM wp, LPARAM lp) {
  switch (msg) {
    case WM_COMMAND:
    case WM_NOTIFY:
    case WM_CTLCOLORSTATIC:
    case WM_CTLCOLOREDIT:
    case WM_CTLCOLORBTN:
    case WM_CTLCOLORLISTBOX:
    case WM_DRAWITEM:
    case WM_VKEYTOITEM:
    case WM_CHARTOITEM:
      return SendMessageA(GetParent(wnd), msg, wp, lp);
    case WM_PARENTNOTIFY:
      // Mouse presses on the panel's controls, in the parent's coordinates.
      if (LOWORD(wp) == WM_LBUTTONDOWN) {
        POINT pt{static_cast<short>(LOWORD(lp)), static_cast<short>(HIWORD(lp))};
        HWND child = ChildWindowFromPoint(wnd, pt);
        if (child && child != wnd) SendMessageA(GetParent(wnd), WM_PARENTNOTIFY, wp,
                                                reinterpret_cast<LPARAM>(child));
      }
      return 0;
  }
  return DefWindowProcA(wnd, msg, wp, lp);
}

}  // namespace

HWND CreatePanel(HWND parent, TwipRect r, int id, bool visible) {
  static const bool registered = [] {
    WNDCLASSA wc{};
    wc.lpfnWndProc = PanelProc;
    wc.hInstance = GetModuleHandleA(nullptr);
    wc.hCursor = LoadCursorA(nullptr, reinterpret_cast<LPCSTR>(IDC_ARROW));
    wc.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
    wc.lpszClassName = "Velmora_Panel";
    return RegisterClassA(&wc) != 0;
  }();
  if (!registered) return nullptr;
  return CreateControl(parent, "Velmora_Panel", "", WS_CLIPSIBLINGS | (visible ? WS_VISIBLE : 0),
                       r, id, WS_EX_CONTROLPARENT);
}

}  // namespace win32

namespace win32 {

namespace {
TTTOOLINFOA LabelTool(HWND label) {
  TTTOOLINFOA tool{};
  tool.cbSize = sizeof tool;
  tool.uFlags = TTF_SUBCLASS;
  tool.hwnd = GetParent(label);
  tool.uId = static_cast<UINT_PTR>(GetDlgCtrlID(label));
  GetWindowRect(label, &tool.rect);
  MapWindowPoints(nullptr, tool.hwnd, reinterpret_cast<POINT*>(&tool.rect), 2);
  return tool;
}
}  // namespace

void LabelTips::Set(HWND label, std::string_view text) {
  if (!tips_) {
    tips_ = CreateWindowExA(WS_EX_TOPMOST, TOOLTIPS_CLASSA, nullptr, WS_POPUP | TTS_ALWAYSTIP, 0, 0, 0,
                            0, GetAncestor(label, GA_ROOT), nullptr, GetModuleHandleA(nullptr), nullptr);
    if (!tips_) return;
    SendMessageA(tips_, TTM_SETMAXTIPWIDTH, 0, 400);
  }
  std::string t(text);
  TTTOOLINFOA tool = LabelTool(label);
  TTTOOLINFOA known = tool;
  bool exists = SendMessageA(tips_, TTM_GETTOOLINFOA, 0, reinterpret_cast<LPARAM>(&known)) != 0;
  tool.lpszText = t.data();
  SendMessageA(tips_, exists ? TTM_UPDATETIPTEXTA : TTM_ADDTOOLA, 0, reinterpret_cast<LPARAM>(&tool));
}

namespace {

struct TipSearch {
  HWND root;
  TTTOOLINFOW tool;
  std::string text;
};

// The ANSI message gives at most 80 characters, so the text comes wide.
BOOL CALLBACK ReadTipOfTool(HWND w, LPARAM lp) {
  auto& s = *reinterpret_cast<TipSearch*>(lp);
  char cls[32] = {};
  GetClassNameA(w, cls, sizeof cls);
  if (GetWindow(w, GW_OWNER) != s.root || lstrcmpiA(cls, TOOLTIPS_CLASSA) != 0) return TRUE;
  TTTOOLINFOW known = s.tool;
  known.lpszText = nullptr;
  if (!SendMessageW(w, TTM_GETTOOLINFOW, 0, reinterpret_cast<LPARAM>(&known))) return TRUE;
  SendMessageW(w, TTM_GETTEXTW, 1024, reinterpret_cast<LPARAM>(&s.tool));
  char text[2048] = {};
  WideCharToMultiByte(CP_ACP, 0, s.tool.lpszText, -1, text, sizeof text, nullptr, nullptr);
  s.text = text;
  return FALSE;
}

}  // namespace

std::string LabelTipText(HWND label) {
  wchar_t buf[1024] = {};
  TTTOOLINFOA narrow = LabelTool(label);
  TipSearch search{GetAncestor(label, GA_ROOT), {}, {}};
  search.tool.cbSize = sizeof search.tool;
  search.tool.hwnd = narrow.hwnd;
  search.tool.uId = narrow.uId;
  search.tool.lpszText = buf;
  EnumThreadWindows(GetWindowThreadProcessId(label, nullptr), ReadTipOfTool,
                    reinterpret_cast<LPARAM>(&search));
  return search.text;
}

}  // namespace win32
