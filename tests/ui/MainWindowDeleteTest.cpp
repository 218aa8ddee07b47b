// Deleting, rescanning and removing in the real window.

#include <unistd.h>

#include <QLabel>
#include <QStatusBar>

#include "tests/testing/ScopedVariable.h"
#include "tests/ui/WindowFixture.h"
#include "ui/QtText.h"

namespace ombrelian::ui {
namespace {

using testing::Answer;
using testing::namesIn;
using testing::Program;
using testing::TestFolder;

class MainWindowDeleteTest : public testing::WindowTest {
 protected:
  MainWindowDeleteTest() : run_(data_), bin_("XDG_DATA_HOME", data_.path()) {
    turnAllListsOn(run_.session.options);
    run_.window->parts().scans.scan({tree_.text()});
  }

  ListPane& folders() { return run_.window->pane(ListId::Folders); }

  void select(ListId view, const QStringList& names) {
    ListView& list = run_.window->pane(view).list();
    list.clearSelection();
    const QStringList rows = run_.column(view);
    for (const QString& name : names) {
      ASSERT_TRUE(rows.contains(name)) << name.toStdString();
      const QModelIndex index = list.model()->index(int(rows.indexOf(name)), 1);
      list.selectionModel()->setCurrentIndex(
          index, QItemSelectionModel::Select | QItemSelectionModel::Rows);
    }
  }

  QString files(const QString& folder) {
    const auto row = int(run_.column(ListId::Folders).indexOf(folder));
    return run_.cell(ListId::Folders, row, FolderColumnId::Files);
  }

  QString source() const { return QString::fromStdString(tree_.path()); }

  bool hasLogged(const QString& line) { return run_.column(ListId::Log, 2).contains(line); }

  Program run_;
  const testing::ScopedVariable bin_;
};

TEST_F(MainWindowDeleteTest, FoldersGoAfterAQuestionThatTellsWhatGoes) {
  select(ListId::Folders, {QStringLiteral("big"), QStringLiteral("link")});
  const QStringList before = run_.column(ListId::Folders);
  const qsizetype logged = run_.column(ListId::Log).size();
  {
    Answer no(QMessageBox::No);
    EXPECT_TRUE(run_.window->execute(ListId::Folders, CommandId::DeleteFolders));
    EXPECT_EQ(no.text, QStringLiteral("Sollen die ausgewählten Ordner wirklich gelöscht werden?"));
    EXPECT_EQ(no.defaultText.remove(u'&'), QStringLiteral("No"));
    const QString plain = no.details.remove(QChar(0x200B));
    EXPECT_TRUE(plain.contains(source() + QStringLiteral("/big"))) << plain.toStdString();
    EXPECT_TRUE(plain.contains(QStringLiteral("Dateien: 3, Ordner: 2"))) << plain.toStdString();
    EXPECT_TRUE(plain.contains(QStringLiteral("Verknüpfungen: 1")));
    EXPECT_TRUE(plain.contains(QStringLiteral("2 Namen von Hardlinks; 200")));
  }
  EXPECT_EQ(run_.column(ListId::Folders), before);
  EXPECT_EQ(run_.column(ListId::Log).size(), logged);
  Answer yes(QMessageBox::Yes);
  EXPECT_TRUE(run_.window->execute(ListId::Folders, CommandId::DeleteFolders));
  EXPECT_EQ(run_.column(ListId::Folders),
            (QStringList{source(), QStringLiteral("Dateien"), QStringLiteral("small")}));
  EXPECT_EQ(files(source()), QStringLiteral("3"));
  EXPECT_EQ(namesIn(tree_.path()).size(), 2U);
  EXPECT_TRUE(hasLogged(QStringLiteral("GELÖSCHT: ") + source() + QStringLiteral("/big/")));
  // What lists beside the tree show is the last run.
  EXPECT_EQ(run_.column(ListId::Hardlinks).size(), 2);
  // The keyboard goes on where the first of the rows was.
  EXPECT_TRUE(folders().list().selectionModel()->hasSelection());
}

TEST_F(MainWindowDeleteTest, AFolderInTheBinComesBackAndARescanFindsIt) {
  select(ListId::Folders, {QStringLiteral("small")});
  {
    Answer yes(QMessageBox::Yes);
    EXPECT_TRUE(run_.window->execute(ListId::Folders, CommandId::RecycleFolders));
    EXPECT_TRUE(yes.details.contains(QStringLiteral("Papierkorb")));
  }
  EXPECT_EQ(files(source()), QStringLiteral("4"));
  EXPECT_TRUE(hasLogged(QStringLiteral("PAPIERKORB: ") + source() + QStringLiteral("/small/")));
  ASSERT_EQ(rename(data_.path("Trash/files/small").c_str(), tree_.path("small").c_str()), 0);
  folders().list().goTo(0);
  EXPECT_TRUE(run_.window->execute(ListId::Folders, CommandId::Rescan));
  EXPECT_EQ(files(source()), QStringLiteral("6"));
  EXPECT_TRUE(run_.column(ListId::Folders).contains(QStringLiteral("small")));
  EXPECT_EQ(folders().list().currentRow(), 0U);
}

TEST_F(MainWindowDeleteTest, ARescanKeepsWhatIsOpenAndTheOrder) {
  run_.window->execute(ListId::Folders, CommandId::ExpandAll);
  folders().list().sortByColumn(FolderColumnId::Name);
  const QStringList before = run_.column(ListId::Folders);
  ASSERT_TRUE(before.contains(QStringLiteral("deep")));
  folders().list().goTo(0);
  EXPECT_TRUE(run_.window->execute(ListId::Folders, CommandId::Rescan));
  EXPECT_EQ(run_.column(ListId::Folders), before);
  // Of the row of direct files the folder above is read.
  tree_.file("new.txt", 7);
  select(ListId::Folders, {QStringLiteral("Dateien")});
  EXPECT_TRUE(run_.window->execute(ListId::Folders, CommandId::Rescan));
  EXPECT_EQ(files(source()), QStringLiteral("7"));
}

TEST_F(MainWindowDeleteTest, FilesOfTheShownFolderGoAndTheTreeFollows) {
  run_.window->execute(std::nullopt, CommandId::ShowFiles);
  select(ListId::Folders, {QStringLiteral("big")});
  ASSERT_EQ(run_.column(ListId::Files).size(), 3);
  select(ListId::Files, {QStringLiteral("a.bin"), QStringLiteral("b2.txt")});
  Answer yes(QMessageBox::Yes);
  EXPECT_TRUE(run_.window->execute(ListId::Files, CommandId::DeleteFiles));
  EXPECT_EQ(run_.column(ListId::Files), QStringList{QStringLiteral("b.txt")});
  EXPECT_EQ(files(QStringLiteral("big")), QStringLiteral("1"));
  EXPECT_EQ(files(source()), QStringLiteral("4"));
  EXPECT_EQ(run_.window->pane(ListId::Files).list().currentRow(), 0U);
}

TEST_F(MainWindowDeleteTest, FilesOfATopListGoAndTheTreeStays) {
  select(ListId::LargestFiles, {QStringLiteral("a.bin")});
  Answer yes(QMessageBox::Yes);
  EXPECT_TRUE(run_.window->execute(ListId::LargestFiles, CommandId::DeleteFiles));
  EXPECT_FALSE(run_.column(ListId::LargestFiles).contains(QStringLiteral("a.bin")));
  EXPECT_NE(access(tree_.path("big/a.bin").c_str(), F_OK), 0);
  EXPECT_EQ(files(source()), QStringLiteral("6"));
}

TEST_F(MainWindowDeleteTest, WhatChangedWhileTheQuestionStoodIsNotTouched) {
  const TestFolder outside;
  outside.file("precious");
  select(ListId::Folders, {QStringLiteral("big")});
  bool isTold = false;
  Answer yes(QMessageBox::Yes);
  yes.onShown = [&] {
    isTold = isTold || yes.text.contains(QStringLiteral("inzwischen etwas anderes"));
    if (rename(tree_.path("big").c_str(), tree_.path("moved").c_str()) == 0)
      tree_.symlink("big", outside.path());
  };
  EXPECT_TRUE(run_.window->execute(ListId::Folders, CommandId::DeleteFolders));
  EXPECT_TRUE(isTold);
  EXPECT_EQ(namesIn(outside.path()).size(), 1U);
  EXPECT_EQ(namesIn(tree_.path("moved")).size(), 3U);
  EXPECT_TRUE(run_.column(ListId::Folders).contains(QStringLiteral("big")));
  EXPECT_EQ(files(source()), QStringLiteral("6"));
}

TEST_F(MainWindowDeleteTest, ASourceIsTakenOffTheListAndStaysOnTheDisk) {
  run_.window->parts().scans.scan({tree_.text("small")});
  select(ListId::Folders, {QStringLiteral("big")});
  EXPECT_TRUE(run_.window->execute(ListId::Folders, CommandId::RemoveSourceRows));
  EXPECT_EQ(run_.column(ListId::Folders)[0], source() + QStringLiteral("/small"));
  EXPECT_FALSE(run_.column(ListId::Folders).contains(QStringLiteral("big")));
  EXPECT_EQ(namesIn(tree_.path()).size(), 4U);
  EXPECT_TRUE(run_.column(ListId::Files).isEmpty());
  folders().list().goTo(0);
  EXPECT_TRUE(run_.window->execute(ListId::Folders, CommandId::RemoveSourceRows));
  EXPECT_TRUE(run_.column(ListId::Folders).isEmpty());
  EXPECT_EQ(run_.session.tree.MaxFolderDepth(), 0U);
}

}  // namespace
}  // namespace ombrelian::ui
