// The main window's QuadView button: the quad view shown modally, its
// result written into QuadViewText and the label, and the report rebuilt.
#include <gtest/gtest.h>

#include <functional>

#include "quadview/results.h"
#include "shell/main_window.h"
#include "testsupport/testsupport.h"
#include "win32/ui.h"

namespace {

using shell::VelmoraMain;

// Acts on the quad view from a thread timer once it is on screen.
class OnQuadView {
 public:
  explicit OnQuadView(std::function<void(HWND)> act) : act_(std::move(act)) {
    current_ = this;
    timer_ = SetTimer(nullptr, 0, 20, &OnQuadView::Tick);
  }
  ~OnQuadView() {
    KillTimer(nullptr, timer_);
    current_ = nullptr;
  }
  bool Done() const { return done_; }
  bool OwnerWasDisabled() const { return ownerDisabled_; }
  std::string Caption() const { return caption_; }
  HWND owner = nullptr;

 private:
  static void CALLBACK Tick(HWND, UINT, UINT_PTR, DWORD) {
    OnQuadView* s = current_;
    HWND wnd = FindWindowA("Velmora_QuadView", nullptr);
    if (!s || s->done_ || !wnd || !IsWindowVisible(wnd)) return;
    s->done_ = true;
    s->caption_ = win32::GetText(wnd);
    s->ownerDisabled_ = s->owner && !IsWindowEnabled(s->owner);
    s->act_(wnd);
  }
  static inline OnQuadView* current_ = nullptr;
  std::function<void(HWND)> act_;
  UINT_PTR timer_ = 0;
  bool done_ = false, ownerDisabled_ = false;
  std::string caption_;
};

// Ticks the boxes of `result`'s bits and presses `button` (if any).
std::function<void(HWND)> TickAndPress(int result, const char* button) {
  return [result, button](HWND wnd) {
    const char* boxes[] = {"Fix Form Resize", "Fix Form Paint", "Fix Pic Resize", "Fix Pic Paint"};
    for (int bit = 0; bit < 4; ++bit) {
      HWND box = FindWindowExA(wnd, nullptr, "Button", boxes[bit]);
      SendMessageA(box, BM_SETCHECK, (result >> bit) & 1 ? BST_CHECKED : BST_UNCHECKED, 0);
    }
    if (!button) return;
    HWND b = FindWindowExA(wnd, nullptr, "Button", button);
    SetFocus(b);
    PostMessageA(b, BM_CLICK, 0, 0);
  };
}

class QuadViewButton : public ::testing::Test {
 protected:
  void SetUp() override {
    char dir[MAX_PATH];
    GetTempPathA(MAX_PATH, dir);
    path = std::string(dir) + "velmora_quadview_page_test.ini";
    DeleteFileA(path.c_str());
    main = std::make_unique<VelmoraMain>(path);
    ASSERT_TRUE(main->Create());
    ShowWindow(main->hwnd(), SW_SHOW);
    testsupport::Pump(20);
  }
  void TearDown() override {
    main.reset();
    DeleteFileA(path.c_str());
  }
  // Presses QuadView and lets `act` end the test.
  void Run(std::function<void(HWND)> act) {
    OnQuadView on(std::move(act));
    on.owner = main->hwnd();
    main->General().QuadView_Cbt_Click();
    EXPECT_TRUE(on.Done());
    EXPECT_EQ(on.Caption(), "QuadView Velmora");
    EXPECT_TRUE(on.OwnerWasDisabled()) << "the main window waits for the test";
    EXPECT_TRUE(IsWindowEnabled(main->hwnd()));
    EXPECT_EQ(FindWindowA("Velmora_QuadView", nullptr), nullptr);
  }
  std::string Label() { return win32::GetText(main->Control(shell::kQuadViewLbl)); }
  std::string Report() { return win32::GetText(main->Control(shell::kSpecsTbx)); }
  std::string Ok() { return "OK (#" + std::to_string(main->CurrentOGLPixelFormat()) + ")"; }

  std::string path;
  testsupport::MsgBoxRecorder boxes;
  std::unique_ptr<VelmoraMain> main;
};

TEST_F(QuadViewButton, TheTicksMadeAndTheButtonPressedGiveTheTextAndTheLabel) {
  const struct {
    const char* what;
    std::function<void(HWND)> act;
    int result;  // -1: Error, the text stays as it was
  } cases[] = {
      {"nothing ticked", TickAndPress(0, "Close"), 0},
      {"all ticked", TickAndPress(15, "Close"), 15},
      {"some ticked", TickAndPress(5, "Close"), 5},
      {"Error", TickAndPress(3, "Error"), -1},
      {"the system menu's Close", [](HWND wnd) {
         TickAndPress(8, nullptr)(wnd);
         PostMessageA(wnd, WM_SYSCOMMAND, SC_CLOSE, 0);
       }, 8},
  };
  std::string text = main->QuadViewText();
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    Run(c.act);
    if (c.result >= 0) text = quadview::QuadViewText(static_cast<short>(c.result));
    EXPECT_EQ(main->QuadViewText(), text);
    const std::string label = c.result >= 0 ? Ok() : "ERROR";
    EXPECT_EQ(Label(), label);
    EXPECT_NE(Report().find(label + " " + text), std::string::npos)
        << "the report is rebuilt behind the quad-view lines";
  }
  EXPECT_EQ(text, "\r\n  Form Resize          \tFALSE\r\n  Form Paint           \tFALSE"
                  "\r\n  OpenGL Picture Resize\tFALSE\r\n  OpenGL Picture Paint \tTRUE");
}

}  // namespace
