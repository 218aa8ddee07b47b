// The real window with real folders and the actions of a user, and then deleting, rescanning and
// removing.

#include "ui/MainWindow.h"

#include <QAbstractItemView>
#include <QAccessible>
#include <QClipboard>
#include <QCompleter>
#include <QDBusConnection>
#include <QDir>
#include <QHeaderView>
#include <QLineEdit>
#include <QMimeData>
#include <QSignalBlocker>
#include <QStatusBar>
#include <QTest>

#include "tests/testing/ScopedVariable.h"
#include "tests/ui/WindowFixture.h"
#include "tree/TreeOrder.h"
#include "ui/FolderCommands.h"
#include "ui/LaterStarts.h"
#include "ui/Looks.h"
#include "ui/MenuCare.h"
#include "ui/OpenCommands.h"
#include "ui/QtText.h"
#include "ui/SourceCompletion.h"
#include "ui/StatusLine.h"

namespace ombrelian::ui {
namespace {

using namespace Qt::StringLiterals;
using namespace ombrelian::testing;
using Id = CommandId;
using MainWindowTest = WindowTest;
using ScannedMainWindowTest = ScannedWindowTest;

constexpr ListId kFolders = ListId::Folders;

TEST_F(MainWindowTest, AScanFillsTreeAndLists) {
  Program run(data_);
  turnAllListsOn(run.session.options);
  run.window->parts().sources.setEditText(path());
  EXPECT_TRUE(run.execute(std::nullopt, Id::Start));
  EXPECT_FALSE(run.window->parts().scans.isScanning());
  EXPECT_EQ(run.column(kFolders),
            (QStringList{path(), u"big"_s, u"Dateien"_s, u"small"_s, u"link"_s}));
  EXPECT_EQ(run.column(ListId::LargestFiles)[0], u"a.bin"_s);
  for (const auto& [list, rows] :
       {std::pair(ListId::Hardlinks, 2), {ListId::Junctions, 1}, {ListId::Extensions, 2}})
    EXPECT_EQ(run.column(list).size(), rows) << int(list);
  EXPECT_FALSE(run.column(ListId::Log).isEmpty());
  // A second run of several sources keeps the lists and adds to the tree.
  run.scan({tree_.text("big"), tree_.text("small")});
  EXPECT_GT(run.session.tree.nodeCount(), 8U);
  EXPECT_EQ(run.column(ListId::Hardlinks).size(), 2);
  run.execute(kFolders, Id::ClearFolders);
  EXPECT_TRUE(run.column(kFolders).isEmpty());
  EXPECT_TRUE(run.column(ListId::Hardlinks).isEmpty());
}

TEST_F(MainWindowTest, AnEmptyListSaysWhyAndItsButtonFillsIt) {
  Program run(data_);
  ListPane& owners = run.pane(ListId::Owners);
  auto* const button = owners.findChild<QPushButton*>();
  run.execute(std::nullopt, Id::ShowOwners);
  EXPECT_EQ(button->text(), u"Einschalten"_s);
  run.scan({tree_.text()});
  EXPECT_EQ(button->text(), u"Einschalten und neu einlesen"_s);
  run.execute(std::nullopt, Id::MakeOwners);
  EXPECT_EQ(button->text(), u"Neu einlesen"_s);
  EXPECT_FALSE(run.execute(ListId::Owners, Id::Save)) << "there are no rows";
  QTest::mouseClick(button, Qt::LeftButton);
  EXPECT_EQ(run.column(ListId::Owners).size(), 1);
  EXPECT_FALSE(button->isVisible());
  run.list(ListId::Owners).goTo(0);
  EXPECT_TRUE(owners.commands().action(Id::Copy)->isEnabled());
  EXPECT_FALSE(owners.commands().action(Id::CopyPath)->isEnabled()) << "an owner has no path";
  run.execute(std::nullopt, Id::ShowHardlinks);
  EXPECT_FALSE(run.pane(ListId::Hardlinks).findChild<QPushButton*>()->text().isEmpty());
}

TEST_F(ScannedMainWindowTest, KeysReachTheListThatWasUsedLastAndGoRoundThePanes) {
  run_.execute(std::nullopt, Id::ShowTopLists);
  ListView& top = run_.list(ListId::LargestFiles);
  QTest::keyClick(&top, Qt::Key_Down);
  EXPECT_EQ(top.currentRow(), 0U);
  QTest::keyClick(&top, Qt::Key_End);
  EXPECT_EQ(top.currentRow(), 5U);
  QTest::keyClick(&top, Qt::Key_Home, Qt::ShiftModifier);
  EXPECT_EQ(top.selectedRowNumbers().size(), 6U);
  QWidget* const source = run_.window->parts().sources.lineEdit();
  QTest::keyClick(&top, Qt::Key_F6);
  EXPECT_TRUE(source->hasFocus());
  QTest::keyClick(source, Qt::Key_F, Qt::ControlModifier);
  auto* const search = qobject_cast<QLineEdit*>(QApplication::focusWidget());
  ASSERT_TRUE(search != nullptr && run_.pane(ListId::LargestFiles).isAncestorOf(search));
  QTest::keyClicks(search, u"needle"_s);
  EXPECT_TRUE(QTest::qWaitFor(
      [this] { return hasLabel(run_.pane(ListId::LargestFiles), u"Treffer: 1"_s); }));
  top.setFocus();
  QTest::keyClick(&top, Qt::Key_F, Qt::ControlModifier);
  EXPECT_TRUE(search->hasFocus()) << "a search in use is not closed";
  EXPECT_TRUE(run_.execute(ListId::LargestFiles, Id::ShowInTree));
  EXPECT_EQ(run_.pane(kFolders).selectedPaths(), std::vector<Text>{tree_.text("small/deep")});
  EXPECT_TRUE(run_.execute(kFolders, Id::LeaveOut));
  run_.execute(kFolders, Id::ExpandAll);
  EXPECT_FALSE(run_.column(kFolders).contains(u"deep"_s));
}

TEST_F(ScannedMainWindowTest, ExpandingSortingAndSearchingKeepTheSelection) {
  ListPane& pane = run_.pane(kFolders);
  run_.execute(kFolders, Id::ExpandAll);
  EXPECT_EQ(run_.column(kFolders).size(), 6);
  pane.list().goTo(1);
  const RowSource::Id big = pane.rows().id(1);
  for (int section = 1; section < pane.model().columnCount(); ++section) {
    pane.list().sortByColumn(section);
    EXPECT_EQ(pane.rows().id(pane.list().currentRow()), big) << section;
  }
  const std::pair<std::function<void()>, int> cases[] = {
      {[&] { run_.window->parts().folders.expandLevels(1); }, 5},
      {[&] { run_.window->parts().folders.expandLevels(2); }, 6},
      {[&] { run_.execute(kFolders, Id::CollapseAll); }, 1}};
  for (const auto& [expand, rows] : cases) {
    expand();
    EXPECT_EQ(run_.column(kFolders).size(), rows);
  }
  // Rows in closed folders are found too, past the end, in both directions.
  run_.execute(kFolders, Id::Search);
  auto* const box = pane.findChild<QLineEdit*>();
  QTest::keyClicks(box, u"dee"_s);
  for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Up, Qt::Key_Return}) {
    QTest::keyClick(box, key);
    EXPECT_EQ(run_.cell(kFolders, int(pane.list().currentRow()), 1), u"deep"_s);
  }
  box->setText(u"nowhere"_s);
  QTest::keyClick(box, Qt::Key_Return);
  EXPECT_TRUE(hasLabel(pane, u"Nichts gefunden"_s));
  QTest::keyClick(box, Qt::Key_Escape);
  EXPECT_FALSE(box->isVisible());
}

TEST_F(ScannedMainWindowTest, RenamingMovesOnTheDiskAndAsksBeforeItReplaces) {
  run_.execute(std::nullopt, Id::ShowFiles);
  run_.list(kFolders).goTo(1);
  ListModel& files = run_.pane(ListId::Files).model();
  const auto rename = [&](const QString& from, const QString& to) {
    const int row = int(run_.column(ListId::Files).indexOf(from));
    return row >= 0 && files.setData(files.index(row, 1), to, Qt::EditRole);
  };
  EXPECT_TRUE(rename(u"a.bin"_s, u"new\nname"_s));
  EXPECT_TRUE(QFile::exists(path("big/new\nname")));
  {
    Answer no(QMessageBox::No);
    EXPECT_FALSE(rename(u"b.txt"_s, u"new\nname"_s));
    EXPECT_TRUE(no.text.contains(u"new\nname"_s));
  }
  {
    Answer fault(QMessageBox::Ok);
    EXPECT_FALSE(rename(u"b.txt"_s, u"no/folder/x"_s));
    EXPECT_FALSE(fault.text.isEmpty());
  }
  ListModel& folders = run_.pane(kFolders).model();
  EXPECT_TRUE(folders.setData(folders.index(1, 1), u"renamed"_s, Qt::EditRole));
  EXPECT_TRUE(QFile::exists(path("renamed/b.txt")));
  EXPECT_EQ(run_.session.tree[run_.session.tree.firstRoot()].name(), tree_.text());
}

TEST_F(MainWindowTest, ARestartFindsColumnsPanesAndSourcesAsTheyWere) {
  {
    Program run(data_);
    run.scan({tree_.text()});
    ListView& list = run.list(kFolders);
    for (const int section : {0, 5, 8})
      list.setColumnVisible(section, true);
    list.setColumnVisible(2, false);
    list.setColumnVisible(1, false);  // the name cannot be hidden
    QHeaderView& header = *list.horizontalHeader();
    header.moveSection(header.visualIndex(8), 2);
    header.moveSection(header.visualIndex(5), 1);  // the move is refused
    header.resizeSection(8, 333);
    run.execute(std::nullopt, Id::ShowTopLists);
    run.execute(ListId::LargestFiles, Id::ShowOldestFiles);
    run.execute(ListId::OldestFiles, Id::SizeMegabytes);
    run.execute(ListId::OldestFiles, Id::SizeUnitText);
    run.execute(std::nullopt, Id::NoGridLines);
    run.session.options.ChangeFolderReportWidthAutomatically = 0;
    run.window->parts().area.setSizes({420, run.window->width() - 420});
  }
  Program run(data_);
  const ListView& list = run.list(kFolders);
  for (const auto& [section, isVisible] :
       {std::pair(0, true), {1, true}, {2, false}, {5, true}, {8, true}})
    EXPECT_EQ(list.isColumnVisible(section), isVisible) << section;
  EXPECT_EQ(list.horizontalHeader()->visualIndex(1), 1);
  EXPECT_EQ(list.horizontalHeader()->visualIndex(8), 2);
  EXPECT_EQ(list.columnWidth(8), 333) << "a person chose it";
  EXPECT_NEAR(run.window->parts().area.sizes().constFirst(), 420, 3);
  run.execute(kFolders, Id::FitColumns);
  EXPECT_LT(list.columnWidth(8), 333);
  EXPECT_EQ(run.window->parts().area.rightList(), ListId::OldestFiles);
  const Options& options = run.session.options;
  EXPECT_EQ(options.FileSizeFormatTop[3], 2);
  EXPECT_EQ(options.SizeFormatShowSizeTextTop[3], 1);
  EXPECT_EQ(options.GridLineStyle, 0);
  EXPECT_EQ(run.window->parts().sources.currentText(), path());
}

TEST_F(ScannedMainWindowTest, CopyingTakesTheSelectedRowsWithTheColumnsOnShow) {
  run_.list(kFolders).goTo(1);
  run_.execute(kFolders, Id::Copy);
  const QMimeData* const copied = QGuiApplication::clipboard()->mimeData();
  EXPECT_EQ(copied->text(),
            run_.cell(kFolders, 1, 1) + u'\t' + run_.cell(kFolders, 1, 2) + u"\r\n"_s);
  EXPECT_TRUE(copied->data(u"text/rtf"_s).startsWith("{\\rtf1 "));
  run_.execute(kFolders, Id::CopyPath);
  EXPECT_EQ(QGuiApplication::clipboard()->text(), path("big"));
}

TEST_F(MainWindowTest, InputIsServedWhileAScanRuns) {
  const TestFolder many(TestFolder::Place::Memory);
  for (int i = 0; i < 20'000; ++i)
    many.file("f" + std::to_string(i % 500) + "/" + std::to_string(i));
  Program run(data_);
  const ScanControl& scans = run.window->parts().scans;
  const QAction& start = *run.window->commands().action(Id::Start);
  int turns = 0;
  QTimer timer;
  QObject::connect(&timer, &QTimer::timeout, [&] {
    if (!scans.isScanning() || ++turns != 1) return;
    // Only stopping is possible now; closing the window stops the scan.
    EXPECT_FALSE(run.execute(kFolders, Id::ExpandAll));
    EXPECT_EQ(start.text(), u"Stop"_s);
    EXPECT_TRUE(run.execute(std::nullopt, Id::Start));  // like the second click of a double click
    EXPECT_EQ(run.session.context.ScanCancelState, kScanIdle);
    EXPECT_FALSE(run.window->close());
  });
  timer.start(0);
  run.scan({many.text()});
  EXPECT_GT(turns, 0);
  EXPECT_FALSE(scans.isScanning());
  EXPECT_EQ(start.text(), u"Start"_s);
  EXPECT_TRUE(
      run.column(ListId::Log, 2).contains(u"Der Vorgang wurde vom Anwender abgebrochen!"_s));
  EXPECT_TRUE(run.execute(kFolders, Id::ExpandAll));
}

TEST_F(MainWindowTest, EveryCommandIsThereAndEveryControlHasAName) {
  Program run(data_);
  const auto check = [](CommandSet& set, Bar bar, const std::function<bool(Id)>& isWanted) {
    for (const BarItem& item : barItems(bar)) {
      const Command& command = commandOf(item.id);
      if (command.kind == CommandKind::Edit) continue;
      ASSERT_EQ(set.has(item.id), isWanted(item.id)) << int(item.id);
      if (!set.has(item.id)) continue;
      const QAction& action = *set.action(item.id);
      EXPECT_FALSE(action.text().isEmpty() || action.toolTip().isEmpty()) << int(item.id);
      // A new window has no rows; the drives are read later.
      const bool isOn =
          (command.time == CommandTime::Idle || command.time == CommandTime::Always) &&
          command.need == CommandNeed::Nothing;
      EXPECT_EQ(action.isEnabled(), isOn) << int(item.id);
    }
  };
  check(run.window->commands(), Bar::Main, [](Id) { return true; });
  for (const ListId list : kAllLists)
    check(run.pane(list).commands(), barOf(list), [list](Id id) { return hasCommand(list, id); });
  for (QWidget* const widget : run.window->findChildren<QWidget*>()) {
    if (widget->focusPolicy() == Qt::NoFocus || !widget->isVisible()) continue;
    if (qobject_cast<const QSplitter*>(widget) != nullptr) continue;
    const QAccessibleInterface* const told = QAccessible::queryAccessibleInterface(widget);
    ASSERT_NE(told, nullptr);
    EXPECT_FALSE(told->text(QAccessible::Name).isEmpty()) << widget->metaObject()->className();
  }
}

/// Presses the keys for deleting and F5 in a widget of a list, and returns the commands that were
/// triggered. The window does not execute them.
std::vector<Id> commandsOfKeys(Program& run, ListId list, QWidget* widget) {
  ListPane& pane = run.pane(list);
  const QSignalBlocker keepFromWindow(&pane);
  std::vector<Id> ids;
  const QMetaObject::Connection spy = QObject::connect(&pane.commands(), &CommandSet::triggered,
                                                       &pane, [&ids](Id id) { ids.push_back(id); });
  widget->setFocus();
  QTest::keyClick(widget, Qt::Key_Delete);
  QTest::keyClick(widget, Qt::Key_Delete, Qt::ShiftModifier);
  QTest::keyClick(widget, Qt::Key_F5);
  QObject::disconnect(spy);
  return ids;
}

/// In a text field, the keys for deleting change the text.
void expectKeysAreOfTheText(Program& run, ListId list, QLineEdit* field) {
  const QString before = field->text();
  field->home(false);
  for (const Id id : commandsOfKeys(run, list, field))
    EXPECT_TRUE(id == Id::Rescan || id == Id::Refresh) << int(list);
  EXPECT_EQ(field->text(), before.mid(1)) << int(list);
}

TEST_F(ScannedMainWindowTest, AnExtensionLeadsToItsFilesAmongTheLargest) {
  const int row = int(run_.column(ListId::Extensions).indexOf(u".TXT"_s));
  ASSERT_GE(row, 0);
  Q_EMIT run_.list(ListId::Extensions).rowDoubleClicked(std::size_t(row));
  ASSERT_EQ(run_.window->parts().area.rightList(), ListId::LargestFiles);
  const std::size_t found = run_.list(ListId::LargestFiles).currentRow();
  EXPECT_TRUE(run_.column(ListId::LargestFiles).value(int(found)).endsWith(u".txt"_s));
  Q_EMIT run_.list(ListId::Owners).rowDoubleClicked(0);
  const std::vector<std::size_t> all = run_.list(ListId::LargestFiles).selectedRowNumbers();
  EXPECT_EQ(all.size(), std::size_t(run_.column(ListId::LargestFiles).size()))
      << "one owner has all";
}

TEST_F(ScannedMainWindowTest, KeysReachEveryEntryOfAMenuAndTypeIntoItsFields) {
  MenuCare care;
  qApp->installEventFilter(&care);
  QMenu* const menu = run_.window->commands().menu(Id::FilterMenu);
  menu->popup({});
  QSet<QKeySequence> letters;
  for (const QAction* const action : menu->actions()) {
    if (action->text().isEmpty()) continue;
    const QKeySequence letter = QKeySequence::mnemonic(action->text());
    EXPECT_FALSE(letter.isEmpty() || letters.contains(letter)) << qPrintable(action->text());
    letters.insert(letter);
  }
  for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Down})
    QTest::keyClick(menu, key);
  QTest::keyClicks(QApplication::focusWidget(), u"*.c"_s);
  EXPECT_EQ(run_.session.options.FolderList_FilterFilesInclude_Text, u"*.c");
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
  EXPECT_EQ(menu->activeAction(), run_.window->commands().action(Id::NotTheseFiles));
  menu->close();
}

TEST_F(ScannedMainWindowTest, KeysWalkThroughTheTreeAndEditAName) {
  ListView& list = run_.list(kFolders);
  list.goTo(3);
  // A key, the number of rows after it, and the current row.
  const std::tuple<Qt::Key, int, std::size_t> keys[] = {
      {Qt::Key_Right, 6, 3}, {Qt::Key_Right, 6, 4},  {Qt::Key_Left, 6, 3},
      {Qt::Key_Left, 5, 3},  {Qt::Key_Return, 6, 3}, {Qt::Key_Return, 5, 3}};
  for (const auto& [key, rows, current] : keys) {
    QTest::keyClick(&list, key);
    EXPECT_EQ(list.model()->rowCount(), rows) << key;
    EXPECT_EQ(list.currentRow(), current) << key;
  }
  QTest::keyClick(&list, Qt::Key_F2);
  auto* const field = list.viewport()->findChild<QLineEdit*>();
  ASSERT_NE(field, nullptr);
  EXPECT_EQ(field->text(), u"small"_s);
  expectKeysAreOfTheText(run_, kFolders, field);
  QTest::keyClick(field, Qt::Key_Escape);
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  QTest::keyClick(&list, Qt::Key_Left);
  EXPECT_EQ(list.currentRow(), 0U);
  QTest::keyClick(&list, Qt::Key_F2);
  EXPECT_EQ(list.viewport()->findChild<QLineEdit*>(), nullptr) << "a source keeps its name";
}

void showList(Program& run, ListId list, Id id) {
  if (isTopList(list)) {
    run.execute(std::nullopt, Id::ShowTopLists);
    run.execute(run.window->parts().area.rightList(), id);
  } else if (id != Id::None) {
    run.execute(std::nullopt, id);
  }
}

TEST_F(MainWindowTest, DeleteKeysWorkInListsOfObjectsAndNowhereElse) {
  const struct {
    ListId list;
    Id show;  // the command that shows the list; None: it is visible already
    std::vector<Id> commands;
  } cases[] = {{kFolders, Id::None, {Id::RecycleFolders, Id::DeleteFolders, Id::Rescan}},
               {ListId::Files, Id::ShowFiles, {Id::RecycleFiles, Id::DeleteFiles, Id::Refresh}},
               {ListId::LargestFiles, Id::ShowLargestFiles, {Id::RecycleFiles, Id::DeleteFiles}},
               {ListId::OldestFiles, Id::ShowOldestFiles, {Id::RecycleFiles, Id::DeleteFiles}},
               {ListId::LargestFolders, Id::ShowLargestFolders, {}},
               {ListId::SmallestFolders, Id::ShowSmallestFolders, {}},
               {ListId::Hardlinks, Id::ShowHardlinks, {Id::RecycleFiles, Id::DeleteFiles}},
               {ListId::Junctions, Id::ShowJunctions, {}},
               {ListId::Owners, Id::ShowOwners, {}},
               {ListId::Extensions, Id::ShowExtensions, {}}};
  for (const bool readOnly : {false, true}) {
    Program run(data_, readOnly);
    turnAllListsOn(run.session.options);
    run.scan({tree_.text()});
    for (const auto& c : cases) {
      showList(run, c.list, c.show);
      ListPane& pane = run.pane(c.list);
      ASSERT_TRUE(pane.isVisible()) << int(c.list);
      pane.list().goTo(0);
      std::vector<Id> expected = c.commands;
      std::erase_if(expected, [&](Id id) { return readOnly && commandOf(id).changesDisk; });
      EXPECT_EQ(commandsOfKeys(run, c.list, &pane.list()), expected) << int(c.list);
      if (!pane.commands().has(Id::Search)) continue;
      pane.commands().action(Id::Search)->setChecked(false);
      pane.commands().action(Id::Search)->trigger();
      const QList<QLineEdit*> fields = pane.findChildren<QLineEdit*>();
      QLineEdit* const box = *std::find_if(fields.begin(), fields.end(), [](QLineEdit* field) {
        return field->accessibleName() == u"Suchtext"_s;
      });
      ASSERT_TRUE(box->isVisible());
      box->setText(u"text"_s);
      expectKeysAreOfTheText(run, c.list, box);
    }
  }
}

TEST_F(MainWindowTest, AReadOnlyWindowSaysSoAndChangesNothingOnTheDisk) {
  Program run(data_, true);
  EXPECT_TRUE(run.window->windowTitle().endsWith(u" \u2013 nur Lesen"_s));
  EXPECT_TRUE(hasLabel(*run.window->statusBar(), u"nur Lesen"_s));
  turnAllListsOn(run.session.options);
  run.execute(std::nullopt, Id::ShowFiles);
  run.scan({tree_.text()});
  run.execute(kFolders, Id::ExpandAll);
  run.list(kFolders).goTo(1);
  ASSERT_EQ(run.column(ListId::Files).size(), 3);
  for (const ListId list : kAllLists) {
    ListPane& pane = run.pane(list);
    pane.commands().update();
    pane.commands().setBusy(false);
    for (const Command& command : commandTable()) {
      EXPECT_FALSE(command.changesDisk && run.execute(list, command.id)) << int(command.id);
      if (!pane.commands().has(command.id)) continue;
      const QAction* const action = pane.commands().action(command.id);
      EXPECT_FALSE(command.changesDisk && action->isEnabled()) << int(list) << int(command.id);
      EXPECT_EQ(action->toolTip().contains(u"(nur Lesen)"_s), command.changesDisk);
    }
    ListModel& model = pane.model();
    for (int cell = 0; cell < model.rowCount() * model.columnCount(); ++cell) {
      const QModelIndex index = model.index(cell / model.columnCount(), cell % model.columnCount());
      EXPECT_FALSE(model.flags(index) & Qt::ItemIsEditable);
      EXPECT_FALSE(model.setData(index, u"new"_s, Qt::EditRole));
    }
    pane.list().goTo(0);
    pane.list().editName();
    EXPECT_EQ(pane.list().viewport()->findChild<QLineEdit*>(), nullptr);
  }
  EXPECT_EQ(QDir(path("big")).entryList(QDir::Files),
            (QStringList{u"a.bin"_s, u"b.txt"_s, u"b2.txt"_s}));
}

class MainWindowDeleteTest : public ScannedWindowTest {
 protected:
  void select(ListId view, const QStringList& names) {
    ListView& list = run_.list(view);
    list.clearSelection();
    const QStringList rows = run_.column(view);
    for (const QString& name : names) {
      ASSERT_TRUE(rows.contains(name)) << name.toStdString();
      const QModelIndex index = list.model()->index(int(rows.indexOf(name)), 1);
      list.selectionModel()->setCurrentIndex(
          index, QItemSelectionModel::Select | QItemSelectionModel::Rows);
    }
  }

  QStringList folders() { return run_.column(kFolders); }
  QString files(const QString& folder) {
    return run_.cell(kFolders, int(folders().indexOf(folder)), FolderColumnId::Files);
  }
  bool hasLogged(const QString& line) { return run_.column(ListId::Log, 2).contains(line); }

  const ScopedVariable bin_{"XDG_DATA_HOME", data_.path()};
};

TEST_F(MainWindowDeleteTest, FoldersGoAfterAQuestionThatTellsWhatGoes) {
  select(kFolders, {u"big"_s, u"link"_s});
  const QStringList before = folders();
  const qsizetype logged = run_.column(ListId::Log).size();
  {
    Answer no(QMessageBox::No);
    EXPECT_TRUE(run_.execute(kFolders, Id::DeleteFolders));
    EXPECT_EQ(no.text, u"Sollen die ausgewählten Ordner wirklich gelöscht werden?"_s);
    EXPECT_EQ(no.defaultText.remove(u'&'), u"Behalten"_s);
    const QString plain = no.details.remove(QChar(0x200B));
    for (const QString& part : {path("big"), u"Dateien: 3, Ordner: 2"_s, u"Verknüpfungen: 1"_s,
                                u"2 Namen von Hardlinks; 200"_s})
      EXPECT_TRUE(plain.contains(part)) << plain.toStdString();
  }
  EXPECT_EQ(folders(), before);
  EXPECT_EQ(run_.column(ListId::Log).size(), logged);
  Answer yes(QMessageBox::Yes);
  EXPECT_TRUE(run_.execute(kFolders, Id::DeleteFolders));
  EXPECT_EQ(folders(), (QStringList{path(), u"Dateien"_s, u"small"_s}));
  EXPECT_EQ(files(path()), u"3"_s);
  EXPECT_EQ(namesIn(tree_.path()).size(), 2U);
  EXPECT_TRUE(hasLogged(u"GELÖSCHT: "_s + path("big/")));
  EXPECT_EQ(run_.column(ListId::Hardlinks).size(), 2) << "a list beside the tree is the last run";
  // The keyboard focus remains at the first of the rows.
  EXPECT_TRUE(run_.list(kFolders).selectionModel()->hasSelection());
}

TEST_F(MainWindowDeleteTest, AFolderInTheBinComesBackAndARescanFindsIt) {
  select(kFolders, {u"small"_s});
  {
    Answer yes(QMessageBox::Yes);
    EXPECT_TRUE(run_.execute(kFolders, Id::RecycleFolders));
    EXPECT_TRUE(yes.details.contains(u"Papierkorb"_s));
  }
  EXPECT_EQ(files(path()), u"4"_s);
  EXPECT_TRUE(hasLogged(u"PAPIERKORB: "_s + path("small/")));
  ASSERT_EQ(rename(data_.path("Trash/files/small").c_str(), tree_.path("small").c_str()), 0);
  run_.list(kFolders).goTo(0);
  EXPECT_TRUE(run_.execute(kFolders, Id::Rescan));
  EXPECT_EQ(files(path()), u"6"_s);
  EXPECT_TRUE(folders().contains(u"small"_s));
  EXPECT_EQ(run_.list(kFolders).currentRow(), 0U);
}

TEST_F(MainWindowDeleteTest, ARescanKeepsWhatIsOpenAndTheOrder) {
  run_.execute(kFolders, Id::ExpandAll);
  run_.list(kFolders).sortByColumn(FolderColumnId::Name);
  const QStringList before = folders();
  ASSERT_TRUE(before.contains(u"deep"_s));
  run_.list(kFolders).goTo(0);
  EXPECT_TRUE(run_.execute(kFolders, Id::Rescan));
  EXPECT_EQ(folders(), before);
  // For the row of direct files, the folder above is read again.
  tree_.file("new.txt", 7);
  select(kFolders, {u"Dateien"_s});
  EXPECT_TRUE(run_.execute(kFolders, Id::Rescan));
  EXPECT_EQ(files(path()), u"7"_s);
}

TEST_F(MainWindowDeleteTest, FilesGoFromTheirListAndFromTheTree) {
  select(ListId::LargestFiles, {u"needle.txt"_s});
  Answer yes(QMessageBox::Yes);
  EXPECT_TRUE(run_.execute(ListId::LargestFiles, Id::DeleteFiles));
  EXPECT_FALSE(run_.column(ListId::LargestFiles).contains(u"needle.txt"_s));
  EXPECT_NE(access(tree_.path("small/deep/needle.txt").c_str(), F_OK), 0);
  EXPECT_EQ(files(path()), u"5"_s);
  run_.execute(std::nullopt, Id::ShowFiles);
  select(kFolders, {u"big"_s});
  ASSERT_EQ(run_.column(ListId::Files).size(), 3);
  select(ListId::Files, {u"a.bin"_s, u"b2.txt"_s});
  EXPECT_TRUE(run_.execute(ListId::Files, Id::DeleteFiles));
  EXPECT_EQ(run_.column(ListId::Files), QStringList{u"b.txt"_s});
  EXPECT_EQ(files(u"big"_s), u"1"_s);
  EXPECT_EQ(files(path()), u"3"_s);
  EXPECT_EQ(run_.list(ListId::Files).currentRow(), 0U);
}

TEST_F(MainWindowDeleteTest, ASourceIsTakenOffTheListAndStaysOnTheDisk) {
  run_.scan({tree_.text("small")});
  select(kFolders, {u"big"_s});
  EXPECT_TRUE(run_.execute(kFolders, Id::RemoveSourceRows));
  EXPECT_EQ(folders()[0], path("small"));
  EXPECT_FALSE(folders().contains(u"big"_s));
  EXPECT_EQ(namesIn(tree_.path()).size(), 4U);
  EXPECT_TRUE(run_.column(ListId::Files).isEmpty());
  run_.list(kFolders).goTo(0);
  EXPECT_TRUE(run_.execute(kFolders, Id::RemoveSourceRows));
  EXPECT_TRUE(folders().isEmpty());
  EXPECT_EQ(run_.session.tree.MaxFolderDepth(), 0U);
}

/// The parts of the window, each tested through its own interface.
class PartsTest : public WindowTest {
 protected:
  ListPane& pane(ListId list) { return run_.pane(list); }
  QStringList names(ListId list) { return run_.column(list); }

  Program run_{data_};
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

TEST_F(PartsTest, TheSourceFieldOffersEarlierSourcesAndFoldersAndScansWhatIsInIt) {
  SourceBox& box = parts_.sources;
  box.AddNewSearchPath(u"/somewhere/earlier");
  box.clearEditText();
  QLineEdit* const field = box.lineEdit();
  ASSERT_TRUE(QTest::qWaitForWindowActive(run_.window.get()));
  field->setFocus();
  const auto* const completion = box.findChild<SourceCompletion*>();
  QTest::keyClicks(field, u"earl"_s);
  EXPECT_EQ(completion->offered(), QStringList{u"/somewhere/earlier"_s});
  field->selectAll();
  QTest::keyClicks(field, path() + u"/s"_s);
  EXPECT_EQ(field->text(), path() + u"/s"_s) << "nothing is completed in the field";
  QWidget* const popup = box.findChild<QCompleter*>()->popup();
  ASSERT_TRUE(QTest::qWaitFor([&] { return popup->isVisible(); }));
  EXPECT_EQ(completion->offered(), QStringList{path("small")});
  QTest::keyClick(popup, Qt::Key_Down);
  QTest::keyClick(popup, Qt::Key_Return);
  EXPECT_TRUE(QTest::qWaitFor([&] { return names(kFolders).value(0) == path("small"); }));
  EXPECT_EQ(run_.window->focusWidget(), &run_.list(kFolders));
  EXPECT_EQ(field->text(), path("small"));
  const int offered = box.count();
  box.setEditText(u"/no/such"_s);
  const Answer told(QMessageBox::Ok);
  parts_.scans.startOrStop();
  EXPECT_TRUE(QString(told.text).remove(QChar(0x200B)).contains(u"/no/such"_s));
  EXPECT_EQ(box.count(), offered) << "it is not offered again";
}

TEST(ColumnFitTest, WideColumnsGiveWayToNarrowOnes) {
  using Widths = std::vector<int>;
  const ColumnNeed needs[] = {{200, 100}, {500, 100}, {80, 80}};
  EXPECT_EQ(sharedWidths(needs, 900), (Widths{200, 500, 80}));
  EXPECT_EQ(sharedWidths(needs, 600), (Widths{200, 320, 80}));
  EXPECT_EQ(sharedWidths(needs, 400), (Widths{160, 160, 80}));
  EXPECT_EQ(sharedWidths(needs, 100), (Widths{100, 100, 80})) << "the rest is scrolled";
}

TEST_F(PartsTest, EachButtonShowsItsListAndNoOther) {
  PaneArea& area = parts_.area;
  const auto pressed = [this] {
    std::vector<Id> ids;
    for (CommandSet* const set : run_.window->findChildren<CommandSet*>())
      for (const BarItem& item : barItems(Bar::Header))
        if (set->has(Id::ShowHardlinks) && set->action(item.id)->isChecked())
          ids.push_back(item.id);
    return ids;
  };
  const std::pair<ListId, Id> lists[] = {{ListId::Files, Id::ShowFiles},
                                         {ListId::NewestFiles, Id::ShowTopLists},
                                         {ListId::Hardlinks, Id::ShowHardlinks},
                                         {ListId::Log, Id::ShowLog}};
  for (const auto& [list, command] : lists) {
    area.Change_ButtonHeaderActive(list);
    EXPECT_EQ(area.rightList(), list);
    EXPECT_TRUE(pane(list).isVisible());
    EXPECT_EQ(pressed(), std::vector<Id>{command});
  }
  area.showTopLists();
  EXPECT_EQ(area.rightList(), ListId::NewestFiles) << "the top list that was shown last";
  CommandSet& top = pane(ListId::NewestFiles).commands();
  EXPECT_EQ(top.action(Id::TopListMenu)->text(), u"Neuste Dateien"_s);
  EXPECT_TRUE(top.action(Id::ShowNewestFiles)->isChecked());
  EXPECT_FALSE(top.action(Id::ShowOldestFiles)->isChecked());
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
  EXPECT_EQ(names(ListId::Files).first(), u"a.bin"_s) << "the largest file is the first";
  tree_.file("big/late", 1);
  parts_.files.showFiles(false);
  parts_.files.filterChanged(std::nullopt);
  EXPECT_EQ(names(ListId::Files).size(), 3) << "the folder is shown already";
  session_.options.FileList_Filter_Active = 1;
  session_.options.FileList_Filter_Text = u"late";
  parts_.files.filterChanged(ListId::Files);
  EXPECT_TRUE(QTest::qWaitFor([&] { return names(ListId::Files) == QStringList(u"late"_s); }));
  CommandSet& files = pane(ListId::Files).commands();
  EXPECT_TRUE(files.action(Id::FilterMenu)->isChecked()) << "a filter in force is marked";
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
  run_.execute(ListId::Folders, Id::ClearFolders);
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

TEST_F(PartsTest, SizesOfTheMainBarAreThoseOfAllLists) {
  Options& options = session_.options;
  options.FileSizeFormatHardlinks = kUnitKB;
  parts_.looks.changeSizes(ListId::Hardlinks);
  EXPECT_EQ(options.FileSizeFormatOwner, kUnitMB) << "a list alone changes no other";
  const CommandSet& commands = run_.window->commands();
  EXPECT_FALSE(commands.action(Id::SizeGigabytes)->isChecked()) << "the lists differ";
  for (const Id id : {Id::SizeGigabytes, Id::SizeUnitText, Id::SizeDecimals, Id::SizeDecimals})
    commands.action(id)->trigger();
  for (const ListId list : kAllLists) {
    if (listSettings(options, list).unit == nullptr) continue;
    const SizeSettings sizes = listSizes(options, list);
    EXPECT_EQ(sizes.unit, kUnitGB) << int(list);
    EXPECT_TRUE(sizes.unitText && !sizes.decimals) << int(list);
  }
  EXPECT_TRUE(commands.action(Id::SizeGigabytes)->isChecked());
  for (const auto& [change, size] : {std::pair(-100, 6), {100, 32}}) {
    parts_.looks.ChangeFontSize(change);
    EXPECT_EQ(options.FontSize, size);
  }
}

TEST_F(PartsTest, SourcesOfLaterStartsJoinAScanAndWaitForADialog) {
  LaterStarts& later = parts_.laterStarts;
  tree_.folder("late");
  tree_.folder("later");
  // The event loop of the scan delivers the message.
  QTimer::singleShot(0, [&] {
    EXPECT_TRUE(run_.session.context.ScanBusy);
    later.add({tree_.text("late")}, {});
  });
  run_.scan({tree_.text("big")});
  const auto isShown = [&](TextView name) {
    return pathsOfSources(run_.session.tree).find(tree_.text(toBytes(name))) != Text::npos;
  };
  EXPECT_TRUE(QTest::qWaitFor([&] { return isShown(u"late"); }));
  {
    QDialog dialog;
    dialog.setModal(true);
    dialog.show();
    later.add({tree_.text("later")}, {});
    QTest::qWait(500);
    EXPECT_FALSE(isShown(u"later")) << "the dialog may be a question about rows";
    EXPECT_EQ(later.waiting(), 1U);
    EXPECT_TRUE(run_.window->windowTitle().contains(u"1 Ordner wartet"_s));
  }
  EXPECT_TRUE(QTest::qWaitFor([&] { return isShown(u"later"); }));
  EXPECT_TRUE(QTest::qWaitFor([&] { return !run_.window->windowTitle().contains(u"wartet"_s); }));
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
  if (QDBusConnection::sessionBus().isConnected()) return;
  QTimer::singleShot(0, [this] {
    QWidget* const shown = QApplication::activeModalWidget();
    QStringList values;
    for (const QLineEdit* const field : shown->findChildren<QLineEdit*>())
      values.append(field->text());
    EXPECT_EQ(values.value(1), path("many")) << "no file manager answers here";
    shown->close();
  });
  parts_.opening.showProperties(ListId::Files);
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
  EXPECT_TRUE(text(0).contains(u"6")) << text(0).toStdString();
  EXPECT_TRUE(text(1).startsWith(QString::number(session_.log.rows().size())));
  line.showProgress(u"reading"_s);
  session_.context.ScanBusy = true;
  EXPECT_EQ(text(1), u"reading"_s);
  session_.context.ScanBusy = false;
  parts_.area.showSides(true, false);
  EXPECT_EQ(text(1), QString());
}

TEST(QtTextTest, NamesOfAnyKindSurviveAndTakeOneLine) {
  const Text name = Text(u"a\nb\tc\x7F") + char16_t(0xDC80) + u"\U0001F4C1";
  EXPECT_EQ(ombrelian::ui::toText(toQString(name)), name);
  EXPECT_EQ(shownOnOneLine(u"a\nb\tc\x7F"), toQString(u"a\u240Ab\u2409c\u2421"));
}

}  // namespace
}  // namespace ombrelian::ui
