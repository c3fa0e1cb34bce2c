#include "jetsql/syntax/saved_query.h"

#include <algorithm>
#include <array>
#include <vector>

#include "jetsql/functions/text_compare.h"
#include "values/error_numbers.h"

namespace jetsql {
namespace {

// The column Attribute of MSysQueries.
enum Attribute : std::uint8_t {
  kKind = 1,       // flag: the kind of query
  kParameter = 2,  // name1; flag: its type
  kOptions = 3,    // flag: the bits below; name1: the number of TOP
  kOtherFile = 4,  // name1: the database of an IN clause
  kTable = 5,      // name1, name2: alias; expression: a subquery or a part of a union
  kColumn = 6,     // expression, name1: alias; flag in a crosstab: the roles below
  kJoin = 7,       // name1 and name2: the tables; expression; flag: 1 inner, 2 left, 3 right
  kWhere = 8,      // expression, as in all further ones
  kGroupBy = 9,    // flag in a crosstab: as for columns
  kHaving = 10,
  kOrderBy = 11,  // name1: D for descending
};

enum Kind { kSelectKind = 1, kCrosstabKind = 6, kUnionKind = 9, kLastKind = 9 };

constexpr std::array<std::string_view, kLastKind + 1> kKindNames{
    "",       "select",   "make-table",      "append",       "update",
    "delete", "crosstab", "data definition", "pass-through", "union"};

enum Option {
  kAllColumns = 1,
  kDistinct = 2,  // of a union: without ALL
  kDistinctRow = 8,
  kTop = 16,
  kPercent = 32
};

enum Role { kValue = 0, kPivot = 1, kRowHeading = 2 };

std::string textOf(const values::Variant& value) {
  const auto* text = value.as<std::string>();
  return text == nullptr ? std::string() : *text;
}

std::string bracketed(const std::string& name) { return "[" + name + "]"; }

// A join of tables, or one table, on its way to a FROM clause.
struct Part {
  std::string text;
  std::vector<std::string> names;
  bool single = true;

  [[nodiscard]] bool has(const std::string& name) const {
    return std::any_of(names.begin(), names.end(),
                       [&](const std::string& own) { return equalText(own, name); });
  }
  [[nodiscard]] std::string enclosed() const { return single ? text : "(" + text + ")"; }
};

class Rebuilder {
 public:
  explicit Rebuilder(std::span<const jet::QueryRow> rows) : rows_(rows) {}

  // Nothing where the rows make no query of that kind.
  std::string select() {
    return parameters() + "SELECT " + options() + columns(kValue, true) + from() + clauses();
  }

  std::string crosstab() {
    const std::string value = columns(kValue, false);
    const std::string pivot = columns(kPivot, false);
    if (value.empty() || pivot.empty()) return {};
    return parameters() + "TRANSFORM " + value + " SELECT " + columns(kRowHeading, true) + from() +
           clauses() + " PIVOT " + withoutAlias(pivot);
  }

  std::string unionOf() {
    std::string text;
    const bool keepsAll = (flagOf(kOptions) & kDistinct) == 0;
    for (const jet::QueryRow* row : all(kTable)) {
      if (!text.empty()) text += keepsAll ? " UNION ALL " : " UNION ";
      text += textOf(row->expression);
    }
    return text.empty() ? text : parameters() + text + orderBy();
  }

  [[nodiscard]] const jet::QueryRow* first(Attribute attribute) const {
    const auto found = all(attribute);
    return found.empty() ? nullptr : found.front();
  }
  [[nodiscard]] int flagOf(Attribute attribute) const {
    const auto* row = first(attribute);
    return row == nullptr ? 0 : row->flag;
  }

 private:
  [[nodiscard]] std::vector<const jet::QueryRow*> all(Attribute attribute) const {
    std::vector<const jet::QueryRow*> found;
    for (const jet::QueryRow& row : rows_)
      if (row.attribute == attribute) found.push_back(&row);
    return found;
  }

  [[nodiscard]] std::string parameters() const {
    std::string text;
    for (const jet::QueryRow* row : all(kParameter))
      text += (text.empty() ? "PARAMETERS " : ", ") + bracketed(textOf(row->name1)) + " Value";
    return text.empty() ? text : text + "; ";
  }

  [[nodiscard]] std::string options() const {
    const int flags = flagOf(kOptions);
    std::string text;
    if ((flags & kDistinct) != 0) text += "DISTINCT ";
    if ((flags & kDistinctRow) != 0) text += "DISTINCTROW ";
    if ((flags & kTop) != 0) text += "TOP " + textOf(first(kOptions)->name1) + " ";
    if ((flags & kTop) != 0 && (flags & kPercent) != 0) text += "PERCENT ";
    return text;
  }

  [[nodiscard]] std::string columns(Role role, bool list) const {
    std::string text;
    for (const jet::QueryRow* row : all(kColumn)) {
      if (row->flag != role) continue;
      if (!list && !text.empty()) break;
      const std::string alias = textOf(row->name1);
      text += (text.empty() ? "" : ", ") + textOf(row->expression) +
              (alias.empty() ? "" : " AS " + bracketed(alias));
    }
    if (list && (flagOf(kOptions) & kAllColumns) != 0) text += text.empty() ? "*" : ", *";
    return text;
  }

  [[nodiscard]] std::string withoutAlias(const std::string& column) const {
    for (const jet::QueryRow* row : all(kColumn))
      if (row->flag == kPivot) return textOf(row->expression);
    return column;
  }

  std::string from() {
    std::vector<Part> parts;
    for (const jet::QueryRow* row : all(kTable)) {
      const std::string name = textOf(row->name1);
      const std::string alias = textOf(row->name2);
      const std::string subquery = textOf(row->expression);
      parts.push_back({(subquery.empty() ? bracketed(name) : "(" + subquery + ")") +
                           (alias.empty() ? "" : " AS " + bracketed(alias)),
                       {alias.empty() ? name : alias}});
    }
    for (const jet::QueryRow* row : all(kJoin)) addJoin(parts, *row);
    std::string text;
    for (const Part& part : parts) text += (text.empty() ? " FROM " : ", ") + part.text;
    return text;
  }

  // Each row joins the two parts in which its tables are by now. Tables that are joined already
  // get one condition more.
  void addJoin(std::vector<Part>& parts, const jet::QueryRow& row) {
    const auto holder = [&parts](const std::string& name) {
      return std::find_if(parts.begin(), parts.end(),
                          [&](const Part& part) { return part.has(name); });
    };
    const auto left = holder(textOf(row.name1));
    const auto right = holder(textOf(row.name2));
    const std::string condition = "(" + textOf(row.expression) + ")";
    if (left == parts.end() || right == parts.end()) return;
    if (left == right) {
      left->text += " AND " + condition;
      return;
    }
    const std::string_view how = row.flag == 2   ? " LEFT JOIN "
                                 : row.flag == 3 ? " RIGHT JOIN "
                                                 : " INNER JOIN ";
    Part both{left->enclosed() + std::string(how) + right->enclosed() + " ON " + condition,
              left->names, false};
    both.names.insert(both.names.end(), right->names.begin(), right->names.end());
    const auto place = std::min(left, right);
    *place = std::move(both);
    parts.erase(place == left ? right : left);
  }

  [[nodiscard]] std::string clauses() const {
    std::string text;
    if (const auto* row = first(kWhere)) text += " WHERE " + textOf(row->expression);
    const bool isCrosstab = flagOf(kKind) == kCrosstabKind;
    std::string groups;
    for (const jet::QueryRow* row : all(kGroupBy)) {
      if (isCrosstab && row->flag != kRowHeading) continue;
      groups += (groups.empty() ? " GROUP BY " : ", ") + textOf(row->expression);
    }
    text += groups;
    if (const auto* row = first(kHaving)) text += " HAVING " + textOf(row->expression);
    return text + orderBy();
  }

  [[nodiscard]] std::string orderBy() const {
    std::string text;
    for (const jet::QueryRow* row : all(kOrderBy))
      text += (text.empty() ? " ORDER BY " : ", ") + textOf(row->expression) +
              (equalText(textOf(row->name1), "D") ? " DESC" : "");
    return text;
  }

  std::span<const jet::QueryRow> rows_;
};

}  // namespace

SavedQuery rebuildQuery(const std::string& name, std::span<const jet::QueryRow> rows) {
  Rebuilder rebuilder(rows);
  const auto refused = [&name](int number, const std::string& what) {
    return SavedQuery{name, {}, number, "The query '" + name + "' " + what};
  };
  const int kind = rebuilder.first(kKind) == nullptr ? kSelectKind : rebuilder.flagOf(kKind);
  if (kind < kSelectKind || kind > kLastKind)
    return refused(error::kNoStatement, "is of an unknown kind, " + std::to_string(kind) + ".");
  if (kind != kSelectKind && kind != kCrosstabKind && kind != kUnionKind)
    return refused(error::kInvalidOperation,
                   "gives no rows that can be read: it is of the kind '" +
                       std::string(kKindNames[static_cast<std::size_t>(kind)]) + "'.");
  if (rebuilder.first(kOtherFile) != nullptr)
    return refused(error::kInvalidOperation, "reads another database by an IN clause.");
  std::string text;
  if (kind == kSelectKind) text = rebuilder.select();
  if (kind == kCrosstabKind) text = rebuilder.crosstab();
  if (kind == kUnionKind) text = rebuilder.unionOf();
  if (rows.empty() || text.empty()) return refused(error::kNoStatement, "has no readable content.");
  return {name, text, 0, {}};
}

}  // namespace jetsql
