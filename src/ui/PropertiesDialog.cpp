#include "ui/PropertiesDialog.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "support/Translate.h"
#include "ui/QtText.h"

namespace ombrelian::ui {
namespace {

constexpr int kTextWidth = 420;  // pixels; longer values can be scrolled

}  // namespace

PropertiesDialog::PropertiesDialog(const std::vector<std::pair<Text, Text>>& rows, QWidget* parent)
    : QDialog(parent) {
  setWindowTitle(toQString(TL(9512, u"Eigenschaften")));
  auto* const form = new QFormLayout;
  form->setHorizontalSpacing(18);
  form->setVerticalSpacing(7);
  for (const auto& [caption, value] : rows) {
    auto* const field = new QLineEdit(shownOnOneLine(value), this);
    field->setReadOnly(true);
    field->setFrame(false);
    field->setCursorPosition(0);
    field->setMinimumWidth(kTextWidth);
    field->setAccessibleName(toQString(caption));
    form->addRow(toQString(caption) + u':', field);
  }
  auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(18, 16, 18, 14);
  layout->setSpacing(16);
  layout->addLayout(form);
  layout->addWidget(buttons);
  buttons->button(QDialogButtonBox::Close)->setFocus();
}

}  // namespace ombrelian::ui
