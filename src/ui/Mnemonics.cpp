#include "ui/Mnemonics.h"

#include <QAbstractButton>
#include <QLabel>
#include <QPushButton>
#include <QSet>
#include <functional>
#include <vector>

namespace ombrelian::ui {
namespace {

struct Caption {
  QString text;
  std::function<void(const QString&)> set;
};

template <class Control>
void addCaption(Control* control, std::vector<Caption>& captions) {
  captions.push_back({control->text(), [control](const QString& text) { control->setText(text); }});
}

/// The captions in the order in which they choose letters. Push buttons are first, so that they
/// have the same letters in every dialog.
std::vector<Caption> captionsOf(const QWidget& window) {
  std::vector<Caption> captions;
  for (QPushButton* const button : window.findChildren<QPushButton*>())
    addCaption(button, captions);
  for (QLabel* const label : window.findChildren<QLabel*>()) {
    if (label->buddy() != nullptr) addCaption(label, captions);
  }
  for (QAbstractButton* const button : window.findChildren<QAbstractButton*>()) {
    if (qobject_cast<QPushButton*>(button) == nullptr) addCaption(button, captions);
  }
  return captions;
}

/// The letter after the first single "&", or null if there is none.
QChar mnemonicOf(const QString& text) {
  for (qsizetype at = 0; at + 1 < text.size(); ++at) {
    if (text[at] != u'&') continue;
    if (text[at + 1] != u'&') return text[at + 1].toLower();
    ++at;
  }
  return {};
}

bool beginsWord(const QString& text, qsizetype at) {
  return at == 0 || !text[at - 1].isLetterOrNumber();
}

/// The position of a free letter, at the beginning of a word if possible; -1 if all are taken.
qsizetype freeLetter(const QString& text, const QSet<QChar>& taken) {
  for (const bool anywhere : {false, true}) {
    for (qsizetype at = 0; at < text.size(); ++at) {
      const bool isFree = text[at].isLetter() && !taken.contains(text[at].toLower());
      if (isFree && (anywhere || beginsWord(text, at))) return at;
    }
  }
  return -1;
}

void giveLetters(const std::vector<Caption>& captions) {
  QSet<QChar> taken;
  for (const Caption& caption : captions)
    taken.insert(mnemonicOf(caption.text));
  for (const Caption& caption : captions) {
    if (!mnemonicOf(caption.text).isNull()) continue;
    const qsizetype at = freeLetter(caption.text, taken);
    if (at < 0) continue;
    taken.insert(caption.text[at].toLower());
    caption.set(QString(caption.text).insert(at, u'&'));
  }
}

/// The text without its mnemonic; "&&", which stands for the character, stays.
QString withoutMnemonic(QString text) {
  for (qsizetype at = 0; at + 1 < text.size(); ++at) {
    if (text[at] != u'&') continue;
    if (text[at + 1] == u'&') {
      ++at;
    } else {
      text.remove(at, 1);
    }
  }
  return text;
}

}  // namespace

void giveMnemonics(QWidget& window) { giveLetters(captionsOf(window)); }

void giveMenuMnemonics(QMenu& menu) {
  std::vector<Caption> captions;
  for (QAction* const action : menu.actions()) {
    if (action->isSeparator() || !action->isVisible() || action->text().isEmpty()) continue;
    captions.push_back({withoutMnemonic(action->text()),
                        [action](const QString& text) { action->setText(text); }});
  }
  giveLetters(captions);
}

}  // namespace ombrelian::ui
