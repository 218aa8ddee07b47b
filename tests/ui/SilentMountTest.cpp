#include "tests/testing/SilentMount.h"

#include <sched.h>
#include <sys/mount.h>

#include <QComboBox>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include "tests/testing/SaveFixture.h"
#include "tests/ui/WindowFixture.h"
#include "ui/FilesOfFolder.h"
#include "ui/QtText.h"
#include "ui/SaveDialog.h"
#include "ui/ScanControl.h"

namespace ombrelian::testing {
namespace {

constexpr int kPressAfterMs = 300;

/// A window, and a mount that stops answering while the window works on it.
class SilentMountWindowTest : public WindowTest {
 protected:
  void SetUp() override {
    const bool isAllowed =
        unshare(CLONE_NEWNS) == 0 && mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
    if (isAllowed) mount_ = std::make_unique<SilentMount>(place_.path());
    if (!isAllowed || !mount_->isMounted()) GTEST_SKIP() << "this user may not mount";
  }

  /// Runs `work`, which hangs; Escape is pressed a moment later. Returns how often the event loop
  /// ran a timer of 10 ms meanwhile.
  template <class Work>
  static int ticksDuring(Program& run, Work work) {
    int ticks = 0;
    QTimer ticking;
    QObject::connect(&ticking, &QTimer::timeout, [&] { ++ticks; });
    ticking.start(10);
    QTimer::singleShot(kPressAfterMs, run.window.get(),
                       [&] { QTest::keyClick(run.window.get(), Qt::Key_Escape); });
    QElapsedTimer clock;
    clock.start();
    work();
    EXPECT_LT(clock.elapsed(), 10'000);
    return ticks;
  }

  const TestFolder place_;
  std::unique_ptr<SilentMount> mount_;
};

TEST_F(SilentMountWindowTest, EscapeEndsWhatHangsAndTheWindowStaysAlive) {
  Program run(data_);
  run.session.options.FilelistVisible = 1;
  mount_->silence(FUSE_READDIR, SilentMount::kB);
  EXPECT_GE(ticksDuring(run, [&] { run.scan({place_.text()}); }), 5);
  const FolderTree& tree = run.session.tree;
  EXPECT_TRUE(tree[tree.firstRoot()].has(FolderNode::IsIncomplete));
  mount_->answer();
  // The folder of the list of files hangs.
  ASSERT_TRUE(QTest::qWaitFor([&] {
    run.scan({place_.text()});
    return !tree[tree.firstRoot()].has(FolderNode::IsIncomplete);
  }));
  mount_->silence(FUSE_READDIR, SilentMount::kRoot);
  EXPECT_GE(ticksDuring(run, [&] { run.window->parts().files.showFiles(true); }), 5);
  const QList<QLabel*> labels = run.pane(ListId::Files).findChildren<QLabel*>();
  EXPECT_TRUE(std::any_of(labels.begin(), labels.end(), [](const QLabel* label) {
    return label->text() == QStringLiteral("Das Dateisystem antwortet nicht.");
  }));
  mount_->answer();
}

TEST_F(SilentMountWindowTest, CancelEndsASaveWhoseTargetStopsAnswering) {
  Program run(data_);
  run.scan({tree_.text()});
  for (const ReportFormat format : {ReportFormat::CSV, ReportFormat::XLSX}) {
    for (const std::uint32_t request : {FUSE_CREATE, FUSE_WRITE, FUSE_RENAME}) {
      mount_->silence(request, SilentMount::kAny);
      const Text target = place_.text(nameOf(format));
      QTimer::singleShot(0, run.window.get(), [&] {
        auto* const dialog = qobject_cast<SaveDialog*>(QApplication::activeModalWidget());
        ASSERT_NE(dialog, nullptr);
        dialog->findChild<QComboBox*>(QStringLiteral("cboFormat"))->setCurrentIndex(int(format));
        dialog->setChooseFile([&](QWidget*, const FileQuestion&) { return toQString(target); });
        QTimer::singleShot(kPressAfterMs, dialog, [dialog] {
          EXPECT_TRUE(dialog->isSaving());
          QTest::keyClick(dialog, Qt::Key_Escape);
        });
        Answer message(QMessageBox::Ok);
        QElapsedTimer clock;
        clock.start();
        dialog->findChild<QPushButton*>(QStringLiteral("OKButton"))->click();
        EXPECT_LT(clock.elapsed(), 5'000);
        EXPECT_TRUE(message.text.contains(toQString(target))) << message.text.toStdString();
        dialog->reject();
      });
      run.execute(ListId::Folders, CommandId::Save);
      mount_->answer();
      ASSERT_TRUE(QTest::qWaitFor(
          [&] { return platform::CheckFolderWritable(place_.text()) == platform::kSuccess; }));
    }
  }
}

TEST_F(SilentMountWindowTest, TheSourceFieldDoesNotWaitForEver) {
  Program run(data_);
  SourceBox& box = *run.window->findChild<SourceBox*>();
  mount_->silence(FUSE_LOOKUP, SilentMount::kA);
  const QString path = QString::fromStdString(place_.path("a"));
  EXPECT_GE(ticksDuring(run,
                        [&] {
                          QTest::keyClicks(box.lineEdit(), path + u'/');
                          box.setEditText(path);
                          run.window->parts().scans.startOrStop();
                        }),
            5);
  const FolderTree& tree = run.session.tree;
  ASSERT_NE(tree.firstRoot(), kNoNode);
  EXPECT_EQ(tree.errorText(tree.firstRoot()), u"Das Dateisystem antwortet nicht.");
  mount_->answer();
}

}  // namespace
}  // namespace ombrelian::testing
