// Times the window with very many folders and files, and prints one figure on each line, in
// milliseconds. Arguments: the number of folders (1000000), and a folder to scan instead.

#include <QApplication>
#include <QElapsedTimer>
#include <QScrollBar>
#include <QTimer>
#include <cstdio>
#include <random>

#include "frame/StartUp.h"
#include "tests/testing/TestFolder.h"
#include "ui/FolderRows.h"
#include "ui/MainWindow.h"
#include "ui/Panes.h"
#include "ui/QtText.h"
#include "ui/ScanControl.h"
#include "ui/WindowRun.h"

namespace {

using namespace ombrelian;
using namespace ombrelian::ui;

void grow(FolderTree& tree, int folders) {
  std::mt19937 random(1);
  std::vector<NodeIndex> nodes = {tree.addRoot(u"/made up")};
  while (int(nodes.size()) < folders) {
    const NodeIndex parent = nodes[random() % nodes.size()];
    const Text name = u"folder " + ombrelian::toText(std::int64_t(random() % 100'000));
    nodes.push_back(tree.addChild(parent, name, true));
    FolderNode& node = tree[nodes.back()];
    node.size = std::int64_t(random());
    node.files = std::int32_t(random() % 1000);
    node.dateModified = FileTime(132'000'000'000'000'000 + std::int64_t(random()) * 1000);
    node.attributes = 0x10U + std::uint32_t(random() % 3);
  }
}

template <class Action>
void measure(const char* what, Action action) {
  QElapsedTimer timer;
  timer.start();
  action();
  std::printf("%-40s %8.1f\n", what, double(timer.nsecsElapsed()) / 1e6);
  std::fflush(stdout);
}

/// The longest time between two turns of the event loop while `action` runs.
template <class Action>
void measureGap(const char* what, Action action) {
  QElapsedTimer last;
  qint64 longest = 0;
  QTimer timer;
  QObject::connect(&timer, &QTimer::timeout, [&] {
    longest = std::max(longest, last.nsecsElapsed());
    last.restart();
  });
  timer.start(0);
  last.start();
  measure(what, action);
  longest = std::max(longest, last.nsecsElapsed());
  std::printf("%-40s %8.1f\n", "  longest gap", double(longest) / 1e6);
}

void measureTree(MainWindow& window, Session& session, int folders) {
  grow(session.tree, folders);
  ListPane& pane = window.pane(ListId::Folders);
  auto& rows = static_cast<FolderRows&>(pane.rows());
  measure("open", [&] {
    pane.model().replace([&] { rows.treeChanged(); });
    pane.rowsReplaced();
    QApplication::processEvents();
  });
  measure("expand all", [&] {
    window.execute(ListId::Folders, CommandId::ExpandAll);
    QApplication::processEvents();
  });
  std::printf("%-40s %8d\n", "rows", pane.model().rowCount());
  for (int section = 1; section < pane.model().columnCount(); ++section) {
    const QString title =
        QStringLiteral("sort by ") +
        pane.model().headerData(section, Qt::Horizontal, Qt::DisplayRole).toString();
    measure(qPrintable(title), [&] { pane.list().sortByColumn(section); });
  }
  measure("100 pages down, painted", [&] {
    QScrollBar* const bar = pane.list().verticalScrollBar();
    for (int page = 0; page < 100; ++page) {
      bar->setValue(int(std::int64_t(bar->maximum()) * page / 100));
      pane.list().viewport()->repaint();
    }
  });
  measure("collapse and expand a source", [&] {
    Q_EMIT pane.list().expandWanted(0, false);
    Q_EMIT pane.list().expandWanted(0, true);
    QApplication::processEvents();
  });
  measure("select all", [&] { pane.list().selectAll(); });
}

}  // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  const testing::TestFolder data;
  qputenv("XDG_CONFIG_HOME", data.path().c_str());
  dressApplication(7);
  StartUp startUp({}, {}, 7);
  Session session;
  session.loadOptions(startUp.settings());
  MainWindow window(session, startUp.settings());
  window.resize(1280, 800);
  window.show();
  if (argc > 2) {
    measureGap("scan in the window", [&] { window.parts().scans.scan({fromBytes(argv[2])}); });
  } else {
    measureTree(window, session, argc > 1 ? std::atoi(argv[1]) : 1'000'000);
  }
  return 0;
}
