#pragma once

#include <list>
#include <optional>
#include <vector>

#include "platform/FolderWalk.h"
#include "platform/posix/OpenLevels.h"
#include "platform/posix/ReadAhead.h"

namespace ombrelian::platform {

/// One folder on the path from the source to the folder that is being read. The name of the
/// outermost level is the whole path.
struct WalkLevel : OpenLevel {
  int error = 0;                 // errno that ended the listing early
  ListingPointer listing;        // listing that gives further parts; null: there are none
  std::list<ListingPart> parts;  // read parts; the walk is in the first
  std::size_t entry = 0;         // index of the next entry in the first part
  std::size_t subfolder = 0;     // index in the first part of the first subfolder from the current
                                 // entry on

  /// Whether the first part has no more entries.
  bool isPartRead() const { return entry == parts.front().batch.entries().size(); }
};

/// The walk of FolderWalk, whose procedures these are, with calls that take as long as the system
/// needs. One thread at a time may use it.
class DirectWalk {
 public:
  /// `mayHang`: calls on the source may never return. A folder that is read before the walk needs
  /// it must then not keep the walk from the folders that are ready.
  DirectWalk(int helpers, WalkReach reach, bool mayHang, LeavesOut leavesOut = {})
      : helpers_(helpers), reach_(reach), mayHang_(mayHang), leavesOut_(std::move(leavesOut)) {}
  ~DirectWalk();
  DirectWalk(const DirectWalk&) = delete;
  DirectWalk& operator=(const DirectWalk&) = delete;

  ErrorCode openSource(TextView path);
  ErrorCode openCurrent();
  const FindData* next();
  void close();
  ErrorCode listError() const;
  TextView name();
  Text reparseTarget(TextView path, ErrorCode& error) const;

  // Whether the procedure of this name makes no call that could wait for the file system.
  bool isOpenCurrentQuick();
  bool isNextQuick();
  bool isCloseQuick() const;

 private:
  using Level = WalkLevel;

  void prepare(const Level& source);
  ErrorCode openByName(Level& level);
  ErrorCode push(Level level);
  ErrorCode enter(Level& level);
  ErrorCode checkReparse(const Level& level);
  void readRest(Level& level);
  void reopenByNames();
  std::string pathOfLevels() const;
  bool takePart(Level& level);
  bool makeRoom(bool forDescriptors);
  template <class Call>
  ErrorCode withRoom(Call call);
  ListingPointer* currentListing(Level& level);
  void passBy(Level& level);
  void dropFarthest();
  void drop(Level& level);

  const int helpers_;
  const WalkReach reach_;
  const bool mayHang_;
  const LeavesOut leavesOut_;
  std::unique_ptr<ReadAhead> reader_;
  OpenLevels<Level> levels_;
  std::optional<std::vector<FileIdentity>> above_;  // folders that the source is in; empty: not
                                                    // needed yet
  const char* currentName_ = "";
  const FindData* current_ = nullptr;
  Text name_;
  bool nameConverted_ = false;
};

/// See CheckReparseFolder.
ErrorCode checkReparseFolder(const std::string& path);

}  // namespace ombrelian::platform
