#pragma once

#include <optional>
#include <string>

#include "platform/Process.h"

namespace ombrelian::platform {

/// Takes the mark `name` if no other process holds it. It is not held if one does, or if the system
/// has no place for marks; `isTaken` tells these cases apart.
NamedMutex TakeMutexW(TextView name, bool& isTaken);

/// What became of a message to another process.
enum class Delivery {
  Answered,     // the other process has it
  NotAnswered,  // it was sent, but the other process did not answer in time
  NobodyThere,  // no process listens
};

/// Sends a message to the process of this user that listens under `name`, and waits at most
/// `milliseconds` for its answer. A process of another user gets nothing.
Delivery SendToInstance(TextView name, std::string_view message, unsigned milliseconds);

/// A connection of a process that sends a message. Nothing waits: the caller reads each time when
/// the handle becomes readable.
class InstanceCall {
 public:
  enum class State { Open, Complete, Refused };

  explicit InstanceCall(std::intptr_t handle) : handle_(handle) {}
  ~InstanceCall();
  InstanceCall(const InstanceCall&) = delete;
  InstanceCall& operator=(const InstanceCall&) = delete;

  std::intptr_t handle() const { return handle_; }

  /// Reads what has arrived. Refused: another user sends, the message is too long, or the
  /// connection broke.
  State read();

  /// The message so far.
  const std::string& message() const { return message_; }

  /// Tells the sender that its message has arrived.
  void answer();

 private:
  const std::intptr_t handle_;
  std::string message_;
};

/// The place where other processes of this user find this one. It exists as long as this object,
/// and only one process may have it under a name: the one that holds the mark of that name. A place
/// that a killed process left is taken over.
class InstanceListener {
 public:
  InstanceListener() = default;
  ~InstanceListener();
  InstanceListener(const InstanceListener&) = delete;
  InstanceListener& operator=(const InstanceListener&) = delete;

  /// Begins to listen; the names are those of marks.
  ErrorCode open(TextView name);

  bool isOpen() const { return handle_ >= 0; }

  /// Becomes readable when a process connects.
  std::intptr_t handle() const { return handle_; }

  /// The next process that connected; null: none waits.
  std::unique_ptr<InstanceCall> accept();

 private:
  std::intptr_t handle_ = -1;
  std::string path_;
};

}  // namespace ombrelian::platform
