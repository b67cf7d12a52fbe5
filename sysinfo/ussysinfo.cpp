#include "sysinfo/ussysinfo.h"

#include <lm.h>

#include <cstring>
#include <memory>
#include <vector>

namespace sysinfo {
namespace {

constexpr DWORD kComputerNameBuffer = 16;
constexpr DWORD kUserNameBuffer = 256;

struct NetBufferFree {
  void operator()(void* p) const { NetApiBufferFree(p); }
};

// Text the name functions returned, cut at the first NUL within the buffer.
std::string CutAtNul(const std::vector<char>& buffer) {
  return std::string(buffer.data(), strnlen(buffer.data(), buffer.size()));
}

}  // namespace

std::string FromWide(const wchar_t* text) {
  if (!text || !*text) return {};
  int n = WideCharToMultiByte(CP_ACP, 0, text, -1, nullptr, 0, nullptr, nullptr);
  if (n <= 1) return {};
  std::string out(static_cast<size_t>(n), '\0');
  n = WideCharToMultiByte(CP_ACP, 0, text, -1, out.data(), n, nullptr, nullptr);
  out.resize(n > 0 ? static_cast<size_t>(n - 1) : 0);
  return out;
}

std::wstring ToWide(std::string_view text) {
  if (text.empty()) return {};
  const int len = static_cast<int>(text.size());
  int n = MultiByteToWideChar(CP_ACP, 0, text.data(), len, nullptr, 0);
  if (n <= 0) return {};
  std::wstring out(static_cast<size_t>(n), L'\0');
  n = MultiByteToWideChar(CP_ACP, 0, text.data(), len, out.data(), n);
  out.resize(n > 0 ? static_cast<size_t>(n) : 0);
  return out;
}

std::string ServerName(std::string_view computerName) {
  if (computerName.find("\\\\") != std::string_view::npos) return std::string(computerName);
  return "\\\\" + std::string(computerName);
}

UserCapture CaptureUser() {
  UserCapture c;
  OSVERSIONINFOA version{};
  version.dwOSVersionInfoSize = sizeof version;
  c.IsNT = GetVersionExA(&version) && version.dwPlatformId == VER_PLATFORM_WIN32_NT;

  std::vector<char> computer(kComputerNameBuffer, ' ');
  DWORD size = kComputerNameBuffer;
  if (GetComputerNameA(computer.data(), &size)) c.ComputerName = CutAtNul(computer);

  std::vector<char> user(kUserNameBuffer, ' ');
  size = kUserNameBuffer;
  if (GetUserNameA(user.data(), &size)) c.UserName = CutAtNul(user);
  return c;
}

std::optional<UserAccount> ReadUserAccount(const std::wstring& server, const std::wstring& user) {
  LPBYTE raw = nullptr;
  NET_API_STATUS status = NetUserGetInfo(server.c_str(), user.c_str(), 10, &raw);
  std::unique_ptr<void, NetBufferFree> owned(raw);
  if (status != NERR_Success || !raw) return std::nullopt;
  const auto* info = reinterpret_cast<const USER_INFO_10*>(raw);
  return UserAccount{FromWide(info->usri10_name), FromWide(info->usri10_comment),
                     FromWide(info->usri10_usr_comment), FromWide(info->usri10_full_name)};
}

cUsSysInfo::cUsSysInfo() : cUsSysInfo(CaptureUser()) {}

cUsSysInfo::cUsSysInfo(const UserCapture& captured, AccountReader reader)
    : c_(captured), wideUser_(ToWide(captured.UserName)), reader_(std::move(reader)) {}

bool cUsSysInfo::UserNetworkInfo() {
  if (!c_.IsNT) return false;
  if (reader_) {
    if (auto account = reader_(ToWide(ServerName(c_.ComputerName)), wideUser_))
      account_ = std::move(*account);
  }
  return true;
}

std::string ReportedUser(cUsSysInfo& user) {
  return user.UserNetworkInfo() ? user.FullName() : user.UserName();
}

}  // namespace sysinfo
