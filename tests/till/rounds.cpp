#include "till/rounds.h"

#include <algorithm>
#include <array>
#include <compare>
#include <csignal>
#include <map>
#include <random>
#include <set>
#include <stdexcept>
#include <thread>

#include "jet/database.h"
#include "jet/format/commit_bytes.h"
#include "jetcheck/file_check.h"
#include "support/child_process.h"
#include "support/sale_statements.h"
#include "till/evidence.h"
#include "values/date_time.h"
#include "values/runtime_error.h"

namespace till {
namespace {

namespace fs = std::filesystem;
using support::ChildProcess;
using support::readFile;

constexpr int kRoundsOfAFile = 3;
constexpr int kKilled = 128 + SIGKILL;
constexpr std::size_t kTransactionsAfterJob = 12;
constexpr int kWritesOfTransaction = 8;  // about

// What a job sends: 2013-08-01 to 03, of which the first two are from before the marks; now and
// then also the two days after them, of which the till deletes sales.
const double kFirstDay = values::daySerial(2013, 8, 1);
constexpr int kDays = 3;
constexpr int kLaterDays = 2;

// The commit pairs of a file that others work on.
class Pairs {
 public:
  Pairs(const std::string& path, jet::Version version)
      : file_(RandomAccessFile::open(path, RandomAccessFile::Mode::kReadOnly)), version_(version) {
    look();
    first_ = now_;
  }

  void look() { (void)file_.readAt(jet::commitPairOffset(version_, 0), now_); }

  [[nodiscard]] bool isWriteUnderWay() const {
    for (std::size_t at = 1; at < now_.size(); at += jet::kCommitPairSize) {
      if (now_[at] != jet::kNoWriteUnderWay) return true;
    }
    return false;
  }

  // By others than the first one to join, the till, since the first look.
  [[nodiscard]] int counts() const {
    int sum = 0;
    for (std::size_t at = 2 * jet::kCommitPairSize; at < now_.size(); at += jet::kCommitPairSize) {
      sum += static_cast<std::uint8_t>(static_cast<int>(now_[at]) - static_cast<int>(first_[at]));
    }
    return sum;
  }

 private:
  using Bytes = std::array<std::byte, jet::kCommitPairsSize>;

  RandomAccessFile file_;
  jet::Version version_;
  Bytes now_{};
  Bytes first_{};
};

// How far a job has come: its commits so far, and how often the file was looked at since the last.
struct Moment {
  int counts = 0;
  int looks = 0;

  friend auto operator<=>(const Moment&, const Moment&) = default;
};

class Rounds {
 public:
  explicit Rounds(const Options& options) : options_(options), random_(options.seed) {
    std::vector<std::string> command = {QUENBROOK_MAKESHOP, path("fresh"), "--from",
                                        "2013-08-01",       "--days",      "3",
                                        "--sales-per-day",  "30"};
    if (options.format != "jet4") command.insert(command.end(), {"--format", options.format});
    if (!options.indexes) command.emplace_back("--no-indexes");
    mustRun(command);
    mustRun({QUENBROOK_TILL, "prepare", path("fresh/data.mdb")});
    fs::copy(path("fresh"), path("shop"), fs::copy_options::recursive);
    fs::copy_file(QUENBROOK_PROGRAM, path("shop/quenbrook"));
  }

  Report run() {
    for (; goesOn(); ++report_.rounds) {
      if (report_.rounds % kRoundsOfAFile == 0) restore();
      try {
        round();
      } catch (const std::exception& failure) {
        fault(failure.what());
      }
    }
    report_.movedRows += shop_.movedRows;
    return std::move(report_);
  }

 private:
  [[nodiscard]] std::string path(const std::string& name) const { return options_.folder / name; }
  [[nodiscard]] std::string data() const { return path("shop/data.mdb"); }
  [[nodiscard]] bool goesOn() const {
    const bool seenAll = report_.fewestOfAKind() >= options_.ofEachKind;
    return report_.faults.empty() &&
           report_.rounds < (seenAll ? options_.rounds : 10 * options_.rounds);
  }

  int below(int limit) { return std::uniform_int_distribution<int>(0, limit - 1)(random_); }

  void fault(const std::string& what) {
    report_.faults.push_back("round " + std::to_string(report_.rounds) + ": " + what);
  }

  static void mustRun(const std::vector<std::string>& command) {
    std::string output;
    if (support::run(command, &output) != 0) throw std::runtime_error(command[0] + ": " + output);
  }

  [[nodiscard]] jet::Version version() const {
    return options_.format == "jet3" ? jet::Version::kJet3 : jet::Version::kJet4;
  }

  void restore() {
    report_.movedRows += shop_.movedRows;
    for (const char* name : {"data.mdb", "config.mdb", "outgo.mdb"}) {
      fs::copy_file(path("fresh") / fs::path(name), path("shop") / fs::path(name),
                    fs::copy_options::overwrite_existing);
    }
    shop_ = readShop(data());
  }

  void round();
  void work(bool wide);
  void watch(ChildProcess& job, ChildProcess& till, bool tillDies);
  Moment anyMoment();
  [[nodiscard]] support::SaleStatements statements() const;
  void refuseAndRepair();
  void check(double lastDay);
  void checkRows(const Shop& now, std::span<const Transaction> log);
  void checkMarks(const Shop& now, std::span<const Transaction> log, double lastDay);

  Options options_;
  std::mt19937 random_;
  Report report_;
  Shop shop_;                 // after the last round
  int looksBeforeMarks_ = 1;  // of the last job that made marks
  int marking_ = 1;           // its commits
  int transactions_ = 1;      // of the till during the last job that was not killed
  int jobStatus_ = 0;
  std::size_t doneBeforeJob_ = 0;  // transactions
};

void Rounds::round() {
  const bool wide = below(4) == 0;
  for (const char* name : {"till.log", "till.out", "job.out", "shop/quenbrook-errors.log"}) {
    fs::remove(path(name));
  }
  fs::remove_all(path("shop/AutoLoadData"));
  fs::create_directory(path("shop/AutoLoadData"));
  work(wide);
  if (Pairs(data(), version()).isWriteUnderWay()) refuseAndRepair();
  // Error 3045 where another user is in: there is none.
  (void)jet::Database::open(data(), {.readOnly = false, .exclusive = true});
  (void)jetcheck::checkFile(data(), [&](const std::string& line) { fault(line); });
  check(kFirstDay + kDays - 1 + (wide ? kLaterDays : 0));
}

void Rounds::work(bool wide) {
  const bool dies = report_.rounds > 0 && below(3) == 0;
  const int writes = dies ? 1 + below(transactions_ * kWritesOfTransaction) : 0;
  const std::string lastDay = std::to_string(kFirstDay + kDays - 1);
  ChildProcess till(
      {QUENBROOK_TILL, options_.ignoreCounts ? "ignore-counts" : "work", data(), path("till.log"),
       std::to_string(random_()), std::to_string(kFirstDay), lastDay, std::to_string(writes)},
      path("till.out"));
  while (readFile(path("till.log")).empty() && till.running()) std::this_thread::yield();
  doneBeforeJob_ = countDone(readLog(path("till.log")));
  ChildProcess job(
      {path("shop/quenbrook"), wide ? "T2013/08/01-2013/08/05" : "T2013/08/01-2013/08/03"},
      path("job.out"));

  watch(job, till, dies);
  jobStatus_ = job.wait();
  report_.jobsKilled += jobStatus_ == kKilled ? 1 : 0;
  report_.jobsEnded += jobStatus_ == 0 ? 1 : 0;
  if (jobStatus_ == 0) {
    transactions_ = 1 + static_cast<int>(countDone(readLog(path("till.log"))));
  }
  if (till.running()) {
    // Long enough to write what it has cached.
    const auto enough = countDone(readLog(path("till.log"))) + kTransactionsAfterJob;
    while (till.running() && countDone(readLog(path("till.log"))) < enough) {
      std::this_thread::yield();
    }
    till.kill(SIGTERM);
  }
  report_.tillsKilled += till.wait() == kKilled ? 1 : 0;
  if (till.wait() != 0 && till.wait() != kKilled) fault("the till: " + readFile(path("till.out")));
  const bool mayFail = wide || Pairs(data(), version()).isWriteUnderWay();
  if (jobStatus_ != 0 && jobStatus_ != kKilled && !(jobStatus_ == 1 && mayFail)) {
    fault("the job: " + readFile(path("job.out")) + readFile(path("shop/quenbrook-errors.log")));
  }
}

// Until the job is over, and the till if it is to die.
void Rounds::watch(ChildProcess& job, ChildProcess& till, bool tillDies) {
  bool killsJob = report_.rounds > 0 && below(4) != 0;
  const bool killsTill = report_.rounds > 0 && !tillDies && below(4) == 0;
  const Moment jobMoment = anyMoment();
  const Moment tillMoment = anyMoment();
  Pairs pairs(data(), version());
  Moment now;
  for (; job.running() || (tillDies && till.running()); ++now.looks) {
    pairs.look();
    if (now.counts == 0 && pairs.counts() != 0) looksBeforeMarks_ = now.looks;
    if (now.counts != pairs.counts()) now = {pairs.counts(), 0};
    if (killsJob && now >= jobMoment) {
      job.kill(SIGKILL);
      killsJob = false;
    }
    if (killsTill && now >= tillMoment) till.kill(SIGKILL);
    std::this_thread::yield();
  }
  if (now.counts != 0) marking_ = now.counts;
}

// Before the first mark or among the marks.
Moment Rounds::anyMoment() {
  return below(2) == 0 ? Moment{0, below(looksBeforeMarks_)}
                       : Moment{1 + below(marking_), below(40)};
}

void Rounds::refuseAndRepair() {
  ++report_.killedInWrite;
  const std::string before = readFile(data());
  try {
    (void)jet::Database::open(data(), {.readOnly = false});
    fault("a file left in the middle of a write was opened");
  } catch (const RuntimeError& refusal) {
    if (refusal.number() != error::kDamaged) throw;
  }
  if (readFile(data()) != before) fault("a file left in the middle of a write was changed");
  mustRun({QUENBROOK_TILL, "repair", data()});
}

void Rounds::check(double lastDay) {
  const std::vector<Transaction> log = readLog(path("till.log"));
  report_.transactions += countDone(log);
  Shop now = readShop(data());
  checkRows(now, log);
  checkMarks(now, log, lastDay);
  shop_ = std::move(now);
}

void Rounds::checkRows(const Shop& now, std::span<const Transaction> log) {
  std::map<std::string, std::size_t> expected = shop_.rows;
  std::set<std::string> unknown;  // of a transaction that may be half done
  for (const Transaction& transaction : log) {
    for (std::size_t i = 0; i < transaction.rows.size(); ++i) {
      const std::string& row = transaction.rows[i];
      if (!transaction.done()) {
        unknown.insert(row);
      } else if (transaction.hashes.at(i) == 0) {
        expected.erase(row);
      } else {
        expected[row] = transaction.hashes[i];
      }
    }
  }
  for (const auto& [row, hash] : expected) {
    if (unknown.contains(row)) continue;
    const auto found = now.rows.find(row);
    if (found == now.rows.end()) {
      fault(row + " is gone");
    } else if (found->second != hash) {
      fault(row + " has other values than the till gave it");
    }
  }
  for (const auto& [row, hash] : now.rows) {
    if (!unknown.contains(row) && !expected.contains(row)) {
      fault(row + " was not there, or deleted");
    }
  }
}

support::SaleStatements Rounds::statements() const {
  std::string text;  // of the only file that has any: the lock file is empty
  for (const auto& file : fs::directory_iterator(path("shop/AutoLoadData"))) {
    text += readFile(file.path());
  }
  return support::statementsOfSales(text);
}

void Rounds::checkMarks(const Shop& now, std::span<const Transaction> log, double lastDay) {
  const std::set<int> touched = salesOf(log);
  const std::set<int> touchedSinceJob = salesOf(log.subspan(doneBeforeJob_));
  const bool halfDone = !log.empty() && !log.back().done();
  const std::set<int> unknown = halfDone ? salesOf(log.last(1)) : std::set<int>();
  const support::SaleStatements written = statements();
  for (const auto& [sale, day] : now.sales) {
    const std::string name = "sale " + std::to_string(sale);
    const bool markedBefore = shop_.marked.contains(sale) && !touched.contains(sale);
    if (now.marked.contains(sale)) {
      if (markedBefore || unknown.contains(sale)) continue;
      ++report_.marks;
      const auto found = written.find(sale);
      const int sent = found == written.end() ? 0 : static_cast<int>(found->second.size());
      const auto items = now.items.find(sale);
      const int wanted = 1 + (items == now.items.end() ? 0 : items->second);
      if (sent != wanted) {
        fault(name + " is marked, and " + std::to_string(sent) + " of its " +
              std::to_string(wanted) + " statements were written");
      } else if (touched.contains(sale) &&
                 found->second[0].find(", " + std::to_string(now.prices.at(sale)) + ", ") ==
                     std::string::npos) {
        fault(name + " is marked, and an older price was sent");
      }
    } else if (markedBefore) {
      fault(name + " has lost its mark");
    } else if (jobStatus_ == 0 && day <= lastDay && !touchedSinceJob.contains(sale)) {
      fault(name + " is not marked, though a job went through");
    }
  }
}

}  // namespace

Report runRounds(const Options& options) { return Rounds(options).run(); }

}  // namespace till
