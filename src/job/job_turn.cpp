#include "job/job_turn.h"

#include "values/runtime_error.h"

namespace job {

namespace {

constexpr std::chrono::milliseconds kPause{200};

}  // namespace

std::optional<platform::FolderLock> waitForTurn(const std::string& statementFolder,
                                                platform::Sleeper& sleeper,
                                                const std::function<void()>& whileWaiting) {
  try {
    while (true) {
      auto turn = platform::FolderLock::tryTake(statementFolder, kJobLock);
      if (turn) return turn;
      whileWaiting();
      sleeper.sleep(kPause);
    }
  } catch (const RuntimeError&) {
    return std::nullopt;  // a folder that is not there, or cannot be written
  }
}

}  // namespace job
