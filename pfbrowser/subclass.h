#pragma once
// mCBSubclass: redirects the messages of a window to an object. Five hook
// slots, each with its own window procedure; the window's previous
// procedure stays reachable through CallDefault.
#include <windows.h>

namespace mCBSubclass {

// Receives the messages of a hooked window. `slot` is the hook's slot
// number (1 to 5); what the target leaves in `result` is the window
// procedure's result. A target calls CallDefault(slot) for every message
// it does not consume.
class IMessageTarget {
 public:
  virtual ~IMessageTarget() = default;
  virtual void Message(int slot, HWND wnd, UINT msg, WPARAM wp, LPARAM lp, LRESULT& result) {
    (void)slot, (void)wnd, (void)msg, (void)wp, (void)lp;
    result = 0;
  }
};

inline constexpr int kSlotCount = 5;
// The window property that holds a hooked window's slot number.
inline constexpr char kHookIdProperty[] = "Prop_HookID";

// Takes the lowest free slot and installs its procedure on `wnd`. Returns
// the slot number, or 0 when the hook was refused (no free slot, no
// window, no target, or the window is hooked already); a refused hook
// leaves the window as it was.
int Hook(HWND wnd, IMessageTarget* target);

// Puts the window's previous procedure back and frees its slot. False when
// the window was not hooked.
bool Unhook(HWND wnd);

// The previous procedure's answer to the message the slot is processing.
LRESULT CallDefault(int slot);

// The slot hooked on `wnd`, 0 when none.
int SlotOf(HWND wnd);

}  // namespace mCBSubclass
