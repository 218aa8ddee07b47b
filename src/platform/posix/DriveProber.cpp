#include "platform/posix/DriveProber.h"

#include <errno.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <map>
#include <mutex>
#include <set>
#include <system_error>
#include <thread>

#include "platform/posix/Errors.h"
#include "platform/posix/SignalsBlocked.h"

namespace ombrelian::platform {
namespace {

/// Bytes of so many blocks; a file system that makes its figures up may claim more than there are
/// numbers for.
std::int64_t bytesOf(std::uint64_t blocks, std::uint64_t blockSize) {
  constexpr auto kMost = std::uint64_t(INT64_MAX);
  if (blockSize != 0 && blocks > kMost / blockSize) return INT64_MAX;
  return std::int64_t(blocks * blockSize);
}

DiskSpace spaceOf(const struct statvfs& told) {
  const std::uint64_t cluster = told.f_frsize != 0 ? told.f_frsize : told.f_bsize;
  // Space that only the superuser may fill is free as well. Some file systems report a number below
  // zero.
  const std::uint64_t free = std::int64_t(told.f_bfree) < 0 ? 0 : told.f_bfree;
  DiskSpace space;
  space.totalBytes = bytesOf(told.f_blocks, cluster);
  space.freeBytes = std::min(bytesOf(free, cluster), space.totalBytes);
  space.clusterBytes = bytesOf(1, cluster);
  return space;
}

}  // namespace

DriveReport askDrive(const std::string& root) {
  DriveReport report;
  struct statx entry;
  constexpr int kFlags = AT_STATX_DONT_SYNC | AT_NO_AUTOMOUNT;
  if (statx(AT_FDCWD, root.c_str(), kFlags, STATX_TYPE, &entry) == 0) {
    report.isFolder = S_ISDIR(entry.stx_mode);
  }
  struct statvfs told;
  if (statvfs(root.c_str(), &told) != 0) {
    report.error = translateErrno(errno);
    return report;
  }
  report.error = kSuccess;
  report.space = spaceOf(told);
  return report;
}

/// Shared by the prober and its threads; lives as long as any of them.
struct DriveProber::State {
  explicit State(Question toAsk) : question(std::move(toAsk)) {}

  bool areAnswered(const std::set<std::string>& roots) const {
    return std::none_of(roots.begin(), roots.end(),
                        [this](const std::string& root) { return open.contains(root); });
  }

  /// Questions that no thread has begun are given up.
  void dropWaiting() {
    for (const std::string& root : waiting)
      open.erase(root);
    waiting.clear();
  }

  const Question question;
  std::mutex mutex;  // guards all that follows
  std::condition_variable answered;
  std::deque<std::string> waiting;  // no thread has taken them yet
  std::set<std::string> open;       // those, and those that a thread is at
  std::map<std::string, DriveReport> answers;
  unsigned threads = 0;
};

DriveProber::DriveProber(Question question)
    : state_(std::make_shared<State>(std::move(question))) {}
DriveProber::~DriveProber() {
  const std::lock_guard lock(state_->mutex);
  state_->dropWaiting();
}

std::vector<DriveReport> DriveProber::ask(const std::vector<std::string>& roots,
                                          std::chrono::milliseconds limit) {
  const auto end = std::chrono::steady_clock::now() + limit;
  std::unique_lock lock(state_->mutex);
  state_->answers.clear();
  std::set<std::string> asked;
  for (const std::string& root : roots) {
    if (!state_->open.insert(root).second) continue;
    asked.insert(root);
    state_->waiting.push_back(root);
  }
  startThreads();
  state_->answered.wait_until(lock, end, [&] { return state_->areAnswered(asked); });
  state_->dropWaiting();
  std::vector<DriveReport> reports;
  for (const std::string& root : roots) {
    const auto answer = state_->answers.find(root);
    reports.push_back(answer != state_->answers.end() ? answer->second : DriveReport());
  }
  return reports;
}

/// To be called with the mutex locked.
void DriveProber::startThreads() {
  const SignalsBlocked signals;
  try {
    for (std::size_t i = 0; i < state_->waiting.size() && state_->threads < kMostThreads; ++i) {
      std::thread([state = state_] { work(*state); }).detach();
      ++state_->threads;
    }
  } catch (const std::system_error&) {
    return;  // the threads that could be started must do
  }
}

void DriveProber::work(State& state) {
  std::unique_lock lock(state.mutex);
  while (!state.waiting.empty()) {
    const std::string root = std::move(state.waiting.front());
    state.waiting.pop_front();
    lock.unlock();
    DriveReport report;
    try {
      report = state.question(root);
    } catch (...) {
      report.error = kGeneralFailure;
    }
    lock.lock();
    state.open.erase(root);
    state.answers[root] = report;
    state.answered.notify_all();
  }
  --state.threads;
}

}  // namespace ombrelian::platform
