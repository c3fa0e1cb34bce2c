#include "jetsql/sqlite/deferred_error.h"

#include <sqlite3.h>

#include <charconv>

#include "jetsql/sqlite/callback_context.h"
#include "jetsql/sqlite/value_encoding.h"

namespace jetsql {
namespace {

// No BLOB that a Jet file holds or a function makes begins like this.
using namespace std::string_view_literals;
constexpr std::string_view kMark = "\0jetsql error value\0"sv;

CallbackContext& contextOf(sqlite3_context* context) {
  return *static_cast<CallbackContext*>(sqlite3_user_data(context));
}

void begin(sqlite3_context* context, int, sqlite3_value**) {
  contextOf(context).deferred.emplace_back();
  sqlite3_result_int(context, 0);
}

void guard(sqlite3_context* context, int, sqlite3_value** values) {
  auto& deferred = contextOf(context).deferred;
  const std::exception_ptr failure = std::move(deferred.back());
  deferred.pop_back();
  if (failure == nullptr) return sqlite3_result_value(context, values[1]);
  try {
    std::rethrow_exception(failure);
  } catch (const RuntimeError& problem) {
    const std::string error = encodeError(problem);
    sqlite3_result_blob64(context, error.data(), error.size(), SQLITE_TRANSIENT);
  } catch (const std::exception&) {
    sqlite3_result_error_nomem(context);
  }
}

std::optional<RuntimeError> errorOf(sqlite3_value* value) {
  if (sqlite3_value_type(value) != SQLITE_BLOB) return {};
  return errorIn(encodedValue(value).bytes);
}

void check(sqlite3_context* context, int, sqlite3_value** values) {
  guardedFunction(contextOf(context), context, [&] {
    if (const auto error = errorOf(values[0])) throw RuntimeError(*error);
    sqlite3_result_value(context, values[0]);
  });
}

void variable(sqlite3_context* context, int, sqlite3_value** values) {
  sqlite3_result_value(context, values[0]);
}

void isError(sqlite3_context* context, int, sqlite3_value** values) {
  sqlite3_result_int(context, errorOf(values[0]) ? -1 : 0);
}

}  // namespace

std::string encodeError(const RuntimeError& failure) {
  return std::string(kMark) + std::to_string(failure.number()) + ' ' + failure.description();
}

std::optional<RuntimeError> errorIn(std::string_view blob) {
  if (!blob.starts_with(kMark)) return {};
  int number = 0;
  const char* end =
      std::from_chars(blob.data() + kMark.size(), blob.data() + blob.size(), number).ptr;
  return RuntimeError(number, std::string(end + 1, blob.data() + blob.size()));
}

void registerErrorFunctions(sqlite3* connection, CallbackContext& callbacks) {
  const auto add = [&](const char* name, int arguments, auto function) {
    sqlite3_create_function_v2(connection, name, arguments, SQLITE_UTF8, &callbacks, function,
                               nullptr, nullptr, nullptr);
  };
  add("jet_begin", 0, begin);
  add("jet_guard", 2, guard);
  add("jet_check", 1, check);
  add("jet_is_error", 1, isError);
  add("jet_variable", 1, variable);
}

}  // namespace jetsql
