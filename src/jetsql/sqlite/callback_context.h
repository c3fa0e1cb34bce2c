// What the callbacks of one SQLite connection share with the session: the environment of functions,
// and the exception that a callback met, kept here because SQLite passes texts only.
//
//   guarded(callbacks, [&] { ... may throw RuntimeError ... }, [&](const char* text) { report to
//   SQLite }); callbacks.rethrow();       // after sqlite3_step gave an error
#pragma once

#include <exception>
#include <new>
#include <utility>

#include "jetsql/functions/environment.h"
#include "values/runtime_error.h"

namespace jetsql {

struct CallbackContext {
  Environment environment;
  std::exception_ptr failure;

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

}  // namespace jetsql
