#include "log/message_log.h"

#include <cstdio>
#include <exception>
#include <utility>

#include "platform/files.h"
#include "platform/text_file.h"
#include "values/runtime_error.h"

namespace lib_Message2 {

namespace {

constexpr std::uint32_t kBytesOfMebibyte = 1'048'576;

constexpr int kMessageAlone = 1;
constexpr int kMessageBox = 2;
constexpr int kStampedMessage = 4;

constexpr const char* kNoHandle = "파일을 열기 위한 번호를 취득할 수 없슴니다.\r\n";
constexpr const char* kSerious =
    "이 메시지는 시스템에 심각한 영향을 미칠 수 있는 상황을 검출했을 때\r\n"
    "출력됩니다. 개발자에게 연락을 주십시오.";

std::string failureText(int number, const std::string& description) {
  return "E)MsgDebug[0](" + std::to_string(number) + ")" + description + "\r\n" + kSerious;
}

}  // namespace

MessageLog::MessageLog(std::string programFolder, const platform::Clock& clock,
                       const platform::Memory& memory, platform::MessageDisplay& messages)
    : programFolder_(std::move(programFolder)),
      clock_(clock),
      memory_(memory),
      messages_(messages) {}

void MessageLog::MsgDebug(std::string_view message, std::string_view suffix) noexcept {
  try {
    write(message, suffix);
  } catch (const RuntimeError& failure) {
    const bool noHandle = failure.number() == error::kTooManyFiles;
    messages_.show({noHandle ? std::string(kNoHandle) + kSerious
                             : failureText(failure.number(), failure.description()),
                    platform::Icon::kCritical,
                    {}});
  } catch (const std::exception& failure) {
    messages_.show({failureText(error::kDeviceIo, failure.what()), platform::Icon::kCritical, {}});
  }
}

void MessageLog::write(std::string_view message, std::string_view suffix) {
  std::string line;
  switch (level_) {
    case kMessageAlone:
      line = message;
      break;
    case kMessageBox:
      messages_.show({timeStamp().append(message), platform::Icon::kNone, {}});
      return;
    case kStampedMessage:
      line = timeStamp().append(message);
      break;
    default:
      return;
  }
  const auto name = values::formatTime(clock_.now(), "%y%m%d").append(suffix) + ".log";
  platform::appendLine(platform::joinPath(programFolder_, name), line);
}

std::string MessageLog::timeStamp() const {
  const auto memory = memory_.status();
  char milliseconds[8];
  std::snprintf(milliseconds, sizeof milliseconds, ".%03d", clock_.utcMilliseconds());
  return "[" + values::formatTime(clock_.now(), "%y.%m.%d %H:%M:%S") + milliseconds + " " +
         std::to_string(memory.availablePhysical / kBytesOfMebibyte) + "/" +
         std::to_string(memory.availableVirtual / kBytesOfMebibyte) + "]";
}

}  // namespace lib_Message2
