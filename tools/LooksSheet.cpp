// Pictures of the icons and of a sample window in every design, for a person to look at:
// looks_sheet FOLDER [SCALE] writes them as PNG files; it needs no screen.

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenu>
#include <QMessageBox>
#include <QPainter>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>
#include <QSpinBox>
#include <QSplitter>
#include <QStatusBar>
#include <QStyledItemDelegate>
#include <QTabBar>
#include <QTabWidget>
#include <QTableWidget>
#include <QToolBar>
#include <QToolButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "ui/Icons.h"
#include "ui/QtText.h"
#include "ui/Style.h"
#include "ui/Themes.h"

namespace ombrelian::ui {
namespace {

constexpr int kPercentColumn = 2;

QStringList iconNames() {
  QStringList names;
  for (const QFileInfo& file : QDir(QStringLiteral(":/icons")).entryInfoList())
    names << file.completeBaseName();
  return names;
}

void save(const QImage& image, const QString& folder, const QString& name) {
  const QString path = folder + u'/' + name + QStringLiteral(".png");
  if (!image.save(path)) qFatal("Cannot write %s", qPrintable(path));
}

// ---- icons ----

/// All icons with `side` device independent pixels at `ratio`, magnified `zoom` times.
QImage iconSheet(int side, qreal ratio, int zoom, bool withNames) {
  const QStringList names = iconNames();
  const int cell = int(side * ratio) + (withNames ? 64 : 12);
  const int columns = withNames ? 14 : 24;
  const int rows = (int(names.size()) + columns - 1) / columns;
  QImage sheet(columns * cell, rows * (cell - (withNames ? 24 : 0)), QImage::Format_RGB32);
  sheet.fill(QApplication::palette().color(QPalette::Window));
  QPainter painter(&sheet);
  QFont font = painter.font();
  font.setPixelSize(9);
  painter.setFont(font);
  for (int i = 0; i < names.size(); ++i) {
    const QPoint at(i % columns * cell, i / columns * (cell - (withNames ? 24 : 0)));
    QPixmap pixmap = icon(names[i].toLatin1().constData()).pixmap(QSize(side, side), ratio);
    pixmap.setDevicePixelRatio(1);
    painter.drawPixmap(at + QPoint((cell - pixmap.width()) / 2, 6), pixmap);
    painter.setPen(QApplication::palette().color(QPalette::WindowText));
    if (withNames)
      painter.drawText(QRect(at + QPoint(0, pixmap.height() + 10), QSize(cell, 12)),
                       Qt::AlignCenter, names[i]);
  }
  painter.end();
  return sheet.scaled(sheet.size() * zoom);
}

void saveIcons(const QString& folder, const QString& suffix) {
  for (const int side : {16, 24, 32})
    for (const int ratio : {1, 2})
      save(iconSheet(side, ratio, 1, false), folder,
           QStringLiteral("icons-%1@%2-%3").arg(side).arg(ratio).arg(suffix));
  save(iconSheet(16, 1, 4, false), folder, QStringLiteral("icons-zoom-%1").arg(suffix));
  save(iconSheet(16, 3, 1, true), folder, QStringLiteral("icons-names-%1").arg(suffix));
  for (const int side : {64, 128})
    save(icon("app").pixmap(QSize(side, side), 1).toImage(), folder,
         QStringLiteral("app-%1").arg(side));
}

// ---- a window ----

/// Percent cells as a list shows them.
class BarDelegate : public QStyledItemDelegate {
 public:
  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override {
    QStyleOptionViewItem plain = option;
    initStyleOption(&plain, index);
    const QString text = plain.text;
    plain.text.clear();
    QApplication::style()->drawControl(QStyle::CE_ItemViewItem, &plain, painter, plain.widget);
    paintBar(*painter, QRectF(plain.rect), index.data(Qt::UserRole).toDouble(),
             barColor(plain.palette), barBackground(plain.palette));
    painter->setPen(plain.palette.color(QPalette::Text));
    painter->drawText(plain.rect.adjusted(0, 0, -9, 0), Qt::AlignRight | Qt::AlignVCenter, text);
  }
};

struct Row {
  const char* icon;
  const char* name;
  const char* size;
  double fraction;
};

constexpr Row kRows[] = {
    {"folder", "lib", "4,78 GB", 0.53},       {"folder", "share", "2,11 GB", 0.234},
    {"folder-link", "bin", "861 MB", 0.0953}, {"folder", "src", "512 MB", 0.0567},
    {"folder-error", "lost", "0 Bytes", 0},   {"files-group", "[12 files]", "44 MB", 0.005},
    {"folder", "include", "9,1 MB", 0.001},   {"folder", "local", "7,4 MB", 0.0008},
};

void addRow(QTreeWidgetItem* parent, const Row& row, const Theme& theme) {
  auto* item = new QTreeWidgetItem(parent);
  item->setText(0, QString::fromUtf8(row.name));
  item->setIcon(0, icon(row.icon));
  item->setText(1, QString::fromUtf8(row.size));
  item->setTextAlignment(1, Qt::AlignRight | Qt::AlignVCenter);
  item->setText(kPercentColumn, QStringLiteral("%1 %").arg(row.fraction * 100, 0, 'f', 1));
  item->setData(kPercentColumn, Qt::UserRole, row.fraction);
  item->setText(3, QStringLiteral("17.05.2024 11:23"));
  if (row.fraction == 0) item->setForeground(0, theme.palette.color(QPalette::BrightText));
  if (row.fraction > 0.2) new QTreeWidgetItem(item);
}

QTreeWidget* makeTree(const Theme& theme) {
  auto* tree = new QTreeWidget;
  tree->setHeaderLabels({QStringLiteral("Name"), QStringLiteral("Größe"), QStringLiteral("Prozent"),
                         QStringLiteral("Geändert")});
  tree->setItemDelegateForColumn(kPercentColumn, new BarDelegate);
  tree->setUniformRowHeights(true);
  tree->setAllColumnsShowFocus(true);
  tree->setSelectionMode(QAbstractItemView::ExtendedSelection);
  tree->setFrameShape(QFrame::NoFrame);
  auto* root = new QTreeWidgetItem(
      tree, {QStringLiteral("/usr"), QStringLiteral("9,04 GB"), QStringLiteral("100,0 %")});
  root->setIcon(0, icon("drive-local"));
  root->setData(kPercentColumn, Qt::UserRole, 1.0);
  root->setTextAlignment(1, Qt::AlignRight | Qt::AlignVCenter);
  for (const Row& row : kRows)
    addRow(root, row, theme);
  root->setExpanded(true);
  for (int i = 0; i < 20; ++i)
    addRow(tree->invisibleRootItem(), kRows[std::size_t(i) % std::size(kRows)], theme);
  tree->header()->setSectionsClickable(true);
  tree->header()->setSortIndicatorShown(true);
  tree->header()->setSortIndicator(1, Qt::DescendingOrder);
  tree->header()->resizeSection(0, 190);
  tree->setCurrentItem(root->child(1));
  root->child(3)->setSelected(true);
  return tree;
}

void addAction(QToolBar* bar, const char* name, const char* text) {
  bar->addAction(icon(name), QString::fromUtf8(text));
}

QToolBar* makeMainBar() {
  auto* bar = new QToolBar;
  bar->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
  bar->setMovable(false);
  auto* source = new QComboBox;
  source->setEditable(true);
  source->addItem(QStringLiteral("/usr"));
  source->setMinimumWidth(160);
  bar->addWidget(source);
  addAction(bar, "source-add", "Neu");
  addAction(bar, "start", "Start");
  addAction(bar, "stop", "Stop");
  bar->actions().last()->setEnabled(false);
  bar->addSeparator();
  auto* lists = new QToolButton;
  lists->setText(QStringLiteral("Listen"));
  lists->setIcon(icon("lists"));
  lists->setPopupMode(QToolButton::InstantPopup);
  lists->setMenu(new QMenu(lists));
  lists->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
  bar->addWidget(lists);
  addAction(bar, "filter", "Filter");
  addAction(bar, "view-both", "Ansicht");
  bar->actions().last()->setCheckable(true);
  bar->actions().last()->setChecked(true);
  addAction(bar, "options", "Optionen");
  return bar;
}

QToolBar* makeListBar(Qt::ToolButtonStyle style) {
  auto* bar = new QToolBar;
  bar->setToolButtonStyle(style);
  for (const char* name : {"size", "save", "print", "fit-columns", "search", "columns"})
    addAction(bar, name, name);
  bar->actions()[4]->setCheckable(true);
  bar->actions()[4]->setChecked(true);
  bar->addSeparator();
  for (const char* name : {"collapse-all", "expand-all", "level-colors", "percent-bars", "clear"})
    addAction(bar, name, name);
  for (int i = 7; i < bar->actions().size(); ++i) {
    auto* button = qobject_cast<QToolButton*>(bar->widgetForAction(bar->actions()[i]));
    if (button != nullptr) button->setToolButtonStyle(Qt::ToolButtonIconOnly);
  }
  bar->addWidget([] {
    auto* edit = new QLineEdit;
    edit->setPlaceholderText(QStringLiteral("Suche"));
    edit->setClearButtonEnabled(true);
    return edit;
  }());
  return bar;
}

QWidget* makeChoices() {
  auto* box = new QWidget;
  auto* row = new QHBoxLayout(box);
  auto* check = new QCheckBox(QStringLiteral("Nur einmal zählen"));
  check->setChecked(true);
  auto* radio = new QRadioButton(QStringLiteral("Bytes"));
  radio->setChecked(true);
  auto* combo = new QComboBox;
  combo->addItems({QStringLiteral("Design 8"), QStringLiteral("Design 9")});
  auto* edit = new QLineEdit(QStringLiteral("Text"));
  auto* disabled = new QCheckBox(QStringLiteral("Aus"));
  disabled->setEnabled(false);
  for (QWidget* widget : std::initializer_list<QWidget*>{
           check, new QCheckBox(QStringLiteral("Offen")), disabled, radio, combo, new QSpinBox,
           edit, new QLabel(QStringLiteral("<a href='x'>Hilfe</a>"))})
    row->addWidget(widget);
  return box;
}

QWidget* makeRight() {
  auto* right = new QWidget;
  auto* column = new QVBoxLayout(right);
  auto* tabs = new QTabBar;
  for (const char* name : {"drives", "files", "toplists", "hardlinks", "owners", "log"})
    tabs->addTab(icon(name), QString::fromLatin1(name));
  tabs->setDrawBase(true);
  tabs->setExpanding(false);
  column->addWidget(tabs);
  column->addWidget(makeListBar(Qt::ToolButtonIconOnly));
  column->addWidget(makeChoices());
  auto* busy = new QProgressBar;
  busy->setValue(42);
  column->addWidget(busy);
  column->addStretch();
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel |
                                       QDialogButtonBox::Apply);
  buttons->button(QDialogButtonBox::Ok)->setDefault(true);
  buttons->button(QDialogButtonBox::Apply)->setEnabled(false);
  column->addWidget(buttons);
  return right;
}

QPixmap grabMenu() {
  QMenu menu;
  menu.addAction(icon("open"), QStringLiteral("&Öffnen"), QKeySequence(Qt::Key_Return), [] {});
  menu.addAction(icon("copy"), QStringLiteral("&Kopieren"), QKeySequence::Copy, [] {});
  QAction* marked = menu.addAction(icon("rename"), QStringLiteral("Umbenennen"));
  menu.addSeparator();
  QAction* on = menu.addAction(QStringLiteral("Größeneinheit anzeigen"));
  on->setCheckable(true);
  on->setChecked(true);
  QAction* iconOn = menu.addAction(icon("percent-bars"), QStringLiteral("Balken anzeigen"));
  iconOn->setCheckable(true);
  iconOn->setChecked(true);
  menu.addMenu(QStringLiteral("Sprache"))->addAction(QStringLiteral("Deutsch"));
  menu.addAction(icon("delete"), QStringLiteral("Löschen"))->setEnabled(false);
  menu.setActiveAction(marked);
  menu.ensurePolished();
  menu.resize(menu.sizeHint());
  return menu.grab();
}

QImage windowSheet(const Theme& theme) {
  QMainWindow window;
  window.addToolBar(makeMainBar());
  auto* splitter = new QSplitter;
  auto* left = new QWidget;
  auto* column = new QVBoxLayout(left);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  column->addWidget(makeListBar(Qt::ToolButtonTextBesideIcon));
  QTreeWidget* tree = makeTree(theme);
  column->addWidget(tree);
  splitter->addWidget(left);
  splitter->addWidget(makeRight());
  window.setCentralWidget(splitter);
  window.statusBar()->showMessage(QStringLiteral("139.289 Dateien, 16.998 Ordner"));
  window.resize(1180, 460);
  window.show();
  tree->setFocus();
  QApplication::setActiveWindow(&window);
  QApplication::processEvents();
  QPixmap picture = window.grab();
  const QPixmap menu = grabMenu();
  QPainter(&picture).drawPixmap(QPointF(620, 220), menu);
  return picture.toImage();
}

QTableWidget* makeTable() {
  auto* table = new QTableWidget(5, 3);
  table->setHorizontalHeaderLabels(
      {QStringLiteral("Datei"), QStringLiteral("Besitzer"), QStringLiteral("Attribute")});
  for (int row = 0; row < table->rowCount(); ++row)
    for (int column = 0; column < table->columnCount(); ++column)
      table->setItem(row, column, new QTableWidgetItem(QStringLiteral("Zelle %1").arg(row)));
  table->item(3, 0)->setCheckState(Qt::Checked);
  table->setSelectionBehavior(QAbstractItemView::SelectRows);
  table->setCurrentCell(1, 1);
  return table;
}

/// The controls of dialogs.
QImage dialogSheet() {
  QWidget dialog;
  auto* column = new QVBoxLayout(&dialog);
  auto* group = new QGroupBox(QStringLiteral("Allgemein"));
  auto* inner = new QVBoxLayout(group);
  auto* edit = new QLineEdit(QStringLiteral("Eingabe"));
  edit->setClearButtonEnabled(true);
  inner->addWidget(edit);
  inner->addWidget(new QCheckBox(QStringLiteral("Nur eine Programminstanz starten")));
  auto* slider = new QSlider(Qt::Horizontal);
  slider->setValue(40);
  inner->addWidget(slider);
  column->addWidget(group);
  auto* pages = new QTabWidget;
  pages->addTab(makeTable(), QStringLiteral("Tabelle"));
  pages->addTab(new QPlainTextEdit, QStringLiteral("Text"));
  column->addWidget(pages);
  QMessageBox box(QMessageBox::Warning, QStringLiteral("Löschen"),
                  QStringLiteral("Sollen 3 Dateien gelöscht werden?"),
                  QMessageBox::Yes | QMessageBox::No);
  QComboBox combo;
  combo.addItems({QStringLiteral("Standard"), QStringLiteral("Papier"), QStringLiteral("Nebel")});
  combo.setCurrentIndex(1);
  dialog.resize(560, 440);
  dialog.show();
  edit->setFocus();
  QApplication::setActiveWindow(&dialog);
  box.show();
  combo.show();
  combo.showPopup();
  QApplication::processEvents();
  QImage sheet(QSize(960, 440) * dialog.devicePixelRatioF(), QImage::Format_RGB32);
  sheet.setDevicePixelRatio(dialog.devicePixelRatioF());
  sheet.fill(Qt::gray);
  QPainter painter(&sheet);
  painter.drawPixmap(0, 0, dialog.grab());
  painter.drawPixmap(580, 20, box.grab());
  painter.drawPixmap(580, 180, combo.grab());
  painter.drawPixmap(580, 220, combo.view()->window()->grab());
  return sheet;
}

int run(const QString& folder, const QString& scale) {
  for (int number = 0; number < kThemes; ++number)
    for (const bool isDark : {false, true}) {
      const Theme theme = makeTheme(number, isDark);
      if (theme.isDark != isDark) continue;  // does not follow the desktop
      applyTheme(theme);
      const QString face = isDark ? QStringLiteral("dark") : QStringLiteral("light");
      save(windowSheet(theme), folder,
           QStringLiteral("window-%1-%2@%3").arg(number).arg(face, scale));
      save(dialogSheet(), folder, QStringLiteral("dialog-%1-%2@%3").arg(number).arg(face, scale));
      if (number == 7 && scale == QStringLiteral("1")) saveIcons(folder, face);
    }
  return 0;
}

}  // namespace
}  // namespace ombrelian::ui

int main(int argc, char** argv) {
  if (argc < 2) qFatal("looks_sheet FOLDER [SCALE]");
  const QByteArray scale = argc > 2 ? argv[2] : "1";
  qputenv("QT_SCALE_FACTOR", scale);
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication::setHighDpiScaleFactorRoundingPolicy(
      Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
  QApplication application(argc, argv);
  QApplication::setStyle(new ombrelian::ui::Style);
  ombrelian::ui::icon("app");
  return ombrelian::ui::run(QFile::decodeName(argv[1]), QString::fromLatin1(scale));
}
