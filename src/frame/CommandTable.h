#pragma once

#include <algorithm>
#include <optional>
#include <span>

#include "lists/ListTable.h"

namespace ombrelian {

/// Every command of the program with its number; see Commands.inc.
enum class CommandId : std::uint16_t {
  None = 0,
// NOLINTNEXTLINE(bugprone-macro-parentheses): an enumerator cannot have parentheses
#define COMMAND(name, number, kind, caption, tip, picture, key, when, state, does) name = number,
#include "frame/Commands.inc"
#undef COMMAND
};

/// The bars of the window: the main bar at the top, one bar for each list (the top lists share
/// one), and the row of buttons that chooses the list on the right.
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
  Toggle,  // has the states on and off
  Choice,  // is one of several choices
  Popup,   // opens a menu of other commands
  Edit,    // contains a text or a number
};

/// The time when a command can be used.
enum class CommandTime : std::uint8_t {
  Idle,      // only while nothing runs
  Scanning,  // only while something runs
  Always,
  Never,  // the command is not implemented yet
};

/// What the list of a command must have, or the command has nothing to do.
enum class CommandNeed : std::uint8_t {
  Nothing,
  Rows,
  Selection,    // a selected row
  Path,         // a selected row that is an object with a path
  NetworkPath,  // a selected row that is a stored network path
};

/// A number in the options that the user can type, with its range.
struct NumberPlace {
  std::int64_t* place = nullptr;  // null: the command has no number
  std::int64_t least = 0;
  std::int64_t most = 0;

  explicit operator bool() const { return place != nullptr; }

  /// Stores the next number in the range.
  void set(std::int64_t number) const { *place = std::clamp(number, least, most); }
};

/// The places that store the state of a command. All null: the command has no state.
struct CommandState {
  std::uint8_t* flag = nullptr;  // 0 or 1 for a Toggle; the chosen number for a Choice
  std::uint8_t value = 1;        // number of this Choice
  Text* text = nullptr;
  NumberPlace number = {};
  std::uint8_t* excludes = nullptr;        // flag that is cleared when `flag` is set
  CommandId switchedOn = CommandId::None;  // Toggle that is on while `text` is not empty
  bool hasMark = false;                    // the button of a menu shows `isMarked`
  bool isMarked = false;

  bool isChecked() const { return flag != nullptr && *flag == value; }
};

/// Everything that is fixed for a command: its texts, its picture, when it is on, and where its
/// state is stored.
struct Command {
  CommandId id;
  CommandKind kind;
  Word caption;
  int value = 0;                      // "%1" of the caption; 0: the caption has no "%1"
  std::optional<ListId> option = {};  // the list whose option is the caption
  Word captionInLists = {0, {}};      // caption on the bars of lists; no text: the same
  Word tip = {0, {}};                 // no text: the caption is enough
  Word tipForAll = {0, {}};   // tooltip on the main bar, where the command changes all lists
  const char* icon = "";      // name of a picture; empty: none
  bool isWordy = false;       // the picture needs the caption beside it
  const char* shortcut = "";  // key in the portable form, such as "Ctrl+S"; empty: none
  CommandTime time = CommandTime::Idle;
  const char* waitsFor = "";  // missing part of the program if the command is Never on
  bool changesDisk = false;   // changes scanned objects; off in a read-only window
  CommandId whileBusy =
      CommandId::None;  // command whose look it has while something runs; None: its own look
  CommandNeed need = CommandNeed::Nothing;
  CommandState (*state)(Options&, std::optional<ListId>) = nullptr;
};

/// Number of scan filters that are on and not empty.
int filtersOfScan(const Options& options);

std::span<const Command> commandTable();

/// The table entry of `id`, which must be in the table.
const Command& commandOf(CommandId id);

/// Caption and tooltip on a bar, in the language in force. On the main bar the size commands speak
/// of all lists.
Text commandCaption(const Command& command, const Options& options, Bar bar = Bar::Main);
Text commandTip(const Command& command, Bar bar);

/// The places that store the state of a command for a list, or for the main bar if there is no
/// list.
CommandState commandState(Options& options, std::optional<ListId> list, CommandId id);

/// Place of a command on a bar.
struct BarItem {
  CommandId id;
  CommandId popup = CommandId::None;  // command whose menu contains it; None: on the bar itself
  bool beginsGroup = false;           // a line is in front of it
};

std::span<const BarItem> barItems(Bar bar);

/// The commands in the context menu of a row; None is a line.
std::span<const CommandId> rowCommands(ListId list);

/// Whether a list has a command. The top lists share a bar, but the top lists of folders change
/// nothing on the disk.
bool hasCommand(ListId list, CommandId id);

/// The tables as a page in Markdown: number, caption, tooltip, bars, shortcut and missing part of
/// each command, which commands change the disk, and what is on each bar.
Text commandPage();

}  // namespace ombrelian
