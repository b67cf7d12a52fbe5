#include "shell/host_settings.h"

#include <windows.h>

#include <algorithm>
#include <vector>

#include "win32/handle.h"

namespace shell {
namespace {

int32_t ReadInt(std::string_view bytes, size_t at) {
  uint32_t v = 0;
  for (int i = 3; i >= 0; --i) v = (v << 8) | static_cast<unsigned char>(bytes[at + i]);
  return static_cast<int32_t>(v);
}

void WriteInt(std::string& bytes, size_t at, int32_t value) {
  auto v = static_cast<uint32_t>(value);
  for (int i = 0; i < 4; ++i) bytes[at + i] = static_cast<char>((v >> (8 * i)) & 0xFF);
}

FileResult Failure(DWORD code) { return {false, SystemMessage(code)}; }

}  // namespace

HostSettings ParseHostSettings(std::string_view bytes, int32_t previousRedraw) {
  HostSettings s;
  s.VoraRedraw = previousRedraw;
  if (bytes.size() < 8) return s;
  s.present = true;
  s.VoraSH = ReadInt(bytes, 0);
  s.VoraPixelFormat = ReadInt(bytes, 4);
  if (bytes.size() >= 12) {
    s.hasRedraw = true;
    s.VoraRedraw = ReadInt(bytes, 8);
    s.VoraSettingsTail = std::string(bytes.substr(12));
  }
  return s;
}

std::string ComposeHostSettings(std::string_view current, int32_t sh, int32_t pixelFormat,
                                int32_t redraw, std::string_view tail) {
  std::string written(12 + tail.size(), '\0');
  WriteInt(written, 0, sh);
  WriteInt(written, 4, pixelFormat);
  WriteInt(written, 8, redraw);
  written.replace(12, tail.size(), tail);
  if (current.size() > written.size()) written += current.substr(written.size());
  return written;
}

std::string HostSettingsPath() {
  char buf[MAX_PATH] = {};
  UINT n = GetWindowsDirectoryA(buf, MAX_PATH);
  std::string dir(buf, n < MAX_PATH ? n : 0);
  return dir + "\\VORAhogl.ini";
}

bool FileExists(const std::string& path) {
  WIN32_FIND_DATAA data;
  HANDLE find = FindFirstFileA(path.c_str(), &data);
  if (find == INVALID_HANDLE_VALUE) return false;
  FindClose(find);
  return true;
}

std::string SystemMessage(unsigned long code) {
  char* text = nullptr;
  DWORD n = FormatMessageA(
      FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
      nullptr, code, 0, reinterpret_cast<LPSTR>(&text), 0, nullptr);
  std::string s = n && text ? std::string(text, n) : "";
  if (text) LocalFree(text);
  while (!s.empty() && (s.back() == '\n' || s.back() == '\r' || s.back() == ' ')) s.pop_back();
  if (s.empty()) s = "system error";
  return s + " (" + std::to_string(code) + ")";
}

FileResult ReadWholeFile(const std::string& path, std::string& bytes) {
  DWORD attributes = GetFileAttributesA(path.c_str());
  if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY))
    return {false, "it is a folder, not a file"};
  win32::File file(CreateFileA(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE,
                               nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!file) return Failure(GetLastError());
  LARGE_INTEGER size{};
  if (!GetFileSizeEx(file.get(), &size)) return Failure(GetLastError());
  if (size.QuadPart > 0x7FFFFFFF) return {false, "the file is too large"};
  std::string data(static_cast<size_t>(size.QuadPart), '\0');
  size_t done = 0;
  while (done < data.size()) {
    DWORD got = 0;
    DWORD want = static_cast<DWORD>(std::min<size_t>(data.size() - done, 1 << 20));
    if (!ReadFile(file.get(), data.data() + done, want, &got, nullptr)) return Failure(GetLastError());
    if (got == 0) break;
    done += got;
  }
  data.resize(done);
  bytes = std::move(data);
  return {};
}

FileResult ReplaceFileContents(const std::string& path, std::string_view bytes) {
  DWORD attributes = GetFileAttributesA(path.c_str());
  if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY))
    return {false, "it is a folder, not a file"};
  if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY))
    return {false, "the file is read-only"};
  // The new contents go into a file beside the old one, which is replaced
  // only when they are complete; whatever fails, the temporary file goes.
  struct Temp {
    std::string path;
    bool keep = false;
    ~Temp() {
      if (!keep) DeleteFileA(path.c_str());
    }
  } temp{path + ".~new"};
  {
    win32::File file(CreateFileA(temp.path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                 FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file) return Failure(GetLastError());
    for (size_t done = 0; done < bytes.size();) {
      DWORD put = 0;
      DWORD want = static_cast<DWORD>(std::min<size_t>(bytes.size() - done, 1 << 20));
      if (!WriteFile(file.get(), bytes.data() + done, want, &put, nullptr) || put == 0)
        return Failure(GetLastError());
      done += put;
    }
    if (!FlushFileBuffers(file.get())) return Failure(GetLastError());
  }
  if (!MoveFileExA(temp.path.c_str(), path.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH))
    return Failure(GetLastError());
  temp.keep = true;
  return {};
}

}  // namespace shell
