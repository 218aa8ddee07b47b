#include "platform/Instance.h"

#include <errno.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <chrono>
#include <cstring>

#include "platform/posix/Errors.h"
#include "platform/posix/Marks.h"

namespace ombrelian::platform {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t kMostBytes = (std::size_t(1) << 20) + 4096;  // payload, header and token
constexpr int kWaiting = 64;  // connections that the system keeps for accept()
constexpr char kAnswer = 'a';

/// Address of the socket in an open folder. Such a path is short, unlike that of the folder.
sockaddr_un addressIn(const Descriptor& folder, const std::string& name) {
  sockaddr_un address = {};
  address.sun_family = AF_UNIX;
  const std::string path = "/proc/self/fd/" + std::to_string(folder.get()) + "/" + name;
  std::strncpy(address.sun_path, path.c_str(), sizeof address.sun_path - 1);
  return address;
}

std::string socketName(TextView name) { return markName(name) + ".socket"; }

bool isOfThisUser(int socket) {
  ucred peer = {};
  socklen_t size = sizeof peer;
  return getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 && peer.uid == geteuid();
}

/// Waits until `socket` is ready for `events`; false: not before `end`.
bool waitFor(int socket, short events, Clock::time_point end) {
  for (;;) {
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now());
    pollfd wanted = {socket, events, 0};
    const int ready = poll(&wanted, 1, int(std::max<std::int64_t>(left.count(), 0)));
    if (ready > 0) return true;
    if (ready == 0 || errno != EINTR) return false;
  }
}

/// Sends everything until `end`.
bool sendAll(int socket, std::string_view bytes, Clock::time_point end) {
  while (!bytes.empty()) {
    const ssize_t sent = send(socket, bytes.data(), bytes.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
    if (sent > 0) {
      bytes.remove_prefix(std::size_t(sent));
    } else if (errno != EINTR && (errno != EAGAIN || !waitFor(socket, POLLOUT, end))) {
      return false;
    }
  }
  return shutdown(socket, SHUT_WR) == 0;
}

}  // namespace

Delivery SendToInstance(TextView name, std::string_view message, unsigned milliseconds) {
  const Clock::time_point end = Clock::now() + std::chrono::milliseconds(milliseconds);
  const Descriptor folder = runtimeFolder();
  const Descriptor connection(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
  if (!folder || !connection) return Delivery::NobodyThere;
  const sockaddr_un address = addressIn(folder, socketName(name));
  const auto* const generic = reinterpret_cast<const sockaddr*>(&address);
  if (connect(connection.get(), generic, sizeof address) != 0 || !isOfThisUser(connection.get()))
    return Delivery::NobodyThere;
  if (!sendAll(connection.get(), message, end)) return Delivery::NotAnswered;
  char answer = 0;
  const bool isAnswered =
      waitFor(connection.get(), POLLIN, end) && recv(connection.get(), &answer, 1, 0) == 1;
  return isAnswered && answer == kAnswer ? Delivery::Answered : Delivery::NotAnswered;
}

InstanceCall::~InstanceCall() { close(int(handle_)); }

InstanceCall::State InstanceCall::read() {
  char buffer[16 * 1024];
  for (;;) {
    const ssize_t got = recv(int(handle_), buffer, sizeof buffer, MSG_DONTWAIT);
    if (got == 0) return State::Complete;
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return errno == EAGAIN ? State::Open : State::Refused;
    message_.append(buffer, std::size_t(got));
    if (message_.size() > kMostBytes) return State::Refused;
  }
}

void InstanceCall::answer() {
  // A sender that does not wait any more needs no answer.
  [[maybe_unused]] const ssize_t sent =
      send(int(handle_), &kAnswer, 1, MSG_NOSIGNAL | MSG_DONTWAIT);
}

InstanceListener::~InstanceListener() {
  if (!isOpen()) return;
  const Descriptor folder = runtimeFolder();
  if (folder) unlinkat(folder.get(), path_.c_str(), 0);
  close(int(handle_));
}

ErrorCode InstanceListener::open(TextView name) {
  const Descriptor folder = runtimeFolder();
  if (!folder) return kPathNotFound;
  Descriptor place(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
  if (!place) return translateErrno(errno);
  path_ = socketName(name);
  // The holder of the mark is the only one who may listen, so this one is of a killed program.
  unlinkat(folder.get(), path_.c_str(), 0);
  const sockaddr_un address = addressIn(folder, path_);
  const auto* const generic = reinterpret_cast<const sockaddr*>(&address);
  if (bind(place.get(), generic, sizeof address) != 0 || listen(place.get(), kWaiting) != 0)
    return translateErrno(errno);
  handle_ = place.release();
  return kSuccess;
}

std::unique_ptr<InstanceCall> InstanceListener::accept() {
  for (;;) {
    Descriptor call(accept4(int(handle_), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
    if (!call) {
      if (errno == EINTR || errno == ECONNABORTED) continue;
      return nullptr;
    }
    if (isOfThisUser(call.get())) return std::make_unique<InstanceCall>(call.release());
  }
}

}  // namespace ombrelian::platform
