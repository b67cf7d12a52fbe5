#pragma once
// Registry reading for the inspection classes and the driver scan: a root
// key (ClassKey) and a key path (SectionKey), with failures as empty
// results. Strings read here are always terminated by us, whatever the
// stored data looks like.
#include <windows.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "win32/handle.h"

namespace sysinfo {

// A string value (REG_SZ or REG_EXPAND_SZ, not expanded) cut at its first
// NUL; nothing when the key or value is missing or of another type.
std::optional<std::string> ReadStringValue(HKEY root, std::string_view path, std::string_view name);

// The text of string data as stored: cut at the first NUL, or at the end of
// the data when it carries none. Other types give an empty text.
std::string StringFromData(DWORD type, const BYTE* data, size_t size);

// The strings of string data: one for REG_SZ / REG_EXPAND_SZ (none when it
// is empty), each non-empty string of a REG_MULTI_SZ up to its closing
// empty one or the end of the data. Other types give none.
std::vector<std::string> StringsFromData(DWORD type, const BYTE* data, size_t size);

struct RegValue {
  std::string Name;
  std::string Data;  // text of REG_SZ / REG_EXPAND_SZ data, else empty
  DWORD Type = REG_NONE;
  std::vector<BYTE> Raw;  // the data as stored
};

struct RegValues {
  bool Ok = false;  // false when the key could not be opened or read
  std::vector<RegValue> Values;
  size_t LongestNameLength = 0;
  size_t Count() const { return Values.size(); }
};

struct RegSections {
  bool Ok = false;
  std::vector<std::string> Names;
  size_t Count() const { return Names.size(); }
};

class cRegistry {
 public:
  cRegistry() = default;
  cRegistry(HKEY classKey, std::string_view sectionKey);

  HKEY ClassKey() const { return root_; }
  void ClassKey(HKEY root);
  const std::string& SectionKey() const { return section_; }
  void SectionKey(std::string_view path);  // stored normalised

  // Opens the section for reading; the handle stays open until the class
  // or section changes or Close is called.
  bool KeyExists();
  HKEY KeyHandle() const { return key_.get(); }
  void Close() { key_.reset(); }

  RegValues EnumerateValues();
  RegSections EnumerateSections();
  std::optional<std::string> Value(std::string_view name);
  // A string or multi-string value as its strings; none when the key or
  // value is missing, vanishes while read, or holds another type.
  std::vector<std::string> Strings(std::string_view name);

  // Backslashes as separators, no doubled, leading or trailing ones.
  static std::string Normalize(std::string_view path);

 private:
  HKEY Open();

  HKEY root_ = HKEY_LOCAL_MACHINE;
  std::string section_;
  win32::Key key_;
};

}  // namespace sysinfo
