#pragma once

#include <QLabel>

namespace ombrelian::ui {

/// A label that uses the remaining space and shows as much of its text as fits. Of a path it shows
/// the end rather than the middle. The tool tip has the whole text.
class ElidedLabel : public QLabel {
  Q_OBJECT

 public:
  explicit ElidedLabel(QWidget* parent = nullptr);

  void setFullText(const QString& text);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  void elide();

  QString full_;
};

}  // namespace ombrelian::ui
