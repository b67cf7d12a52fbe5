#include "pfbrowser/fpixelformat.h"

#include <commctrl.h>

#include <algorithm>
#include <array>
#include <map>
#include <tuple>
#include <string>

#include "gl/mopengl.h"
#include "pfbrowser/pixelformat_grid.h"
#include "win32/ui.h"

namespace pfbrowser {
namespace {

using win32::TwipRect;

constexpr char kClassName[] = "FPixelFormat";
// Child, visible, report view, single selection, always show selection.
constexpr DWORD kListViewStyle = 0x5000000D;
constexpr DWORD kListViewExStyle = WS_EX_CLIENTEDGE;  // 0x200
// Full-row select, one-click activate, underline hot item, label tips.
constexpr DWORD kListViewExtendedStyle = 0x4860;
constexpr int kDescriptorSize = 40;
// Smallest client area the window can be sized to, in twips.
constexpr int kMinWidth = 5400;
constexpr int kMinHeight = 2400;

constexpr TwipRect kShowAllDesign{120, 0, 2400, 300};
constexpr TwipRect kCloseDesign{0, 0, 1335, 420};

int Describe(HDC dc, int format, PIXELFORMATDESCRIPTOR& pfd) {
  pfd = {};
  return DescribePixelFormat(dc, format, kDescriptorSize, &pfd);
}

}  // namespace

namespace {

std::vector<int> TextWidths(HFONT font, const std::vector<std::string>& texts) {
  std::vector<int> widths(texts.size(), 0);
  win32::MemDC dc(CreateCompatibleDC(nullptr));
  if (!dc) return widths;
  win32::SelectIn selected(dc.get(), font);
  for (size_t i = 0; i < texts.size(); ++i) {
    SIZE size{};
    GetTextExtentPoint32A(dc.get(), texts[i].c_str(), static_cast<int>(texts[i].size()), &size);
    widths[i] = static_cast<int>(size.cx);
  }
  return widths;
}

}  // namespace

int TextWidthTwips(HFONT font, const std::string& text) {
  return win32::PixelsToTwipsX(TextWidths(font, {text}).front());
}

namespace {

struct SampleWidths {
  ListViewPadding padding;
  int flagAutoSize = 0;  // the "Flag" column auto-sized to the row names
};

// How a list view like `lv` pads what it auto-sizes, learnt from a hidden
// sample of three columns: the row names in column 0, "X" cells under a
// long header in column 1 (not the last column, which an auto-size may
// stretch to the view's edge instead).
SampleWidths MeasureSampleNow(const CListViewCtl& lv) {
  SampleWidths result;
  result.padding.headerMargin = lv.HeaderMargin();
  CListViewCtl sample;
  sample.SetFontName(lv.FontName());
  sample.SetFontSize(lv.FontSize());
  if (!sample.Create(GetParent(lv.hwnd()), 0, 0, 400, 200, kListViewStyle & ~WS_VISIBLE,
                     kListViewExStyle))
    return result;
  sample.SetExtendedStyle(lv.ExtendedStyle());
  for (int c = 0; c < 3; ++c) sample.AddColumn(c, "", 10);
  for (int r = 0; r < static_cast<int>(kFlagRows.size()); ++r) {
    sample.AddItem(r, kFlagRows[static_cast<size_t>(r)].text);
    sample.SetItemText(1, r, "X");
  }
  sample.SetColumnWidth(0, LVSCW_AUTOSIZE);
  result.flagAutoSize = sample.ColumnWidth(0);
  sample.SetColumnWidth(1, LVSCW_AUTOSIZE);
  result.padding.autoSizeCell = sample.ColumnWidth(1) - sample.StringWidth("X");
  // The header's text is longer than the cells' so that it decides.
  const std::string longHeader = kWidestRowText;
  HDITEMA item{};
  item.mask = HDI_TEXT;
  item.pszText = const_cast<char*>(longHeader.c_str());
  SendMessageA(sample.Header(), HDM_SETITEMA, 1, reinterpret_cast<LPARAM>(&item));
  sample.SetColumnWidth(1, LVSCW_AUTOSIZE_USEHEADER);
  result.padding.autoSizeHeader =
      sample.ColumnWidth(1) - sample.HeaderTextWidths({longHeader}).front();
  return result;
}

// The padding is the common controls' own and does not change while the
// program runs: it is learnt once per font and list-view style.
SampleWidths MeasureSample(const CListViewCtl& lv) {
  static std::map<std::tuple<std::string, int, DWORD>, SampleWidths> learnt;
  auto key = std::make_tuple(lv.FontName(), lv.FontSize(), lv.ExtendedStyle());
  auto found = learnt.find(key);
  if (found != learnt.end()) return found->second;
  SampleWidths sample = MeasureSampleNow(lv);
  if (sample.flagAutoSize > 0) learnt[key] = sample;
  return sample;
}

std::array<int, 10> DigitWidths(const std::vector<int>& widths) {
  std::array<int, 10> digits{};
  for (size_t d = 0; d < digits.size() && d < widths.size(); ++d) digits[d] = widths[d];
  return digits;
}

}  // namespace

// Every width is worked out before its column is added: a width change
// makes some list views (Wine's) lay out the whole header again, which
// for hundreds of columns costs far more than the fill itself. The grid
// is filled with redrawing off and without the extended styles (full-row
// select makes each cell set re-measure its whole row); they are put back
// once the cells are in.
std::vector<int> FillPixelFormatGrid(CListViewCtl& lv, HDC dc, int count,
                                     PIXELFORMATDESCRIPTOR& pfd) {
  lv.SetRedraw(false);
  const DWORD extendedStyle = lv.ExtendedStyle();
  std::vector<DWORD> flags;
  for (int i = 1; i <= count; ++i) {
    Describe(dc, i, pfd);
    flags.push_back(pfd.dwFlags);
  }
  const double tpp = win32::TwipsPerPixelX();
  const int padding = ColumnPadding(tpp);
  auto font = reinterpret_cast<HFONT>(SendMessageA(lv.hwnd(), WM_GETFONT, 0, 0));
  const SampleWidths sample = MeasureSample(lv);
  lv.SetExtendedStyle(0);
  const int cellX = lv.StringWidth("X");

  // Number texts are measured digit by digit: hundreds of text
  // measurements would take as long as the rest of the fill.
  const std::vector<std::string> digits{"0", "1", "2", "3", "4", "5", "6", "7", "8", "9"};
  const std::array<int, 10> headerDigits = DigitWidths(lv.HeaderTextWidths(digits));
  const std::array<int, 10> cellDigits = DigitWidths(TextWidths(font, digits));
  std::vector<int> widths;
  for (int i = 1; i <= count; ++i) {
    bool marked = (flags[static_cast<size_t>(i - 1)] & kAllRowFlags) != 0;
    int initial = FormatColumnInitialWidth(
        win32::PixelsToTwipsX(NumberTextWidth(i + padding, cellDigits)), tpp);
    widths.push_back(FormatColumnWidth(initial, NumberTextWidth(i, headerDigits),
                                       marked ? cellX : 0, sample.padding));
  }

  int flagWidth = FlagColumnWidth(TextWidthTwips(font, kWidestRowText), tpp);
  lv.AddColumn(0, kFlagHeader, FlagColumnFinalWidth(flagWidth, sample.flagAutoSize));
  for (int i = 1; i <= count; ++i)
    lv.AddColumn(i, std::to_string(i), widths[static_cast<size_t>(i - 1)]);
  for (int r = 0; r < static_cast<int>(kFlagRows.size()); ++r)
    lv.AddItem(r, kFlagRows[static_cast<size_t>(r)].text);
  for (int r = 0; r < static_cast<int>(kFlagRows.size()); ++r)
    for (int i = 1; i <= count; ++i) {
      std::string cell = CellText(flags[static_cast<size_t>(i - 1)], r);
      if (!cell.empty()) lv.SetItemText(i, r, cell);
    }
  lv.SetExtendedStyle(extendedStyle);
  lv.SetRedraw(true);
  InvalidateRect(lv.hwnd(), nullptr, TRUE);
  return widths;
}

FPixelFormat::~FPixelFormat() {
  // The window goes before the members it uses (the hook, the list view).
  if (hwnd()) DestroyWindow(hwnd());
}

bool FPixelFormat::Load(HWND owner) {
  if (hwnd()) return true;
  if (!RegisterClassOnce(kClassName, CS_OWNDC, reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1),
                         LoadIconA(GetModuleHandleA(nullptr), MAKEINTRESOURCEA(1))))
    return false;
  const DWORD style = WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU | WS_THICKFRAME | WS_MAXIMIZEBOX |
                      WS_CLIPCHILDREN | WS_CLIPSIBLINGS;
  RECT rc{0, 0, win32::TwipsToPixelsX(kDesignWidth), win32::TwipsToPixelsY(kDesignHeight)};
  AdjustWindowRectEx(&rc, style, FALSE, 0);
  int width = static_cast<int>(rc.right - rc.left), height = static_cast<int>(rc.bottom - rc.top);
  // Centred over the owner, as a dialog opens.
  int x = CW_USEDEFAULT, y = CW_USEDEFAULT;
  RECT ownerRect{};
  if (owner && GetWindowRect(owner, &ownerRect)) {
    x = std::max(0, static_cast<int>(ownerRect.left + ownerRect.right - width) / 2);
    y = std::max(0, static_cast<int>(ownerRect.top + ownerRect.bottom - height) / 2);
  }
  return Create(0, kClassName, kDesignCaption, style, x, y, width, height, owner);
}

void FPixelFormat::ShowModal(HWND owner) {
  if (hwnd()) win32::RunModal(hwnd(), owner);
}

int FPixelFormat::SortDirection(int column) const {
  if (column < 0 || column >= static_cast<int>(sortDirections_.size())) return 0;
  return sortDirections_[static_cast<size_t>(column)];
}

void FPixelFormat::CreateControls() {
  win32::CreateControl(hwnd(), "BUTTON", "Show all formats",
                       WS_VISIBLE | WS_TABSTOP | BS_AUTOCHECKBOX, kShowAllDesign, kShowAllCbx);
  win32::CreateControl(hwnd(), "BUTTON", "Close", WS_VISIBLE | WS_TABSTOP | BS_DEFPUSHBUTTON,
                       kCloseDesign, kCloseCbt);
  // The grid starts with every format in it, so the box starts ticked.
  SendMessageA(Control(kShowAllCbx), BM_SETCHECK, BST_CHECKED, 0);
}

int FPixelFormat::CurrentFormat() {
  int format = GetPixelFormat(pixelFormatDC_);
  if (format == 0) {
    mOpenGL::SetDCPixelFormat(pixelFormatDC_);
    format = GetPixelFormat(pixelFormatDC_);
  }
  return format;
}

void FPixelFormat::Form_Load() {
  // NOTE: the device context given by the opener is replaced by the
  // window's own: the list shows the formats of the browser's window.
  ownDC_ = win32::WindowDC(hwnd());
  pixelFormatDC_ = ownDC_.get();
  selectedFormat_ = CurrentFormat();
  win32::SetText(hwnd(), BrowserCaption(selectedFormat_));
  // Any format answers with the count; format 1 when none could be set.
  formatCount_ = std::max(0, Describe(pixelFormatDC_, std::max(selectedFormat_, 1), pfd_));
  sortDirections_.assign(static_cast<size_t>(formatCount_) + 1, 0);

  listView_ = std::make_unique<CListViewCtl>();
  listView_->SetFontName("Tahoma");
  listView_->SetFontSize(8);
  int w = 0, h = 0;
  win32::ClientSizeTwips(hwnd(), w, h);
  BrowserLayout layout = LayoutBrowser(w, h, kShowAllDesign, kCloseDesign,
                                       win32::TwipsPerPixelX(), win32::TwipsPerPixelY());
  const RECT& lv = layout.listView;
  int lvWidth = static_cast<int>(lv.right - lv.left), lvHeight = static_cast<int>(lv.bottom - lv.top);
  listView_->Create(hwnd(), 10, 10, std::max(0, lvWidth - 20), std::max(0, lvHeight - 20),
                    kListViewStyle, kListViewExStyle);
  listView_->SetExtendedStyle(listView_->ExtendedStyle() | kListViewExtendedStyle);
  formatWidths_ = FillPixelFormatGrid(*listView_, pixelFormatDC_, formatCount_, pfd_);
  hookSlot_ = mCBSubclass::Hook(hwnd(), this);
}

void FPixelFormat::Form_Resize() {
  int w = 0, h = 0;
  win32::ClientSizeTwips(hwnd(), w, h);
  if (w <= 0 || h <= 0) return;
  TwipRect showAll = win32::WindowRectTwips(Control(kShowAllCbx));
  TwipRect close = win32::WindowRectTwips(Control(kCloseCbt));
  BrowserLayout layout = LayoutBrowser(w, h, showAll, close, win32::TwipsPerPixelX(),
                                       win32::TwipsPerPixelY());
  if (listView_) {
    const RECT& lv = layout.listView;
    listView_->Move(lv.left, lv.top, lv.right - lv.left, lv.bottom - lv.top, true);
  }
  win32::MoveTwips(Control(kCloseCbt), layout.close);
  win32::MoveTwips(Control(kShowAllCbx), layout.showAll);
}

// The hook goes before the list view; the window goes after both.
void FPixelFormat::Form_Unload() {
  mCBSubclass::Unhook(hwnd());
  hookSlot_ = 0;
  if (listView_) listView_->Destroy();
  listView_.reset();
  ownDC_.reset();
}

void FPixelFormat::ShowAll_Cbx_Click() {
  if (!listView_) return;
  int current = CurrentFormat();
  int count = Describe(pixelFormatDC_, std::max(current, 1), pfd_);
  bool showAll = SendMessageA(Control(kShowAllCbx), BM_GETCHECK, 0, 0) == BST_CHECKED;
  count = std::min(count, formatCount_);
  listView_->SetRedraw(false);
  count = std::min(count, static_cast<int>(formatWidths_.size()));
  for (int i = 1; i <= count; ++i) {
    Describe(pixelFormatDC_, i, pfd_);
    bool shown = FormatShown(pfd_.dwFlags, showAll);
    listView_->SetColumnWidth(i, shown ? formatWidths_[static_cast<size_t>(i - 1)] : 0);
  }
  listView_->SetRedraw(true);
  InvalidateRect(listView_->hwnd(), nullptr, TRUE);
}

void FPixelFormat::Close_Cbt_Click() {
  win32::EndModal(hwnd());
  DestroyWindow(hwnd());
}

LRESULT FPixelFormat::IMessageTarget_Message(int slot, HWND, UINT msg, WPARAM, LPARAM lp) {
  if (msg == WM_NOTIFY && listView_) {
    const auto* header = reinterpret_cast<const NMHDR*>(lp);
    if (header && header->hwndFrom == listView_->hwnd()) return ListView_ColumnClick(header);
  }
  return mCBSubclass::CallDefault(slot);
}

LRESULT FPixelFormat::ListView_ColumnClick(const NMHDR* notification) {
  if (notification->code != LVN_COLUMNCLICK) return 0;
  int column = reinterpret_cast<const NMLISTVIEW*>(notification)->iSubItem;
  if (column < 0 || column >= static_cast<int>(sortDirections_.size())) return 0;
  int& direction = sortDirections_[static_cast<size_t>(column)];
  direction = ToggleSortDirection(direction);
  listView_->SortByColumn(column, direction);
  int selected = listView_->SelectedItem();
  if (selected >= 0) listView_->EnsureVisible(selected);
  return 0;
}

LRESULT FPixelFormat::HandleMessage(UINT msg, WPARAM wp, LPARAM lp) {
  switch (msg) {
    case WM_CREATE:
      CreateControls();
      Form_Load();
      return 0;
    case WM_SIZE:
      if (wp != SIZE_MINIMIZED) Form_Resize();
      return 0;
    case WM_GETMINMAXINFO: {
      RECT rc{0, 0, win32::TwipsToPixelsX(kMinWidth), win32::TwipsToPixelsY(kMinHeight)};
      AdjustWindowRectEx(&rc, static_cast<DWORD>(GetWindowLongA(hwnd(), GWL_STYLE)), FALSE, 0);
      auto* info = reinterpret_cast<MINMAXINFO*>(lp);
      info->ptMinTrackSize = {rc.right - rc.left, rc.bottom - rc.top};
      return 0;
    }
    case WM_COMMAND:
      switch (LOWORD(wp)) {
        case kShowAllCbx:
          if (HIWORD(wp) == BN_CLICKED) ShowAll_Cbx_Click();
          return 0;
        case kCloseCbt:
        case IDOK:      // Enter: Close is the default button
        case IDCANCEL:  // Escape
          Close_Cbt_Click();
          return 0;
      }
      break;
    case WM_CLOSE:
      Close_Cbt_Click();
      return 0;
    case WM_DESTROY:
      Form_Unload();
      return 0;
  }
  return Default(msg, wp, lp);
}

}  // namespace pfbrowser
