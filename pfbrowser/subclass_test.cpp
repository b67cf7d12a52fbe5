// The subclassing module on real windows.
#include "pfbrowser/subclass.h"

#include <gtest/gtest.h>

#include <vector>

#include "win32/handle.h"

namespace {

using mCBSubclass::Hook;
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

// What the test windows' own procedure got; it answers kProbe and kNested with kOwnAnswer + wp.
std::vector<Seen> ownSeen;

LRESULT CALLBACK OwnProc(HWND wnd, UINT msg, WPARAM wp, LPARAM lp) {
  if (msg != kProbe && msg != kNested) return DefWindowProcA(wnd, msg, wp, lp);
  ownSeen.push_back({wnd, msg, wp, lp});
  return kOwnAnswer + static_cast<LRESULT>(wp);
}

WNDPROC ProcOf(HWND wnd) { return reinterpret_cast<WNDPROC>(GetWindowLongPtrA(wnd, GWLP_WNDPROC)); }

// Records what reaches it and passes it on; for kProbe with wParam 1 it sends kNested first.
struct Target : mCBSubclass::IMessageTarget {
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

// Slots are taken lowest first and given back by Unhook; a hooked window's messages reach the
// target with its slot, and its previous procedure through CallDefault.
TEST_F(Subclass, SlotsRouteMessagesThroughTheTargetAndAreGivenBack) {
  Target target;
  HWND a = NewWindow(), b = NewWindow(), c = NewWindow();
  EXPECT_EQ(Hook(a, &target), 1);
  EXPECT_EQ(Hook(b, &target), 2);
  EXPECT_EQ(Hook(c, &target), 3);
  EXPECT_TRUE(Unhook(b));
  EXPECT_EQ(ProcOf(b), &OwnProc) << "the previous procedure is back";
  EXPECT_FALSE(Unhook(b)) << "a second unhook has nothing to undo";
  EXPECT_EQ(Hook(b, &target), 2) << "the freed slot first";
  // The previous procedure's answer comes back; a nested message (sent by the target while it
  // handles wParam 1) does not change what the outer one passes on.
  const Seen wide{b, kProbe, 0xFFFFFFFF, 0x7FFFFFFF}, outer{a, kProbe, 1, 2};
  const Seen nested{a, kNested, 5, 6};
  EXPECT_EQ(SendMessageA(b, kProbe, 0xFFFFFFFF, 0x7FFFFFFF), kOwnAnswer + LRESULT(0xFFFFFFFF));
  EXPECT_EQ(SendMessageA(a, kProbe, 1, 2), kOwnAnswer + 1);
  EXPECT_EQ(ownSeen, (std::vector<Seen>{wide, nested, outer}));
  EXPECT_EQ(target.seen, (std::vector<Seen>{wide, outer, nested}));
  EXPECT_EQ(target.slots, (std::vector<int>{2, 1, 1}));
  EXPECT_EQ(Hook(a, &target), 0) << "a window hooked already";
  EXPECT_EQ(Hook(NewWindow(), nullptr), 0) << "no target";
  EXPECT_EQ(Hook(NewWindow(), &target), 4) << "the refused hooks took no slot";
}

}  // namespace
