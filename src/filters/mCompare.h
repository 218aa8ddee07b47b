#pragma once

#include <functional>
#include <set>
#include <vector>

#include "filters/LikePattern.h"
#include "settings/WalkFilters.h"

namespace ombrelian {

/// Decides which objects a walk leaves out, and which files the file list shows. The setters
/// compile the patterns of the options and store the trimmed text there; the checks use the
/// compiled patterns. Comparisons ignore case by the rules of the user's locale.
///
/// A list of patterns is a text with commas between the patterns, without blanks; it ends at its
/// first empty pattern. An exclude list leaves out objects that match any of its patterns. An
/// include list keeps objects that match all of its patterns, by name or by path. The file list
/// shows files that match any pattern.
class mCompare {
 public:
  explicit mCompare(const TextRules& rules) : rules_(rules) {}

  void SetFileFilterInclude(Options& options);
  void SetFileFilter(Options& options);
  void SetFolderFilterExclude(Options& options);
  void SetFolderFilterInclude(Options& options);
  void SetFileFilterFileList(Options& options);

  /// Sets the four filters of walks that another scan had.
  void setWalkFilters(const WalkFilters& filters);

  /// Set plain lists of extensions, which must be in lower case, without dots and blanks.
  void SetExtFilter(const Options& options);
  void SetTopFilesExtFilter(const Options& options);

  /// True: the folder or the file is left out. `FullPath` is the path of the parent, a separator
  /// and the name. No memory is allocated.
  bool CheckFolderFilter(TextView Name, TextView FullPath);
  bool Check_FolderList_FileFilter(TextView Name, TextView FullPath);

  /// A copy of CheckFolderFilter() for other threads, which reports no malformed pattern; empty: no
  /// folder is left out.
  std::function<bool(TextView Name, TextView FullPath)> folderFilter() const;

  /// Whether the two functions above can leave anything out; if not, they need not be called.
  bool filtersFolders() const { return folderExclude_.isOn() || folderInclude_.isOn(); }
  bool filtersFiles() const { return fileInclude_.isOn() || fileExclude_.isOn(); }

  /// True: the file is not shown.
  bool CheckFileFilterFileList(TextView Name);

  /// Whether a file with the extension (any case, no dot) counts for the extension list, or may
  /// enter the list of the largest files.
  bool passesExtFilter(TextView extension) { return passes(extensions_, extension); }
  bool passesTopFilesExtFilter(TextView extension) { return passes(topExtensions_, extension); }

  /// Begins a run: each malformed pattern is reported once in a run.
  void startRun() { reported_.clear(); }

 private:
  struct PatternList {
    bool isActive = false;
    std::vector<LikePattern> patterns;

    bool isOn() const { return isActive && !patterns.empty(); }
  };

  enum class Answer { No, Yes, Malformed };

  void compile(std::uint8_t active, Text& setting, PatternList& list) const;
  static Answer answerOf(const LikePattern& pattern, TextView name, TextView path);
  template <class Ask>
  static bool leavesOut(const std::vector<LikePattern>& patterns, bool excludes, Ask ask);
  Answer fits(const LikePattern& pattern, TextView name, TextView path, TextView procedure);
  bool isExcluded(const PatternList& list, TextView name, TextView path, TextView procedure);
  bool isNotIncluded(const PatternList& list, TextView name, TextView path, TextView procedure);
  bool passes(const Text& extensions, TextView extension);

  const TextRules& rules_;
  PatternList folderExclude_;
  PatternList folderInclude_;
  PatternList fileInclude_;
  PatternList fileExclude_;
  PatternList fileList_;
  Text extensions_;          // ",jpg,png,"; empty: everything passes
  Text topExtensions_;       // ",jpg,png,"; empty: everything passes
  Text search_;              // search text of passes(); kept to reuse its memory
  std::set<Text> reported_;  // malformed patterns of this run
};

}  // namespace ombrelian
