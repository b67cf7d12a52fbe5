#pragma once
// What the quad view and its print twin share: the controls, the
// initialisation, the resize layout, the keys, closing and ShowMe.
#include <windows.h>

#include <array>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "quadview/picture.h"
#include "quadview/results.h"
#include "win32/window.h"

namespace quadview {

// What the windows take from the main window.
struct QuadHost {
  std::string quadViewCaption = "QuadView";  // caption of its QuadView_Cbt
  bool currentOGLRedraw = false;              // CurrentOGLRedraw
};

// Control ids, named after the controls (GLTestDesc_Lbl, QuadPic,
// MapPic(0..3), FormResize_Chk …).
enum QuadControlId : int {
  kGLTestDescLbl = 100, kQuadPic,
  kMapPic0 = 110,
  kFormResizeChk = 120, kFormPaintChk, kOpenGLPicResizeChk, kOpenGLPicPaintChk,
  kRedrawCbt = 130, kCopyPictureCmd, kErrorCbt, kCloseCbt,
};

class QuadForm : public win32::Window, protected PictureEvents {
 public:
  ~QuadForm() override;

  void SetHost(QuadHost host) { host_ = std::move(host); }
  const QuadHost& Host() const { return host_; }

  // Creates the window hidden and initialises it. `place` (screen
  // coordinates) gives its outer rectangle; otherwise the design size.
  bool Load(const RECT* place = nullptr);
  bool Loaded() const { return hwnd() != nullptr; }
  // Shows the window modally; when that ends, `result` is "ERROR" with
  // status 2 if Error_Cbt was the active control, otherwise the decimal
  // QuadResult with status 1. The window is unloaded by then.
  short ShowMe(std::string& result);
  // ShowMe without a person: the window is shown without being activated,
  // `drive` takes it through what a user would do, and it is closed with
  // Close; status and result as ShowMe gives them.
  short ShowUnattended(std::string& result, const std::function<void()>& drive);
  // Closes the window for the given reason (a close from our own code
  // unless said otherwise). Asked while a redraw runs, it hides the window
  // and is carried out as soon as the redraw is done.
  void Unload(int mode = kFormCode);

  virtual void Redraw(short index) = 0;
  virtual void RefreshGL() = 0;

  HWND Control(int id) const;
  Picture* QuadPic() const { return quadPic_.get(); }
  Picture* MapPic(int index) const;
  int Value(int checkBoxId) const;
  FixBoxes Boxes() const;
  short QuadResult() const;
  void SetFixBoxesVisible(bool visible);

  // Handlers.
  void Form_Load();
  void Form_KeyUp(int keyCode, int shift);
  void Form_QueryUnload(int mode);
  void Close_Cbt_Click();
  void Error_Cbt_Click();

 protected:
  struct Design {
    const char* className;
    bool redrawAndCopy;       // Redraw_Cbt and CopyPicture_cmd exist
    Picture::Kind quadPicKind;
    Picture::Kind mapPicKind;
    bool mapPicsShown;
  };
  QuadForm(QuadHost host, const Design& design);

  LRESULT HandleMessage(UINT msg, WPARAM wp, LPARAM lp) override;
  void Picture_Paint(int) override {}
  void Picture_Resize(int) override {}

  virtual void Form_Initialize() {}
  virtual void Form_Paint() {}
  virtual void Form_Resize() { LayOut(); }
  virtual void Form_Unload() {}
  virtual void OnCommand(int id, int code);
  virtual void ToggleCopyPicture() {}
  // The controls' places for the window's present size.
  void LayOut();
  // False until the window and its controls exist; events before that are
  // not the window's to handle yet.
  bool Ready() const { return ready_; }

  // Marks drawing in progress: a close request that arrives meanwhile (from
  // a message pumped by a driver call or a message box) waits for its end.
  class Busy {
   public:
    explicit Busy(QuadForm& form) : form_(form) { ++form_.busy_; }
    ~Busy();
    Busy(const Busy&) = delete;
    Busy& operator=(const Busy&) = delete;

   private:
    QuadForm& form_;
  };

 private:
  static LRESULT CALLBACK KeyPreviewProc(HWND wnd, UINT msg, WPARAM wp, LPARAM lp, UINT_PTR id,
                                         DWORD_PTR self);
  void CreateControls();
  void Initialize();
  void DisableOtherWindows();
  void RestoreOtherWindows();

  QuadHost host_;
  Design design_;
  std::unique_ptr<Picture> quadPic_;
  std::array<std::unique_ptr<Picture>, 4> mapPic_;
  bool ready_ = false;
  int busy_ = 0;
  std::optional<int> pendingUnload_;
  std::optional<int> closeMode_;  // set by the system menu's Close
  HWND activeControl_ = nullptr;  // the control that last had the focus
  // What ShowMe reports, taken when the window is unloaded.
  bool endedByError_ = false;
  short resultAtUnload_ = 0;
  // Other windows of the program, disabled while this one is shown modally.
  std::vector<HWND> disabled_;
  HWND previousActive_ = nullptr;
};

// Shift state as key events report it: 1 Shift, 2 Ctrl, 4 Alt.
int ShiftState();

}  // namespace quadview
