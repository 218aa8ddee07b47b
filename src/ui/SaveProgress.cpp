#include "ui/SaveProgress.h"

#include <QApplication>
#include <QEventLoop>
#include <QVBoxLayout>
#include <algorithm>

#include "format/Sizes.h"
#include "platform/Time.h"
#include "support/Translate.h"
#include "ui/Messages.h"
#include "ui/QtText.h"

namespace ombrelian::ui {
namespace {

/// The longest time that input may wait, in milliseconds.
constexpr std::uint64_t kInputIntervalMs = 30;

/// How long one call on the file system of the target may take after the user cancelled the save.
constexpr std::chrono::milliseconds kAfterCancel(1000);

constexpr int kBarSteps = 1000;

/// The number of rows for which the text has room.
constexpr std::uint64_t kManyRows = 9'999'999;

QString rowText(std::uint64_t row, std::uint64_t rows) {
  return toQString(TL(9003, u"Speichere Zeile %1 von %2",
                      {xFormatFileSize(0, std::int64_t(row), false, false),
                       xFormatFileSize(0, std::int64_t(rows), false, false)}));
}

QString closingText() { return toQString(TL(9609, u"Der Bericht wird abgeschlossen...")); }

}  // namespace

SaveProgress::SaveProgress(QWidget* parent)
    : QWidget(parent), text_(new QLabel(this)), bar_(new QProgressBar(this)) {
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(4);
  layout->addWidget(text_);
  layout->addWidget(bar_);
  text_->setTextFormat(Qt::PlainText);
  text_->setMinimumWidth(fontMetrics().horizontalAdvance(rowText(kManyRows, kManyRows)));
  bar_->setTextVisible(false);
  bar_->setAccessibleName(toQString(TL(3612, u"Speichern")));
  QSizePolicy policy = sizePolicy();
  policy.setRetainSizeWhenHidden(true);
  setSizePolicy(policy);
  hide();
}

void SaveProgress::begin() {
  isCancelled_ = false;
  isHeeded_ = false;
  isDeclined_ = false;
  cutCells_ = 0;
  text_->setText(toQString(TL(9604, u"Der Bericht wird begonnen...")));
  bar_->setRange(0, 0);
  show();
  patience_.emplace([this](std::chrono::milliseconds waited) {
    yield();
    return keepsWaiting(waited);
  });
  yield();
}

void SaveProgress::end() {
  patience_.reset();
  hide();
}

/// A save may take as long as its file system needs, until the user cancels it.
bool SaveProgress::keepsWaiting(std::chrono::milliseconds waited) const {
  return !isCancelled_ || waited < kAfterCancel;
}

void SaveProgress::cancel() {
  isCancelled_ = true;
  text_->setText(closingText());
}

void SaveProgress::saveProgress(std::uint64_t row, std::uint64_t rows) {
  if (isCancelled_) return;
  const bool isClosing = row >= rows;
  bar_->setRange(0, isClosing ? 0 : kBarSteps);
  if (isClosing) return text_->setText(closingText());
  bar_->setValue(int(double(row) / double(rows) * kBarSteps));
  text_->setText(rowText(row, rows));
}

bool SaveProgress::mayReplaceProtected(TextView target) {
  const Text question = TL(
      9878, u"Der Bericht '%1' ist schreibgeschützt. Soll er trotzdem ersetzt werden?", {target});
  isDeclined_ = !askQuestion(window(), toQString(question), QMessageBox::No);
  return !isDeclined_;
}

bool SaveProgress::saveCancelled() {
  isHeeded_ |= isCancelled_;
  return isCancelled_;
}

void SaveProgress::yield() {
  QApplication::processEvents();
  lastYield_ = platform::GetTickCount();
}

void SaveProgress::runAside(const std::function<void()>& job) {
  bar_->setRange(0, 0);
  text_->setText(closingText());
  QEventLoop events;
  const auto patientJob = [this, &job] {
    const platform::Patience patience(
        [this](std::chrono::milliseconds waited) { return keepsWaiting(waited); });
    job();
  };
  std::future<void> result = worker_.add(
      patientJob, [&events] { QMetaObject::invokeMethod(&events, "quit", Qt::QueuedConnection); });
  events.exec();
  // If the end of the program ended the loop, nobody can cancel the save any more.
  if (result.wait_for(std::chrono::seconds(0)) != std::future_status::ready) cancel();
  result.get();
}

/// Qt cannot report whether input is waiting, so input is handled at short intervals.
bool SaveProgress::GetInputState() {
  return platform::GetTickCount() - lastYield_ >= kInputIntervalMs;
}

void SaveProgress::message(TextView text, Severity severity) {
  showMessage(window(), severity, toQString(text));
}

bool SaveProgress::ask(TextView question) { return askQuestion(window(), toQString(question)); }

}  // namespace ombrelian::ui
