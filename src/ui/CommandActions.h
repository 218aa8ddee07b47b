#pragma once

#include <optional>

#include "frame/CommandTable.h"

class QWidget;

namespace ombrelian::ui {

class DeleteCommands;
class DriveCommands;
class FilesOfFolder;
class FolderCommands;
class Help;
class LaterStarts;
class Looks;
class OpenCommands;
class OptionsCommand;
class PaneArea;
class Panes;
class Saving;
class ScanControl;
class SourceBox;

/// The parts of the window that commands act on, with their names in the command table.
struct Parts {
  QWidget& window;
  Panes& panes;
  PaneArea& area;
  SourceBox& sources;
  ScanControl& scans;
  FilesOfFolder& files;
  FolderCommands& folders;
  DriveCommands& drives;
  Saving& saving;
  DeleteCommands& deleting;
  OpenCommands& opening;
  Looks& looks;
  OptionsCommand& options;
  Help& help;
  LaterStarts& laterStarts;
};

/// Runs a command of `list`, or of the main bar if there is no list.
void doCommand(CommandId id, std::optional<ListId> list, const Parts& parts);

}  // namespace ombrelian::ui
