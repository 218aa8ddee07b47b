// The texts of the program against each other: what the code says, the list of German texts, and
// the translations.

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

  /// Numbers and German texts are the same in all files.
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

/// What a translation must share with its original: the placeholders, the number of line breaks,
/// and the blanks at both ends.
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
    Translation translation;  // and the program reads of it what stands there
    translation.LoadTextFromFile(fromBytes(entry.path().string()));
    for (const Record& text : texts)
      EXPECT_EQ(translation.text(text.id), text.translation);
  }
  EXPECT_GT(translations, 0U);
}

/// The texts in a source: a number of four digits, a comma, and UTF-16 literals, which are one text
/// when they are adjacent.
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

}  // namespace
}  // namespace ombrelian
