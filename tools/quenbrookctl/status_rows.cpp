#include <cmath>
#include <map>

#include "extract/conversions.h"
#include "localdb/local_databases.h"
#include "status_parts.h"
#include "values/date_time.h"
#include "values/runtime_error.h"

namespace {

constexpr int kDays = 31;
constexpr std::size_t kMaxDaysNamed = 5;

// The rows that a job would take, whatever their marks.
struct Kind {
  std::string_view key;
  std::string_view title;
  std::string settings::StartValues::*path;
  std::string_view day;
  std::string_view from;
};

const Kind kKinds[] = {
    {"sales", "매출", &settings::StartValues::dataPath, "rdate", "Selling WHERE rdate"},
    {"cards", "카드매출", &settings::StartValues::configurationPath, "rdate",
     "Credit2 WHERE price_total > 0 AND rdate"},
    {"outgo", "지급", &settings::StartValues::outgoPath, "idate", "outgo_item WHERE idate"},
    {"customer_sales", "고객매출", &settings::StartValues::configurationPath, "rdate",
     "customer_selling_sum WHERE rdate"},
    {"attendance", "출퇴근", &settings::StartValues::dataPath, "rdate",
     "Employee_Item WHERE (is_serving = 0 OR is_serving IS NULL) AND e_id > 0 AND rdate"},
};

struct Count {
  std::int64_t rows = 0;
  std::int64_t marked = 0;
  std::map<std::string, std::int64_t> unmarked;  // by day
};

class Counter {
 public:
  explicit Counter(InstalledShop& shop)
      : shop_(shop),
        engine_(shop.program.clock, nullptr),
        databases_(engine_, [this](const std::string& line) { reason_ = line; }),
        today_(std::floor(values::toDateTime(shop.program.clock.now()).serial)) {}

  // Error 91 where the file or the table does not open; its description says why.
  Count count(const Kind& kind) {
    reason_.clear();
    std::shared_ptr<localdb::Database> database;
    std::unique_ptr<localdb::RecordSet> rows;
    const std::string query = "SELECT " + std::string(kind.day) + " AS theday, c_upload FROM " +
                              std::string(kind.from) + " >= #" + values::dayText({today_ - kDays}) +
                              "#";
    if (!databases_.JetOpenDB(database, shop_.start.values.*kind.path, true, false, "", "status") ||
        !databases_.JetOpenRST(database, rows, query, localdb::kOpenSnapshot, 0, 0, false)) {
      throw RuntimeError(error::kObjectNotSet, reason_);
    }
    Count count;
    for (; !rows->atEnd(); rows->moveNext()) {
      ++count.rows;
      if (extract::NzBool(rows->field("c_upload"))) {
        ++count.marked;
      } else {
        ++count.unmarked[values::dayText(values::toDate(rows->field("theday")))];
      }
    }
    return count;
  }

  [[nodiscard]] double today() const { return today_; }

 private:
  InstalledShop& shop_;
  localdb::DBEngine engine_;
  std::string reason_;
  localdb::LocalDatabases databases_;
  double today_;
};

std::string named(const std::vector<std::string>& days) {
  std::string text;
  for (std::size_t i = 0; i < days.size() && i < kMaxDaysNamed; ++i) {
    text += (text.empty() ? "" : ", ") + days[i];
  }
  if (days.size() > kMaxDaysNamed) text += " …";
  return text + " (" + std::to_string(days.size()) + "일)";
}

void addKind(Report& report, const Kind& kind, Counter& counter) {
  try {
    const Count count = counter.count(kind);
    report.sections.push_back({kind.key,
                               kind.title,
                               {{"rows", "31일 동안의 행", count.rows},
                                {"marked", "보낸 행", count.marked},
                                {"unmarked", "보내지 않은 행", count.rows - count.marked}}});
    std::vector<std::string> days;
    for (const auto& [day, rows] : count.unmarked) {
      if (day < values::dayText({counter.today()})) days.push_back(day);
    }
    if (days.empty()) return;
    report.problems.push_back(std::string(kind.title) +
                              "에 보내지 않은 행이 있는 날: " + named(days));
  } catch (const std::exception& failure) {
    report.problems.push_back(std::string(kind.title) + "을 읽을 수 없습니다: " + failure.what());
  }
}

void addSettlement(Report& report, const InstalledShop& shop, double today) {
  const std::string last = shop.program.settings.read("DailyData", "LastDate", "");
  const auto settled = values::parseDate(last);
  std::vector<std::string> days;
  for (int back = kDays; back > 0; --back) {
    const values::DateTime day{today - back};
    if (!settled || day.serial > settled->serial) days.push_back(values::dayText(day));
  }
  report.sections.push_back(
      {"settlement",
       "결산",
       {{"last_date", "마지막으로 결산한 날", last}, {"days_without", "결산하지 않은 날", days}}});
  // Last night's is not missing before somebody could have run it.
  if (days.size() > 1 || !settled) {
    report.problems.push_back("결산하지 않은 날: " + named(days));
  }
}

}  // namespace

void addRows(Report& report, InstalledShop& shop) {
  Counter counter(shop);
  for (const Kind& kind : kKinds) addKind(report, kind, counter);
  addSettlement(report, shop, counter.today());
}
