// The parts of the function table, one source each, and what they share. Private to the room.
#pragma once

#include <cstddef>
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
[[nodiscard]] std::span<const Function> characterFunctions();
[[nodiscard]] std::span<const Function> byteFunctions();
[[nodiscard]] std::span<const Function> formattedFunctions();
[[nodiscard]] std::span<const Function> inspectionFunctions();
[[nodiscard]] std::span<const Function> financialFunctions();
[[nodiscard]] std::span<const Function> systemFunctions();

// Result types that do not depend on the arguments: fixedType<VariantType::kText>.
template <values::VariantType kType>
values::VariantType fixedType(ArgumentTypes) {
  return kType;
}

[[noreturn]] void throwInvalidCall(std::string_view function);
[[noreturn]] void throwOverflow();

// Error 14 for a result longer than the functions of texts make.
constexpr std::size_t kMaxTextSize = std::size_t{1} << 26U;  // bytes
void requireTextSize(std::size_t size);

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

// A date, or a text that reads as one; a month and a day alone are of this year. Error 13.
[[nodiscard]] values::DateTime dateArgument(const values::Variant& value,
                                            const Environment& environment);

// The argument at `index` as a whole number, or `otherwise` where it is not given.
[[nodiscard]] std::int32_t longArgument(Arguments arguments, std::size_t index,
                                        std::int32_t otherwise);

// A count or a position in a text, all of it where it is not given. Error 5, naming the function,
// below `least`.
[[nodiscard]] std::size_t countArgument(Arguments arguments, std::size_t index,
                                        std::string_view function, std::int32_t least = 0);

}  // namespace jetsql
