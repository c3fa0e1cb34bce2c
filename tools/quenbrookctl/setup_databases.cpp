#include <cmath>
#include <filesystem>
#include <set>

#include "extract/conversions.h"
#include "jetcheck/file_check.h"
#include "localdb/local_databases.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "platform/find_file.h"
#include "setup_parts.h"
#include "values/date_time.h"
#include "values/runtime_error.h"

namespace {

namespace fs = std::filesystem;

struct JetFile {
  std::string_view name;
  std::string_view kind;  // of the rows that are counted
  std::string_view day;
  std::string_view table;
};

constexpr JetFile kFiles[] = {
    {"data.mdb", "매출", "rdate", "Selling"},
    {"config.mdb", "카드매출", "rdate", "Credit2"},
    {"outgo.mdb", "지급", "idate", "outgo_item"},
};

// "매출 21일, 630건, 마지막 날 2013-08-21"
std::string contents(const std::string& path, const JetFile& file) {
  const platform::SystemClock clock;
  localdb::DBEngine engine(clock, nullptr);
  std::string reason;
  localdb::LocalDatabases databases(engine, [&](const std::string& line) { reason = line; });
  std::shared_ptr<localdb::Database> database;
  std::unique_ptr<localdb::RecordSet> rows;
  const std::string day(file.day);
  if (!databases.JetOpenDB(database, path, true, false, "", "setup") ||
      !databases.JetOpenRST(database, rows,
                            "SELECT " + day + " AS theday, COUNT(*) AS n FROM " +
                                std::string(file.table) + " WHERE " + day +
                                " IS NOT NULL GROUP BY " + day,
                            localdb::kOpenSnapshot, 0, 0, false)) {
    throw RuntimeError(error::kObjectNotSet, reason);
  }
  std::set<double> days;
  std::int64_t count = 0;
  for (; !rows->atEnd(); rows->moveNext()) {
    days.insert(std::floor(values::toDate(rows->field("theday")).serial));
    count += extract::NzLong(rows->field("n"));
  }
  std::string text = std::string(file.kind) + " " + std::to_string(days.size()) + "일, " +
                     std::to_string(count) + "건";
  if (!days.empty()) text += ", 마지막 날 " + values::dayText({*days.rbegin()});
  return text;
}

// Reads the whole file. What it reads while the till writes may look faulty.
void checkWhole(Setup& setup, const std::string& path) {
  std::string first;
  const jetcheck::Summary found = jetcheck::checkFile(path, [&](const std::string& line) {
    if (first.empty()) first = line;
  });
  if (found.faults == 0) {
    SetupPage::right("온전함: 표 " + std::to_string(found.tables) + "개, 행 " +
                     std::to_string(found.rows) + "개");
    return;
  }
  setup.page.missing(
      path + ": 온전하지 않은 곳 " + std::to_string(found.faults) + "개 (" + first +
      "). 판매 프로그램을 닫고 다시 해 보고, 그래도 나오면 판매 프로그램에서 이 파일을 "
      "복구하십시오.");
}

void lookAt(Setup& setup, const std::string& path, const JetFile& file) {
  try {
    SetupPage::right(fs::path(path).filename().string() + ": " + contents(path, file));
    checkWhole(setup, path);
  } catch (const RuntimeError& failure) {
    setup.page.missing(path + "을(를) 읽을 수 없습니다: " + failure.description());
  }
}

// The settlement looks into the program's folder, whatever folder config.ini names.
void link(Setup& setup, const std::string& target, const JetFile& file) {
  const std::string link = platform::findFile(setup.folder, file.name);
  std::error_code unknown;
  if (fs::is_symlink(link)) {
    if (fs::equivalent(link, target, unknown)) return;
    fs::remove(link);
  } else if (platform::fileExists(link)) {
    setup.page.missing(
        link + "이(가) " + target +
        "과(와) 다른 파일입니다. 결산은 매장 폴더의 것을 읽습니다. 하나를 치우고 다시 "
        "실행하십시오.");
    return;
  }
  fs::create_symlink(target, setup.file(file.name));
  SetupPage::changed("결산이 읽을 링크: " + setup.file(file.name) + " -> " + target);
}

}  // namespace

void setUpDatabases(Setup& setup) {
  const std::string folder = databaseFolder(setup);
  std::error_code unknown;
  const bool elsewhere = !fs::equivalent(folder, setup.folder, unknown);
  for (const JetFile& file : kFiles) {
    const std::string path = platform::findFile(folder, file.name);
    if (!platform::fileExists(path)) {
      setup.page.missing(path +
                         "이(가) 없습니다. 판매 프로그램의 자료 폴더를 --db로 알려 주십시오.");
      continue;
    }
    lookAt(setup, path, file);
    if (elsewhere) link(setup, path, file);
  }
}
