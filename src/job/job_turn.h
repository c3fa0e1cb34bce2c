// One job at a time for a program folder: whatever makes a statement file in AutoLoadData holds the
// folder's job lock meanwhile.
//
//   const auto turn = job::waitForTurn(folder, sleeper, [&] { window.setCaption(kWaitingText); });
//
// The lock lies in AutoLoadData, where the statement files are. Without that folder there is
// nothing to take turns at: the result is nothing, at once, and the job fails by itself.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "platform/clock.h"
#include "platform/folder_lock.h"

namespace job {

constexpr const char* kJobLock = ".job.lock";
constexpr const char* kWaitingText = "같은 폴더의 다른 작업이 끝나기를 기다립니다...";

// Waits for as long as it takes; `whileWaiting` is called before every pause.
[[nodiscard]] std::optional<platform::FolderLock> waitForTurn(
    const std::string& statementFolder, platform::Sleeper& sleeper,
    const std::function<void()>& whileWaiting);

}  // namespace job
