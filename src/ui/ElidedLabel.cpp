#include "ui/ElidedLabel.h"
#include "ui/Messages.h"

namespace ombrelian::ui {
namespace {

constexpr int kLeastWidth = 40;
constexpr int kWantedWidth = 160;

}  // namespace

ElidedLabel::ElidedLabel(QWidget* parent) : QLabel(parent) {
  setTextFormat(Qt::PlainText);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
}

void ElidedLabel::setFullText(const QString& text) {
  full_ = text;
  setToolTip(plainToolTip(text));
  setAccessibleName(text);
  elide();
}

QSize ElidedLabel::sizeHint() const { return {kWantedWidth, QLabel::sizeHint().height()}; }

QSize ElidedLabel::minimumSizeHint() const {
  return {kLeastWidth, QLabel::minimumSizeHint().height()};
}

void ElidedLabel::resizeEvent(QResizeEvent* event) {
  QLabel::resizeEvent(event);
  elide();
}

void ElidedLabel::elide() {
  setText(fontMetrics().elidedText(full_, Qt::ElideLeft, contentsRect().width()));
}

}  // namespace ombrelian::ui
