#include <algorithm>
#include <vector>

#include "jetsql/functions/format_patterns.h"
#include "text/letter_case.h"
#include "text/utf8.h"

namespace jetsql {
namespace {

struct Mark {
  char32_t character;
  bool isPlace;  // @ or &
};

struct Section {
  std::vector<Mark> marks;
  std::size_t places = 0;
  bool lower = false;
  bool upper = false;
  bool fromLeft = false;
};

Section parse(std::string_view pattern) {
  Section section;
  const std::u32string characters = text::toCharacters(pattern);
  bool quoted = false;
  for (std::size_t i = 0; i < characters.size(); ++i) {
    const char32_t c = characters[i];
    if (c == U'"') {
      quoted = !quoted;
    } else if (quoted || (c == U'\\' && i + 1 < characters.size())) {
      section.marks.push_back({quoted ? c : characters[++i], false});
    } else if (c == U'<' || c == U'>' || c == U'!') {
      section.lower = section.lower || c == U'<';
      section.upper = section.upper || c == U'>';
      section.fromLeft = section.fromLeft || c == U'!';
    } else {
      const bool isPlace = c == U'@' || c == U'&';
      section.places += isPlace ? 1 : 0;
      section.marks.push_back({c, isPlace});
    }
  }
  return section;
}

std::u32string cased(std::string_view text, const Section& section) {
  if (section.upper) return text::toCharacters(text::upperCase(text));
  if (section.lower) return text::toCharacters(text::lowerCase(text));
  return text::toCharacters(text);
}

std::u32string render(const std::u32string& characters, const Section& section) {
  const std::size_t filled = std::min(section.places, characters.size());
  const std::size_t missing = section.places - filled;
  const std::size_t excess = characters.size() - filled;
  std::u32string result;
  std::size_t next = 0;
  std::size_t place = 0;
  for (const Mark& mark : section.marks) {
    if (!mark.isPlace) {
      result += mark.character;
      continue;
    }
    if (place == 0 && !section.fromLeft) {
      result += characters.substr(0, excess);
      next = excess;
    }
    const bool empty = section.fromLeft ? next >= characters.size() : place < missing;
    if (!empty) {
      result += characters[next++];
    } else if (mark.character == U'@') {
      result += U' ';
    }
    ++place;
  }
  return result + characters.substr(std::min(next, characters.size()));
}

}  // namespace

std::string formatText(std::string_view text, std::string_view pattern) {
  const std::vector<std::string_view> sections = splitSections(pattern);
  const bool useSecond = text.empty() && sections.size() > 1;
  const Section section = parse(sections[useSecond ? 1 : 0]);
  const std::u32string characters = cased(text, section);
  if (section.places == 0 && !useSecond) return text::fromCharacters(characters);
  return text::fromCharacters(render(characters, section));
}

}  // namespace jetsql
