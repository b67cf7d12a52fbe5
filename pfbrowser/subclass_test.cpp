// The subclassing module on real windows: hooks, slots, messages reaching the target, default
// processing through the previous procedure.
#include "pfbrowser/subclass.h"

#include <gtest/gtest.h>

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

// What the test windows' own procedure got; it answers kProbe and kNested with
// kOwnAnswer + wParam.
std::vector<Seen> ownSeen;

LRESULT CALLBACK OwnProc(HWND wnd, UINT msg, WPARAM wp, LPARAM lp) {
  if (msg != kProbe && msg != kNested) return DefWindowProcA(wnd, msg, wp, lp);
  ownSeen.push_back({wnd, msg, wp, lp});
  return kOwnAnswer + static_cast<LRESULT>(wp);
}

WNDPROC ProcOf(HWND wnd) { return reinterpret_cast<WNDPROC>(GetWindowLongPtrA(wnd, GWLP_WNDPROC)); }

// Records what reaches it and passes it on; while handling kProbe with wParam 1 it sends a
// nested message first.
struct Target : IMessageTarget {
  void Message(int slot, HWND wnd, UINT msg, WPARAM wp, LPARAM lp, LRESULT& result) override {
    if (msg == kProbe || msg == kNested) {
      seen.push_back({wnd, msg, wp, lp});
      slots.push_back(slot);
    }
    if (msg == kProbe && wp == 1) SendMessageA(wnd, kNested, 5, 6);
    result = mCBSubclass::CallDefault(slot);
  }
  std::vector<Seen> seen;
  std::vector<int> slots;
};

class Subclass : public ::testing::Test {
 protected:
  void SetUp() override { ownSeen.clear(); }
  void TearDown() override {
    for (auto& w : windows) Unhook(w.get());
  }
  HWND NewWindow() {
    static const bool registered = [] {
      WNDCLASSA wc{};
      wc.lpfnWndProc = &OwnProc;
      wc.hInstance = GetModuleHandleA(nullptr);
      wc.lpszClassName = "VelmoraSubclassTest";
      return RegisterClassA(&wc) != 0;
    }();
    EXPECT_TRUE(registered);
    windows.emplace_back(CreateWindowA("VelmoraSubclassTest", "before", WS_POPUP, 0, 0, 50, 50,
                                       nullptr, nullptr, GetModuleHandleA(nullptr), nullptr));
    return windows.back().get();
  }
  std::vector<win32::OwnedWindow> windows;
};

// Slots are taken lowest first and each hooked window's messages reach the target with its own
// slot, and its previous procedure through CallDefault. A refused hook takes no slot and leaves
// the window alone; an unhooked or destroyed window gives its slot back.
TEST_F(Subclass, SlotsRouteMessagesThroughTheTargetAndAreGivenBack) {
  Target target;
  std::vector<HWND> w;
  for (int i = 0; i < 3; ++i) w.push_back(NewWindow());
  EXPECT_EQ(Hook(w[0], &target), 1);
  EXPECT_EQ(Hook(w[1], &target), 2);
  EXPECT_EQ(Hook(w[2], &target), 3);
  EXPECT_NE(ProcOf(w[1]), &OwnProc);
  EXPECT_EQ(reinterpret_cast<INT_PTR>(GetPropA(w[1], "Prop_HookID")), 2);
  EXPECT_TRUE(Unhook(w[1]));
  EXPECT_EQ(ProcOf(w[1]), &OwnProc) << "the previous procedure is back";
  EXPECT_EQ(GetPropA(w[1], "Prop_HookID"), nullptr);
  EXPECT_FALSE(Unhook(w[1])) << "a second unhook has nothing to undo";
  HWND next = NewWindow();
  EXPECT_EQ(Hook(next, &target), 2) << "the freed slot first";
  for (auto [wnd, slot] : {std::pair{w[0], 1}, {next, 2}, {w[2], 3}, {w[1], 0}}) {
    SCOPED_TRACE(slot);
    EXPECT_EQ(SlotOf(wnd), slot);
    target.seen.clear();
    target.slots.clear();
    ownSeen.clear();
    const std::vector<Seen> once{{wnd, kProbe, 0xFFFFFFFF, 0x7FFFFFFF}};
    EXPECT_EQ(SendMessageA(wnd, kProbe, 0xFFFFFFFF, 0x7FFFFFFF), kOwnAnswer + LRESULT(0xFFFFFFFF))
        << "the previous procedure's answer comes back";
    EXPECT_EQ(ownSeen, once) << "the previous procedure got the message as it was";
    EXPECT_EQ(target.seen, slot ? once : std::vector<Seen>{});
    EXPECT_EQ(target.slots, slot ? std::vector<int>{slot} : std::vector<int>{});
  }
  // A nested message does not change what the outer one passes on.
  ownSeen.clear();
  EXPECT_EQ(SendMessageA(w[0], kProbe, 1, 2), kOwnAnswer + 1);
  EXPECT_EQ(ownSeen, (std::vector<Seen>{{w[0], kNested, 5, 6}, {w[0], kProbe, 1, 2}}));
  for (int slot : {0, 4, 6, -1}) EXPECT_EQ(mCBSubclass::CallDefault(slot), 0) << slot;

  const WNDPROC installed = ProcOf(w[0]);
  HWND other = NewWindow();
  const struct {
    const char* what;
    HWND wnd;
    IMessageTarget* target;
  } refused[] = {
      {"a window hooked already", w[0], &target},
      {"no target", other, nullptr},
      {"the desktop, another process's window", GetDesktopWindow(), &target},
  };
  for (const auto& c : refused) EXPECT_EQ(Hook(c.wnd, c.target), 0) << c.what;
  EXPECT_EQ(ProcOf(w[0]), installed);
  EXPECT_EQ(Hook(NewWindow(), &target), 4) << "the refused hooks took no slot";
  HWND fifth = NewWindow();
  EXPECT_EQ(Hook(fifth, &target), mCBSubclass::kSlotCount);
  EXPECT_EQ(Hook(other, &target), 0) << "a sixth hook is refused";
  EXPECT_EQ(ProcOf(other), &OwnProc) << "a refused hook leaves the window alone";
  EXPECT_EQ(GetPropA(other, "Prop_HookID"), nullptr);
  DestroyWindow(fifth);
  EXPECT_EQ(Hook(other, &target), mCBSubclass::kSlotCount);
}

}  // namespace
