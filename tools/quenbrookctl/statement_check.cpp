#include "statement_check.h"

#include <algorithm>
#include <array>
#include <vector>

#include "platform/code_page.h"
#include "sql_lexer.h"
#include "text/ascii.h"
#include "text/utf8.h"

namespace {

constexpr int kDeepest = 50;  // parentheses within parentheses
constexpr std::size_t kExcerpt = 24;

struct ServerTable {
  std::string_view name;
  std::string_view columns;  // what the names of its columns begin with
};

constexpr ServerTable kTables[] = {
    {"SellingTB", "SL_"},    {"Selling_ItemTB", "SLI_"}, {"CardItemTB", "CI_"},
    {"OutGoItemTB", "OI_"},  {"CustomerTB", "CT_"},      {"CustomerSellingTB", "CS_"},
    {"EmployeeItemTB", "E"}, {"DailyDataTB", "DD_"},
};

// Thrown inside this file only, with what is said of the statement.
struct Refusal {
  std::string reason;
};

template <std::size_t Size>
bool isOneOf(std::string_view word, const std::array<std::string_view, Size>& words) {
  return std::any_of(words.begin(), words.end(), [&](std::string_view each) {
    return text::equalsIgnoringAsciiCase(word, each);
  });
}

constexpr std::array<std::string_view, 9> kWordOperators = {
    "and", "or", "xor", "div", "mod", "like", "rlike", "regexp", "between"};
constexpr std::array<std::string_view, 3> kNegatable = {"like", "rlike", "regexp"};
constexpr std::array<std::string_view, 4> kConstants = {"null", "true", "false", "default"};
constexpr std::array<std::string_view, 4> kStates = {"null", "true", "false", "unknown"};
constexpr std::array<std::string_view, 4> kPrefixes = {"+", "-", "~", "!"};
constexpr std::array<std::string_view, 2> kNoInfix = {"~", "!"};

class Checker {
 public:
  explicit Checker(std::string_view statement) : statement_(statement), lexer_(statement) {
    advance();
  }

  void run() {
    if (text::equalsIgnoringAsciiCase(word_.text, "delete")) {
      checkDelete();
    } else if (text::equalsIgnoringAsciiCase(word_.text, "insert")) {
      checkInsert();
    } else {
      throw Refusal{"neither DELETE nor INSERT, but " + excerpt()};
    }
    if (word_.kind == TokenKind::kSemicolon) advance();
    if (word_.kind != TokenKind::kEnd) refuseHere();
  }

 private:
  void checkDelete() {
    advance();
    expectWord("from");
    readTable();
    expectWord("where");
    checkExpression();
  }

  void checkInsert() {
    advance();
    expectWord("into");
    readTable();
    columns_ = readColumns();
    expectWord("values");
    expect(TokenKind::kOpen);
    std::size_t values = 0;
    for (bool more = true; more; ++values) {
      value_ = values < columns_.size() ? columns_[values] : std::string_view("no column");
      checkExpression();
      more = word_.kind == TokenKind::kComma;
      if (more) advance();
    }
    expect(TokenKind::kClose);
    if (values != columns_.size()) {
      throw Refusal{std::to_string(values) + " values for " + std::to_string(columns_.size()) +
                    " columns"};
    }
    value_ = {};
  }

  void readTable() {
    const auto* table =
        std::find_if(std::begin(kTables), std::end(kTables),
                     [&](const ServerTable& each) { return each.name == word_.text; });
    if (table == std::end(kTables)) throw Refusal{"the server has no table " + excerpt()};
    table_ = table;
    advance();
  }

  std::vector<std::string_view> readColumns() {
    std::vector<std::string_view> columns;
    expect(TokenKind::kOpen);
    while (true) {
      if (word_.kind != TokenKind::kWord || !isColumn(word_.text)) {
        throw Refusal{"no column of " + std::string(table_->name) + ": " + excerpt()};
      }
      columns.push_back(word_.text);
      advance();
      if (word_.kind != TokenKind::kComma) break;
      advance();
    }
    expect(TokenKind::kClose);
    return columns;
  }

  // Operands with operators between them; how tightly these bind changes nothing here.
  void checkExpression() {
    if (++depth_ > kDeepest) throw Refusal{"nested too deep at " + excerpt()};
    checkOperand();
    while (true) {
      if (isInfix()) {
        advance();
        checkOperand();
      } else if (text::equalsIgnoringAsciiCase(word_.text, "not")) {
        advance();
        if (!isOneOf(word_.text, kNegatable)) refuseHere();
      } else if (text::equalsIgnoringAsciiCase(word_.text, "is")) {
        advance();
        if (text::equalsIgnoringAsciiCase(word_.text, "not")) advance();
        if (!isOneOf(word_.text, kStates)) refuseHere();
        advance();
      } else {
        break;
      }
    }
    --depth_;
  }

  [[nodiscard]] bool isInfix() const {
    return word_.kind == TokenKind::kOperator ? !isOneOf(word_.text, kNoInfix)
                                              : isOneOf(word_.text, kWordOperators);
  }

  void checkOperand() {
    while (isOneOf(word_.text, kPrefixes) || text::equalsIgnoringAsciiCase(word_.text, "not")) {
      advance();
    }
    switch (word_.kind) {
      case TokenKind::kString:
        // Texts side by side are one text.
        while (word_.kind == TokenKind::kString) advance();
        return;
      case TokenKind::kNumber:
      case TokenKind::kVariable:
        return advance();
      case TokenKind::kWord:
        if (!isOneOf(word_.text, kConstants) && !isColumn(word_.text)) refuseHere();
        return advance();
      case TokenKind::kOpen:
        advance();
        checkExpression();
        return expect(TokenKind::kClose);
      default:
        refuseHere();
    }
  }

  // The columns that an INSERT names, and what may be one where none are named.
  [[nodiscard]] bool isColumn(std::string_view word) const {
    if (columns_.empty()) return word.starts_with(table_->columns);
    return std::any_of(columns_.begin(), columns_.end(), [&](std::string_view column) {
      return text::equalsIgnoringAsciiCase(word, column);
    });
  }

  void expectWord(std::string_view word) {
    if (word_.kind != TokenKind::kWord || !text::equalsIgnoringAsciiCase(word_.text, word)) {
      refuseHere();
    }
    advance();
  }

  void expect(TokenKind kind) {
    if (word_.kind != kind) refuseHere();
    advance();
  }

  void advance() {
    before_ = word_.kind;
    word_ = lexer_.next();
  }

  [[noreturn]] void refuseHere() const {
    const std::string where = value_.empty() ? "" : " in " + std::string(value_);
    if (word_.kind == TokenKind::kOpenString) {
      throw Refusal{"a quote is left open" + where + ", from " + excerpt()};
    }
    if (word_.kind == TokenKind::kEnd) throw Refusal{"the statement ends early" + where};
    if (before_ == TokenKind::kString) {
      throw Refusal{"a value ends early" + where + ", before " + excerpt()};
    }
    throw Refusal{"unexpected" + where + ": " + excerpt()};
  }

  // The statement from the current word on, not all of it.
  [[nodiscard]] std::string excerpt() const {
    std::string text = CodePage(kKoreanCodePage).toUtf8(statement_.substr(word_.at));
    if (text.size() <= kExcerpt) return text;
    std::size_t end = kExcerpt;
    while (text::continuesCharacter(text[end])) --end;
    return text.substr(0, end) + "…";
  }

  std::string_view statement_;
  SqlLexer lexer_;
  Token word_;
  TokenKind before_ = TokenKind::kEnd;
  const ServerTable* table_ = nullptr;
  std::vector<std::string_view> columns_;
  std::string_view value_;  // column of the value that is being read
  int depth_ = 0;
};

// Whether a line begins a statement; one that does not may be the rest of a text with line breaks.
bool beginsStatement(std::string_view line) {
  constexpr std::string_view kOpenings[] = {"insert into ", "delete from "};
  return std::any_of(std::begin(kOpenings), std::end(kOpenings), [&](std::string_view opening) {
    return text::startsWithIgnoringAsciiCase(line, opening);
  });
}

// Up to the next line that begins a statement.
std::string_view linesOfStatement(std::string_view content) {
  std::size_t end = content.find('\n');
  while (end != std::string_view::npos && !beginsStatement(content.substr(end + 1))) {
    end = content.find('\n', end + 1);
  }
  return content.substr(0, end == std::string_view::npos ? end : end + 1);
}

}  // namespace

std::optional<std::string> checkStatement(std::string_view statement) {
  try {
    Checker(statement).run();
    return {};
  } catch (const Refusal& refusal) {
    return refusal.reason;
  }
}

CheckedStatements checkStatements(
    std::string_view content,
    const std::function<void(std::size_t line, const std::string& reason)>& refuse) {
  CheckedStatements checked;
  std::size_t lineNumber = 1;
  for (std::size_t at = 0; at < content.size(); ++checked.statements) {
    const std::string_view rest = content.substr(at);
    std::string_view statement = rest.substr(0, rest.find('\n') + 1);
    // Either whole in its line, or broken, or a text in it continues in the following lines.
    auto reason = checkStatement(statement);
    if (reason) {
      statement = linesOfStatement(rest);
      reason = checkStatement(statement);
    }
    if (reason) {
      refuse(lineNumber, *reason);
      ++checked.refused;
    }
    lineNumber += static_cast<std::size_t>(std::count(statement.begin(), statement.end(), '\n'));
    at += statement.size();
  }
  return checked;
}
