// Every error number that this program throws or reads, each with its name: the platform's first,
// then the database engine's, as the shops and their logs know them.
//
//   throw RuntimeError(error::kDamaged, "data.mdb, page 7: the row table runs into its rows.");
//
// Where the engine has several numbers for a case, or none that is known, these hold:
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

namespace error {

// The platform's.
constexpr int kInvalidCall = 5;
constexpr int kOverflow = 6;
constexpr int kDivisionByZero = 11;
constexpr int kTypeMismatch = 13;
constexpr int kOutOfStringSpace = 14;
constexpr int kInternal = 51;  // of a library, without a number of its own
constexpr int kFileNotFound = 53;
constexpr int kDeviceIo = 57;
constexpr int kFileExists = 58;
constexpr int kDiskFull = 61;
constexpr int kTooManyFiles = 67;
constexpr int kPermissionDenied = 70;  // a file system that does not lock
constexpr int kPathAccess = 75;
constexpr int kPathNotFound = 76;
constexpr int kObjectNotSet = 91;
constexpr int kInvalidPattern = 93;  // of the operator Like
constexpr int kInvalidUseOfNull = 94;

// This program's own, as its logs have always shown them.
constexpr int kNoDatabaseFile = 7001;

// The server connection's.
constexpr int kConnectionFailed = -2147467259;  // unspecified error of the provider
constexpr int kQueryRefused = -2147217900;      // error in the command's text

// The engine's: files, tables and rows.
constexpr int kReserved = 3000;  // what should not happen
constexpr int kInvalidArgument = 3001;
constexpr int kObjectNotFound = 3011;  // no such table
constexpr int kObjectExists = 3012;
constexpr int kNoCurrentRecord = 3021;
constexpr int kDuplicateKey = 3022;        // a unique index has the key already
constexpr int kLinkedFileNotFound = 3024;  // the file of a linked table
constexpr int kFileTooLarge = 3026;
constexpr int kReadOnly = 3027;     // file, table or record set opened for reading only
constexpr int kBadPassword = 3031;  // wrong or missing database password
constexpr int kFileInUse = 3045;    // asked for alone, and others have it open
constexpr int kRowTooLong = 3047;
constexpr int kDamaged = 3049;        // the file contradicts itself
constexpr int kCannotLock = 3050;     // a file system that does not lock
constexpr int kNoPermission = 3051;   // the lock file cannot be written
constexpr int kCallFailed = 3146;     // of a linked system, with the driver's text
constexpr int kConnectFailed = 3151;  // to a linked system
constexpr int kFieldTooSmall = 3163;
constexpr int kNotUpdatable = 3164;     // a field that is not written here
constexpr int kRowDeleted = 3167;       // the row that a RowId names is gone
constexpr int kUnknownFileKind = 3170;  // of a linked table
constexpr int kTooManyFields = 3190;
constexpr int kTableLocked = 3211;  // another user has the table alone
constexpr int kLocked = 3218;       // by a user not known
constexpr int kTooManyUsers = 3239;
constexpr int kLockedByUser = 3260;
constexpr int kItemNotFound = 3265;  // no field of that name or number
constexpr int kNullInKey = 3314;
constexpr int kUnrecognized = 3343;  // no Jet file, or a kind that is not read here
constexpr int kHeldAlone = 3356;     // another user has the file alone

// The engine's: queries.
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
constexpr int kGroupOnStar = 3120;
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
constexpr int kCriteriaTypeMismatch = 3464;
constexpr int kJoinTypeMismatch = 3615;

}  // namespace error
