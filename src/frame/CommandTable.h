#pragma once

#include <span>

#include "lists/ListTable.h"

namespace ombrelian {

/// The bars of the window: one above all, one for each list (the top lists share theirs), and the
/// row of buttons that chooses the list on the right.
enum class Bar : std::uint8_t {
  Main,
  Header,
  Folders,
  Drives,
  Files,
  Top,
  Hardlinks,
  Junctions,
  Owners,
  Extensions,
  Log,
};
inline constexpr int kBars = 11;

/// The bar of a list.
Bar barOf(ListId view);

enum class CommandKind : std::uint8_t {
  Button,
  Toggle,  // on or off
  Choice,  // one of several
  Popup,   // opens a menu of others
  Edit,    // holds a text or a number
};

/// What a command is called and looks like. A number means the same on every bar; each bar applies
/// it to its own list. Numbers up to 999 are frozen; those above 1000 are this program's own.
struct Command {
  int id;
  CommandKind kind;
  Word caption;
  Word tip = {0, {}};         // no text: the caption says it all
  const char* icon = "";      // name of a picture; empty: none
  const char* shortcut = "";  // in the portable form, such as "Ctrl+S"; empty: none
  const char* waitsFor =
      "";                    // what is still to be built before it can do anything; empty: it works
  bool changesDisk = false;  // touches what was scanned; off where nothing may be changed
};

std::span<const Command> commandTable();

/// Null: there is no such command.
const Command* findCommand(int id);

/// Caption and tooltip in the language in force; captions of commands with a "%1" get `value`. On
/// the main bar the size commands speak of all lists.
Text commandCaption(const Command& command, const Options& options);
Text commandTip(const Command& command, Bar bar);

/// Where a command stands on a bar.
struct BarItem {
  int id;
  int popup = 0;             // the command whose menu it is in; 0: on the bar itself
  bool beginsGroup = false;  // a line in front of it
};

std::span<const BarItem> barItems(Bar bar);

/// Whether a list has a command, which must exist. The top lists share a bar, but those of folders
/// change nothing on the disk.
bool hasCommand(ListId view, int id);

/// What a command's state is kept in. All null: it has none.
struct CommandBinding {
  std::uint8_t* flag = nullptr;  // of a Toggle 0 or 1; of a Choice the number chosen
  std::uint8_t value = 1;        // of a Choice: its number
  Text* text = nullptr;
  std::int32_t* number = nullptr;

  bool isChecked() const { return flag != nullptr && *flag == value; }
};

/// The binding of a command on the bar of `view`, or with null on the main bar.
CommandBinding commandBinding(Options& options, const ListId* view, int id);

/// The table as a page in Markdown: number, caption, tooltip, bars, shortcut, what waits, and what
/// changes the disk.
Text commandPage();

}  // namespace ombrelian
