// The real window over real folders, driven as a user does it.

#include "ui/MainWindow.h"

#include <gtest/gtest.h>
#include <fstream>

#include <QAbstractButton>
#include <QAbstractItemModelTester>
#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QLineEdit>
#include <QMessageBox>
#include <QMimeData>
#include <QSignalBlocker>
#include <QSignalSpy>
#include <QStatusBar>
#include <QTest>
#include <QTimer>

#include "tests/ui/WindowFixture.h"
#include "ui/QtText.h"

namespace ombrelian::ui {
namespace {

using testing::Answer;
using testing::Program;
using testing::TestFolder;
using MainWindowTest = testing::WindowTest;

TEST_F(MainWindowTest, AScanFillsTreeAndLists) {
  Program run(data_);
  turnAllListsOn(run.session.options);
  run.window->parts().sources.setEditText(QString::fromStdString(tree_.path()));
  EXPECT_TRUE(run.window->execute(std::nullopt, CommandId::Start));
  EXPECT_FALSE(run.window->parts().scans.isScanning());
  EXPECT_EQ(
      run.column(ListId::Folders),
      (QStringList{QString::fromStdString(tree_.path()), QStringLiteral("big"),
                   QStringLiteral("Dateien"), QStringLiteral("small"), QStringLiteral("link")}));
  EXPECT_EQ(run.column(ListId::LargestFiles)[0], QStringLiteral("a.bin"));
  EXPECT_EQ(run.column(ListId::Hardlinks).size(), 2);
  EXPECT_EQ(run.column(ListId::Junctions).size(), 1);
  EXPECT_EQ(run.column(ListId::Extensions).size(), 2);
  EXPECT_FALSE(run.column(ListId::Log).isEmpty());
  // A second run of several sources leaves the lists and adds to the tree.
  run.window->parts().scans.scan({tree_.text("big"), tree_.text("small")});
  EXPECT_EQ(run.session.tree.nodeCount() > 8, true);
  EXPECT_EQ(run.column(ListId::Hardlinks).size(), 2);
  run.window->execute(ListId::Folders, CommandId::ClearFolders);
  EXPECT_TRUE(run.column(ListId::Folders).isEmpty());
}

TEST_F(MainWindowTest, ExpandingSortingAndSearchingKeepTheSelection) {
  Program run(data_);
  run.window->parts().scans.scan({tree_.text()});
  ListPane& pane = run.window->pane(ListId::Folders);
  run.window->execute(ListId::Folders, CommandId::ExpandAll);
  EXPECT_EQ(run.column(ListId::Folders).size(), 6);
  pane.list().goTo(1);
  const RowSource::Id big = pane.rows().id(1);
  for (int section = 1; section < pane.model().columnCount(); ++section) {
    pane.list().sortByColumn(section);
    EXPECT_EQ(pane.rows().id(pane.list().currentRow()), big) << section;
  }
  run.window->execute(ListId::Folders, CommandId::CollapseAll);
  EXPECT_EQ(run.column(ListId::Folders).size(), 1);
  // What is closed is found all the same, round the end, both ways.
  run.window->execute(ListId::Folders, CommandId::Search);
  auto* const box = pane.findChild<QLineEdit*>();
  QTest::keyClicks(box, QStringLiteral("dee"));
  for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Up, Qt::Key_Return}) {
    QTest::keyClick(box, key);
    EXPECT_EQ(run.cell(ListId::Folders, int(pane.list().currentRow()), 1), QStringLiteral("deep"));
  }
  box->setText(QStringLiteral("nowhere"));
  QTest::keyClick(box, Qt::Key_Return);
  const QList<QLabel*> labels = pane.findChildren<QLabel*>();
  EXPECT_TRUE(std::any_of(labels.begin(), labels.end(), [](const QLabel* label) {
    return label->text() == QStringLiteral("Nichts gefunden");
  }));
  QTest::keyClick(box, Qt::Key_Escape);
  EXPECT_FALSE(box->isVisible());
}

TEST_F(MainWindowTest, KeysWalkThroughTheTree) {
  Program run(data_);
  run.window->parts().scans.scan({tree_.text()});
  ListView& list = run.window->pane(ListId::Folders).list();
  list.goTo(3);
  EXPECT_EQ(run.cell(ListId::Folders, 3, 1), QStringLiteral("small"));
  QTest::keyClick(&list, Qt::Key_Right);
  EXPECT_EQ(list.model()->rowCount(), 6);
  QTest::keyClick(&list, Qt::Key_Right);
  EXPECT_EQ(list.currentRow(), 4U);
  QTest::keyClick(&list, Qt::Key_Left);
  QTest::keyClick(&list, Qt::Key_Left);
  EXPECT_EQ(list.model()->rowCount(), 5);
  QTest::keyClick(&list, Qt::Key_Left);
  EXPECT_EQ(list.currentRow(), 0U);
}

TEST_F(MainWindowTest, EnterOpensAndClosesFoldersAndF2EditsTheName) {
  Program run(data_);
  run.window->parts().scans.scan({tree_.text()});
  ListView& list = run.window->pane(ListId::Folders).list();
  list.goTo(3);
  QTest::keyClick(&list, Qt::Key_Return);
  EXPECT_EQ(list.model()->rowCount(), 6);
  QTest::keyClick(&list, Qt::Key_Return);
  EXPECT_EQ(list.model()->rowCount(), 5);
  QTest::keyClick(&list, Qt::Key_F2);
  auto* const field = list.viewport()->findChild<QLineEdit*>();
  ASSERT_NE(field, nullptr);
  EXPECT_EQ(field->text(), QStringLiteral("small"));
  QTest::keyClick(field, Qt::Key_Escape);
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  list.goTo(0);  // a source keeps its name
  QTest::keyClick(&list, Qt::Key_F2);
  EXPECT_EQ(list.viewport()->findChild<QLineEdit*>(), nullptr);
}

TEST_F(MainWindowTest, RenamingMovesOnTheDiskAndAsksBeforeItReplaces) {
  Program run(data_);
  run.session.options.FilelistVisible = 1;
  run.window->parts().scans.scan({tree_.text()});
  run.window->execute(std::nullopt, CommandId::ShowFiles);
  run.window->pane(ListId::Folders).list().goTo(1);
  ListModel& files = run.window->pane(ListId::Files).model();
  const auto rename = [&](const char* from, const char* to) {
    const int row = int(run.column(ListId::Files).indexOf(QString::fromUtf8(from)));
    return row >= 0 && files.setData(files.index(row, 1), QString::fromUtf8(to), Qt::EditRole);
  };
  EXPECT_TRUE(rename("a.bin", "new\nname"));
  EXPECT_TRUE(std::ifstream(tree_.path("big/new\nname")).good());
  {
    Answer no(QMessageBox::No);
    EXPECT_FALSE(rename("b.txt", "new\nname"));
    EXPECT_TRUE(no.text.contains(QStringLiteral("new\nname")));
  }
  {
    Answer fault(QMessageBox::Ok);
    EXPECT_FALSE(rename("b.txt", "no/folder/x"));
    EXPECT_FALSE(fault.text.isEmpty());
  }
  ListModel& folders = run.window->pane(ListId::Folders).model();
  EXPECT_TRUE(folders.setData(folders.index(1, 1), QStringLiteral("renamed"), Qt::EditRole));
  EXPECT_TRUE(std::ifstream(tree_.path("renamed/b.txt")).good());
  EXPECT_EQ(run.session.tree[run.session.tree.firstRoot()].name(), tree_.text());
}

TEST_F(MainWindowTest, ARestartFindsColumnsPanesAndSourcesAsTheyWere) {
  {
    Program run(data_);
    run.window->parts().scans.scan({tree_.text()});
    ListView& list = run.window->pane(ListId::Folders).list();
    for (const int section : {0, 5, 8})
      list.setColumnVisible(section, true);
    list.setColumnVisible(2, false);
    list.setColumnVisible(1, false);  // the name stays
    list.horizontalHeader()->moveSection(list.horizontalHeader()->visualIndex(8), 2);
    list.horizontalHeader()->moveSection(list.horizontalHeader()->visualIndex(5), 1);  // refused
    run.window->execute(std::nullopt, CommandId::ShowTopLists);
    run.window->execute(ListId::LargestFiles, CommandId::ShowOldestFiles);
    run.window->execute(ListId::OldestFiles, CommandId::SizeMegabytes);
    run.window->execute(ListId::OldestFiles, CommandId::SizeUnitText);
    run.window->execute(std::nullopt, CommandId::NoGridLines);
    run.window->setGeometry(40, 50, 1000, 600);
  }
  Program run(data_);
  ListView& list = run.window->pane(ListId::Folders).list();
  EXPECT_TRUE(list.isColumnVisible(0));
  EXPECT_TRUE(list.isColumnVisible(1));
  EXPECT_FALSE(list.isColumnVisible(2));
  EXPECT_TRUE(list.isColumnVisible(8));
  EXPECT_EQ(list.horizontalHeader()->visualIndex(1), 1);
  EXPECT_EQ(list.horizontalHeader()->visualIndex(8), 2);
  EXPECT_EQ(run.window->parts().area.rightList(), ListId::OldestFiles);
  EXPECT_EQ(run.session.options.FileSizeFormatTop[3], 2);
  EXPECT_EQ(run.session.options.SizeFormatShowSizeTextTop[3], 1);
  EXPECT_EQ(run.session.options.GridLineStyle, 0);
  EXPECT_EQ(run.window->parts().sources.currentText(), QString::fromStdString(tree_.path()));
}

TEST_F(MainWindowTest, CopyingTakesTheSelectedRowsWithTheColumnsOnShow) {
  Program run(data_);
  run.window->parts().scans.scan({tree_.text()});
  ListPane& pane = run.window->pane(ListId::Folders);
  pane.list().goTo(1);
  run.window->execute(ListId::Folders, CommandId::Copy);
  const QMimeData* const copied = QGuiApplication::clipboard()->mimeData();
  EXPECT_EQ(copied->text(), run.cell(ListId::Folders, 1, 1) + u'\t' +
                                run.cell(ListId::Folders, 1, 2) + QStringLiteral("\r\n"));
  EXPECT_TRUE(copied->data(QStringLiteral("text/rtf")).startsWith("{\\rtf1 "));
  run.window->execute(ListId::Folders, CommandId::CopyPath);
  EXPECT_EQ(QGuiApplication::clipboard()->text(), QString::fromStdString(tree_.path("big")));
}

TEST_F(MainWindowTest, InputIsServedWhileAScanRuns) {
  const TestFolder many(TestFolder::Place::Memory);
  for (int i = 0; i < 20'000; ++i)
    many.file("f" + std::to_string(i % 500) + "/" + std::to_string(i));
  Program run(data_);
  int turns = 0;
  QTimer timer;
  QObject::connect(&timer, &QTimer::timeout, [&] {
    if (!run.window->parts().scans.isScanning() || ++turns != 1) return;
    // Nothing but stopping is possible now; closing stops.
    EXPECT_FALSE(run.window->execute(ListId::Folders, CommandId::ExpandAll));
    EXPECT_EQ(run.window->commands().action(CommandId::Start)->text(), QStringLiteral("Stop"));
    EXPECT_TRUE(run.window->execute(std::nullopt, CommandId::Start));  // as of a double click
    EXPECT_EQ(run.session.context.ScanCancelState, kScanIdle);
    EXPECT_FALSE(run.window->close());
  });
  timer.start(0);
  run.window->parts().scans.scan({many.text()});
  EXPECT_GT(turns, 0);
  EXPECT_FALSE(run.window->parts().scans.isScanning());
  EXPECT_EQ(run.window->commands().action(CommandId::Start)->text(), QStringLiteral("Start"));
  const QStringList log = run.column(ListId::Log, 2);
  EXPECT_TRUE(log.contains(QStringLiteral("Der Vorgang wurde vom Anwender abgebrochen!")));
  EXPECT_TRUE(run.window->execute(ListId::Folders, CommandId::ExpandAll));
}

TEST_F(MainWindowTest, EveryCommandOfEveryBarIsThereAndTellsWhatItIs) {
  Program run(data_);
  const auto check = [](CommandSet& set, Bar bar, const std::function<bool(CommandId)>& isWanted) {
    for (const BarItem& item : barItems(bar)) {
      const Command& command = commandOf(item.id);
      if (command.kind == CommandKind::Edit) continue;
      ASSERT_EQ(set.has(item.id), isWanted(item.id)) << int(item.id);
      if (!set.has(item.id)) continue;
      const QAction& action = *set.action(item.id);
      EXPECT_FALSE(action.text().isEmpty()) << int(item.id);
      EXPECT_FALSE(action.toolTip().isEmpty()) << int(item.id);
      const bool isOn = command.time == CommandTime::Idle || command.time == CommandTime::Always;
      EXPECT_EQ(action.isEnabled(), isOn) << int(item.id);
    }
  };
  check(run.window->commands(), Bar::Main, [](CommandId) { return true; });
  for (const ListId list : kAllLists)
    check(run.window->pane(list).commands(), barOf(list),
          [list](CommandId id) { return hasCommand(list, id); });
}

/// Which list has which commands by Del, Shift+Del and F5; None: no command.
constexpr struct {
  ListId list;
  CommandId show;  // the command that shows the list; None: it is on show
  CommandId recycle = CommandId::None;
  CommandId erase = CommandId::None;
  CommandId refresh = CommandId::None;
} kKeys[] = {
    {ListId::Folders, CommandId::None, CommandId::RecycleFolders, CommandId::DeleteFolders,
     CommandId::Rescan},
    {ListId::Files, CommandId::ShowFiles, CommandId::RecycleFiles, CommandId::DeleteFiles,
     CommandId::Refresh},
    {ListId::LargestFiles, CommandId::ShowLargestFiles, CommandId::RecycleFiles,
     CommandId::DeleteFiles},
    {ListId::OldestFiles, CommandId::ShowOldestFiles, CommandId::RecycleFiles,
     CommandId::DeleteFiles},
    {ListId::LargestFolders, CommandId::ShowLargestFolders},
    {ListId::SmallestFolders, CommandId::ShowSmallestFolders},
    {ListId::Hardlinks, CommandId::ShowHardlinks, CommandId::RecycleFiles, CommandId::DeleteFiles},
    {ListId::Junctions, CommandId::ShowJunctions},
    {ListId::Owners, CommandId::ShowOwners},
    {ListId::Extensions, CommandId::ShowExtensions},
};

void showList(Program& run, ListId list, CommandId id) {
  if (isTopList(list)) {
    run.window->execute(std::nullopt, CommandId::ShowTopLists);
    run.window->execute(run.window->parts().area.rightList(), id);
  } else if (id != CommandId::None) {
    run.window->execute(std::nullopt, id);
  }
}

/// Presses the three keys in a widget of a list, and returns which commands those were. What the
/// window makes of them does not matter.
std::vector<CommandId> commandsOfKeys(Program& run, ListId list, QWidget* widget) {
  ListPane& pane = run.window->pane(list);
  const QSignalBlocker keepFromWindow(&pane);
  std::vector<CommandId> ids;
  const QMetaObject::Connection spy = QObject::connect(
      &pane.commands(), &CommandSet::triggered, &pane, [&ids](CommandId id) { ids.push_back(id); });
  widget->setFocus();
  QTest::keyClick(widget, Qt::Key_Delete);
  QTest::keyClick(widget, Qt::Key_Delete, Qt::ShiftModifier);
  QTest::keyClick(widget, Qt::Key_F5);
  QObject::disconnect(spy);
  return ids;
}

TEST_F(MainWindowTest, DeleteKeysWorkInListsOfObjectsAndNowhereElse) {
  for (const bool readOnly : {false, true}) {
    Program run(data_, readOnly);
    turnAllListsOn(run.session.options);
    run.window->parts().scans.scan({tree_.text()});
    for (const auto& keys : kKeys) {
      showList(run, keys.list, keys.show);
      ListPane& pane = run.window->pane(keys.list);
      ASSERT_TRUE(pane.isVisible()) << int(keys.list);
      pane.list().goTo(0);
      std::vector<CommandId> expected;
      for (const CommandId id : {keys.recycle, keys.erase, keys.refresh}) {
        if (id != CommandId::None && !(readOnly && commandOf(id).changesDisk))
          expected.push_back(id);
      }
      EXPECT_EQ(commandsOfKeys(run, keys.list, &pane.list()), expected) << int(keys.list);
      if (!pane.commands().has(CommandId::Search)) continue;
      // In a text they belong to the text.
      pane.commands().action(CommandId::Search)->setChecked(false);
      pane.commands().action(CommandId::Search)->trigger();
      const QList<QLineEdit*> fields = pane.findChildren<QLineEdit*>();
      QLineEdit* const box = *std::find_if(fields.begin(), fields.end(), [](QLineEdit* field) {
        return field->accessibleName() == QStringLiteral("Suchtext");
      });
      ASSERT_TRUE(box->isVisible());
      box->setText(QStringLiteral("text"));
      box->home(false);
      std::vector<CommandId> inText = commandsOfKeys(run, keys.list, box);
      std::erase(inText, keys.refresh);
      EXPECT_EQ(inText, std::vector<CommandId>()) << int(keys.list);
      EXPECT_EQ(box->text(), QStringLiteral("ext"));
    }
  }
}

TEST_F(MainWindowTest, ANameInEditTakesTheDeleteKeys) {
  Program run(data_);
  run.window->parts().scans.scan({tree_.text()});
  ListView& list = run.window->pane(ListId::Folders).list();
  list.goTo(3);
  QTest::keyClick(&list, Qt::Key_F2);
  auto* const field = list.viewport()->findChild<QLineEdit*>();
  ASSERT_NE(field, nullptr);
  QTest::keyClick(field, Qt::Key_Home);
  std::vector<CommandId> inText = commandsOfKeys(run, ListId::Folders, field);
  std::erase(inText, CommandId::Rescan);
  EXPECT_EQ(inText, std::vector<CommandId>());
  EXPECT_EQ(field->text(), QStringLiteral("mall"));
}

TEST_F(MainWindowTest, AReadOnlyWindowSaysSoAndChangesNothingOnTheDisk) {
  Program run(data_, true);
  EXPECT_TRUE(run.window->windowTitle().endsWith(QStringLiteral(" \u2013 nur Lesen")));
  const QList<QLabel*> labels = run.window->statusBar()->findChildren<QLabel*>();
  EXPECT_TRUE(std::any_of(labels.begin(), labels.end(), [](const QLabel* label) {
    return label->isVisible() && label->text() == QStringLiteral("nur Lesen");
  }));
  turnAllListsOn(run.session.options);
  run.window->execute(std::nullopt, CommandId::ShowFiles);
  run.window->parts().scans.scan({tree_.text()});
  run.window->execute(ListId::Folders, CommandId::ExpandAll);
  run.window->pane(ListId::Folders).list().goTo(1);
  ASSERT_EQ(run.column(ListId::Files).size(), 3);
  for (const ListId list : kAllLists) {
    ListPane& pane = run.window->pane(list);
    pane.commands().update();
    pane.commands().setBusy(false);
    for (const Command& command : commandTable()) {
      if (command.changesDisk) {
        EXPECT_FALSE(run.window->execute(list, command.id)) << int(command.id);
      }
      if (!pane.commands().has(command.id)) continue;
      const QAction* const action = pane.commands().action(command.id);
      EXPECT_EQ(action->isEnabled(), !command.changesDisk && command.time == CommandTime::Idle)
          << int(list) << " " << int(command.id);
      EXPECT_EQ(action->toolTip().contains(QStringLiteral("(nur Lesen)")), command.changesDisk);
    }
    ListModel& model = pane.model();
    for (int row = 0; row < model.rowCount(); ++row) {
      for (int section = 0; section < model.columnCount(); ++section) {
        const QModelIndex index = model.index(row, section);
        EXPECT_FALSE(model.flags(index) & Qt::ItemIsEditable);
        EXPECT_FALSE(model.setData(index, QStringLiteral("new"), Qt::EditRole));
      }
    }
    pane.list().goTo(0);
    pane.list().editName();
    EXPECT_EQ(pane.list().viewport()->findChild<QLineEdit*>(), nullptr);
  }
  std::vector<std::string> names = testing::namesIn(tree_.path("big"));
  std::sort(names.begin(), names.end());
  EXPECT_EQ(names, (std::vector<std::string>{"a.bin", "b.txt", "b2.txt"}));
}

TEST_F(MainWindowTest, EveryButtonAndFieldHasAName) {
  Program run(data_);
  for (const QWidget* const widget : run.window->findChildren<QWidget*>()) {
    if (widget->focusPolicy() == Qt::NoFocus || !widget->isVisible()) continue;
    if (qobject_cast<const QSplitter*>(widget) != nullptr) continue;
    const QAccessibleInterface* const told =
        QAccessible::queryAccessibleInterface(const_cast<QWidget*>(widget));
    ASSERT_NE(told, nullptr);
    EXPECT_FALSE(told->text(QAccessible::Name).isEmpty()) << widget->metaObject()->className();
  }
}

}  // namespace
}  // namespace ombrelian::ui
