#pragma once
// One move-only owner for every kind of Windows handle the program keeps.
#include <windows.h>

#include <utility>

namespace win32 {

template <class H, auto Close>
class UniqueHandle {
 public:
  UniqueHandle() = default;
  explicit UniqueHandle(H h) : h_(Valid(h) ? h : H{}) {}
  ~UniqueHandle() { reset(); }
  UniqueHandle(UniqueHandle&& other) noexcept : h_(std::exchange(other.h_, H{})) {}
  UniqueHandle& operator=(UniqueHandle&& other) noexcept {
    if (this != &other) reset(std::exchange(other.h_, H{}));
    return *this;
  }
  UniqueHandle(const UniqueHandle&) = delete;
  UniqueHandle& operator=(const UniqueHandle&) = delete;

  H get() const { return h_; }
  explicit operator bool() const { return h_ != H{}; }
  H release() { return std::exchange(h_, H{}); }
  void reset(H h = H{}) {
    H old = std::exchange(h_, Valid(h) ? h : H{});
    if (old != H{}) Close(old);
  }

 private:
  static bool Valid(H h) {
    if constexpr (std::is_same_v<H, HANDLE>) return h != INVALID_HANDLE_VALUE;
    return true;
  }
  H h_{};
};

inline void CloseFile(HANDLE h) { CloseHandle(h); }
inline void CloseGdi(HGDIOBJ h) { DeleteObject(h); }
inline void CloseKey(HKEY h) { RegCloseKey(h); }
inline void CloseModule(HMODULE h) { FreeLibrary(h); }
inline void CloseMemDC(HDC h) { DeleteDC(h); }
inline void DestroyWnd(HWND h) { DestroyWindow(h); }

using File = UniqueHandle<HANDLE, CloseFile>;
using Key = UniqueHandle<HKEY, CloseKey>;
using Module = UniqueHandle<HMODULE, CloseModule>;
using MemDC = UniqueHandle<HDC, CloseMemDC>;
using OwnedWindow = UniqueHandle<HWND, DestroyWnd>;
template <class G>
using Gdi = UniqueHandle<G, CloseGdi>;

// A window's device context, released with the window it came from.
class WindowDC {
 public:
  WindowDC() = default;
  explicit WindowDC(HWND wnd) : wnd_(wnd), dc_(wnd ? GetDC(wnd) : nullptr) {}
  ~WindowDC() { reset(); }
  WindowDC(WindowDC&& o) noexcept
      : wnd_(std::exchange(o.wnd_, nullptr)), dc_(std::exchange(o.dc_, nullptr)) {}
  WindowDC& operator=(WindowDC&& o) noexcept {
    if (this != &o) {
      reset();
      wnd_ = std::exchange(o.wnd_, nullptr);
      dc_ = std::exchange(o.dc_, nullptr);
    }
    return *this;
  }
  WindowDC(const WindowDC&) = delete;
  WindowDC& operator=(const WindowDC&) = delete;

  HDC get() const { return dc_; }
  HWND window() const { return wnd_; }
  void reset() {
    if (dc_) ReleaseDC(wnd_, dc_);
    dc_ = nullptr;
    wnd_ = nullptr;
  }

 private:
  HWND wnd_ = nullptr;
  HDC dc_ = nullptr;
};

// Selects an object into a DC for a scope and puts the previous one back.
class SelectIn {
 public:
  SelectIn(HDC dc, HGDIOBJ obj) : dc_(dc), old_(SelectObject(dc, obj)) {}
  ~SelectIn() { SelectObject(dc_, old_); }
  SelectIn(const SelectIn&) = delete;
  SelectIn& operator=(const SelectIn&) = delete;

 private:
  HDC dc_;
  HGDIOBJ old_;
};

}  // namespace win32
