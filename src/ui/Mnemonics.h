#pragma once

#include <QMenu>

namespace ombrelian::ui {

/// Underlines one letter of each button and of each label of a control, a different letter for each
/// of them as long as there are enough. The keyboard then reaches them in any language, and no
/// translator has to choose letters. Texts that already have a mnemonic keep it.
void giveMnemonics(QWidget& window);

/// The same for the entries of a menu. Letters that they had in another menu are replaced.
void giveMenuMnemonics(QMenu& menu);

}  // namespace ombrelian::ui
