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

class Pipe {
 public:
  Pipe() {
    if (::pipe2(ends_, O_CLOEXEC) != 0) throwErrno(errno, "Cannot make", "a pipe");
    ::fcntl(ends_[0], F_SETFL, O_NONBLOCK);
  }
  ~Pipe() {
    if (ends_[0] >= 0) ::close(ends_[0]);
    ::close(ends_[1]);
  }
  Pipe(const Pipe&) = delete;
  Pipe& operator=(const Pipe&) = delete;

  [[nodiscard]] int writingEnd() const { return ends_[1]; }
  // The caller closes it.
  [[nodiscard]] int releaseReadingEnd() { return std::exchange(ends_[0], -1); }

 private:
  int ends_[2] = {-1, -1};
};

class Streams {
 public:
  Streams(const Pipe& output, const Pipe& errors) {
    posix_spawn_file_actions_init(&actions_);
    posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&actions_, output.writingEnd(), STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions_, errors.writingEnd(), STDERR_FILENO);
  }
  ~Streams() { posix_spawn_file_actions_destroy(&actions_); }
  Streams(const Streams&) = delete;
  Streams& operator=(const Streams&) = delete;

  [[nodiscard]] const posix_spawn_file_actions_t* get() const { return &actions_; }

 private:
  posix_spawn_file_actions_t actions_{};
};

}  // namespace

ChildProgram::ChildProgram(const std::string& program, std::vector<std::string> arguments) {
  std::vector<char*> words{const_cast<char*>(program.c_str())};
  for (auto& argument : arguments) words.push_back(argument.data());
  words.push_back(nullptr);

  Pipe output;
  Pipe errors;
  const Streams streams(output, errors);
  const int failure =
      posix_spawn(&process_, program.c_str(), streams.get(), nullptr, words.data(), environ);
  if (failure != 0) throwErrno(failure, "Cannot start", program);
  output_.pipe = output.releaseReadingEnd();
  errors_.pipe = errors.releaseReadingEnd();
}

ChildProgram::~ChildProgram() {
  ::close(output_.pipe);
  ::close(errors_.pipe);
}

void ChildProgram::readWaiting(SystemHandle pipe, std::string& text) {
  char block[4096];
  for (ssize_t count = 0; (count = ::read(pipe, block, sizeof block)) > 0;) {
    text.append(block, static_cast<std::size_t>(count));
  }
}

std::optional<int> ChildProgram::exitStatus() {
  constexpr int kSignalled = 128;
  int state = 0;
  if (!status_ && ::waitpid(process_, &state, WNOHANG) == process_) {
    status_ = WIFEXITED(state) ? WEXITSTATUS(state) : kSignalled + WTERMSIG(state);
  }
  return status_;
}

}  // namespace platform
