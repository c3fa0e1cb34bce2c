// The numbers by which the engine reports what is wrong with a query.
//
// Where the engine has several for a case or none that is known, these hold:
//   3219  any statement or saved query that gives no rows: action, data definition, pass-through,
//         SELECT ... INTO, and a query that reads another file by an IN clause
//   3061  parameters, declared or not, and every name that is no field: all of them are counted,
//         once each
//   3078  a text that begins like no statement is taken for the name of a table
//   3075  faults of expressions: a missing operator, a text or date without end, a date that does
//         not exist, a wrong number of arguments
//   3464  text beside a number or a date; 3615 the same in the ON of a join
//   3360  nested deeper, or expanded to more, than can be run
#pragma once

namespace jetsql::error {

constexpr int kMissingParameters = 3061;
constexpr int kNoDestinationField = 3066;
constexpr int kNoInputTable = 3067;
constexpr int kExpressionSyntax = 3075;
constexpr int kUnknownTable = 3078;
constexpr int kAmbiguousName = 3079;
constexpr int kNameTwiceInFrom = 3081;
constexpr int kUnknownFunction = 3085;
constexpr int kHavingWithoutGroups = 3091;
constexpr int kOrderConflictsWithDistinct = 3093;
constexpr int kAggregateInAggregate = 3095;
constexpr int kAggregateInWhere = 3096;
constexpr int kAggregateInGroupBy = 3098;
constexpr int kAggregateInJoin = 3099;
constexpr int kCircularQuery = 3102;
constexpr int kCircularAlias = 3103;
constexpr int kNotGrouped = 3122;
constexpr int kInvalidBracketing = 3126;
constexpr int kNoStatement = 3129;
constexpr int kFromSyntax = 3131;
constexpr int kGroupBySyntax = 3132;
constexpr int kHavingSyntax = 3133;
constexpr int kJoinSyntax = 3135;
constexpr int kOrderBySyntax = 3138;
constexpr int kParametersSyntax = 3139;
constexpr int kSelectSyntax = 3141;
constexpr int kTextAfterEnd = 3142;
constexpr int kTransformSyntax = 3143;
constexpr int kUnionSyntax = 3144;
constexpr int kWhereSyntax = 3145;
constexpr int kInvalidOperation = 3219;
constexpr int kSubqueryFields = 3306;
constexpr int kUnionWidth = 3307;
constexpr int kSubqueryRows = 3354;
constexpr int kQueryTooComplex = 3360;
constexpr int kJoinTypeMismatch = 3615;
constexpr int kTypeMismatch = 3464;

}  // namespace jetsql::error
