// What the callbacks of one SQLite connection share with the session: the environment of functions,
// and the exception that a callback met, kept here because SQLite passes texts only.
//
//   guarded(callbacks, [&] { ... may throw RuntimeError ... }, [&](const char* text) { report });
//   callbacks.rethrow();       // after sqlite3_step gave an error
#pragma once

#include <sqlite3.h>

#include <exception>
#include <new>
#include <utility>
#include <vector>

#include "jetsql/functions/environment.h"
#include "jetsql/sqlite/access_path.h"
#include "values/error_numbers.h"
#include "values/runtime_error.h"

namespace jetsql {

class ReadLog;

struct CallbackContext {
  Environment environment;
  std::exception_ptr failure = nullptr;
  bool failedInFunction = false;  // not in reading a table: another column may still be good
  // The first error in each expression that is being computed inside jet_guard, innermost last;
  // nullptr so far. See deferred_error.h.
  std::vector<std::exception_ptr> deferred = {};
  ReadLog* log = nullptr;              // of what is read, while somebody asks
  std::vector<ChosenPath> paths = {};  // chosen for Jet tables since this was last cleared

  void clear() {
    failure = nullptr;
    failedInFunction = false;
    deferred.clear();
  }

  // Throws the kept error, if there is one, and forgets it.
  void rethrow() {
    if (failure) std::rethrow_exception(std::exchange(failure, nullptr));
  }
};

// Runs `body`; an exception is kept in `callbacks` and its text given to `fail`. No exception may
// pass through SQLite.
template <typename Body, typename Fail>
void guarded(CallbackContext& callbacks, Body&& body, Fail&& fail) noexcept {
  try {
    body();
  } catch (const std::exception& problem) {
    if (!callbacks.failure) callbacks.failure = std::current_exception();
    fail(problem.what());
  }
}

// The same for a SQL function, whose error may be deferred: its result is then Null. Memory that
// there is not is error 14: texts are what takes it.
template <typename Body>
void guardedFunction(CallbackContext& callbacks, sqlite3_context* context, Body&& body) noexcept {
  const bool defers = !callbacks.deferred.empty();
  if (defers && callbacks.deferred.back()) return sqlite3_result_null(context);
  try {
    try {
      body();
    } catch (const std::bad_alloc&) {
      throw RuntimeError(error::kOutOfStringSpace, "Out of string space.");
    }
  } catch (const RuntimeError& problem) {
    if (defers) {
      callbacks.deferred.back() = std::current_exception();
      return sqlite3_result_null(context);
    }
    if (!callbacks.failure) callbacks.failure = std::current_exception();
    callbacks.failedInFunction = true;
    sqlite3_result_error(context, problem.what(), -1);
  } catch (const std::exception& problem) {
    if (!callbacks.failure) callbacks.failure = std::current_exception();
    sqlite3_result_error(context, problem.what(), -1);
  }
}

}  // namespace jetsql
