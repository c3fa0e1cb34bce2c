// The account of every shop at the central FTP server, and its places there.
#pragma once

namespace transfer {

constexpr const char* kFtpUser = "kornvat";
constexpr const char* kFtpPassword = "kvnt2281";
constexpr const char* kRemoteFolder = "/MU/";
constexpr const char* kTestFile = "/MU/Test.g";  // of the connection test

}  // namespace transfer
