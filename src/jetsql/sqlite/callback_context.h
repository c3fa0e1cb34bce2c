// What the callbacks that SQLite calls share with the session: the environment, and the error that
// a callback met, kept beside the handle because SQLite passes texts only.
//
//   guarded(state, [&] { ... may throw RuntimeError ... }, [&](const char* text) { tell SQLite });
//   state.rethrow();       // after sqlite3_step gave an error
#pragma once

#include <exception>
#include <new>
#include <utility>

#include "jetsql/functions/environment.h"
#include "values/runtime_error.h"

namespace jetsql {

struct CallState {
  Environment environment;
  std::exception_ptr failure;

  // Throws the kept error, if there is one, and forgets it.
  void rethrow() {
    if (failure) std::rethrow_exception(std::exchange(failure, nullptr));
  }
};

// Runs `body`; an exception is kept in `state` and its text given to `fail`. No exception may pass
// through SQLite.
template <typename Body, typename Fail>
void guarded(CallState& state, Body&& body, Fail&& fail) noexcept {
  try {
    body();
  } catch (const std::exception& problem) {
    if (!state.failure) state.failure = std::current_exception();
    fail(problem.what());
  }
}

}  // namespace jetsql
