#include "jetsql/syntax/saved_query.h"

#include <algorithm>
#include <array>
#include <vector>

#include "jetsql/functions/text_compare.h"
#include "values/error_numbers.h"

namespace jetsql {
namespace {

using jet::QueryAttribute;
using jet::QueryKind;

constexpr int kLastKind = static_cast<int>(QueryKind::kUnion);

constexpr std::array<std::string_view, kLastKind + 1> kKindNames{
    // by QueryKind
    "",       "select",   "make-table",      "append",       "update",
    "delete", "crosstab", "data definition", "pass-through", "union"};

std::string textOf(const values::Variant& value) {
  const auto* text = value.as<std::string>();
  return text == nullptr ? std::string() : *text;
}

std::string bracketed(const std::string& name) { return "[" + name + "]"; }

// One table or a join of tables, as text for the FROM clause.
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
    return parameters() + "SELECT " + options() + columns(jet::kCrosstabValue, true) + from() +
           clauses();
  }

  std::string crosstab() {
    const std::string value = columns(jet::kCrosstabValue, false);
    const std::string pivot = columns(jet::kCrosstabPivot, false);
    if (value.empty() || pivot.empty()) return {};
    return parameters() + "TRANSFORM " + value + " SELECT " + columns(jet::kCrosstabRow, true) +
           from() + clauses() + " PIVOT " + withoutAlias(pivot);
  }

  std::string unionOf() {
    std::string text;
    const bool keepsAll = (flagOf(QueryAttribute::kOptions) & jet::kQueryDistinct) == 0;
    for (const jet::QueryRow* row : all(QueryAttribute::kTable)) {
      if (!text.empty()) text += keepsAll ? " UNION ALL " : " UNION ";
      text += textOf(row->expression);
    }
    return text.empty() ? text : parameters() + text + orderBy();
  }

  [[nodiscard]] const jet::QueryRow* first(QueryAttribute attribute) const {
    const auto found = all(attribute);
    return found.empty() ? nullptr : found.front();
  }
  [[nodiscard]] int flagOf(QueryAttribute attribute) const {
    const auto* row = first(attribute);
    return row == nullptr ? 0 : row->flag;
  }

 private:
  [[nodiscard]] std::vector<const jet::QueryRow*> all(QueryAttribute attribute) const {
    std::vector<const jet::QueryRow*> found;
    for (const jet::QueryRow& row : rows_) {
      if (row.attribute == attribute) found.push_back(&row);
    }
    return found;
  }

  [[nodiscard]] std::string parameters() const {
    std::string text;
    for (const jet::QueryRow* row : all(QueryAttribute::kParameter)) {
      text += (text.empty() ? "PARAMETERS " : ", ") + bracketed(textOf(row->name1)) + " Value";
    }
    return text.empty() ? text : text + "; ";
  }

  [[nodiscard]] std::string options() const {
    const int flags = flagOf(QueryAttribute::kOptions);
    std::string text;
    if ((flags & jet::kQueryDistinct) != 0) text += "DISTINCT ";
    if ((flags & jet::kQueryDistinctRow) != 0) text += "DISTINCTROW ";
    if ((flags & jet::kQueryTop) != 0) {
      text += "TOP " + textOf(first(QueryAttribute::kOptions)->name1) + " ";
    }
    if ((flags & jet::kQueryTop) != 0 && (flags & jet::kQueryTopPercent) != 0) text += "PERCENT ";
    return text;
  }

  [[nodiscard]] std::string columns(std::int16_t role, bool list) const {
    std::string text;
    for (const jet::QueryRow* row : all(QueryAttribute::kColumn)) {
      if (row->flag != role) continue;
      if (!list && !text.empty()) break;
      const std::string alias = textOf(row->name1);
      text += (text.empty() ? "" : ", ") + textOf(row->expression) +
              (alias.empty() ? "" : " AS " + bracketed(alias));
    }
    if (list && (flagOf(QueryAttribute::kOptions) & jet::kQueryAllColumns) != 0) {
      text += text.empty() ? "*" : ", *";
    }
    return text;
  }

  [[nodiscard]] std::string withoutAlias(const std::string& column) const {
    for (const jet::QueryRow* row : all(QueryAttribute::kColumn)) {
      if (row->flag == jet::kCrosstabPivot) return textOf(row->expression);
    }
    return column;
  }

  std::string from() {
    std::vector<Part> parts;
    for (const jet::QueryRow* row : all(QueryAttribute::kTable)) {
      const std::string name = textOf(row->name1);
      const std::string alias = textOf(row->name2);
      const std::string subquery = textOf(row->expression);
      parts.push_back({(subquery.empty() ? bracketed(name) : "(" + subquery + ")") +
                           (alias.empty() ? "" : " AS " + bracketed(alias)),
                       {alias.empty() ? name : alias}});
    }
    for (const jet::QueryRow* row : all(QueryAttribute::kJoin)) addJoin(parts, *row);
    std::string text;
    for (const Part& part : parts) text += (text.empty() ? " FROM " : ", ") + part.text;
    return text.empty() ? text : text + otherDatabase();
  }

  [[nodiscard]] std::string otherDatabase() const {
    const auto* row = first(QueryAttribute::kOtherDatabase);
    if (row == nullptr) return {};
    std::string text = " IN '";
    for (const char c : textOf(row->name1)) text.append(c == '\'' ? 2 : 1, c);
    const std::string connect = textOf(row->expression);
    return text + "'" + (connect.empty() ? "" : " " + bracketed(connect));
  }

  // Each row joins the two parts that hold its tables. Where one part holds both, the join gets one
  // more condition.
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
    const auto kind = static_cast<jet::JoinKind>(row.flag);
    const std::string_view how = kind == jet::JoinKind::kLeft    ? " LEFT JOIN "
                                 : kind == jet::JoinKind::kRight ? " RIGHT JOIN "
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
    if (const auto* row = first(QueryAttribute::kWhere)) {
      text += " WHERE " + textOf(row->expression);
    }
    const bool isCrosstab = flagOf(QueryAttribute::kKind) == static_cast<int>(QueryKind::kCrosstab);
    std::string groups;
    for (const jet::QueryRow* row : all(QueryAttribute::kGroupBy)) {
      if (isCrosstab && row->flag != jet::kCrosstabRow) continue;
      groups += (groups.empty() ? " GROUP BY " : ", ") + textOf(row->expression);
    }
    text += groups;
    if (const auto* row = first(QueryAttribute::kHaving)) {
      text += " HAVING " + textOf(row->expression);
    }
    return text + orderBy();
  }

  [[nodiscard]] std::string orderBy() const {
    std::string text;
    for (const jet::QueryRow* row : all(QueryAttribute::kOrderBy)) {
      text += (text.empty() ? " ORDER BY " : ", ") + textOf(row->expression) +
              (equalText(textOf(row->name1), "D") ? " DESC" : "");
    }
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
  const int number = rebuilder.first(QueryAttribute::kKind) == nullptr
                         ? static_cast<int>(QueryKind::kSelect)
                         : rebuilder.flagOf(QueryAttribute::kKind);
  if (number < static_cast<int>(QueryKind::kSelect) || number > kLastKind) {
    return refused(error::kNoStatement, "is of an unknown kind, " + std::to_string(number) + ".");
  }
  const auto kind = static_cast<QueryKind>(number);
  if (kind != QueryKind::kSelect && kind != QueryKind::kCrosstab && kind != QueryKind::kUnion) {
    return refused(error::kInvalidOperation,
                   "gives no rows that can be read: it is of the kind '" +
                       std::string(kKindNames[static_cast<std::size_t>(number)]) + "'.");
  }
  std::string text;
  if (kind == QueryKind::kSelect) text = rebuilder.select();
  if (kind == QueryKind::kCrosstab) text = rebuilder.crosstab();
  if (kind == QueryKind::kUnion) text = rebuilder.unionOf();
  if (rows.empty() || text.empty()) return refused(error::kNoStatement, "has no readable content.");
  return {name, text, 0, {}};
}

}  // namespace jetsql
