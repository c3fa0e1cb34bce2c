#include "jetsql/sqlite/value_encoding.h"

#include <sqlite3.h>

#include <cassert>
#include <cmath>
#include <cstdint>
#include <span>
#include <string>

#include "jetsql/functions/value_types.h"
#include "jetsql/sqlite/deferred_error.h"
#include "jetsql/sqlite/numeric_encoding.h"
#include "values/decimal.h"
#include "values/runtime_error.h"

namespace jetsql {

using values::Variant;
using values::VariantType;

namespace {

std::int64_t wholeOf(const EncodedValue& value) {
  if (value.kind != EncodedValue::Kind::kReal) return value.whole;
  if (!(std::abs(value.real) < 9.2e18)) throw RuntimeError(error::kOverflow, "Overflow.");
  return static_cast<std::int64_t>(values::roundHalvesToEven(value.real));
}

double realOf(const EncodedValue& value) {
  return value.kind == EncodedValue::Kind::kReal ? value.real : static_cast<double>(value.whole);
}

// A whole number too large for its static type is the wider number that arithmetic made of it.
Variant wholeNumber(const EncodedValue& value, VariantType type) {
  if (value.kind == EncodedValue::Kind::kReal) return value.real;
  return wholeResult(value.whole, type);
}

// An expression without a static type is what SQLite made of it.
VariantType dynamicType(EncodedValue::Kind kind) {
  switch (kind) {
    case EncodedValue::Kind::kWhole:
      return VariantType::kLong;
    case EncodedValue::Kind::kReal:
      return VariantType::kDouble;
    case EncodedValue::Kind::kText:
      return VariantType::kText;
    default:
      return VariantType::kBinary;
  }
}

std::string_view bytesOf(const void* bytes, int size) {
  if (bytes == nullptr) return {};
  return {static_cast<const char*>(bytes), static_cast<std::size_t>(size)};
}

}  // namespace

// A text is read as a blob: sqlite3_value_text would first copy it to append a zero byte.
EncodedValue encodedValue(sqlite3_value* value) {
  using Kind = EncodedValue::Kind;
  const int type = sqlite3_value_type(value);
  switch (type) {
    case SQLITE_INTEGER:
      return {Kind::kWhole, sqlite3_value_int64(value), 0, {}};
    case SQLITE_FLOAT:
      return {Kind::kReal, 0, sqlite3_value_double(value), {}};
    case SQLITE_TEXT:
    case SQLITE_BLOB: {
      const void* bytes = sqlite3_value_blob(value);
      return {type == SQLITE_TEXT ? Kind::kText : Kind::kBlob, 0, 0,
              bytesOf(bytes, sqlite3_value_bytes(value))};
    }
    default:
      return {};
  }
}

EncodedValue encodedColumn(sqlite3_stmt* statement, int column) {
  using Kind = EncodedValue::Kind;
  const int type = sqlite3_column_type(statement, column);
  switch (type) {
    case SQLITE_INTEGER:
      return {Kind::kWhole, sqlite3_column_int64(statement, column), 0, {}};
    case SQLITE_FLOAT:
      return {Kind::kReal, 0, sqlite3_column_double(statement, column), {}};
    case SQLITE_TEXT:
    case SQLITE_BLOB: {
      const void* bytes = sqlite3_column_blob(statement, column);
      return {type == SQLITE_TEXT ? Kind::kText : Kind::kBlob, 0, 0,
              bytesOf(bytes, sqlite3_column_bytes(statement, column))};
    }
    default:
      return {};
  }
}

values::VariantView decodeView(const EncodedValue& value, VariantType type) {
  if (value.kind == EncodedValue::Kind::kNull) return {};
  if (value.kind == EncodedValue::Kind::kBlob) {
    if (const auto error = errorIn(value.bytes)) throw RuntimeError(*error);
  }
  if (type == VariantType::kNull) type = dynamicType(value.kind);
  switch (type) {
    case VariantType::kYesNo:
      return wholeOf(value) != 0;
    case VariantType::kByte:
    case VariantType::kInteger:
    case VariantType::kLong:
      return wholeNumber(value, type);
    case VariantType::kSingle:
      return static_cast<float>(realOf(value));
    case VariantType::kDouble:
      return realOf(value);
    case VariantType::kCurrency:
      return values::Currency{wholeOf(value)};
    case VariantType::kDateTime:
      return values::DateTime{realOf(value)};
    case VariantType::kNumeric:
      return decodeNumeric(value.bytes.data(), value.bytes.size());
    case VariantType::kBinary:
      return std::as_bytes(std::span(value.bytes));
    default:
      return value.bytes;
  }
}

Variant decode(const EncodedValue& value, VariantType type) {
  return decodeView(value, type).owned();
}

Variant decode(sqlite3_value* value, VariantType type) { return decode(encodedValue(value), type); }

namespace {

// Writes a value through `sink`: null(), whole(int64), real(double), text(string), blob(ptr, size).
template <typename Sink>
void encode(const Variant& value, const Sink& sink) {
  value.visit([&sink](const auto& held) {
    using T = std::decay_t<decltype(held)>;
    if constexpr (std::is_same_v<T, std::monostate>) {
      sink.null();
    } else if constexpr (std::is_same_v<T, bool>) {
      sink.whole(held ? -1 : 0);
    } else if constexpr (std::is_integral_v<T>) {
      sink.whole(held);
    } else if constexpr (std::is_floating_point_v<T>) {
      sink.real(held);
    } else if constexpr (std::is_same_v<T, values::Currency>) {
      sink.whole(held.units);
    } else if constexpr (std::is_same_v<T, values::DateTime>) {
      sink.real(held.serial);
    } else if constexpr (std::is_same_v<T, values::Numeric>) {
      const auto bytes = encodeNumeric(held);
      sink.blob(bytes.data(), bytes.size());
    } else if constexpr (std::is_same_v<T, std::string>) {
      sink.text(held);
    } else {
      sink.blob(held.bytes.data(), held.bytes.size());
    }
  });
}

struct ResultSink {
  sqlite3_context* context;
  void null() const { sqlite3_result_null(context); }
  void whole(std::int64_t value) const { sqlite3_result_int64(context, value); }
  void real(double value) const { sqlite3_result_double(context, value); }
  void text(const std::string& value) const {
    sqlite3_result_text64(context, value.data(), value.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
  }
  void blob(const void* bytes, std::size_t size) const {
    if (size == 0) {
      sqlite3_result_zeroblob(context, 0);
    } else {
      sqlite3_result_blob64(context, bytes, size, SQLITE_TRANSIENT);
    }
  }
};

struct EncodedSink {
  EncodedValue& to;
  void null() const { to = {}; }
  void whole(std::int64_t value) const { to = {EncodedValue::Kind::kWhole, value, 0, {}}; }
  void real(double value) const { to = {EncodedValue::Kind::kReal, 0, value, {}}; }
  void text(const std::string& value) const { to = {EncodedValue::Kind::kText, 0, 0, value}; }
  void blob(const void*, std::size_t) const { assert(false); }
};

struct BindSink {
  sqlite3_stmt* statement;
  int index;
  void null() const { sqlite3_bind_null(statement, index); }
  void whole(std::int64_t value) const { sqlite3_bind_int64(statement, index, value); }
  void real(double value) const { sqlite3_bind_double(statement, index, value); }
  void text(const std::string& value) const {
    sqlite3_bind_text64(statement, index, value.data(), value.size(), SQLITE_TRANSIENT,
                        SQLITE_UTF8);
  }
  void blob(const void* bytes, std::size_t size) const {
    if (size == 0) {
      sqlite3_bind_zeroblob(statement, index, 0);
    } else {
      sqlite3_bind_blob64(statement, index, bytes, size, SQLITE_TRANSIENT);
    }
  }
};

}  // namespace

EncodedValue encodedValue(const Variant& value) {
  EncodedValue encoded;
  encode(value, EncodedSink{encoded});
  return encoded;
}

void setResult(sqlite3_context* context, const Variant& value) {
  encode(value, ResultSink{context});
}

void bind(sqlite3_stmt* statement, int index, const Variant& value) {
  encode(value, BindSink{statement, index});
}

}  // namespace jetsql
