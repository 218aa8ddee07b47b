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

#include "platform/Patience.h"
#include "platform/posix/Errors.h"
#include "platform/posix/SignalsBlocked.h"

namespace ombrelian::platform {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kInterval(30);  // time between two questions to the caller

/// Size of `blocks` blocks in bytes. It is limited to INT64_MAX, because a file system with
/// invented figures may report more.
std::int64_t bytesOf(std::uint64_t blocks, std::uint64_t blockSize) {
  constexpr auto kMost = std::uint64_t(INT64_MAX);
  if (blockSize != 0 && blocks > kMost / blockSize) return INT64_MAX;
  return std::int64_t(blocks * blockSize);
}

DiskSpace spaceOf(const struct statvfs& told) {
  const std::uint64_t cluster = told.f_frsize != 0 ? told.f_frsize : told.f_bsize;
  // Space that only the superuser may fill counts as free. Some file systems report a negative
  // number.
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

/// Data that the prober and its threads share. They exist as long as any of these.
struct DriveProber::State {
  explicit State(Question toAsk) : question(std::move(toAsk)) {}

  bool areAnswered(const std::set<std::string>& roots) const {
    return std::none_of(roots.begin(), roots.end(),
                        [this](const std::string& root) { return open.contains(root); });
  }

  /// Drops the questions that no thread has begun.
  void dropWaiting() {
    for (const std::string& root : waiting)
      open.erase(root);
    waiting.clear();
  }

  const Question question;
  std::mutex mutex;  // guards all members below
  std::condition_variable answered;
  std::deque<std::string> waiting;  // roots that no thread has taken yet
  std::set<std::string> open;       // waiting roots, and roots that a thread asks now
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
  const Clock::time_point begin = Clock::now();
  const Clock::time_point end = begin + limit;
  std::unique_lock lock(state_->mutex);
  std::set<std::string> asked;
  for (const std::string& root : roots) {
    if (!state_->open.insert(root).second) continue;
    state_->answers.erase(root);
    asked.insert(root);
    state_->waiting.push_back(root);
  }
  startThreads();
  const Patience::GoOn* const goOn = Patience::current();
  const auto isOver = [&] { return state_->areAnswered(asked); };
  for (auto now = begin; now < end && !isOver(); now = Clock::now()) {
    state_->answered.wait_until(lock, goOn == nullptr ? end : std::min(end, now + kInterval),
                                isOver);
    if (goOn == nullptr || isOver()) continue;
    lock.unlock();
    const bool goesOn =
        (*goOn)(std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - begin));
    lock.lock();
    if (!goesOn) break;
  }
  state_->dropWaiting();
  std::vector<DriveReport> reports;
  for (const std::string& root : roots) {
    const auto answer = state_->answers.find(root);
    reports.push_back(answer != state_->answers.end() ? answer->second : DriveReport());
  }
  return reports;
}

/// Starts threads for the waiting questions. The caller holds the mutex.
void DriveProber::startThreads() {
  const SignalsBlocked signals;
  try {
    for (std::size_t i = 0; i < state_->waiting.size() && state_->threads < kMostThreads; ++i) {
      std::thread([state = state_] { work(*state); }).detach();
      ++state_->threads;
    }
  } catch (const std::system_error&) {
    return;  // the threads that were started must be enough
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
