// The subclassing module on real windows: hooks, slots, messages reaching
// the target, default processing through the previous procedure.
#include "pfbrowser/subclass.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "win32/handle.h"

namespace {

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

// A window whose own procedure records what reaches it and answers kProbe
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
  std::vector<Seen> seen;  // kProbe and kNested messages only
  static WNDPROC OwnProc() { return &RecordingWindow::Proc; }
  HWND release() { return wnd_.release(); }

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

// A target that records what reaches it and either consumes kProbe with
// its own answer or passes everything on.
class Target : public mCBSubclass::IMessageTarget {
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

int PropSlot(HWND wnd) {
  return static_cast<int>(reinterpret_cast<INT_PTR>(GetPropA(wnd, "Prop_HookID")));
}

class Subclass : public ::testing::Test {
 protected:
  void TearDown() override {
    for (auto& w : windows) mCBSubclass::Unhook(w->hwnd());
  }
  RecordingWindow& NewWindow() {
    windows.push_back(std::make_unique<RecordingWindow>());
    return *windows.back();
  }
  std::vector<std::unique_ptr<RecordingWindow>> windows;
};

TEST_F(Subclass, HookInstallsTheSlotProcedureAndTheProperty) {
  RecordingWindow& w = NewWindow();
  Target target;
  ASSERT_EQ(w.proc(), RecordingWindow::OwnProc());
  int slot = mCBSubclass::Hook(w.hwnd(), &target);
  EXPECT_EQ(slot, 1);
  EXPECT_NE(w.proc(), RecordingWindow::OwnProc());
  EXPECT_EQ(PropSlot(w.hwnd()), 1);
  EXPECT_EQ(mCBSubclass::SlotOf(w.hwnd()), 1);
}

TEST_F(Subclass, MessagesReachTheTargetAndDefaultProcessingTheOldProcedure) {
  RecordingWindow& w = NewWindow();
  Target target;
  int slot = mCBSubclass::Hook(w.hwnd(), &target);
  ASSERT_NE(slot, 0);
  struct Case {
    WPARAM wp;
    LPARAM lp;
  };
  const Case cases[] = {{0, 0}, {7, -1}, {0xFFFFFFFF, 0x7FFFFFFF}, {42, 1000}};
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << "wParam " << c.wp << " lParam " << c.lp);
    target.seen.clear();
    w.seen.clear();
    LRESULT r = SendMessageA(w.hwnd(), kProbe, c.wp, c.lp);
    EXPECT_EQ(target.seen, (std::vector<Seen>{{w.hwnd(), kProbe, c.wp, c.lp}}));
    EXPECT_EQ(target.slots.back(), slot);
    // The old procedure got the same message and its answer came back.
    EXPECT_EQ(w.seen, (std::vector<Seen>{{w.hwnd(), kProbe, c.wp, c.lp}}));
    EXPECT_EQ(r, kOwnAnswer + static_cast<LRESULT>(c.wp));
  }
  // Default processing of the system's messages still works.
  SetWindowTextA(w.hwnd(), "after");
  char text[32] = {};
  GetWindowTextA(w.hwnd(), text, sizeof text);
  EXPECT_STREQ(text, "after");
}

TEST_F(Subclass, AConsumedMessageAnswersWithTheTargetsResult) {
  RecordingWindow& w = NewWindow();
  Target target(/*consume=*/true);
  ASSERT_NE(mCBSubclass::Hook(w.hwnd(), &target), 0);
  EXPECT_EQ(SendMessageA(w.hwnd(), kProbe, 3, 4), 77);
  EXPECT_TRUE(w.seen.empty()) << "a consumed message must not reach the old procedure";
}

TEST_F(Subclass, TheDefaultImplementationAnswersZero) {
  RecordingWindow& w = NewWindow();
  mCBSubclass::IMessageTarget plain;
  ASSERT_NE(mCBSubclass::Hook(w.hwnd(), &plain), 0);
  EXPECT_EQ(SendMessageA(w.hwnd(), kProbe, 3, 4), 0);
  EXPECT_TRUE(w.seen.empty());
}

TEST_F(Subclass, ANestedMessageDoesNotChangeWhatTheOuterOnePassesOn) {
  RecordingWindow& w = NewWindow();
  Target target;
  ASSERT_NE(mCBSubclass::Hook(w.hwnd(), &target), 0);
  LRESULT r = SendMessageA(w.hwnd(), kProbe, 1, 2);
  EXPECT_EQ(r, kOwnAnswer + 1);
  EXPECT_EQ(w.seen, (std::vector<Seen>{{w.hwnd(), kNested, 5, 6}, {w.hwnd(), kProbe, 1, 2}}));
}

TEST_F(Subclass, UnhookPutsThePreviousProcedureBack) {
  RecordingWindow& w = NewWindow();
  Target target;
  ASSERT_NE(mCBSubclass::Hook(w.hwnd(), &target), 0);
  EXPECT_TRUE(mCBSubclass::Unhook(w.hwnd()));
  EXPECT_EQ(w.proc(), RecordingWindow::OwnProc());
  EXPECT_EQ(GetPropA(w.hwnd(), "Prop_HookID"), nullptr);
  EXPECT_EQ(mCBSubclass::SlotOf(w.hwnd()), 0);
  EXPECT_EQ(SendMessageA(w.hwnd(), kProbe, 2, 0), kOwnAnswer + 2);
  EXPECT_TRUE(target.seen.empty());
  EXPECT_FALSE(mCBSubclass::Unhook(w.hwnd())) << "a second unhook has nothing to undo";
}

TEST_F(Subclass, FreedSlotsAreTakenLowestFirst) {
  Target target;
  std::vector<HWND> w;
  for (int i = 0; i < 3; ++i) w.push_back(NewWindow().hwnd());
  EXPECT_EQ(mCBSubclass::Hook(w[0], &target), 1);
  EXPECT_EQ(mCBSubclass::Hook(w[1], &target), 2);
  EXPECT_EQ(mCBSubclass::Hook(w[2], &target), 3);
  ASSERT_TRUE(mCBSubclass::Unhook(w[1]));
  HWND next = NewWindow().hwnd();
  EXPECT_EQ(mCBSubclass::Hook(next, &target), 2);
  EXPECT_EQ(mCBSubclass::Hook(NewWindow().hwnd(), &target), 4);
  // Each window's messages come with its own slot number.
  struct Case {
    HWND wnd;
    int slot;
  };
  for (Case c : {Case{w[0], 1}, Case{next, 2}, Case{w[2], 3}}) {
    SCOPED_TRACE(testing::Message() << "slot " << c.slot);
    target.slots.clear();
    SendMessageA(c.wnd, kProbe, 0, 0);
    EXPECT_EQ(target.slots, std::vector<int>{c.slot});
  }
}

TEST_F(Subclass, ASixthHookIsRefusedAndLeavesTheWindowAlone) {
  Target target;
  for (int i = 1; i <= mCBSubclass::kSlotCount; ++i) {
    SCOPED_TRACE(testing::Message() << "hook " << i);
    EXPECT_EQ(mCBSubclass::Hook(NewWindow().hwnd(), &target), i);
  }
  RecordingWindow& sixth = NewWindow();
  EXPECT_EQ(mCBSubclass::Hook(sixth.hwnd(), &target), 0);
  EXPECT_EQ(sixth.proc(), RecordingWindow::OwnProc());
  EXPECT_EQ(GetPropA(sixth.hwnd(), "Prop_HookID"), nullptr);
  target.seen.clear();
  EXPECT_EQ(SendMessageA(sixth.hwnd(), kProbe, 1, 0), kOwnAnswer + 1);
  EXPECT_TRUE(target.seen.empty());
}

TEST_F(Subclass, RefusedHooks) {
  Target target;
  RecordingWindow& hooked = NewWindow();
  ASSERT_EQ(mCBSubclass::Hook(hooked.hwnd(), &target), 1);
  WNDPROC installed = hooked.proc();
  RecordingWindow& other = NewWindow();
  struct Case {
    const char* what;
    HWND wnd;
    mCBSubclass::IMessageTarget* target;
  };
  const Case cases[] = {
      {"a window hooked already", hooked.hwnd(), &target},
      {"no target", other.hwnd(), nullptr},
      {"no window", nullptr, &target},
      {"the desktop, another process's window", GetDesktopWindow(), &target},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(mCBSubclass::Hook(c.wnd, c.target), 0);
  }
  EXPECT_EQ(hooked.proc(), installed);
  EXPECT_EQ(other.proc(), RecordingWindow::OwnProc());
  EXPECT_EQ(mCBSubclass::Hook(other.hwnd(), &target), 2) << "refusals took no slot";
}

TEST_F(Subclass, AWindowDestroyedWhileHookedGivesItsSlotBack) {
  Target target;
  RecordingWindow& w = NewWindow();
  ASSERT_EQ(mCBSubclass::Hook(w.hwnd(), &target), 1);
  DestroyWindow(w.release());
  EXPECT_EQ(mCBSubclass::Hook(NewWindow().hwnd(), &target), 1);
}

TEST(SubclassDefault, AnUnknownSlotAnswersZero) {
  for (int slot : {0, 1, 5, 6, -1}) {
    SCOPED_TRACE(slot);
    EXPECT_EQ(mCBSubclass::CallDefault(slot), 0);
  }
}

}  // namespace
