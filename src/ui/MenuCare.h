#pragma once

#include <QMenu>

namespace ombrelian::ui {

/// Looks after all menus of the program: an opened menu has access letters, and a closed one leaves
/// no control behind that is painted as hovered.
class MenuCare : public QObject {
  Q_OBJECT

 public:
  using QObject::QObject;

 protected:
  bool eventFilter(QObject* object, QEvent* event) override;
};

}  // namespace ombrelian::ui
