#include "platform/FolderWalk.h"

#include <optional>

#include "platform/posix/DirectWalk.h"
#include "platform/posix/PatientCalls.h"

namespace ombrelian::platform {

/// A walk whose calls are made here if no file system can hang, and otherwise in the thread of
/// PatientCalls, except for those that need no system call. If this thread gives up, the walk is
/// left to that thread with its helpers.
class FolderWalk::Implementation {
 public:
  Implementation(int helpers, WalkReach reach, LeavesOut leavesOut)
      : helpers_(helpers), reach_(reach), leavesOut_(std::move(leavesOut)) {}
  ~Implementation() { leave(); }
  Implementation(const Implementation&) = delete;
  Implementation& operator=(const Implementation&) = delete;

  ErrorCode openSource(TextView path);
  ErrorCode openCurrent();
  const FindData* next();
  void close();
  ErrorCode listError() const { return walk_ == nullptr ? kTimeout : walk_->listError(); }
  TextView name();
  Text reparseTarget(TextView path, ErrorCode& error);
  std::size_t depth() const { return depth_; }
  bool hasGivenUp() const { return calls_ && walk_ == nullptr; }

 private:
  using Walk = DirectWalk;

  template <class Call, class Result = std::invoke_result_t<Call&, Walk&>>
  Result ask(bool isQuick, Call call, Result silent);
  void leave();

  const int helpers_;
  const WalkReach reach_;
  const LeavesOut leavesOut_;
  std::shared_ptr<Walk> walk_;         // null: it was left because of a file system that hangs
  std::optional<PatientCalls> calls_;  // none: all calls are made in this thread
  std::size_t depth_ = 0;

  // The current entry with its name, if the walk may be left.
  FindData entry_;
  Text name_;
};

/// Result of a call of the walk; `silent` if this thread gave up.
template <class Call, class Result>
Result FolderWalk::Implementation::ask(bool isQuick, Call call, Result silent) {
  if (walk_ == nullptr) return silent;
  if (!calls_ || isQuick) return call(*walk_);
  const auto answer = std::make_shared<Result>();
  if (calls_->run([walk = walk_, call, answer] { *answer = call(*walk); })) return *answer;
  leave();
  return silent;
}

/// Ends the walk, without waiting for a file system that hangs.
void FolderWalk::Implementation::leave() {
  if (calls_ && walk_ != nullptr) {
    calls_->runLast(
        [walk = std::make_shared<std::shared_ptr<Walk>>(std::move(walk_))] { walk->reset(); });
  }
  walk_.reset();
}

ErrorCode FolderWalk::Implementation::openSource(TextView path) {
  leave();
  calls_.reset();
  // Links and mount points can lead to a slow mount from any source.
  const std::optional<std::string> mount = patientMountAround(path);
  if (mount) calls_.emplace(*mount);
  walk_ = std::make_shared<Walk>(helpers_, reach_, mount && MayNotAnswer(path), leavesOut_);
  const ErrorCode error = ask(
      false, [path = Text(path)](Walk& walk) { return walk.openSource(path); }, kTimeout);
  depth_ = error == kSuccess ? 1 : 0;
  return error;
}

ErrorCode FolderWalk::Implementation::openCurrent() {
  const bool isQuick = calls_ && walk_ != nullptr && walk_->isOpenCurrentQuick();
  const ErrorCode error = ask(
      isQuick, [](Walk& walk) { return walk.openCurrent(); }, kTimeout);
  if (error == kSuccess) ++depth_;
  return error;
}

const FindData* FolderWalk::Implementation::next() {
  if (!calls_) return walk_->next();
  const bool isQuick = walk_ != nullptr && walk_->isNextQuick();
  const FindData* const none = nullptr;
  const FindData* const entry = ask(
      isQuick, [](Walk& walk) { return walk.next(); }, none);
  if (entry == nullptr) return nullptr;
  entry_ = *entry;
  return &entry_;
}

void FolderWalk::Implementation::close() {
  const bool isQuick = calls_ && walk_ != nullptr && walk_->isCloseQuick();
  const auto close = [](Walk& walk) {
    walk.close();
    return true;
  };
  ask(isQuick, close, false);
  --depth_;
}

TextView FolderWalk::Implementation::name() {
  if (!calls_) return walk_->name();
  if (walk_ != nullptr) name_ = walk_->name();
  return name_;
}

Text FolderWalk::Implementation::reparseTarget(TextView path, ErrorCode& error) {
  struct Target {
    Text text;
    ErrorCode error = kSuccess;
  };
  const auto read = [path = Text(path)](Walk& walk) {
    Target target;
    target.text = walk.reparseTarget(path, target.error);
    return target;
  };
  Target target = ask(false, read, Target{{}, kTimeout});
  error = target.error;
  return std::move(target.text);
}

FolderWalk::FolderWalk(int helpers, WalkReach reach, LeavesOut leavesOut)
    : implementation_(std::make_unique<Implementation>(helpers, reach, std::move(leavesOut))) {}
FolderWalk::~FolderWalk() = default;
ErrorCode FolderWalk::openSource(TextView path) { return implementation_->openSource(path); }
ErrorCode FolderWalk::goIn() { return implementation_->openCurrent(); }
const FindData* FolderWalk::nextEntry() { return implementation_->next(); }
ErrorCode FolderWalk::listError() const { return implementation_->listError(); }
void FolderWalk::goOut() { implementation_->close(); }
TextView FolderWalk::name() { return implementation_->name(); }
std::size_t FolderWalk::depth() const { return implementation_->depth(); }

Text FolderWalk::reparseTarget(TextView path, ErrorCode& error) const {
  return implementation_->reparseTarget(path, error);
}

bool FolderWalk::hasGivenUp() const { return implementation_->hasGivenUp(); }

ErrorCode CheckReparseFolder(TextView path) {
  return askPatiently(
      patientMountOf(path), [path = toBytes(path)] { return checkReparseFolder(path); }, kTimeout);
}

}  // namespace ombrelian::platform
