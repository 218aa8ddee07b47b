#include "ui/FormPlace.h"

#include <QScreen>
#include <algorithm>

namespace ombrelian::ui {
namespace {

constexpr int kTwipsPerPixel = 15;  // a device independent pixel is 1/96 inch

FormPosition positionOf(const QRect& place) {
  return {place.x() * kTwipsPerPixel, place.y() * kTwipsPerPixel, place.width() * kTwipsPerPixel,
          place.height() * kTwipsPerPixel, 0};
}

}  // namespace

void placeForm(QWidget& window, TextView form, bool positionOnly, const IniStore& file) {
  const QSize screen = window.screen()->availableGeometry().size();
  const FormPosition wanted =
      LoadFormPosition(form, positionOnly, positionOf(window.geometry()),
                       {screen.width() * kTwipsPerPixel, screen.height() * kTwipsPerPixel}, file);
  // The screen may be smaller than the one of the last time, or have another scale.
  QRect place(wanted.Left / kTwipsPerPixel, wanted.Top / kTwipsPerPixel,
              wanted.Width / kTwipsPerPixel, wanted.Height / kTwipsPerPixel);
  const QRect room = window.screen()->availableGeometry();
  if (!positionOnly) place.setSize(place.size().boundedTo(room.size()));
  place.moveTopLeft({std::min(place.left(), room.right() + 1 - place.width()),
                     std::min(place.top(), room.bottom() + 1 - place.height())});
  window.setGeometry(place);
  if (wanted.WindowState == 2 && !positionOnly) window.setWindowState(Qt::WindowMaximized);
}

void storeForm(const QWidget& window, TextView form, IniStore& file) {
  const bool isNormal = !window.isMaximized() && !window.isMinimized();
  FormPosition position = positionOf(isNormal ? window.geometry() : window.normalGeometry());
  position.WindowState = window.isMaximized() ? 2 : 0;
  SaveFormPosition(form, position, file);
}

}  // namespace ombrelian::ui
