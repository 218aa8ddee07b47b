#include "frame/CommandTable.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>

namespace ombrelian {
namespace {

TEST(CommandTableTest, BarsHoldKnownCommandsInKnownMenus) {
  int last = 0;
  for (const Command& command : commandTable()) {
    EXPECT_LT(last, command.id);
    last = command.id;
  }
  for (int bar = 0; bar < kBars; ++bar) {
    std::set<int> ids;
    for (const BarItem& item : barItems(Bar(bar))) {
      ASSERT_NE(findCommand(item.id), nullptr) << item.id;
      EXPECT_TRUE(ids.insert(item.id).second) << item.id << " stands twice on bar " << bar;
      if (item.popup == 0) continue;
      EXPECT_TRUE(ids.contains(item.popup)) << item.id << " comes before its menu";
      EXPECT_EQ(int(findCommand(item.popup)->kind), int(CommandKind::Popup));
    }
  }
  EXPECT_EQ(findCommand(1), nullptr);
  EXPECT_EQ(findCommand(9999), nullptr);
}

/// A key that two commands of one bar, or of a list and the main bar, want does nothing.
TEST(CommandTableTest, NoKeyMeansTwoThings) {
  std::map<std::string, std::set<int>> ofMain;
  for (int bar = 0; bar < kBars; ++bar) {
    std::map<std::string, std::set<int>> keys;
    if (Bar(bar) != Bar::Main) keys = ofMain;
    for (const BarItem& item : barItems(Bar(bar))) {
      const Command& command = *findCommand(item.id);
      if (*command.shortcut != '\0') keys[command.shortcut].insert(command.id);
    }
    for (const auto& [key, ids] : keys)
      EXPECT_EQ(ids.size(), 1U) << key << " on bar " << bar;
    if (Bar(bar) == Bar::Main) ofMain = keys;
  }
}

/// Who takes the first of the two keeps a way back.
TEST(CommandTableTest, TheRecycleBinStandsBeforeDeletingForGood) {
  const auto place = [](Bar bar, int id) {
    const auto items = barItems(bar);
    return std::find_if(items.begin(), items.end(), [&](const BarItem& i) { return i.id == id; }) -
           items.begin();
  };
  const struct {
    Bar bar;
    int recycle;
    int erase;
  } cases[] = {{Bar::Folders, 507, 506},
               {Bar::Files, 320, 321},
               {Bar::Top, 320, 321},
               {Bar::Hardlinks, 320, 321}};
  for (const auto& c : cases) {
    EXPECT_EQ(place(c.bar, c.recycle) + 1, place(c.bar, c.erase)) << int(c.bar);
    EXPECT_TRUE(findCommand(c.recycle)->changesDisk && findCommand(c.erase)->changesDisk);
  }
}

/// Two commands that write the same setting on one bar would undo each other.
TEST(CommandTableTest, EveryStateHasASettingOfItsOwn) {
  Options options;
  for (int view = -1; view < kLists; ++view) {
    const ListId id = ListId(std::max(view, 0));
    const Bar bar = view < 0 ? Bar::Main : barOf(id);
    std::set<std::pair<const void*, int>> places;
    for (const BarItem& item : barItems(bar)) {
      const CommandBinding binding = commandBinding(options, view < 0 ? nullptr : &id, item.id);
      const void* const place = binding.flag != nullptr ? static_cast<const void*>(binding.flag)
                                : binding.text != nullptr
                                    ? static_cast<const void*>(binding.text)
                                    : static_cast<const void*>(binding.number);
      if (place == nullptr) continue;
      EXPECT_TRUE(places.emplace(place, binding.value).second) << item.id << " of list " << view;
    }
  }
}

TEST(CommandTableTest, OneListStandsOnTheRight) {
  Options options;
  for (int view = int(ListId::Drives); view < kLists; ++view) {
    showList(options, ListId(view));
    EXPECT_EQ(int(shownList(options)), view);
  }
}

}  // namespace
}  // namespace ombrelian
