#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>

#include "platform/posix_error.h"
#include "platform/process.h"

namespace platform {

namespace {

// The kernel keeps this much of a name in /proc/ID/stat and cuts the rest.
constexpr std::size_t kKeptLength = 15;

std::string contentOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

std::string withoutFolder(const std::string& path) {
  return std::filesystem::path(path).filename().string();
}

// A name that may have been cut: the whole one is the last part of the first or second word of the
// command line (the second for a script, whose first is its interpreter) or of the executable.
std::string wholeName(const std::string& folder, const std::string& kept) {
  if (kept.size() < kKeptLength) return kept;
  const auto words = contentOf(folder + "/cmdline");
  const auto end = words.find('\0');
  const auto first = words.substr(0, end);
  const std::string second = end == std::string::npos ? "" : words.c_str() + end + 1;
  std::error_code hidden;
  const auto executable = std::filesystem::read_symlink(folder + "/exe", hidden).string();
  for (const auto& path : {first, second, executable}) {
    if (auto name = withoutFolder(path); name.starts_with(kept)) return name;
  }
  return kept;
}

// "ID (name) STATE ..."; the name may itself hold brackets and blanks. Nothing for a process that
// is gone or a zombie.
std::optional<std::string> nameOf(const std::string& folder) {
  const auto line = contentOf(folder + "/stat");
  const auto open = line.find('(');
  const auto close = line.rfind(')');
  if (open == std::string::npos || close == std::string::npos || close + 2 >= line.size()) {
    return std::nullopt;
  }
  const char state = line[close + 2];
  if (state == 'Z' || state == 'X') return std::nullopt;
  return wholeName(folder, line.substr(open + 1, close - open - 1));
}

// The standard streams of a child that must not touch ours.
class QuietStreams {
 public:
  QuietStreams() {
    posix_spawn_file_actions_init(&actions_);
    posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions_, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&actions_, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
  }
  ~QuietStreams() { posix_spawn_file_actions_destroy(&actions_); }
  QuietStreams(const QuietStreams&) = delete;
  QuietStreams& operator=(const QuietStreams&) = delete;

  [[nodiscard]] const posix_spawn_file_actions_t* get() const { return &actions_; }

 private:
  posix_spawn_file_actions_t actions_{};
};

// Without a window and with quiet streams; its id.
pid_t spawn(const std::string& program, std::vector<std::string> words) {
  words.insert(words.begin(), program);
  std::vector<char*> pointers;
  pointers.reserve(words.size() + 1);
  for (auto& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);

  const QuietStreams streams;
  pid_t id = 0;
  const int failure =
      posix_spawn(&id, program.c_str(), streams.get(), nullptr, pointers.data(), environ);
  if (failure != 0) throwErrno(failure, "Cannot start", program);
  return id;
}

}  // namespace

std::vector<Process> SystemProcesses::running() {
  reapChildren();
  std::vector<Process> processes;
  for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
    const auto text = entry.path().filename().string();
    std::int32_t id = 0;
    const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), id);
    if (failure != std::errc() || end != text.data() + text.size()) continue;
    if (auto name = nameOf(entry.path().string())) processes.push_back({id, std::move(*name)});
  }
  std::ranges::sort(processes, {}, &Process::id);
  return processes;
}

void SystemProcesses::startHidden(const std::string& program,
                                  const std::vector<std::string>& arguments) {
  reapChildren();
  children_.push_back(spawn(program, arguments));
}

int SystemProcesses::runHidden(const std::string& program,
                               const std::vector<std::string>& arguments) {
  const pid_t id = spawn(program, arguments);
  int status = 0;
  while (waitpid(id, &status, 0) < 0) {
    if (errno != EINTR) throwErrno(errno, "Cannot wait for", program);
  }
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

void SystemProcesses::reapChildren() {
  std::erase_if(children_, [](pid_t id) { return waitpid(id, nullptr, WNOHANG) != 0; });
}

}  // namespace platform
