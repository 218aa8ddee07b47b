#pragma once

#include "frame/Session.h"
#include "lists/DriveList.h"
#include "lists/FileList.h"
#include "scan/ListFeeder.h"

namespace ombrelian::ui {

/// The scan that filled the lists beside the tree.
struct FilledLists {
  Text source;                          // empty: no scan filled them
  bool isIncomplete = false;            // the scan was stopped
  std::array<bool, kLists> wasOn = {};  // the lists that the scan filled
};

/// Data for the parts of the window: the session with its settings file, and the lists that a
/// session without a window does not need.
struct WindowState {
  /// References to `of` and `file` are kept.
  WindowState(Session& of, IniStore& file)
      : session(of),
        settings(file),
        found(of.options, of.filters, types),
        files(of.options, types) {}

  /// Any list except the folder tree.
  FlatList& flatList(ListId list) {
    if (list == ListId::Drives) return drives;
    if (list == ListId::Files) return files;
    if (list == ListId::Log) return session.log;
    return found.list(list);
  }

  /// Whether a scan, a deletion or the reading of a folder runs; nothing may begin meanwhile.
  bool isBusy() const { return session.context.ScanBusy || files.isReading(); }

  Session& session;
  IniStore& settings;
  SystemFileTypes types;
  ListFeeder found;
  FileList files;
  DriveList drives;
  FilledLists filled;
  bool stopsFiles = false;            // the reading of the files of a folder has to end
  std::int64_t scanMilliseconds = 0;  // time of the last run
};

}  // namespace ombrelian::ui
