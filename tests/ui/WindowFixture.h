#pragma once

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAbstractItemModelTester>
#include <QApplication>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>

#include "frame/StartUp.h"
#include "tests/testing/TestFolder.h"
#include "ui/DeleteCommands.h"
#include "ui/MainWindow.h"
#include "ui/PaneArea.h"

namespace ombrelian::testing {

using namespace ombrelian::ui;

/// The program after one start, with the settings in its data folder.
struct Program {
  explicit Program(const TestFolder& data, bool readOnly = false) {
    session.readOnly = readOnly;
    qputenv("XDG_CONFIG_HOME", data.path().c_str());
    startUp = std::make_unique<StartUp>(CommandLine(), Text(), 7);
    session.loadOptions(startUp->settings());
    window = std::make_unique<MainWindow>(session, startUp->settings());
    window->resize(1280, 800);
    window->show();
    for (const ListId list : kAllLists) {
      testers.push_back(std::make_unique<QAbstractItemModelTester>(
          &window->pane(list).model(), QAbstractItemModelTester::FailureReportingMode::Fatal));
    }
  }
  ~Program() {
    window->close();
    testers.clear();
  }

  ListPane& pane(ListId view) { return window->pane(view); }
  ListView& list(ListId view) { return pane(view).list(); }
  bool execute(std::optional<ListId> view, CommandId id) { return window->execute(view, id); }
  void scan(const std::deque<Text>& sources) { window->parts().scans.scan(sources); }

  QString cell(ListId view, int row, int section) {
    return pane(view).model().index(row, section).data().toString();
  }

  QStringList column(ListId view, int section = 1) {
    QStringList cells;
    for (int row = 0; row < pane(view).model().rowCount(); ++row)
      cells.append(cell(view, row, section));
    return cells;
  }

  std::unique_ptr<StartUp> startUp;
  Session session;
  std::unique_ptr<MainWindow> window;
  std::vector<std::unique_ptr<QAbstractItemModelTester>> testers;
};

/// Answers each message box with a button, or with its first button if that one is missing, and
/// records the texts of the last box.
class Answer {
 public:
  explicit Answer(QMessageBox::StandardButton button) {
    QObject::connect(&timer_, &QTimer::timeout, [this, button] {
      auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
      if (box == nullptr) return;
      text = box->text();
      details = box->informativeText();
      defaultText = box->defaultButton() == nullptr ? QString() : box->defaultButton()->text();
      if (onShown) onShown();
      QAbstractButton* const wanted = box->button(button);
      (wanted == nullptr ? box->buttons().constFirst() : wanted)->click();
    });
    timer_.start(10);
  }

  QString text;
  QString details;
  QString defaultText;            // text of the button that Enter presses
  std::function<void()> onShown;  // called before the button is pressed

 private:
  QTimer timer_;
};

/// A small tree to scan, and a data folder to start programs with.
class WindowTest : public ::testing::Test {
 protected:
  WindowTest() {
    tree_.file("big/a.bin", 3000);
    tree_.file("big/b.txt", 200);
    tree_.file("small/deep/c.txt", 10);
    tree_.file("small/deep/needle.txt", 5);
    tree_.file("top.txt", 100);
    tree_.hardlink("big/b2.txt", "big/b.txt");
    tree_.symlink("link", "big");
  }

  /// A path in the tree; without a name, the path of the tree.
  QString path(std::string_view name = {}) const {
    return QString::fromStdString(name.empty() ? tree_.path() : tree_.path(name));
  }

  const TestFolder data_;
  const TestFolder tree_;
};

/// A program that scanned the tree, with all lists on.
class ScannedWindowTest : public WindowTest {
 protected:
  ScannedWindowTest() {
    turnAllListsOn(run_.session.options);
    run_.scan({tree_.text()});
  }

  Program run_{data_};
};

/// Whether one of the labels in a widget shows the text.
inline bool hasLabel(const QWidget& widget, const QString& text) {
  const QList<QLabel*> labels = widget.findChildren<QLabel*>();
  return std::any_of(labels.begin(), labels.end(), [&](const QLabel* label) {
    return label->isVisible() && label->text() == text;
  });
}

}  // namespace ombrelian::testing
