#include "ui/Style.h"

#include <QAbstractButton>
#include <QAbstractSpinBox>
#include <QComboBox>
#include <QGuiApplication>
#include <QHeaderView>
#include <QLineEdit>
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

/// The one height of buttons and fields, so that they line up in a row.
int controlHeight(const QStyleOption& option) {
  return std::max(option.fontMetrics.height() + 10, 26);
}

QSize menuItemSize(const QStyleOptionMenuItem& item, QSize size) {
  if (item.menuItemType == QStyleOptionMenuItem::Separator)
    return {size.width(), item.text.isEmpty() ? 7 : item.fontMetrics.height() + 6};
  int width = kMenuItemMargin + kMenuIconColumn + size.width() + 2 * kMenuItemMargin + 8;
  if (item.text.contains(u'\t') || item.reservedShortcutWidth > 0) width += kMenuShortcutGap;
  return {width, std::max(item.fontMetrics.height() + 9, 25)};
}

QSize toolButtonSize(const QStyleOptionToolButton& button, QSize size) {
  const bool hasText = button.toolButtonStyle != Qt::ToolButtonIconOnly && !button.text.isEmpty();
  size += QSize(hasText ? 10 : 8, hasText ? 6 : 8);
  const bool opensMenu = (button.features & QStyleOptionToolButton::HasMenu) &&
                         !(button.features & QStyleOptionToolButton::MenuButtonPopup);
  if (opensMenu) size.rwidth() += kMenuChevronWidth;
  return size;
}

/// The slider of a scroll bar that has no buttons: as long as what is shown of the whole.
QRect sliderRect(const QStyleOptionSlider& bar) {
  const bool isHorizontal = bar.orientation == Qt::Horizontal;
  const int length = isHorizontal ? bar.rect.width() : bar.rect.height();
  const qint64 range = qint64(bar.maximum) - bar.minimum;
  if (range <= 0) return bar.rect;
  const qint64 share = qint64(bar.pageStep) * length / std::max<qint64>(range + bar.pageStep, 1);
  const int slider = int(std::clamp<qint64>(share, std::min(kSliderMinimum, length), length));
  const int at = QStyle::sliderPositionFromValue(bar.minimum, bar.maximum, bar.sliderPosition,
                                                 length - slider, bar.upsideDown);
  return isHorizontal ? QRect(bar.rect.x() + at, bar.rect.y(), slider, bar.rect.height())
                      : QRect(bar.rect.x(), bar.rect.y() + at, bar.rect.width(), slider);
}

QRect scrollBarPart(const QStyleOptionSlider& bar, QStyle::SubControl part) {
  const QRect slider = sliderRect(bar);
  const bool isHorizontal = bar.orientation == Qt::Horizontal;
  switch (part) {
    case QStyle::SC_ScrollBarSlider:
      return slider;
    case QStyle::SC_ScrollBarGroove:
      return bar.rect;
    case QStyle::SC_ScrollBarSubPage:
      return isHorizontal ? QRect(bar.rect.topLeft(), QPoint(slider.left() - 1, bar.rect.bottom()))
                          : QRect(bar.rect.topLeft(), QPoint(bar.rect.right(), slider.top() - 1));
    case QStyle::SC_ScrollBarAddPage:
      return isHorizontal
                 ? QRect(QPoint(slider.right() + 1, bar.rect.top()), bar.rect.bottomRight())
                 : QRect(QPoint(bar.rect.left(), slider.bottom() + 1), bar.rect.bottomRight());
    default:
      return {};
  }
}

/// Rows are dense, but for those of a combo box.
int rowHeight(const QStyleOption& option, const QWidget* widget) {
  const bool isChoice = widget != nullptr && widget->inherits("QComboBoxListView");
  return option.fontMetrics.height() + (isChoice ? 9 : 5);
}

/// Names of the icons that stand for Qt's own.
const char* standardIconName(QStyle::StandardPixmap standard) {
  switch (standard) {
    case QStyle::SP_MessageBoxWarning:
      return "warning";
    case QStyle::SP_MessageBoxCritical:
      return "error";
    case QStyle::SP_MessageBoxInformation:
      return "info";
    case QStyle::SP_MessageBoxQuestion:
      return "help";
    case QStyle::SP_LineEditClearButton:
    case QStyle::SP_TitleBarCloseButton:
    case QStyle::SP_DockWidgetCloseButton:
      return "close";
    case QStyle::SP_DirIcon:
    case QStyle::SP_DirClosedIcon:
      return "folder";
    case QStyle::SP_DirOpenIcon:
      return "folder-open";
    case QStyle::SP_DirLinkIcon:
      return "folder-link";
    case QStyle::SP_FileIcon:
      return "file";
    case QStyle::SP_FileLinkIcon:
      return "file-link";
    case QStyle::SP_DriveHDIcon:
      return "drive-local";
    case QStyle::SP_DriveNetIcon:
      return "drive-network";
    case QStyle::SP_DriveCDIcon:
    case QStyle::SP_DriveDVDIcon:
      return "drive-optical";
    case QStyle::SP_TrashIcon:
      return "recycle";
    case QStyle::SP_BrowserReload:
      return "refresh";
    case QStyle::SP_ToolBarHorizontalExtensionButton:
      return "expand";
    case QStyle::SP_ToolBarVerticalExtensionButton:
      return "collapse";
    default:
      return nullptr;
  }
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
  switch (metric) {
    case PM_ToolBarItemSpacing:
      return 1;
    case PM_ToolBarItemMargin:
      return 3;
    case PM_ToolBarFrameWidth:
    case PM_ButtonShiftHorizontal:
    case PM_ButtonShiftVertical:
    case PM_TabBarTabShiftHorizontal:
    case PM_TabBarTabShiftVertical:
    case PM_TabBarBaseOverlap:
    case PM_TabBarTabOverlap:
    case PM_ScrollView_ScrollBarSpacing:
    case PM_ScrollView_ScrollBarOverlap:
      return 0;
    case PM_MenuPanelWidth:
    case PM_DefaultFrameWidth:
      return 1;
    case PM_ToolBarSeparatorExtent:
      return 9;
    case PM_ToolBarExtensionExtent:
      return 18;
    case PM_SmallIconSize:
    case PM_ToolBarIconSize:
    case PM_ListViewIconSize:
    case PM_ButtonIconSize:
    case PM_TabBarIconSize:
      return 16;
    case PM_IndicatorWidth:
    case PM_IndicatorHeight:
    case PM_ExclusiveIndicatorWidth:
    case PM_ExclusiveIndicatorHeight:
      return 17;
    case PM_CheckBoxLabelSpacing:
    case PM_RadioButtonLabelSpacing:
      return 6;
    case PM_SplitterWidth:
      return 7;
    case PM_ScrollBarExtent:
      return kScrollBarWidth;
    case PM_ScrollBarSliderMin:
      return kSliderMinimum;
    case PM_MenuHMargin:
    case PM_MenuVMargin:
      return 4;
    case PM_MenuBarItemSpacing:
      return 2;
    case PM_MenuBarVMargin:
      return 1;
    case PM_MenuButtonIndicator:
      return 16;
    case PM_TreeViewIndentation:
      return 18;
    case PM_HeaderMarkSize:
      return 8;
    case PM_HeaderMargin:
      return 6;
    case PM_TabBarTabHSpace:
      return 22;
    case PM_TabBarTabVSpace:
      return 12;
    case PM_ToolTipLabelFrameWidth:
      return 5;
    default:
      return QProxyStyle::pixelMetric(metric, option, widget);
  }
}

int Style::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                     QStyleHintReturn* returnData) const {
  switch (hint) {
    case SH_ItemView_ShowDecorationSelected:
      return 1;
    case SH_ToolTip_WakeUpDelay:
      return 500;
    case SH_EtchDisabledText:
    case SH_DitherDisabledText:
    case SH_ComboBox_Popup:
    case SH_DialogButtonBox_ButtonsHaveIcons:
    case SH_ScrollView_FrameOnlyAroundContents:
    case SH_Menu_FillScreenWithScroll:
      return 0;
    case SH_ToolTipLabel_Opacity:
      return 255;
    case SH_Table_GridLineColor:
      return option == nullptr ? QProxyStyle::styleHint(hint, option, widget, returnData)
                               : int(option->palette.color(QPalette::Mid).rgba());
    default:
      return QProxyStyle::styleHint(hint, option, widget, returnData);
  }
}

QSize Style::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                              const QWidget* widget) const {
  if (const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
      item != nullptr && type == CT_MenuItem)
    return menuItemSize(*item, size);
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
  if (control == CC_ScrollBar)
    if (const auto* bar = qstyleoption_cast<const QStyleOptionSlider*>(option))
      return visualRect(bar->direction, bar->rect, scrollBarPart(*bar, subControl));
  if (control == CC_GroupBox && subControl == SC_GroupBoxFrame)
    if (const auto* box = qstyleoption_cast<const QStyleOptionGroupBox*>(option))
      return box->rect.adjusted(0, box->text.isEmpty() ? 0 : box->fontMetrics.height() + 4, 0, 0);
  return QProxyStyle::subControlRect(control, option, subControl, widget);
}

QIcon Style::standardIcon(StandardPixmap standard, const QStyleOption* option,
                          const QWidget* widget) const {
  const char* name = standardIconName(standard);
  return name != nullptr ? icon(name) : QProxyStyle::standardIcon(standard, option, widget);
}

void Style::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                          const QWidget* widget) const {
  if (!paintPrimitive(element, *option, *painter, widget))
    QProxyStyle::drawPrimitive(element, option, painter, widget);
}

void Style::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                        const QWidget* widget) const {
  if (!paintControl(*this, element, *option, *painter, widget))
    QProxyStyle::drawControl(element, option, painter, widget);
}

void Style::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                               QPainter* painter, const QWidget* widget) const {
  if (!paintComplex(*this, control, *option, *painter, widget))
    QProxyStyle::drawComplexControl(control, option, painter, widget);
}

/// At a fractional scale a picture would be smeared over two device pixels.
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
}

}  // namespace ombrelian::ui
