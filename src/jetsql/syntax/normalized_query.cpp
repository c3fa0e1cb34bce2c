#include "jetsql/syntax/normalized_query.h"

#include "jetsql/functions/value_types.h"
#include "jetsql/syntax/scanner.h"
#include "values/runtime_error.h"

namespace jetsql {

QueryShape queryShape(std::string_view text) {
  constexpr char kMark = '\x01';
  QueryShape shape;
  shape.key.reserve(text.size());
  try {
    Scanner scanner(text);
    for (std::size_t previous = 0; scanner.next(); previous = scanner.end()) {
      if (scanner.begin() != previous && previous != 0) shape.key += ' ';
      if (scanner.kind() != TokenKind::kLiteral) {
        shape.key += scanner.text();
        continue;
      }
      shape.literals.push_back(scanner.literal());
      shape.key += kMark;
      shape.key += letterOf(shape.literals.back().type());
    }
  } catch (const RuntimeError&) {
    // The text is faulty; its translation says how.
    return {.key = std::string(text), .literals = {}};
  }
  return shape;
}

}  // namespace jetsql
