// Compares the texts in the code with the German list and with the translations, and tests how
// translations are read and chosen.

#include <filesystem>
#include <map>
#include <regex>

#include "settings/z_Translate.h"
#include "tests/testing/Testing.h"

namespace ombrelian {
namespace {

namespace fs = std::filesystem;

const fs::path kSources = OMBRELIAN_SOURCE_DIR;

struct Record {
  int id;
  Text german;
  Text translation;

  /// Numbers and German texts must be the same in all files.
  bool operator==(const Record& other) const { return id == other.id && german == other.german; }
};

void PrintTo(const Record& record, std::ostream* out) {
  *out << record.id << " " << toBytes(record.german);
}

std::vector<Record> readPack(const fs::path& path) {
  std::vector<Record> records;
  Text content = fromBytes(testing::readFile(path.string()));
  for (std::size_t at = 0; at < content.size();) {
    const std::size_t end = std::min(content.find(u'\n', at), content.size());
    const std::vector<Text> fields = splitRecord(TextView(content).substr(at, end - at));
    at = end + 1;
    if (fields[0].empty() || fields[0][0] == u'#') continue;
    std::int64_t id = 0;
    EXPECT_TRUE(parseNumber(fields[0], id)) << toBytes(fields[0]);
    EXPECT_EQ(fields.size(), 3U) << path << " " << id;
    if (fields.size() == 3) records.push_back({int(id), fields[1], fields[2]});
  }
  return records;
}

const std::vector<Record>& germanTexts() {
  static const std::vector<Record> records = readPack(kSources / "lang/ger.txt");
  return records;
}

/// The parts that a translation has in common with its original: the placeholders, the number of
/// line breaks, and the blanks at both ends.
Text shapeOf(const Text& text) {
  Text shape = text.starts_with(u' ') ? u"_" : u"";
  for (const char16_t digit : TextView(u"123456789"))
    if (text.find(Text{u'%', digit}) != Text::npos) shape += digit;
  for (std::size_t at = 0; (at = text.find(u"%!", at)) != Text::npos; ++at)
    shape += u'!';
  return shape + (text.ends_with(u' ') ? u"_" : u"");
}

TEST(TextsTest, TheListIsInOrder) {
  const std::vector<Record>& texts = germanTexts();
  ASSERT_GT(texts.size(), 300U);
  for (std::size_t i = 0; i < texts.size(); ++i) {
    EXPECT_FALSE(texts[i].german.empty()) << texts[i].id;
    EXPECT_LT(i == 0 ? 0 : texts[i - 1].id, texts[i].id);
  }
}

TEST(TextsTest, EveryTranslationIsComplete) {
  std::size_t translations = 0;
  for (const auto& entry : fs::directory_iterator(kSources / "lang")) {
    if (entry.path().filename() == "ger.txt") continue;
    ++translations;
    const std::vector<Record> texts = readPack(entry.path());
    EXPECT_EQ(texts, germanTexts()) << entry.path();
    for (const Record& text : texts) {
      EXPECT_FALSE(text.translation.empty()) << entry.path() << " " << text.id;
      EXPECT_EQ(shapeOf(text.translation), shapeOf(text.german)) << entry.path() << " " << text.id;
    }
    Translation translation;  // the program must read the same texts
    translation.LoadTextFromFile(fromBytes(entry.path().string()));
    for (const Record& text : texts)
      EXPECT_EQ(translation.text(text.id), text.translation);
  }
  EXPECT_GT(translations, 0U);
}

/// The texts in a source: a number of four digits, a comma, and UTF-16 literals. Adjacent literals
/// are one text.
std::vector<Record> textsIn(const std::string& source) {
  static const std::regex head("(^|[^\\w'])(\\d{4}),\\s*(//[^\n]*\\s*)?(?=u\")");
  std::vector<Record> found;
  std::sregex_iterator at(source.begin(), source.end(), head);
  for (; at != std::sregex_iterator(); ++at) {
    std::string text;
    auto in = std::size_t(at->position() + at->length());
    while (source.compare(in, 2, "u\"") == 0) {
      for (in += 2; source[in] != '"'; ++in) {
        if (source[in] == '\\') ++in;
        text += source[in];
      }
      in = source.find_first_not_of(" \n", in + 1);
    }
    found.push_back({std::stoi((*at)[2]), fromBytes(text), {}});
  }
  return found;
}

TEST(TextsTest, TheCodeSaysWhatTheListSays) {
  std::map<int, Text> listed;
  for (const Record& text : germanTexts())
    listed[text.id] = text.german;
  std::size_t found = 0;
  for (const auto& entry : fs::recursive_directory_iterator(kSources / "src")) {
    const fs::path extension = entry.path().extension();
    if (extension != ".cpp" && extension != ".h" && extension != ".inc") continue;
    const std::string source = testing::readFile(entry.path().string());
    EXPECT_EQ(source.find("TL(0"), std::string::npos) << entry.path() << ": a text has no number";
    for (const Record& text : textsIn(source)) {
      ++found;
      EXPECT_EQ(toBytes(listed[text.id]), toBytes(text.german)) << entry.path() << " " << text.id;
    }
  }
  EXPECT_GT(found, 80U);
}

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
  const testing::TestFolder program;
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
  EXPECT_EQ(translation.text(3), u"");  // the first file was replaced
  EXPECT_EQ(translation.TL_Caption(u"8"), u"%1%!");
}

TEST(TranslationTest, ChoosesTheLanguage) {
  const testing::TestFolder program;
  Translation none;  // without English texts, all texts are German
  EXPECT_EQ(none.Init_Sprache({program.text(), 9, false}), program.text("lang/eng.txt"));
  EXPECT_EQ(none.LanguageId(), kGerman);
  program.write("lang/eng.txt", "1, \"a\", \"english\"\n");
  program.write("lang/fre.txt", "1, \"a\", \"français\"\n");
  program.write("lang/ita.txt", "# nothing in it\n");
  program.folder("lang/rus.txt");
  constexpr auto kNone = std::nullopt;
  struct {
    const char* locale;
    std::optional<int> stored;
    int languageId;
    TextView text = u"";     // text with number 1; empty: German
    TextView missing = u"";  // reported file
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
      {"sv_SE.UTF-8", kNone, 9, u"english"},  // there is no Swedish file
      // The texts of the stored language are missing: this start is in German, and the next one in
      // English.
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

TEST(TranslationTest, TranslatorModeReplacesAllTexts) {
  const testing::TestFolder program;
  program.write("lang/eng.txt", "1, \"a\", \"english\"\n2, \"b\", \"two\"\n");
  for (const bool hasFile : {false, true}) {
    if (hasFile) program.write("OmbrelianTL.txt", "1, \"a\", \"mine\"\n");
    for (const int language : {7, 9}) {
      for (const bool isAsked : {false, true}) {
        Translation translation;
        EXPECT_EQ(translation.Init_Sprache({program.text(), language, isAsked}), u"");
        EXPECT_EQ(translation.TranslatorMode(), isAsked);
        EXPECT_EQ(translation.LanguageId(), language);
        const bool isMine = hasFile && isAsked;  // missing texts are German in every language
        const bool isEnglish = !isMine && language == 9;
        EXPECT_EQ(translation.text(1), isMine ? u"mine" : isEnglish ? u"english" : u"");
        EXPECT_EQ(translation.text(2), isEnglish ? u"two" : u"");
      }
    }
  }
}

}  // namespace
}  // namespace ombrelian
