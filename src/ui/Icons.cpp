#include "ui/Icons.h"

#include <QCoreApplication>
#include <QFile>
#include <QGuiApplication>
#include <QHash>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QSvgRenderer>
#include <algorithm>
#include <map>
#include <tuple>

#include "ui/Themes.h"

// The resource of a static library has to be loaded explicitly, outside of any namespace.
static void loadIconResource() { Q_INIT_RESOURCE(icons); }

namespace ombrelian::ui {
namespace {

// Colours in the icon files, which look right in any viewer. Here the colours of the palette
// replace them.
constexpr char kLineMark[] = "currentColor";
constexpr char kAccentMark[] = "#3a7bd5";
constexpr char kDangerMark[] = "#d13b4a";
constexpr char kWarningMark[] = "#c98a00";

constexpr QRgb kWarningOnLight = 0xFFB27600;
constexpr QRgb kWarningOnDark = 0xFFF0B429;

struct Inks {
  QColor line;
  QColor accent;
  QColor danger;
  QColor warning;
};

/// Whether an icon has one colour only: if it is disabled, or if the selection changes the text.
bool isInOneInk(const QPalette& palette, QIcon::Mode mode) {
  if (mode == QIcon::Disabled) return true;
  return mode == QIcon::Selected && palette.color(QPalette::Active, QPalette::HighlightedText) !=
                                        palette.color(QPalette::Active, QPalette::Text);
}

Inks inksFor(const QPalette& palette, QIcon::Mode mode) {
  if (isInOneInk(palette, mode)) {
    const QColor one = mode == QIcon::Disabled
                           ? palette.color(QPalette::Disabled, QPalette::WindowText)
                           : palette.color(QPalette::Active, QPalette::HighlightedText);
    return {one, one, one, one};
  }
  const QColor window = palette.color(QPalette::Active, QPalette::Window);
  // Lines are a little softer than the text, since they are thicker than its strokes.
  return {mixed(palette.color(QPalette::Active, QPalette::WindowText), window, 0.1),
          palette.color(QPalette::Active, QPalette::Link),
          palette.color(QPalette::Active, QPalette::BrightText),
          QColor(window.lightnessF() < 0.5 ? kWarningOnDark : kWarningOnLight)};
}

QByteArray inked(QByteArray svg, const Inks& inks) {
  const auto set = [&svg](const char* mark, const QColor& color) {
    svg.replace(mark, color.name().toLatin1());
  };
  set(kLineMark, inks.line);
  set(kAccentMark, inks.accent);
  set(kDangerMark, inks.danger);
  set(kWarningMark, inks.warning);
  return svg;
}

/// The name of an icon, its side in device pixels, and its mode.
using PictureKey = std::tuple<QByteArray, int, int>;

/// The pictures in the colours of the current palette; a new palette clears them.
class Pictures {
 public:
  static Pictures& get() {
    static Pictures pictures;
    return pictures;
  }

  QPixmap picture(const QByteArray& name, const QByteArray& svg, int side, QIcon::Mode mode) {
    const QPalette palette = QGuiApplication::palette();
    if (palette.cacheKey() != paletteKey_) {
      pictures_.clear();
      paletteKey_ = palette.cacheKey();
    }
    QPixmap& slot = pictures_[{name, side, mode}];
    if (slot.isNull()) slot = draw(inked(svg, inksFor(palette, mode)), side);
    return slot;
  }

 private:
  Pictures() {
    qAddPostRoutine([] { get().pictures_.clear(); });  // no pixmap may outlive the application
  }

  static QPixmap draw(const QByteArray& svg, int side) {
    QPixmap pixmap(side, side);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    QSvgRenderer(svg).render(&painter);
    return pixmap;
  }

  qint64 paletteKey_ = -1;
  std::map<PictureKey, QPixmap> pictures_;
};

class Engine : public QIconEngine {
 public:
  Engine(QByteArray name, QByteArray svg) : name_(std::move(name)), svg_(std::move(svg)) {}

  QIconEngine* clone() const override { return new Engine(*this); }
  bool isNull() override { return svg_.isEmpty(); }
  QString iconName() override { return QString::fromLatin1(name_); }

  /// Returns a pixmap of `size` device pixels, with the square picture in its middle.
  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State) override {
    const int side = std::min(size.width(), size.height());
    if (side < 1) return {};
    QPixmap square = Pictures::get().picture(name_, svg_, side, mode);
    if (square.size() == size) return square;
    QPixmap centred(size);
    centred.fill(Qt::transparent);
    QPainter(&centred).drawPixmap((size.width() - side) / 2, (size.height() - side) / 2, square);
    return centred;
  }

  /// Paints on whole device pixels, even if a fractional scale puts `rect` between them.
  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
    const QTransform toDevice = painter->deviceTransform();
    const QRectF device = toDevice.mapRect(QRectF(rect));
    const int side = qRound(std::min(device.width(), device.height()));
    if (side < 1) return;
    const QPointF corner = device.center() - QPointF(side, side) / 2;
    const QRectF target(qRound(corner.x()), qRound(corner.y()), side, side);
    painter->drawPixmap(toDevice.inverted().mapRect(target),
                        Pictures::get().picture(name_, svg_, side, mode), QRectF(0, 0, side, side));
  }

 private:
  QByteArray name_;
  QByteArray svg_;
};

QIcon load(const QByteArray& name) {
  loadIconResource();
  QFile file(QLatin1StringView(":/icons/") + QLatin1StringView(name) + QLatin1StringView(".svg"));
  const bool found = file.open(QIODevice::ReadOnly);
  Q_ASSERT_X(found, "icon", name.constData());
  return found ? QIcon(new Engine(name, file.readAll())) : QIcon();
}

}  // namespace

QIcon icon(const char* name) {
  static QHash<QByteArray, QIcon> icons;
  QIcon& slot = icons[QByteArray(name)];
  if (slot.isNull()) slot = load(QByteArray(name));
  return slot;
}

}  // namespace ombrelian::ui
