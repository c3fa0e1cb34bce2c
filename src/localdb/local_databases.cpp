#include "localdb/local_databases.h"

#include <limits>
#include <optional>
#include <utility>

#include "platform/files.h"
#include "platform/find_file.h"
#include "values/runtime_error.h"

namespace localdb {
namespace {

RuntimeError currentError() {
  try {
    throw;
  } catch (const RuntimeError& problem) {
    return problem;
  } catch (const std::exception& problem) {
    return {error::kInternal, problem.what()};
  }
}

std::string numbered(const RuntimeError& problem) {
  return ": (" + std::to_string(problem.number()) + ") " + problem.description();
}

// The 0 in brackets is the number of the source line: the routine has no numbered lines.
std::string openDatabaseError(const RuntimeError& problem, const std::string& path,
                              std::string_view caller) {
  const std::string tagged = "E))JetOpenDB[0/" + std::string(caller) + "]";
  switch (problem.number()) {
    case error::kNoDatabaseFile:
      return tagged + "데이터베이스 '" + path + "'에 접근할 수 없습니다." +
             "파일이 없거나, 네트웍이 끊긴 상태입니다." +
             " 파일을 열 수 없어 Open Function 종료......";
    case error::kInvalidArgument:
    case error::kDamaged:
    case error::kUnrecognized:
      if (!caller.empty()) return tagged + numbered(problem);
      [[fallthrough]];
    default:
      return "E)JetOpenDB[0]" + numbered(problem);
  }
}

constexpr std::uint32_t kLookInterval = 500;  // milliseconds

// Names match as where the till runs: DATA.MDB is data.mdb, unless there is one of that very name.
// Error 3024 where there is neither.
std::string existingFile(const std::string& path) {
  if (platform::fileExists(path)) return path;
  std::string found = platform::findFile(platform::parentFolder(path), platform::fileName(path));
  if (platform::fileExists(found)) return found;
  throw RuntimeError(error::kNoDatabaseFile, "");
}

// An argument that is 0 is not given, and neither are those after it.
std::optional<std::int32_t> given(std::int32_t number, bool before) {
  if (number == 0 || !before) return {};
  return number;
}

}  // namespace

LocalDatabases::LocalDatabases(DBEngine& engine, MessageWriter message,
                               const platform::TickCounter* ticks)
    : engine_(engine),
      message_(std::move(message)),
      ticks_(ticks != nullptr ? *ticks : systemTicks_) {}

const std::string& LocalDatabases::find(const std::string& path) {
  FoundFile& found = found_[path];
  const std::int32_t now = ticks_.ticks();
  const auto age = static_cast<std::uint32_t>(now) - static_cast<std::uint32_t>(found.at);
  if (found.path.empty() || age >= kLookInterval) {
    found.path.clear();
    found.path = existingFile(path);
    found.at = now;
  }
  return found.path;
}

bool LocalDatabases::JetOpenDB(std::shared_ptr<Database>& database, const std::string& path,
                               bool readOnly, bool exclusive, const std::string& connect,
                               std::string_view caller) {
  try {
    failure_.clear();
    database = engine_.openDatabase(find(path), exclusive, readOnly,
                                    connect.empty() ? std::nullopt : std::optional(connect));
    return true;
  } catch (const std::exception&) {
    found_.erase(path);
    database.reset();
    const RuntimeError problem = currentError();
    failure_ = problem.number() == error::kNoDatabaseFile ? "There is no file '" + path + "'."
                                                          : problem.description();
    message_(openDatabaseError(problem, path, caller));
    return false;
  }
}

bool LocalDatabases::JetOpenRST(const std::shared_ptr<Database>& database,
                                std::unique_ptr<RecordSet>& recordSet, std::string_view source,
                                std::int32_t type, std::int32_t options, std::int32_t lock,
                                bool trace) {
  const auto tracePoint = [&](int point) {
    if (trace) {
      message_("JetOpenRST(" + std::to_string(point) + ") " + std::to_string(openCounter_));
    }
  };
  try {
    recordSet.reset();
    if (trace) {
      if (openCounter_ == std::numeric_limits<std::int32_t>::max()) {
        throw RuntimeError(error::kOverflow, "Overflow.");
      }
      ++openCounter_;
    }
    tracePoint(0);
    if (!database) {
      throw RuntimeError(error::kObjectNotSet, "Object variable or With block variable not set.");
    }
    const auto givenType = given(type, true);
    const auto givenOptions = given(options, givenType.has_value());
    recordSet = database->openRecordset(source, givenType, givenOptions,
                                        given(lock, givenOptions.has_value()));
    tracePoint(1);
    if (recordSet->recordCount() > 0) {
      recordSet->moveLast();
      recordSet->moveFirst();
      tracePoint(2);
    } else {
      // The move on an empty record set has a trap of its own; the opening succeeds all the same.
      for (const int point : {3, 4, 5}) tracePoint(point);
    }
    return true;
  } catch (const std::exception&) {
    recordSet.reset();
    const RuntimeError problem = currentError();
    if (database) failure_ = problem.description();  // else the one of JetOpenDB
    message_("E)JetOpenRST[0]" + numbered(problem));
    return false;
  }
}

}  // namespace localdb
