#include "extract/statement_writer.h"

#include <optional>
#include <utility>

namespace extract {

namespace {

// With 16 KiB the threads wake each other so often that it costs a twentieth of the job.
constexpr std::size_t kBatchBytes = std::size_t{64} << 10U;
constexpr std::size_t kMaxWaiting = 64;  // batches

}  // namespace

StatementWriter::StatementWriter(std::string path)
    : path_(std::move(path)), thread_([this] { run(); }) {}

StatementWriter::~StatementWriter() {
  {
    const std::lock_guard lock(mutex_);
    if (!filling_.ends.empty()) waiting_.push_back(std::move(filling_));
    ended_ = true;
  }
  wake_.notify_one();
  thread_.join();
}

void StatementWriter::append(std::string_view statement) {
  filling_.bytes.append(statement).append(kLineEnd);
  filling_.ends.push_back(filling_.bytes.size());
  filling_.last = ++enqueued_;
  if (filling_.bytes.size() >= kBatchBytes) handOver();
}

void StatementWriter::handOver() {
  std::unique_lock lock(mutex_);
  if (waiting_.size() >= kMaxWaiting) wait(lock, waiting_.front().last);
  if (failure_) std::rethrow_exception(failure_);
  waiting_.push_back(std::exchange(filling_, {}));
  if (!spare_.empty()) {
    filling_ = std::move(spare_.back());
    spare_.pop_back();
  }
  wake_.notify_one();
}

void StatementWriter::waitFor(std::size_t count) {
  if (appended_ >= count) return;
  if (!filling_.ends.empty() && count > enqueued_ - filling_.ends.size()) handOver();
  std::unique_lock lock(mutex_);
  wait(lock, count);
}

void StatementWriter::wait(std::unique_lock<std::mutex>& lock, std::size_t count) {
  awaited_ = count;
  progress_.wait(lock, [&] { return failure_ || appended_ >= count; });
  awaited_ = SIZE_MAX;
  if (appended_ < count) std::rethrow_exception(failure_);
}

void StatementWriter::run() {
  platform::ownOpenFiles();
  std::optional<platform::FileAppender> file;
  std::unique_lock lock(mutex_);
  while (true) {
    wake_.wait(lock, [&] { return ended_ || !waiting_.empty(); });
    if (waiting_.empty()) return;
    Batch batch = std::move(waiting_.front());
    waiting_.pop_front();
    lock.unlock();
    std::exception_ptr failure;
    try {
      if (!file) file.emplace(path_);
      appendAll(*file, batch);
    } catch (...) {
      failure = std::current_exception();
    }
    batch.clear();
    lock.lock();
    spare_.push_back(std::move(batch));
    failure_ = failure;
    if (failure_ || appended_ >= awaited_) progress_.notify_one();
    if (failure_) return;
  }
}

void StatementWriter::appendAll(platform::FileAppender& file, const Batch& batch) {
  std::size_t start = 0;
  std::size_t count = appended_.load(std::memory_order_relaxed);  // written by this thread only
  for (const std::size_t end : batch.ends) {
    file.append(std::string_view(batch.bytes).substr(start, end - start));
    appended_.store(++count, std::memory_order_release);
    start = end;
  }
}

}  // namespace extract
