// The account of every shop at the central FTP server.
#pragma once

namespace transfer {

constexpr const char* kFtpUser = "kornvat";
constexpr const char* kFtpPassword = "kvnt2281";

}  // namespace transfer
