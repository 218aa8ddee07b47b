// Sources and scans: from the source box to the rows of the lists.

#include <QApplication>
#include <QFileDialog>
#include <QHeaderView>
#include <QInputDialog>
#include <QMessageBox>

#include "fs/PathText.h"
#include "fs/z_Filesystem.h"
#include "platform/Time.h"
#include "support/Translate.h"
#include "ui/FolderRows.h"
#include "ui/MainWindow.h"
#include "ui/QtText.h"

namespace ombrelian::ui {
namespace {

/// How long input may wait, in milliseconds.
constexpr std::uint64_t kInputIntervalMs = 30;

}  // namespace

void MainWindow::StartSearchViaToolbar() {
  session_.context.ScanCancelState = kScanIdle;
  session_.SourceQueue.clear();
  const Text path = toText(SourceCombo_->currentText());
  if (path.empty() || isScanning()) return;
  if (SourceCombo_->findText(toQString(path), Qt::MatchExactly) < 0) AddNewSearchPath(false, path);
  session_.SourceQueue.push_back(path);
  Ordnerliste_Abarbeiten();
}

void MainWindow::AddNewSearchPath(bool browse, const Text& path) {
  Text chosen = path;
  if (browse) {
    const QString start =
        SourceCombo_->currentText().isEmpty() ? QStringLiteral("/") : SourceCombo_->currentText();
    const QString picked =
        QFileDialog::getExistingDirectory(this, toQString(TL(9121, u"Quelle hinzufügen")), start,
                                          QFileDialog::ShowDirsOnly | QFileDialog::ReadOnly);
    if (picked.isEmpty()) return;
    chosen = toText(picked);
  }
  selectSource(chosen);
}

/// Selects the path in the source box, where it is added if it is new.
void MainWindow::selectSource(const Text& path) {
  const QString text = toQString(xRemoveBackslash(path));
  int at = SourceCombo_->findText(text, Qt::MatchExactly);
  if (at < 0) {
    SourceCombo_->addItem(text);
    at = SourceCombo_->count() - 1;
  }
  SourceCombo_->setCurrentIndex(at);
  SourceCombo_->setEditText(text);
}

/// Drives stay.
void MainWindow::Quelle_Entfernen() {
  const int at = SourceCombo_->findText(SourceCombo_->currentText(), Qt::MatchExactly);
  if (at < 0 || platform::IsDriveRoot(toText(SourceCombo_->itemText(at)))) return;
  SourceCombo_->removeItem(at);
  SourceCombo_->setCurrentIndex(std::max(0, at - 1));
  SourceCombo_->setEditText(SourceCombo_->currentText());
}

void MainWindow::scan(const std::deque<Text>& sources) {
  if (sources.empty() || isScanning()) return;
  session_.SourceQueue = sources;
  for (const Text& source : sources) {
    if (xExistFolder_W(source)) selectSource(source);
  }
  Ordnerliste_Abarbeiten();
}

void MainWindow::Ordnerliste_Abarbeiten() {
  if (!isLeftVisible_) execute(std::nullopt, 390);
  // A run that was given one source fills the lists anew; while it does, no view may read them.
  const bool fillsLists = session_.SourceQueue.size() == 1;
  if (fillsLists) {
    for (const ListId view : kDerivedLists)
      pane(view).setFrozen(true);
  }
  const Text single = fillsLists ? session_.SourceQueue.front() : Text();
  ScanRun run(session_.scanState(*this, &lists_));
  const RunResult result = run.Ordnerliste_Abarbeiten(session_.SourceQueue);
  ListPane& folders = pane(ListId::Folders);
  folders.model().replace([&] {
    if (result.lastRoot != kNoNode) session_.folderReport.setExpanded(result.lastRoot, true);
    folderRows_->treeChanged();
  });
  if (fillsLists) {
    for (const ListId view : kDerivedLists)
      pane(view).setFrozen(false);
  }
  folders.rowsReplaced();
  if (result.lastRoot != kNoNode) folders.selectRow(result.lastRoot);
  if (!single.empty()) showFiles(true);
  readDrivesOnce();
  pane(rightView()).list().fitColumns();
  Report_Resize_Width();
  StatusbarSetTextRightAUTO();
  if (result.sourcesScanned == 0 && result.sourcesMissing > 0 && !session_.log.rows().empty())
    message(session_.log.rows().back().text, Severity::Warning);
}

void MainWindow::setBusy(bool busy) {
  for (ListPane* const pane : panes_) {
    pane->list().setEnabled(!busy);
    pane->commands().setBusy(busy);
  }
  commands_->setBusy(busy, {463, 464});
  commands_->action(464)->setEnabled(busy);
  header_->setBusy(busy);
  SourceCombo_->setEnabled(!busy);
  progress_->setVisible(busy);
}

void MainWindow::scanBegins() {
  setCursor(Qt::BusyCursor);
  setBusy(true);
  progress_->begin();
  yield();
}

void MainWindow::scanEnds() {
  setBusy(false);
  progress_->end();
  unsetCursor();
  if (lastFocused_ == ListId::Folders) pane(ListId::Folders).list().setFocus();
}

void MainWindow::scanProgress(TextView folder, std::int64_t files, std::int64_t folders,
                              std::int64_t bytes) {
  progress_->show(folder, files, folders, bytes);
}

/// Serves what waits; nothing that would begin something new gets through while a scan runs.
void MainWindow::yield() {
  QApplication::processEvents();
  lastYield_ = platform::GetTickCount();
}

/// Qt cannot be asked whether input waits, so it is served at short intervals.
bool MainWindow::GetInputState() {
  return platform::GetTickCount() - lastYield_ >= kInputIntervalMs;
}

void MainWindow::saveProgress(std::uint64_t, std::uint64_t) {}

void MainWindow::message(TextView text, Severity severity) {
  QMessageBox box(this);
  box.setWindowTitle(QStringLiteral("Ombrelian"));
  box.setIcon(severity == Severity::Information ? QMessageBox::Information
              : severity == Severity::Warning   ? QMessageBox::Warning
                                                : QMessageBox::Critical);
  box.setTextFormat(Qt::PlainText);
  QStringList lines;
  for (const QString& line : toQString(text).split(u'\n'))
    lines.append(shownInMessage(toTextView(line)));
  box.setText(lines.join(u'\n'));
  box.exec();
}

bool MainWindow::ask(TextView question) {
  return QMessageBox::question(this, QStringLiteral("Ombrelian"), toQString(question)) ==
         QMessageBox::Yes;
}

bool MainWindow::confirm(TextView question, const std::vector<Text>& details) {
  QMessageBox box(QMessageBox::Question, QStringLiteral("Ombrelian"), shownInMessage(question),
                  QMessageBox::Yes | QMessageBox::No, this);
  box.setTextFormat(Qt::PlainText);
  QStringList lines;
  for (const Text& line : details)
    lines.append(shownInMessage(line));
  box.setInformativeText(lines.join(u'\n'));
  box.setDefaultButton(QMessageBox::No);
  box.setEscapeButton(QMessageBox::No);
  return box.exec() == QMessageBox::Yes;
}

void MainWindow::deletionProgress(TextView path, std::uint64_t done, std::uint64_t all) {
  progress_->showDeletion(path, done, all);
}

void MainWindow::logged(const LogRow&) {
  ListPane& log = pane(ListId::Log);
  log.model().insertRowsAt(logRows_->count(), 1, [&] { logRows_->takeUpNewRows(); });
  if (rightView() == ListId::Log) log.list().scrollToBottom();
  log.setEmptyText(toQString(TL(9554, u"Das Protokoll ist leer.")));
}

void MainWindow::readDrives() {
  ListPane& pane = this->pane(ListId::Drives);
  setCursor(Qt::BusyCursor);
  pane.setFrozen(true);
  drives_.Drives_GetAllDrives(settings_,
                              [this](TextView text) { statusRight_->setText(toQString(text)); });
  pane.setFrozen(false);
  unsetCursor();
}

/// Where the drives are on show and were not read yet; a scan goes first.
void MainWindow::readDrivesOnce() {
  if (!isScanning() && session_.options.DiskinfoVisible == 1 && drives_.readAt() == 0) readDrives();
}

void MainWindow::Drives_ScanDrives(bool all) {
  std::deque<Text> sources;
  if (all) {
    for (std::size_t row = 0; row < driveRows_->count(); ++row)
      sources.push_back(driveRows_->path(row));
  } else {
    for (const Text& path : pane(ListId::Drives).selectedPaths())
      sources.push_back(path);
  }
  scan(sources);
}

void MainWindow::addNetworkPath() {
  bool isChosen = false;
  const QString path = QInputDialog::getText(
      this, QStringLiteral("Ombrelian"), toQString(TL(9052, u"Bitte den Netzwerkpfad eingeben:")),
      QLineEdit::Normal, QStringLiteral("//"), &isChosen);
  if (!isChosen || path.isEmpty()) return;
  ListPane& pane = this->pane(ListId::Drives);
  pane.setFrozen(true);
  const bool isAdded = drives_.Drives_AddUNCpath(toTextView(path), settings_);
  pane.setFrozen(false);
  if (!isAdded) {
    message(TL(9555,
               u"'%1' ist kein Netzwerkpfad. Er muss wie //Server/Freigabe oder "
               u"Server:/Pfad aussehen.",
               {toTextView(path)}),
            Severity::Warning);
  }
}

}  // namespace ombrelian::ui
