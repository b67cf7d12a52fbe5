#pragma once
// User and computer identification: the names are read once at creation;
// the account record (full name, comments) only when UserNetworkInfo asks
// the network-management interface for it.
#include <windows.h>

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace sysinfo {

struct UserCapture {
  bool IsNT = false;         // platform id 2
  std::string ComputerName;  // empty when the query failed
  std::string UserName;      // empty when the query failed
};

UserCapture CaptureUser();

// The four texts of an account record (level 10).
struct UserAccount {
  std::string Name;
  std::string Comment;
  std::string UserComment;
  std::string FullName;
};

// Reads the account record of `user` on `server`; nothing when it fails.
using AccountReader =
    std::function<std::optional<UserAccount>(const std::wstring& server, const std::wstring& user)>;
std::optional<UserAccount> ReadUserAccount(const std::wstring& server, const std::wstring& user);

// The server name for the account query: the computer name behind "\\",
// unless it already holds "\\".
std::string ServerName(std::string_view computerName);

// NUL-terminated UTF-16 text in the ANSI code page; null gives "".
std::string FromWide(const wchar_t* text);
std::wstring ToWide(std::string_view text);

class cUsSysInfo {
 public:
  cUsSysInfo();  // captures from the running system
  explicit cUsSysInfo(const UserCapture& captured, AccountReader reader = ReadUserAccount);

  // Reads the account record on NT-family systems. NOTE: true on every NT
  // system, also when the record could not be read (the texts then stay as
  // they were); false, changing nothing, elsewhere.
  bool UserNetworkInfo();
  const std::string& Name() const { return account_.Name; }
  const std::string& FullName() const { return account_.FullName; }
  const std::string& Comment() const { return account_.Comment; }
  const std::string& UserComment() const { return account_.UserComment; }
  const std::string& ComputerName() const { return c_.ComputerName; }
  const std::string& UserName() const { return c_.UserName; }

 private:
  UserCapture c_;
  std::wstring wideUser_;
  AccountReader reader_;
  UserAccount account_;
};

// The user the report names: the account's full name where the account
// record was asked for (the NT family, even when it could not be read),
// else the logon name.
std::string ReportedUser(cUsSysInfo& user);

}  // namespace sysinfo
