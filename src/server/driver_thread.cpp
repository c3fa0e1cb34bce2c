#include "server/driver_thread.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <string>

namespace server::odbc {
namespace {

std::string secondsText(std::chrono::milliseconds time) {
  const auto count = time.count();
  return count % 1000 == 0 ? std::to_string(count / 1000) + " s" : std::to_string(count) + " ms";
}

}  // namespace

TimeLimitExceeded::TimeLimitExceeded(std::chrono::milliseconds limit)
    : Fault("The server did not answer within " + secondsText(limit) + ".") {}

// Shared by the owner and the thread, as the thread may outlive the owner.
struct DriverThread::Queue {
  std::mutex mutex;
  std::condition_variable changed;
  std::deque<std::function<void()>> tasks;
  bool closed = false;

  void serve() {
    while (true) {
      std::function<void()> task;
      {
        std::unique_lock lock(mutex);
        changed.wait(lock, [this] { return closed || !tasks.empty(); });
        if (tasks.empty()) return;
        task = std::move(tasks.front());
        tasks.pop_front();
      }
      task();
    }
  }
};

DriverThread::DriverThread() : queue_(std::make_shared<Queue>()) {
  thread_ = std::thread([queue = queue_] { queue->serve(); });
}

DriverThread::~DriverThread() {
  {
    const std::lock_guard lock(queue_->mutex);
    queue_->closed = true;
  }
  queue_->changed.notify_one();
  if (abandoned_) {
    thread_.detach();
  } else {
    thread_.join();
  }
}

void DriverThread::enqueue(std::function<void()> task) {
  {
    const std::lock_guard lock(queue_->mutex);
    queue_->tasks.push_back(std::move(task));
  }
  queue_->changed.notify_one();
}

void DriverThread::abandon(std::chrono::milliseconds limit) {
  abandoned_ = true;
  throw TimeLimitExceeded(limit);
}

}  // namespace server::odbc
