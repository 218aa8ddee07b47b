#include "ui/Themes.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>
#include <QMenu>
#include <QToolTip>
#include <set>

namespace ombrelian::ui {
namespace {

constexpr int kDefault = 7;

TEST(ThemesTest, ContrastIsThatOfTheWebGuidelines) {
  EXPECT_NEAR(contrast(Qt::black, Qt::white), 21, 0.001);
  EXPECT_NEAR(contrast(Qt::white, Qt::white), 1, 0.001);
  EXPECT_NEAR(contrast(QColor(0x77, 0x77, 0x77), Qt::white), 4.478, 0.001);
  EXPECT_NEAR(contrast(Qt::blue, Qt::white), 8.592, 0.001);
}

struct Pair {
  const char* what;
  QColor front;
  QColor back;
  double least;
};

/// What is read in a design: texts on every ground on which they stand.
std::vector<Pair> pairsOf(const Theme& theme) {
  using P = QPalette;
  const auto color = [&](P::ColorRole role, P::ColorGroup group = P::Active) {
    return theme.palette.color(group, role);
  };
  std::vector<Pair> pairs{
      {"window text", color(P::WindowText), color(P::Window), 4.5},
      {"button text", color(P::ButtonText), color(P::Button), 4.5},
      {"alternate row", color(P::Text), color(P::AlternateBase), 4.5},
      {"tool tip", color(P::ToolTipText), color(P::ToolTipBase), 4.5},
      {"selection", color(P::HighlightedText), color(P::Highlight), 4.5},
      {"inactive selection", color(P::HighlightedText, P::Inactive),
       color(P::Highlight, P::Inactive), 4.5},
      {"default button", color(P::Base), color(P::Link), 4.5},
      {"link on the window", color(P::Link), color(P::Window), 4.5},
      {"hint", color(P::PlaceholderText), color(P::Base), 3},
      {"disabled button", color(P::ButtonText, P::Disabled), color(P::Button), 2.2},
      {"disabled", color(P::WindowText, P::Disabled), color(P::Window), 2.2},
      {"disabled selection", color(P::HighlightedText, P::Disabled),
       color(P::Highlight, P::Disabled), 2.2},
      {"text on a bar", color(P::Text), theme.bar, 4.5},
      {"text beside a bar", color(P::Text), theme.barBackground, 4.5},
      {"a bar", theme.bar, theme.barBackground, 1.2},
      {"a bar on a row", theme.bar, color(P::Base), 1.3},
      {"a selected row", color(P::Highlight), color(P::Base), 1.15},
      {"a control's outline", color(P::Dark), color(P::Window), 1.4},
      {"grid lines", theme.hairline, color(P::Base), 1.15},
  };
  for (const QColor& band : theme.band) {
    pairs.push_back({"text", color(P::Text), band, 4.5});
    pairs.push_back({"error", theme.errorText, band, 4.5});
    pairs.push_back({"link", color(P::Link), band, 4.5});
    pairs.push_back({"visited link", color(P::LinkVisited), band, 4.5});
    pairs.push_back({"disabled row", color(P::Text, P::Disabled), band, 2.2});
  }
  return pairs;
}

TEST(ThemesTest, EverythingCanBeRead) {
  for (int number = 0; number < kThemes; ++number)
    for (const bool isDark : {false, true})
      for (const Pair& pair : pairsOf(makeTheme(number, isDark)))
        EXPECT_GE(contrast(pair.front, pair.back), pair.least)
            << "design " << number << (isDark ? ", dark: " : ", light: ") << pair.what << " "
            << qPrintable(pair.front.name()) << " on " << qPrintable(pair.back.name());
}

TEST(ThemesTest, ErrorsStayReadableOnASoftSelection) {
  for (int number = 0; number < kThemes; ++number)
    for (const bool isDark : {false, true}) {
      const QPalette palette = makeTheme(number, isDark).palette;
      if (palette.color(QPalette::HighlightedText) != palette.color(QPalette::Text)) continue;
      EXPECT_GE(contrast(palette.color(QPalette::BrightText), palette.color(QPalette::Highlight)),
                4.5)
          << number << isDark;
    }
}

TEST(ThemesTest, TenDesignsOfWhichSomeFollowTheDesktop) {
  std::set<std::pair<QRgb, QRgb>> looks;
  std::set<Text> names;
  int alwaysLight = 0;
  int alwaysDark = 0;
  for (int number = 0; number < kThemes; ++number) {
    const Theme light = makeTheme(number, false);
    const Theme dark = makeTheme(number, true);
    alwaysLight += !light.isDark && !dark.isDark;
    alwaysDark += light.isDark && dark.isDark;
    names.insert(themeName(number));
    for (const Theme& theme : {light, dark})
      looks.insert({theme.palette.color(QPalette::Window).rgb(), theme.accent.rgb()});
  }
  EXPECT_EQ(names.size(), std::size_t(kThemes));
  EXPECT_EQ(alwaysLight, 2);
  EXPECT_EQ(alwaysDark, 2);
  EXPECT_EQ(looks.size(), std::size_t(2 * kThemes - alwaysLight - alwaysDark));
}

TEST(ThemesTest, TheDefaultFollowsTheDesktopAndStandsForAnUnknownNumber) {
  EXPECT_FALSE(makeTheme(kDefault, false).isDark);
  EXPECT_TRUE(makeTheme(kDefault, true).isDark);
  for (const int unknown : {-1, kThemes, 255})
    EXPECT_EQ(makeTheme(unknown, true).palette, makeTheme(kDefault, true).palette) << unknown;
}

TEST(ThemesTest, ADesignReachesEveryWidgetEvenWhereTheDesktopColouredSome) {
  const QPalette saved = QApplication::palette();
  QApplication::setPalette(QPalette(Qt::red), "QMenu");
  const Theme theme = makeTheme(6, false);
  applyTheme(theme);
  QLabel label;
  QMenu menu;
  EXPECT_EQ(label.palette().color(QPalette::Window), theme.palette.color(QPalette::Window));
  EXPECT_EQ(menu.palette().color(QPalette::Window), theme.palette.color(QPalette::Window));
  EXPECT_EQ(QToolTip::palette().color(QPalette::ToolTipBase),
            theme.palette.color(QPalette::ToolTipBase));
  applyTheme(makeTheme(kDefault, false));
  QApplication::setPalette(saved);
}

}  // namespace
}  // namespace ombrelian::ui
