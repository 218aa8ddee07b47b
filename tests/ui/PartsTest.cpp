// The parts of the window, each through its own interface and without the window.

#include <gtest/gtest.h>

#include <QMenu>
#include <QSignalSpy>
#include <QTest>

#include "tests/ui/WindowFixture.h"
#include "ui/FolderCommands.h"
#include "ui/Looks.h"
#include "ui/OpenCommands.h"
#include "ui/QtText.h"
#include "ui/StatusLine.h"

namespace ombrelian::ui {
namespace {

using testing::Answer;
using testing::TestFolder;

/// All parts over the settings of a data folder, in a plain widget.
struct Made {
  explicit Made(const TestFolder& data) {
    qputenv("XDG_CONFIG_HOME", data.path().c_str());
    startUp = std::make_unique<StartUp>(CommandLine(), Text(), 7);
    session.loadOptions(startUp->settings());
    state = std::make_unique<WindowState>(session, startUp->settings());
    widget.resize(1200, 700);
    main = new CommandSet(Bar::Main, std::nullopt, session.options, &widget);
    header = new CommandSet(Bar::Header, std::nullopt, session.options, &widget);
    progress = new ProgressStrip(&widget);
    dialogs = std::make_unique<WindowDialogs>(widget, *progress);
    panes = std::make_unique<Panes>(*state, &widget);
    area = new PaneArea(*panes, *header, session, &widget);
    area->resize(widget.size());
    sources = new SourceBox(*state, &widget);
    scans = std::make_unique<ScanControl>(*state, *dialogs, *panes, *sources);
    files = std::make_unique<FilesOfFolder>(*state, *panes);
  }
  ~Made() { delete area; }

  QStringList names(ListId list) {
    QStringList names;
    const ListModel& model = panes->pane(list).model();
    for (int row = 0; row < model.rowCount(); ++row)
      names.append(model.index(row, 1).data().toString());
    return names;
  }

  std::unique_ptr<StartUp> startUp;
  Session session;
  QWidget widget;
  std::unique_ptr<WindowState> state;
  CommandSet* main;
  CommandSet* header;
  ProgressStrip* progress;
  std::unique_ptr<WindowDialogs> dialogs;
  std::unique_ptr<Panes> panes;
  PaneArea* area;
  SourceBox* sources;
  std::unique_ptr<ScanControl> scans;
  std::unique_ptr<FilesOfFolder> files;
};

class PartsTest : public testing::WindowTest {
 protected:
  Made made_{data_};
};

TEST_F(PartsTest, ASourceIsOfferedOnceAndKeptForTheNextStart) {
  SourceBox& box = *made_.sources;
  box.load();
  const int drives = box.count();
  box.AddNewSearchPath(tree_.text() + u"/");
  box.AddNewSearchPath(tree_.text("big"));
  box.AddNewSearchPath(tree_.text());
  EXPECT_EQ(box.count(), drives + 2);
  EXPECT_EQ(box.path(), tree_.text());
  box.store();
  made_.startUp->settings().flush();
  SourceBox next(*made_.state, nullptr);
  next.load();
  EXPECT_EQ(next.count(), drives + 2);
  EXPECT_EQ(next.path(), tree_.text());
  next.Quelle_Entfernen();
  EXPECT_EQ(next.count(), drives + 1);
  const Text before = next.path();
  next.AddNewSearchPath(u"/");
  const int all = next.count();
  next.Quelle_Entfernen();
  EXPECT_EQ(next.count(), all) << "a drive stays; before it " << toBytes(before);
}

TEST_F(PartsTest, ARunTellsWhenItStartsAndEnds) {
  turnAllListsOn(made_.session.options);
  const QSignalSpy starting(made_.scans.get(), &ScanControl::starting);
  const QSignalSpy finished(made_.scans.get(), &ScanControl::finished);
  const QSignalSpy busy(made_.dialogs.get(), &WindowDialogs::busyChanged);
  made_.scans->startOrStop();  // without a source
  EXPECT_EQ(starting.count(), 0);
  made_.scans->scan({tree_.text()});
  ASSERT_EQ(finished.count(), 1);
  EXPECT_TRUE(finished[0][0].toBool());
  ASSERT_EQ(busy.count(), 2);
  EXPECT_TRUE(busy[0][0].toBool());
  EXPECT_FALSE(busy[1][0].toBool());
  EXPECT_EQ(made_.names(ListId::Folders)[1], QStringLiteral("big"));
  EXPECT_EQ(made_.names(ListId::LargestFiles)[0], QStringLiteral("a.bin"));
  EXPECT_EQ(made_.sources->path(), tree_.text());
  EXPECT_FALSE(made_.scans->isScanning());
  made_.scans->scan({tree_.text("big"), tree_.text("small")});
  ASSERT_EQ(finished.count(), 2);
  EXPECT_FALSE(finished[1][0].toBool());
  EXPECT_EQ(made_.names(ListId::LargestFiles)[0], QStringLiteral("a.bin")) << "lists stay";
}

TEST_F(PartsTest, EachButtonShowsItsListAndNoOther) {
  PaneArea& area = *made_.area;
  made_.widget.show();
  const auto pressed = [this] {
    std::vector<CommandId> ids;
    for (const BarItem& item : barItems(Bar::Header)) {
      if (made_.header->action(item.id)->isChecked()) ids.push_back(item.id);
    }
    return ids;
  };
  const std::pair<ListId, CommandId> lists[] = {{ListId::Files, CommandId::ShowFiles},
                                                {ListId::NewestFiles, CommandId::ShowTopLists},
                                                {ListId::Hardlinks, CommandId::ShowHardlinks},
                                                {ListId::Log, CommandId::ShowLog}};
  for (const auto& [list, command] : lists) {
    area.Change_ButtonHeaderActive(list);
    EXPECT_EQ(area.rightList(), list);
    EXPECT_TRUE(made_.panes->pane(list).isVisible());
    EXPECT_EQ(pressed(), std::vector<CommandId>{command});
  }
  area.showTopLists();
  EXPECT_EQ(area.rightList(), ListId::NewestFiles) << "the top list that was shown last";
  CommandSet& top = made_.panes->pane(ListId::NewestFiles).commands();
  EXPECT_EQ(top.action(CommandId::TopListMenu)->text(), QStringLiteral("Neuste Dateien"));
  EXPECT_TRUE(top.action(CommandId::ShowNewestFiles)->isChecked());
  EXPECT_FALSE(top.action(CommandId::ShowOldestFiles)->isChecked());
  area.showSides(true, false);
  EXPECT_EQ(pressed(), std::vector<CommandId>());
  EXPECT_FALSE(area.isRightVisible());
  EXPECT_EQ(area.focusedList(), ListId::Folders);
  area.showSides(false, true);
  EXPECT_EQ(area.focusedList(), ListId::NewestFiles);
  EXPECT_FALSE(made_.panes->pane(ListId::Folders).isVisible());
}

TEST_F(PartsTest, FilesFollowTheSelectedFolderWhileTheirListIsVisible) {
  made_.scans->scan({tree_.text()});
  ListView& tree = made_.panes->pane(ListId::Folders).list();
  tree.goTo(1);
  made_.files->selectedFolderChanged();
  EXPECT_TRUE(made_.names(ListId::Files).isEmpty()) << "another list is visible";
  made_.area->Change_ButtonHeaderActive(ListId::Files);
  made_.files->selectedFolderChanged();
  EXPECT_EQ(made_.names(ListId::Files).size(), 3);
  tree_.file("big/late", 1);
  made_.files->showFiles(false);
  made_.files->filterChanged(std::nullopt);
  EXPECT_EQ(made_.names(ListId::Files).size(), 3) << "the folder is shown already";
  made_.session.options.FileList_Filter_Active = 1;
  made_.session.options.FileList_Filter_Text = u"late";
  made_.files->filterChanged(ListId::Files);
  EXPECT_EQ(made_.names(ListId::Files), QStringList(QStringLiteral("late")));
  ElidedLabel& folder = *made_.panes->pane(ListId::Files).findChild<ElidedLabel*>();
  EXPECT_EQ(folder.toolTip(), toQString(tree_.text("big")));
  made_.files->hideFiles();
  EXPECT_TRUE(made_.names(ListId::Files).isEmpty());
  EXPECT_TRUE(made_.state->files.folder().empty());
}

TEST_F(PartsTest, AnOwnerThatIsReadLateIsTheOneOfTheWalk) {
  ListPane& tree = made_.panes->pane(ListId::Folders);
  tree.list().setColumnVisible(FolderColumnId::Owner, true);
  const auto owner = [&](int row) {
    return tree.model().index(row, FolderColumnId::Owner).data().toString();
  };
  made_.session.options.ShowFolderOwner = 1;
  made_.scans->scan({tree_.text()});
  const QStringList walked = {owner(0), owner(1)};
  EXPECT_FALSE(walked[0].isEmpty()) << "a source has its owner too";
  made_.session.tree.clear();
  made_.session.options.ShowFolderOwner = 0;
  made_.scans->scan({tree_.text()});
  EXPECT_TRUE(owner(1).isEmpty());
  for (const int row : {0, 1}) {
    tree.list().goTo(std::size_t(row));
    made_.files->selectedFolderChanged();
    EXPECT_EQ(owner(row), walked[row]);
  }
}

TEST_F(PartsTest, EveryListKnowsThePathsOfItsRows) {
  turnAllListsOn(made_.session.options);
  made_.scans->scan({tree_.text()});
  const std::pair<ListId, const char*> firsts[] = {{ListId::LargestFiles, "big/a.bin"},
                                                   {ListId::LargestFolders, "big"},
                                                   {ListId::SmallestFolders, "small/deep"},
                                                   {ListId::Junctions, "link"}};
  for (const auto& [list, path] : firsts)
    EXPECT_EQ(made_.panes->pane(list).rows().path(0), tree_.text(path)) << int(list);
  RowSource& files = made_.panes->pane(ListId::LargestFiles).rows();
  EXPECT_FALSE(files.rename(0, u"../elsewhere").empty());
  EXPECT_EQ(files.path(0), tree_.text("big/a.bin"));
  RowSource& folders = made_.panes->pane(ListId::Folders).rows();
  EXPECT_FALSE(folders.rename(1, u"../elsewhere").empty());
  EXPECT_EQ(folders.path(1), tree_.text("big"));
}

TEST_F(PartsTest, LevelsAreExpandedAndSourcesTakenAway) {
  FolderCommands folders(*made_.state, *made_.panes, *made_.area, *made_.files);
  made_.scans->scan({tree_.text()});
  folders.expandLevels(2);
  EXPECT_EQ(made_.names(ListId::Folders).size(), 6);
  folders.expandLevels(1);
  EXPECT_EQ(made_.names(ListId::Folders).size(), 5);
  folders.expandAll(false);
  EXPECT_EQ(made_.names(ListId::Folders).size(), 1);
  made_.panes->pane(ListId::Folders).list().goTo(0);
  folders.expandSelected(true);
  EXPECT_EQ(made_.names(ListId::Folders).size(), 6);
  folders.clearFolders();
  EXPECT_TRUE(made_.names(ListId::Folders).isEmpty());
  EXPECT_TRUE(made_.session.tree.empty());
}

TEST_F(PartsTest, SizesOfTheMainBarAreThoseOfAllLists) {
  Looks looks(*made_.state, *made_.dialogs, *made_.panes, *made_.area, *made_.main, *made_.header,
              made_.widget);
  Options& options = made_.session.options;
  options.FileSizeFormatHardlinks = kUnitKB;
  looks.changeSizes(ListId::Hardlinks);
  EXPECT_EQ(options.FileSizeFormatOwner, kUnitMB) << "a list alone changes no other";
  options.FileSizeFormat = kUnitGB;
  options.SizeFormatShowSizeTextFolders = 1;
  options.SizeFormatNachkommastellenFolders = 0;
  looks.changeSizes(std::nullopt);
  for (const ListId list : kAllLists) {
    if (listSettings(options, list).unit == nullptr) continue;
    const SizeSettings sizes = listSizes(options, list);
    EXPECT_EQ(sizes.unit, kUnitGB) << int(list);
    EXPECT_TRUE(sizes.unitText) << int(list);
    EXPECT_FALSE(sizes.decimals) << int(list);
  }
  EXPECT_TRUE(made_.main->action(CommandId::SizeGigabytes)->isChecked());
  looks.ChangeFontSize(-100);
  EXPECT_EQ(options.FontSize, 6);
  looks.ChangeFontSize(100);
  EXPECT_EQ(options.FontSize, 32);
}

TEST_F(PartsTest, ManyFilesAreOpenedOnlyAfterAQuestion) {
  OpenCommands opening(*made_.state, *made_.dialogs, *made_.panes, *made_.scans);
  made_.scans->scan({tree_.text()});
  opening.activateRow(ListId::Folders, 0);
  EXPECT_EQ(made_.names(ListId::Folders).size(), 1) << "Enter collapses what is expanded";
  opening.activateRow(ListId::Folders, 0);
  EXPECT_EQ(made_.names(ListId::Folders).size(), 5);
  for (int i = 0; i < 11; ++i)
    tree_.file("many/" + std::to_string(i), 1);
  made_.scans->scan({tree_.text("many")});
  made_.area->Change_ButtonHeaderActive(ListId::Files);
  made_.files->showFiles(true);
  made_.panes->pane(ListId::Files).list().selectAll();
  Answer no(QMessageBox::No);
  opening.openPaths(ListId::Files);
  EXPECT_TRUE(no.text.contains(QStringLiteral("11"))) << no.text.toStdString();
}

TEST_F(PartsTest, TheStatusLineDescribesTheVisibleListUnlessSomethingRuns) {
  QStatusBar bar;
  StatusLine line(*made_.state, *made_.panes, *made_.area, bar);
  const auto texts = [&bar] {
    QStringList shown;
    for (const QLabel* const label : bar.findChildren<QLabel*>())
      shown.append(label->text());
    return shown;
  };
  made_.scans->scan({tree_.text()});
  made_.area->Change_ButtonHeaderActive(ListId::Log);
  line.StatusbarSetTextRightAUTO();
  EXPECT_TRUE(texts()[0].startsWith(u'1')) << texts().join(u'|').toStdString();
  EXPECT_TRUE(texts()[1].startsWith(QString::number(made_.session.log.rows().size())));
  line.showProgress(QStringLiteral("reading"));
  made_.session.context.ScanBusy = true;
  line.StatusbarSetTextRightAUTO();
  EXPECT_EQ(texts()[1], QStringLiteral("reading"));
  made_.session.context.ScanBusy = false;
  made_.area->showSides(true, false);
  line.StatusbarSetTextRightAUTO();
  EXPECT_EQ(texts()[1], QString());
}

TEST_F(PartsTest, OneLogLineIsOneRow) {
  const int before = made_.panes->pane(ListId::Log).model().rowCount();
  made_.session.log.LogProtokoll(u"first");
  made_.session.log.LogProtokoll(u"second", true);
  EXPECT_EQ(made_.panes->pane(ListId::Log).model().rowCount(), before + 2);
  EXPECT_TRUE(made_.panes->pane(ListId::Log).rows().look(std::size_t(before + 1)).isError);
  EXPECT_FALSE(made_.panes->pane(ListId::Log).rows().look(std::size_t(before)).isError);
  made_.panes->clearLog();
  EXPECT_EQ(made_.panes->pane(ListId::Log).model().rowCount(), 0);
}

}  // namespace
}  // namespace ombrelian::ui
