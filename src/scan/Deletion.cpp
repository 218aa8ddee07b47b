#include "scan/Deletion.h"

#include <algorithm>
#include <map>
#include <optional>

#include "format/Sizes.h"
#include "fs/Deleting.h"
#include "fs/Links.h"
#include "fs/PathText.h"
#include "fs/Recycling.h"
#include "fs/z_Filesystem.h"
#include "lists/ListStatus.h"
#include "platform/Files.h"
#include "platform/Time.h"
#include "scan/GoneFiles.h"
#include "scan/Rescan.h"
#include "scan/RunScope.h"
#include "support/Guard.h"
#include "support/Translate.h"
#include "tree/TreeEdit.h"
#include "tree/TreeOrder.h"

namespace ombrelian {
namespace {

constexpr TextView kModule = u"frmMain";
constexpr std::size_t kNamedObjects = 10;  // objects that a question names
constexpr std::size_t kToldFailures = 10;  // failures that a message names; the log has all
constexpr std::uint64_t kProgressIntervalMs = 100;

/// Reads the data of an object and checks whether it may be deleted.
platform::ErrorCode look(const platform::ShownObject& object, platform::FindData& data) {
  const platform::ErrorCode error = findObject(object.path, data);
  if (error != platform::kSuccess) return error;
  if (object.identity.index != 0 && !(object.identity == data.identity))
    return platform::kObjectReplaced;
  if (data.dwReserved0 == platform::kTagMountPoint) return platform::kIsMountPoint;
  return platform::kSuccess;
}

}  // namespace

platform::ShownObject shownObject(const FolderTree& tree, NodeIndex node) {
  NodeIndex trusted = tree[node].parent == kNoNode ? node : tree[node].parent;
  while (tree[trusted].parent != kNoNode && !tree[trusted].has(FolderNode::IsJunction))
    trusted = tree[trusted].parent;
  return {Report_GetFullpathOfNode(tree, node, false, false),
          Report_GetFullpathOfNode(tree, trusted, false, false).size(), tree.identity(node)};
}

Deletion::Deletion(const ScanState& state, RowsOnShow* rows, bool recycle)
    : state_(state), rows_(orNobody(rows)), recycles_(recycle) {}

/// Runs a deletion and reports the failures at its end. After a fault, some objects may be gone.
template <class Work>
bool Deletion::run(Work work) {
  const bool isAnythingGone = GuardedOr(
      kModule, u"Deletion",
      [&] {
        const RunScope scope(state_);
        const bool isGone = work();
        if (wasStopped_)
          state_.log.LogProtokoll(TL(3778, u"Der Vorgang wurde vom Anwender abgebrochen!"));
        return isGone;
      },
      [&](const Error& error) {
        fail({{}, errorTextOf(error)},
             TL(9701, u"Der Vorgang wurde durch einen Fehler des Programms beendet: %1",
                {errorTextOf(error)}));
        return true;
      });
  tellFailures();
  return isAnythingGone;
}

bool Deletion::DeleteFolders(const std::vector<NodeIndex>& selected) {
  return Guarded(kModule, u"DeleteFolders", [&] {
    FolderTree& tree = state_.tree;
    std::vector<NodeIndex> folders;
    std::copy_if(selected.begin(), selected.end(), std::back_inserter(folders),
                 [&](NodeIndex node) { return tree[node].has(FolderNode::IsFolder); });
    if (folders.empty() && !selected.empty()) {
      state_.ui.message(TL(9660,
                           u"Diese Zeile steht für die Dateien des Ordners selbst. Löschen lassen "
                           u"sie sich in der Dateiliste."),
                        UserInterface::Severity::Information);
    }
    if (folders.empty()) return false;
    Targets targets;
    for (const NodeIndex node : outermostOf(tree, folders))
      targets.emplace_back(shownObject(tree, node), node);
    const Text question =
        targets.size() == 1
            ? TL(9076, u"Soll der Ordner '%1' wirklich gelöscht werden?", {targets[0].object.path})
            : TL(3901, u"Sollen die ausgewählten Ordner wirklich gelöscht werden?");
    return run([&] { return deleteFolders(targets, question); });
  });
}

bool Deletion::deleteFolders(Targets& targets, TextView question) {
  if (!isConfirmed(targets, question)) return false;
  Targets gone;
  Targets touched;
  for (Target& target : targets) {
    if (!goesOn(target.object.path, 0)) break;
    const std::uint64_t objects = target.objects;
    bool isTouched = false;
    if (deleteFolder(target.object, isTouched)) {
      logGone(xGetPathWithBackslash(target.object.path));
      gone.push_back(std::move(target));
    } else if (isTouched) {
      touched.push_back(std::move(target));
    }
    doneBefore_ += objects;
  }
  correctTree(gone, touched);
  return !gone.empty() || !touched.empty();
}

/// Deletes a folder. `isTouched`: the folder remains, but a part of it is gone.
bool Deletion::deleteFolder(const platform::ShownObject& folder, bool& isTouched) {
  if (recycles_) {
    const ShellResult result = xDeleteFolderSHwide(folder, true);
    if (result.code == 0) return true;
    fail({folder.path, recyclingReason(result)},
         TL(9072,
            u"Beim Verschieben des Ordners '%1' in den Papierkorb ist ein Fehler aufgetreten: %2",
            {folder.path, recyclingErrorText(result)}));
    return false;
  }
  const FolderDeletion deletion =
      xDeleteFolder_W(folder, [&](std::uint64_t files, std::uint64_t folders) {
        return goesOn(folder.path, files + folders);
      });
  if (deletion.isGone) return true;
  isTouched = deletion.files + deletion.folders > 0 || deletion.errorText.empty();
  if (!deletion.wasStopped || !deletion.errorText.empty()) {
    const Text text = deletion.errorText.empty() ? xGetErrorText(true, platform::kGeneralFailure)
                                                 : deletion.errorText;
    state_.log.LogProtokoll(
        TL(9073, u"Beim Löschen des Ordners '%1' ist ein Fehler aufgetreten: %2",
           {folder.path, text}),
        true);
    if (deletion.failed.empty()) tell({folder.path, text});
    for (const FailedObject& object : deletion.failed)
      tell(object);
    failureCount_ += deletion.failures - std::int64_t(deletion.failed.size());
  }
  return false;
}

bool Deletion::Delete_Files(const platform::ShownObject& file) {
  if (recycles_) {
    const ShellResult result = xDeleteFileSHwide(file, true);
    if (result.code != 0) {
      fail({file.path, recyclingReason(result)},
           TL(9070,
              u"Beim Verschieben der Datei '%1' in den Papierkorb ist ein Fehler aufgetreten: %2",
              {file.path, recyclingErrorText(result)}));
      return false;
    }
  } else if (const Failure failure = xDeleteFile_W(file, true)) {
    fail({file.path, xGetErrorText(false, platform::ErrorCode(failure->number))},
         TL(9071, u"Beim Löschen der Datei '%1' ist ein Fehler aufgetreten: %2",
            {file.path, failure->text}));
    return false;
  }
  logGone(file.path);
  return true;
}

void Deletion::logGone(const Text& path) {
  state_.log.LogProtokoll(recycles_ ? TL(9074, u"PAPIERKORB: %1", {path})
                                    : TL(9075, u"GELÖSCHT: %1", {path}));
}

/// Notes an object that was not deleted, with the line for the log.
void Deletion::fail(FailedObject object, const Text& line) {
  state_.log.LogProtokoll(line, true);
  tell(std::move(object));
}

void Deletion::tell(FailedObject object) {
  if (failures_.size() < kToldFailures) failures_.push_back(std::move(object));
  ++failureCount_;
}

void Deletion::tellFailures() {
  if (failureCount_ == 0) return;
  Text text = TL(9861, u"Nicht gelöscht: %1", {statusCount(failureCount_)});
  for (const FailedObject& failed : failures_) {
    text.append(u"\n\n").append(failed.path);
    if (!failed.path.empty()) text += u'\n';
    text.append(failed.reason);
  }
  if (const std::int64_t more = failureCount_ - std::int64_t(failures_.size()); more > 0) {
    text.append(u"\n\n").append(
        TL(9661, u"Weitere Fehler: %1. Alle stehen im Protokoll.", {statusCount(more)}));
  }
  state_.ui.message(text, UserInterface::Severity::Warning);
}

/// Handles user input; false: the user stopped. `done` is the number of objects of the current
/// target that are gone or counted.
bool Deletion::goesOn(TextView path, std::uint64_t done) {
  const std::uint64_t now = platform::GetTickCount();
  if (now - lastProgressTick_ >= kProgressIntervalMs) {
    state_.ui.deletionProgress(path, doneBefore_ + done, all_);
    lastProgressTick_ = now;
  }
  if (state_.ui.GetInputState()) state_.ui.yield();
  wasStopped_ = wasStopped_ || state_.context.ScanCancelState == kScanCancelRequested;
  return !wasStopped_;
}

/// Counts the objects to delete and asks the user. Targets that cannot be deleted are reported and
/// removed from `targets`.
bool Deletion::isConfirmed(Targets& targets, TextView question) {
  Survey counted(state_.context.helpers);
  if (!survey(targets, counted)) {
    wasStopped_ = false;  // nothing was begun
    return false;
  }
  state_.ui.deletionProgress({}, counted.objects(), 0);
  const Text verb = recycles_ ? TL(9800, u"In den Papierkorb") : TL(9801, u"Löschen");
  if (targets.empty() || !state_.ui.confirm(question, details(targets, counted), verb))
    return false;
  all_ = std::max<std::uint64_t>(counted.objects(), 1);
  doneBefore_ = 0;
  return true;
}

bool Deletion::survey(Targets& targets, Survey& survey) {
  Targets left;
  for (Target& target : targets) {
    const Text& path = target.object.path;
    const auto failToDelete = [&](platform::ErrorCode reason) {
      fail({path, xGetErrorText(false, reason)},
           TL(9662, u"'%1' kann nicht gelöscht werden: %2", {path, xGetErrorText(true, reason)}));
    };
    platform::FindData data;
    const platform::ErrorCode error = look(target.object, data);
    const bool isThere = error == platform::kSuccess;
    if (!isThere && !platform::isMissing(error)) {
      failToDelete(error);
      continue;
    }
    // Only a folder in the bin can be taken out of the numbers again; a copy knows all hardlinks.
    std::optional<Survey> others;
    if (recycles_ && data.isFolder()) others = survey;
    const std::uint64_t before = survey.objects();
    const auto goOn = [&](std::uint64_t count) { return goesOn(path, count); };
    const bool isCounted = !isThere || survey.add(path, data, goOn);
    if (survey.isSilent) failToDelete(platform::kTimeout);
    if (!isCounted || !goOn(survey.objects())) return false;
    if (others && survey.mountPoints > others->mountPoints) {
      const Text reason =
          TL(9862, u"Darin ist ein Dateisystem eingehängt, das mit in den Papierkorb käme.");
      fail({path, reason}, TL(9662, u"'%1' kann nicht gelöscht werden: %2", {path, reason}));
      survey = std::move(*others);
      continue;
    }
    target.file.isHardlink = hardlinkCount(data) > 0;
    target.file.identity = isThere ? data.identity : target.object.identity;
    target.objects = survey.objects() - before;
    left.push_back(std::move(target));
  }
  targets = std::move(left);
  return true;
}

std::vector<Text> Deletion::details(const Targets& targets, const Survey& survey) const {
  std::vector<Text> lines;
  // The question names a single folder itself.
  const bool isNamed = targets.size() == 1 && survey.folders > 0;
  for (std::size_t i = 0; i < std::min(targets.size(), kNamedObjects) && !isNamed; ++i)
    lines.push_back(targets[i].object.path);
  const auto add = [&lines](Text line) { lines.push_back(std::move(line)); };
  const auto count = [](std::uint64_t number) { return statusCount(std::int64_t(number)); };
  if (targets.size() > kNamedObjects) {
    add(TL(9612, u"und %1 weitere", {count(targets.size() - kNamedObjects)}));
  }
  if (!isNamed) add(Text());
  add(TL(9613, u"Dateien: %1, Ordner: %2, Größe: %3",
         {count(survey.files), count(survey.folders), xFormatFileSizeAuto(survey.bytes, true)}));
  if (survey.links > 0) {
    add(TL(9614, u"Verknüpfungen: %1. Es gehen nur sie selbst, nicht ihre Ziele.",
           {count(survey.links)}));
  }
  if (survey.hardlinks > 0) {
    add(TL(9615, u"Unter den Dateien sind %1 Namen von Hardlinks; %2 werden darum nicht frei.",
           {count(survey.hardlinks), xFormatFileSizeAuto(survey.keptBytes(), true)}));
  }
  if (survey.mountPoints > 0) {
    add(TL(9616,
           u"Eingehängte Dateisysteme: %1. Sie bleiben, und mit ihnen die Ordner, in denen sie "
           u"liegen.",
           {count(survey.mountPoints)}));
  }
  if (survey.unreadable > 0) {
    add(TL(9617, u"Nicht lesbare Ordner: %1. Was in ihnen liegt, ist nicht mitgezählt.",
           {count(survey.unreadable)}));
  }
  add(recycles_ ? TL(9618, u"Alles kommt in den Papierkorb; Platz wird frei, wenn er geleert wird.")
                : TL(9619, u"Das lässt sich nicht rückgängig machen."));
  return lines;
}

/// Removes deleted folders everywhere in the tree, and reads the rest of folders that are partly
/// deleted.
void Deletion::correctTree(const Targets& gone, const Targets& touched) {
  FolderTree& tree = state_.tree;
  const bool hasOneSource = tree.firstRoot() == tree.lastRoot();
  const auto nodesOf = [&](const Target& target) {
    const bool isLink = tree[target.id].parent == kNoNode && tree.facts(target.id).isLink;
    if (hasOneSource || isLink) return std::vector<NodeIndex>{target.id};
    std::vector<NodeIndex> nodes = foldersAt(tree, target.object.path);
    const std::vector<NodeIndex> below = sourcesBelow(tree, target.object.path);
    nodes.insert(nodes.end(), below.begin(), below.end());
    return nodes;
  };
  std::vector<NodeIndex> out;
  for (const Target& target : gone) {
    const std::vector<NodeIndex> nodes = nodesOf(target);
    out.insert(out.end(), nodes.begin(), nodes.end());
  }
  if (!out.empty()) rows_.change([&] { takeOutFolders(tree, outermostOf(tree, out)); });
  for (const Target& target : touched) {
    for (const NodeIndex node : nodesOf(target)) {
      const Text path = Report_GetFullpathOfNode(tree, node, false, false);
      if (isMissingObject(path)) {
        rows_.change([&] { takeOutFolders(tree, {node}); });
      } else {
        Rescan(state_, &rows_).readRest(node);
      }
    }
  }
}

/// The chosen rows from the last to the first.
Deletion::Targets Deletion::targetsOf(const Grid& list, const Ids& selected) const {
  const Column& name = list.column(u"name");
  const Column& folder = list.column(u"path");
  const Column& size = list.column(u"size");
  std::vector<Grid::RowIndex> rows;
  for (const std::uint32_t id : selected) {
    if (list.rowOf(id) != Grid::kNoRow) rows.push_back(list.rowOf(id));
  }
  std::sort(rows.begin(), rows.end(), std::greater<>());
  Targets targets;
  for (const Grid::RowIndex row : rows) {
    Text path(list.text(row, folder));
    appendName(path, list.text(row, name));
    targets.emplace_back(platform::ShownObject{std::move(path), Text::npos, list.identity(row)},
                         list.id(row), list.number(row, size));
  }
  return targets;
}

/// Deletes the targets and returns the deleted ones.
Deletion::Targets Deletion::deleteFiles(Targets targets) {
  Targets gone;
  if (targets.empty() ||
      !isConfirmed(targets, TL(9077, u"Sollen die ausgewählten Dateien wirklich gelöscht werden?")))
    return gone;
  for (Target& target : targets) {
    if (!goesOn(target.object.path, 0)) break;
    ++doneBefore_;
    if (Delete_Files(target.object)) gone.push_back(std::move(target));
  }
  return gone;
}

bool Deletion::List_Files_DeleteFiles(FileList& files, const Ids& selected) {
  return Guarded(kModule, u"List_Files_DeleteFiles", [&] {
    return run([&] {
      const Targets gone = deleteFiles(targetsOf(files.grid(), selected));
      if (gone.empty()) return false;
      rows_.change([&] {
        files.removeRows(idsOf(gone));
        takeOffFiles(gone);
      });
      return true;
    });
  });
}

/// Subtracts deleted files from the numbers of the folders that contained them.
void Deletion::takeOffFiles(const Targets& gone) {
  std::map<TextView, std::vector<GoneFileAt>> byFolder;
  for (const Target& target : gone)
    byFolder[xGetPath(target.object.path)].push_back({target.object.path, target.file});
  for (const auto& [folder, files] : byFolder)
    ombrelian::takeOffFiles(state_.tree, state_.filters, folder, files);
}

Deletion::Ids Deletion::idsOf(const Targets& targets) {
  Ids ids;
  for (const Target& target : targets)
    ids.push_back(target.id);
  return ids;
}

bool Deletion::deleteFound(Grid& list, const Ids& selected) {
  return run([&] {
    const Targets gone = deleteFiles(targetsOf(list, selected));
    if (gone.empty()) return false;
    rows_.change([&] {
      list.removeRows(idsOf(gone));
      takeOffFiles(gone);
    });
    return true;
  });
}

bool Deletion::List_TOP_DeleteFiles(Grid& list, const Ids& selected) {
  return Guarded(kModule, u"List_TOP_DeleteFiles", [&] { return deleteFound(list, selected); });
}

bool Deletion::List_Hardlinks_DeleteFiles(Grid& list, const Ids& selected) {
  return Guarded(kModule, u"List_Hardlinks_DeleteFiles",
                 [&] { return deleteFound(list, selected); });
}

}  // namespace ombrelian
