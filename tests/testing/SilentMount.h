#pragma once

#include <linux/fuse.h>
#include <sys/types.h>

#include <atomic>
#include <string>

namespace ombrelian::testing {

/// A mounted file system of a process of its own, which stops answering on command. It contains
/// the folders "a" (files "a1", "a2"), "b" (file "b1", folder "c" with file "c1") and the file
/// "top"; every file has 100 bytes. Files can be made and renamed, but keep nothing. Use it in
/// runWithOwnMounts.
class SilentMount {
 public:
  /// Numbers of the objects; kFirstNew: the first file that is made.
  enum Object : std::uint64_t {
    kAny = 0,
    kRoot = 1,
    kA,
    kA1,
    kA2,
    kB,
    kB1,
    kC,
    kC1,
    kTop,
    kFirstNew
  };

  explicit SilentMount(const std::string& path);

  /// Ends the server, so that every waiting call fails.
  ~SilentMount();
  SilentMount(const SilentMount&) = delete;
  SilentMount& operator=(const SilentMount&) = delete;

  bool isMounted() const { return server_ > 0; }

  /// Requests of this kind (FUSE_LOOKUP and so on) for this object get no answer until answer().
  void silence(std::uint32_t request, Object object);

  /// Answers everything, also the requests that wait.
  void answer();

 private:
  struct Order {
    std::atomic<std::uint32_t> request{0};
    std::atomic<std::uint64_t> object{0};
  };

  static void serve(int device, const Order& order);

  const std::string path_;
  Order* order_ = nullptr;  // in memory that both processes share
  pid_t server_ = 0;
};

}  // namespace ombrelian::testing
