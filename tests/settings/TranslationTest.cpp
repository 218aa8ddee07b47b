#include "settings/z_Translate.h"
#include "tests/testing/Testing.h"

namespace ombrelian {
namespace {

using testing::TestFolder;

TEST(RecordTest, SplitsFields) {
  const std::pair<TextView, TextView> cases[] = {
      {u"5, \"Abbrechen\", \"Cancel\"", u"5|Abbrechen|Cancel"},
      {u" 5\t,Ab brechen ,\t Cancel ", u"5|Ab brechen|Cancel"},
      {u"5,\"a, b\",\" c \"", u"5|a, b| c "},
      {u"5, \"say \"\"yes\"\"\", \"\"\"\"", u"5|say \"yes\"|\""},
      {u"5, \"a\" # why, \"b\", more", u"5|a|b|more"},
      {u"5, a \"b\" c,", u"5|a \"b\" c|"},
      {u"5, \"never, closed", u"5|never, closed"},
      {u"5,,", u"5||"},
      {u"", u""},
  };
  for (const auto& [line, expected] : cases)
    EXPECT_EQ(splitRecord(line), testing::fields(expected)) << toBytes(line);
}

TEST(TranslationTest, ReadsATranslatorsFile) {
  const TestFolder program;
  program.write("tl.txt",
                "\xEF\xBB\xBF# 1, \"a\", \"comment\"\r\n"
                "\r\n"
                "  # 2, \"a\", \"comment\"\n"
                "3, \"Zurück\", \"Back, of course\"\r\n"
                "4, \"a\"\n"
                "5, \"a\", \"first\"\n"
                "6abc, \"a\", \"six\"\r"
                "none, \"a\", \"zero\"\n"
                "7, \"a\", \"\"\n"
                "5, \"a\", \"retour à \xFF\"\n"
                "5, \"a line that lacks a field changes nothing\"\n"
                "8, \"a\", \"last\"");
  Translation translation;
  translation.LoadTextFromFile(program.text("tl.txt"));
  EXPECT_TRUE(translation.TranslatorMode());
  const auto textOf = [&](int id) { return translation.text(id); };
  EXPECT_EQ(testing::each({0, 1, 2, 3, 4, 5, 6, 7, 8, 9}, textOf),
            u"|||Back, of course||retour à \xDCFF|six||last|");
  EXPECT_EQ(translation.TL_Caption(u"8"), u"last");
  for (const TextView id : {u"", u"-", u"8T", u"-8", u"4294967304"})
    EXPECT_EQ(translation.TL_Caption(id), u"") << toBytes(id);

  program.write("second.txt", "8, \"a\", \"%1%!\"\n");
  translation.LoadTextFromFile(program.text("second.txt"));
  EXPECT_EQ(translation.text(3), u"");  // the first file is gone
  EXPECT_EQ(translation.TL_Caption(u"8"), u"%1%!");
}

TEST(TranslationTest, ChoosesTheLanguage) {
  const TestFolder program;
  program.write("lang/eng.txt", "1, \"a\", \"english\"\n");
  program.write("lang/fre.txt", "1, \"a\", \"français\"\n");
  program.write("lang/ita.txt", "# nothing in it\n");
  program.folder("lang/rus.txt");
  constexpr auto kNone = std::nullopt;
  struct {
    const char* locale;
    std::optional<int> stored;
    int languageId;
    TextView text = u"";     // of number 1; empty: the German one shows
    TextView missing = u"";  // file that is told
  } const cases[] = {
      {"de_DE.UTF-8", kNone, 7},
      {"C", kNone, 9, u"english"},
      {"en_GB.UTF-8", 0, 9, u"english"},
      {"fr_FR.UTF-8", kNone, 12, u"français"},
      {"ja_JP.UTF-8", kNone, 9, u"english"},
      {"C", 7, 7},
      {"de_DE.UTF-8", 9, 9, u"english"},
      {"de_DE.UTF-8", 12, 12, u"français"},
      {"de_DE.UTF-8", 17, 9, u"english"},
      {"de_DE.UTF-8", -7, 9, u"english"},
      {"sv_SE.UTF-8", kNone, 9, u"english"},  // there is no Swedish pack
      // A stored language without its texts: English does not stand in at once, the next start
      // has it.
      {"C", 16, 9, u"", u"ita.txt"},
      {"C", 25, 9, u"", u"rus.txt"},
  };
  for (const auto& one : cases) {
    const ScopedLocale locale(one.locale);
    Translation translation;
    const Text missing = translation.Init_Sprache({program.text(), one.stored, false});
    const std::string trace =
        one.locale + std::string(" ") + toBytes(toText(one.stored.value_or(0)));
    EXPECT_EQ(translation.LanguageId(), one.languageId) << trace;
    EXPECT_EQ(translation.text(1), one.text) << trace;
    EXPECT_EQ(missing, one.missing.empty() ? Text() : program.text("lang/" + toBytes(one.missing)));
    EXPECT_FALSE(translation.TranslatorMode());
  }
}

TEST(TranslationTest, WithoutEnglishTextsAllIsGerman) {
  const TestFolder program;
  const ScopedLocale locale("C");
  Translation translation;
  EXPECT_EQ(translation.Init_Sprache({program.text(), std::nullopt, false}),
            program.text("lang/eng.txt"));
  EXPECT_EQ(translation.LanguageId(), kGerman);
  EXPECT_EQ(translation.text(1), u"");
}

TEST(TranslationTest, TranslatorModeReplacesAllTexts) {
  const TestFolder program;
  program.write("lang/eng.txt", "1, \"a\", \"english\"\n2, \"b\", \"two\"\n");
  for (const bool hasFile : {false, true}) {
    if (hasFile) program.write("OmbrelianTL.txt", "1, \"a\", \"mine\"\n");
    for (const int language : {7, 9}) {
      for (const bool isAsked : {false, true}) {
        Translation translation;
        EXPECT_EQ(translation.Init_Sprache({program.text(), language, isAsked}), u"");
        EXPECT_EQ(translation.TranslatorMode(), isAsked);
        EXPECT_EQ(translation.LanguageId(), language);
        const bool isMine = hasFile && isAsked;  // what it lacks is German, whatever the language
        const bool isEnglish = !isMine && language == 9;
        EXPECT_EQ(translation.text(1), isMine ? u"mine" : isEnglish ? u"english" : u"");
        EXPECT_EQ(translation.text(2), isEnglish ? u"two" : u"");
      }
    }
  }
}

}  // namespace
}  // namespace ombrelian
