#include "pfbrowser/listview.h"

#include <commctrl.h>

#include <algorithm>

namespace pfbrowser {
namespace {

// The program's texts are in the ANSI code page.
std::wstring Wide(std::string_view text) {
  if (text.empty()) return {};
  int n = MultiByteToWideChar(CP_ACP, 0, text.data(), static_cast<int>(text.size()), nullptr, 0);
  std::wstring wide(static_cast<size_t>(std::max(n, 0)), L'\0');
  if (n > 0)
    MultiByteToWideChar(CP_ACP, 0, text.data(), static_cast<int>(text.size()), wide.data(), n);
  return wide;
}

char Folded(char c) { return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c; }

// Common controls start: the list-view classes through InitCommonControlsEx
// where comctl32 exports it, the older InitCommonControls otherwise.
bool StartCommonControls() {
  using InitEx = BOOL(WINAPI*)(const INITCOMMONCONTROLSEX*);
  win32::Module lib(LoadLibraryA("comctl32.dll"));
  InitEx init = lib ? reinterpret_cast<InitEx>(GetProcAddress(lib.get(), "InitCommonControlsEx"))
                    : nullptr;
  if (!init) {
    InitCommonControls();
    return false;
  }
  INITCOMMONCONTROLSEX icc{};
  icc.dwSize = 8;
  icc.dwICC = ICC_LISTVIEW_CLASSES;
  return init(&icc) != FALSE;
}

// One LVM_SORTITEMSEX in progress, found by the callback through the list
// view's kSortKeysProperty.
struct SortRun {
  int column;
  const std::map<LPARAM, SortKey>* keys;
  SortIndexMeaning meaning;
  WorkingOrder working;
};

LPARAM ListedItemId(HWND lv, LPARAM index) {
  LVITEMA item{};
  item.mask = LVIF_PARAM;
  item.iItem = static_cast<int>(index);
  SendMessageA(lv, LVM_GETITEMA, 0, reinterpret_cast<LPARAM>(&item));
  return item.lParam;
}

int CALLBACK CompareItems(LPARAM first, LPARAM second, LPARAM sortParam) {
  HWND lv = reinterpret_cast<HWND>(sortParam);
  auto* run = static_cast<SortRun*>(GetPropA(lv, kSortKeysProperty));
  if (!run) return 0;
  auto direction = static_cast<int>(reinterpret_cast<INT_PTR>(GetPropA(lv, kSortModeProperty)));
  auto column = static_cast<int>(reinterpret_cast<INT_PTR>(GetPropA(lv, kSortColumnProperty)));
  if (column != run->column) return 0;
  bool working = run->meaning == SortIndexMeaning::WorkingCopy;
  LPARAM a = working ? run->working.At(first) : ListedItemId(lv, first);
  LPARAM b = working ? run->working.At(second) : ListedItemId(lv, second);
  static const SortKey kNone{"", 0x7fffffff};
  auto ka = run->keys->find(a), kb = run->keys->find(b);
  int result = CompareSortKeys(ka != run->keys->end() ? ka->second : kNone,
                               kb != run->keys->end() ? kb->second : kNone, direction);
  if (working) run->working.Compared(first, second, result);
  return result;
}

}  // namespace

int CompareCellTexts(std::string_view a, std::string_view b) {
  size_t n = std::min(a.size(), b.size());
  for (size_t i = 0; i < n; ++i) {
    char ca = Folded(a[i]), cb = Folded(b[i]);
    if (ca != cb) return static_cast<unsigned char>(ca) < static_cast<unsigned char>(cb) ? -1 : 1;
  }
  if (a.size() == b.size()) return 0;
  return a.size() < b.size() ? -1 : 1;
}

int CompareSortKeys(const SortKey& a, const SortKey& b, int direction) {
  int c = CompareCellTexts(a.text, b.text);
  if (c != 0) return direction == kSortAscending ? c : -c;
  if (a.position == b.position) return 0;
  return a.position < b.position ? -1 : 1;
}

std::vector<LPARAM> SortedOrder(const std::map<LPARAM, SortKey>& keys, int direction) {
  std::vector<LPARAM> ids;
  for (const auto& [id, key] : keys) ids.push_back(id);
  std::sort(ids.begin(), ids.end(), [&](LPARAM a, LPARAM b) {
    return CompareSortKeys(keys.at(a), keys.at(b), direction) < 0;
  });
  return ids;
}

LPARAM WorkingOrder::At(LPARAM index) const {
  if (index < 0 || static_cast<size_t>(index) >= ids_.size()) return 0;
  return ids_[static_cast<size_t>(index)];
}

void WorkingOrder::Compared(LPARAM first, LPARAM second, int result) {
  if (result <= 0 || first < 0 || first >= second || static_cast<size_t>(second) >= ids_.size())
    return;
  auto from = ids_.begin() + second;
  std::rotate(ids_.begin() + first, from, from + 1);
}

CListViewCtl::CListViewCtl() {
  static const bool started = StartCommonControls();
  (void)started;
}

CListViewCtl::~CListViewCtl() { Destroy(); }

void CListViewCtl::SetFontName(std::string_view name) {
  // The name is a fixed text of 32 characters.
  fontName_ = std::string(name.substr(0, LF_FACESIZE - 1));
}

void CListViewCtl::SetFontSize(int points) { fontSize_ = points; }

bool CListViewCtl::Create(HWND parent, int left, int top, int width, int height, DWORD style,
                          DWORD exStyle) {
  Destroy();
  wnd_ = CreateWindowExA(exStyle, WC_LISTVIEWA, "", style, left, top, width, height, parent,
                         nullptr, GetModuleHandleA(nullptr), nullptr);
  if (!wnd_) return false;
  HDC screen = GetDC(nullptr);
  int logPixelsY = screen ? GetDeviceCaps(screen, LOGPIXELSY) : 96;
  if (screen) ReleaseDC(nullptr, screen);
  font_.reset(CreateFontA(-MulDiv(fontSize_, logPixelsY, 72), 0, 0, 0, FW_NORMAL, FALSE, FALSE,
                          FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS,
                          DEFAULT_QUALITY, DEFAULT_PITCH | FF_DONTCARE, fontName_.c_str()));
  if (font_) SendMessageA(wnd_, WM_SETFONT, reinterpret_cast<WPARAM>(font_.get()), FALSE);
  return true;
}

void CListViewCtl::Destroy() {
  if (wnd_) DestroyWindow(wnd_);
  wnd_ = nullptr;
  font_.reset();  // only once no window uses it
}

void CListViewCtl::Move(int left, int top, int width, int height, bool repaint) {
  if (wnd_) MoveWindow(wnd_, left, top, width, height, repaint);
}

// Texts go in through the wide messages: the list view keeps its texts wide,
// and converting here is cheaper than the control's own conversion when a
// grid of hundreds of columns is filled.
bool CListViewCtl::AddColumn(int index, std::string_view header, int width) {
  std::wstring text = Wide(header);
  LVCOLUMNW col{};
  col.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_SUBITEM;
  col.pszText = text.data();
  col.cx = width;
  col.iSubItem = index;
  return SendMessageW(wnd_, LVM_INSERTCOLUMNW, index, reinterpret_cast<LPARAM>(&col)) >= 0;
}

bool CListViewCtl::AddItem(int index, std::string_view text) {
  std::wstring t = Wide(text);
  LVITEMW item{};
  item.mask = LVIF_TEXT | LVIF_PARAM;
  item.iItem = index;
  item.pszText = t.data();
  item.lParam = nextId_++;
  return SendMessageW(wnd_, LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item)) >= 0;
}

bool CListViewCtl::SetItemText(int column, int row, std::string_view text) {
  std::wstring t = Wide(text);
  LVITEMW item{};
  item.iSubItem = column;
  item.pszText = t.data();
  return SendMessageW(wnd_, LVM_SETITEMTEXTW, row, reinterpret_cast<LPARAM>(&item)) != FALSE;
}

void CListViewCtl::SetColumnWidth(int column, int width) {
  SendMessageA(wnd_, LVM_SETCOLUMNWIDTH, column, MAKELPARAM(width, 0));
}

int CListViewCtl::ColumnWidth(int column) const {
  return static_cast<int>(SendMessageA(wnd_, LVM_GETCOLUMNWIDTH, column, 0));
}

int CListViewCtl::StringWidth(std::string_view text) const {
  std::string t(text);
  return static_cast<int>(SendMessageA(wnd_, LVM_GETSTRINGWIDTHA, 0,
                                       reinterpret_cast<LPARAM>(t.c_str())));
}

std::vector<int> CListViewCtl::HeaderTextWidths(const std::vector<std::string>& texts) const {
  std::vector<int> widths(texts.size(), 0);
  HWND header = Header();
  if (!header) return widths;
  win32::WindowDC dc(header);
  if (!dc.get()) return widths;
  auto font = reinterpret_cast<HFONT>(SendMessageA(header, WM_GETFONT, 0, 0));
  win32::SelectIn selected(dc.get(), font ? font : static_cast<HFONT>(GetStockObject(SYSTEM_FONT)));
  for (size_t i = 0; i < texts.size(); ++i) {
    SIZE size{};
    if (GetTextExtentPoint32A(dc.get(), texts[i].c_str(), static_cast<int>(texts[i].size()), &size))
      widths[i] = static_cast<int>(size.cx);
  }
  return widths;
}

int CListViewCtl::HeaderMargin() const {
  HWND header = Header();
  int margin = header ? static_cast<int>(SendMessageA(header, HDM_GETBITMAPMARGIN, 0, 0)) : 0;
  // Headers that do not answer keep their default: three edge widths.
  return margin > 0 ? margin : 3 * GetSystemMetrics(SM_CXEDGE);
}

HWND CListViewCtl::Header() const {
  return wnd_ ? reinterpret_cast<HWND>(SendMessageA(wnd_, LVM_GETHEADER, 0, 0)) : nullptr;
}

DWORD CListViewCtl::ExtendedStyle() const {
  return static_cast<DWORD>(SendMessageA(wnd_, LVM_GETEXTENDEDLISTVIEWSTYLE, 0, 0));
}

void CListViewCtl::SetExtendedStyle(DWORD style) {
  SendMessageA(wnd_, LVM_SETEXTENDEDLISTVIEWSTYLE, 0, style);
}

void CListViewCtl::SetRedraw(bool on) { SendMessageA(wnd_, WM_SETREDRAW, on ? TRUE : FALSE, 0); }

int CListViewCtl::SelectedItem() const {
  return static_cast<int>(SendMessageA(wnd_, LVM_GETNEXTITEM, static_cast<WPARAM>(-1),
                                       MAKELPARAM(LVNI_SELECTED, 0)));
}

void CListViewCtl::EnsureVisible(int item) { SendMessageA(wnd_, LVM_ENSUREVISIBLE, item, FALSE); }

int CListViewCtl::ItemCount() const {
  return static_cast<int>(SendMessageA(wnd_, LVM_GETITEMCOUNT, 0, 0));
}

int CListViewCtl::ColumnCount() const {
  HWND header = Header();
  return header ? static_cast<int>(SendMessageA(header, HDM_GETITEMCOUNT, 0, 0)) : 0;
}

std::string CListViewCtl::ItemText(int row, int column) const {
  std::vector<char> buf(64);
  for (;;) {
    LVITEMA item{};
    item.iSubItem = column;
    item.pszText = buf.data();
    item.cchTextMax = static_cast<int>(buf.size());
    auto n = static_cast<size_t>(
        SendMessageA(wnd_, LVM_GETITEMTEXTA, row, reinterpret_cast<LPARAM>(&item)));
    if (n + 1 < buf.size()) return std::string(buf.data(), n);
    buf.resize(buf.size() * 4);
  }
}

std::string CListViewCtl::ColumnText(int column) const {
  char buf[256] = {};
  LVCOLUMNA col{};
  col.mask = LVCF_TEXT;
  col.pszText = buf;
  col.cchTextMax = sizeof buf;
  if (!SendMessageA(wnd_, LVM_GETCOLUMNA, column, reinterpret_cast<LPARAM>(&col))) return {};
  return buf;
}

std::vector<LPARAM> CListViewCtl::RowIds() const {
  std::vector<LPARAM> ids;
  int n = ItemCount();
  for (int i = 0; i < n; ++i) ids.push_back(ListedItemId(wnd_, i));
  return ids;
}

bool CListViewCtl::SortOnce(int column, int direction, const std::map<LPARAM, SortKey>& keys) {
  SortRun run{column, &keys, indexMeaning_, WorkingOrder(RowIds())};
  SetPropA(wnd_, kSortModeProperty, reinterpret_cast<HANDLE>(static_cast<INT_PTR>(direction)));
  SetPropA(wnd_, kSortColumnProperty, reinterpret_cast<HANDLE>(static_cast<INT_PTR>(column)));
  SetPropA(wnd_, kSortKeysProperty, &run);
  PFNLVCOMPARE compare = &CompareItems;
  SendMessageA(wnd_, LVM_SORTITEMSEX, reinterpret_cast<WPARAM>(wnd_),
               reinterpret_cast<LPARAM>(compare));
  RemovePropA(wnd_, kSortKeysProperty);
  RemovePropA(wnd_, kSortColumnProperty);
  RemovePropA(wnd_, kSortModeProperty);
  return RowIds() == SortedOrder(keys, direction);
}

// The texts of the sort column are taken once, before the sort, keyed by
// each row's identity: while the control sorts, its items are not where
// their indices say on every system. The callback finds them through the
// list view's properties and follows the numbering the control uses; a
// sort that does not come out as asked is run once more with the other
// numbering, which is then kept.
bool CListViewCtl::SortByColumn(int column, int direction) {
  if (!wnd_ || column < 0 || column >= ColumnCount()) return false;
  std::map<LPARAM, SortKey> keys;
  std::vector<LPARAM> ids = RowIds();
  for (int row = 0; row < static_cast<int>(ids.size()); ++row)
    keys[ids[static_cast<size_t>(row)]] = SortKey{ItemText(row, column), row};
  if (SortOnce(column, direction, keys)) return true;
  SortIndexMeaning tried = indexMeaning_;
  indexMeaning_ = tried == SortIndexMeaning::ListedItem ? SortIndexMeaning::WorkingCopy
                                                        : SortIndexMeaning::ListedItem;
  if (SortOnce(column, direction, keys)) return true;
  indexMeaning_ = tried;
  return false;
}

}  // namespace pfbrowser
