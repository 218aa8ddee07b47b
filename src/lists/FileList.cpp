#include "lists/FileList.h"

#include <unordered_map>

#include "format/LetterCase.h"
#include "fs/Owners.h"
#include "fs/Renaming.h"
#include "fs/z_Filesystem.h"
#include "lists/ListStatus.h"
#include "lists/ListTable.h"
#include "lists/LocalClock.h"
#include "platform/FolderWalk.h"
#include "platform/Locale.h"
#include "platform/Patience.h"
#include "platform/Time.h"
#include "support/Guard.h"
#include "support/Translate.h"
#include "tree/ScanTotals.h"

namespace ombrelian {
namespace {

using platform::FindData;
using platform::kSuccess;

constexpr TextView kModule = u"frmMain";

constexpr Column kFileTable[] = {
    {1, 3582, u"Dateiname", u"name", CellKind::PlainText},
    {2, 3583, u"Größe", u"size", CellKind::Size},
    {3, 3584, u"Endung", u"ext", CellKind::PlainText},
    {4, 3585, u"Typ", u"type", CellKind::PlainText},
    {5, 3586, u"Attribute", u"attr", CellKind::Attributes},
    {6, 3587, u"Änderungsdatum", u"datemodified", CellKind::Timestamp},
    {7, 3588, u"Erstellungsdatum", u"datecreate", CellKind::Timestamp},
    {8, 3589, u"Letzter Zugriff", u"dateaccess", CellKind::Timestamp},
    {9, 3801, u"Besitzer", u"owner", CellKind::PlainText},
    {10, 3728, u"Pfad", u"path", CellKind::PlainText},
    {11, 9114, u"Kompletter Pfad", u"fullpath", CellKind::PlainText},
};
static_assert(idsCountFromOne(kFileTable, kFileColumns));

constexpr const Column& kName = kFileTable[0];
constexpr const Column& kSize = kFileTable[1];
constexpr const Column& kExtension = kFileTable[2];
constexpr const Column& kType = kFileTable[3];
constexpr const Column& kAttributes = kFileTable[4];
constexpr const Column& kModified = kFileTable[5];
constexpr const Column& kCreated = kFileTable[6];
constexpr const Column& kAccessed = kFileTable[7];
constexpr const Column& kOwner = kFileTable[8];
constexpr const Column& kPath = kFileTable[9];
constexpr const Column& kFullPath = kFileTable[10];

/// Decides when a read calls GoOn: often enough that the user need not wait for a slow disk, and
/// seldom enough that a fast disk is not slowed.
class Pause {
 public:
  bool isDue() {
    ++entries_;
    const bool isLate =
        entries_ % kEntriesPerLook == 0 && platform::GetTickCount() - last_ >= kLongestMilliseconds;
    if (!isLate && entries_ % kMostEntries != 0) return false;
    last_ = platform::GetTickCount();
    return true;
  }

 private:
  static constexpr std::uint32_t kMostEntries = 512;
  static constexpr std::uint32_t kEntriesPerLook = 16;
  static constexpr std::uint64_t kLongestMilliseconds = 50;

  std::uint32_t entries_ = 0;
  std::uint64_t last_ = platform::GetTickCount();
};

/// Hash that allows a search for a text with a view.
struct TextHash {
  using is_transparent = void;
  std::size_t operator()(TextView text) const { return std::hash<TextView>()(text); }
};

}  // namespace

/// Reads one folder.
class FileList::Reader {
 public:
  Reader(FileList& list, TextView folder)
      : types_(list.types_),
        filter_(list.filter_),
        wantsOwners_(list.options_.FileColumnVisible[std::size_t(kOwner.id)] == 1),
        keepsOwners_(wantsOwners_ && keepsOwners(folder)) {
    read_.folder = folder;
    read_.readAt = toDate(platform::GetLocalTime());
  }

  Contents& read(const GoOn& goOn) {
    platform::FolderWalk walk(platform::kHelpersByDevice, platform::WalkReach::OneFolder);
    platform::ErrorCode error = walk.openSource(read_.folder);
    if (error == kSuccess) {
      Pause pause;
      while (const FindData* const entry = walk.nextEntry()) {
        if (!entry->isFolder()) take(*entry, walk.name());
        if (goOn && pause.isDue() && !goOn()) return read_;
      }
      error = walk.listError();
    }
    if (error != kSuccess) read_.failure = systemError(error, u"List_Files_ScanFolderR");
    return read_;
  }

 private:
  void take(const FindData& entry, TextView name) {
    if (filter_.CheckFileFilterFileList(name)) return;
    Grid& grid = read_.grid;
    const Grid::RowIndex row = grid.addRow();
    path_.assign(read_.folder).append(name);
    grid.set(row, kName, name);
    grid.set(row, kFullPath, TextView(path_));
    grid.set(row, kPath, TextView(read_.folder));
    setType(row, xGetExtension(name));
    if (entry.statError == kSuccess) setFacts(row, entry);
  }

  /// Copies the type from the first row with the same extension, because most files share few
  /// extensions.
  void setType(Grid::RowIndex row, TextView extension) {
    Grid& grid = read_.grid;
    if (const auto known = firstRows_.find(extension); known != firstRows_.end()) {
      grid.setTextAs(row, kExtension, known->second);
      grid.setTextAs(row, kType, known->second);
      return;
    }
    firstRows_.emplace(extension, row);
    grid.set(row, kExtension, extension);
    grid.set(row, kType, TextView(types_.typeText(lowerCase(extension))));
  }

  void setFacts(Grid::RowIndex row, const FindData& entry) {
    Grid& grid = read_.grid;
    const std::int64_t size = xGetFileSizeByWFD_W(entry);
    read_.sum = addSizes(read_.sum, size);
    grid.setIdentity(row, entry.identity);
    grid.set(row, kSize, size);
    grid.set(row, kAttributes, std::int64_t(entry.dwFileAttributes));
    grid.set(row, kModified, date(entry.ftLastWriteTime, entry, xGetFileModifyDateByWFD));
    grid.set(row, kCreated, date(entry.ftCreationTime, entry, xGetFileCreateDateByWFD));
    grid.set(row, kAccessed, date(entry.ftLastAccessTime, entry, xGetFileAccessDateByWFD));
    if (wantsOwners_) grid.set(row, kOwner, ownerTexts_.of(keepsOwners_, entry));
  }

  /// Date of a time stamp. A missing or invalid time is left to `slow`, which reports an invalid
  /// one to the fault log.
  template <class Procedure>
  Date date(FileTime time, const FindData& entry, Procedure slow) {
    const std::int64_t seconds = clock_.seconds(time);
    return seconds > 0 ? LocalClock::dateFromSeconds(seconds) : slow(entry, path_);
  }

  FileTypes& types_;
  mCompare& filter_;
  const bool wantsOwners_;
  const bool keepsOwners_;
  Contents read_;
  LocalClock clock_;
  Text path_;  // path of the current file
  const OwnerTexts ownerTexts_;
  std::unordered_map<Text, Grid::RowIndex, TextHash, std::equal_to<>>
      firstRows_;  // first row of each extension
};

FileList::Contents::Contents() : grid(kFileTable) {}

FileList::FileList(Options& options, FileTypes& types)
    : options_(options), types_(types), filter_(platform::localeTextRules()) {
  sortAsOpened(shown_.grid, ListId::Files);
}

bool FileList::List_Files_ScanFolder(Text& folder, bool force, const GoOn& goOn) {
  if (isReading_) return false;
  isReading_ = true;
  const bool isNew = GuardedOr(
      kModule, u"List_Files_ScanFolder",
      [&] {
        if (options_.FilelistVisible == 0) {
          replace(Contents());
          return true;
        }
        xAddBackslash(folder);
        if (folder == shown_.folder && !force) return false;
        std::optional<platform::Patience> patience;
        if (goOn) patience.emplace([&](std::chrono::milliseconds) { return goOn(); });
        List_Files_ScanFolderR(folder, goOn);
        return true;
      },
      [&](const Error& error) {
        shown_.failure = failureOf(error);
        return true;
      });
  isReading_ = false;
  return isNew;
}

void FileList::List_Files_ScanFolderR(TextView folder, const GoOn& goOn) {
  filter_.SetFileFilterFileList(options_);
  Reader reader(*this, folder);
  replace(std::move(reader.read(goOn)));
}

/// Replaces the shown rows with other rows and keeps the sort order.
void FileList::replace(Contents contents) {
  if (const Column* const sorted = shown_.grid.sortColumn(); sorted != nullptr) {
    sortColumn_ = sorted;
    sortsDescending_ = shown_.grid.sortedDescending();
  }
  contents.grid.sort(*sortColumn_, sortsDescending_);
  shown_ = std::move(contents);
}

bool FileList::List_Files_Refresh(const GoOn& goOn) {
  if (shown_.folder.empty()) return false;
  Text folder = shown_.folder;
  return List_Files_ScanFolder(folder, true, goOn);
}

void FileList::clear() {
  if (!isReading_) replace(Contents());
}

Text FileList::List_Files_ShowFileStat(const std::vector<Grid::RowIndex>& selected) const {
  const SizeSettings sizes = listSizes(options_, ListId::Files);
  const auto rows = std::int64_t(shown_.grid.rowCount());
  Text status = fileCountText(rows);
  if (rows > 0) {
    status = TL(9104, u"%1 Datei(en) mit insgesamt %2",
                {statusCount(rows), List_Files_FormatSize(sizes, shown_.sum, true, false, true)});
  }
  if (selected.empty()) return status;
  const std::int64_t size = sumOfSizes(shown_.grid, selected);
  return status +=
         u" / " + selectedFilesText(std::int64_t(selected.size()),
                                    List_Files_FormatSize(sizes, size, true, false, true));
}

Text FileList::fullPath(Grid::RowIndex row) const { return Text(shown_.grid.text(row, kFullPath)); }

TextView FileList::readOwner(Grid::RowIndex row) {
  Grid& grid = shown_.grid;
  if (grid.text(row, kOwner).empty()) {
    const Text owner = OwnerTexts().at(fullPath(row), keepsOwners(shown_.folder));
    grid.set(row, kOwner, TextView(owner));
  }
  return grid.text(row, kOwner);
}

void FileList::removeRows(const std::vector<std::uint32_t>& ids) {
  Grid& grid = shown_.grid;
  grid.removeRows(ids);
  shown_.sum = 0;
  for (Grid::RowIndex row = 0; row < grid.rowCount(); ++row)
    shown_.sum = addSizes(shown_.sum, grid.number(row, kSize));
}

bool FileList::nameIsTaken(Grid::RowIndex row, TextView newName) const {
  const std::optional<FindData> other = otherNamed(row, newName);
  return other && !other->isFolder();
}

/// The other object with this name in the folder; none: there is none, or it is the file of the
/// row.
std::optional<FindData> FileList::otherNamed(Grid::RowIndex row, TextView name) const {
  FindData own;
  FindData other;
  const Text path = fullPath(row);
  const Text newPath = shown_.folder + Text(name);
  if (name.empty() || newPath == path) return {};
  if (findObject(newPath, other) != kSuccess) return {};
  // On a file system that ignores case, another spelling is the file itself.
  const bool isItself =
      findObject(path, own) == kSuccess && own.identity == other.identity && own.linkCount < 2;
  if (isItself) return {};
  return other;
}

FileList::Renaming FileList::rename(Grid::RowIndex row, TextView newName) {
  return GuardedOr(
      kModule, u"lvwFiles_GridCellAfterEditing",
      [&]() -> Renaming {
        if (newName.empty() || newName == shown_.grid.text(row, kName)) return {};
        const std::optional<FindData> replaced = otherNamed(row, newName);
        if (Text error =
                renameInFolder({fullPath(row), Text::npos, shown_.grid.identity(row)}, newName);
            !error.empty())
          return {std::move(error), {}};
        const std::uint32_t id = shown_.grid.id(row);
        removeReplaced(row, newName);
        setName(shown_.grid.rowOf(id), newName);
        return {{}, replaced};
      },
      [](const Error& error) {
        return Renaming{errorTextOf(error), {}};
      });
}

/// Removes the row of a replaced file, which had the name before.
void FileList::removeReplaced(Grid::RowIndex row, TextView name) {
  Grid& grid = shown_.grid;
  for (Grid::RowIndex other = 0; other < grid.rowCount(); ++other) {
    if (other != row && grid.text(other, kName) == name) return removeRows({grid.id(other)});
  }
}

void FileList::setName(Grid::RowIndex row, TextView name) {
  Grid& grid = shown_.grid;
  const TextView extension = xGetExtension(name);
  grid.set(row, kName, name);
  grid.set(row, kFullPath, TextView(shown_.folder + Text(name)));
  grid.set(row, kExtension, extension);
  grid.set(row, kType, TextView(types_.typeText(lowerCase(extension))));
}

Columns FileList::columns() { return kFileTable; }

}  // namespace ombrelian
