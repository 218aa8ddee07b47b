#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "support/Text.h"

namespace ombrelian::testing {

/// A new folder that goes with all it holds when the test ends. Names are bytes, relative to it.
class TestFolder {
 public:
  /// Where a folder is made: among other files, or, for many entries, where making them is quick.
  enum class Place { Disk, Memory };

  explicit TestFolder(Place place = Place::Disk);
  ~TestFolder();
  TestFolder(const TestFolder&) = delete;
  TestFolder& operator=(const TestFolder&) = delete;

  const std::string& path() const { return path_; }
  std::string path(std::string_view name) const;
  Text text() const { return fromBytes(path_); }
  Text text(std::string_view name) const { return fromBytes(path(name)); }

  /// Makes a folder and those above it.
  void folder(std::string_view name) const;

  /// Makes a file of `size` bytes that takes no room on the disk, and the folders above it.
  void file(std::string_view name, std::int64_t size = 0) const;

  /// Makes a file with that content, and the folders above it, or writes over one.
  void write(std::string_view name, std::string_view content) const;

  void symlink(std::string_view name, std::string_view target) const;
  void hardlink(std::string_view name, std::string_view existing) const;
  void rename(std::string_view from, std::string_view to) const;
  void chmod(std::string_view name, unsigned mode) const;

  /// Whether something is there; where a link leads to counts.
  bool has(std::string_view name) const;

  /// The rights of what is there itself.
  unsigned modeOf(std::string_view name) const;

  /// Makes `levels` folders called `name`, each in the one before, from `base` on; returns the
  /// descriptor of the innermost, to be closed by the caller.
  int chain(std::string_view name, int levels, std::string_view base = {}) const;

 private:
  std::string path_;
};

/// Bytes of a whole file; empty if it cannot be read.
std::string readFile(const std::string& path);

/// A report as text: checks the byte order mark and takes it off.
Text readReport(const std::string& path);

/// The lines of a text, without their CR LF.
std::vector<Text> lines(TextView text);

/// What a program prints that ends without an error.
std::string outputOf(const std::string& command);

/// Names in a folder, sorted.
std::vector<std::string> namesIn(const std::string& path);

}  // namespace ombrelian::testing
