#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "platform/child_program.h"
#include "platform/posix_error.h"

namespace platform {

namespace {

class OutputTo {
 public:
  explicit OutputTo(int pipe) {
    posix_spawn_file_actions_init(&actions_);
    posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&actions_, pipe, STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions_, pipe, STDERR_FILENO);
  }
  ~OutputTo() { posix_spawn_file_actions_destroy(&actions_); }
  OutputTo(const OutputTo&) = delete;
  OutputTo& operator=(const OutputTo&) = delete;

  [[nodiscard]] const posix_spawn_file_actions_t* get() const { return &actions_; }

 private:
  posix_spawn_file_actions_t actions_{};
};

}  // namespace

ChildProgram::ChildProgram(const std::string& program, std::vector<std::string> arguments) {
  std::vector<char*> words{const_cast<char*>(program.c_str())};
  for (auto& argument : arguments) words.push_back(argument.data());
  words.push_back(nullptr);

  int ends[2];
  if (::pipe2(ends, O_CLOEXEC) != 0) throwErrno(errno, "Cannot start", program);
  ::fcntl(ends[0], F_SETFL, O_NONBLOCK);
  const int failure =
      posix_spawn(&id_, program.c_str(), OutputTo(ends[1]).get(), nullptr, words.data(), environ);
  ::close(ends[1]);
  output_ = ends[0];
  if (failure == 0) return;
  ::close(output_);
  throwErrno(failure, "Cannot start", program);
}

ChildProgram::~ChildProgram() { ::close(output_); }

std::vector<std::string> ChildProgram::newLines() {
  const bool ended = exitStatus().has_value();
  char block[4096];
  for (ssize_t count = 0; (count = ::read(output_, block, sizeof block)) > 0;) {
    unfinished_.append(block, static_cast<std::size_t>(count));
  }
  std::vector<std::string> lines;
  for (auto end = unfinished_.find('\n'); end != std::string::npos; end = unfinished_.find('\n')) {
    lines.push_back(unfinished_.substr(0, end));
    unfinished_.erase(0, end + 1);
  }
  if (ended && !unfinished_.empty()) lines.push_back(std::exchange(unfinished_, {}));
  return lines;
}

std::optional<int> ChildProgram::exitStatus() {
  constexpr int kSignalled = 128;
  int state = 0;
  if (!status_ && ::waitpid(id_, &state, WNOHANG) == id_) {
    status_ = WIFEXITED(state) ? WEXITSTATUS(state) : kSignalled + WTERMSIG(state);
  }
  return status_;
}

}  // namespace platform
