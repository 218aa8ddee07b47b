#pragma once

#include <set>
#include <vector>

#include "filters/LikePattern.h"
#include "settings/Options.h"

namespace ombrelian {

/// Decides what a walk leaves out, and which files the file list shows. The setters compile what
/// the options say and put the trimmed text back there; the checks ask what was compiled. A
/// comparison knows no case, by the user's locale.
///
/// A list of patterns is a text with commas between them, no blanks; it ends at its first empty
/// piece. An exclude list leaves out what any of its patterns fits. An include list keeps what all
/// of them fit, by name or by path. The file list shows what any pattern fits.
class mCompare {
 public:
  explicit mCompare(const TextRules& rules) : rules_(rules) {}

  void SetFileFilterInclude(Options& options);
  void SetFileFilter(Options& options);
  void SetFolderFilterExclude(Options& options);
  void SetFolderFilterInclude(Options& options);
  void SetFileFilterFileList(Options& options);

  /// Plain lists of extensions, to be written in lower case, without dots and blanks.
  void SetExtFilter(const Options& options);
  void SetTopFilesExtFilter(const Options& options);

  /// True: leave the folder, or the file, out. `FullPath` is the parent's path, a separator and
  /// the name. Nothing is allocated.
  bool CheckFolderFilter(TextView Name, TextView FullPath);
  bool Check_FolderList_FileFilter(TextView Name, TextView FullPath);

  /// Whether one of the two above can leave anything out; if not, none need be asked.
  bool filtersFolders() const { return folderExclude_.isOn() || folderInclude_.isOn(); }
  bool filtersFiles() const { return fileInclude_.isOn() || fileExclude_.isOn(); }

  /// True: do not show the file.
  bool CheckFileFilterFileList(TextView Name);

  /// Whether a file with the extension (any case, no dot) counts for the extension list, or may
  /// enter the list of the largest files.
  bool passesExtFilter(TextView extension) { return passes(extensions_, extension); }
  bool passesTopFilesExtFilter(TextView extension) { return passes(topExtensions_, extension); }

  /// Malformed patterns are reported once; from here on once more.
  void startRun() { reported_.clear(); }

 private:
  struct PatternList {
    bool isActive = false;
    std::vector<LikePattern> patterns;

    bool isOn() const { return isActive && !patterns.empty(); }
  };

  enum class Answer { No, Yes, Malformed };

  void compile(std::uint8_t active, Text& setting, PatternList& list) const;
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
  Text topExtensions_;       // likewise
  Text search_;              // search text of passes(); kept so that its memory is used again
  std::set<Text> reported_;  // malformed patterns of this run
};

}  // namespace ombrelian
