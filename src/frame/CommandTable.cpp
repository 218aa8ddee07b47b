#include "frame/CommandTable.h"

#include <algorithm>

#include "support/Translate.h"

namespace ombrelian {
namespace {

/// The picture of a command on bars and in menus.
struct Picture {
  const char* icon = "";
  bool isWordy = false;
};

struct Caption {
  Word word = {0, {}};
  int value = 0;
  std::optional<ListId> option = {};
  Word inLists = {0, {}};
};

struct Tips {
  Word tip = {0, {}};
  Word forAll = {0, {}};
};

struct When {
  CommandTime time;
  bool changesDisk = false;
  const char* waitsFor = "";
  CommandId whileBusy = CommandId::None;
  CommandNeed need = CommandNeed::Nothing;
};

using State = CommandState (*)(Options&, std::optional<ListId>);

constexpr Command commandRow(CommandId id, CommandKind kind, const Caption& caption,
                             const Tips& tips, Picture picture, const char* key, const When& when,
                             State state) {
  return {id,
          kind,
          caption.word,
          caption.value,
          caption.option,
          caption.inLists,
          tips.tip,
          tips.forAll,
          picture.icon,
          picture.isWordy,
          key,
          when.time,
          when.waitsFor,
          when.changesDisk,
          when.whileBusy,
          when.need,
          state};
}

/// The settings of a list; empty for the main bar.
ListSettings of(Options& options, std::optional<ListId> list) {
  return list ? listSettings(options, *list) : ListSettings();
}

/// The size settings of a list; without a list those that all lists share.
ListSettings sizes(Options& options, std::optional<ListId> list) {
  return list ? listSettings(options, *list) : commonSettings(options);
}

/// Whether a filter is active: the filter of the list, or without a list any filter of scans.
bool isFiltered(const Options& options, std::optional<ListId> list) {
  return list ? options.FileList_Filter_Active == 1 && !options.FileList_Filter_Text.empty()
              : filtersOfScan(options) > 0;
}

// clang-format off
#define TEXT(number, german) {{number, german}}
#define CAPTIONS(number, german, inLists, germanInLists) {{number, german}, 0, {}, {inLists, germanInLists}}
#define NUMBERED(number, german, value) {{number, german}, value}
#define OPTION(list) {{0, {}}, 0, list}
#define CAPTION {}
#define TIPS(number, german, numberForAll, germanForAll) {{number, german}, {numberForAll, germanForAll}}
#define TIP_FOR_ALL(number, german) {{0, {}}, {number, german}}
#define ICON(name) {name}
#define WORD(name) {name, true}
#define PLAIN {}
#define IDLE {CommandTime::Idle}
#define SCANNING {CommandTime::Scanning}
#define ALWAYS_AS(name) {CommandTime::Always, false, "", CommandId::name}
#define NEEDS(need, changesDisk) {CommandTime::Idle, changesDisk, "", CommandId::None, CommandNeed::need}
#define ROWS NEEDS(Rows, false)
#define SELECTION NEEDS(Selection, false)
#define OBJECT NEEDS(Path, false)
#define NETWORK NEEDS(NetworkPath, false)
#define DISK NEEDS(Path, true)
#define LATER(what) {CommandTime::Never, false, what}
#define FLAG(place) CommandState{place}
#define CHOICE(place, value) CommandState{place, value}
#define FLAG_OR(place, other) CommandState{place, 1, nullptr, {}, other}
#define EDIT(place, name) CommandState{nullptr, 1, place, {}, nullptr, CommandId::name}
#define NUMBER(place, least, most) CommandState{nullptr, 1, nullptr, {place, least, most}}
#define MARK(condition) CommandState{nullptr, 1, nullptr, {}, nullptr, CommandId::None, true, condition}
#define NONE CommandState{}
#define COMMAND(name, number, kind, caption, tip, picture, key, when, state, does)         \
  commandRow(CommandId::name, CommandKind::kind, caption, tip, picture, key, when,         \
             []([[maybe_unused]] Options& o, [[maybe_unused]] std::optional<ListId> list) { \
               return state;                                                               \
             }),
// clang-format on

constexpr Command kCommands[] = {
#include "frame/Commands.inc"
};

#undef COMMAND
#undef NONE
#undef MARK
#undef NUMBER
#undef EDIT
#undef FLAG_OR
#undef CHOICE
#undef FLAG
#undef LATER
#undef DISK
#undef NETWORK
#undef OBJECT
#undef SELECTION
#undef ROWS
#undef NEEDS
#undef ALWAYS_AS
#undef SCANNING
#undef IDLE
#undef PLAIN
#undef WORD
#undef ICON
#undef TIP_FOR_ALL
#undef TIPS
#undef CAPTION
#undef OPTION
#undef NUMBERED
#undef CAPTIONS
#undef TEXT

constexpr TextView kBarNames[] = {u"main",   u"header",     u"folders",   u"drives",
                                  u"files",  u"top",        u"hardlinks", u"junctions",
                                  u"owners", u"extensions", u"log"};
static_assert(std::size(kBarNames) == kBars);

Text inCell(const Text& text) { return replaceAll(text, u"|", u"\\|"); }

Text barsOf(CommandId id) {
  Text names;
  for (int bar = 0; bar < kBars; ++bar) {
    const auto items = barItems(Bar(bar));
    if (std::none_of(items.begin(), items.end(), [&](const BarItem& i) { return i.id == id; }))
      continue;
    if (!names.empty()) names += u", ";
    names += kBarNames[bar];
  }
  return names.empty() ? Text(u"context menus") : names;
}

void appendRow(const Command& command, Text& page) {
  const Word& caption = command.option ? listRow(*command.option).option : command.caption;
  const Text value = command.value == 0 ? Text(u"N") : toText(command.value);
  page.append(u"| ").append(toText(int(command.id)));
  page.append(u" | ").append(inCell(TL(caption.id, caption.german, {value})));
  page.append(u" | ").append(inCell(TL(command.tip.id, command.tip.german)));
  page.append(u" | ").append(barsOf(command.id));
  page.append(u" | ").append(fromAscii(command.shortcut));
  page.append(u" | ").append(fromAscii(command.waitsFor));
  page.append(u" | ").append(command.changesDisk ? u"yes" : u"").append(u" |\n");
}

/// The commands on a bar from left to right, each menu in parentheses behind its command. "/" is
/// the line between two groups.
void appendBar(Bar bar, Text& page) {
  page.append(u"| ").append(kBarNames[int(bar)]).append(u" |");
  CommandId menu = CommandId::None;
  for (const BarItem& item : barItems(bar)) {
    if (item.popup != menu && menu != CommandId::None) page += u" )";
    if (item.beginsGroup) page += u" /";
    if (item.popup != menu && item.popup != CommandId::None) page += u" (";
    menu = item.popup;
    page.append(u" ").append(toText(int(item.id)));
  }
  page.append(menu == CommandId::None ? u"" : u" )").append(u" |\n");
}

}  // namespace

int filtersOfScan(const Options& o) {
  const std::pair<std::uint8_t, const Text&> filters[] = {
      {o.FolderList_FilterFilesInclude_Active, o.FolderList_FilterFilesInclude_Text},
      {o.FolderList_FilterFilesExclude_Active, o.FolderList_FilterFilesExclude_Text},
      {o.FolderList_FilterFolderInclude_Active, o.FolderList_FilterFolderInclude_Text},
      {o.FolderList_FilterFolderExclude_Active, o.FolderList_FilterFolderExclude_Text}};
  return int(std::count_if(std::begin(filters), std::end(filters), [](const auto& filter) {
    return filter.first == 1 && !filter.second.empty();
  }));
}

std::span<const Command> commandTable() { return kCommands; }

const Command& commandOf(CommandId id) {
  return *std::lower_bound(
      std::begin(kCommands), std::end(kCommands), id,
      [](const Command& command, CommandId wanted) { return command.id < wanted; });
}

Text commandCaption(const Command& command, const Options& options, Bar bar) {
  if (command.option) return optionCaption(options, *command.option);
  const bool isOther = bar != Bar::Main && !command.captionInLists.german.empty();
  const Word& caption = isOther ? command.captionInLists : command.caption;
  return TL(caption.id, caption.german, {toText(command.value)});
}

Text commandTip(const Command& command, Bar bar) {
  const Word& tip =
      bar == Bar::Main && !command.tipForAll.german.empty() ? command.tipForAll : command.tip;
  return tip.german.empty() ? Text() : TL(tip.id, tip.german);
}

CommandState commandState(Options& options, std::optional<ListId> list, CommandId id) {
  return commandOf(id).state(options, list);
}

Text commandPage() {
  Text page = u"# Commands\n\nMade by `ombrelian --commands`.\n\n";
  page += u"| Number | Caption | Tooltip | Bars | Shortcut | Waits for | Changes the disk |\n";
  page += u"|---:|---|---|---|---|---|---|\n";
  for (const Command& command : kCommands)
    appendRow(command, page);
  page += u"\n## Bars\n\nA menu is in parentheses; a slash is a line between two groups.\n\n";
  page += u"| Bar | Commands from left to right |\n|---|---|\n";
  for (int bar = 0; bar < kBars; ++bar)
    appendBar(Bar(bar), page);
  return page;
}

}  // namespace ombrelian
