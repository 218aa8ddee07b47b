#pragma once

#include <QWidget>

namespace ombrelian::ui {

/// Underlines one letter of each button and of each label that stands for a control, a different
/// one each as far as the letters go, so that the keyboard reaches them in any language without a
/// translator having to choose. Texts that have a mnemonic keep it.
void giveMnemonics(QWidget& window);

}  // namespace ombrelian::ui
