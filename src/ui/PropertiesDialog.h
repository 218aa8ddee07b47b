#pragma once

#include <QDialog>
#include <utility>
#include <vector>

#include "support/Text.h"

namespace ombrelian::ui {

/// Shows the properties of an object as captions and values, which can be selected and copied.
class PropertiesDialog : public QDialog {
  Q_OBJECT

 public:
  PropertiesDialog(const std::vector<std::pair<Text, Text>>& rows, QWidget* parent);
};

}  // namespace ombrelian::ui
