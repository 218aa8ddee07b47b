#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "support/Text.h"

namespace ombrelian::testing {

/// A new folder that is removed with all its contents at the end. Names are bytes, relative to it.
class TestFolder {
 public:
  /// The place of the folder: on the disk, or in memory, where many entries are made quickly.
  enum class Place { Disk, Memory };

  explicit TestFolder(Place place = Place::Disk);
  ~TestFolder();
  TestFolder(const TestFolder&) = delete;
  TestFolder& operator=(const TestFolder&) = delete;

  const std::string& path() const { return path_; }
  std::string path(std::string_view name) const;
  Text text() const { return fromBytes(path_); }
  Text text(std::string_view name) const { return fromBytes(path(name)); }

  /// Makes a folder and all folders above it.
  void folder(std::string_view name) const;

  /// Makes a file of `size` bytes without blocks on the disk, and the folders above it.
  void file(std::string_view name, std::int64_t size = 0) const;

  /// Makes or overwrites a file with the given content, and makes the folders above it.
  void write(std::string_view name, std::string_view content) const;

  void symlink(std::string_view name, std::string_view target) const;
  void hardlink(std::string_view name, std::string_view existing) const;
  void rename(std::string_view from, std::string_view to) const;
  void chmod(std::string_view name, unsigned mode) const;

  /// Whether an object exists; a link counts if its target exists.
  bool has(std::string_view name) const;

  /// The mode of the object itself.
  unsigned modeOf(std::string_view name) const;

  /// Makes `levels` folders with the name `name`, each in the previous one, from `base` on. Returns
  /// the descriptor of the innermost folder, which the caller must close.
  int chain(std::string_view name, int levels, std::string_view base = {}) const;

 private:
  std::string path_;
};

/// The bytes of a whole file; empty if it cannot be read.
std::string readFile(const std::string& path);

/// A report as text; the byte order mark is checked and removed.
Text readReport(const std::string& path);

/// The lines of a text without CR LF.
std::vector<Text> lines(TextView text);

/// The output of a program that ends without an error.
std::string outputOf(const std::string& command);

/// The sorted names in a folder.
std::vector<std::string> namesIn(const std::string& path);

}  // namespace ombrelian::testing
