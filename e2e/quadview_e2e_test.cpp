// The quad-view test driven from outside, as a user would: from the
// General page of Velmora.exe, through resizing, the boxes, the copy to
// the twin, to the lines in the report.
#include <gtest/gtest.h>

#include <fstream>

#include "e2e/driver.h"
#include "win32/ui.h"

namespace {

using e2e::BuildDir;
using e2e::ShotPath;
using e2e::VelmoraExe;

bool Checked(HWND box) { return SendMessageA(box, BM_GETCHECK, 0, 0) == BST_CHECKED; }

// Real key presses, as the keyboard sends them to the active window.
void Keys(std::initializer_list<BYTE> hold, BYTE key) {
  for (BYTE k : hold) keybd_event(k, 0, 0, 0);
  keybd_event(key, 0, 0, 0);
  keybd_event(key, 0, KEYEVENTF_KEYUP, 0);
  for (BYTE k : hold) keybd_event(k, 0, KEYEVENTF_KEYUP, 0);
}

// Pixels of the window as the screen shows it, counted by a predicate.
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

class QuadViewE2E : public ::testing::Test {
 protected:
  void SetUp() override {
    program = std::make_unique<e2e::Program>(VelmoraExe(), BuildDir());
    ASSERT_TRUE(program->Started()) << VelmoraExe();
    main = program->WaitMainWindow();
    ASSERT_NE(main, nullptr);
    e2e::Press(Button(main, "Next >>"));
    HWND box = program->WaitMessageBox("Just Checking!");
    ASSERT_NE(box, nullptr);
    e2e::Answer(box, IDNO);
    ASSERT_TRUE(e2e::WaitFor([&] { return IsWindowVisible(Button(main, "QuadView")) != 0; }, 5000));
  }
  void TearDown() override {
    if (!main || !IsWindow(main)) return;
    e2e::Press(Button(main, "Quit"));
    EXPECT_TRUE(program->WaitExit(10000));
  }
  static HWND Button(HWND parent, const char* caption) {
    return e2e::FindControl(parent, "Button", caption);
  }
  HWND OpenQuadView() {
    e2e::Press(Button(main, "QuadView"));
    return program->WaitWindow("Velmora_QuadView", "QuadView Velmora");
  }
  // The quad view's label on the General page, once it reads `prefix`…
  std::string QuadViewLabel(const std::string& prefix) {
    std::string found;
    e2e::WaitFor([&] {
      for (HWND s : e2e::FindControls(main, "Static")) {
        std::string t = e2e::Text(s);
        if (t.rfind(prefix, 0) == 0) found = t;
      }
      return !found.empty();
    }, 15000);
    return found;
  }
  std::string Report() {
    for (HWND e : e2e::FindControls(main, "Edit")) {
      std::string t = e2e::Text(e);
      if (t.find("General Tests:") != std::string::npos) return t;
    }
    return {};
  }
  // Where a control is in its window's client area.
  static RECT Place(HWND control) {
    RECT r{};
    GetWindowRect(control, &r);
    MapWindowPoints(nullptr, GetAncestor(control, GA_ROOT), reinterpret_cast<POINT*>(&r), 2);
    return r;
  }

  std::unique_ptr<e2e::Program> program;
  HWND main = nullptr;
};

TEST_F(QuadViewE2E, ResizeTickCopyCloseAndReadTheReport) {
  HWND qv = OpenQuadView();
  ASSERT_NE(qv, nullptr) << "the quad view did not show";
  HWND close = Button(qv, "Close");
  ASSERT_NE(close, nullptr);
  EXPECT_FALSE(IsWindowEnabled(main)) << "the main window waits";
  e2e::WaitFor([] { return false; }, 500);
  e2e::SaveWindowImage(qv, ShotPath("quadview_e2e_window"));

  // Resize, maximise, restore: Close keeps to the lower right corner.
  auto closeFollowsTheCorner = [&] {
    RECT client{};
    GetClientRect(qv, &client);
    RECT c = Place(close);
    return std::abs(c.right - (client.right - win32::TwipsToPixelsX(120))) <= 1 &&
           std::abs(c.bottom - (client.bottom - win32::TwipsToPixelsY(60))) <= 1;
  };
  SetWindowPos(qv, nullptr, 0, 0, 820, 660, SWP_NOMOVE | SWP_NOZORDER);
  EXPECT_TRUE(e2e::WaitFor(closeFollowsTheCorner, 5000)) << "after a resize";
  PostMessageA(qv, WM_SYSCOMMAND, SC_MAXIMIZE, 0);
  EXPECT_TRUE(e2e::WaitFor([&] { return IsZoomed(qv) && closeFollowsTheCorner(); }, 5000));
  PostMessageA(qv, WM_SYSCOMMAND, SC_RESTORE, 0);
  EXPECT_TRUE(e2e::WaitFor([&] { return !IsZoomed(qv) && closeFollowsTheCorner(); }, 5000));

  HWND picResize = Button(qv, "Fix Pic Resize");
  e2e::Press(picResize);
  EXPECT_TRUE(e2e::WaitFor([&] { return Checked(picResize); }, 5000));

  // Ctrl+C shows the hidden copy button; it copies the views to the twin.
  HWND copy = Button(qv, "Copy Picture");
  ASSERT_NE(copy, nullptr);
  EXPECT_FALSE(IsWindowVisible(copy));
  SetForegroundWindow(qv);
  e2e::WaitFor([&] { return GetForegroundWindow() == qv; }, 2000);
  Keys({VK_CONTROL}, 'C');
  ASSERT_TRUE(e2e::WaitFor([&] { return IsWindowVisible(copy) != 0; }, 5000)) << "Ctrl+C";
  e2e::Press(copy);
  HWND twin = program->WaitWindow("Velmora_QuadPrint", "QuadView Velmora");
  ASSERT_NE(twin, nullptr) << "the twin did not show";
  e2e::WaitFor([] { return false; }, 500);
  EXPECT_FALSE(IsWindowEnabled(qv)) << "the twin is shown modally";
  e2e::SaveWindowImage(twin, ShotPath("quadview_e2e_twin"));
  // The twin is plain GDI: the screen shows the copied shapes.
  int red = CountScreenPixels(twin, [](COLORREF c) { return c == RGB(255, 0, 0); });
  int bluish = CountScreenPixels(twin, [](COLORREF c) {
    return GetRValue(c) == 0 && GetBValue(c) > 60 && GetBValue(c) > GetGValue(c);
  });
  EXPECT_GT(red, 200) << "red points of the copied views";
  EXPECT_GT(bluish, 2000) << "the solid pyramids";
  PostMessageA(twin, WM_SYSCOMMAND, SC_CLOSE, 0);
  EXPECT_TRUE(e2e::WaitFor([&] { return !IsWindow(twin); }, 5000));
  EXPECT_TRUE(e2e::WaitFor([&] { return IsWindowEnabled(qv) != 0; }, 5000));

  e2e::Press(close);
  EXPECT_TRUE(e2e::WaitFor([&] { return !IsWindow(qv); }, 10000));
  std::string label = QuadViewLabel("OK (#");
  EXPECT_NE(label, "") << "the QuadView label";
  std::string lines =
      "\r\n  Form Resize          \tFALSE"
      "\r\n  Form Paint           \tFALSE"
      "\r\n  OpenGL Picture Resize\tTRUE"
      "\r\n  OpenGL Picture Paint \tFALSE";
  std::string report;
  e2e::WaitFor([&] { return (report = Report()).find(lines) != std::string::npos; }, 20000);
  EXPECT_NE(report.find(label + " " + lines), std::string::npos) << report;
  std::ofstream(BuildDir() + "\\screenshots\\quadview_e2e_report.txt") << report;
}

TEST_F(QuadViewE2E, AltF4EndsTheTestAndErrorShowsError) {
  HWND qv = OpenQuadView();
  ASSERT_NE(qv, nullptr);
  SetForegroundWindow(qv);
  e2e::WaitFor([&] { return GetForegroundWindow() == qv; }, 2000);
  Keys({VK_MENU}, VK_F4);
  EXPECT_TRUE(e2e::WaitFor([&] { return !IsWindow(qv); }, 10000)) << "Alt+F4";
  EXPECT_NE(QuadViewLabel("OK (#"), "");

  qv = OpenQuadView();
  ASSERT_NE(qv, nullptr);
  e2e::Press(Button(qv, "Error"));
  EXPECT_TRUE(e2e::WaitFor([&] { return !IsWindow(qv); }, 10000));
  EXPECT_EQ(QuadViewLabel("ERROR"), "ERROR");
  EXPECT_TRUE(IsWindowEnabled(main));
}

}  // namespace
