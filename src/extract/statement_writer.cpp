#include "extract/statement_writer.h"

#include <optional>
#include <utility>

namespace extract {

namespace {

constexpr std::size_t kMaxWaiting = std::size_t{4} << 20;  // bytes

}  // namespace

StatementWriter::StatementWriter(std::string path)
    : path_(std::move(path)), thread_([this] { run(); }) {}

StatementWriter::~StatementWriter() {
  {
    const std::lock_guard lock(mutex_);
    ended_ = true;
  }
  wake_.notify_one();
  thread_.join();
}

void StatementWriter::append(std::string_view bytes) {
  std::unique_lock lock(mutex_);
  progress_.wait(lock, [&] { return failure_ || waiting_.bytes.size() < kMaxWaiting; });
  if (failure_) std::rethrow_exception(failure_);
  waiting_.bytes += bytes;
  waiting_.ends.push_back(waiting_.bytes.size());
  ++enqueued_;
  if (std::exchange(idle_, false)) wake_.notify_one();
}

void StatementWriter::waitFor(std::size_t count) {
  if (appended_ >= count) return;
  std::unique_lock lock(mutex_);
  progress_.wait(lock, [&] { return failure_ || appended_ >= count; });
  if (appended_ < count) std::rethrow_exception(failure_);
}

void StatementWriter::run() {
  std::optional<platform::FileAppender> file;
  Batch batch;
  std::unique_lock lock(mutex_);
  while (true) {
    idle_ = waiting_.ends.empty();
    wake_.wait(lock, [&] { return ended_ || !waiting_.ends.empty(); });
    if (waiting_.ends.empty()) return;
    batch.clear();
    std::swap(batch, waiting_);
    lock.unlock();
    progress_.notify_one();
    std::exception_ptr failure;
    try {
      if (!file) file.emplace(path_);
      appendAll(*file, batch);
    } catch (...) {
      failure = std::current_exception();
    }
    lock.lock();
    failure_ = failure;
    progress_.notify_one();
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
