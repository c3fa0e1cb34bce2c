// Message boxes: modal, with an OK button and nothing else.
//
//   messages.show({"이미 실행중입니다.", platform::Icon::kInformation, "Title"});
//
// Owned by the program. Showing never throws.
#pragma once

#include <string>

namespace platform {

enum class Icon { kNone, kCritical, kInformation };

struct Message {
  std::string prompt;  // lines end CR LF or CR
  Icon icon = Icon::kNone;
  std::string title;  // empty: the program's default
};

class MessageDisplay {
 public:
  virtual ~MessageDisplay() = default;
  virtual void show(const Message& message) noexcept = 0;
};

// Where there is no window: one line on standard error, "title: prompt", the prompt's lines joined
// by blanks.
class StandardErrorDisplay : public MessageDisplay {
 public:
  void show(const Message& message) noexcept override;
};

// The line that StandardErrorDisplay prints, without its end.
[[nodiscard]] std::string messageLine(const Message& message);

}  // namespace platform
