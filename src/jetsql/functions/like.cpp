#include "jetsql/functions/like.h"

#include <algorithm>
#include <optional>
#include <string>

#include "text/letter_case.h"
#include "text/utf8.h"
#include "values/runtime_error.h"

namespace jetsql {
namespace {

[[noreturn]] void invalid(std::string_view pattern) {
  throw RuntimeError(error::kInvalidPattern,
                     "Invalid pattern string '" + std::string(pattern) + "'.");
}

// The list of a bracket: [begin, end) between "[" or "[!" and "]".
struct List {
  std::size_t begin;
  std::size_t end;
  bool negated;
};

// `open` stands on "[".
List listAt(std::string_view pattern, std::size_t open) {
  List list{open + 1, 0, false};
  if (list.begin < pattern.size() && pattern[list.begin] == '!') {
    list.negated = true;
    ++list.begin;
  }
  list.end = pattern.find(']', list.begin);
  if (list.end == std::string_view::npos) invalid(pattern);
  // "[!]" is an exclamation mark.
  if (list.negated && list.end == list.begin) return {list.begin - 1, list.end, false};
  return list;
}

bool inList(char32_t character, std::string_view items, std::string_view pattern) {
  bool found = false;
  for (std::size_t position = 0; position < items.size();) {
    const char32_t first = text::lowerCase(text::nextCharacter(items, position));
    // A hyphen at the end is a hyphen.
    if (position + 1 < items.size() && items[position] == '-') {
      ++position;
      const char32_t last = text::lowerCase(text::nextCharacter(items, position));
      if (last < first) invalid(pattern);
      found = found || (character >= first && character <= last);
    } else {
      found = found || character == first;
    }
  }
  return found;
}

// Whether the character matches the pattern element at `position`, which moves past it. The
// empty list [] fits no character by itself and is passed over by the caller.
bool fitsOne(char32_t character, std::string_view pattern, std::size_t& position) {
  const char32_t wanted = text::nextCharacter(pattern, position);
  if (wanted == U'?') return true;
  if (wanted == U'#') return character >= U'0' && character <= U'9';
  if (wanted != U'[') return text::lowerCase(character) == text::lowerCase(wanted);
  const List list = listAt(pattern, position - 1);
  position = list.end + 1;
  return inList(text::lowerCase(character), pattern.substr(list.begin, list.end - list.begin),
                pattern) != list.negated;
}

bool isEmptyList(std::string_view pattern, std::size_t position) {
  return pattern.substr(position, 2) == "[]";
}

// Brackets are checked whether or not the text gets that far.
void check(std::string_view pattern) {
  for (std::size_t i = pattern.find('['); i < pattern.size(); i = pattern.find('[', i + 1)) {
    const List list = listAt(pattern, i);
    (void)inList(0, pattern.substr(list.begin, list.end - list.begin), pattern);
    i = list.end;
  }
}

}  // namespace

bool like(std::string_view text, std::string_view pattern) {
  check(pattern);
  struct Retry {  // where to go on with one more character under the last *
    std::size_t text;
    std::size_t pattern;
  };
  std::optional<Retry> retry;
  std::size_t t = 0;
  std::size_t p = 0;
  for (;;) {
    while (p < pattern.size() && isEmptyList(pattern, p)) p += 2;
    if (p < pattern.size() && pattern[p] == '*') {
      retry = Retry{t, ++p};
      continue;
    }
    if (t == text.size() && p == pattern.size()) return true;
    if (t < text.size() && p < pattern.size()) {
      std::size_t nextText = t;
      std::size_t nextPattern = p;
      if (fitsOne(text::nextCharacter(text, nextText), pattern, nextPattern)) {
        t = nextText;
        p = nextPattern;
        continue;
      }
    }
    if (!retry || retry->text >= text.size()) return false;
    (void)text::nextCharacter(text, retry->text);
    t = retry->text;
    p = retry->pattern;
  }
}

std::string jetPattern(std::string_view ansi) {
  std::string pattern;
  for (std::size_t i = 0; i < ansi.size(); ++i) {
    const char c = ansi[i];
    if (c == '[') {
      const std::size_t close = std::min(ansi.find(']', i), ansi.size() - 1);
      pattern += ansi.substr(i, close - i + 1);
      i = close;
    } else if (c == '%' || c == '_') {
      pattern += c == '%' ? '*' : '?';
    } else if (c == '*' || c == '?' || c == '#') {
      pattern.append({'[', c, ']'});
    } else {
      pattern += c;
    }
  }
  return pattern;
}

}  // namespace jetsql
