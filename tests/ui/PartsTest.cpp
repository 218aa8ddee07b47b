// The parts of the window, each through its own interface.

#include <QSignalSpy>
#include <QStatusBar>

#include "tests/ui/WindowFixture.h"
#include "ui/FolderCommands.h"
#include "ui/Looks.h"
#include "ui/OpenCommands.h"
#include "ui/QtText.h"
#include "ui/StatusLine.h"

namespace ombrelian::ui {
namespace {

using namespace Qt::StringLiterals;
using testing::Answer;

TEST(QtTextTest, NamesOfAnyKindSurviveAndTakeOneLine) {
  const Text name = Text(u"a\nb\tc\x7F") + char16_t(0xDC80) + u"\U0001F4C1";
  EXPECT_EQ(ombrelian::ui::toText(toQString(name)), name);
  EXPECT_EQ(shownOnOneLine(u"a\nb\tc\x7F"), toQString(u"a\u240Ab\u2409c\u2421"));
}

class PartsTest : public testing::WindowTest {
 protected:
  ListPane& pane(ListId list) { return run_.pane(list); }
  QStringList names(ListId list) { return run_.column(list); }

  testing::Program run_{data_};
  const Parts& parts_ = run_.window->parts();
  Session& session_ = run_.session;
};

TEST_F(PartsTest, ASourceIsOfferedOnceAndKeptForTheNextStart) {
  const int drives = parts_.sources.count();
  for (const Text& path : {tree_.text() + u"/", tree_.text("big"), tree_.text()})
    parts_.sources.AddNewSearchPath(path);
  EXPECT_EQ(parts_.sources.count(), drives + 2);
  EXPECT_EQ(parts_.sources.path(), tree_.text());
  parts_.sources.store();
  run_.startUp->settings().flush();
  WindowState state(session_, run_.startUp->settings());
  SourceBox next(state, nullptr);
  next.load();
  EXPECT_EQ(next.count(), drives + 2);
  EXPECT_EQ(next.path(), tree_.text());
  next.Quelle_Entfernen();
  EXPECT_EQ(next.count(), drives + 1);
  next.AddNewSearchPath(u"/");
  const int all = next.count();
  next.Quelle_Entfernen();
  EXPECT_EQ(next.count(), all) << "a drive stays";
}

TEST_F(PartsTest, ARunTellsWhenItStartsAndEnds) {
  const QSignalSpy starting(&parts_.scans, &ScanControl::starting);
  const QSignalSpy finished(&parts_.scans, &ScanControl::finished);
  parts_.sources.setEditText({});
  parts_.scans.startOrStop();  // without a source
  EXPECT_EQ(starting.count(), 0);
  run_.scan({tree_.text()});
  EXPECT_EQ(starting.count(), 1);
  EXPECT_EQ(parts_.sources.path(), tree_.text());
  run_.scan({tree_.text("big"), tree_.text("small")});
  ASSERT_EQ(finished.count(), 2);
  EXPECT_TRUE(finished[0][0].toBool() && !finished[1][0].toBool()) << "lists stay";
}

TEST_F(PartsTest, EachButtonShowsItsListAndNoOther) {
  PaneArea& area = parts_.area;
  const auto pressed = [this] {
    std::vector<CommandId> ids;
    for (CommandSet* const set : run_.window->findChildren<CommandSet*>())
      for (const BarItem& item : barItems(Bar::Header))
        if (set->has(CommandId::ShowHardlinks) && set->action(item.id)->isChecked())
          ids.push_back(item.id);
    return ids;
  };
  const std::pair<ListId, CommandId> lists[] = {{ListId::Files, CommandId::ShowFiles},
                                                {ListId::NewestFiles, CommandId::ShowTopLists},
                                                {ListId::Hardlinks, CommandId::ShowHardlinks},
                                                {ListId::Log, CommandId::ShowLog}};
  for (const auto& [list, command] : lists) {
    area.Change_ButtonHeaderActive(list);
    EXPECT_EQ(area.rightList(), list);
    EXPECT_TRUE(pane(list).isVisible());
    EXPECT_EQ(pressed(), std::vector<CommandId>{command});
  }
  area.showTopLists();
  EXPECT_EQ(area.rightList(), ListId::NewestFiles) << "the top list that was shown last";
  CommandSet& top = pane(ListId::NewestFiles).commands();
  EXPECT_EQ(top.action(CommandId::TopListMenu)->text(), u"Neuste Dateien"_s);
  EXPECT_TRUE(top.action(CommandId::ShowNewestFiles)->isChecked());
  EXPECT_FALSE(top.action(CommandId::ShowOldestFiles)->isChecked());
  area.showSides(true, false);
  EXPECT_TRUE(pressed().empty() && !area.isRightVisible());
  EXPECT_EQ(area.focusedList(), ListId::Folders);
  area.showSides(false, true);
  EXPECT_EQ(area.focusedList(), ListId::NewestFiles);
  EXPECT_FALSE(pane(ListId::Folders).isVisible());
}

TEST_F(PartsTest, FilesFollowTheSelectedFolderWhileTheirListIsVisible) {
  run_.scan({tree_.text()});
  parts_.area.Change_ButtonHeaderActive(ListId::Log);
  run_.list(ListId::Folders).goTo(1);
  parts_.files.selectedFolderChanged();
  EXPECT_TRUE(names(ListId::Files).isEmpty()) << "another list is visible";
  parts_.area.Change_ButtonHeaderActive(ListId::Files);
  parts_.files.selectedFolderChanged();
  EXPECT_EQ(names(ListId::Files).size(), 3);
  tree_.file("big/late", 1);
  parts_.files.showFiles(false);
  parts_.files.filterChanged(std::nullopt);
  EXPECT_EQ(names(ListId::Files).size(), 3) << "the folder is shown already";
  session_.options.FileList_Filter_Active = 1;
  session_.options.FileList_Filter_Text = u"late";
  parts_.files.filterChanged(ListId::Files);
  EXPECT_EQ(names(ListId::Files), QStringList(u"late"_s));
  EXPECT_EQ(pane(ListId::Files).findChild<ElidedLabel*>()->toolTip(), path("big"));
  parts_.files.hideFiles();
  EXPECT_TRUE(names(ListId::Files).isEmpty());
}

TEST_F(PartsTest, AnOwnerThatIsReadLateIsTheOneOfTheWalk) {
  run_.list(ListId::Folders).setColumnVisible(FolderColumnId::Owner, true);
  const auto owner = [&](int row) {
    return run_.cell(ListId::Folders, row, FolderColumnId::Owner);
  };
  session_.options.ShowFolderOwner = 1;
  run_.scan({tree_.text()});
  const QStringList walked = {owner(0), owner(1)};
  EXPECT_FALSE(walked[0].isEmpty()) << "a source has its owner too";
  run_.execute(ListId::Folders, CommandId::ClearFolders);
  session_.options.ShowFolderOwner = 0;
  run_.scan({tree_.text()});
  EXPECT_TRUE(owner(1).isEmpty());
  for (const int row : {0, 1}) {
    run_.list(ListId::Folders).goTo(std::size_t(row));
    parts_.files.selectedFolderChanged();
    EXPECT_EQ(owner(row), walked[row]);
  }
}

TEST_F(PartsTest, EveryListKnowsThePathsOfItsRows) {
  turnAllListsOn(session_.options);
  run_.scan({tree_.text()});
  const std::pair<ListId, const char*> firsts[] = {{ListId::LargestFiles, "big/a.bin"},
                                                   {ListId::LargestFolders, "big"},
                                                   {ListId::SmallestFolders, "small/deep"},
                                                   {ListId::Junctions, "link"}};
  for (const auto& [list, path] : firsts)
    EXPECT_EQ(pane(list).rows().path(0), tree_.text(path)) << int(list);
  for (const auto& [list, row] : {std::pair(ListId::LargestFiles, 0U), {ListId::Folders, 1U}}) {
    RowSource& rows = pane(list).rows();
    const Text before = rows.path(row);
    EXPECT_FALSE(rows.rename(row, u"../elsewhere").empty());
    EXPECT_EQ(rows.path(row), before);
  }
}

TEST_F(PartsTest, LevelsAreExpanded) {
  run_.scan({tree_.text()});
  run_.list(ListId::Folders).goTo(0);
  const std::pair<std::function<void()>, int> cases[] = {
      {[&] { parts_.folders.expandLevels(2); }, 6},
      {[&] { parts_.folders.expandLevels(1); }, 5},
      {[&] { parts_.folders.expandAll(false); }, 1},
      {[&] { parts_.folders.expandSelected(true); }, 6},
      {[&] { parts_.opening.activateRow(ListId::Folders, 0); }, 1},
      {[&] { parts_.opening.activateRow(ListId::Folders, 0); }, 6}};
  for (const auto& [expand, rows] : cases) {
    expand();
    EXPECT_EQ(names(ListId::Folders).size(), rows);
  }
}

TEST_F(PartsTest, SizesOfTheMainBarAreThoseOfAllLists) {
  Options& options = session_.options;
  options.FileSizeFormatHardlinks = kUnitKB;
  parts_.looks.changeSizes(ListId::Hardlinks);
  EXPECT_EQ(options.FileSizeFormatOwner, kUnitMB) << "a list alone changes no other";
  options.FileSizeFormat = kUnitGB;
  options.SizeFormatShowSizeTextFolders = 1;
  options.SizeFormatNachkommastellenFolders = 0;
  parts_.looks.changeSizes(std::nullopt);
  for (const ListId list : kAllLists) {
    if (listSettings(options, list).unit == nullptr) continue;
    const SizeSettings sizes = listSizes(options, list);
    EXPECT_EQ(sizes.unit, kUnitGB) << int(list);
    EXPECT_TRUE(sizes.unitText && !sizes.decimals) << int(list);
  }
  EXPECT_TRUE(run_.window->commands().action(CommandId::SizeGigabytes)->isChecked());
  for (const auto& [change, size] : {std::pair(-100, 6), {100, 32}}) {
    parts_.looks.ChangeFontSize(change);
    EXPECT_EQ(options.FontSize, size);
  }
}

TEST_F(PartsTest, ManyFilesAreOpenedOnlyAfterAQuestion) {
  for (int i = 0; i < 11; ++i)
    tree_.file("many/" + std::to_string(i), 1);
  run_.scan({tree_.text("many")});
  parts_.area.Change_ButtonHeaderActive(ListId::Files);
  parts_.files.showFiles(true);
  run_.list(ListId::Files).selectAll();
  Answer no(QMessageBox::No);
  parts_.opening.openPaths(ListId::Files);
  EXPECT_TRUE(no.text.contains(u"11"_s)) << no.text.toStdString();
}

TEST_F(PartsTest, TheStatusLineDescribesTheVisibleListUnlessSomethingRuns) {
  QStatusBar bar;
  WindowState state(session_, run_.startUp->settings());
  StatusLine line(state, parts_.panes, parts_.area, bar);
  const auto text = [&](int label) {
    line.StatusbarSetTextRightAUTO();
    return bar.findChildren<QLabel*>()[label]->text();
  };
  run_.scan({tree_.text()});
  parts_.area.Change_ButtonHeaderActive(ListId::Log);
  EXPECT_TRUE(text(0).startsWith(u'1')) << text(0).toStdString();
  EXPECT_TRUE(text(1).startsWith(QString::number(session_.log.rows().size())));
  line.showProgress(u"reading"_s);
  session_.context.ScanBusy = true;
  EXPECT_EQ(text(1), u"reading"_s);
  session_.context.ScanBusy = false;
  parts_.area.showSides(true, false);
  EXPECT_EQ(text(1), QString());
}

TEST_F(PartsTest, OneLogLineIsOneRow) {
  ListPane& log = pane(ListId::Log);
  const int before = log.model().rowCount();
  for (const bool isError : {false, true})
    session_.log.LogProtokoll(u"line", isError);
  EXPECT_EQ(log.model().rowCount(), before + 2);
  for (const bool isError : {false, true})
    EXPECT_EQ(log.rows().look(std::size_t(before + isError)).isError, isError);
  parts_.panes.clearLog();
  EXPECT_EQ(log.model().rowCount(), 0);
}

}  // namespace
}  // namespace ombrelian::ui
