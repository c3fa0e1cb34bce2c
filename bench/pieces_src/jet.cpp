// From the pages of a table to values.
#include <array>
#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include <benchmark/benchmark.h>

#include "jet/database.h"
#include "jet/format/text_codec.h"
#include "pieces_src/pieces.h"
#include "pieces_src/plain_iconv.h"
#include "platform/code_page.h"
#include "platform/random_access_file.h"

namespace bench {

namespace {

constexpr const char* kTable = "Selling_Item";

std::vector<jet::RowId> rowIds(jet::Table& table) {
  std::vector<jet::RowId> ids;
  for (auto rows = table.scan(); rows.next();) ids.push_back(rows.row().id());
  return ids;
}

std::vector<std::uint32_t> pagesOf(const std::vector<jet::RowId>& ids) {
  std::set<std::uint32_t> pages;
  for (const jet::RowId id : ids) pages.insert(id.page);
  return {pages.begin(), pages.end()};
}

void countWalk(benchmark::State& state, jet::Table& table) {
  const std::vector<jet::RowId> ids = rowIds(table);
  const auto pageSize = static_cast<std::int64_t>(table.file().format().pageSize);
  state.SetBytesProcessed(state.iterations() * std::ssize(pagesOf(ids)) * pageSize);
  state.SetItemsProcessed(state.iterations() * std::ssize(ids));
}

void walkByCursor(benchmark::State& state, const std::string& path) {
  const auto file = jet::Database::open(path);
  jet::Table& table = file->openTable(kTable);
  for (auto _ : state) {
    for (auto rows = table.scan(); rows.next();) benchmark::DoNotOptimize(rows.row().bytes());
  }
  countWalk(state, table);
}

void walkByRowId(benchmark::State& state, const std::string& path) {
  const auto file = jet::Database::open(path);
  jet::Table& table = file->openTable(kTable);
  const std::vector<jet::RowId> ids = rowIds(table);
  for (auto _ : state) {
    for (const jet::RowId id : ids) benchmark::DoNotOptimize(table.read(id).bytes());
  }
  countWalk(state, table);
}

void readPages(benchmark::State& state, const std::string& path) {
  const auto file = jet::Database::open(path);
  jet::Table& table = file->openTable(kTable);
  const auto pages = pagesOf(rowIds(table));
  const auto bare = RandomAccessFile::open(path, RandomAccessFile::Mode::kReadOnly);
  std::vector<std::byte> page(table.file().format().pageSize);
  for (auto _ : state) {
    for (const std::uint32_t number : pages) {
      benchmark::DoNotOptimize(bare.readAt(std::uint64_t{number} * page.size(), page));
    }
  }
  countWalk(state, table);
}

// Of rows whose page is in memory.
class Rows {
 public:
  explicit Rows(const std::string& path) : file_(jet::Database::open(path)) {
    for (auto rows = table().scan(); rows_.size() < kCount && rows.next();) {
      rows_.push_back(rows.row());
    }
  }

  [[nodiscard]] jet::Table& table() { return file_->openTable(kTable); }
  [[nodiscard]] const std::vector<jet::Row>& rows() const { return rows_; }

  void count(benchmark::State& state) const {
    std::int64_t bytes = 0;
    for (const jet::Row& row : rows_) bytes += std::ssize(row.bytes());
    state.SetBytesProcessed(state.iterations() * bytes);
    state.SetItemsProcessed(state.iterations() * std::ssize(rows_));
  }

 private:
  static constexpr std::size_t kCount = 1000;

  std::unique_ptr<jet::Database> file_;
  std::vector<jet::Row> rows_;
};

void decodeField(const jet::Row& row, std::size_t column, values::VariantType type,
                 std::string& scratch) {
  if (row.isNull(column)) return;
  switch (type) {
    case values::VariantType::kSingle:
    case values::VariantType::kDouble:
    case values::VariantType::kDateTime:
      return benchmark::DoNotOptimize(row.realNumber(column));
    case values::VariantType::kText:
      return benchmark::DoNotOptimize(row.text(column, scratch));
    default:  // the table has no other types
      return benchmark::DoNotOptimize(row.wholeNumber(column));
  }
}

void decodeTyped(benchmark::State& state, const std::string& path) {
  Rows rows(path);
  std::vector<values::VariantType> types;
  for (const auto& column : rows.table().definition().columns) {
    types.push_back(column.variantType());
  }
  std::string scratch;
  for (auto _ : state) {
    for (const jet::Row& row : rows.rows()) {
      for (std::size_t i = 0; i < types.size(); ++i) decodeField(row, i, types[i], scratch);
    }
  }
  rows.count(state);
}

void decodeVariants(benchmark::State& state, const std::string& path) {
  Rows rows(path);
  const std::size_t columns = rows.table().definition().columns.size();
  for (auto _ : state) {
    for (const jet::Row& row : rows.rows()) {
      for (std::size_t i = 0; i < columns; ++i) benchmark::DoNotOptimize(row.value(i));
    }
  }
  rows.count(state);
}

// Texts as long as those of typical fields.
constexpr std::array<std::string_view, 6> kLatin = {
    "Coffee", "102", "Hong Gil-dong", "8001", "2013-08-02 12:56", "Wine of the house"};
constexpr std::array<std::string_view, 6> kHangul = {"돌솥밥", "방 2", "주방장 모둠전",
                                                     "박지훈", "친구", "계절 메뉴와 식사"};

std::string compressed(std::string_view latin) { return "\xFF\xFE" + std::string(latin); }

std::string utf16(std::string_view text) {
  return std::string(jet::asText(jet::encodeText(text, false)));
}

std::string korean(std::string_view text) { return CodePage(949).fromUtf8(text); }

std::vector<std::string> stored(const std::array<std::string_view, 6>& texts,
                                std::string (*store)(std::string_view)) {
  std::vector<std::string> result;
  result.reserve(texts.size());
  for (const std::string_view text : texts) result.push_back(store(text));
  return result;
}

void countTexts(benchmark::State& state, const std::vector<std::string>& texts) {
  std::int64_t bytes = 0;
  for (const std::string& text : texts) bytes += std::ssize(text);
  state.SetBytesProcessed(state.iterations() * bytes);
  state.SetItemsProcessed(state.iterations() * std::ssize(texts));
}

void decodeTexts(benchmark::State& state, jet::Version version,
                 const std::vector<std::string>& texts) {
  jet::TextDecoder decoder(version, 949);
  std::string scratch;
  for (auto _ : state) {
    for (const std::string& text : texts) {
      benchmark::DoNotOptimize(decoder.decode(std::as_bytes(std::span(text)), scratch));
    }
  }
  countTexts(state, texts);
}

void iconvTexts(benchmark::State& state, const char* from, const std::vector<std::string>& texts) {
  PlainIconv converter("UTF-8", from);
  for (auto _ : state) {
    for (const std::string& text : texts) benchmark::DoNotOptimize(converter.convert(text));
  }
  countTexts(state, texts);
}

void addTexts(const std::string& piece, jet::Version version, const char* system,
              const std::vector<std::string>& texts, const std::vector<std::string>& plain) {
  benchmark::RegisterBenchmark((piece + "/TextDecoder").c_str(), decodeTexts, version, texts);
  benchmark::RegisterBenchmark((piece + "/iconv").c_str(), iconvTexts, system, plain);
}

}  // namespace

void addJet(const SampleShop& shop) {
  const std::string file = shop.dataFile();
  benchmark::RegisterBenchmark("page walk/table cursor", walkByCursor, file);
  benchmark::RegisterBenchmark("page walk/row by row id", walkByRowId, file);
  benchmark::RegisterBenchmark("page walk/bare reads", readPages, file);

  benchmark::RegisterBenchmark("row decode/typed, into one scratch", decodeTyped, file);
  benchmark::RegisterBenchmark("row decode/Variants", decodeVariants, file);

  const auto latin = stored(kLatin, [](std::string_view text) { return std::string(text); });
  const auto wide = stored(kHangul, utf16);
  const auto ansi = stored(kHangul, korean);
  using jet::Version;
  // Without its mark, compressed text is what iconv calls Latin-1.
  addTexts("text, Jet 4 compressed", Version::kJet4, "LATIN1", stored(kLatin, compressed), latin);
  addTexts("text, Jet 4 Hangul", Version::kJet4, "UTF-16LE", wide, wide);
  addTexts("text, Jet 3 Hangul", Version::kJet3, "CP949", ansi, ansi);
  addTexts("text, Jet 3 ASCII", Version::kJet3, "CP949", latin, latin);
}

}  // namespace bench
