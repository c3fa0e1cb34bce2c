#include "jetsql/translate/typed_expression.h"

namespace jetsql::typed {
namespace {

using List = std::vector<Expression>;

List with(Expression first, const List& others) {
  List list{std::move(first)};
  list.insert(list.end(), others.begin(), others.end());
  return list;
}

struct Operands {
  List operator()(const Literal&) const { return {}; }
  List operator()(const Field&) const { return {}; }
  List operator()(const SubqueryColumn&) const { return {}; }
  List operator()(const Exists&) const { return {}; }
  List operator()(const ScalarQuery&) const { return {}; }
  List operator()(const Conversion& node) const { return {node.operand}; }
  List operator()(const Not& node) const { return {node.operand}; }
  List operator()(const IsNull& node) const { return {node.value}; }
  List operator()(const InQuery& node) const { return {node.value, node.column}; }
  List operator()(const Quantified& node) const { return {node.test}; }
  List operator()(const Junction& node) const { return {node.left, node.right}; }
  List operator()(const Comparison& node) const { return {node.left, node.right}; }
  List operator()(const Between& node) const { return {node.value, node.low, node.high}; }
  List operator()(const InList& node) const { return with(node.value, node.items); }
  List operator()(const Operation& node) const { return node.operands; }
  List operator()(const Call& node) const { return node.arguments; }
  List operator()(const Aggregate& node) const {
    return node.argument ? List{node.argument} : List();
  }
  List operator()(const Case& node) const {
    List list;
    if (node.selector) list.push_back(node.selector);
    for (const Case::Branch& branch : node.branches) {
      list.push_back(branch.when);
      list.push_back(branch.then);
    }
    if (node.otherwise) list.push_back(node.otherwise);
    return list;
  }
};

}  // namespace

bool operator==(const Expression& left, const Expression& right) {
  if (left.node_ == right.node_) return true;
  return left && right && *left == *right;
}

std::vector<Expression> operandsOf(const Expression& expression) {
  return std::visit(Operands(), (*expression).payload);
}

}  // namespace jetsql::typed
