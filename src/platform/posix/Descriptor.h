#pragma once

#include <unistd.h>

#include <memory>
#include <utility>

namespace ombrelian::platform {

/// Owns a file descriptor; -1: none.
class Descriptor {
 public:
  Descriptor() = default;
  explicit Descriptor(int fd) : fd_(fd) {}
  Descriptor(Descriptor&& other) noexcept : fd_(std::exchange(other.fd_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    if (this != &other) reset(std::exchange(other.fd_, -1));
    return *this;
  }
  ~Descriptor() { reset(); }

  int get() const { return fd_; }
  explicit operator bool() const { return fd_ >= 0; }
  int release() { return std::exchange(fd_, -1); }
  void reset(int fd = -1) {
    if (fd_ >= 0) close(fd_);
    fd_ = fd;
  }

 private:
  int fd_ = -1;
};

/// An open folder. It is shared by all objects that read it or open other folders below it.
using SharedFolder = std::shared_ptr<const Descriptor>;

}  // namespace ombrelian::platform
