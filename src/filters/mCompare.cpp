#include "filters/mCompare.h"

#include "support/Guard.h"

namespace ombrelian {
namespace {

constexpr TextView kModule = u"mCompare";
constexpr std::int32_t kMalformedPattern = 93;

/// ",jpg,png," from a setting; empty if there is nothing to compare with.
Text extensionText(std::uint8_t active, TextView setting) {
  const TextView trimmed = trimBlanks(setting);
  if (active != 1 || trimmed.empty()) return {};
  return Text(u",").append(trimmed).append(u",");
}

}  // namespace

void mCompare::compile(std::uint8_t active, Text& setting, PatternList& list) const {
  setting = Text(trimBlanks(setting));
  list.isActive = active == 1;
  list.patterns.clear();
  TextView rest = setting;
  while (!rest.empty()) {
    const TextView piece = rest.substr(0, rest.find(u','));
    if (piece.empty()) return;
    list.patterns.emplace_back(piece, rules_);
    rest.remove_prefix(std::min(rest.size(), piece.size() + 1));
  }
}

void mCompare::SetFileFilterInclude(Options& options) {
  compile(options.FolderList_FilterFilesInclude_Active, options.FolderList_FilterFilesInclude_Text,
          fileInclude_);
}

void mCompare::SetFileFilter(Options& options) {
  compile(options.FolderList_FilterFilesExclude_Active, options.FolderList_FilterFilesExclude_Text,
          fileExclude_);
}

void mCompare::SetFolderFilterExclude(Options& options) {
  compile(options.FolderList_FilterFolderExclude_Active,
          options.FolderList_FilterFolderExclude_Text, folderExclude_);
}

void mCompare::SetFolderFilterInclude(Options& options) {
  compile(options.FolderList_FilterFolderInclude_Active,
          options.FolderList_FilterFolderInclude_Text, folderInclude_);
}

void mCompare::setWalkFilters(const WalkFilters& filters) {
  const auto set = [&](Text setting, PatternList& list) {
    compile(!setting.empty(), setting, list);
  };
  set(filters.excludedFolders, folderExclude_);
  set(filters.includedFolders, folderInclude_);
  set(filters.includedFiles, fileInclude_);
  set(filters.excludedFiles, fileExclude_);
}

void mCompare::SetFileFilterFileList(Options& options) {
  compile(options.FileList_Filter_Active, options.FileList_Filter_Text, fileList_);
}

void mCompare::SetExtFilter(const Options& options) {
  extensions_ = extensionText(options.CreateListExtInclude, options.CreateListExtIncludeText);
}

void mCompare::SetTopFilesExtFilter(const Options& options) {
  topExtensions_ = extensionText(options.CreateList100LargestFilesInclude,
                                 options.CreateList100LargestFilesIncludeText);
}

mCompare::Answer mCompare::answerOf(const LikePattern& pattern, TextView name, TextView path) {
  if (pattern.isMalformed()) return Answer::Malformed;
  const bool isFit = (!path.empty() && pattern.matches(path)) ||
                     ((path.empty() || !pattern.startsWithRun()) && pattern.matches(name));
  return isFit ? Answer::Yes : Answer::No;
}

/// Compares with one pattern. A malformed pattern is reported once in each run.
mCompare::Answer mCompare::fits(const LikePattern& pattern, TextView name, TextView path,
                                TextView procedure) {
  if (pattern.isMalformed()) {
    if (reported_.insert(pattern.text()).second) {
      reportFault(
          kModule, procedure,
          {kMalformedPattern, Text(procedure), u"Invalid pattern string: " + pattern.text()},
          {pattern.text()});
    }
  }
  return answerOf(pattern, name, path);
}

/// Whether a list leaves out an object: an exclude list by its first pattern that matches, an
/// include list by its first pattern that matches neither name nor path. A malformed pattern ends
/// the list.
template <class Ask>
bool mCompare::leavesOut(const std::vector<LikePattern>& patterns, bool excludes, Ask ask) {
  const Answer goesOn = excludes ? Answer::No : Answer::Yes;
  const Answer decides = excludes ? Answer::Yes : Answer::No;
  for (const LikePattern& pattern : patterns) {
    const Answer answer = ask(pattern);
    if (answer != goesOn) return answer == decides;
  }
  return false;
}

bool mCompare::isExcluded(const PatternList& list, TextView name, TextView path,
                          TextView procedure) {
  return leavesOut(list.patterns, true, [&](const LikePattern& pattern) {
    return fits(pattern, name, path, procedure);
  });
}

bool mCompare::isNotIncluded(const PatternList& list, TextView name, TextView path,
                             TextView procedure) {
  return leavesOut(list.patterns, false, [&](const LikePattern& pattern) {
    return fits(pattern, name, path, procedure);
  });
}

bool mCompare::CheckFolderFilter(TextView Name, TextView FullPath) {
  constexpr TextView kProcedure = u"CheckFolderFilter";
  if (folderExclude_.isActive) return isExcluded(folderExclude_, Name, FullPath, kProcedure);
  return folderInclude_.isActive && isNotIncluded(folderInclude_, Name, FullPath, kProcedure);
}

std::function<bool(TextView, TextView)> mCompare::folderFilter() const {
  if (!filtersFolders()) return {};
  const bool excludes = folderExclude_.isActive;
  return [patterns = (excludes ? folderExclude_ : folderInclude_).patterns, excludes](
             TextView name, TextView path) {
    return leavesOut(patterns, excludes,
                     [&](const LikePattern& pattern) { return answerOf(pattern, name, path); });
  };
}

bool mCompare::Check_FolderList_FileFilter(TextView Name, TextView FullPath) {
  constexpr TextView kProcedure = u"Check_FolderList_FileFilter";
  if (fileInclude_.isActive) return isNotIncluded(fileInclude_, Name, FullPath, kProcedure);
  return fileExclude_.isActive && isExcluded(fileExclude_, Name, FullPath, kProcedure);
}

bool mCompare::CheckFileFilterFileList(TextView Name) {
  bool isHidden = false;
  if (!fileList_.isActive) return isHidden;
  for (const LikePattern& pattern : fileList_.patterns) {
    const Answer answer = fits(pattern, Name, {}, u"CheckFileFilterFileList");
    if (answer == Answer::Malformed) return isHidden;
    isHidden = answer == Answer::No;
    if (!isHidden) return false;
  }
  return isHidden;
}

bool mCompare::passes(const Text& extensions, TextView extension) {
  if (extensions.empty()) return true;
  search_.assign(1, u',');
  for (const char16_t unit : extension) {
    // ASCII needs no rules and no allocation.
    if (unit >= 128) return extensions.find(u"," + rules_.lower(extension) + u",") != Text::npos;
    search_ += asciiLower(unit);
  }
  search_ += u',';
  return extensions.find(search_) != Text::npos;
}

}  // namespace ombrelian
