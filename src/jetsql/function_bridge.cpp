#include "jetsql/function_bridge.h"

#include <sqlite3.h>

#include <algorithm>
#include <array>
#include <memory>
#include <string>
#include <vector>

#include "jetsql/aggregates.h"
#include "jetsql/call_state.h"
#include "jetsql/collation.h"
#include "jetsql/functions.h"
#include "jetsql/text.h"
#include "jetsql/value_encoding.h"
#include "jetsql/value_types.h"

namespace jetsql {
namespace {

using jet::Variant;

// What a registered function finds behind sqlite3_user_data. Without a function: jet_convert.
struct Binding {
  const Function* function;
  CallState& state;
};

Variant evaluate(const Binding& binding, Arguments arguments) {
  if (binding.function == nullptr) return arguments[0];
  const Function& function = *binding.function;
  const auto width = static_cast<std::size_t>(function.maxArguments);
  if (arguments.size() <= width) return call(function, arguments, binding.state.environment);
  // a + b + c in one call.
  Variant result = arguments[0];
  for (const Variant& operand : arguments.subspan(1))
    result = call(function, std::array{result, operand}, binding.state.environment);
  return result;
}

void run(const Binding& binding, sqlite3_context* context, std::size_t count,
         sqlite3_value** values) {
  const auto* letters = reinterpret_cast<const char*>(sqlite3_value_text(values[0]));
  if (letters == nullptr || std::char_traits<char>::length(letters) != count + 1)
    throw RuntimeError(error::kInvalidCall, "Invalid procedure call: signature.");
  constexpr std::size_t kFew = 4;
  std::array<Variant, kFew> few;
  std::vector<Variant> many(count > kFew ? count : 0);
  const std::span<Variant> arguments =
      count > kFew ? std::span<Variant>(many) : std::span<Variant>(few).first(count);
  for (std::size_t i = 0; i < count; ++i)
    arguments[i] = decode(values[i + 1], typeOfLetter(letters[i + 1]));
  setResult(context, convert(evaluate(binding, arguments), typeOfLetter(letters[0])));
}

void callback(sqlite3_context* context, int count, sqlite3_value** values) {
  const auto& binding = *static_cast<const Binding*>(sqlite3_user_data(context));
  guarded(
      binding.state, [&] { run(binding, context, static_cast<std::size_t>(count - 1), values); },
      [&](const char* text) { sqlite3_result_error(context, text, -1); });
}

void fail(sqlite3_context* context, int, sqlite3_value** values) {
  auto& state = *static_cast<CallState*>(sqlite3_user_data(context));
  guarded(
      state,
      [&] {
        const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(values[1]));
        throw RuntimeError(sqlite3_value_int(values[0]), text == nullptr ? "" : text);
      },
      [&](const char* text) { sqlite3_result_error(context, text, -1); });
}

void destroyBinding(void* binding) { std::unique_ptr<Binding>(static_cast<Binding*>(binding)); }

void add(sqlite3* database, CallState& state, const std::string& name, const Function* function) {
  const bool deterministic = function == nullptr || function->deterministic;
  auto binding = std::make_unique<Binding>(Binding{function, state});
  // SQLite owns the binding from here on, also where it refuses.
  sqlite3_create_function_v2(database, name.c_str(), -1,
                             SQLITE_UTF8 | (deterministic ? SQLITE_DETERMINISTIC : 0),
                             binding.release(), callback, nullptr, nullptr, destroyBinding);
}

}  // namespace

void registerFunctions(sqlite3* database, CallState& state) {
  struct Target {
    sqlite3* database;
    CallState& state;
  } target{database, state};
  forEachFunction(
      [](const Function& function, void* context) {
        const auto& to = *static_cast<Target*>(context);
        add(to.database, to.state, "jet_" + lowerCase(function.name), &function);
      },
      &target);
  for (const Function& function : allOperators())
    add(database, state, "jet_op_" + std::string(function.name), &function);
  add(database, state, "jet_convert", nullptr);
  sqlite3_create_function_v2(database, "jet_fail", 2, SQLITE_UTF8, &state, fail, nullptr, nullptr,
                             nullptr);
  registerAggregates(database, state);
  registerCollation(database);
}

}  // namespace jetsql
