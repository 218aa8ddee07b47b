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
  run.window->SourceCombo().setEditText(QString::fromStdString(tree_.path()));
  EXPECT_TRUE(run.window->execute(std::nullopt, 463));
  EXPECT_FALSE(run.window->isScanning());
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
  run.window->scan({tree_.text("big"), tree_.text("small")});
  EXPECT_EQ(run.session.tree.nodeCount() > 8, true);
  EXPECT_EQ(run.column(ListId::Hardlinks).size(), 2);
  run.window->execute(ListId::Folders, 394);
  EXPECT_TRUE(run.column(ListId::Folders).isEmpty());
}

TEST_F(MainWindowTest, ExpandingSortingAndSearchingKeepTheSelection) {
  Program run(data_);
  run.window->scan({tree_.text()});
  ListPane& pane = run.window->pane(ListId::Folders);
  run.window->execute(ListId::Folders, 396);
  EXPECT_EQ(run.column(ListId::Folders).size(), 6);
  pane.list().goTo(1);
  const RowSource::Id big = pane.rows().id(1);
  for (int section = 1; section < pane.model().columnCount(); ++section) {
    pane.list().sortByColumn(section);
    EXPECT_EQ(pane.rows().id(pane.list().currentRow()), big) << section;
  }
  run.window->execute(ListId::Folders, 397);
  EXPECT_EQ(run.column(ListId::Folders).size(), 1);
  // What is closed is found all the same, round the end, both ways.
  run.window->execute(ListId::Folders, 355);
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
  run.window->scan({tree_.text()});
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
  run.window->scan({tree_.text()});
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
  run.window->scan({tree_.text()});
  run.window->execute(std::nullopt, 401);
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
    run.window->scan({tree_.text()});
    ListView& list = run.window->pane(ListId::Folders).list();
    for (const int section : {0, 5, 8})
      list.setColumnVisible(section, true);
    list.setColumnVisible(2, false);
    list.setColumnVisible(1, false);  // the name stays
    list.horizontalHeader()->moveSection(list.horizontalHeader()->visualIndex(8), 2);
    list.horizontalHeader()->moveSection(list.horizontalHeader()->visualIndex(5), 1);  // refused
    run.window->execute(std::nullopt, 402);
    run.window->execute(ListId::LargestFiles, 423);
    run.window->execute(ListId::OldestFiles, 303);
    run.window->execute(ListId::OldestFiles, 305);
    run.window->execute(std::nullopt, 374);
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
  EXPECT_EQ(run.window->rightView(), ListId::OldestFiles);
  EXPECT_EQ(run.session.options.FileSizeFormatTop[3], 2);
  EXPECT_EQ(run.session.options.SizeFormatShowSizeTextTop[3], 1);
  EXPECT_EQ(run.session.options.GridLineStyle, 0);
  EXPECT_EQ(run.window->SourceCombo().currentText(), QString::fromStdString(tree_.path()));
}

TEST_F(MainWindowTest, CopyingTakesTheSelectedRowsWithTheColumnsOnShow) {
  Program run(data_);
  run.window->scan({tree_.text()});
  ListPane& pane = run.window->pane(ListId::Folders);
  pane.list().goTo(1);
  run.window->execute(ListId::Folders, 504);
  const QMimeData* const copied = QGuiApplication::clipboard()->mimeData();
  EXPECT_EQ(copied->text(), run.cell(ListId::Folders, 1, 1) + u'\t' +
                                run.cell(ListId::Folders, 1, 2) + QStringLiteral("\r\n"));
  EXPECT_TRUE(copied->data(QStringLiteral("text/rtf")).startsWith("{\\rtf1 "));
  run.window->execute(ListId::Folders, 1005);
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
    if (!run.window->isScanning() || ++turns != 1) return;
    // Nothing but stopping is possible now; closing stops.
    EXPECT_FALSE(run.window->execute(ListId::Folders, 396));
    EXPECT_FALSE(run.window->close());
  });
  timer.start(0);
  run.window->scan({many.text()});
  EXPECT_GT(turns, 0);
  EXPECT_FALSE(run.window->isScanning());
  const QStringList log = run.column(ListId::Log, 2);
  EXPECT_TRUE(log.contains(QStringLiteral("Der Vorgang wurde vom Anwender abgebrochen!")));
  EXPECT_TRUE(run.window->execute(ListId::Folders, 396));
}

/// The best of a few scans, as other programs may take the processor for longer than that.
TEST_F(MainWindowTest, InputNeverWaitsLongWhileAScanRuns) {
  const TestFolder many(TestFolder::Place::Memory);
  for (int i = 0; i < 30'000; ++i)
    many.file("f" + std::to_string(i % 3000) + "/" + std::to_string(i));
  Program run(data_);
  qint64 shortest = INT64_MAX;
  for (int scan = 0; scan < 5; ++scan) {
    QElapsedTimer last;
    qint64 longest = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout,
                     [&] { longest = std::max(longest, last.restart()); });
    timer.start(0);
    last.start();
    run.window->scan({many.text()});
    shortest = std::min(shortest, std::max(longest, last.elapsed()));
  }
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  constexpr qint64 kLimit = 1000;  // everything takes several times as long, beside other tests too
#else
  constexpr qint64 kLimit = 100;
#endif
  EXPECT_LT(shortest, kLimit) << "milliseconds between two turns of the event loop";
}

TEST_F(MainWindowTest, EveryCommandOfEveryBarIsThereAndTellsWhatItIs) {
  Program run(data_);
  for (int view = -1; view < kLists; ++view) {
    const Bar bar = view < 0 ? Bar::Main : barOf(ListId(view));
    CommandSet& set = view < 0 ? run.window->commands() : run.window->pane(ListId(view)).commands();
    for (const BarItem& item : barItems(bar)) {
      const Command& command = *findCommand(item.id);
      if (command.kind == CommandKind::Edit) continue;
      const bool isWanted = view < 0 || hasCommand(ListId(view), item.id);
      ASSERT_EQ(set.has(item.id), isWanted) << item.id;
      if (!isWanted) continue;
      EXPECT_FALSE(set.action(item.id)->text().isEmpty()) << item.id;
      EXPECT_FALSE(set.action(item.id)->toolTip().isEmpty()) << item.id;
      const bool waits = *command.waitsFor != '\0';
      EXPECT_TRUE(!waits || !set.action(item.id)->isEnabled()) << item.id;
    }
  }
}

/// Which list has which commands by Del, Shift+Del and F5; 0: none.
constexpr struct {
  ListId view;
  int show;  // the command that shows the list; 0: it is on show
  int recycle;
  int erase;
  int refresh;
} kKeys[] = {
    {ListId::Folders, 0, 507, 506, 1015},     {ListId::Files, 401, 320, 321, 360},
    {ListId::LargestFiles, 420, 320, 321, 0}, {ListId::SmallestFiles, 421, 320, 321, 0},
    {ListId::NewestFiles, 422, 320, 321, 0},  {ListId::OldestFiles, 423, 320, 321, 0},
    {ListId::LargestFolders, 424, 0, 0, 0},   {ListId::SmallestFolders, 425, 0, 0, 0},
    {ListId::Hardlinks, 403, 320, 321, 0},    {ListId::Junctions, 404, 0, 0, 0},
    {ListId::Owners, 405, 0, 0, 0},           {ListId::Extensions, 406, 0, 0, 0},
};

void showList(Program& run, ListId view, int id) {
  if (isTopList(view)) {
    run.window->execute(std::nullopt, 402);
    run.window->execute(run.window->rightView(), id);
  } else if (id != 0) {
    run.window->execute(std::nullopt, id);
  }
}

/// Presses the three keys in a widget of a list, and tells which commands that were. What the
/// window makes of them is none of this.
std::vector<int> commandsOfKeys(Program& run, ListId view, QWidget* widget) {
  ListPane& pane = run.window->pane(view);
  const QSignalBlocker keepFromWindow(&pane);
  std::vector<int> ids;
  const QMetaObject::Connection spy = QObject::connect(
      &pane.commands(), &CommandSet::triggered, &pane, [&ids](int id) { ids.push_back(id); });
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
    run.window->scan({tree_.text()});
    for (const auto& keys : kKeys) {
      showList(run, keys.view, keys.show);
      ListPane& pane = run.window->pane(keys.view);
      ASSERT_TRUE(pane.isVisible()) << int(keys.view);
      pane.list().goTo(0);
      std::vector<int> expected;
      for (const int id : {keys.recycle, keys.erase, keys.refresh}) {
        if (id != 0 && !(readOnly && findCommand(id)->changesDisk)) expected.push_back(id);
      }
      EXPECT_EQ(commandsOfKeys(run, keys.view, &pane.list()), expected) << int(keys.view);
      if (!pane.commands().has(355)) continue;
      // In a text they belong to the text.
      pane.commands().action(355)->setChecked(false);
      pane.commands().action(355)->trigger();
      const QList<QLineEdit*> fields = pane.findChildren<QLineEdit*>();
      QLineEdit* const box = *std::find_if(fields.begin(), fields.end(), [](QLineEdit* field) {
        return field->accessibleName() == QStringLiteral("Suchtext");
      });
      ASSERT_TRUE(box->isVisible());
      box->setText(QStringLiteral("text"));
      box->home(false);
      std::vector<int> inText = commandsOfKeys(run, keys.view, box);
      std::erase(inText, keys.refresh);
      EXPECT_EQ(inText, std::vector<int>()) << int(keys.view);
      EXPECT_EQ(box->text(), QStringLiteral("ext"));
    }
  }
}

TEST_F(MainWindowTest, ANameInEditTakesTheDeleteKeys) {
  Program run(data_);
  run.window->scan({tree_.text()});
  ListView& list = run.window->pane(ListId::Folders).list();
  list.goTo(3);
  QTest::keyClick(&list, Qt::Key_F2);
  auto* const field = list.viewport()->findChild<QLineEdit*>();
  ASSERT_NE(field, nullptr);
  QTest::keyClick(field, Qt::Key_Home);
  std::vector<int> inText = commandsOfKeys(run, ListId::Folders, field);
  std::erase(inText, 1015);
  EXPECT_EQ(inText, std::vector<int>());
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
  run.window->execute(std::nullopt, 401);
  run.window->scan({tree_.text()});
  run.window->execute(ListId::Folders, 396);
  run.window->pane(ListId::Folders).list().goTo(1);
  ASSERT_EQ(run.column(ListId::Files).size(), 3);
  for (int number = 0; number < kLists; ++number) {
    const auto view = ListId(number);
    ListPane& pane = run.window->pane(view);
    pane.commands().update();
    pane.commands().setBusy(false);
    for (const Command& command : commandTable()) {
      if (command.changesDisk) {
        EXPECT_FALSE(run.window->execute(view, command.id)) << command.id;
      }
      if (!pane.commands().has(command.id)) continue;
      const QAction* const action = pane.commands().action(command.id);
      EXPECT_EQ(action->isEnabled(), !command.changesDisk && *command.waitsFor == '\0')
          << number << " " << command.id;
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
