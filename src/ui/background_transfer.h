// The transfer of finished statement files, run in the background by `quenbrookctl transfer`, which
// lies beside the program. Everything it does is in its own process, so the window stays responsive
// and the transfer goes on when the window closes.
//
//   ui::TransferProgram transfer(programFolder);
//   if (transfer.waiting() > 0) transfer.start();
//   for (const auto& line : transfer.newLines()) ...        // from a timer, until
//   if (const auto status = transfer.exitStatus()) ...       // it has ended: 0 everything was sent
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "platform/child_program.h"

namespace ui {

class BackgroundTransfer {
 public:
  virtual ~BackgroundTransfer() = default;

  // Finished statement files that are not sent yet; 0 when the folder cannot be read.
  [[nodiscard]] virtual std::size_t waiting() const = 0;
  // Errors: 53 no quenbrookctl beside the program, 75 it cannot be started.
  virtual void start() = 0;
  // Of the transfer that was started last.
  [[nodiscard]] virtual std::vector<std::string> newLines() = 0;
  [[nodiscard]] virtual std::vector<std::string> newErrors() = 0;
  [[nodiscard]] virtual std::optional<int> exitStatus() = 0;
};

class TransferProgram : public BackgroundTransfer {
 public:
  explicit TransferProgram(std::string programFolder);

  [[nodiscard]] std::size_t waiting() const override;
  void start() override;
  [[nodiscard]] std::vector<std::string> newLines() override { return child_->newLines(); }
  [[nodiscard]] std::vector<std::string> newErrors() override { return child_->newErrors(); }
  [[nodiscard]] std::optional<int> exitStatus() override { return child_->exitStatus(); }

 private:
  std::string folder_;
  std::optional<platform::ChildProgram> child_;
};

}  // namespace ui
