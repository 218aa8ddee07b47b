#include "ui/Style.h"

#include <QAbstractButton>
#include <QAbstractSpinBox>
#include <QComboBox>
#include <QGuiApplication>
#include <QHeaderView>
#include <QLineEdit>
#include <QProgressBar>
#include <QScrollBar>
#include <QSplitterHandle>
#include <QTabBar>
#include <algorithm>
#include <cmath>

#include "ui/Icons.h"
#include "ui/StyleParts.h"

namespace ombrelian::ui {
namespace {

constexpr int kScrollBarWidth = 12;
constexpr int kSliderMinimum = 28;
constexpr int kPushButtonMinimum = 84;
constexpr int kProgressHeight = 8;

/// The common height of buttons and fields, so that they are aligned in a row.
int controlHeight(const QStyleOption& option) {
  return std::max(option.fontMetrics.height() + 10, 26);
}

QSize toolButtonSize(const QStyleOptionToolButton& button, QSize size) {
  const bool hasText = button.toolButtonStyle != Qt::ToolButtonIconOnly && !button.text.isEmpty();
  size += QSize(hasText ? 10 : 8, hasText ? 6 : 8);
  if (opensMenu(button)) size.rwidth() += kMenuChevronWidth;
  return size;
}

/// The rectangle of a part of a scroll bar without buttons: Qt's own style computes it for a scroll
/// bar that is longer by the two buttons.
QRect scrollBarPart(const QProxyStyle& style, const QStyleOptionSlider& bar,
                    QStyle::SubControl part) {
  if (part == QStyle::SC_ScrollBarAddLine || part == QStyle::SC_ScrollBarSubLine) return {};
  const QPoint button =
      bar.orientation == Qt::Horizontal ? QPoint(kScrollBarWidth, 0) : QPoint(0, kScrollBarWidth);
  QStyleOptionSlider longer = bar;
  longer.rect = QRect(QPoint(), bar.rect.size() + QSize(2 * button.x(), 2 * button.y()));
  return style.QProxyStyle::subControlRect(QStyle::CC_ScrollBar, &longer, part, nullptr)
      .translated(bar.rect.topLeft() - button);
}

/// Rows are dense, except those of a combo box.
int rowHeight(const QStyleOption& option, const QWidget* widget) {
  const bool isChoice = widget != nullptr && widget->inherits("QComboBoxListView");
  return option.fontMetrics.height() + (isChoice ? 9 : 5);
}

struct StandardIcon {
  QStyle::StandardPixmap standard;
  const char* name;
};

/// The icons that replace Qt's own.
constexpr StandardIcon kStandardIcons[] = {
    {QStyle::SP_MessageBoxWarning, "warning"},
    {QStyle::SP_MessageBoxCritical, "error"},
    {QStyle::SP_MessageBoxInformation, "info"},
    {QStyle::SP_MessageBoxQuestion, "help"},
    {QStyle::SP_LineEditClearButton, "close"},
    {QStyle::SP_DirIcon, "folder"},
    {QStyle::SP_DirClosedIcon, "folder"},
    {QStyle::SP_DirOpenIcon, "folder-open"},
    {QStyle::SP_DirLinkIcon, "folder-link"},
    {QStyle::SP_FileIcon, "file"},
    {QStyle::SP_FileLinkIcon, "file-link"},
    {QStyle::SP_DriveHDIcon, "drive-local"},
    {QStyle::SP_DriveNetIcon, "drive-network"},
    {QStyle::SP_DriveCDIcon, "drive-optical"},
    {QStyle::SP_TrashIcon, "recycle"},
    {QStyle::SP_BrowserReload, "refresh"},
    {QStyle::SP_ToolBarHorizontalExtensionButton, "expand"},
    {QStyle::SP_ToolBarVerticalExtensionButton, "collapse"},
};

struct Metric {
  QStyle::PixelMetric metric;
  int pixels;
};

/// The lengths that differ from those of Qt's own style.
constexpr Metric kMetrics[] = {
    {QStyle::PM_ToolBarItemMargin, 3},
    {QStyle::PM_ToolBarFrameWidth, 0},
    {QStyle::PM_ToolBarSeparatorExtent, 9},
    {QStyle::PM_ToolBarExtensionExtent, 18},
    {QStyle::PM_ToolBarIconSize, 16},
    {QStyle::PM_ListViewIconSize, 16},
    {QStyle::PM_IndicatorWidth, 17},
    {QStyle::PM_IndicatorHeight, 17},
    {QStyle::PM_ExclusiveIndicatorWidth, 17},
    {QStyle::PM_ExclusiveIndicatorHeight, 17},
    {QStyle::PM_SplitterWidth, 7},
    {QStyle::PM_ScrollBarExtent, kScrollBarWidth},
    {QStyle::PM_ScrollBarSliderMin, kSliderMinimum},
    {QStyle::PM_MenuPanelWidth, 1},
    {QStyle::PM_MenuHMargin, 4},
    {QStyle::PM_MenuVMargin, 4},
    {QStyle::PM_MenuBarItemSpacing, 2},
    {QStyle::PM_MenuBarVMargin, 1},
    {QStyle::PM_HeaderMarkSize, 8},
    {QStyle::PM_HeaderMargin, 6},
    {QStyle::PM_ToolTipLabelFrameWidth, 5},
};

/// A copy of `option` whose palette makes Qt's own style paint in our colours: it takes outlines
/// from Window, darkened, and marks what is active with Highlight, which is pale here.
template <typename Option>
Option inOurColors(const Option& option) {
  Option ours = option;
  ours.palette.setColor(QPalette::Window, option.palette.color(QPalette::Dark).lighter(140));
  ours.palette.setColor(QPalette::Highlight, option.palette.color(QPalette::Link));
  return ours;
}

bool showsHover(const QWidget* widget) {
  return qobject_cast<const QAbstractButton*>(widget) || qobject_cast<const QComboBox*>(widget) ||
         qobject_cast<const QAbstractSpinBox*>(widget) || qobject_cast<const QLineEdit*>(widget) ||
         qobject_cast<const QScrollBar*>(widget) || qobject_cast<const QTabBar*>(widget) ||
         qobject_cast<const QHeaderView*>(widget) || qobject_cast<const QSplitterHandle*>(widget);
}

}  // namespace

Style::Style() : QProxyStyle(QStringLiteral("fusion")) {}

int Style::pixelMetric(PixelMetric metric, const QStyleOption* option,
                       const QWidget* widget) const {
  for (const Metric& own : kMetrics)
    if (own.metric == metric) return own.pixels;
  return QProxyStyle::pixelMetric(metric, option, widget);
}

int Style::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                     QStyleHintReturn* returnData) const {
  switch (hint) {
    case SH_EtchDisabledText:
    case SH_ComboBox_Popup:
    case SH_Menu_FillScreenWithScroll:
    case SH_DialogButtonBox_ButtonsHaveIcons:
      return 0;
    case SH_ToolTip_WakeUpDelay:
      return 500;
    default:
      return QProxyStyle::styleHint(hint, option, widget, returnData);
  }
}

QSize Style::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                              const QWidget* widget) const {
  if (const auto* button = qstyleoption_cast<const QStyleOptionToolButton*>(option);
      button != nullptr && type == CT_ToolButton)
    return toolButtonSize(*button, size);
  if (type == CT_MenuBarItem) return size + QSize(14, 8);

  QSize fit = QProxyStyle::sizeFromContents(type, option, size, widget);
  if (option == nullptr) return fit;
  if (type == CT_PushButton)
    return {std::max(fit.width(), kPushButtonMinimum), controlHeight(*option)};
  if (type == CT_LineEdit || type == CT_ComboBox || type == CT_SpinBox)
    fit.setHeight(std::max(controlHeight(*option), type == CT_LineEdit ? size.height() : 0));
  if (const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
      item != nullptr && type == CT_MenuItem)
    fit.rheight() += item->menuItemType == QStyleOptionMenuItem::Separator ? 4 : 3;
  if (type == CT_ItemViewItem) fit.setHeight(std::max(fit.height(), rowHeight(*option, widget)));
  if (type == CT_HeaderSection) fit.setHeight(std::max(fit.height(), controlHeight(*option)));
  return fit;
}

QRect Style::subElementRect(SubElement element, const QStyleOption* option,
                            const QWidget* widget) const {
  const QRect rect = QProxyStyle::subElementRect(element, option, widget);
  if (element == SE_LineEditContents) return rect.adjusted(3, 0, -3, 0);
  return rect;
}

QRect Style::subControlRect(ComplexControl control, const QStyleOptionComplex* option,
                            SubControl subControl, const QWidget* widget) const {
  const auto* bar = qstyleoption_cast<const QStyleOptionSlider*>(option);
  if (bar != nullptr && control == CC_ScrollBar) return scrollBarPart(*this, *bar, subControl);
  if (const auto* box = qstyleoption_cast<const QStyleOptionGroupBox*>(option);
      box != nullptr && subControl == SC_GroupBoxFrame)  // the title is above the frame
    return box->rect.adjusted(0, box->text.isEmpty() ? 0 : box->fontMetrics.height() + 4, 0, 0);
  return QProxyStyle::subControlRect(control, option, subControl, widget);
}

QIcon Style::standardIcon(StandardPixmap standard, const QStyleOption* option,
                          const QWidget* widget) const {
  for (const StandardIcon& own : kStandardIcons)
    if (own.standard == standard) return icon(own.name);
  return QProxyStyle::standardIcon(standard, option, widget);
}

void Style::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                          const QWidget* widget) const {
  if (!paintPrimitive(element, *option, *painter, widget))
    QProxyStyle::drawPrimitive(element, option, painter, widget);
}

void Style::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                        const QWidget* widget) const {
  if (paintControl(*this, element, *option, *painter, widget)) return;
  if (const auto* bar = qstyleoption_cast<const QStyleOptionProgressBar*>(option)) {
    const QStyleOptionProgressBar ours = inOurColors(*bar);
    return QProxyStyle::drawControl(element, &ours, painter, widget);
  }
  QProxyStyle::drawControl(element, option, painter, widget);
}

void Style::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                               QPainter* painter, const QWidget* widget) const {
  if (paintComplex(*this, control, *option, *painter, widget)) return;
  if (const auto* spin = qstyleoption_cast<const QStyleOptionSpinBox*>(option)) {
    const QStyleOptionSpinBox ours = inOurColors(*spin);
    return QProxyStyle::drawComplexControl(control, &ours, painter, widget);
  }
  if (const auto* slider = qstyleoption_cast<const QStyleOptionSlider*>(option)) {
    const QStyleOptionSlider ours = inOurColors(*slider);
    return QProxyStyle::drawComplexControl(control, &ours, painter, widget);
  }
  QProxyStyle::drawComplexControl(control, option, painter, widget);
}

/// Puts the picture on whole device pixels, so that a fractional scale does not blur it.
void Style::drawItemPixmap(QPainter* painter, const QRect& rect, int alignment,
                           const QPixmap& pixmap) const {
  const QSizeF size = pixmap.deviceIndependentSize();
  const QRectF place(alignedRect(QGuiApplication::layoutDirection(), Qt::Alignment(alignment),
                                 size.toSize(), rect));
  const QTransform toDevice = painter->deviceTransform();
  const QPointF corner = toDevice.map(place.topLeft());
  painter->drawPixmap(
      toDevice.inverted().map(QPointF(std::round(corner.x()), std::round(corner.y()))), pixmap);
}

void Style::polish(QWidget* widget) {
  QProxyStyle::polish(widget);
  if (showsHover(widget)) widget->setAttribute(Qt::WA_Hover);
  if (auto* bar = qobject_cast<QProgressBar*>(widget); bar != nullptr && !bar->isTextVisible())
    bar->setFixedHeight(kProgressHeight);
}

}  // namespace ombrelian::ui
