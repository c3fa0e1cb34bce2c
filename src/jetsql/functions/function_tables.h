// The parts of the function table, one source each, and what they share. Private to the room.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "jetsql/functions/functions.h"

namespace jetsql {

[[nodiscard]] std::span<const Function> textFunctions();
[[nodiscard]] std::span<const Function> numberFunctions();
[[nodiscard]] std::span<const Function> dateFunctions();
[[nodiscard]] std::span<const Function> conversionFunctions();
[[nodiscard]] std::span<const Function> controlFunctions();

// Result types that do not depend on the arguments: fixedType<VariantType::kText>.
template <values::VariantType kType>
values::VariantType fixedType(ArgumentTypes) {
  return kType;
}

[[noreturn]] void throwInvalidCall(std::string_view function);
[[noreturn]] void throwOverflow();

// An argument as the engine takes it where it wants a text: a text itself is not copied.
class TextArgument {
 public:
  explicit TextArgument(const values::Variant& value);
  TextArgument(const TextArgument&) = delete;
  TextArgument& operator=(const TextArgument&) = delete;
  ~TextArgument() = default;
  [[nodiscard]] std::string_view view() const { return view_; }

 private:
  std::string converted_;
  std::string_view view_;
};

// The argument at `index` as a whole number, or `otherwise` where it is not given.
[[nodiscard]] std::int32_t longArgument(Arguments arguments, std::size_t index,
                                        std::int32_t otherwise);

}  // namespace jetsql
