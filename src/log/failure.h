// One thing that went wrong in a job, as the operator is told of it.
//
//   report({"결산 2013-08-21", error::kOverflow, "18단계: Overflow", "나머지 숫자는 0으로
//   보냅니다."});
#pragma once

#include <string>

namespace joblog {

struct Failure {
  std::string step;         // in the windows' words; of a settlement with its day
  int number = 0;           // of the RuntimeError; 0: it was none
  std::string description;  // of the RuntimeError
  std::string left;         // what was left as it was, a sentence; empty: nothing to say

  friend bool operator==(const Failure&, const Failure&) = default;
};

// "결산 2013-08-21: (6) 18단계: Overflow - 나머지 숫자는 0으로 보냅니다."; always one line.
[[nodiscard]] std::string failureLine(const Failure& failure);

}  // namespace joblog
