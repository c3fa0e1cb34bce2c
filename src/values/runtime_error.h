// The one type of error of the whole program: a number and a description.
//
//   throw RuntimeError(error::kUnrecognized, "Unrecognized database format '/shop/data.mdb'.");
//
// Numbers stand in error_numbers.h; each header names the ones that its functions throw. A
// description says what file, table, page or row it was, and what was wrong. Thrown where the fault
// is found; caught only where a routine has its trap or where a library is wrapped.
#pragma once

#include <stdexcept>
#include <string>

#include "values/error_numbers.h"

class RuntimeError : public std::runtime_error {
 public:
  RuntimeError(int number, const std::string& description)
      : std::runtime_error(description), number_(number) {}

  [[nodiscard]] int number() const noexcept { return number_; }
  [[nodiscard]] std::string description() const { return what(); }

 private:
  int number_;
};
