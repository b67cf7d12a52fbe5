#include "sysinfo/fileversioninfo.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <span>

#include "win32/text.h"

namespace sysinfo {
namespace {

constexpr WORD kUsEnglish = 1033;
constexpr DWORD kLanguageNameBuffer = 256;

struct EntryName {
  const char* display;
  const char* key;  // name in the string table; null for the language
};
constexpr EntryName kEntryNames[] = {
    {"Language", nullptr},
    {"Comments", "Comments"},
    {"Company Name", "CompanyName"},
    {"File Description", "FileDescription"},
    {"File Version", "FileVersion"},
    {"Internal Name", "InternalName"},
    {"Legal Copyright", "LegalCopyright"},
    {"Legal Trademarks", "LegalTrademarks"},
    {"Original Filename", "OriginalFilename"},
    {"Product Name", "ProductName"},
    {"Product Version", "ProductVersion"},
    {"Private Build", "PrivateBuild"},
    {"Special Build", "SpecialBuild"},
    {"LegalTrademarks1", "LegalTrademarks1"},
    {"LegalTrademarks2", "LegalTrademarks2"},
};

// A private copy of the version data that VerQueryValueA may write to: for
// a resource stored in UTF-16 it converts the texts it returns into the
// space behind the resource (up to twice the resource's length), so the
// copy is padded to at least that much.
class Block {
 public:
  explicit Block(const std::vector<BYTE>& bytes) {
    if (bytes.size() < 3 * sizeof(WORD)) return;
    WORD length = 0;
    std::memcpy(&length, bytes.data(), sizeof length);
    if (length < 3 * sizeof(WORD) || length > bytes.size()) return;
    data_ = bytes;
    data_.resize(std::max<size_t>(bytes.size(), 2 * size_t{length} + 4) + 64, 0);
  }
  bool Valid() const { return !data_.empty(); }

  // The bytes VerQueryValueA points at for `path`, cut to the block: for
  // texts the length counts characters, for binary values bytes.
  std::span<const BYTE> Query(const std::string& path) {
    if (!Valid()) return {};
    void* found = nullptr;
    UINT len = 0;
    if (!VerQueryValueA(data_.data(), path.c_str(), &found, &len) || !found) return {};
    const BYTE* p = static_cast<const BYTE*>(found);
    const BYTE* begin = data_.data();
    const BYTE* end = begin + data_.size();
    if (p < begin || p >= end) return {};
    return {p, std::min<size_t>(len, static_cast<size_t>(end - p))};
  }

  std::string Text(const std::string& path) {
    auto bytes = Query(path);
    if (bytes.empty()) return {};
    const char* text = reinterpret_cast<const char*>(bytes.data());
    return std::string(text, strnlen(text, bytes.size()));
  }

 private:
  std::vector<BYTE> data_;
};

std::string Padded(unsigned value, int width) {
  char buf[16];
  std::snprintf(buf, sizeof buf, "%0*u", width, value);
  return buf;
}

std::string Hex4(unsigned value) {
  char buf[16];
  std::snprintf(buf, sizeof buf, "%04X", value & 0xFFFFu);
  return buf;
}

std::string StringTablePrefix(WORD language, WORD codePage) {
  return "\\StringFileInfo\\" + Hex4(language) + Hex4(codePage) + "\\";
}

std::string LanguageName(WORD language) {
  char buf[kLanguageNameBuffer] = {};
  DWORD n = VerLanguageNameA(language, buf, kLanguageNameBuffer);
  // Some systems count the terminating zero in the returned length.
  return std::string(buf, strnlen(buf, std::min<DWORD>(n, kLanguageNameBuffer - 1)));
}

std::string SystemDirectoryPath() {
  std::vector<char> buf(MAX_PATH);
  for (int attempt = 0; attempt < 3; ++attempt) {
    UINT n = GetSystemDirectoryA(buf.data(), static_cast<UINT>(buf.size()));
    if (n == 0) return {};
    if (n < buf.size()) return std::string(buf.data(), n);
    buf.resize(n + 1);
  }
  return {};
}

}  // namespace

VersionData ReadVersionData(const std::string& path) {
  DWORD ignored = 0;
  SetLastError(0);
  DWORD size = GetFileVersionInfoSizeA(path.c_str(), &ignored);
  if (size == 0) return {{}, GetLastError()};
  std::vector<BYTE> bytes(size);
  SetLastError(0);
  if (!GetFileVersionInfoA(path.c_str(), 0, size, bytes.data())) return {{}, GetLastError()};
  return {std::move(bytes), 0};
}

cFileVersionInfo::cFileVersionInfo() : systemDirectory_(SystemDirectoryPath()) {}

cFileVersionInfo::cFileVersionInfo(const VersionData& data) { Interpret(data); }

void cFileVersionInfo::FullPathName(std::string_view path) {
  path_ = std::string(path);
  Refresh();
}

bool cFileVersionInfo::Refresh() { return Interpret(ReadVersionData(path_)); }

std::string cFileVersionInfo::PredefinedName(int index) {
  static_assert(std::size(kEntryNames) == kEntryCount, "one name per entry, in entry order");
  if (index < 0 || index >= kEntryCount) return {};
  return kEntryNames[index].display;
}

std::string cFileVersionInfo::PredefinedValue(int index) const {
  if (index < 0 || index >= kEntryCount) return {};
  return entries_[static_cast<size_t>(index)];
}

std::string cFileVersionInfo::VersionText(DWORD ms, DWORD ls) {
  return Padded(HIWORD(ms), 2) + "." + Padded(LOWORD(ms), 2) + "." + Padded(HIWORD(ls), 4) + "." +
         Padded(LOWORD(ls), 4);
}

// The structure version is one word: its two halves only.
std::string cFileVersionInfo::StructureText(DWORD version) {
  return Padded(HIWORD(version), 2) + "." + Padded(LOWORD(version), 2);
}

std::string cFileVersionInfo::FlagsText(DWORD flags) {
  static constexpr struct {
    DWORD bit;
    const char* word;
  } kWords[] = {{VS_FF_DEBUG, "Debug "},       {VS_FF_PRERELEASE, "PreRel "},
                {VS_FF_PATCHED, "Patched "},   {VS_FF_PRIVATEBUILD, "Private "},
                {VS_FF_INFOINFERRED, "Info "}, {VS_FF_SPECIALBUILD, "Special "}};
  std::string text;
  for (const auto& w : kWords)
    if (flags & w.bit) text += w.word;
  if (text.empty()) text = "Unknown ";
  return win32::Trim(text);
}

std::string cFileVersionInfo::OSText(DWORD os) {
  switch (os) {
    case VOS_DOS_WINDOWS16: return "DOS-Win16";
    case VOS_DOS_WINDOWS32: return "DOS-Win32";
    case VOS_OS216_PM16: return "OS/2-16 PM-16";
    // NOTE: 0x30003 is the 32-bit OS/2 value; the text has always said 16.
    case VOS_OS232_PM32: return "OS/2-16 PM-32";
    case VOS_NT_WINDOWS32: return "NT-Win32";
    default: return "Unknown";
  }
}

std::string cFileVersionInfo::FailureText(DWORD error) {
  if (error >= ERROR_RESOURCE_DATA_NOT_FOUND && error <= ERROR_RESOURCE_LANG_NOT_FOUND)
    return "    (n/a) - " + std::to_string(error);
  return "    (n/a)";
}

void cFileVersionInfo::TypeTexts(DWORD type, DWORD subtype, std::string& typeText,
                                 std::string& subtypeText) {
  static constexpr const char* kDrivers[] = {
      "Printer drv", "Keyboard drv", "Language drv", "Display drv", "Mouse drv",
      "Network drv", "System drv",   "Installable",  "Sound drv",   "Comm drv"};
  static constexpr const char* kFonts[] = {"Raster Font", "Vector Font", "TrueType Font"};
  switch (type) {
    case VFT_APP: typeText = "Application"; break;
    case VFT_DLL: typeText = "DLL"; break;
    case VFT_DRV:
      typeText = "Driver";
      if (subtype >= 1 && subtype <= std::size(kDrivers)) subtypeText = kDrivers[subtype - 1];
      break;
    case VFT_FONT:
      typeText = "Font";
      if (subtype >= 1 && subtype <= std::size(kFonts)) subtypeText = kFonts[subtype - 1];
      break;
    case VFT_VXD: typeText = "VxD"; break;
    case VFT_STATIC_LIB: typeText = "Lib"; break;
    default: typeText = "Unknown"; break;
  }
}

// NOTE: the failure text goes into both version fields, so whoever prints
// a version without asking Available first shows why there is none.
bool cFileVersionInfo::Fail(DWORD error) {
  lastError_ = error;
  verFile_ = FailureText(error);
  entries_[kFileVersion] = verFile_;
  return false;
}

bool cFileVersionInfo::Interpret(const VersionData& data) {
  available_ = false;
  lastError_ = 0;
  fileFlags_.clear();
  fileOS_.clear();
  fileType_.clear();
  fileSubType_.clear();
  verFile_.clear();
  verProduct_.clear();
  verStructure_.clear();
  for (auto& e : entries_) e.clear();

  if (data.Bytes.empty()) return Fail(data.Error);
  Block block(data.Bytes);
  if (!block.Valid()) return Fail(ERROR_INVALID_DATA);
  SetLastError(0);
  auto root = block.Query("\\");
  if (root.size() < sizeof(VS_FIXEDFILEINFO)) return Fail(GetLastError());
  VS_FIXEDFILEINFO fixed;
  std::memcpy(&fixed, root.data(), sizeof fixed);

  verFile_ = VersionText(fixed.dwFileVersionMS, fixed.dwFileVersionLS);
  verProduct_ = VersionText(fixed.dwProductVersionMS, fixed.dwProductVersionLS);
  verStructure_ = StructureText(fixed.dwStrucVersion);
  fileFlags_ = FlagsText(fixed.dwFileFlags & fixed.dwFileFlagsMask);
  fileOS_ = OSText(fixed.dwFileOS);
  TypeTexts(fixed.dwFileType, fixed.dwFileSubtype, fileType_, fileSubType_);

  // Without a translation table the string table is looked for under
  // language 0 and code page 0, which holds nothing in practice.
  WORD language = 0, codePage = 0;
  auto translation = block.Query("\\VarFileInfo\\Translation");
  if (translation.size() >= 2 * sizeof(WORD)) {
    std::memcpy(&language, translation.data(), sizeof language);
    std::memcpy(&codePage, translation.data() + sizeof language, sizeof codePage);
    entries_[kLanguage] = LanguageName(language);
  }

  // Many files name their own language in the translation table but keep
  // the strings under US English only.
  std::string prefix = StringTablePrefix(language, codePage);
  if (block.Text(prefix + "CompanyName").empty()) {
    std::string english = StringTablePrefix(kUsEnglish, codePage);
    if (!block.Text(english + "CompanyName").empty()) prefix = english;
  }
  for (int i = kComments; i < kEntryCount; ++i)
    entries_[static_cast<size_t>(i)] = block.Text(prefix + kEntryNames[i].key);
  available_ = true;
  return true;
}

}  // namespace sysinfo
