// Deleting, rescanning and removing in the real window.

#include <unistd.h>

#include "tests/testing/ScopedVariable.h"
#include "tests/ui/WindowFixture.h"

namespace ombrelian::ui {
namespace {

using namespace Qt::StringLiterals;
using testing::Answer;
using testing::namesIn;

constexpr ListId kFolders = ListId::Folders;

class MainWindowDeleteTest : public testing::ScannedWindowTest {
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

  const testing::ScopedVariable bin_{"XDG_DATA_HOME", data_.path()};
};

TEST_F(MainWindowDeleteTest, FoldersGoAfterAQuestionThatTellsWhatGoes) {
  select(kFolders, {u"big"_s, u"link"_s});
  const QStringList before = folders();
  const qsizetype logged = run_.column(ListId::Log).size();
  {
    Answer no(QMessageBox::No);
    EXPECT_TRUE(run_.execute(kFolders, CommandId::DeleteFolders));
    EXPECT_EQ(no.text, u"Sollen die ausgewählten Ordner wirklich gelöscht werden?"_s);
    EXPECT_EQ(no.defaultText.remove(u'&'), u"No"_s);
    const QString plain = no.details.remove(QChar(0x200B));
    for (const QString& part : {path("big"), u"Dateien: 3, Ordner: 2"_s, u"Verknüpfungen: 1"_s,
                                u"2 Namen von Hardlinks; 200"_s})
      EXPECT_TRUE(plain.contains(part)) << plain.toStdString();
  }
  EXPECT_EQ(folders(), before);
  EXPECT_EQ(run_.column(ListId::Log).size(), logged);
  Answer yes(QMessageBox::Yes);
  EXPECT_TRUE(run_.execute(kFolders, CommandId::DeleteFolders));
  EXPECT_EQ(folders(), (QStringList{path(), u"Dateien"_s, u"small"_s}));
  EXPECT_EQ(files(path()), u"3"_s);
  EXPECT_EQ(namesIn(tree_.path()).size(), 2U);
  EXPECT_TRUE(hasLogged(u"GELÖSCHT: "_s + path("big/")));
  EXPECT_EQ(run_.column(ListId::Hardlinks).size(), 2) << "a list beside the tree is the last run";
  // The keyboard goes on where the first of the rows was.
  EXPECT_TRUE(run_.list(kFolders).selectionModel()->hasSelection());
}

TEST_F(MainWindowDeleteTest, AFolderInTheBinComesBackAndARescanFindsIt) {
  select(kFolders, {u"small"_s});
  {
    Answer yes(QMessageBox::Yes);
    EXPECT_TRUE(run_.execute(kFolders, CommandId::RecycleFolders));
    EXPECT_TRUE(yes.details.contains(u"Papierkorb"_s));
  }
  EXPECT_EQ(files(path()), u"4"_s);
  EXPECT_TRUE(hasLogged(u"PAPIERKORB: "_s + path("small/")));
  ASSERT_EQ(rename(data_.path("Trash/files/small").c_str(), tree_.path("small").c_str()), 0);
  run_.list(kFolders).goTo(0);
  EXPECT_TRUE(run_.execute(kFolders, CommandId::Rescan));
  EXPECT_EQ(files(path()), u"6"_s);
  EXPECT_TRUE(folders().contains(u"small"_s));
  EXPECT_EQ(run_.list(kFolders).currentRow(), 0U);
}

TEST_F(MainWindowDeleteTest, ARescanKeepsWhatIsOpenAndTheOrder) {
  run_.execute(kFolders, CommandId::ExpandAll);
  run_.list(kFolders).sortByColumn(FolderColumnId::Name);
  const QStringList before = folders();
  ASSERT_TRUE(before.contains(u"deep"_s));
  run_.list(kFolders).goTo(0);
  EXPECT_TRUE(run_.execute(kFolders, CommandId::Rescan));
  EXPECT_EQ(folders(), before);
  // Of the row of direct files the folder above is read.
  tree_.file("new.txt", 7);
  select(kFolders, {u"Dateien"_s});
  EXPECT_TRUE(run_.execute(kFolders, CommandId::Rescan));
  EXPECT_EQ(files(path()), u"7"_s);
}

TEST_F(MainWindowDeleteTest, FilesGoFromTheirListAndFromTheTreeOnlyIfItShowsTheirFolder) {
  select(ListId::LargestFiles, {u"needle.txt"_s});
  Answer yes(QMessageBox::Yes);
  EXPECT_TRUE(run_.execute(ListId::LargestFiles, CommandId::DeleteFiles));
  EXPECT_FALSE(run_.column(ListId::LargestFiles).contains(u"needle.txt"_s));
  EXPECT_NE(access(tree_.path("small/deep/needle.txt").c_str(), F_OK), 0);
  EXPECT_EQ(files(path()), u"6"_s);
  run_.execute(std::nullopt, CommandId::ShowFiles);
  select(kFolders, {u"big"_s});
  ASSERT_EQ(run_.column(ListId::Files).size(), 3);
  select(ListId::Files, {u"a.bin"_s, u"b2.txt"_s});
  EXPECT_TRUE(run_.execute(ListId::Files, CommandId::DeleteFiles));
  EXPECT_EQ(run_.column(ListId::Files), QStringList{u"b.txt"_s});
  EXPECT_EQ(files(u"big"_s), u"1"_s);
  EXPECT_EQ(files(path()), u"4"_s);
  EXPECT_EQ(run_.list(ListId::Files).currentRow(), 0U);
}

TEST_F(MainWindowDeleteTest, ASourceIsTakenOffTheListAndStaysOnTheDisk) {
  run_.scan({tree_.text("small")});
  select(kFolders, {u"big"_s});
  EXPECT_TRUE(run_.execute(kFolders, CommandId::RemoveSourceRows));
  EXPECT_EQ(folders()[0], path("small"));
  EXPECT_FALSE(folders().contains(u"big"_s));
  EXPECT_EQ(namesIn(tree_.path()).size(), 4U);
  EXPECT_TRUE(run_.column(ListId::Files).isEmpty());
  run_.list(kFolders).goTo(0);
  EXPECT_TRUE(run_.execute(kFolders, CommandId::RemoveSourceRows));
  EXPECT_TRUE(folders().isEmpty());
  EXPECT_EQ(run_.session.tree.MaxFolderDepth(), 0U);
}

}  // namespace
}  // namespace ombrelian::ui
