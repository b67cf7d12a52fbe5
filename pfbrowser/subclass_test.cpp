// The subclassing module on real windows: hooks, slots, messages reaching
// the target, default processing through the previous procedure.
#include "pfbrowser/subclass.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "win32/handle.h"

namespace {

using mCBSubclass::Hook;
using mCBSubclass::IMessageTarget;
using mCBSubclass::SlotOf;
using mCBSubclass::Unhook;

struct Seen {
  HWND wnd;
  UINT msg;
  WPARAM wp;
  LPARAM lp;
  bool operator==(const Seen&) const = default;
};

constexpr UINT kProbe = WM_APP + 1;
constexpr UINT kNested = WM_APP + 2;
constexpr LRESULT kOwnAnswer = 0x1234;

// A window whose own procedure records kProbe and kNested and answers them
// with kOwnAnswer + wParam.
class RecordingWindow {
 public:
  RecordingWindow() {
    static const bool registered = [] {
      WNDCLASSA wc{};
      wc.lpfnWndProc = &RecordingWindow::Proc;
      wc.hInstance = GetModuleHandleA(nullptr);
      wc.lpszClassName = "VelmoraSubclassTest";
      return RegisterClassA(&wc) != 0;
    }();
    EXPECT_TRUE(registered);
    wnd_.reset(CreateWindowA("VelmoraSubclassTest", "before", WS_POPUP, 0, 0, 50, 50, nullptr,
                             nullptr, GetModuleHandleA(nullptr), nullptr));
    SetWindowLongPtrA(wnd_.get(), GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  }
  HWND hwnd() const { return wnd_.get(); }
  WNDPROC proc() const {
    return reinterpret_cast<WNDPROC>(GetWindowLongPtrA(wnd_.get(), GWLP_WNDPROC));
  }
  static WNDPROC OwnProc() { return &RecordingWindow::Proc; }
  HWND release() { return wnd_.release(); }
  std::vector<Seen> seen;

 private:
  static LRESULT CALLBACK Proc(HWND wnd, UINT msg, WPARAM wp, LPARAM lp) {
    auto* self = reinterpret_cast<RecordingWindow*>(GetWindowLongPtrA(wnd, GWLP_USERDATA));
    if (msg == kProbe || msg == kNested) {
      if (self) self->seen.push_back({wnd, msg, wp, lp});
      return kOwnAnswer + static_cast<LRESULT>(wp);
    }
    return DefWindowProcA(wnd, msg, wp, lp);
  }
  win32::OwnedWindow wnd_;
};

// Records what reaches it and either consumes kProbe with 77 or passes
// everything on.
class Target : public IMessageTarget {
 public:
  explicit Target(bool consume = false) : consume_(consume) {}
  void Message(int slot, HWND wnd, UINT msg, WPARAM wp, LPARAM lp, LRESULT& result) override {
    if (msg == kProbe || msg == kNested) {
      seen.push_back({wnd, msg, wp, lp});
      slots.push_back(slot);
    }
    if (msg == kProbe && consume_) {
      result = 77;
      return;
    }
    // While handling kProbe with wParam 1, a nested message arrives first.
    if (msg == kProbe && wp == 1) SendMessageA(wnd, kNested, 5, 6);
    result = mCBSubclass::CallDefault(slot);
  }
  std::vector<Seen> seen;
  std::vector<int> slots;

 private:
  bool consume_;
};

class Subclass : public ::testing::Test {
 protected:
  void TearDown() override {
    for (auto& w : windows) Unhook(w->hwnd());
  }
  RecordingWindow& NewWindow() {
    windows.push_back(std::make_unique<RecordingWindow>());
    return *windows.back();
  }
  std::vector<std::unique_ptr<RecordingWindow>> windows;
};

TEST_F(Subclass, HookInstallsTheSlotAndUnhookPutsThePreviousProcedureBack) {
  RecordingWindow& w = NewWindow();
  Target target;
  ASSERT_EQ(w.proc(), RecordingWindow::OwnProc());
  EXPECT_EQ(Hook(w.hwnd(), &target), 1);
  EXPECT_NE(w.proc(), RecordingWindow::OwnProc());
  EXPECT_EQ(reinterpret_cast<INT_PTR>(GetPropA(w.hwnd(), "Prop_HookID")), 1);
  EXPECT_EQ(SlotOf(w.hwnd()), 1);

  EXPECT_TRUE(Unhook(w.hwnd()));
  EXPECT_EQ(w.proc(), RecordingWindow::OwnProc());
  EXPECT_EQ(GetPropA(w.hwnd(), "Prop_HookID"), nullptr);
  EXPECT_EQ(SlotOf(w.hwnd()), 0);
  EXPECT_EQ(SendMessageA(w.hwnd(), kProbe, 2, 0), kOwnAnswer + 2);
  EXPECT_TRUE(target.seen.empty());
  EXPECT_FALSE(Unhook(w.hwnd())) << "a second unhook has nothing to undo";
}

TEST_F(Subclass, MessagesReachTheTargetAndDefaultProcessingTheOldProcedure) {
  RecordingWindow& w = NewWindow();
  Target target;
  int slot = Hook(w.hwnd(), &target);
  ASSERT_NE(slot, 0);
  for (auto [wp, lp] :
       {std::pair<WPARAM, LPARAM>{0, 0}, {7, -1}, {0xFFFFFFFF, 0x7FFFFFFF}, {42, 1000}}) {
    SCOPED_TRACE(testing::Message() << "wParam " << wp << " lParam " << lp);
    target.seen.clear();
    w.seen.clear();
    LRESULT r = SendMessageA(w.hwnd(), kProbe, wp, lp);
    const std::vector<Seen> once{{w.hwnd(), kProbe, wp, lp}};
    EXPECT_EQ(target.seen, once);
    EXPECT_EQ(target.slots.back(), slot);
    EXPECT_EQ(w.seen, once) << "the old procedure got the same message";
    EXPECT_EQ(r, kOwnAnswer + static_cast<LRESULT>(wp)) << "and its answer came back";
  }
  // A nested message does not change what the outer one passes on.
  w.seen.clear();
  EXPECT_EQ(SendMessageA(w.hwnd(), kProbe, 1, 2), kOwnAnswer + 1);
  EXPECT_EQ(w.seen, (std::vector<Seen>{{w.hwnd(), kNested, 5, 6}, {w.hwnd(), kProbe, 1, 2}}));
  // The system's messages still get their default processing.
  SetWindowTextA(w.hwnd(), "after");
  char text[32] = {};
  GetWindowTextA(w.hwnd(), text, sizeof text);
  EXPECT_STREQ(text, "after");
}

// A target that consumes a message answers it; the default target answers 0.
TEST_F(Subclass, AConsumedMessageAnswersWithTheTargetsResult) {
  Target consuming(/*consume=*/true);
  IMessageTarget plain;
  const std::pair<IMessageTarget*, LRESULT> cases[] = {{&consuming, 77}, {&plain, 0}};
  for (auto [target, answer] : cases) {
    RecordingWindow& w = NewWindow();
    ASSERT_NE(Hook(w.hwnd(), target), 0);
    EXPECT_EQ(SendMessageA(w.hwnd(), kProbe, 3, 4), answer);
    EXPECT_TRUE(w.seen.empty()) << "a consumed message must not reach the old procedure";
  }
}

TEST_F(Subclass, SlotsAreTakenLowestFirstAndASixthHookIsRefused) {
  Target target;
  std::vector<HWND> w;
  for (int i = 0; i < 3; ++i) w.push_back(NewWindow().hwnd());
  EXPECT_EQ(Hook(w[0], &target), 1);
  EXPECT_EQ(Hook(w[1], &target), 2);
  EXPECT_EQ(Hook(w[2], &target), 3);
  ASSERT_TRUE(Unhook(w[1]));
  HWND next = NewWindow().hwnd();
  EXPECT_EQ(Hook(next, &target), 2) << "the freed slot first";
  for (auto [wnd, slot] : {std::pair{w[0], 1}, {next, 2}, {w[2], 3}}) {
    target.slots.clear();
    SendMessageA(wnd, kProbe, 0, 0);
    EXPECT_EQ(target.slots, std::vector<int>{slot}) << "each window's messages carry its slot";
  }
  EXPECT_EQ(Hook(NewWindow().hwnd(), &target), 4);
  RecordingWindow& fifth = NewWindow();
  EXPECT_EQ(Hook(fifth.hwnd(), &target), mCBSubclass::kSlotCount);

  RecordingWindow& sixth = NewWindow();
  EXPECT_EQ(Hook(sixth.hwnd(), &target), 0);
  EXPECT_EQ(sixth.proc(), RecordingWindow::OwnProc()) << "a refused hook leaves the window alone";
  EXPECT_EQ(GetPropA(sixth.hwnd(), "Prop_HookID"), nullptr);
  target.seen.clear();
  EXPECT_EQ(SendMessageA(sixth.hwnd(), kProbe, 1, 0), kOwnAnswer + 1);
  EXPECT_TRUE(target.seen.empty());
  // A window destroyed while hooked gives its slot back.
  DestroyWindow(fifth.release());
  EXPECT_EQ(Hook(sixth.hwnd(), &target), mCBSubclass::kSlotCount);
}

TEST_F(Subclass, RefusedHooksTakeNoSlot) {
  Target target;
  RecordingWindow& hooked = NewWindow();
  ASSERT_EQ(Hook(hooked.hwnd(), &target), 1);
  WNDPROC installed = hooked.proc();
  RecordingWindow& other = NewWindow();
  struct Case {
    const char* what;
    HWND wnd;
    IMessageTarget* target;
  };
  const Case cases[] = {
      {"a window hooked already", hooked.hwnd(), &target},
      {"no target", other.hwnd(), nullptr},
      {"no window", nullptr, &target},
      {"the desktop, another process's window", GetDesktopWindow(), &target},
  };
  for (const Case& c : cases) EXPECT_EQ(Hook(c.wnd, c.target), 0) << c.what;
  EXPECT_EQ(hooked.proc(), installed);
  EXPECT_EQ(other.proc(), RecordingWindow::OwnProc());
  EXPECT_EQ(Hook(other.hwnd(), &target), 2);
}

TEST(SubclassDefault, AnUnknownSlotAnswersZero) {
  for (int slot : {0, 1, 5, 6, -1}) EXPECT_EQ(mCBSubclass::CallDefault(slot), 0) << slot;
}

}  // namespace
