#include "frame/CommandTable.h"

#include <gtest/gtest.h>

#include <map>
#include <set>

namespace ombrelian {
namespace {

TEST(CommandTableTest, BarsHoldKnownCommandsInKnownMenus) {
  int last = 0;
  for (const Command& command : commandTable()) {
    EXPECT_LT(last, int(command.id));
    last = int(command.id);
    EXPECT_EQ(&commandOf(command.id), &command);
    EXPECT_EQ(findCommand(last), command.id);
    EXPECT_EQ(command.time == CommandTime::Never, *command.waitsFor != '\0') << last;
  }
  EXPECT_EQ(findCommand(1), std::nullopt);
  for (int bar = 0; bar < kBars; ++bar) {
    std::set<CommandId> ids;
    for (const BarItem& item : barItems(Bar(bar))) {
      EXPECT_TRUE(ids.insert(item.id).second) << int(item.id) << " is twice on bar " << bar;
      if (item.popup == CommandId::None) continue;
      EXPECT_TRUE(ids.contains(item.popup)) << int(item.id) << " comes before its menu";
      EXPECT_EQ(int(commandOf(item.popup).kind), int(CommandKind::Popup));
    }
  }
}

/// A key that two commands of one bar, or of a list and the main bar, want does nothing.
TEST(CommandTableTest, NoKeyMeansTwoThings) {
  std::map<std::string, std::set<CommandId>> ofMain;
  for (int bar = 0; bar < kBars; ++bar) {
    std::map<std::string, std::set<CommandId>> keys;
    if (Bar(bar) != Bar::Main) keys = ofMain;
    for (const BarItem& item : barItems(Bar(bar))) {
      const Command& command = commandOf(item.id);
      if (*command.shortcut != '\0') keys[command.shortcut].insert(command.id);
    }
    for (const auto& [key, ids] : keys)
      EXPECT_EQ(ids.size(), 1U) << key << " on bar " << bar;
    if (Bar(bar) == Bar::Main) ofMain = keys;
  }
}

/// Two commands that write the same setting on one bar would undo each other.
TEST(CommandTableTest, EveryStateHasASettingOfItsOwn) {
  Options options;
  std::vector<std::pair<Bar, std::optional<ListId>>> bars = {{Bar::Main, std::nullopt}};
  for (const ListId list : kAllLists)
    bars.emplace_back(barOf(list), list);
  for (const auto& [bar, list] : bars) {
    std::set<std::pair<const void*, int>> places;
    for (const BarItem& item : barItems(bar)) {
      const CommandState state = commandState(options, list, item.id);
      const void* const place = state.flag != nullptr   ? static_cast<const void*>(state.flag)
                                : state.text != nullptr ? static_cast<const void*>(state.text)
                                                        : static_cast<const void*>(state.number);
      if (place == nullptr) continue;
      EXPECT_TRUE(places.emplace(place, state.value).second) << int(item.id);
    }
  }
}

TEST(CommandTableTest, CommandsNameListsAndNumbers) {
  Options options;
  options.TopMaxCount[1] = 77;
  EXPECT_EQ(commandCaption(commandOf(CommandId::MakeSmallestFiles), options),
            u"Erstelle eine Liste mit den 77 kleinsten Dateien");
  EXPECT_EQ(commandCaption(commandOf(CommandId::ExpandLevel3), options), u"Bis Ebene 3 aufklappen");
  *commandState(options, std::nullopt, CommandId::MakeOwners).flag = 1;
  EXPECT_TRUE(isOn(options, ListId::Owners));
  // A filter of the list of files is another one than that of a scan.
  EXPECT_EQ(commandState(options, ListId::Files, CommandId::OnlyTheseFiles).flag,
            &options.FileList_Filter_Active);
  EXPECT_EQ(commandState(options, std::nullopt, CommandId::OnlyTheseFiles).flag,
            &options.FolderList_FilterFilesInclude_Active);
  const Command& sizes = commandOf(CommandId::SizeMenu);
  EXPECT_EQ(commandTip(sizes, Bar::Main), u"Bei allen Listen das Größenformat ändern");
  EXPECT_EQ(commandTip(sizes, Bar::Files), u"Größenformat ändern");
  EXPECT_FALSE(hasCommand(ListId::LargestFolders, CommandId::DeleteFiles));
  EXPECT_TRUE(hasCommand(ListId::LargestFiles, CommandId::DeleteFiles));
}

}  // namespace
}  // namespace ombrelian
