#pragma once

#include <optional>
#include <span>

#include "lists/ListTable.h"

namespace ombrelian {

/// Every command of the program by its number; see Commands.inc.
enum class CommandId : std::uint16_t {
  None = 0,
// NOLINTNEXTLINE(bugprone-macro-parentheses): an enumerator takes none
#define COMMAND(name, number, kind, caption, tip, picture, key, when, state, does) name = number,
#include "frame/Commands.inc"
#undef COMMAND
};

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
Bar barOf(ListId list);

enum class CommandKind : std::uint8_t {
  Button,
  Toggle,  // on or off
  Choice,  // one of several
  Popup,   // opens a menu of others
  Edit,    // holds a text or a number
};

/// When a command can be used.
enum class CommandTime : std::uint8_t {
  Idle,      // while nothing runs
  Scanning,  // only while something does
  Always,
  Never,  // the command is still to be built
};

/// What a command's state is kept in. All null: the command has none.
struct CommandState {
  std::uint8_t* flag = nullptr;  // 0 or 1 for a Toggle; the chosen number for a Choice
  std::uint8_t value = 1;        // number of this Choice
  Text* text = nullptr;
  std::int32_t* number = nullptr;
  std::uint8_t* excludes = nullptr;        // flag that is cleared when `flag` is set
  CommandId switchedOn = CommandId::None;  // Toggle that is on while `text` is not empty
  bool hasMark = false;                    // the button of a menu shows `isMarked`
  bool isMarked = false;

  bool isChecked() const { return flag != nullptr && *flag == value; }
};

/// What a command is called and looks like, when it is on and where its state is kept.
struct Command {
  CommandId id;
  CommandKind kind;
  Word caption;
  int value = 0;                      // "%1" of the caption; 0: it has none
  std::optional<ListId> option = {};  // the list whose option is the caption
  Word tip = {0, {}};                 // no text: the caption says it all
  Word tipForAll = {0, {}};           // on the main bar, where the command changes all lists
  const char* icon = "";              // name of a picture; empty: none
  bool isWordy = false;               // the picture needs the caption beside it
  const char* shortcut = "";          // key in the portable form, such as "Ctrl+S"; empty: none
  CommandTime time = CommandTime::Idle;
  const char* waitsFor = "";  // what is still to be built if the command is Never on
  bool changesDisk = false;   // touches what was scanned; off where nothing may be changed
  CommandId whileBusy =
      CommandId::None;  // command whose look it has while something runs; None: its own
  CommandState (*state)(Options&, std::optional<ListId>) = nullptr;
};

/// How many of the filters of scans are on and not empty.
int filtersOfScan(const Options& options);

std::span<const Command> commandTable();

/// `id` must be in the table.
const Command& commandOf(CommandId id);

/// Caption and tooltip in the language in force. On the main bar the size commands speak of all
/// lists.
Text commandCaption(const Command& command, const Options& options);
Text commandTip(const Command& command, Bar bar);

/// Where the state of a command is kept for a list, or with none for the main bar.
CommandState commandState(Options& options, std::optional<ListId> list, CommandId id);

/// Where a command is on a bar.
struct BarItem {
  CommandId id;
  CommandId popup = CommandId::None;  // the command whose menu it is in; None: on the bar itself
  bool beginsGroup = false;           // a line is in front of it
};

std::span<const BarItem> barItems(Bar bar);

/// The commands in the context menu of a row; None is a line.
std::span<const CommandId> rowCommands(ListId list);

/// Whether a list has a command. The top lists share a bar, but those of folders change nothing on
/// the disk.
bool hasCommand(ListId list, CommandId id);

/// The table as a page in Markdown: number, caption, tooltip, bars, shortcut, what waits, and what
/// changes the disk.
Text commandPage();

}  // namespace ombrelian
