// The one type of error of the whole program: a number and a description.
//
//   throw RuntimeError(3343, "Unrecognized database format '/shop/data.mdb'.");
//
// Numbers are those of the platform and of the database engine that the shops know:
//   5 invalid procedure call   6 overflow            11 division by zero   13 type mismatch
//   53 file not found          57 device i/o error   58 file exists        61 disk full   67 too
//   many files 75/76 path/file access     91 object not set     94 invalid use of Null 30xx and on:
//   the database engine's; each room's headers name the ones they throw.
// A description says what file, table, page or row it was, and what was wrong. Thrown where the
// fault is found; caught only where a routine has its trap or where a library is wrapped.
#pragma once

#include <stdexcept>
#include <string>

class RuntimeError : public std::runtime_error {
 public:
  RuntimeError(int number, const std::string& description)
      : std::runtime_error(description), number_(number) {}

  [[nodiscard]] int number() const noexcept { return number_; }
  [[nodiscard]] std::string description() const { return what(); }

 private:
  int number_;
};

namespace error {

// The platform's numbers that more than one room throws.
constexpr int kInvalidCall = 5;
constexpr int kOverflow = 6;
constexpr int kDivisionByZero = 11;
constexpr int kTypeMismatch = 13;
constexpr int kFileNotFound = 53;
constexpr int kDeviceIo = 57;
constexpr int kFileExists = 58;
constexpr int kDiskFull = 61;
constexpr int kTooManyFiles = 67;
constexpr int kPathAccess = 75;
constexpr int kPathNotFound = 76;
constexpr int kObjectNotSet = 91;
constexpr int kInvalidUseOfNull = 94;

}  // namespace error
