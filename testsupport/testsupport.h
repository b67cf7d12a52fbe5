#pragma once
// Helpers for the in-process window tests: a recorder that answers message
// boxes instead of the user, plain OpenGL-capable windows, pixel reads.
#include <windows.h>

#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "win32/window.h"

namespace testsupport {

struct BoxCall {
  std::string text;
  std::string title;
  UINT style;
};

// Installs itself as the message-box hook while it lives; answers with the
// queued answers in order (IDOK when the queue is empty) and records calls.
class MsgBoxRecorder {
 public:
  MsgBoxRecorder();
  ~MsgBoxRecorder();
  void Answer(int id) { answers_.push_back(id); }
  const std::vector<BoxCall>& calls() const { return calls_; }
  void Clear() { calls_.clear(); }

 private:
  std::deque<int> answers_;
  std::vector<BoxCall> calls_;
};

// A visible top-level window of a CS_OWNDC class, destroyed with the object.
class PlainWindow : public win32::DrawingWindow {
 public:
  PlainWindow(int width = 160, int height = 120, bool visible = true)
      : DrawingWindow(nullptr, RECT{10, 10, 10 + width, 10 + height}, visible ? WS_VISIBLE : 0) {}
};

// While it lives, presses "Close" (after a click into the first view, if
// there is one) in any window of this thread that waits for the user: the
// interaction test, the quad view.
class WaitingWindowCloser {
 public:
  WaitingWindowCloser();
  ~WaitingWindowCloser();
  WaitingWindowCloser(const WaitingWindowCloser&) = delete;
  WaitingWindowCloser& operator=(const WaitingWindowCloser&) = delete;

 private:
  UINT_PTR timer_;
};

// While it lives, a modal window of this thread that is still open after
// `ms` milliseconds is destroyed, so that its loop returns, and the test
// fails (Expired() tells) instead of waiting for ever.
class ModalDeadline {
 public:
  explicit ModalDeadline(UINT ms = 10000);
  ~ModalDeadline();
  ModalDeadline(const ModalDeadline&) = delete;
  ModalDeadline& operator=(const ModalDeadline&) = delete;
  bool Expired() const { return expired_; }

 private:
  static void CALLBACK Fire(HWND, UINT, UINT_PTR id, DWORD);
  UINT_PTR timer_;
  bool expired_ = false;
};

// While it lives, every picture the program reads back as GL_RGB bytes
// with glReadPixels is handed to `alter` first: a fault in what a scene
// drew, put in at the OpenGL entry table (the call's import slot), so that
// a test can show that the automatic check catches it.
class PictureFault {
 public:
  using Alter = std::function<void(int width, int height, unsigned char* rgb)>;
  explicit PictureFault(Alter alter);
  ~PictureFault();
  PictureFault(const PictureFault&) = delete;
  PictureFault& operator=(const PictureFault&) = delete;
};

// Private bytes of this process, what a leak grows; where the system leaves
// that figure empty (Wine), the committed page-file usage instead.
size_t PrivateBytes();

// Runs the messages that are waiting, for about `ms` milliseconds.
void Pump(int ms = 0);

// RGB of one pixel of the current GL context's read buffer (x, y from the
// bottom-left corner).
struct Rgb {
  int r, g, b;
  bool operator==(const Rgb&) const = default;
};
Rgb ReadPixel(int x, int y);

}  // namespace testsupport
