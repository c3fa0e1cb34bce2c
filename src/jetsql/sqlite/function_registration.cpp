#include "jetsql/sqlite/function_registration.h"

#include <sqlite3.h>

#include <algorithm>
#include <array>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "jetsql/functions/functions.h"
#include "jetsql/functions/value_types.h"
#include "jetsql/sqlite/aggregates.h"
#include "jetsql/sqlite/callback_context.h"
#include "jetsql/sqlite/collation_registration.h"
#include "jetsql/sqlite/deferred_error.h"
#include "jetsql/sqlite/value_encoding.h"
#include "text/letter_case.h"

namespace jetsql {
namespace {

using values::Variant;
using values::VariantType;

// The user data of a registered function. Without a function: jet_convert.
struct Binding {
  const Function* function;
  CallbackContext& callbacks;
};

Variant evaluate(const Binding& binding, Arguments arguments) {
  if (binding.function == nullptr) return arguments[0];
  const Function& function = *binding.function;
  const auto width = static_cast<std::size_t>(function.maxArguments);
  if (arguments.size() <= width) return call(function, arguments, binding.callbacks.environment);
  // a + b + c in one call.
  Variant result = arguments[0];
  for (const Variant& operand : arguments.subspan(1)) {
    result = call(function, std::array{result, operand}, binding.callbacks.environment);
  }
  return result;
}

std::string_view signatureOf(sqlite3_value* value, std::size_t count) {
  const auto* letters = static_cast<const char*>(sqlite3_value_blob(value));
  if (letters == nullptr || static_cast<std::size_t>(sqlite3_value_bytes(value)) != count + 1) {
    throw RuntimeError(error::kInvalidCall, "Invalid procedure call: signature.");
  }
  return {letters, count + 1};
}

// Both operands Currency and not Null: without Variants. False where the general way is to be
// taken.
bool runCurrencyFastPath(const Binding& binding, sqlite3_context* context, std::string_view letters,
                         sqlite3_value** values) {
  std::int64_t result = 0;
  if (letters != "ccc" || binding.function == nullptr ||
      binding.function->currencyFastPath == nullptr ||
      sqlite3_value_type(values[1]) != SQLITE_INTEGER ||
      sqlite3_value_type(values[2]) != SQLITE_INTEGER ||
      binding.function->currencyFastPath(sqlite3_value_int64(values[1]),
                                         sqlite3_value_int64(values[2]), &result)) {
    return false;
  }
  sqlite3_result_int64(context, result);
  return true;
}

void run(const Binding& binding, sqlite3_context* context, std::size_t count,
         sqlite3_value** values) {
  const std::string_view letters = signatureOf(values[0], count);
  if (runCurrencyFastPath(binding, context, letters, values)) return;
  const auto argument = [&](std::size_t i) {
    return i < count ? decode(values[i + 1], typeOfLetter(letters[i + 1])) : Variant();
  };
  const auto finish = [&](Arguments arguments) {
    Variant result = evaluate(binding, arguments);
    const VariantType type = typeOfLetter(letters[0]);
    setResult(context, binding.function == nullptr ? convert(std::move(result), type)
                                                   : convertResult(std::move(result), type));
  };
  const std::array<Variant, 4> few{argument(0), argument(1), argument(2), argument(3)};
  if (count <= few.size()) return finish(Arguments(few).first(count));
  std::vector<Variant> many(few.begin(), few.end());
  for (std::size_t i = few.size(); i < count; ++i) many.push_back(argument(i));
  finish(many);
}

void callback(sqlite3_context* context, int count, sqlite3_value** values) {
  const auto& binding = *static_cast<const Binding*>(sqlite3_user_data(context));
  guardedFunction(binding.callbacks, context,
                  [&] { run(binding, context, static_cast<std::size_t>(count - 1), values); });
}

void fail(sqlite3_context* context, int, sqlite3_value** values) {
  auto& callbacks = *static_cast<CallbackContext*>(sqlite3_user_data(context));
  guardedFunction(callbacks, context, [&] {
    const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(values[1]));
    throw RuntimeError(sqlite3_value_int(values[0]), text == nullptr ? "" : text);
  });
}

void destroyBinding(void* binding) { std::unique_ptr<Binding>(static_cast<Binding*>(binding)); }

void add(sqlite3* database, CallbackContext& callbacks, const std::string& name,
         const Function* function) {
  const bool deterministic = function == nullptr || function->deterministic;
  auto binding = std::make_unique<Binding>(Binding{function, callbacks});
  // SQLite owns the binding from here on, also where it refuses.
  sqlite3_create_function_v2(database, name.c_str(), -1,
                             SQLITE_UTF8 | (deterministic ? SQLITE_DETERMINISTIC : 0),
                             binding.release(), callback, nullptr, nullptr, destroyBinding);
}

}  // namespace

void registerFunctions(sqlite3* database, CallbackContext& callbacks) {
  for (const auto group : functionGroups()) {
    for (const Function& function : group) {
      add(database, callbacks, "jet_" + text::lowerCase(function.name), &function);
    }
  }
  for (const Function& function : allOperators()) {
    add(database, callbacks, "jet_op_" + std::string(function.name), &function);
  }
  add(database, callbacks, "jet_convert", nullptr);
  sqlite3_create_function_v2(database, "jet_fail", 2, SQLITE_UTF8, &callbacks, fail, nullptr,
                             nullptr, nullptr);
  registerErrorFunctions(database, callbacks);
  registerAggregates(database, callbacks);
  registerCollation(database);
}

}  // namespace jetsql
