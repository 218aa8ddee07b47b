#include "ui/SaveDialog.h"

#include <QCheckBox>
#include <QDesktopServices>
#include <QFileDialog>
#include <QHeaderView>
#include <QRadioButton>
#include <chrono>
#include <future>
#include <stdexcept>

#include "settings/Optionen.h"
#include "tests/testing/SaveFixture.h"
#include "tests/ui/WindowFixture.h"
#include "ui/QtText.h"

namespace ombrelian::ui {
namespace {

using namespace Qt::StringLiterals;
using namespace ombrelian::testing;

template <class Control>
Control* find(const QDialog& dialog, const char* name) {
  return dialog.findChild<Control*>(QString::fromLatin1(name));
}

void press(const QDialog& dialog, const char* button) {
  find<QPushButton>(dialog, button)->click();
}

/// The radio button `number`: 0 all sources, 1 the selected one, 2 to 4 the choices of levels.
QRadioButton* radio(const QDialog& dialog, int number) {
  return dialog.findChildren<QRadioButton*>()[number];
}

/// Chooses a format, and `path` as the answer to every question for a file.
void choose(SaveDialog& dialog, ReportFormat format, const QString& path = {}) {
  find<QComboBox>(dialog, "cboFormat")->setCurrentIndex(int(format));
  if (path.isEmpty()) return;
  dialog.setChooseFile([path](QWidget*, const FileQuestion&) { return path; });
}

QString pathIn(const TestFolder& folder, ReportFormat format) {
  return toQString(folder.text(nameOf(format)));
}

/// The text of a report; for a workbook, the text of its sheet.
QString contents(const QString& path) {
  if (!path.endsWith(u".xlsx"_s)) return toQString(readReport(path.toStdString()));
  return QString::fromStdString(
      outputOf("/usr/bin/python3 -c \"import zipfile; print(zipfile.ZipFile('" +
               path.toStdString() + "').read('xl/worksheets/sheet1.xml').decode(), end='')\""));
}

class SaveFromWindowTest : public ScannedWindowTest {
 protected:
  /// Opens the dialog of a list, makes the inputs in `prepare`, and saves.
  QString saved(ListId view, ReportFormat format,
                const std::function<void(SaveDialog&)>& prepare = {}) {
    const QString path = pathIn(data_, format);
    bool isMet = false;
    QTimer::singleShot(0, run_.window.get(), [&] {
      auto* const dialog = qobject_cast<SaveDialog*>(QApplication::activeModalWidget());
      ASSERT_NE(dialog, nullptr);
      isMet = true;
      choose(*dialog, format, path);
      if (prepare) prepare(*dialog);
      press(*dialog, "OKButton");
      EXPECT_EQ(toQString(dialog->target()), path);
    });
    run_.execute(view, CommandId::Save);
    EXPECT_TRUE(isMet);
    return contents(path);
  }

  const ScopedLocale locale{"C"};
};

/// Whether the texts occur in `report` in this order.
bool inOrder(const QString& report, const QStringList& texts) {
  qsizetype at = 0;
  for (const QString& text : texts) {
    at = report.indexOf(text, at, Qt::CaseInsensitive);
    if (at < 0) return false;
    at += text.size();
  }
  return true;
}

TEST_F(SaveFromWindowTest, EveryFormatHasTheRowsAndColumnsThatAreShown) {
  run_.execute(ListId::Folders, CommandId::ExpandAll);
  for (const ListId view : {ListId::Folders, ListId::LargestFiles}) {
    ListView& list = run_.list(view);
    for (int section = 0; section < list.model()->columnCount(); ++section)
      list.setColumnVisible(section, section == 1 || section == 2 || section == 4);
    QHeaderView& header = *list.horizontalHeader();
    header.moveSection(header.visualIndex(4), header.visualIndex(2));
    list.sortByColumn(1);
    QStringList keys;
    QStringList captions;
    for (const int section : {1, 4, 2, 3}) {
      keys << u'<' + toQString(run_.pane(view).rows().columns()[std::size_t(section - 1)].key);
      captions << list.model()->headerData(section, Qt::Horizontal).toString().section(u' ', 0, 0);
    }
    for (const ReportFormat format : kFormats) {
      const QString report = saved(view, format);
      QStringList heads = format == ReportFormat::XML ? keys : captions;
      EXPECT_FALSE(report.contains(heads.takeLast(), Qt::CaseInsensitive)) << int(format);
      EXPECT_TRUE(inOrder(report, heads)) << qPrintable(heads.join(u' ') + u'\n' + report);
      EXPECT_TRUE(inOrder(report, run_.column(view))) << qPrintable(report);
    }
  }
}

TEST_F(SaveFromWindowTest, AListTellsWhereItComesFromAndAnEmptyOneIsNotSaved) {
  run_.execute(std::nullopt, CommandId::ShowFiles);
  const std::tuple<ListId, QString, QString> cases[] = {
      {ListId::Files, u"Dateiliste"_s, path()},
      {ListId::LargestFiles, u"Liste mit den größten Dateien"_s, path()},
      {ListId::Log, u"Protokoll"_s, {}}};
  for (const auto& [view, title, source] : cases) {
    const QString report = saved(view, ReportFormat::TXT);
    EXPECT_TRUE(report.startsWith(u"Ombrelian - "_s + title + u'\r'));
    EXPECT_EQ(report.section(u"Pfad: "_s, 1, 1).section(u'\r', 0, 0), source);
  }
  run_.list(ListId::Folders).clearSelection();
  saved(ListId::Folders, ReportFormat::CSV, [](SaveDialog& dialog) {
    EXPECT_TRUE(radio(dialog, 0)->isChecked());
    EXPECT_FALSE(radio(dialog, 1)->isEnabled()) << "no row is selected";
  });
  run_.execute(ListId::Folders, CommandId::ClearFolders);
  QTimer::singleShot(0, run_.window.get(),
                     [] { EXPECT_EQ(QApplication::activeModalWidget(), nullptr); });
  run_.execute(ListId::Folders, CommandId::Save);
  QApplication::processEvents();
}

TEST_F(SaveFromWindowTest, ThePathOfAFileIsSavedWithItsName) {
  run_.execute(std::nullopt, CommandId::ShowFiles);
  ListView& list = run_.list(ListId::Files);
  for (int section = 0; section < list.model()->columnCount(); ++section)
    list.setColumnVisible(section, section == 1 || section == 10);
  const QStringList names = run_.column(ListId::Files);
  ASSERT_FALSE(names.isEmpty());
  for (const ReportFormat format : kFormats) {
    const QString report = saved(ListId::Files, format);
    for (const QString& name : names)
      EXPECT_TRUE(report.contains(path() + u'/' + name)) << int(format) << qPrintable(report);
  }
}

/// A dialog without a window, for a made tree.
class SaveDialogTest : public SaveFixture {
 protected:
  /// A dialog with a chosen format; it saves to the file of `pathIn`.
  std::unique_ptr<SaveDialog> open(ReportFormat format, bool isTree = true) {
    auto dialog = make(options, settings, isTree);
    choose(*dialog, format, pathIn(out, format));
    return dialog;
  }

  std::unique_ptr<SaveDialog> make(Options& remembered, IniStore& ini, bool isTree = true) {
    auto dialog = std::make_unique<SaveDialog>(
        isTree ? folderSaveChoices(remembered) : listSaveChoices(remembered), true,
        [this](ReportFormat chosen, const Text& target, UserInterface& user) {
          return FolderSave(report, options, user).saveAs(chosen, target);
        },
        ini);
    dialog->show();
    return dialog;
  }

  void rememberFolder(TextView name = {}) {
    options.FolderReport = {out.text(), Text(name)};
    storeSettings(SettingOwner::SaveDialog, options, settings);
  }

  const ScopedLocale locale{"C"};
  IniStore settings{out.text("settings.ini")};
  const NodeIndex root = add(kNoNode, u"/tree");
};

TEST_F(SaveDialogTest, WhatIsChosenComesBack) {
  for (const bool isTree : {true, false}) {
    QPoint place;
    {
      const auto dialog = open(ReportFormat::TXT, isTree);
      choose(*dialog, ReportFormat::TXT, u"/proc/none/my.list.txt"_s);
      find<QComboBox>(*dialog, "cboDelimiter")->setCurrentIndex(4);
      find<QLineEdit>(*dialog, "txtDelimiters")->setText(u" ; "_s);
      for (QCheckBox* const box : dialog->findChildren<QCheckBox*>())
        box->click();
      if (isTree) {
        radio(*dialog, 1)->click();
        radio(*dialog, 3)->click();
        find<QLineEdit>(*dialog, "txtLevels")->setText(u"7"_s);
      }
      dialog->move(123, 77);
      place = dialog->pos();
      Answer message(QMessageBox::Ok);
      press(*dialog, "OKButton");
      EXPECT_FALSE(message.text.isEmpty()) << "nothing can be saved there";
      dialog->close();
    }
    Options fresh;
    IniStore again(settings.path());
    const auto dialog = make(fresh, again, isTree);
    EXPECT_EQ(find<QComboBox>(*dialog, "cboFormat")->currentText(), u"TXT"_s);
    EXPECT_EQ(find<QComboBox>(*dialog, "cboDelimiter")->currentIndex(), 4);
    EXPECT_EQ(find<QLineEdit>(*dialog, "txtDelimiters")->text(), u" ; "_s);
    EXPECT_EQ(dialog->findChildren<QCheckBox*>().size(), isTree ? 3 : 2);
    for (const QCheckBox* const box : dialog->findChildren<QCheckBox*>())
      EXPECT_TRUE(box->isChecked()) << qPrintable(box->text());
    if (isTree) {
      EXPECT_TRUE(radio(*dialog, 1)->isChecked() && radio(*dialog, 3)->isChecked());
      EXPECT_EQ(find<QLineEdit>(*dialog, "txtLevels")->text(), u"7"_s);
    }
    EXPECT_EQ(dialog->pos(), place);
    const LastSave& last = isTree ? fresh.FolderReport : fresh.Report;
    EXPECT_EQ(last.LastSaveFileName, u"my.list");
    EXPECT_EQ(last.LastSaveDir, u"/proc/none");
  }
}

TEST_F(SaveDialogTest, OptionsThatAFormatDoesNotHaveAreDisabled) {
  // Format and delimiter; whether it has delimiters, a delimiter of the user, and lines.
  const std::tuple<ReportFormat, int, bool, bool, bool> cases[] = {
      {ReportFormat::TXT, 4, true, true, true},    {ReportFormat::CSV, 4, true, true, false},
      {ReportFormat::TXT, 2, true, false, true},   {ReportFormat::HTML, 4, false, false, false},
      {ReportFormat::XML, 4, false, false, false}, {ReportFormat::XLSX, 0, false, false, false}};
  for (const bool isTree : {true, false}) {
    const auto dialog = open(ReportFormat::TXT, isTree);
    for (const auto& [format, delimiter, hasDelimiter, hasCustom, hasLines] : cases) {
      choose(*dialog, ReportFormat::TXT);
      for (QCheckBox* const box : dialog->findChildren<QCheckBox*>())
        box->setChecked(true);
      find<QComboBox>(*dialog, "cboDelimiter")->setCurrentIndex(delimiter);
      choose(*dialog, format);
      EXPECT_EQ(find<QComboBox>(*dialog, "cboDelimiter")->isEnabled(), hasDelimiter);
      EXPECT_EQ(find<QLineEdit>(*dialog, "txtDelimiters")->isEnabled(), hasCustom);
      for (const QCheckBox* const box : dialog->findChildren<QCheckBox*>()) {
        const bool isOn = hasLines || box->objectName() == u"chkOpenFile";
        EXPECT_TRUE(box->isEnabled() == isOn && box->isChecked() == isOn) << int(format);
      }
    }
  }
}

TEST_F(SaveDialogTest, TheQuestionForAFileBeginsWhereTheLastReportWent) {
  rememberFolder(u"weekly");
  const auto dialog = open(ReportFormat::XLSX);
  FileQuestion asked;
  dialog->setChooseFile([&](QWidget*, const FileQuestion& question) {
    asked = question;
    return QString();
  });
  press(*dialog, "OKButton");
  EXPECT_EQ((QStringList{asked.folder, asked.name, asked.filter, asked.extension}),
            (QStringList{toQString(out.text()), u"weekly.xlsx"_s, u"XLSX (*.xlsx)"_s, u"xlsx"_s}));
  EXPECT_TRUE(dialog->isVisible()) << "no file was chosen";
  // The ending that a person types chooses the format.
  dialog->setChooseFile(
      [&](QWidget*, const FileQuestion&) { return toQString(out.text("t.xml")); });
  press(*dialog, "OKButton");
  EXPECT_TRUE(contents(toQString(out.text("t.xml"))).contains(u"<list>"_s));
}

TEST_F(SaveDialogTest, AWriteProtectedReportIsReplacedOnlyAfterAQuestion) {
  out.write("named.xml", "old");
  out.chmod("named.xml", 0444);
  for (const auto answer : {QMessageBox::No, QMessageBox::Yes}) {
    const auto dialog = open(ReportFormat::XML);
    dialog->setChooseFile(
        [&](QWidget*, const FileQuestion&) { return toQString(out.text("named.xml")); });
    Answer question(answer);
    press(*dialog, "OKButton");
    EXPECT_TRUE(question.text.contains(u"named.xml"_s));
    EXPECT_EQ(dialog->isVisible(), answer == QMessageBox::No) << "nothing else is said";
    EXPECT_EQ(readFile(out.path("named.xml")) == "old", answer == QMessageBox::No);
  }
  EXPECT_EQ(out.modeOf("named.xml"), 0444U);
}

/// Types a name into the desktop's dialog.
void type(const char* name, bool isReadOnly) {
  auto* const files = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
  ASSERT_NE(files, nullptr);
  EXPECT_EQ(files->testOption(QFileDialog::ReadOnly), isReadOnly);
  files->selectFile(QString::fromLatin1(name));
  QMetaObject::invokeMethod(files, "accept");
}

TEST_F(SaveDialogTest, TheDesktopsDialogAddsTheEndingAndAsksBeforeItReplaces) {
  rememberFolder();
  out.file("named.xml");
  for (const bool isReadOnly : {false, true}) {
    const auto dialog = make(options, settings);
    if (isReadOnly) dialog->setReadOnly();
    choose(*dialog, ReportFormat::XML);
    Answer question(QMessageBox::No);
    QTimer::singleShot(0, dialog.get(), [&] {
      type("named", isReadOnly);
      EXPECT_TRUE(question.text.contains(u"named.xml"_s));
      type(isReadOnly ? "third" : "other", isReadOnly);
    });
    press(*dialog, "OKButton");
    EXPECT_EQ(dialog->target(), out.text(isReadOnly ? "third.xml" : "other.xml"));
    EXPECT_TRUE(readFile(out.path("named.xml")).empty()) << "it was not to be replaced";
    EXPECT_TRUE(contents(toQString(dialog->target())).contains(u"<list>"_s));
  }
}

TEST_F(SaveDialogTest, ASaveThatIsEndedLeavesAWholeFile) {
  constexpr int kRows = 400'000;  // a number of rows for which a save takes time on every machine
  for (int i = 0; i < kRows; ++i)
    add(root, u"folder" + ombrelian::toText(i), i);
  options.FolderColumnVisible.fill(1);
  report.applySettings();
  const QString ends[] = {u"\r\n"_s, u"\r\n"_s, u"</html>\r\n"_s, u"</list>\r\n"_s,
                          u"</worksheet>"_s};
  for (const ReportFormat format : kFormats) {
    const auto dialog = open(format);
    radio(*dialog, 2)->click();
    bool wasSaving = false;
    QTimer::singleShot(40, dialog.get(), [&] {
      wasSaving = dialog->isSaving();
      EXPECT_FALSE(find<QComboBox>(*dialog, "cboFormat")->isEnabled());
      EXPECT_FALSE(find<QPushButton>(*dialog, "OKButton")->isEnabled());
      EXPECT_TRUE(find<QPushButton>(*dialog, "CancelButton")->isEnabled());
      if (format == ReportFormat::CSV)
        EXPECT_FALSE(dialog->close()) << "closing ends the save, and no more";
      else
        press(*dialog, "CancelButton");
      EXPECT_TRUE(dialog->isVisible());
    });
    press(*dialog, "OKButton");
    EXPECT_TRUE(wasSaving) << int(format);
    EXPECT_TRUE(dialog->wasCancelled());
    EXPECT_FALSE(dialog->isVisible());
    const QString written = contents(pathIn(out, format));
    EXPECT_TRUE(written.endsWith(ends[int(format)])) << int(format);
    EXPECT_FALSE(written.contains(u"folder%1"_s.arg(kRows - 1))) << int(format);
  }
}

TEST_F(SaveDialogTest, EventsAreHandledWhileTheEndOfASaveIsSlow) {
  std::promise<void> turned;
  bool wasSlow = false;
  SaveDialog dialog(
      folderSaveChoices(options), true,
      [&](ReportFormat, const Text&, UserInterface& user) -> Failure {
        QTimer::singleShot(0, qApp, [&] {
          EXPECT_FALSE(dialog.close()) << "the file is not yet complete";
          EXPECT_TRUE(dialog.isVisible());
          turned.set_value();
        });
        user.runAside([&] {  // ends only if the timer below runs, which the window's thread does
          wasSlow =
              turned.get_future().wait_for(std::chrono::seconds(60)) == std::future_status::ready;
        });
        EXPECT_THROW(user.runAside([] { throw std::runtime_error("why"); }), std::runtime_error);
        return {};
      },
      settings);
  dialog.show();
  choose(dialog, ReportFormat::CSV, pathIn(out, ReportFormat::CSV));
  press(dialog, "OKButton");
  EXPECT_TRUE(wasSlow);
  EXPECT_FALSE(dialog.wasCancelled()) << "it came too late";
  EXPECT_FALSE(dialog.isVisible());
}

TEST_F(SaveDialogTest, AFolderWhoseNameIsNoTextCanBeChosen) {
  out.folder("\xFF");
  const auto dialog = open(ReportFormat::CSV);
  choose(*dialog, ReportFormat::CSV, toQString(out.text()) + u"/\uFFFD/r.csv"_s);
  press(*dialog, "OKButton");
  EXPECT_EQ(dialog->target(), out.text("\xFF/r.csv"));
  EXPECT_EQ(namesIn(out.path("\xFF")), std::vector<std::string>{"r.csv"});
}

TEST_F(SaveDialogTest, AnExceptionOfASaveIsReportedAndTheDialogStaysUsable) {
  SaveDialog dialog(
      listSaveChoices(options), false,
      [](ReportFormat, const Text&, UserInterface&) -> Failure { throw std::bad_alloc(); },
      settings);
  dialog.show();
  choose(dialog, ReportFormat::CSV, pathIn(out, ReportFormat::CSV));
  Answer message(QMessageBox::Ok);
  press(dialog, "OKButton");
  EXPECT_TRUE(message.text.contains(u"report.csv"_s)) << qPrintable(message.text);
  EXPECT_TRUE(dialog.isVisible() && !dialog.isSaving() && dialog.target().empty());
}

TEST_F(SaveDialogTest, AfterAFailureAnotherNameCanBeChosenAndAFileThatNobodyOpensIsReported) {
  const auto dialog = open(ReportFormat::HTML);
  const QString impossible = u"/proc/none/report.html"_s;
  Answer message(QMessageBox::Ok);
  choose(*dialog, ReportFormat::HTML, impossible);
  press(*dialog, "OKButton");
  EXPECT_TRUE(message.text.contains(impossible)) << qPrintable(message.text);
  EXPECT_TRUE(dialog->isVisible());
  EXPECT_TRUE(find<QComboBox>(*dialog, "cboFormat")->isEnabled());
  EXPECT_TRUE(dialog->target().empty());

  QObject nobody;
  QDesktopServices::setUrlHandler(u"file"_s, &nobody, "open");
  find<QCheckBox>(*dialog, "chkOpenFile")->setChecked(true);
  choose(*dialog, ReportFormat::HTML, pathIn(out, ReportFormat::HTML));
  press(*dialog, "OKButton");
  QDesktopServices::unsetUrlHandler(u"file"_s);
  EXPECT_TRUE(message.text.contains(pathIn(out, ReportFormat::HTML)));
  EXPECT_FALSE(dialog->isVisible());
  EXPECT_TRUE(contents(pathIn(out, ReportFormat::HTML)).contains(u"/tree"_s));
}

TEST_F(SaveDialogTest, EveryControlHasALetterOfItsOwn) {
  const auto dialog = open(ReportFormat::HTML);
  QStringList texts;
  for (const QAbstractButton* const button : dialog->findChildren<QAbstractButton*>())
    texts << button->text();
  for (const QLabel* const label : dialog->findChildren<QLabel*>())
    if (label->buddy() != nullptr) texts << label->text();
  QSet<QKeySequence> letters;
  for (const QString& text : texts)
    letters.insert(QKeySequence::mnemonic(text));
  EXPECT_EQ(texts.size(), 12);
  EXPECT_EQ(letters.size(), 12);
  EXPECT_FALSE(letters.contains(QKeySequence()));
}

}  // namespace
}  // namespace ombrelian::ui
