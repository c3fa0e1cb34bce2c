#include "platform/instance_lock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>

namespace platform {

// The first instance gets the folder for itself and then shares it, so that each later one is
// refused the whole and holds a share too: the last one still running is seen by the next.
InstanceLock::InstanceLock(const std::string& folder)
    : lock_(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
  if (lock_ < 0) return;
  alone_ = ::flock(lock_, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;
  ::flock(lock_, LOCK_SH | LOCK_NB);
}

InstanceLock::~InstanceLock() {
  if (lock_ >= 0) ::close(lock_);
}

}  // namespace platform
