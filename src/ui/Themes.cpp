#include "ui/Themes.h"

#include <QApplication>
#include <QToolTip>
#include <algorithm>
#include <array>
#include <cmath>
#include <initializer_list>

#include "support/Translate.h"

namespace ombrelian::ui {
namespace {

constexpr int kDefaultTheme = 7;

constexpr double kReadable = 4.5;
constexpr double kHintReadable = 3.2;
constexpr double kDisabledReadable = 2.3;

/// The colours that a design consists of; all others are mixed from them.
struct Tones {
  QRgb window;
  QRgb base;
  QRgb text;
  QRgb accent;
  bool solid = false;  ///< selected rows have the full accent, lines the full text colour
};

/// The two faces of a design. A design that does not follow the desktop has the same face twice.
struct Design {
  Tones light;
  Tones dark;
};

constexpr Tones kPaper{0xFFF2EADC, 0xFFFBF6EC, 0xFF3A3026, 0xFFA5522A};
constexpr Tones kMist{0xFFE6EBF0, 0xFFF6F8FA, 0xFF1F2B36, 0xFF1F7586};
constexpr Tones kGraphite{0xFF2D2F33, 0xFF25272A, 0xFFDDDFE3, 0xFF5FBECB};
constexpr Tones kMidnight{0xFF151C2F, 0xFF0F1525, 0xFFD6DEF2, 0xFF8FA8FF};

constexpr std::array<Design, kThemes> kDesigns{{
    {{0xFFF3F3F3, 0xFFFFFFFF, 0xFF1D1D1D, 0xFF5A6675},
     {0xFF252525, 0xFF1D1D1D, 0xFFE6E6E6, 0xFFA3B0C2}},
    {kPaper, kPaper},
    {kMist, kMist},
    {{0xFFEDF2ED, 0xFFFCFDFB, 0xFF1D2A22, 0xFF38784F},
     {0xFF1F2723, 0xFF19201C, 0xFFDDE7E0, 0xFF7FC49A}},
    {{0xFFF2F0F8, 0xFFFDFCFF, 0xFF25203A, 0xFF6B51C2},
     {0xFF24212F, 0xFF1D1A27, 0xFFE5E1F1, 0xFFAE99F2}},
    {{0xFFF6F2EA, 0xFFFFFEFB, 0xFF2B251B, 0xFF9E5E00},
     {0xFF27231E, 0xFF1F1C18, 0xFFEAE3D7, 0xFFE8A945}},
    {kGraphite, kGraphite},
    {{0xFFF2F4F7, 0xFFFFFFFF, 0xFF1B2430, 0xFF2B6BCB},
     {0xFF20242B, 0xFF1A1D23, 0xFFE1E5EB, 0xFF72ABFF}},
    {kMidnight, kMidnight},
    {{0xFFFFFFFF, 0xFFFFFFFF, 0xFF000000, 0xFF0034B8, true},
     {0xFF000000, 0xFF000000, 0xFFFFFFFF, 0xFFFFD83D, true}},
}};

/// The relative luminance of a colour, 0 to 1.
double luminance(const QColor& color) {
  const auto linear = [](double part) {
    return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
         0.0722 * linear(color.blueF());
}

/// `color`, moved as little as needed towards black or white until it has the contrast `ratio` to
/// every one of `backgrounds`, which are all light or all dark.
QColor readable(const QColor& color, std::initializer_list<QColor> backgrounds, double ratio) {
  const QColor pole = luminance(*backgrounds.begin()) > 0.18 ? Qt::black : Qt::white;
  constexpr int kSteps = 50;
  for (int step = 0; step < kSteps; ++step) {
    const QColor moved = mixed(color, pole, double(step) / kSteps);
    if (std::all_of(backgrounds.begin(), backgrounds.end(),
                    [&](const QColor& ground) { return contrast(moved, ground) >= ratio; }))
      return moved;
  }
  return pole;
}

/// The colours that are mixed from the tones of a face.
struct Mixer {
  explicit Mixer(const Tones& tones)
      : window(tones.window),
        base(tones.base),
        text(tones.text),
        accent(tones.accent),
        isSolid(tones.solid),
        isDark(luminance(QColor(tones.base)) < 0.18) {
    button = isDark ? mixed(window, text, 0.07) : mixed(window, base, 0.8);
    band = mixed(base, accent, isDark ? 0.09 : 0.06);
    highlight = isSolid ? accent : mixed(base, accent, isDark ? 0.34 : 0.20);
    highlightedText = readable(isSolid ? base : text, {highlight}, kReadable);
    link = readable(accent, {base, band, window}, kReadable);
  }

  QColor errorText() const {
    const QColor red = isDark ? QColor(0xFF, 0x7A, 0x7A) : QColor(0xC4, 0x26, 0x2E);
    return isSolid ? readable(red, {base, band, window}, kReadable)
                   : readable(red, {base, band, window, highlight}, kReadable);
  }

  QColor hairline() const { return mixed(window, text, isSolid ? 0.6 : isDark ? 0.17 : 0.13); }
  QColor outline() const { return mixed(window, text, isSolid ? 1.0 : isDark ? 0.30 : 0.26); }

  QColor window, base, text, accent, button, band, highlight, highlightedText, link;
  bool isSolid;
  bool isDark;
};

void setTexts(QPalette& palette, const Mixer& mix) {
  for (const auto role :
       {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText})
    palette.setColor(role, mix.text);
  palette.setColor(QPalette::PlaceholderText,
                   readable(mixed(mix.base, mix.text, 0.5), {mix.base, mix.window}, kHintReadable));
  palette.setColor(QPalette::Link, mix.link);
  palette.setColor(QPalette::LinkVisited, readable(mixed(mix.link, mix.text, 0.35),
                                                   {mix.base, mix.band, mix.window}, kReadable));
  palette.setColor(QPalette::BrightText, mix.errorText());
  palette.setColor(QPalette::HighlightedText, mix.highlightedText);
}

void setSurfaces(QPalette& palette, const Mixer& mix) {
  palette.setColor(QPalette::Window, mix.window);
  palette.setColor(QPalette::Base, mix.base);
  palette.setColor(QPalette::AlternateBase, mix.band);
  palette.setColor(QPalette::Button, mix.button);
  palette.setColor(QPalette::ToolTipBase, mix.isDark ? mixed(mix.window, mix.text, 0.1) : mix.base);
  palette.setColor(QPalette::Highlight, mix.highlight);
  palette.setColor(QPalette::Light, mix.isDark ? mixed(mix.window, mix.text, 0.12) : mix.base);
  palette.setColor(QPalette::Midlight, mixed(mix.window, mix.text, mix.isSolid ? 0.15 : 0.08));
  palette.setColor(QPalette::Mid, mix.hairline());
  palette.setColor(QPalette::Dark, mix.outline());
  palette.setColor(QPalette::Shadow, QColor(0, 0, 0, mix.isDark ? 120 : 60));
}

/// Makes the selection grey in a window without the focus, so that the user sees which window gets
/// the keys.
void setInactive(QPalette& palette, const Mixer& mix) {
  if (mix.isSolid) return;
  palette.setColor(QPalette::Inactive, QPalette::Highlight, mixed(mix.base, mix.text, 0.11));
  palette.setColor(QPalette::Inactive, QPalette::HighlightedText, mix.text);
}

void setDisabled(QPalette& palette, const Mixer& mix) {
  const QColor faint = readable(mixed(mix.window, mix.text, 0.4),
                                {mix.window, mix.base, mix.button, mix.band}, kDisabledReadable);
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText,
                          QPalette::Link, QPalette::LinkVisited, QPalette::PlaceholderText})
    palette.setColor(QPalette::Disabled, role, faint);
  palette.setColor(QPalette::Disabled, QPalette::Base, mix.window);
  palette.setColor(QPalette::Disabled, QPalette::Highlight, mixed(mix.base, mix.text, 0.08));
  palette.setColor(QPalette::Disabled, QPalette::HighlightedText,
                   readable(faint, {mixed(mix.base, mix.text, 0.08)}, kDisabledReadable));
  palette.setColor(QPalette::Disabled, QPalette::Dark, mix.hairline());
}

}  // namespace

double contrast(const QColor& one, const QColor& other) {
  const auto [darker, lighter] = std::minmax({luminance(one), luminance(other)});
  return (lighter + 0.05) / (darker + 0.05);
}

QColor mixed(const QColor& from, const QColor& to, double part) {
  const auto channel = [part](int a, int b) { return int(std::lround(a + (b - a) * part)); };
  return {channel(from.red(), to.red()), channel(from.green(), to.green()),
          channel(from.blue(), to.blue())};
}

QColor barColor(const QPalette& palette) {
  return mixed(palette.color(QPalette::Base), palette.color(QPalette::Link), 0.38);
}

QColor barBackground(const QPalette& palette) {
  return mixed(palette.color(QPalette::Base), palette.color(QPalette::Text), 0.07);
}

Theme makeTheme(int number, bool desktopIsDark) {
  const bool known = number >= 0 && number < kThemes;
  const Design& design = kDesigns[std::size_t(known ? number : kDefaultTheme)];
  const Mixer mix(desktopIsDark ? design.dark : design.light);

  Theme theme;
  setTexts(theme.palette, mix);
  setSurfaces(theme.palette, mix);
  setInactive(theme.palette, mix);
  setDisabled(theme.palette, mix);
  theme.isDark = mix.isDark;
  return theme;
}

void applyTheme(const Theme& theme) {
  QApplication::setPalette(theme.palette);
  QToolTip::setPalette(theme.palette);
  // A desktop may have set colours for single kinds of widgets, which would otherwise stay.
  for (const char* kind : {"QMenu", "QMenuBar", "QToolButton", "QAbstractButton", "QCheckBox",
                           "QRadioButton", "QHeaderView", "QAbstractItemView", "QTabBar", "QLabel",
                           "QGroupBox", "QTextEdit", "QLineEdit", "QMessageBoxLabel"})
    if (QApplication::palette(kind) != theme.palette) QApplication::setPalette(theme.palette, kind);
}

}  // namespace ombrelian::ui
