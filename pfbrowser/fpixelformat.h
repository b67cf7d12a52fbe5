#pragma once
// FPixelFormat: every pixel format of the window's own device context in a
// grid, one row per flag and one column per format, with an "X" where the
// format has the flag. Column-header clicks sort the rows; a check box
// hides the formats that cannot draw double-buffered OpenGL into a window.
#include <windows.h>

#include <memory>
#include <string>
#include <vector>

#include "pfbrowser/listview.h"
#include "pfbrowser/subclass.h"
#include "win32/handle.h"
#include "win32/window.h"

namespace pfbrowser {

// Fills `lv` with the flags of formats 1..count of `dc`: the "Flag" column,
// a column per format as wide as the list view's auto-size to its header
// and cells (wider where that would cut the header's text), the 14 rows,
// the "X" cells. Each format's descriptor passes through `pfd`. Redrawing
// is off while it runs. Returns the format columns' widths (format 1
// first), the widths the show-all filter gives back to shown columns.
std::vector<int> FillPixelFormatGrid(CListViewCtl& lv, HDC dc, int count,
                                     PIXELFORMATDESCRIPTOR& pfd);

// Text width in twips in `font` (the font the list view draws with).
int TextWidthTwips(HFONT font, const std::string& text);

class FPixelFormat : public win32::Window, private mCBSubclass::IMessageTarget {
 public:
  enum ControlId : int { kShowAllCbx = 100, kCloseCbt };
  // Client area of the window as designed, in twips.
  static constexpr int kDesignWidth = 9600;
  static constexpr int kDesignHeight = 5400;

  FPixelFormat() = default;
  ~FPixelFormat() override;

  // The device context whose formats are listed. Loading replaces it with
  // the window's own: the browser lists the formats of its own window.
  void SetPixelFormatDC(HDC dc) { pixelFormatDC_ = dc; }
  HDC PixelFormatDC() const { return pixelFormatDC_; }

  // Creates and loads the window without showing it; false when it could
  // not be created.
  bool Load(HWND owner);
  // Shows the loaded window modally over `owner`; returns once it is gone.
  void ShowModal(HWND owner);
  bool Show(HWND owner) {
    if (!Load(owner)) return false;
    ShowModal(owner);
    return true;
  }

  const CListViewCtl* ListView() const { return listView_.get(); }
  int FormatCount() const { return formatCount_; }
  int SelectedFormat() const { return selectedFormat_; }
  int SortDirection(int column) const;
  int HookSlot() const { return hookSlot_; }

  // Handlers.
  void Form_Load();
  void Form_Resize();
  void Form_Unload();
  void ShowAll_Cbx_Click();
  void Close_Cbt_Click();
  LRESULT IMessageTarget_Message(int slot, HWND wnd, UINT msg, WPARAM wp, LPARAM lp);

 protected:
  LRESULT HandleMessage(UINT msg, WPARAM wp, LPARAM lp) override;

 private:
  void Message(int slot, HWND wnd, UINT msg, WPARAM wp, LPARAM lp, LRESULT& result) override {
    result = IMessageTarget_Message(slot, wnd, msg, wp, lp);
  }
  LRESULT ListView_ColumnClick(const NMHDR* notification);
  void CreateControls();
  // The format of PixelFormatDC, set up first when it has none.
  int CurrentFormat();
  HWND Control(int id) const { return GetDlgItem(hwnd(), id); }

  HDC pixelFormatDC_ = nullptr;
  win32::WindowDC ownDC_;
  PIXELFORMATDESCRIPTOR pfd_{};  // the format being examined
  std::vector<int> sortDirections_;  // by column, 0..N
  std::vector<int> formatWidths_;    // by format, 1..N, as filled
  std::unique_ptr<CListViewCtl> listView_;
  int formatCount_ = 0;
  int selectedFormat_ = 0;
  int hookSlot_ = 0;
};

}  // namespace pfbrowser
