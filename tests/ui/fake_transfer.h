// A transfer that goes as the test tells.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "ui/background_transfer.h"
#include "values/runtime_error.h"

namespace ui {

struct FakeTransfer : BackgroundTransfer {
  std::size_t files = 0;
  int starts = 0;
  bool startable = true;
  std::vector<std::string> lines;
  std::vector<std::string> errors;
  std::optional<int> status;

  [[nodiscard]] std::size_t waiting() const override { return files; }
  void start() override {
    if (!startable) throw RuntimeError(error::kFileNotFound, "no quenbrookctl");
    ++starts;
  }
  std::vector<std::string> newLines() override { return std::exchange(lines, {}); }
  std::vector<std::string> newErrors() override { return std::exchange(errors, {}); }
  std::optional<int> exitStatus() override { return status; }
};

}  // namespace ui
