#pragma once

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAbstractItemModelTester>
#include <QApplication>
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

  QString cell(ListId view, int row, int section) {
    return window->pane(view).model().index(row, section).data().toString();
  }

  QStringList column(ListId view, int section = 1) {
    QStringList cells;
    for (int row = 0; row < window->pane(view).model().rowCount(); ++row)
      cells.append(cell(view, row, section));
    return cells;
  }

  std::unique_ptr<StartUp> startUp;
  Session session;
  std::unique_ptr<MainWindow> window;
  std::vector<std::unique_ptr<QAbstractItemModelTester>> testers;
};

/// Answers each message box with a button, or with its first button if it lacks that one, and keeps
/// the texts of the last box.
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

  const TestFolder data_;
  const TestFolder tree_;
};

}  // namespace ombrelian::testing
