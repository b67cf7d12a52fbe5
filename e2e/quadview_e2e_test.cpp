// The quad-view test driven from outside, as a user would: from the General page of
// Velmora.exe, through resizing, the boxes, the copy to the twin, to the lines in the report.
#include <gtest/gtest.h>

#include <cstdlib>

#include "e2e/fixture.h"
#include "win32/ui.h"

namespace {

// Real key presses, as the keyboard sends them to the window once it is the active one.
void Keys(HWND wnd, BYTE hold, BYTE key) {
  SetForegroundWindow(wnd);
  e2e::WaitFor([&] { return GetForegroundWindow() == wnd; }, 2000);
  keybd_event(hold, 0, 0, 0);
  keybd_event(key, 0, 0, 0);
  keybd_event(key, 0, KEYEVENTF_KEYUP, 0);
  keybd_event(hold, 0, KEYEVENTF_KEYUP, 0);
}

// Pixels of the window as the screen shows it (every second one each way), counted.
template <class F>
int CountScreenPixels(HWND wnd, F predicate) {
  RECT rc{};
  GetWindowRect(wnd, &rc);
  HDC screen = GetDC(nullptr);
  int n = 0;
  for (int y = rc.top; y < rc.bottom; y += 2)
    for (int x = rc.left; x < rc.right; x += 2) n += predicate(GetPixel(screen, x, y)) ? 1 : 0;
  ReleaseDC(nullptr, screen);
  return n;
}

using QuadViewE2E = e2e::VelmoraTest;

TEST_F(QuadViewE2E, ResizeTickCopyCloseAndReadTheReport) {
  e2e::Press(Button("Next >>"));
  AnswerQuestion(IDNO);
  ASSERT_TRUE(ShownOnScreen(Button("QuadView")));
  e2e::Press(Button("QuadView"));
  HWND qv = program->WaitWindow("Velmora_QuadView", "QuadView Velmora");
  ASSERT_NE(qv, nullptr) << "the quad view did not show";
  HWND close = e2e::FindControl(qv, "Button", "Close");
  ASSERT_NE(close, nullptr);
  EXPECT_FALSE(IsWindowEnabled(main)) << "the main window waits";
  Sleep(500);
  e2e::SaveWindowImage(qv, e2e::ShotPath("quadview_e2e_window"));

  // Resize, maximise, restore: Close keeps to the lower right corner.
  auto closeFollowsTheCorner = [&] {
    RECT client{}, c{};
    GetClientRect(qv, &client);
    GetWindowRect(close, &c);
    MapWindowPoints(nullptr, qv, reinterpret_cast<POINT*>(&c), 2);
    return std::abs(c.right - (client.right - win32::TwipsToPixelsX(120))) <= 1 &&
           std::abs(c.bottom - (client.bottom - win32::TwipsToPixelsY(60))) <= 1;
  };
  SetWindowPos(qv, nullptr, 0, 0, 820, 660, SWP_NOMOVE | SWP_NOZORDER);
  EXPECT_TRUE(e2e::WaitFor(closeFollowsTheCorner, 5000)) << "after a resize";
  PostMessageA(qv, WM_SYSCOMMAND, SC_MAXIMIZE, 0);
  EXPECT_TRUE(e2e::WaitFor([&] { return IsZoomed(qv) && closeFollowsTheCorner(); }, 5000));
  PostMessageA(qv, WM_SYSCOMMAND, SC_RESTORE, 0);
  EXPECT_TRUE(e2e::WaitFor([&] { return !IsZoomed(qv) && closeFollowsTheCorner(); }, 5000));

  HWND picResize = e2e::FindControl(qv, "Button", "Fix Pic Resize");
  e2e::Press(picResize);
  EXPECT_TRUE(e2e::WaitFor([&] {
    return SendMessageA(picResize, BM_GETCHECK, 0, 0) == BST_CHECKED;
  }, 5000));

  // Ctrl+C shows the hidden copy button; it copies the views to the twin.
  HWND copy = e2e::FindControl(qv, "Button", "Copy Picture");
  ASSERT_NE(copy, nullptr);
  EXPECT_FALSE(IsWindowVisible(copy));
  Keys(qv, VK_CONTROL, 'C');
  ASSERT_TRUE(e2e::WaitFor([&] { return IsWindowVisible(copy) != 0; }, 5000)) << "Ctrl+C";
  e2e::Press(copy);
  HWND twin = program->WaitWindow("Velmora_QuadPrint", "QuadView Velmora");
  ASSERT_NE(twin, nullptr) << "the twin did not show";
  Sleep(500);
  EXPECT_FALSE(IsWindowEnabled(qv)) << "the twin is shown modally";
  e2e::SaveWindowImage(twin, e2e::ShotPath("quadview_e2e_twin"));
  // The twin is plain GDI: the screen shows the copied shapes.
  EXPECT_GT(CountScreenPixels(twin, [](COLORREF c) { return c == RGB(255, 0, 0); }), 200)
      << "red points of the copied views";
  EXPECT_GT(CountScreenPixels(twin, [](COLORREF c) {
    return GetRValue(c) == 0 && GetBValue(c) > 60 && GetBValue(c) > GetGValue(c);
  }), 2000) << "the solid pyramids";
  PostMessageA(twin, WM_SYSCOMMAND, SC_CLOSE, 0);
  EXPECT_TRUE(e2e::WaitFor([&] { return !IsWindow(twin); }, 5000));
  EXPECT_TRUE(e2e::WaitFor([&] { return IsWindowEnabled(qv) != 0; }, 5000));

  // Alt+F4 ends the test as Close does.
  Keys(qv, VK_MENU, VK_F4);
  EXPECT_TRUE(e2e::WaitFor([&] { return !IsWindow(qv); }, 10000)) << "Alt+F4";
  std::string label;
  e2e::WaitFor([&] {
    for (HWND s : e2e::FindControls(main, "Static"))
      if (e2e::Text(s).rfind("OK (#", 0) == 0) label = e2e::Text(s);
    return !label.empty();
  }, 15000);
  EXPECT_NE(label, "") << "the QuadView label";
  EXPECT_TRUE(IsWindowEnabled(main));
  const std::string lines =
      "\r\n  Form Resize          \tFALSE"
      "\r\n  Form Paint           \tFALSE"
      "\r\n  OpenGL Picture Resize\tTRUE"
      "\r\n  OpenGL Picture Paint \tFALSE";
  HWND report = ReportBox();
  e2e::WaitFor([&] { return e2e::Text(report).find(lines) != std::string::npos; }, 20000);
  EXPECT_NE(e2e::Text(report).find(label + " " + lines), std::string::npos) << e2e::Text(report);
  Quit();
}

}  // namespace
