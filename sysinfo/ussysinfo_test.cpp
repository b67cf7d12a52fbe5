#include "sysinfo/ussysinfo.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace {

using sysinfo::cUsSysInfo;
using sysinfo::UserAccount;
using sysinfo::UserCapture;

TEST(ServerName, PrefixedUnlessItAlreadyHoldsTwoBackslashes) {
  const char* const cases[][2] = {
      {"VM", "\\\\VM"}, {"\\\\VM", "\\\\VM"}, {"\\VM", "\\\\\\VM"},
      {"A\\\\B", "A\\\\B"}, {"", "\\\\"},
  };
  for (const auto& c : cases) EXPECT_EQ(sysinfo::ServerName(c[0]), c[1]) << c[0];
  EXPECT_EQ(sysinfo::FromWide(nullptr), "");
  EXPECT_EQ(sysinfo::FromWide(L"Jos\u00E9 M\u00FCller"), "Jos\xE9 M\xFCller");
  EXPECT_EQ(sysinfo::ToWide("Jos\xE9"), L"Jos\u00E9");
}

// Records what the account query was asked and answers as told.
struct FakeAccounts {
  std::vector<std::wstring> servers, users;
  std::optional<UserAccount> answer;
  sysinfo::AccountReader Reader() {
    return [this](const std::wstring& server, const std::wstring& user) {
      servers.push_back(server);
      users.push_back(user);
      return answer;
    };
  }
};

TEST(ReportedUser, FullNameOrLogonNameAsTheAccountQuerySays) {
  const struct {
    const char* name;
    bool nt;
    std::optional<UserAccount> account;
    const char* reported;
  } cases[] = {
      {"NT with a record: the full name", true, UserAccount{"jo", "", "", "Jo Full"}, "Jo Full"},
      {"NT whose record cannot be read: empty", true, std::nullopt, ""},
      {"NT with an empty full name: empty", true, UserAccount{"jo", "", "", ""}, ""},
      {"95 family: the logon name", false, UserAccount{"jo", "", "", "Jo Full"}, "jo"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    FakeAccounts accounts;
    accounts.answer = c.account;
    cUsSysInfo user(UserCapture{c.nt, "PC", "jo"}, accounts.Reader());
    EXPECT_EQ(sysinfo::ReportedUser(user), c.reported);
    EXPECT_EQ(accounts.servers.size(), c.nt ? 1u : 0u) << "asked on NT only";
  }
}

TEST(cUsSysInfo, AccountRecordFillsTheTextsAndAFailedQueryKeepsThem) {
  FakeAccounts accounts;
  accounts.answer = UserAccount{"jo", "comment", "user comment", "Jo Full"};
  cUsSysInfo ninetyFive(UserCapture{false, "PC", "jo"}, accounts.Reader());
  EXPECT_FALSE(ninetyFive.UserNetworkInfo());
  EXPECT_EQ(ninetyFive.FullName(), "");

  cUsSysInfo user(UserCapture{true, "PC", "jo\xE9"}, accounts.Reader());
  ASSERT_TRUE(user.UserNetworkInfo());
  EXPECT_EQ(accounts.users, std::vector<std::wstring>{L"jo\u00E9"});
  EXPECT_EQ((std::vector<std::string>{user.Name(), user.Comment(), user.UserComment(),
                                      user.FullName()}),
            (std::vector<std::string>{"jo", "comment", "user comment", "Jo Full"}));
  accounts.answer.reset();
  EXPECT_TRUE(user.UserNetworkInfo()) << "true on NT although the record cannot be read";
  EXPECT_EQ(accounts.servers, (std::vector<std::wstring>{L"\\\\PC", L"\\\\PC"}));
  EXPECT_EQ(user.FullName(), "Jo Full");
}

// Wine's accounts have the user's name and no full name, so the report's
// user line ends after "User: " on this system.
TEST(cUsSysInfoOnThisSystem, ReadsNamesAndTheAccountRecord) {
  cUsSysInfo user;
  EXPECT_FALSE(user.ComputerName().empty());
  EXPECT_LE(user.ComputerName().size(), 15u);
  ASSERT_FALSE(user.UserName().empty());
  EXPECT_TRUE(user.UserNetworkInfo());
  EXPECT_EQ(user.Name(), user.UserName()) << "the account record was not read";
  EXPECT_EQ(user.FullName(), "");
}

}  // namespace
