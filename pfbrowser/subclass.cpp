#include "pfbrowser/subclass.h"

namespace mCBSubclass {
namespace {

// The program swaps window procedures with SetWindowLongA and GWL_WNDPROC:
// on 32-bit Windows a procedure fits a window long. The 64-bit build of the
// same sources (see scripts/test.sh) needs the pointer-wide call.
#ifdef _WIN64
using WindowLong = LONG_PTR;
WindowLong SwapWndProc(HWND wnd, WindowLong proc) { return SetWindowLongPtrA(wnd, GWLP_WNDPROC, proc); }
#else
static_assert(sizeof(LONG) == sizeof(WNDPROC),
              "the hook table keeps window procedures in 32-bit window longs");
using WindowLong = LONG;
WindowLong SwapWndProc(HWND wnd, WindowLong proc) { return SetWindowLongA(wnd, GWL_WNDPROC, proc); }
#endif

struct Slot {
  WNDPROC previous = nullptr;  // nullptr: the slot is free
  IMessageTarget* target = nullptr;
  // The message being processed, for CallDefault.
  HWND wnd = nullptr;
  UINT msg = 0;
  WPARAM wp = 0;
  LPARAM lp = 0;
  HWND hooked = nullptr;  // the window the slot's procedure is installed on
};

// Module-wide by design: a slot's window procedure is a plain function and
// finds its state by its own number, so the table cannot live in an object.
Slot g_slots[kSlotCount];

Slot& At(int slot) { return g_slots[slot - 1]; }

LRESULT Dispatch(int slot, HWND wnd, UINT msg, WPARAM wp, LPARAM lp) {
  Slot& s = At(slot);
  // A message sent while the target handles another one overwrites the
  // slot's message; the outer one is put back afterwards so that its own
  // CallDefault still passes on what it received.
  const Slot outer = s;
  s.wnd = wnd;
  s.msg = msg;
  s.wp = wp;
  s.lp = lp;
  LRESULT result = 0;
  if (s.target) s.target->Message(slot, wnd, msg, wp, lp, result);
  if (s.hooked == wnd) {
    s.wnd = outer.wnd;
    s.msg = outer.msg;
    s.wp = outer.wp;
    s.lp = outer.lp;
  }
  // A window destroyed while hooked gives its slot back by itself, so that
  // a forgotten Unhook cannot use up the table.
  if (msg == WM_NCDESTROY && s.hooked == wnd) Unhook(wnd);
  return result;
}

template <int N>
LRESULT CALLBACK SlotProc(HWND wnd, UINT msg, WPARAM wp, LPARAM lp) {
  return Dispatch(N, wnd, msg, wp, lp);
}

constexpr WNDPROC kSlotProcs[kSlotCount] = {SlotProc<1>, SlotProc<2>, SlotProc<3>, SlotProc<4>,
                                            SlotProc<5>};

WindowLong AsLong(WNDPROC proc) { return reinterpret_cast<WindowLong>(proc); }

}  // namespace

int SlotOf(HWND wnd) {
  if (!wnd) return 0;
  auto slot = static_cast<int>(reinterpret_cast<INT_PTR>(GetPropA(wnd, kHookIdProperty)));
  if (slot < 1 || slot > kSlotCount || At(slot).hooked != wnd) return 0;
  return slot;
}

int Hook(HWND wnd, IMessageTarget* target) {
  if (!target || !IsWindow(wnd) || SlotOf(wnd) != 0) return 0;
  int slot = 0;
  for (int i = 1; i <= kSlotCount && slot == 0; ++i)
    if (!At(i).previous) slot = i;
  // NOTE: a sixth hook finds no slot and is refused before the window is
  // touched; the program itself never hooks more than one window.
  if (slot == 0) return 0;
  SetLastError(0);
  WindowLong previous = SwapWndProc(wnd, AsLong(kSlotProcs[slot - 1]));
  if (previous == 0) return 0;  // another process's window, or no window any more
  Slot& s = At(slot);
  s = Slot{};
  s.previous = reinterpret_cast<WNDPROC>(previous);
  s.target = target;
  s.hooked = wnd;
  SetPropA(wnd, kHookIdProperty, reinterpret_cast<HANDLE>(static_cast<INT_PTR>(slot)));
  return slot;
}

bool Unhook(HWND wnd) {
  int slot = SlotOf(wnd);
  if (slot == 0) return false;
  Slot& s = At(slot);
  WNDPROC previous = s.previous;
  s = Slot{};
  SwapWndProc(wnd, AsLong(previous));
  RemovePropA(wnd, kHookIdProperty);
  return true;
}

LRESULT CallDefault(int slot) {
  if (slot < 1 || slot > kSlotCount) return 0;
  const Slot& s = At(slot);
  // A slot unhooked while its message was being handled has nothing left
  // to pass the message on to.
  if (!s.previous) return 0;
  return CallWindowProcA(s.previous, s.wnd, s.msg, s.wp, s.lp);
}

}  // namespace mCBSubclass
