#include "ui/Looks.h"

#include <QApplication>
#include <QFontDialog>
#include <QFontInfo>
#include <algorithm>

#include "settings/Optionen.h"
#include "support/Translate.h"
#include "ui/QtText.h"
#include "ui/Themes.h"

namespace ombrelian::ui {
namespace {

constexpr double kLeastFontSize = 6;
constexpr double kMostFontSize = 32;

}  // namespace

Looks::Looks(WindowState& state, WindowDialogs& dialogs, Panes& panes, PaneArea& area,
             CommandSet& main, CommandSet& header, QWidget& window)
    : state_(state),
      dialogs_(dialogs),
      panes_(panes),
      area_(area),
      main_(main),
      header_(header),
      window_(window) {
  connect(&scheme_, &DesktopScheme::changed, this, &Looks::ChangeTheme);
}

void Looks::applyFormats() {
  for (ListPane* const pane : panes_.all())
    pane->applySettings();
}

void Looks::changeSizes(std::optional<ListId> list) {
  Options& options = state_.session.options;
  if (!list) applyCommonSizes(options);
  readCommonSizes(options);
  for (ListPane* const pane : panes_.all()) {
    if (!list || pane->listId() == *list) pane->applySettings();
  }
  main_.update();
}

void Looks::chooseTheme() {
  StoreSettings(u"Optionen", u"ToolbarTheme",
                ombrelian::toText(state_.session.options.ToolbarTheme), state_.settings);
  ChangeTheme();
}

void Looks::ChangeTheme() { previewTheme(state_.session.options.ToolbarTheme); }

void Looks::previewTheme(int theme) {
  applyTheme(makeTheme(theme, scheme_.isDark()));
  main_.update();
  for (ListPane* const pane : panes_.all())
    pane->list().viewport()->update();
}

/// Sets the font of the options. A missing font is replaced by the font of the desktop in the
/// chosen size.
void Looks::applyFont() {
  const Options& options = state_.session.options;
  QFont font = QApplication::font();
  const QFont wanted(toQString(options.FontName));
  if (QFontInfo(wanted).family().compare(wanted.family(), Qt::CaseInsensitive) == 0)
    font.setFamily(wanted.family());
  font.setPointSizeF(std::clamp(options.FontSize, kLeastFontSize, kMostFontSize));
  for (ListPane* const pane : panes_.all()) {
    pane->list().setFont(font);
    pane->list().applySettings();
  }
}

void Looks::applyLook() {
  readCommonSizes(state_.session.options);
  ChangeTheme();
  applyFont();
  main_.applyLook();
  header_.applyLook();
  area_.fitHeaderBar();
  for (ListPane* const pane : panes_.all())
    pane->commands().applyLook();
}

void Looks::ChangeFontSize(int step) {
  double& size = state_.session.options.FontSize;
  size = std::clamp(size + step, kLeastFontSize, kMostFontSize);
  applyFont();
  for (ListPane* const pane : panes_.all())
    pane->list().fitColumns();
}

void Looks::chooseFont() {
  bool isChosen = false;
  const QFont font =
      QFontDialog::getFont(&isChosen, panes_.pane(ListId::Folders).list().font(), &window_);
  if (!isChosen) return;
  Options& options = state_.session.options;
  options.FontName = toText(font.family());
  options.FontSize = font.pointSizeF() > 0 ? font.pointSizeF() : 9;
  ChangeFontSize(0);
}

void Looks::ChangeLanguage(int language) {
  StoreSettings(u"Allgemein", u"Lang", ombrelian::toText(language), state_.settings);
  if (language == state_.session.languageId) return;
  const Text question =
      TL(9869, u"Die neue Sprache gilt nach einem Neustart.") + u"\n\n" +
      TL(9280, u"Soll die Anwendung jetzt neu gestartet werden?") +
      (state_.session.tree.empty()
           ? Text()
           : u"\n\n" + TL(9863, u"Die Quellen müssen danach neu eingelesen werden."));
  if (dialogs_.ask(question)) Q_EMIT restartWanted();
}

}  // namespace ombrelian::ui
