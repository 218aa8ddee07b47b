#pragma once

#include <map>

#include "lists/DriveList.h"
#include "lists/FileList.h"
#include "lists/ListTable.h"
#include "lists/Log.h"
#include "scan/Rename.h"
#include "ui/RowSource.h"

namespace ombrelian::ui {

/// The rows of a list whose rows are files, which can be renamed.
class FoundFileRows : public GridRows {
 public:
  using GridRows::GridRows;

  RowLook look(std::size_t row) const override;
  bool canRename(std::size_t row, const Column& column) const override;
  Text rename(std::size_t row, const Text& name) override;
};

/// The files of one folder.
class FileRows : public FoundFileRows {
 public:
  /// References to `files` and `tree` are kept. A rename that replaces a file lowers the sums of
  /// the tree.
  FileRows(FileList& files, FolderTree& tree, Options& options);

  Text path(std::size_t row) const override { return files_.fullPath(row); }
  Text rename(std::size_t row, const Text& name) override {
    return renameFile(tree_, files_, row, name);
  }
  bool isNameTaken(std::size_t row, const Text& name) const override {
    return files_.nameIsTaken(row, name);
  }

 private:
  FileList& files_;
  FolderTree& tree_;
};

/// Drives and network paths.
class DriveRows : public GridRows {
 public:
  DriveRows(DriveList& drives, Options& options);

  RowLook look(std::size_t row) const override;
  Text toolTip(std::size_t row, const Column& column) const override;
  Text path(std::size_t row) const override { return drives_.folderOf(row); }
  bool isNetworkPath(std::size_t row) const override;

 private:
  const char* iconOf(std::size_t row) const;

  DriveList& drives_;
  mutable std::map<Text, const char*> icons_;  // icon of each drive, looked up once
};

/// The lines of the log. A new line counts as a row after the view was notified.
class LogRows : public GridRows {
 public:
  /// References to `log` and `options` are kept.
  LogRows(Log& log, const Options& options);

  std::size_t count() const override { return count_; }
  void takeUpNewRows() { count_ = grid_.rowCount(); }
  RowLook look(std::size_t row) const override;

 private:
  const Log& log_;
  std::size_t count_;
};

}  // namespace ombrelian::ui
