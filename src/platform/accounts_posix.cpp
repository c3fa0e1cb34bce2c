#include "platform/accounts.h"

#include <grp.h>
#include <pwd.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <optional>

#include "platform/posix_error.h"
#include "values/runtime_error.h"

namespace platform {

namespace {

struct Account {
  uid_t user = 0;
  gid_t group = 0;
};

std::optional<Account> accountOf(const std::string& name) {
  if (const passwd* entry = ::getpwnam(name.c_str())) return Account{entry->pw_uid, entry->pw_gid};
  uid_t number = 0;
  const char* end = name.data() + name.size();
  const auto [stop, fault] = std::from_chars(name.data(), end, number);
  if (fault != std::errc() || stop != end) return std::nullopt;
  return Account{number, number};
}

struct stat statusOf(const std::string& path) {
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0) throwErrno(errno, "Cannot look at", path);
  return status;
}

Account requireAccount(const std::string& name) {
  const auto account = accountOf(name);
  if (!account) throw RuntimeError(error::kInvalidCall, "No account '" + name + "'");
  return *account;
}

// In a child process: the account once taken cannot be given back.
[[noreturn]] void tryAs(const std::string& path, const std::string& name, const Account& account) {
  const bool changes = ::geteuid() != account.user;
  if (changes && (::initgroups(name.c_str(), account.group) != 0 || ::setgid(account.group) != 0 ||
                  ::setuid(account.user) != 0)) {
    ::_exit(1);
  }
  ::_exit(::access(path.c_str(), W_OK) == 0 ? 0 : 1);
}

}  // namespace

bool isAdministrator() { return ::geteuid() == 0; }

bool accountExists(const std::string& account) { return accountOf(account).has_value(); }

std::string ownerOf(const std::string& path) {
  const uid_t owner = statusOf(path).st_uid;
  const passwd* entry = ::getpwuid(owner);
  return entry != nullptr ? entry->pw_name : std::to_string(owner);
}

void giveTo(const std::string& path, const std::string& account) {
  const Account owner = requireAccount(account);
  if (::lchown(path.c_str(), owner.user, owner.group) != 0) throwErrno(errno, "Cannot give", path);
}

bool mayWrite(const std::string& path, const std::string& account) {
  const Account who = requireAccount(account);
  const pid_t child = ::fork();
  if (child < 0) throwErrno(errno, "Cannot ask for", path);
  if (child == 0) tryAs(path, account, who);
  int status = 0;
  while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

}  // namespace platform
