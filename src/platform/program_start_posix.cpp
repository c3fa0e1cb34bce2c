#include <csignal>

#include "platform/program_start.h"

namespace platform {

class ProgramStart::Streams {};  // they take UTF-8 as they are

ProgramStart::ProgramStart(int count, char** words)
    : arguments_(words + (count > 0 ? 1 : 0), words + count) {
  std::signal(SIGPIPE, SIG_IGN);
}

ProgramStart::~ProgramStart() = default;

}  // namespace platform
