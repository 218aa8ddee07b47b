#include "ui/ProgressStrip.h"

#include <QEvent>
#include <QHBoxLayout>

#include "format/DatePattern.h"
#include "format/Sizes.h"
#include "support/Translate.h"
#include "ui/QtText.h"

namespace ombrelian::ui {

ProgressStrip::ProgressStrip(QWidget& place)
    : QWidget(&place),
      bar_(new QProgressBar(this)),
      counts_(new QLabel(this)),
      path_(new QLabel(this)) {
  auto* const layout = new QHBoxLayout(this);
  layout->setContentsMargins(10, 0, 10, 0);
  layout->setSpacing(14);
  bar_->setTextVisible(false);
  bar_->setFixedWidth(120);
  bar_->setAccessibleName(toQString(TL(3839, u"Bearbeite :")));
  layout->addWidget(bar_);
  layout->addWidget(counts_);
  path_->setForegroundRole(QPalette::PlaceholderText);
  path_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  path_->setTextFormat(Qt::PlainText);
  layout->addWidget(path_, 1);
  setAutoFillBackground(true);
  place.installEventFilter(this);
  hide();
}

void ProgressStrip::begin() {
  timer_.start();
  bar_->setRange(0, 0);
  show({}, 0, 0, 0);
  setGeometry(parentWidget()->rect());
  raise();
  QWidget::show();
}

void ProgressStrip::show(TextView folder, std::int64_t files, std::int64_t folders,
                         std::int64_t bytes) {
  const auto count = [](std::int64_t number) { return xFormatFileSize(0, number, false, false); };
  const Text seconds = formatTimeSpan(timer_.elapsed() / 1000);
  counts_->setText(toQString(TL(9549, u"%1 Dateien, %2 Ordner, %3 in %4",
                                {count(files), count(folders),
                                 xFormatFileSize(kUnitAutomatic, bytes, true, false), seconds})));
  folder_ = shownOnOneLine(folder);
  placePath();
}

void ProgressStrip::showDeletion(TextView path, std::uint64_t done, std::uint64_t all) {
  constexpr int kSteps = 1000;
  const auto count = [](std::uint64_t number) {
    return xFormatFileSize(0, std::int64_t(number), false, false);
  };
  bar_->setRange(0, all == 0 ? 0 : kSteps);
  if (all > 0) bar_->setValue(int(double(std::min(done, all)) / double(all) * kSteps));
  counts_->setText(toQString(all == 0
                                 ? TL(9663, u"Gezählt: %1", {count(done)})
                                 : TL(9664, u"Erledigt: %1 von %2", {count(done), count(all)})));
  folder_ = shownOnOneLine(path);
  placePath();
}

void ProgressStrip::showText(TextView text) {
  folder_ = toQString(text);
  placePath();
}

void ProgressStrip::placePath() {
  path_->setText(path_->fontMetrics().elidedText(folder_, Qt::ElideMiddle, path_->width()));
}

bool ProgressStrip::eventFilter(QObject* object, QEvent* event) {
  if (event->type() == QEvent::Resize) setGeometry(parentWidget()->rect());
  return QWidget::eventFilter(object, event);
}

void ProgressStrip::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  placePath();
}

}  // namespace ombrelian::ui
