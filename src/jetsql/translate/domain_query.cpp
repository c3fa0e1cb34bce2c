#include "jetsql/translate/domain_query.h"

#include <charconv>

#include "values/runtime_error.h"

namespace jetsql {
namespace {

[[noreturn]] void fail(const Call& call, std::string_view what) {
  throw RuntimeError(error::kExpressionSyntax, "Syntax error in query expression '" +
                                                   call.function + "': " + std::string(what) + ".");
}

const std::string* literalText(const Expression& expression) {
  const auto* literal = expression.as<Literal>();
  return literal == nullptr ? nullptr : literal->value.as<std::string>();
}

// The criteria's text put together from literals and values.
class Criteria {
 public:
  Criteria(const Call& call, DomainQuery& query) : call_(call), query_(query) {}

  void add(const Expression& expression) {
    const auto* binary = expression.as<Binary>();
    if (binary != nullptr && binary->operation == Operator::kConcat) {
      add(*binary->left);
      add(*binary->right);
    } else if (const std::string* text = literalText(expression)) {
      addText(*text);
    } else {
      addValue(expression);
    }
  }

  std::string take() {
    if (dateClosing_) fail(call_, "a date without its last #");
    if (!query_.values.empty() && !hasText_) fail(call_, "criteria that are no literal");
    return std::move(text_);
  }

 private:
  void addText(std::string_view text) {
    hasText_ = true;
    if (dateClosing_) {
      if (!text.starts_with('#')) fail(call_, "a date without its last #");
      text.remove_prefix(1);
      dateClosing_ = false;
    }
    for (const char c : text) {
      if (quote_ != 0 ? c == quote_ : c == '\'' || c == '"' || c == '#') {
        quote_ = quote_ != 0 ? '\0' : c;
      }
      text_ += c;
    }
  }

  // Inside of quotes the value is joined to the text around it; between # and # it is a date.
  void addValue(const Expression& value) {
    const std::string name = "[~" + std::to_string(query_.values.size()) + "]";
    query_.values.push_back(&value);
    if (quote_ == '#') {
      if (!text_.ends_with('#')) fail(call_, "a date that is partly a value");
      text_.back() = ' ';
      text_ += "CDate(" + name + ")";
      quote_ = '\0';
      dateClosing_ = true;
    } else if (quote_ != 0) {
      text_ += quote_ + (" & " + name + " & ") + quote_;
    } else {
      text_ += ' ' + name + ' ';
    }
  }

  const Call& call_;
  DomainQuery& query_;
  std::string text_;
  char quote_ = 0;  // ' or " or # that the text is inside of
  bool dateClosing_ = false;
  bool hasText_ = false;
};

std::string_view withoutBrackets(std::string_view name) {
  if (name.size() > 1 && name.front() == '[' && name.back() == ']') {
    return name.substr(1, name.size() - 2);
  }
  return name;
}

}  // namespace

DomainQuery domainQuery(const DomainFunction& function, const Call& call) {
  if (call.arguments.size() < 2 || call.arguments.size() > 3) {
    fail(call, "wrong number of arguments");
  }
  const std::string* expression = literalText(*call.arguments[0]);
  const std::string* domain = literalText(*call.arguments[1]);
  if (expression == nullptr || domain == nullptr) {
    fail(call, "an expression or a domain that is no literal");
  }
  DomainQuery query;
  Criteria criteria(call, query);
  if (call.arguments.size() == 3) criteria.add(*call.arguments[2]);
  const std::string where = criteria.take();
  query.text = "SELECT " + std::string(function.aggregate) + "(" + *expression + ") AS v FROM [" +
               std::string(withoutBrackets(*domain)) + "]";
  if (where.find_first_not_of(' ') != std::string::npos) query.text += " WHERE " + where;
  return query;
}

std::optional<std::size_t> domainValueNumber(const Name& name) {
  const std::string& text = name.path.front();
  if (name.path.size() != 1 || !text.starts_with('~')) return {};
  std::size_t number = 0;
  const auto [end, code] = std::from_chars(text.data() + 1, text.data() + text.size(), number);
  if (code != std::errc() || end != text.data() + text.size()) return {};
  return number;
}

}  // namespace jetsql
