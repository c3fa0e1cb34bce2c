// Expressions by precedence, loosest first: Imp, Eqv, Xor, Or, And, Not, comparisons, &, + -, Mod,
// \, * /, unary minus, ^. All of them group from the left.
#include <algorithm>
#include <array>
#include <utility>

#include "jetsql/syntax/domain_functions.h"
#include "jetsql/syntax/parser.h"
#include "values/error_numbers.h"
#include "values/runtime_error.h"

namespace jetsql {
namespace {

// More levels of a tree would exhaust the stack of whoever walks it.
constexpr int kDeepest = 400;

struct BinaryOperator {
  std::string_view token;
  Operator operation;
};

constexpr std::array<BinaryOperator, 5> kLogical{{{"IMP", Operator::kImp},
                                                  {"EQV", Operator::kEqv},
                                                  {"XOR", Operator::kXor},
                                                  {"OR", Operator::kOr},
                                                  {"AND", Operator::kAnd}}};

constexpr std::array<BinaryOperator, 6> kComparisons{{{"=", Operator::kEqual},
                                                      {"<>", Operator::kNotEqual},
                                                      {"<=", Operator::kLessOrEqual},
                                                      {">=", Operator::kGreaterOrEqual},
                                                      {"<", Operator::kLess},
                                                      {">", Operator::kGreater}}};

struct ArithmeticOperator {
  std::string_view token;
  Operator operation;
  std::size_t level;
};
constexpr std::size_t kArithmeticLevels = 5;
constexpr std::array<ArithmeticOperator, 7> kArithmetic{{{"&", Operator::kConcat, 0},
                                                         {"+", Operator::kAdd, 1},
                                                         {"-", Operator::kSubtract, 1},
                                                         {"MOD", Operator::kMod, 2},
                                                         {"\\", Operator::kIntDivide, 3},
                                                         {"*", Operator::kMultiply, 4},
                                                         {"/", Operator::kDivide, 4}}};

// `below` is the number of levels below the node.
template <typename Node>
ExpressionPtr makeExpression(Node node, int below = 0) {
  if (below >= kDeepest) throw RuntimeError(error::kQueryTooComplex, "Query is too complex.");
  auto made = std::make_unique<Expression>();
  made->node = std::move(node);
  made->depth = below + 1;
  return made;
}

ExpressionPtr makeUnary(Operator operation, ExpressionPtr operand) {
  const int below = operand->depth;
  return makeExpression(Unary{operation, std::move(operand)}, below);
}

ExpressionPtr makeBinary(Operator operation, ExpressionPtr left, ExpressionPtr right) {
  const int below = std::max(left->depth, right->depth);
  return makeExpression(Binary{operation, std::move(left), std::move(right)}, below);
}

int deepestOf(const std::vector<ExpressionPtr>& list) {
  int deepest = 0;
  for (const ExpressionPtr& item : list) deepest = std::max(deepest, item->depth);
  return deepest;
}

}  // namespace

ExpressionPtr Parser::expression() {
  const std::size_t first = tokens_.position();
  if (++depth_ > kMaxNested) tokens_.fail(error::kQueryTooComplex);
  auto result = binaryLevel(0);
  --depth_;
  deepest_ = std::max(deepest_, result->depth);
  result->source = tokens_.textSince(first);
  return result;
}

ExpressionPtr Parser::binaryLevel(std::size_t level) {
  if (level == kLogical.size()) return logicalNot();
  auto left = binaryLevel(level + 1);
  while (tokens_.acceptWord(kLogical[level].token)) {
    left = makeBinary(kLogical[level].operation, std::move(left), binaryLevel(level + 1));
  }
  return left;
}

ExpressionPtr Parser::logicalNot() {
  if (!tokens_.acceptWord("NOT")) return comparison();
  bool odd = true;
  while (tokens_.acceptWord("NOT")) odd = !odd;
  auto operand = comparison();
  return odd ? makeUnary(Operator::kNot, std::move(operand))
             : makeUnary(Operator::kNot, makeUnary(Operator::kNot, std::move(operand)));
}

ExpressionPtr Parser::comparison() {
  auto left = arithmeticLevel(0);
  for (;;) {
    bool found = false;
    for (const auto& [symbol, operation] : kComparisons) {
      if (!tokens_.acceptSymbol(symbol)) continue;
      left = quantifiedOr(operation, std::move(left));
      found = true;
      break;
    }
    if (found) continue;
    if (tokens_.acceptWord("IS")) {
      const bool negated = tokens_.acceptWord("NOT");
      tokens_.expectWord("NULL", error::kExpressionSyntax);
      const int below = left->depth;
      left = makeExpression(IsNull{std::move(left), negated}, below);
    } else if (tokens_.atAnyWord({"LIKE", "ALIKE", "BETWEEN"}) ||
               (tokens_.atWord("IN") && isSymbol(tokens_.peek(1), "("))) {
      left = negatable(std::move(left), false);
    } else if (tokens_.atWord("NOT") &&
               (isWord(tokens_.peek(1), "LIKE") || isWord(tokens_.peek(1), "ALIKE") ||
                isWord(tokens_.peek(1), "IN") || isWord(tokens_.peek(1), "BETWEEN"))) {
      tokens_.take();
      left = negatable(std::move(left), true);
    } else {
      return left;
    }
  }
}

// Like, ALike, In and Between, which may be preceded by Not.
ExpressionPtr Parser::negatable(ExpressionPtr left, bool negated) {
  if (tokens_.atAnyWord({"LIKE", "ALIKE"})) {
    const Operator operation = isWord(tokens_.take(), "LIKE") ? Operator::kLike : Operator::kALike;
    auto like = makeBinary(operation, std::move(left), arithmeticLevel(0));
    return negated ? makeUnary(Operator::kNot, std::move(like)) : std::move(like);
  }
  if (tokens_.acceptWord("BETWEEN")) {
    auto low = arithmeticLevel(0);
    tokens_.expectWord("AND", error::kExpressionSyntax);
    auto high = arithmeticLevel(0);
    const int below = std::max({left->depth, low->depth, high->depth});
    return makeExpression(Between{std::move(left), std::move(low), std::move(high), negated},
                          below);
  }
  tokens_.expectWord("IN", error::kExpressionSyntax);
  int below = left->depth;
  if (atSubquery()) {
    QueryPtr query = subquery();
    below = std::max(below, levelsBelowSubquery());
    return makeExpression(InQuery{std::move(left), std::move(query), negated}, below);
  }
  tokens_.expectSymbol("(", error::kExpressionSyntax);
  std::vector<ExpressionPtr> items = expressionList();
  tokens_.expectSymbol(")", error::kExpressionSyntax);
  below = std::max(below, deepestOf(items));
  return makeExpression(InList{std::move(left), std::move(items), negated}, below);
}

ExpressionPtr Parser::quantifiedOr(Operator operation, ExpressionPtr left) {
  if (!tokens_.atAnyWord({"ANY", "SOME", "ALL"}) || !isSymbol(tokens_.peek(1), "(")) {
    return makeBinary(operation, std::move(left), arithmeticLevel(0));
  }
  const bool all = isWord(tokens_.take(), "ALL");
  QueryPtr query = subquery();
  const int below = std::max(left->depth, levelsBelowSubquery());
  return makeExpression(Quantified{operation, std::move(left), all, std::move(query)}, below);
}

ExpressionPtr Parser::arithmeticLevel(std::size_t level) {
  if (level == kArithmeticLevels) return unary();
  auto left = arithmeticLevel(level + 1);
  for (;;) {
    const auto& next = tokens_.peek();
    const ArithmeticOperator* found = nullptr;
    for (const auto& candidate : kArithmetic) {
      if (candidate.level == level &&
          (isSymbol(next, candidate.token) || isWord(next, candidate.token))) {
        found = &candidate;
      }
    }
    if (found == nullptr) return left;
    tokens_.take();
    left = makeBinary(found->operation, std::move(left), arithmeticLevel(level + 1));
  }
}

ExpressionPtr Parser::unary() {
  bool minus = false;
  while (tokens_.atSymbol("-") || tokens_.atSymbol("+")) {
    if (tokens_.take().text == "-") minus = !minus;
  }
  auto operand = power();
  return minus ? makeUnary(Operator::kNegate, std::move(operand)) : std::move(operand);
}

ExpressionPtr Parser::power() {
  auto base = primary();
  while (tokens_.acceptSymbol("^")) {
    const bool minus = tokens_.acceptSymbol("-");
    auto exponent = primary();
    if (minus) exponent = makeUnary(Operator::kNegate, std::move(exponent));
    base = makeBinary(Operator::kPower, std::move(base), std::move(exponent));
  }
  return base;
}

ExpressionPtr Parser::primary() {
  if (tokens_.atSymbol("(")) return parenthesized();
  if (tokens_.peek().kind == TokenKind::kLiteral) {
    const Token& token = tokens_.take();
    return makeExpression(Literal{tokens_.literal(token), token.literal});
  }
  if (tokens_.acceptWord("EXISTS")) {
    QueryPtr query = subquery();
    return makeExpression(Exists{std::move(query)}, levelsBelowSubquery());
  }
  if (auto value = constant()) return value;
  return nameOrCall();
}

ExpressionPtr Parser::parenthesized() {
  if (atSubquery()) {
    QueryPtr query = subquery();
    return makeExpression(ScalarQuery{std::move(query)}, levelsBelowSubquery());
  }
  tokens_.take();
  auto inner = expression();
  tokens_.expectSymbol(")", error::kExpressionSyntax);
  return inner;
}

// True, False and Null. Yes, No, On and Off are names until no field of that name is found.
ExpressionPtr Parser::constant() {
  if (isSymbol(tokens_.peek(1), ".") || isSymbol(tokens_.peek(1), "!")) return nullptr;
  const bool yes = tokens_.atWord("TRUE");
  if (!yes && !tokens_.atAnyWord({"FALSE", "NULL"})) return nullptr;
  Literal literal;
  if (!tokens_.atWord("NULL")) literal.value = yes;
  tokens_.take();
  return makeExpression(std::move(literal));
}

ExpressionPtr Parser::nameOrCall() {
  const bool isCall = tokens_.peek().kind == TokenKind::kWord && isSymbol(tokens_.peek(1), "(");
  if (isCall && (!isClauseWord(tokens_.peek()) || tokens_.atAnyWord({"LEFT", "RIGHT"}))) {
    return call(std::string(tokens_.take().text));
  }
  const std::size_t first = tokens_.position();
  // On, which else begins a condition, is a constant where an operand stands.
  std::vector<std::string> path{tokens_.atWord("ON") ? std::string(tokens_.take().text)
                                                     : name(error::kExpressionSyntax)};
  while (tokens_.atSymbol(".") || tokens_.atSymbol("!")) {
    tokens_.take();
    if (!tokens_.atName()) tokens_.fail(error::kExpressionSyntax);
    path.emplace_back(tokens_.take().text);
  }
  auto made = makeExpression(Name{std::move(path)});
  made->source = tokens_.textSince(first);
  return made;
}

ExpressionPtr Parser::call(std::string function) {
  tokens_.expectSymbol("(", error::kExpressionSyntax);
  // The texts of its arguments become SQL.
  if (findDomainFunction(function) != nullptr) notParameterizable_ = true;
  Call made{std::move(function), {}};
  if (tokens_.acceptSymbol(")")) return makeExpression(std::move(made));
  if (tokens_.atSymbol("*") && isSymbol(tokens_.peek(1), ")")) {
    tokens_.take();
    made.arguments.push_back(makeExpression(Star()));
  } else {
    made.arguments = expressionList();
  }
  tokens_.expectSymbol(")", error::kExpressionSyntax);
  const int below = deepestOf(made.arguments);
  return makeExpression(std::move(made), below);
}

bool Parser::atSubquery() const {
  if (!tokens_.atSymbol("(")) return false;
  std::size_t ahead = 1;
  while (isSymbol(tokens_.peek(ahead), "(")) ++ahead;
  if (ahead > 1) return false;  // ((SELECT ...)) is an expression whose inside is a subquery
  return isWord(tokens_.peek(1), "SELECT") || isWord(tokens_.peek(1), "TRANSFORM");
}

// The levels below a node that holds the subquery just read.
int Parser::levelsBelowSubquery() const { return subqueryDepth_ - 1; }

QueryPtr Parser::subquery() {
  if (++depth_ > kMaxNested) tokens_.fail(error::kQueryTooComplex);
  const int around = std::exchange(deepest_, 0);
  tokens_.expectSymbol("(", error::kExpressionSyntax);
  auto inner = query();
  tokens_.acceptSymbol(";");
  tokens_.expectSymbol(")", error::kExpressionSyntax);
  --depth_;
  if (++deepest_ > kDeepest) tokens_.fail(error::kQueryTooComplex);
  subqueryDepth_ = deepest_;
  deepest_ = std::max(deepest_, around);
  return inner;
}

}  // namespace jetsql
