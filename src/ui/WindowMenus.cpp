#include "ui/WindowMenus.h"

#include "support/Translate.h"
#include "ui/QtText.h"

namespace ombrelian::ui {
namespace {

using enum CommandId;

/// The commands of the menu "Source"; None is a line.
constexpr CommandId kSourceMenu[] = {AddSource,    RemoveSource, None,           Start,
                                     Stop,         None,         CountHardlinks, CountHardlinksOnce,
                                     FolderOwners, EnterLinks,   HideLinks,      None,
                                     ListMenu,     FilterMenu,   None,           Quit};

QMenu* addMenu(QMenuBar& bar, const Text& title) { return bar.addMenu(toQString(title)); }

}  // namespace

void makeMenus(QMenuBar& bar, CommandSet& main, CommandSet& header, Panes& panes, PaneArea& area) {
  QMenu* const source = addMenu(bar, TL(9560, u"&Quelle"));
  for (const CommandId id : kSourceMenu) {
    if (id == None) {
      source->addSeparator();
    } else {
      source->addAction(main.action(id));
    }
  }
  QMenu* const list = addMenu(bar, TL(9561, u"&Liste"));
  QObject::connect(list, &QMenu::aboutToShow, &area, [&panes, &area, list] {
    list->clear();
    panes.pane(area.focusedList()).commands().fillMenu(*list, None);
  });
  QMenu* const view = addMenu(bar, TL(9562, u"&Ansicht"));
  header.fillMenu(*view, None);
  view->addSeparator();
  main.fillMenu(*view, ViewMenu);
  view->addSeparator();
  view->addAction(main.action(SizeMenu));
  main.fillMenu(*view, AppearanceMenu);
  QMenu* const help = addMenu(bar, TL(9563, u"&Hilfe"));
  main.fillMenu(*help, HelpMenu);
  help->removeAction(main.action(Quit));  // the menu "Source" has it
  help->addAction(main.action(FilterHelp));
}

}  // namespace ombrelian::ui
