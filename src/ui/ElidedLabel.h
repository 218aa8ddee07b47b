#pragma once

#include <QLabel>

namespace ombrelian::ui {

/// A label that takes the room that is left and shows as much of its text as fits, with the end of
/// a path rather than its middle. The tool tip has the whole text.
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
