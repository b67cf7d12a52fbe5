#pragma once
// Small pieces every window of the program shares: message boxes (with a
// seam that tests use instead of the real box), twips, controls, text.
#include <windows.h>

#include <functional>
#include <string>
#include <string_view>

namespace win32 {

inline constexpr char kAppTitle[] = "Velmora";

// The system message box. Tests install a hook that answers instead.
int MsgBox(HWND owner, std::string_view text, std::string_view title, UINT style);
using MsgBoxHook = std::function<int(HWND owner, const std::string& text,
                                     const std::string& title, UINT style)>;
void SetMsgBoxHook(MsgBoxHook hook);

// Ends the program at once (the device layer's Retry answer). Tests hook it.
[[noreturn]] void EndProgram();
void SetEndProgramHook(std::function<void()> hook);

// Twips per pixel from the real DPI (1440 / dpi).
double TwipsPerPixelX();
double TwipsPerPixelY();
int TwipsToPixelsX(int twips);
int TwipsToPixelsY(int twips);
int PixelsToTwipsX(int pixels);
int PixelsToTwipsY(int pixels);

struct TwipRect {
  int left, top, width, height;
};

// The styles of the plain push button and label the pages are made of.
inline constexpr DWORD kPushButton = WS_VISIBLE | WS_TABSTOP | BS_PUSHBUTTON;
inline constexpr DWORD kPlainLabel = WS_VISIBLE | SS_LEFT;

// Creates a child control placed in twips, with the program's dialog font.
HWND CreateControl(HWND parent, const char* cls, std::string_view text, DWORD style,
                   TwipRect r, int id, DWORD exStyle = 0);
void MoveTwips(HWND wnd, TwipRect r);
TwipRect WindowRectTwips(HWND wnd);   // position in the parent's client area
void ClientSizeTwips(HWND wnd, int& width, int& height);
HFONT DialogFont();

// Registers a window class of this module once; true when it exists.
// With the default procedure and CS_OWNDC it is the class of a plain
// OpenGL drawing surface.
bool RegisterSimpleClass(const char* name, UINT style = CS_OWNDC, WNDPROC proc = DefWindowProcA,
                         LPCSTR cursor = nullptr);

std::string GetText(HWND wnd);
void SetText(HWND wnd, std::string_view text);

// Program's own directory, with no trailing separator.
std::string ModuleDirectory();
std::string ModulePath();

}  // namespace win32

namespace win32 {
// Tooltips of labels. A label lets the mouse through to its parent, so a
// label's tip is a tool of the parent covering the label's place.
class LabelTips {
 public:
  void Set(HWND label, std::string_view text);

 private:
  HWND tips_ = nullptr;  // made at the first Set, owned by the label's window
};

// The tip a label shows, found as the system finds it: among the tooltip
// windows of the label's window; empty when it has none.
std::string LabelTipText(HWND label);

// A plain child container ("Velmora_Panel") that hands the notifications of
// its controls on to its parent, so a window can group controls in pages.
HWND CreatePanel(HWND parent, TwipRect r, int id, bool visible);
}  // namespace win32
