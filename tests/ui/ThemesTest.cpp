#include "ui/Themes.h"

#include <gmock/gmock.h>

#include <QApplication>
#include <QMenu>
#include <QToolTip>
#include <set>

namespace ombrelian::ui {
namespace {

constexpr int kDefault = 7;

TEST(ThemesTest, ContrastIsThatOfTheWebGuidelines) {
  EXPECT_NEAR(contrast(Qt::black, Qt::white), 21, 0.001);
  EXPECT_NEAR(contrast(QColor(0x77, 0x77, 0x77), Qt::white), 4.478, 0.001);
  EXPECT_NEAR(contrast(Qt::blue, Qt::white), 8.592, 0.001);
}

struct Pair {
  const char* what;
  QColor front;
  QColor back;
  double least;
};

/// The colours of a design that are seen on each other, and the contrast that they need.
std::vector<Pair> pairsOf(const QPalette& palette) {
  using P = QPalette;
  const auto color = [&](P::ColorRole role, P::ColorGroup group = P::Active) {
    return palette.color(group, role);
  };
  std::vector<Pair> pairs{
      {"window text", color(P::WindowText), color(P::Window), 4.5},
      {"button text", color(P::ButtonText), color(P::Button), 4.5},
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
      {"text on a bar", color(P::Text), barColor(palette), 4.5},
      {"text beside a bar", color(P::Text), barBackground(palette), 4.5},
      {"a bar", barColor(palette), barBackground(palette), 1.2},
      {"a bar on a row", barColor(palette), color(P::Base), 1.3},
      {"a selected row", color(P::Highlight), color(P::Base), 1.15},
      {"a control's outline", color(P::Dark), color(P::Window), 1.4},
      {"grid lines", color(P::Mid), color(P::Base), 1.15},
  };
  for (const QColor& band : {color(P::Base), color(P::AlternateBase)}) {
    pairs.push_back({"text", color(P::Text), band, 4.5});
    pairs.push_back({"error", color(P::BrightText), band, 4.5});
    pairs.push_back({"link", color(P::Link), band, 4.5});
    pairs.push_back({"disabled row", color(P::Text, P::Disabled), band, 2.2});
  }
  if (color(P::HighlightedText) == color(P::Text))  // a selection that leaves the text as it is
    pairs.push_back({"selected error", color(P::BrightText), color(P::Highlight), 4.5});
  return pairs;
}

TEST(ThemesTest, EverythingCanBeReadInTenDesignsOfWhichSomeFollowTheDesktop) {
  std::set<std::pair<QRgb, QRgb>> looks;
  int kinds[3] = {};  // always light, following the desktop, always dark
  for (int number = 0; number < kThemes; ++number) {
    ++kinds[makeTheme(number, false).isDark + makeTheme(number, true).isDark];
    for (const bool isDark : {false, true}) {
      const QPalette palette = makeTheme(number, isDark).palette;
      looks.insert({palette.color(QPalette::Window).rgb(), palette.color(QPalette::Link).rgb()});
      for (const Pair& pair : pairsOf(palette))
        EXPECT_GE(contrast(pair.front, pair.back), pair.least)
            << "design " << number << (isDark ? ", dark: " : ", light: ") << pair.what;
    }
  }
  EXPECT_THAT(kinds, ::testing::ElementsAre(2, 6, 2));
  EXPECT_EQ(looks.size(), std::size_t(2 * kThemes - 4));
  EXPECT_TRUE(makeTheme(kDefault, true).isDark);
  for (const int unknown : {-1, kThemes, 255})
    EXPECT_EQ(makeTheme(unknown, true).palette, makeTheme(kDefault, true).palette) << unknown;
}

TEST(ThemesTest, ADesignReachesEveryWidgetEvenWhereTheDesktopColouredSome) {
  const QPalette saved = QApplication::palette();
  QApplication::setPalette(QPalette(Qt::red), "QMenu");
  const QPalette palette = makeTheme(6, false).palette;
  applyTheme(makeTheme(6, false));
  EXPECT_EQ(QMenu().palette().color(QPalette::Window), palette.color(QPalette::Window));
  EXPECT_EQ(QToolTip::palette().color(QPalette::ToolTipBase), palette.color(QPalette::ToolTipBase));
  applyTheme(makeTheme(kDefault, false));
  QApplication::setPalette(saved);
}

}  // namespace
}  // namespace ombrelian::ui
