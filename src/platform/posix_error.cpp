#include "platform/posix_error.h"

#include <cerrno>
#include <system_error>

#include "values/runtime_error.h"

namespace platform {

namespace {

int numberOf(int code) {
  switch (code) {
    case ENOENT:
      return error::kFileNotFound;
    case EEXIST:
      return error::kFileExists;
    case ENOSPC:
    case EDQUOT:
      return error::kDiskFull;
    case EMFILE:
    case ENFILE:
      return error::kTooManyFiles;
    case EACCES:
    case EPERM:
    case EROFS:
    case EISDIR:
    case EBUSY:
    case ETXTBSY:
    case ENOEXEC:
      return error::kPathAccess;
    case ENOTDIR:
      return error::kPathNotFound;
    default:
      return error::kDeviceIo;
  }
}

}  // namespace

void throwErrno(int code, const std::string& action, const std::string& subject) {
  throw RuntimeError(numberOf(code),
                     action + " '" + subject + "': " + std::generic_category().message(code));
}

}  // namespace platform
