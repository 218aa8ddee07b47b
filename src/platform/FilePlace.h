#pragma once

#include <memory>

#include "platform/Files.h"

namespace ombrelian::platform {

/// The place of a file to make, to replace or to open: its folder, which is opened once, and its
/// name in that folder. All functions look names up in the open folder, so that a later change of
/// the path has no effect, and none of them follows a link or waits for a pipe.
class FilePlace {
 public:
  /// Opens the folder of `path` (absolute). A link at `path` is followed, and the place is then
  /// that of its target, also if the target does not exist. kUntrustedLink: somebody made the link
  /// whom this process does not trust. It trusts its own user and the administrator; an ordinary
  /// user also trusts the owner of the folder with the link.
  ErrorCode open(TextView path);

  /// Name of the file.
  const Text& name() const { return name_; }

  /// Path of the folder when it was opened, with a final separator; only for a list of its names.
  const Text& folderPath() const { return path_; }

  /// Whether this process may make and rename files in the folder.
  ErrorCode checkWritable() const;

  /// Reads the data of the object `name` in the folder.
  ErrorCode find(TextView name, FindData& data) const;

  /// Whether this process may write to the file at the place; true if there is none.
  bool mayWrite() const;

  /// Makes a file for writing, which only its owner may open; kAlreadyExists if the name is taken.
  /// A file with an empty name has no name until nameFile(), and disappears when it is closed; an
  /// error then means that the volume has no such files.
  FileHandle make(TextView name, ErrorCode& error) const;

  /// Opens the file `name` if it is an ordinary file of this user, else the error is kNotOwnFile.
  /// A file that is only read may also belong to the administrator.
  /// `disposition` is one of those of CreateFileW. A new file is for its owner alone, and rights of
  /// others are taken from an old one.
  FileHandle openOwn(TextView name, int disposition, ErrorCode& error) const;

  /// Gives a file without a name the name `name`; kAlreadyExists: the name is taken.
  ErrorCode nameFile(const FileHandle& file, TextView name) const;

  /// Renames `from` to `to` and replaces what has this name.
  ErrorCode rename(TextView from, TextView to) const;

  /// Removes the file `name` if it has this identity.
  ErrorCode remove(TextView name, const FileIdentity& identity) const;

  /// Gives `file` the access rights and, if this user may set it, the owner of the file at the
  /// place. If there is none, the file mask of the process decides, but a file that an
  /// administrator makes outside of his home is only for him. A file that somebody else made in a
  /// folder that all users share counts as none.
  ErrorCode giveAccess(const FileHandle& file) const;

  /// Waits until the names in the folder are on the disk.
  ErrorCode flush() const;

 private:
  struct Folder;

  template <class Call>
  ErrorCode ask(Call call) const;
  template <class Call>
  FileHandle openWith(Call call, ErrorCode& error) const;

  std::shared_ptr<const Folder> folder_;
  Text name_;
  Text path_;
  std::optional<std::string> slowMount_;  // mount point of the folder if calls may never return
};

/// Opens a file of the program itself, such as a log, with FilePlace; kNotOwnFile: the object at
/// `path` is not an ordinary file of this user.
FileHandle OpenOwnFile(TextView path, int disposition, ErrorCode& error);

/// Makes the folder `path` and the missing ones above it, for this user alone. kNotOwnFile: what is
/// there is not a folder of this user. Rights of others are taken from the folder.
ErrorCode MakeOwnFolder(TextView path);

}  // namespace ombrelian::platform
