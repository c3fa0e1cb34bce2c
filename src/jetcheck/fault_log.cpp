#include "jetcheck/fault_log.h"

#include <string_view>

#include "values/runtime_error.h"

namespace jetcheck {
namespace {

// "The database 'PATH' is damaged: page 17: it should hold rows." without its frame.
std::string withoutFrame(std::string description) {
  constexpr std::string_view kFrame = "' is damaged: ";
  const std::size_t at = description.find(kFrame);
  if (at != std::string::npos) description.erase(0, at + kFrame.size());
  if (description.ends_with('.')) description.pop_back();
  return description;
}

}  // namespace

void FaultLog::add(const Place& place, const std::string& what) {
  ++count_;
  std::string line;
  const auto append = [&](const std::string& part) { line += (line.empty() ? "" : ", ") + part; };
  if (place.page) append("page " + std::to_string(*place.page));
  if (place.row) append("row " + std::to_string(*place.row));
  if (!place.object.empty()) append(place.object);
  sink_(line.empty() ? what : line + ": " + what);
}

bool FaultLog::guard(const std::string& object, const std::function<void()>& work) {
  try {
    work();
    return true;
  } catch (const RuntimeError& problem) {
    if (problem.number() != error::kDamaged) throw;
    add({.object = object}, withoutFrame(problem.description()));
    return false;
  }
}

}  // namespace jetcheck
