#include "ui/SaveDialog.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QDesktopServices>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QMessageBox>
#include <QProcess>
#include <QRadioButton>
#include <QRegularExpression>
#include <QTimer>
#include <QXmlStreamReader>

#include "export/FolderSave.h"
#include "settings/Optionen.h"
#include "tests/testing/ScopedLocale.h"
#include "tests/testing/TestFolder.h"
#include "ui/MainWindow.h"
#include "ui/Panes.h"
#include "ui/QtText.h"
#include "ui/ScanControl.h"

namespace ombrelian::ui {
namespace {

using testing::TestFolder;

constexpr ReportFormat kFormats[] = {ReportFormat::TXT, ReportFormat::CSV, ReportFormat::HTML,
                                     ReportFormat::XML, ReportFormat::XLSX};

template <class Control>
Control* find(const QDialog& dialog, const char* name) {
  return dialog.findChild<Control*>(QString::fromLatin1(name));
}

void press(const QDialog& dialog, const char* button) {
  find<QPushButton>(dialog, button)->click();
}

void choose(const QDialog& dialog, ReportFormat format) {
  find<QComboBox>(dialog, "cboFormat")->setCurrentIndex(int(format));
}

/// All sources or the selected one, then the three choices of levels.
QRadioButton* radio(const QDialog& dialog, int number) {
  return dialog.findChildren<QRadioButton*>()[number];
}

/// Answers every question for a file with this one.
SaveDialog::ChooseFile answer(const QString& path) {
  return [path](QWidget*, const FileQuestion&) { return path; };
}

QString pathIn(const TestFolder& folder, ReportFormat format) {
  return toQString(folder.text("report." + toBytes(fileExtension(format))));
}

/// What a report says, whatever its format; of a workbook its sheet.
QString contents(const QString& path) {
  if (!path.endsWith(QStringLiteral(".xlsx")))
    return toQString(testing::readReport(path.toStdString()));
  QProcess python;
  python.start(QStringLiteral("/usr/bin/python3"),
               {QStringLiteral("-c"),
                QStringLiteral("import sys, zipfile\n"
                               "book = zipfile.ZipFile(sys.argv[1])\n"
                               "assert book.testzip() is None\n"
                               "sys.stdout.buffer.write(book.read('xl/worksheets/sheet1.xml'))"),
                path});
  EXPECT_TRUE(python.waitForFinished());
  EXPECT_EQ(python.exitCode(), 0) << python.readAllStandardError().constData();
  return QString::fromUtf8(python.readAllStandardOutput());
}

/// Closes the message that is shown next, and keeps its text.
class NextMessage : public QObject {
 public:
  NextMessage() {
    timer_.callOnTimeout(this, [this] {
      auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
      if (box == nullptr) return;
      text = box->text();
      timer_.stop();
      box->close();
    });
    timer_.start(5);
  }

  QString text;

 private:
  QTimer timer_;
};

/// A window over a scanned tree:
///
///   photos/           650 bytes, 3 files
///     alps/           500 bytes, 1 file
///   zebra/            250 bytes, 2 files
///   attic/             70 bytes, 1 file
class SaveFromWindowTest : public ::testing::Test {
 protected:
  SaveFromWindowTest() {
    source.file("photos/alps/top.jpg", 500);
    source.file("photos/one.jpg", 110);
    source.file("photos/two.jpg", 40);
    source.file("zebra/stripes.txt", 240);
    source.file("zebra/hoof.md", 10);
    source.file("attic/box.iso", 70);
    Options& options = session.options;
    options.CreateList100LargestFiles = 1;
    options.FileSizeFormatTop[0] = 0;
    options.FolderColumnVisible.fill(0);
    options.TopColumnVisible[0].fill(0);
    for (const int shown : {FolderColumnId::Name, FolderColumnId::Files, FolderColumnId::Size})
      options.FolderColumnVisible[std::size_t(shown)] = 1;
    std::swap(options.FolderColumnIndex[FolderColumnId::Files],
              options.FolderColumnIndex[FolderColumnId::Size]);
    for (const int shown : {1, 2, 4})
      options.TopColumnVisible[0][std::size_t(shown)] = 1;
    std::swap(options.TopColumnIndex[0][2], options.TopColumnIndex[0][4]);
    session.folderReport.applySettings();
    window.show();
    window.parts().scans.scan({source.text()});
  }

  void sortBy(ListId view, TextView key) {
    window.pane(view).list().sortByColumn(column(view, key).id);
  }

  const Column& column(ListId view, TextView key) {
    const Columns columns = window.pane(view).rows().columns();
    return *std::find_if(columns.begin(), columns.end(),
                         [key](const Column& column) { return column.key == key; });
  }

  /// Name and size of each row from top to bottom.
  QStringList shownRows(ListId view) {
    RowSource& rows = window.pane(view).rows();
    QStringList shown;
    for (std::size_t row = 0; row < rows.count(); ++row) {
      for (const TextView key : {u"name", u"size"})
        shown << toQString(rows.shown(row, column(view, key))).trimmed();
    }
    return shown;
  }

  /// Opens the dialog of a list and lets `act` do what a user would; then it is closed.
  template <class Act>
  void inDialog(ListId view, Act act) {
    bool isMet = false;
    QTimer::singleShot(0, &window, [&] {
      auto* const dialog = qobject_cast<SaveDialog*>(QApplication::activeModalWidget());
      ASSERT_NE(dialog, nullptr);
      isMet = true;
      act(*dialog);
      if (dialog->isVisible()) dialog->reject();
    });
    window.execute(view, CommandId::Save);
    EXPECT_TRUE(isMet);
  }

  QString saved(ListId view, ReportFormat format) {
    const QString path = pathIn(out, format);
    inDialog(view, [&](SaveDialog& dialog) {
      choose(dialog, format);
      dialog.setChooseFile(answer(path));
      press(dialog, "OKButton");
      EXPECT_EQ(toQString(dialog.target()), path);
    });
    return contents(path);
  }

  const ScopedLocale locale{"C"};
  TestFolder source;
  TestFolder out;
  IniStore settings{out.text("settings.ini")};
  Session session;
  MainWindow window{session, settings};
};

/// Whether the texts follow each other in `report`.
::testing::AssertionResult inOrder(const QString& report, const QStringList& texts) {
  qsizetype at = 0;
  for (const QString& text : texts) {
    const qsizetype found = report.indexOf(text, at, Qt::CaseInsensitive);
    if (found < 0)
      return ::testing::AssertionFailure()
             << qPrintable(text) << " is missing behind " << at << " in\n"
             << qPrintable(report);
    at = found + text.size();
  }
  return ::testing::AssertionSuccess();
}

TEST_F(SaveFromWindowTest, EveryFormatHasTheRowsAndColumnsThatAreShown) {
  window.execute(ListId::Folders, CommandId::ExpandAll);
  sortBy(ListId::Folders, u"name");
  sortBy(ListId::LargestFiles, u"size");
  ASSERT_EQ(shownRows(ListId::Folders).size(), 2 * 6);
  ASSERT_EQ(shownRows(ListId::Folders)[2], QStringLiteral("attic"));
  ASSERT_EQ(shownRows(ListId::LargestFiles).first(), QStringLiteral("hoof.md"));

  const struct {
    ListId view;
    QStringList captions;
    QStringList keys;
    QString hidden;
  } lists[] = {{ListId::Folders,
                {QStringLiteral("Name"), QStringLiteral("Dateien"), QStringLiteral("Größe")},
                {QStringLiteral("<name>"), QStringLiteral("<files>"), QStringLiteral("<size>")},
                QStringLiteral("percent|prozent")},
               {ListId::LargestFiles,
                {QStringLiteral("Dateiname"), QStringLiteral("Typ"), QStringLiteral("Größe")},
                {QStringLiteral("<name>"), QStringLiteral("<type>"), QStringLiteral("<size>")},
                QStringLiteral("<ext|endung")}};
  for (const auto& list : lists) {
    for (const ReportFormat format : kFormats) {
      const QString report = saved(list.view, format);
      const QStringList heads = format == ReportFormat::XML ? list.keys : list.captions;
      EXPECT_TRUE(inOrder(report, heads));
      EXPECT_TRUE(inOrder(report, shownRows(list.view)));
      const QRegularExpression hidden(list.hidden, QRegularExpression::CaseInsensitiveOption);
      EXPECT_FALSE(report.contains(hidden)) << int(format);
    }
  }
}

TEST_F(SaveFromWindowTest, TheSelectedRowAloneAndWhatIsExpandedInIt) {
  ListPane& folders = window.pane(ListId::Folders);
  folders.list().goTo(1);
  ASSERT_EQ(shownRows(ListId::Folders).size(), 2 * 4) << "the source is expanded, no more";
  const struct {
    int folders;
    int levels;
    QString number;
    int rows;
  } cases[] = {{0, 2, {}, 4}, {0, 0, {}, 6}, {0, 1, QStringLiteral("1"), 4},
               {1, 2, {}, 1}, {1, 0, {}, 3}, {0, 1, QStringLiteral("x"), 6}};
  for (const auto& c : cases) {
    inDialog(ListId::Folders, [&](SaveDialog& dialog) {
      choose(dialog, ReportFormat::CSV);
      radio(dialog, c.folders)->click();
      radio(dialog, 2 + c.levels)->click();
      find<QLineEdit>(dialog, "txtLevels")->setText(c.number);
      dialog.setChooseFile(answer(pathIn(out, ReportFormat::CSV)));
      press(dialog, "OKButton");
    });
    EXPECT_EQ(contents(pathIn(out, ReportFormat::CSV)).count(u'\n') - 1, c.rows)
        << c.folders << c.levels << qPrintable(c.number);
  }

  folders.list().clearSelection();
  inDialog(ListId::Folders, [](SaveDialog& dialog) {
    EXPECT_FALSE(radio(dialog, 1)->isEnabled());
    EXPECT_TRUE(radio(dialog, 0)->isChecked());
  });
}

TEST_F(SaveFromWindowTest, AListTellsWhereItComesFrom) {
  window.execute(std::nullopt, CommandId::ShowFiles);
  const QString path = QStringLiteral("Pfad: ");
  const struct {
    ListId view;
    QString title;
    QString source;
  } cases[] = {{ListId::Files, QStringLiteral("Dateiliste"), toQString(source.text())},
               {ListId::LargestFiles, QStringLiteral("Liste mit den größten Dateien"),
                toQString(source.text())},
               {ListId::Log, QStringLiteral("Protokoll"), {}}};
  source.file("plain.txt", 1);
  window.execute(ListId::Files, CommandId::Refresh);
  for (const auto& c : cases) {
    const QString report = saved(c.view, ReportFormat::TXT);
    EXPECT_TRUE(report.startsWith(QStringLiteral("Ombrelian - ") + c.title + u'\r'));
    EXPECT_EQ(report.section(path, 1, 1).section(u'\r', 0, 0), c.source);
  }
}

TEST_F(SaveFromWindowTest, AnEmptyListIsNotSaved) {
  QTimer::singleShot(0, &window, [] { EXPECT_EQ(QApplication::activeModalWidget(), nullptr); });
  window.execute(ListId::Hardlinks, CommandId::Save);
  QApplication::processEvents();
}

/// A dialog by itself, over a tree made by hand.
class SaveDialogTest : public ::testing::Test {
 protected:
  SaveDialog::Save saveFolders() {
    return [this](ReportFormat format, const Text& target, UserInterface& ui) {
      return FolderSave(report, options, ui).saveAs(format, target);
    };
  }

  /// So many rows that a save of all columns takes a while.
  void growTree() {
    const NodeIndex root = tree.addRoot(u"/tree");
    for (int i = 0; i < kRows; ++i)
      tree[tree.addChild(root, u"folder" + ombrelian::toText(i), true)].size = i;
    options.FolderColumnVisible.fill(1);
    report.applySettings();
  }

  static constexpr int kRows = 400'000;
  const ScopedLocale locale{"C"};
  TestFolder out;
  IniStore settings{out.text("settings.ini")};
  Options options;
  FolderTree tree;
  FolderReport report{tree, options};
};

TEST_F(SaveDialogTest, WhatIsChosenComesBack) {
  tree.addRoot(u"/tree");
  for (const bool isTree : {true, false}) {
    const auto choices = [isTree](Options& of) {
      return isTree ? folderSaveChoices(of) : listSaveChoices(of);
    };
    QPoint place;
    {
      SaveDialog dialog(choices(options), true, saveFolders(), settings);
      dialog.setChooseFile(answer(QStringLiteral("/proc/none/my.list.txt")));
      choose(dialog, ReportFormat::TXT);
      find<QComboBox>(dialog, "cboDelimiter")->setCurrentIndex(4);
      find<QLineEdit>(dialog, "txtDelimiters")->setText(QStringLiteral(" ; "));
      for (QCheckBox* const box : dialog.findChildren<QCheckBox*>())
        box->click();
      if (isTree) {
        radio(dialog, 1)->click();
        radio(dialog, 3)->click();
        find<QLineEdit>(dialog, "txtLevels")->setText(QStringLiteral("7"));
      }
      dialog.show();
      dialog.move(123, 77);
      place = dialog.pos();
      NextMessage message;
      press(dialog, "OKButton");
      EXPECT_FALSE(message.text.isEmpty()) << "nothing can be saved there";
      dialog.close();
    }
    Options fresh;
    IniStore again(settings.path());
    SaveDialog dialog(choices(fresh), true, saveFolders(), again);
    EXPECT_EQ(find<QComboBox>(dialog, "cboFormat")->currentText(), QStringLiteral("TXT"));
    EXPECT_EQ(find<QComboBox>(dialog, "cboDelimiter")->currentIndex(), 4);
    EXPECT_EQ(find<QLineEdit>(dialog, "txtDelimiters")->text(), QStringLiteral(" ; "));
    EXPECT_EQ(dialog.findChildren<QCheckBox*>().size(), isTree ? 3 : 2);
    for (const QCheckBox* const box : dialog.findChildren<QCheckBox*>())
      EXPECT_TRUE(box->isChecked()) << qPrintable(box->text());
    if (isTree) {
      EXPECT_TRUE(radio(dialog, 1)->isChecked());
      EXPECT_TRUE(radio(dialog, 3)->isChecked());
      EXPECT_EQ(find<QLineEdit>(dialog, "txtLevels")->text(), QStringLiteral("7"));
    }
    dialog.show();
    EXPECT_EQ(dialog.pos(), place);
    const LastSave& last = isTree ? fresh.FolderReport : fresh.Report;
    EXPECT_EQ(last.LastSaveFileName, u"my.list");
    EXPECT_EQ(last.LastSaveDir, u"/proc/none");
  }
}

TEST_F(SaveDialogTest, WhatAFormatHasNoUseForIsOff) {
  const struct {
    ReportFormat format;
    int delimiter;
    bool hasDelimiter, hasCustom, hasLines;
  } cases[] = {
      {ReportFormat::TXT, 4, true, true, true},    {ReportFormat::CSV, 4, true, true, false},
      {ReportFormat::TXT, 2, true, false, true},   {ReportFormat::HTML, 4, false, false, false},
      {ReportFormat::XML, 4, false, false, false}, {ReportFormat::XLSX, 0, false, false, false},
      {ReportFormat::CSV, 0, true, false, false}};
  for (const bool isTree : {true, false}) {
    SaveDialog dialog(isTree ? folderSaveChoices(options) : listSaveChoices(options), true,
                      saveFolders(), settings);
    for (const auto& c : cases) {
      choose(dialog, ReportFormat::TXT);
      for (QCheckBox* const box : dialog.findChildren<QCheckBox*>())
        box->setChecked(true);
      find<QComboBox>(dialog, "cboDelimiter")->setCurrentIndex(c.delimiter);
      choose(dialog, c.format);
      EXPECT_EQ(find<QComboBox>(dialog, "cboDelimiter")->isEnabled(), c.hasDelimiter);
      EXPECT_EQ(find<QLineEdit>(dialog, "txtDelimiters")->isEnabled(), c.hasCustom);
      for (const char* const name : {"chkShowFolderIndent", "chkAddDividingLine"}) {
        const auto* const box = find<QCheckBox>(dialog, name);
        if (box == nullptr) continue;
        EXPECT_EQ(box->isEnabled(), c.hasLines);
        EXPECT_EQ(box->isChecked(), c.hasLines);
      }
      EXPECT_TRUE(find<QCheckBox>(dialog, "chkOpenFile")->isEnabled());
    }
  }
}

TEST_F(SaveDialogTest, TheQuestionForAFileBeginsWhereTheLastReportWent) {
  options.FolderReport = {out.text(), u"weekly"};
  storeSettings(SettingOwner::SaveDialog, options, settings);
  SaveDialog dialog(folderSaveChoices(options), false, saveFolders(), settings);
  FileQuestion asked;
  dialog.setChooseFile([&](QWidget*, const FileQuestion& question) {
    asked = question;
    return QString();
  });
  dialog.show();
  choose(dialog, ReportFormat::XLSX);
  press(dialog, "OKButton");
  EXPECT_EQ(asked.folder, toQString(out.text()));
  EXPECT_EQ(asked.name, QStringLiteral("weekly.xlsx"));
  EXPECT_EQ(asked.filter, QStringLiteral("XLSX (*.xlsx)"));
  EXPECT_EQ(asked.extension, QStringLiteral("xlsx"));
  EXPECT_TRUE(dialog.isVisible()) << "no file was chosen";
}

TEST_F(SaveDialogTest, TheDesktopsDialogAddsTheEndingAndAsksBeforeItReplaces) {
  tree.addRoot(u"/tree");
  options.FolderReport = {out.text(), {}};
  storeSettings(SettingOwner::SaveDialog, options, settings);
  out.file("named.xml");
  SaveDialog dialog(folderSaveChoices(options), false, saveFolders(), settings);
  dialog.show();
  choose(dialog, ReportFormat::XML);
  const auto type = [](const char* name) {
    auto* const files = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
    ASSERT_NE(files, nullptr);
    files->selectFile(QString::fromLatin1(name));
    QMetaObject::invokeMethod(files, "accept");
  };
  NextMessage question;
  QTimer::singleShot(0, &dialog, [&] {
    type("named");
    EXPECT_TRUE(question.text.contains(QStringLiteral("named.xml")));
    type("other");
  });
  press(dialog, "OKButton");
  EXPECT_EQ(dialog.target(), out.text("other.xml"));
  EXPECT_TRUE(testing::readFile(out.path("named.xml")).empty()) << "it was not to be replaced";
  EXPECT_TRUE(contents(toQString(dialog.target())).contains(QStringLiteral("<list>")));
}

/// What every reader of the format asks for.
void expectWellFormed(const QString& report, ReportFormat format) {
  if (format == ReportFormat::HTML) {
    EXPECT_TRUE(report.trimmed().endsWith(QStringLiteral("</html>")));
  } else if (format == ReportFormat::XML || format == ReportFormat::XLSX) {
    QXmlStreamReader reader(report);
    while (!reader.atEnd())
      reader.readNext();
    EXPECT_FALSE(reader.hasError()) << qPrintable(reader.errorString());
  } else {
    EXPECT_TRUE(report.endsWith(QStringLiteral("\r\n")));
  }
}

TEST_F(SaveDialogTest, ASaveThatIsEndedLeavesAWholeFile) {
  growTree();
  for (const ReportFormat format : kFormats) {
    SaveDialog dialog(folderSaveChoices(options), false, saveFolders(), settings);
    dialog.setChooseFile(answer(pathIn(out, format)));
    dialog.show();
    choose(dialog, format);
    radio(dialog, 2)->click();
    bool wasSaving = false;
    QTimer::singleShot(40, &dialog, [&] {
      wasSaving = dialog.isSaving();
      EXPECT_FALSE(find<QComboBox>(dialog, "cboFormat")->isEnabled());
      EXPECT_FALSE(find<QPushButton>(dialog, "OKButton")->isEnabled());
      EXPECT_TRUE(find<QPushButton>(dialog, "CancelButton")->isEnabled());
      if (format == ReportFormat::CSV) {
        EXPECT_FALSE(dialog.close()) << "closing ends the save, and no more";
      } else {
        press(dialog, "CancelButton");
      }
      EXPECT_TRUE(dialog.isVisible());
    });
    press(dialog, "OKButton");
    EXPECT_TRUE(wasSaving) << "too few rows for this machine: " << int(format);
    EXPECT_TRUE(dialog.wasCancelled());
    EXPECT_FALSE(dialog.isVisible());
    const QString written = contents(pathIn(out, format));
    expectWellFormed(written, format);
    EXPECT_LT(written.count(QStringLiteral("folder")), kRows);
  }
}

TEST_F(SaveDialogTest, TheWindowAnswersThroughAllOfASave) {
  growTree();
  SaveDialog dialog(folderSaveChoices(options), false, saveFolders(), settings);
  dialog.setChooseFile(answer(pathIn(out, ReportFormat::TXT)));
  dialog.show();
  choose(dialog, ReportFormat::TXT);
  radio(dialog, 2)->click();
  QElapsedTimer sinceAnswer;
  qint64 longest = 0;
  QTimer answers;
  answers.callOnTimeout([&] { longest = std::max(longest, sinceAnswer.restart()); });
  answers.start(1);
  QElapsedTimer all;
  all.start();
  sinceAnswer.start();
  press(dialog, "OKButton");
  RecordProperty("milliseconds", int(all.elapsed()));
  RecordProperty("longest", int(longest));
  EXPECT_FALSE(dialog.target().empty());
  // In proportion to the whole, so that a slow machine is no failure.
  EXPECT_LT(longest, std::max<qint64>(100, all.elapsed() / 5));
}

TEST_F(SaveDialogTest, AfterAFailureAnotherNameCanBeChosen) {
  tree.addRoot(u"/tree");
  SaveDialog dialog(folderSaveChoices(options), false, saveFolders(), settings);
  dialog.show();
  const QString impossible = QStringLiteral("/proc/none/report.html");
  dialog.setChooseFile(answer(impossible));
  {
    NextMessage message;
    press(dialog, "OKButton");
    EXPECT_TRUE(message.text.contains(impossible)) << qPrintable(message.text);
  }
  EXPECT_TRUE(dialog.isVisible());
  EXPECT_TRUE(find<QComboBox>(dialog, "cboFormat")->isEnabled());
  EXPECT_TRUE(dialog.target().empty());
  dialog.setChooseFile(answer(pathIn(out, ReportFormat::HTML)));
  press(dialog, "OKButton");
  EXPECT_FALSE(dialog.isVisible());
  EXPECT_TRUE(contents(pathIn(out, ReportFormat::HTML)).contains(QStringLiteral("/tree")));
}

TEST_F(SaveDialogTest, WhereOthersMayOnlyBeReadTheReportIsSavedAllTheSame) {
  tree.addRoot(u"/tree");
  options.FolderReport = {out.text(), {}};
  storeSettings(SettingOwner::SaveDialog, options, settings);
  SaveDialog dialog(folderSaveChoices(options), false, saveFolders(), settings);
  dialog.setReadOnly();
  dialog.show();
  choose(dialog, ReportFormat::XML);
  QTimer::singleShot(0, &dialog, [] {
    auto* const files = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
    ASSERT_NE(files, nullptr);
    EXPECT_TRUE(files->testOption(QFileDialog::ReadOnly));
    files->selectFile(QStringLiteral("saved"));
    QMetaObject::invokeMethod(files, "accept");
  });
  press(dialog, "OKButton");
  EXPECT_FALSE(testing::readFile(out.path("saved.xml")).empty());
}

TEST_F(SaveDialogTest, AFileThatNoProgramOpensIsToldOf) {
  tree.addRoot(u"/tree");
  QObject nobody;
  QDesktopServices::setUrlHandler(QStringLiteral("file"), &nobody, "open");
  SaveDialog dialog(folderSaveChoices(options), false, saveFolders(), settings);
  dialog.setChooseFile(answer(pathIn(out, ReportFormat::HTML)));
  dialog.show();
  find<QCheckBox>(dialog, "chkOpenFile")->setChecked(true);
  NextMessage message;
  press(dialog, "OKButton");
  QDesktopServices::unsetUrlHandler(QStringLiteral("file"));
  EXPECT_TRUE(message.text.contains(pathIn(out, ReportFormat::HTML)));
  EXPECT_FALSE(dialog.isVisible());
}

TEST_F(SaveDialogTest, EveryControlHasALetterOfItsOwn) {
  SaveDialog dialog(folderSaveChoices(options), true, saveFolders(), settings);
  QSet<QKeySequence> letters;
  int controls = 0;
  const auto take = [&](const QString& text) {
    ++controls;
    letters.insert(QKeySequence::mnemonic(text));
  };
  for (const QAbstractButton* const button : dialog.findChildren<QAbstractButton*>())
    take(button->text());
  for (const QLabel* const label : dialog.findChildren<QLabel*>()) {
    if (label->buddy() != nullptr) take(label->text());
  }
  EXPECT_EQ(controls, 12);
  EXPECT_EQ(letters.size(), controls);
  EXPECT_FALSE(letters.contains(QKeySequence()));
}

}  // namespace
}  // namespace ombrelian::ui
