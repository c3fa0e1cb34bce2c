// lib_Message2: the message log, one file a day and suffix, through which every failure is
// reported.
//
//   log.MsgDebug("E)JetOpenDB[0]: (3343) ...", "");        // nothing: the level is 0 at start
//   log.setLevel(4);
//   log.MsgDebug("R)lib_Network->PING[0](75)...", "");     // a line of 130821.log
//
// Levels: 1 appends the message alone, 2 shows it in a message box, 4 appends it with its time
// stamp, every other one does nothing. A line is
//   [13.08.21 15:30:45.047 612/1843]E)...
// with the free physical memory and the free address space in MiB. Keeps references to what it is
// given, no file between two lines. MsgDebug never throws: what fails is shown in a message box.
#pragma once

#include <string>
#include <string_view>

#include "platform/clock.h"
#include "platform/memory.h"
#include "platform/message_display.h"

namespace lib_Message2 {

class MessageLog {
 public:
  MessageLog(std::string programFolder, const platform::Clock& clock,
             const platform::Memory& memory, platform::MessageDisplay& messages);

  void setLevel(int level) { level_ = level; }
  [[nodiscard]] int level() const { return level_; }

  void MsgDebug(std::string_view message, std::string_view suffix) noexcept;

 private:
  [[nodiscard]] std::string timeStamp() const;
  void write(std::string_view message, std::string_view suffix);

  std::string programFolder_;
  const platform::Clock& clock_;
  const platform::Memory& memory_;
  platform::MessageDisplay& messages_;
  int level_ = 0;
};

}  // namespace lib_Message2
