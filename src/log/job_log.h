// The job log, one file a day (H20130821D.log), and the progress panel whose texts it takes.
//
//   jobLog.startRun();                                  // the file of today, for the whole run
//   joblog::report(panel, jobLog, "File Create..");     // shows the text and logs it
//
// A line is the text as it stands; no time is added. Errors: those of platform/files.h.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "platform/clock.h"

namespace joblog {

// The window's panel sspRem, and the processing of window events during long loops.
class Progress {
 public:
  virtual ~Progress() = default;
  virtual void setCaption(std::string_view text) = 0;
  [[nodiscard]] virtual std::string caption() const = 0;
  // Processes pending window events.
  virtual void yield() = 0;
};

class JobLog {
 public:
  // `tell` gets a line about the first failure of tryAppend.
  JobLog(std::string programFolder, const platform::Clock& clock,
         std::function<void(std::string_view line)> tell = {});
  virtual ~JobLog() = default;

  // Chooses today's file and creates it where it is missing.
  void startRun();

  // Without a startRun before it: appends to the file of the day of its first call.
  virtual void append(std::string_view text);

  // For work that must go on without its log: a failure is told once and not thrown.
  void tryAppend(std::string_view text) noexcept;

  [[nodiscard]] const std::string& path() const { return path_; }

 private:
  void choosePath();

  std::string programFolder_;
  const platform::Clock& clock_;
  std::function<void(std::string_view line)> tell_;
  std::string path_;
  bool told_ = false;
};

// Shows the text, reads the caption back and logs that.
void report(Progress& progress, JobLog& log, std::string_view text);
// The same with tryAppend.
void tryReport(Progress& progress, JobLog& log, std::string_view text);

}  // namespace joblog
