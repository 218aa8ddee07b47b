#include "ui/WindowDialogs.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>

#include "platform/Time.h"
#include "support/Translate.h"
#include "ui/Messages.h"
#include "ui/Mnemonics.h"
#include "ui/QtText.h"

namespace ombrelian::ui {
namespace {

/// The longest time that input may wait, in milliseconds.
constexpr std::uint64_t kInputIntervalMs = 30;

QString shownLines(const QStringList& lines) {
  QStringList shown;
  for (const QString& line : lines)
    shown.append(shownInMessage(toTextView(line)));
  return shown.join(u'\n');
}

}  // namespace

WindowDialogs::WindowDialogs(QWidget& window, ProgressStrip& progress)
    : window_(window), progress_(progress) {}

void WindowDialogs::scanBegins() {
  window_.setCursor(Qt::BusyCursor);
  Q_EMIT busyChanged(true);
  progress_.begin();
  yield();
}

void WindowDialogs::scanEnds() {
  progress_.end();
  window_.unsetCursor();
  Q_EMIT busyChanged(false);
}

void WindowDialogs::scanProgress(TextView folder, std::int64_t files, std::int64_t folders,
                                 std::int64_t bytes) {
  progress_.show(folder, files, folders, bytes);
}

void WindowDialogs::scanPhase(TextView text) {
  progress_.showText(text);
  yield();
}

/// Handles waiting events. While a scan runs, input that would begin something new is blocked.
void WindowDialogs::yield() {
  QApplication::processEvents();
  lastYield_ = platform::GetTickCount();
}

/// Qt cannot report whether input is waiting, so input is handled at short intervals.
bool WindowDialogs::GetInputState() {
  return platform::GetTickCount() - lastYield_ >= kInputIntervalMs;
}

void WindowDialogs::message(TextView text, Severity severity) {
  showMessage(&window_, severity, shownLines(toQString(text).split(u'\n')));
}

bool WindowDialogs::ask(TextView question) {
  return askQuestion(&window_, toQString(question), QMessageBox::No);
}

bool WindowDialogs::confirm(TextView question, const std::vector<Text>& details, TextView verb) {
  QMessageBox box(QMessageBox::Question, toQString(verb), shownInMessage(question),
                  QMessageBox::Yes | QMessageBox::No, &window_);
  box.setTextFormat(Qt::PlainText);
  QStringList lines;
  for (const Text& line : details)
    lines.append(toQString(line));
  box.setInformativeText(shownLines(lines));
  box.button(QMessageBox::Yes)->setText(toQString(verb));
  box.button(QMessageBox::No)->setText(toQString(TL(9802, u"Behalten")));
  giveMnemonics(box);
  box.setDefaultButton(QMessageBox::No);
  box.setEscapeButton(QMessageBox::No);
  return box.exec() == QMessageBox::Yes;
}

void WindowDialogs::deletionProgress(TextView path, std::uint64_t done, std::uint64_t all) {
  progress_.showDeletion(path, done, all);
}

}  // namespace ombrelian::ui
