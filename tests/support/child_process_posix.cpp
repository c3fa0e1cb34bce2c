#include "support/child_process.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <sched.h>
#include <signal.h>
#include <spawn.h>
#include <stdlib.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <stdexcept>

namespace support {
namespace {

pid_t start(const std::vector<std::string>& command, const std::filesystem::path& log) {
  std::vector<char*> arguments;
  for (const std::string& word : command) arguments.push_back(const_cast<char*>(word.c_str()));
  arguments.push_back(nullptr);

  posix_spawn_file_actions_t files;
  posix_spawn_file_actions_init(&files);
  posix_spawn_file_actions_addopen(&files, 0, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_addopen(&files, 1, log.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0644);
  posix_spawn_file_actions_adddup2(&files, 1, 2);
  posix_spawnattr_t attributes;
  posix_spawnattr_init(&attributes);
  posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP);

  pid_t id = -1;
  const int failure =
      posix_spawnp(&id, arguments[0], &files, &attributes, arguments.data(), environ);
  posix_spawnattr_destroy(&attributes);
  posix_spawn_file_actions_destroy(&files);
  if (failure != 0) throw std::runtime_error("cannot start " + command[0]);
  return id;
}

int statusOf(int raw) { return WIFEXITED(raw) ? WEXITSTATUS(raw) : 128 + WTERMSIG(raw); }

}  // namespace

ChildProcess::ChildProcess(const std::vector<std::string>& command,
                           const std::filesystem::path& log)
    : process_(start(command, log)) {}

ChildProcess::~ChildProcess() { kill(); }

int ChildProcess::id() const { return process_; }

bool ChildProcess::running() {
  int raw = 0;
  if (status_ < 0 && waitpid(process_, &raw, WNOHANG) == process_) status_ = statusOf(raw);
  return status_ < 0;
}

int ChildProcess::wait() {
  int raw = 0;
  if (status_ < 0 && waitpid(process_, &raw, 0) == process_) status_ = statusOf(raw);
  return status_;
}

void ChildProcess::kill(int signal) {
  ::kill(-process_, signal);
  wait();
}

TemporaryFolder::TemporaryFolder() {
  std::string pattern = (std::filesystem::temp_directory_path() / "quenbrook-test-XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("cannot make " + pattern);
  path_ = std::filesystem::path(pattern);
}

namespace {

void useProcessors(std::uint64_t bits) {
  cpu_set_t processors;
  CPU_ZERO(&processors);
  for (int i = 0; i < 64; ++i) {
    if ((bits >> i & 1U) != 0) CPU_SET(i, &processors);
  }
  sched_setaffinity(0, sizeof processors, &processors);
}

}  // namespace

OneProcessor::OneProcessor() : before_(0) {
  cpu_set_t processors;
  sched_getaffinity(0, sizeof processors, &processors);
  for (std::uint64_t i = 0; i < 64; ++i) {
    if (CPU_ISSET(i, &processors)) before_ |= std::uint64_t{1} << i;
  }
  useProcessors(before_ & (~before_ + 1));
}

OneProcessor::~OneProcessor() { useProcessors(before_); }

int freePort(const std::string& address) {
  const int listener = socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in place{};
  place.sin_family = AF_INET;
  inet_pton(AF_INET, address.c_str(), &place.sin_addr);
  socklen_t size = sizeof place;
  const bool found = bind(listener, reinterpret_cast<sockaddr*>(&place), size) == 0 &&
                     getsockname(listener, reinterpret_cast<sockaddr*>(&place), &size) == 0;
  close(listener);
  if (!found) throw std::runtime_error("no free port on " + address);
  return ntohs(place.sin_port);
}

}  // namespace support
