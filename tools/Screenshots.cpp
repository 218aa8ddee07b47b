// Pictures of the window in its main states, over a fixed sample tree. See tools/screenshots.

#include <QApplication>
#include <QDir>
#include <QScreen>
#include <QTimer>
#include <cstdio>
#include <filesystem>
#include <functional>

#include "frame/StartUp.h"
#include "platform/Files.h"
#include "settings/z_Translate.h"
#include "support/Translate.h"
#include "tests/testing/TestFolder.h"
#include "ui/FaultDialog.h"
#include "ui/MainWindow.h"
#include "ui/Panes.h"
#include "ui/QtText.h"
#include "ui/ScanControl.h"
#include "ui/WindowRun.h"

namespace {

using namespace ombrelian;
using namespace ombrelian::ui;

void makeSample(const testing::TestFolder& folder) {
  struct Entry {
    const char* name;
    std::int64_t size;
  };
  constexpr std::int64_t kMega = 1 << 20;
  const Entry entries[] = {
      {"Photos/2024/Alps/DSC_0412.jpg", 9 * kMega + 1234},
      {"Photos/2024/Alps/DSC_0413.jpg", 8 * kMega + 777},
      {"Photos/2024/Alps/DSC_0414.raw", 31 * kMega},
      {"Photos/2024/Garden/IMG_1.jpg", 4 * kMega},
      {"Photos/2025/Lisbon/clip.mp4", 812 * kMega},
      {"Photos/2025/Lisbon/IMG_2201.heic", 3 * kMega},
      {"Photos/index.db", 45'056},
      {"Music/Quartet/01 Allegro.flac", 48 * kMega},
      {"Music/Quartet/02 Adagio.flac", 41 * kMega},
      {"Music/Radio/podcast.mp3", 66 * kMega},
      {"Projects/engine/build/engine.o", 120 * kMega},
      {"Projects/engine/build/libengine.a", 340 * kMega},
      {"Projects/engine/src/main.cpp", 18'233},
      {"Projects/engine/src/walker.cpp", 22'871},
      {"Projects/engine/README.md", 3'412},
      {"Projects/site/node_modules/left/index.js", 812},
      {"Projects/site/node_modules/right/index.js", 913},
      {"Projects/site/dist/bundle.js", 2 * kMega},
      {"Archive/backup-2023.tar.zst", 1'900 * kMega},
      {"Archive/backup-2024.tar.zst", 2'350 * kMega},
      {"Documents/thesis.pdf", 12 * kMega},
      {"Documents/letters/to the bank.odt", 31'000},
      {"Documents/letters/\xC3\x84rger mit \xC3\x9C"
       "berweisung.odt",
       29'500},
      {"notes.txt", 1'024},
      {"todo.txt", 311},
  };
  for (const Entry& entry : entries)
    folder.file(entry.name, entry.size);
  folder.hardlink("Archive/latest.tar.zst", "Archive/backup-2024.tar.zst");
  folder.symlink("Current", "Projects/engine");
  folder.folder("Empty/one");
}

void wait(int milliseconds) {
  QEventLoop loop;
  QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
  loop.exec();
}

class Photographer {
 public:
  Photographer(MainWindow& window, QString prefix) : window_(window), prefix_(std::move(prefix)) {}

  void take(const char* name, QWidget* of = nullptr) {
    wait(120);
    const QString file = prefix_ + QString::fromLatin1(name) + QStringLiteral(".png");
    (of != nullptr ? of : &window_)->grab().save(file);
    std::puts(qPrintable(file));
  }

 private:
  MainWindow& window_;
  const QString prefix_;
};

void takeAll(MainWindow& window, const Text& sample, Photographer& photographer) {
  photographer.take("1-empty");
  window.parts().scans.scan({sample});
  photographer.take("2-tree-and-drives");
  window.execute(std::nullopt, CommandId::ShowFiles);
  window.execute(ListId::Folders, CommandId::ExpandLevel1);
  window.pane(ListId::Folders).list().goTo(3);
  window.execute(ListId::Folders, CommandId::ExpandSubtree);
  window.pane(ListId::Folders).list().goTo(5);
  photographer.take("3-tree-and-files");
  const std::pair<CommandId, const char*> panes[] = {
      {CommandId::ShowTopLists, "4-top-list"},     {CommandId::ShowHardlinks, "5-hardlinks"},
      {CommandId::ShowJunctions, "6-junctions"},   {CommandId::ShowOwners, "7-owners"},
      {CommandId::ShowExtensions, "8-extensions"}, {CommandId::ShowLog, "9-log"}};
  for (const auto& [id, name] : panes) {
    window.execute(std::nullopt, id);
    photographer.take(name);
  }
  window.execute(ListId::Folders, CommandId::Search);
  photographer.take("10-search");
  QMenu* const menu = window.commands().menu(CommandId::ListMenu);
  menu->actions().at(1)->trigger();  // one option that is off
  menu->popup(window.mapToGlobal(QPoint(420, 70)));
  photographer.take("11-lists-menu", menu);
  menu->close();
  const auto takeDialog = [&](const char* name) {
    QTimer::singleShot(300, &window, [&photographer, name] {
      if (QWidget* const dialog = QApplication::activeModalWidget()) {
        photographer.take(name, dialog);
        dialog->close();
      }
    });
  };
  takeDialog("12-save-dialog");
  window.execute(ListId::Folders, CommandId::Save);
  takeDialog("15-options");
  window.execute(std::nullopt, CommandId::OptionsDialog);
  takeDialog("16-fault-report");
  FaultDialog(faultIntroduction(), u"Now: 2026-11-25 01:00:00\r\nApp: Ombrelian\r\nErr: 13\r\n",
              &window)
      .exec();
  // The question before folders are deleted is answered with no.
  ListView& list = window.pane(ListId::Folders).list();
  list.goTo(1);
  list.selectionModel()->select(list.model()->index(2, 1),
                                QItemSelectionModel::Select | QItemSelectionModel::Rows);
  QTimer::singleShot(300, &window, [&] {
    if (QWidget* const dialog = QApplication::activeModalWidget()) {
      photographer.take("13-delete-question", dialog);
      photographer.take("14-delete-counted");
      dialog->close();
    }
  });
  window.execute(ListId::Folders, CommandId::DeleteFolders);
}

}  // namespace

/// Arguments: the folder for the pictures, a prefix of their names, "light" or "dark", "de" or
/// "en".
int main(int argc, char** argv) {
  if (argc < 5) return 2;
  QApplication application(argc, argv);
  const testing::TestFolder data;
  qputenv("XDG_CONFIG_HOME", data.path().c_str());
  qputenv("XDG_DATA_HOME", data.path("share").c_str());
  Translation translation;
  translation.Init_Sprache({fromBytes(argv[0]).substr(0, fromBytes(argv[0]).rfind(u'/')),
                            QByteArray(argv[4]) == "de" ? kGerman : kEnglish, false});
  setLanguageTexts(&translation);
  dressApplication(translation.LanguageId());
  const testing::TestFolder sample;
  makeSample(sample);
  const std::filesystem::path shown = std::filesystem::temp_directory_path() / "Sample";
  std::filesystem::rename(sample.path(), shown);
  StartUp startUp({}, {}, translation.LanguageId());
  Session session;
  session.loadOptions(startUp.settings());
  session.chooseForFirstWindow(startUp.settings());
  session.options.ToolbarTheme = QByteArray(argv[3]) == "dark" ? 8 : 7;
  MainWindow window(session, startUp.settings());
  window.resize(1280, 800);
  window.show();
  QDir().mkpath(QString::fromLocal8Bit(argv[1]));
  Photographer photographer(
      window, QString::fromLocal8Bit(argv[1]) + u'/' + QString::fromLocal8Bit(argv[2]));
  takeAll(window, fromBytes(shown.string()), photographer);
  std::filesystem::rename(shown, sample.path());
  setLanguageTexts(nullptr);
  return 0;
}
