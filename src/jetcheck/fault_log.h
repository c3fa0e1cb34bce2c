// The faults that a check finds, one line each, as they are found.
//
//   FaultLog faults([](const std::string& line) { std::cout << line << '\n'; });
//   faults.add({.page = 17, .row = 3, .object = "table 'Selling'"}, "it is too short");
//       page 17, row 3, table 'Selling': it is too short
//   faults.guard("table 'Selling'", [&] { ... read pages, which may throw 3049 ... });
//
// Lines go to the sink at once and are not kept: a file may have any number of faults.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace jetcheck {

// Where a fault is, as far as it is known.
struct Place {
  std::optional<std::uint32_t> page = {};
  std::optional<std::uint32_t> row = {};
  std::string object = {};  // a table, an index of a table; empty: the file
};

class FaultLog {
 public:
  using Sink = std::function<void(const std::string& line)>;

  explicit FaultLog(Sink sink) : sink_(std::move(sink)) {}

  void add(const Place& place, const std::string& what);

  // Runs `work`. Error 3049 becomes a fault that names `object`, and false is returned; other
  // errors pass.
  bool guard(const std::string& object, const std::function<void()>& work);

  [[nodiscard]] std::size_t count() const { return count_; }

 private:
  Sink sink_;
  std::size_t count_ = 0;
};

}  // namespace jetcheck
