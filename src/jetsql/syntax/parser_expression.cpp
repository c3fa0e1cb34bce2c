// Expressions by precedence, loosest first: Imp, Eqv, Xor, Or, And, Not, comparisons, &, + -, Mod,
// \, * /, unary minus, ^. All of them group from the left.
#include <algorithm>
#include <array>
#include <utility>

#include "jetsql/syntax/parser.h"
#include "jetsql/syntax/parser_internal.h"
#include "values/error_numbers.h"
#include "values/runtime_error.h"

namespace jetsql {
namespace {

// More than any query needs would exhaust the stack of whoever reads or walks the tree.
constexpr int kMaxNested = 100;
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

ExpressionPtr node(Expression::Kind kind) {
  auto made = std::make_unique<Expression>();
  made->kind = kind;
  return made;
}

void adopt(Expression& parent, ExpressionPtr child) {
  parent.depth = std::max(parent.depth, child->depth + 1);
  if (parent.depth > kDeepest) throw RuntimeError(error::kQueryTooComplex, "Query is too complex.");
  parent.arguments.push_back(std::move(child));
}

ExpressionPtr unaryNode(Operator operation, ExpressionPtr operand) {
  auto made = node(Expression::Kind::kUnary);
  made->operation = operation;
  adopt(*made, std::move(operand));
  return made;
}

ExpressionPtr binaryNode(Operator operation, ExpressionPtr left, ExpressionPtr right) {
  auto made = node(Expression::Kind::kBinary);
  made->operation = operation;
  adopt(*made, std::move(left));
  adopt(*made, std::move(right));
  return made;
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
    left = binaryNode(kLogical[level].operation, std::move(left), binaryLevel(level + 1));
  }
  return left;
}

ExpressionPtr Parser::logicalNot() {
  if (!tokens_.acceptWord("NOT")) return comparison();
  bool odd = true;
  while (tokens_.acceptWord("NOT")) odd = !odd;
  auto operand = comparison();
  return odd ? unaryNode(Operator::kNot, std::move(operand))
             : unaryNode(Operator::kNot, unaryNode(Operator::kNot, std::move(operand)));
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
      auto test = node(Expression::Kind::kIsNull);
      test->negated = tokens_.acceptWord("NOT");
      tokens_.expectWord("NULL", error::kExpressionSyntax);
      adopt(*test, std::move(left));
      left = std::move(test);
    } else if (tokens_.atAnyWord({"LIKE", "IN", "BETWEEN"})) {
      left = negatable(std::move(left), false);
    } else if (tokens_.atWord("NOT") &&
               (isWord(tokens_.peek(1), "LIKE") || isWord(tokens_.peek(1), "IN") ||
                isWord(tokens_.peek(1), "BETWEEN"))) {
      tokens_.take();
      left = negatable(std::move(left), true);
    } else {
      return left;
    }
  }
}

// Like, In and Between, which may have a Not before them.
ExpressionPtr Parser::negatable(ExpressionPtr left, bool negated) {
  if (tokens_.acceptWord("LIKE")) {
    auto like = binaryNode(Operator::kLike, std::move(left), arithmeticLevel(0));
    return negated ? unaryNode(Operator::kNot, std::move(like)) : std::move(like);
  }
  ExpressionPtr test;
  if (tokens_.acceptWord("BETWEEN")) {
    test = node(Expression::Kind::kBetween);
    adopt(*test, std::move(left));
    adopt(*test, arithmeticLevel(0));
    tokens_.expectWord("AND", error::kExpressionSyntax);
    adopt(*test, arithmeticLevel(0));
  } else {
    tokens_.expectWord("IN", error::kExpressionSyntax);
    test = node(Expression::Kind::kInList);
    adopt(*test, std::move(left));
    if (atSubquery()) {
      test->kind = Expression::Kind::kInQuery;
      test->query = subquery();
      test->depth = std::max(test->depth, subqueryDepth_);
    } else {
      tokens_.expectSymbol("(", error::kExpressionSyntax);
      for (auto& item : expressionList()) adopt(*test, std::move(item));
      tokens_.expectSymbol(")", error::kExpressionSyntax);
    }
  }
  test->negated = negated;
  return test;
}

ExpressionPtr Parser::quantifiedOr(Operator operation, ExpressionPtr left) {
  if (!tokens_.atAnyWord({"ANY", "SOME", "ALL"}) || !isSymbol(tokens_.peek(1), "("))
    return binaryNode(operation, std::move(left), arithmeticLevel(0));
  auto test = node(Expression::Kind::kQuantified);
  test->operation = operation;
  test->all = isWord(tokens_.take(), "ALL");
  adopt(*test, std::move(left));
  test->query = subquery();
  test->depth = std::max(test->depth, subqueryDepth_);
  return test;
}

ExpressionPtr Parser::arithmeticLevel(std::size_t level) {
  if (level == kArithmeticLevels) return unary();
  auto left = arithmeticLevel(level + 1);
  for (;;) {
    const auto& next = tokens_.peek();
    const ArithmeticOperator* found = nullptr;
    for (const auto& candidate : kArithmetic)
      if (candidate.level == level &&
          (isSymbol(next, candidate.token) || isWord(next, candidate.token)))
        found = &candidate;
    if (found == nullptr) return left;
    tokens_.take();
    left = binaryNode(found->operation, std::move(left), arithmeticLevel(level + 1));
  }
}

ExpressionPtr Parser::unary() {
  bool minus = false;
  while (tokens_.atSymbol("-") || tokens_.atSymbol("+")) {
    if (tokens_.take().text == "-") minus = !minus;
  }
  auto operand = power();
  return minus ? unaryNode(Operator::kNegate, std::move(operand)) : std::move(operand);
}

ExpressionPtr Parser::power() {
  auto base = primary();
  while (tokens_.acceptSymbol("^")) {
    const bool minus = tokens_.acceptSymbol("-");
    auto exponent = primary();
    if (minus) exponent = unaryNode(Operator::kNegate, std::move(exponent));
    base = binaryNode(Operator::kPower, std::move(base), std::move(exponent));
  }
  return base;
}

ExpressionPtr Parser::primary() {
  if (tokens_.atSymbol("(")) return parenthesized();
  if (tokens_.peek().kind == TokenKind::kLiteral) {
    const Token& token = tokens_.take();
    auto literal = node(Expression::Kind::kLiteral);
    literal->value = tokens_.literal(token);
    literal->literalOrdinal = static_cast<int>(token.literal);
    return literal;
  }
  if (tokens_.acceptWord("EXISTS")) {
    auto exists = node(Expression::Kind::kExists);
    exists->query = subquery();
    exists->depth = std::max(exists->depth, subqueryDepth_);
    return exists;
  }
  if (auto value = constant()) return value;
  return nameOrCall();
}

ExpressionPtr Parser::parenthesized() {
  if (atSubquery()) {
    auto scalar = node(Expression::Kind::kScalar);
    scalar->query = subquery();
    scalar->depth = std::max(scalar->depth, subqueryDepth_);
    return scalar;
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
  auto literal = node(Expression::Kind::kLiteral);
  if (!tokens_.atWord("NULL")) literal->value = yes;
  tokens_.take();
  return literal;
}

ExpressionPtr Parser::nameOrCall() {
  const bool isCall = tokens_.peek().kind == TokenKind::kWord && isSymbol(tokens_.peek(1), "(");
  if (isCall && (!isClauseWord(tokens_.peek()) || tokens_.atAnyWord({"LEFT", "RIGHT"})))
    return call(std::string(tokens_.take().text));
  auto reference = node(Expression::Kind::kName);
  const std::size_t first = tokens_.position();
  reference->path.push_back(name(error::kExpressionSyntax));
  while (tokens_.atSymbol(".") || tokens_.atSymbol("!")) {
    tokens_.take();
    if (!tokens_.atName()) tokens_.fail(error::kExpressionSyntax);
    reference->path.emplace_back(tokens_.take().text);
  }
  reference->source = tokens_.textSince(first);
  return reference;
}

ExpressionPtr Parser::call(const std::string& function) {
  auto made = node(Expression::Kind::kCall);
  made->path.push_back(function);
  tokens_.expectSymbol("(", error::kExpressionSyntax);
  if (tokens_.acceptSymbol(")")) return made;
  if (tokens_.atSymbol("*") && isSymbol(tokens_.peek(1), ")")) {
    tokens_.take();
    adopt(*made, node(Expression::Kind::kStar));
  } else {
    for (auto& argument : expressionList()) adopt(*made, std::move(argument));
  }
  tokens_.expectSymbol(")", error::kExpressionSyntax);
  return made;
}

bool Parser::atSubquery() const {
  if (!tokens_.atSymbol("(")) return false;
  std::size_t ahead = 1;
  while (isSymbol(tokens_.peek(ahead), "(")) ++ahead;
  if (ahead > 1) return false;  // ((SELECT ...)) is an expression whose inside is a subquery
  return isWord(tokens_.peek(1), "SELECT") || isWord(tokens_.peek(1), "TRANSFORM");
}

std::unique_ptr<Query> Parser::subquery() {
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
