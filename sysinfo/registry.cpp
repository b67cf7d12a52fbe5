#include "sysinfo/registry.h"

#include <algorithm>
#include <cstring>

namespace sysinfo {
namespace {

// A value may change between the size query and the read; give up after a
// few rounds rather than loop on a value that keeps growing.
constexpr int kReadAttempts = 4;
constexpr size_t kMaxNameBuffer = 32768;  // names stop at 16383 characters

bool IsString(DWORD type) { return type == REG_SZ || type == REG_EXPAND_SZ; }

// The raw data of a value of one of the given kinds, read again while it
// grows between the size query and the read.
std::optional<std::pair<DWORD, std::vector<BYTE>>> QueryData(HKEY key, const std::string& name,
                                                             bool (*accept)(DWORD)) {
  DWORD type = 0, size = 0;
  LONG rc = RegQueryValueExA(key, name.c_str(), nullptr, &type, nullptr, &size);
  for (int attempt = 0; attempt < kReadAttempts; ++attempt) {
    if (rc != ERROR_SUCCESS && rc != ERROR_MORE_DATA) return std::nullopt;
    if (!accept(type)) return std::nullopt;
    std::vector<BYTE> data(static_cast<size_t>(size) + 2);
    DWORD got = size;
    rc = RegQueryValueExA(key, name.c_str(), nullptr, &type, data.data(), &got);
    if (rc == ERROR_SUCCESS) {
      if (!accept(type)) return std::nullopt;
      data.resize(std::min<size_t>(got, size));
      return std::make_pair(type, std::move(data));
    }
    size = std::max<DWORD>(got, size * 2 + 16);
  }
  return std::nullopt;
}

std::optional<std::string> QueryString(HKEY key, const std::string& name) {
  auto got = QueryData(key, name, IsString);
  if (!got) return std::nullopt;
  return StringFromData(got->first, got->second.data(), got->second.size());
}

}  // namespace

std::string StringFromData(DWORD type, const BYTE* data, size_t size) {
  if (!IsString(type) || !data) return {};
  const char* text = reinterpret_cast<const char*>(data);
  const void* nul = std::memchr(text, '\0', size);
  return std::string(text, nul ? static_cast<const char*>(nul) - text : size);
}

std::vector<std::string> StringsFromData(DWORD type, const BYTE* data, size_t size) {
  std::vector<std::string> out;
  if (!data) return out;
  if (IsString(type)) {
    std::string one = StringFromData(type, data, size);
    if (!one.empty()) out.push_back(std::move(one));
    return out;
  }
  if (type != REG_MULTI_SZ) return out;
  const char* text = reinterpret_cast<const char*>(data);
  size_t at = 0;
  while (at < size) {
    const void* nul = std::memchr(text + at, '\0', size - at);
    size_t end = nul ? static_cast<size_t>(static_cast<const char*>(nul) - text) : size;
    if (end == at) break;  // the empty string that closes the list
    out.emplace_back(text + at, end - at);
    at = end + 1;
  }
  return out;
}

std::optional<std::string> ReadStringValue(HKEY root, std::string_view path,
                                           std::string_view name) {
  HKEY raw = nullptr;
  if (RegOpenKeyExA(root, std::string(path).c_str(), 0, KEY_QUERY_VALUE, &raw) != ERROR_SUCCESS)
    return std::nullopt;
  win32::Key key(raw);
  return QueryString(key.get(), std::string(name));
}

cRegistry::cRegistry(HKEY classKey, std::string_view sectionKey)
    : root_(classKey), section_(Normalize(sectionKey)) {}

void cRegistry::ClassKey(HKEY root) {
  key_.reset();
  root_ = root;
}

void cRegistry::SectionKey(std::string_view path) {
  key_.reset();
  section_ = Normalize(path);
}

HKEY cRegistry::Open() {
  if (!key_) {
    HKEY raw = nullptr;
    if (RegOpenKeyExA(root_, section_.c_str(), 0, KEY_READ, &raw) == ERROR_SUCCESS) key_.reset(raw);
  }
  return key_.get();
}

bool cRegistry::KeyExists() { return Open() != nullptr; }

std::optional<std::string> cRegistry::Value(std::string_view name) {
  HKEY key = Open();
  if (!key) return std::nullopt;
  return QueryString(key, std::string(name));
}

std::vector<std::string> cRegistry::Strings(std::string_view name) {
  HKEY key = Open();
  if (!key) return {};
  auto got = QueryData(key, std::string(name),
                       [](DWORD type) { return IsString(type) || type == REG_MULTI_SZ; });
  if (!got) return {};
  return StringsFromData(got->first, got->second.data(), got->second.size());
}

RegValues cRegistry::EnumerateValues() {
  RegValues result;
  HKEY key = Open();
  if (!key) return result;
  DWORD maxName = 0, maxData = 0;
  if (RegQueryInfoKeyA(key, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, &maxName,
                       &maxData, nullptr, nullptr) != ERROR_SUCCESS)
    return result;
  std::vector<char> name(std::min<size_t>(maxName + size_t{1}, kMaxNameBuffer));
  std::vector<BYTE> data(static_cast<size_t>(maxData) + 1);
  for (DWORD index = 0;; ++index) {
    LONG rc = ERROR_MORE_DATA;
    DWORD nameLen = 0, dataLen = 0, type = 0;
    for (int attempt = 0; attempt < kReadAttempts && rc == ERROR_MORE_DATA; ++attempt) {
      nameLen = static_cast<DWORD>(name.size());
      dataLen = static_cast<DWORD>(data.size());
      rc = RegEnumValueA(key, index, name.data(), &nameLen, nullptr, &type, data.data(), &dataLen);
      if (rc == ERROR_MORE_DATA) {
        name.resize(std::min(name.size() * 2, kMaxNameBuffer));
        data.resize(std::max<size_t>(data.size() * 2, dataLen));
      }
    }
    if (rc == ERROR_NO_MORE_ITEMS) break;
    if (rc != ERROR_SUCCESS) return result;
    RegValue v;
    v.Name.assign(name.data(), std::min<size_t>(nameLen, name.size()));
    v.Type = type;
    v.Raw.assign(data.begin(), data.begin() + std::min<size_t>(dataLen, data.size()));
    v.Data = StringFromData(type, v.Raw.data(), v.Raw.size());
    result.LongestNameLength = std::max(result.LongestNameLength, v.Name.size());
    result.Values.push_back(std::move(v));
  }
  result.Ok = true;
  return result;
}

RegSections cRegistry::EnumerateSections() {
  RegSections result;
  HKEY key = Open();
  if (!key) return result;
  DWORD maxName = 0;
  if (RegQueryInfoKeyA(key, nullptr, nullptr, nullptr, nullptr, &maxName, nullptr, nullptr, nullptr,
                       nullptr, nullptr, nullptr) != ERROR_SUCCESS)
    return result;
  std::vector<char> name(std::min<size_t>(maxName + size_t{1}, kMaxNameBuffer));
  for (DWORD index = 0;; ++index) {
    LONG rc = ERROR_MORE_DATA;
    DWORD nameLen = 0;
    for (int attempt = 0; attempt < kReadAttempts && rc == ERROR_MORE_DATA; ++attempt) {
      nameLen = static_cast<DWORD>(name.size());
      rc = RegEnumKeyExA(key, index, name.data(), &nameLen, nullptr, nullptr, nullptr, nullptr);
      if (rc == ERROR_MORE_DATA) name.resize(std::min(name.size() * 2, kMaxNameBuffer));
    }
    if (rc == ERROR_NO_MORE_ITEMS) break;
    if (rc != ERROR_SUCCESS) return result;
    result.Names.emplace_back(name.data(), std::min<size_t>(nameLen, name.size()));
  }
  result.Ok = true;
  return result;
}

std::string cRegistry::Normalize(std::string_view path) {
  std::string out;
  out.reserve(path.size());
  for (char c : path) {
    if (c == '\\' && (out.empty() || out.back() == '\\')) continue;
    out += c;
  }
  if (!out.empty() && out.back() == '\\') out.pop_back();
  return out;
}

}  // namespace sysinfo
