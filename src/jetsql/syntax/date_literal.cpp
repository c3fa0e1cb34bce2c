#include "jetsql/syntax/date_literal.h"

#include <array>
#include <cctype>
#include <span>
#include <string>
#include <vector>

#include "text/ascii.h"

namespace jetsql {
namespace {

struct Piece {
  enum class Kind { kNumber, kWord, kColon, kSeparator };
  Kind kind = Kind::kSeparator;
  int number = 0;
  std::size_t digits = 0;
  std::string word;  // lower case
};

bool isLetter(char c) { return std::isalpha(static_cast<unsigned char>(c)) != 0; }

// Blanks, slashes, hyphens and commas separate alike and are left out.
std::optional<std::vector<Piece>> cut(std::string_view text) {
  std::vector<Piece> pieces;
  for (std::size_t i = 0; i < text.size();) {
    Piece piece;
    if (text::isAsciiDigit(text[i])) {
      piece.kind = Piece::Kind::kNumber;
      for (; i < text.size() && text::isAsciiDigit(text[i]) && piece.digits < 5;
           ++i, ++piece.digits) {
        piece.number = piece.number * 10 + (text[i] - '0');
      }
    } else if (isLetter(text[i])) {
      piece.kind = Piece::Kind::kWord;
      for (; i < text.size() && isLetter(text[i]); ++i) piece.word += text::lowerAscii(text[i]);
    } else if (text[i] == ':') {
      piece.kind = Piece::Kind::kColon;
      ++i;
    } else if (std::string_view(" \t\r\n/-,").find(text[i++]) != std::string_view::npos) {
      continue;
    } else {
      return std::nullopt;
    }
    pieces.push_back(std::move(piece));
  }
  return pieces;
}

int monthOf(const std::string& word) {
  static constexpr std::array<std::string_view, 12> kMonths{
      "january", "february", "march",     "april",   "may",      "june",
      "july",    "august",   "september", "october", "november", "december"};
  if (word.size() < 3) return 0;
  for (std::size_t i = 0; i < kMonths.size(); ++i) {
    if (kMonths[i].substr(0, word.size()) == word) return static_cast<int>(i) + 1;
  }
  return 0;
}

int fullYear(const Piece& piece) {
  if (piece.digits > 2) return piece.number;
  return piece.number + (piece.number < 30 ? 2000 : 1900);
}

std::optional<values::CivilTime> existingDay(int year, int month, int day) {
  const values::CivilTime civil{year, month, day};
  if (year < 100 || !values::exists(civil)) return std::nullopt;
  return civil;
}

// Three numbers, or two and the name of a month.
std::optional<values::CivilTime> readDay(std::span<const Piece> pieces) {
  std::vector<Piece> numbers;
  int named = 0;
  for (const Piece& piece : pieces) {
    if (piece.kind == Piece::Kind::kNumber) numbers.push_back(piece);
    if (piece.kind == Piece::Kind::kWord) {
      if (named != 0 || (named = monthOf(piece.word)) == 0) return std::nullopt;
    }
  }
  if (named != 0) {
    if (numbers.size() != 2) return std::nullopt;
    const bool yearFirst = numbers[0].digits > 2;
    return existingDay(fullYear(numbers[yearFirst ? 0 : 1]), named,
                       numbers[yearFirst ? 1 : 0].number);
  }
  if (numbers.size() != 3) return std::nullopt;
  if (numbers[0].digits > 2) {
    return existingDay(numbers[0].number, numbers[1].number, numbers[2].number);
  }
  const int year = fullYear(numbers[2]);
  const auto monthFirst = existingDay(year, numbers[0].number, numbers[1].number);
  return monthFirst ? monthFirst : existingDay(year, numbers[1].number, numbers[0].number);
}

// Hour, minute and second of hour:minute[:second], on a clock of 12 hours when `half` is given.
std::optional<std::array<int, 3>> readTime(std::span<const Piece> pieces, std::string_view half) {
  std::array<int, 3> parts{0, 0, 0};
  std::size_t count = 0;
  for (std::size_t i = 0; i < pieces.size(); ++i) {
    const bool wantsNumber = i % 2 == 0;
    if (wantsNumber != (pieces[i].kind == Piece::Kind::kNumber)) return std::nullopt;
    if (!wantsNumber) continue;
    if (count == parts.size()) return std::nullopt;
    parts[count++] = pieces[i].number;
  }
  if (pieces.size() % 2 == 0) return std::nullopt;
  if (!half.empty()) {
    if (parts[0] < 1 || parts[0] > 12) return std::nullopt;
    parts[0] = parts[0] % 12 + (half == "pm" ? 12 : 0);
  }
  if (parts[0] > 23 || parts[1] > 59 || parts[2] > 59) return std::nullopt;
  return parts;
}

}  // namespace

std::optional<values::DateTime> parseDateLiteral(std::string_view text) {
  auto pieces = cut(text);
  if (!pieces || pieces->empty()) return std::nullopt;
  std::string half;
  if (pieces->back().word == "am" || pieces->back().word == "pm") {
    half = pieces->back().word;
    pieces->pop_back();
  }
  if (pieces->empty()) return std::nullopt;
  // The time begins with the number before the first colon, or is the number before AM or PM.
  auto time = pieces->begin();
  while (time != pieces->end() && time->kind != Piece::Kind::kColon) ++time;
  if ((time != pieces->end() || !half.empty()) && time != pieces->begin()) --time;
  const std::span<const Piece> day(pieces->begin(), time);
  const std::span<const Piece> clock(time, pieces->end());
  std::optional<values::CivilTime> civil = values::CivilTime();
  if (!day.empty()) civil = readDay(day);
  if (!civil) return std::nullopt;
  if (!clock.empty()) {
    const auto parts = readTime(clock, half);
    if (!parts) return std::nullopt;
    civil->hour = (*parts)[0];
    civil->minute = (*parts)[1];
    civil->second = (*parts)[2];
  }
  return values::toDateTime(*civil);
}

}  // namespace jetsql
