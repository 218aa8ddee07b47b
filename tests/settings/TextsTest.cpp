// The texts of the program against each other: what the code says, the list of German texts, and
// the translations.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>

#include "settings/z_Translate.h"
#include "tests/testing/TestFolder.h"

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
struct Shape {
  explicit Shape(const Text& text) {
    for (std::size_t at = 0; (at = text.find(u'%', at)) != Text::npos; ++at) {
      const char16_t next = at + 1 < text.size() ? text[at + 1] : u'\0';
      if (next >= u'1' && next <= u'9') placeholders[std::size_t(next - u'1')] = true;
      if (next == u'!') ++lineBreaks;
    }
    blanks = {text.starts_with(u' '), text.ends_with(u' ')};
  }
  bool operator==(const Shape&) const = default;

  std::array<bool, 9> placeholders{};
  int lineBreaks = 0;
  std::pair<bool, bool> blanks;
};

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
      EXPECT_TRUE(Shape(text.translation) == Shape(text.german)) << entry.path() << " " << text.id;
    }
    Translation translation;  // and the program reads of it what stands there
    translation.LoadTextFromFile(fromBytes(entry.path().string()));
    for (const Record& text : texts)
      EXPECT_EQ(translation.text(text.id), text.translation);
  }
  EXPECT_GT(translations, 0U);
}

/// Finds the texts in a source: a number of four digits, a comma, and UTF-16 literals.
class SourceScanner {
 public:
  explicit SourceScanner(std::string_view source) : rest_(source) {}

  std::vector<Record> scan() {
    std::vector<Record> found;
    std::string number;
    bool comma = false;
    while (!rest_.empty()) {
      if (skipUnseen()) continue;
      if (std::isalnum(rest_[0]) && !rest_.starts_with("u\"")) {
        number = takeWord();
        comma = false;
      } else if (rest_.starts_with("u\"")) {
        const std::string text = takeLiterals();
        if (comma && isTextNumber(number))
          found.push_back({std::stoi(number), fromBytes(text), {}});
        number.clear();
      } else {
        comma = rest_[0] == ',' && !comma;
        if (!comma) number.clear();
        rest_.remove_prefix(1);
      }
    }
    return found;
  }

 private:
  static bool isTextNumber(const std::string& word) {
    return word.size() == 4 && std::all_of(word.begin(), word.end(), ::isdigit);
  }

  /// White space, comments, and characters such as u'"'.
  bool skipUnseen() {
    if (std::isspace(static_cast<unsigned char>(rest_[0]))) return skip(1);
    if (rest_.starts_with("//")) return skip(rest_.find('\n'));
    if (rest_[0] != '\'') return false;
    const std::size_t end = rest_.find('\'', rest_.starts_with("'\\") ? 3 : 2);
    return skip(end == std::string_view::npos ? end : end + 1);
  }

  bool skip(std::size_t count) {
    rest_.remove_prefix(std::min(count, rest_.size()));
    return true;
  }

  /// A name or a number, which may hold separators.
  std::string takeWord() {
    const bool isNumber = std::isdigit(rest_[0]) != 0;
    std::size_t end = 0;
    while (end < rest_.size() &&
           (std::isalnum(rest_[end]) || rest_[end] == '_' || (isNumber && rest_[end] == '\'')))
      ++end;
    const std::string word(rest_.substr(0, end));
    rest_.remove_prefix(end);
    return word;
  }

  /// Adjacent literals are one text.
  std::string takeLiterals() {
    std::string text;
    while (rest_.starts_with("u\"")) {
      std::size_t at = 2;
      for (; rest_[at] != '"'; ++at) {
        if (rest_[at] == '\\') ++at;
        text += rest_[at];
      }
      rest_.remove_prefix(at + 1);
      while (!rest_.empty() && skipUnseen()) {
      }
    }
    return text;
  }

  std::string_view rest_;
};

TEST(TextsTest, TheScannerFindsTexts) {
  const std::vector<Record> expected = {{1234, u"ab\"c\"", {}}, {5678, u"d", {}}};
  EXPECT_EQ(SourceScanner(
                "TL(1234, // why, u\"x\"\n u\"a\" u\"b\\\"c\\\"\", {x}); {u'\"', 10'000, 5678,\n"
                "u\"d\", 9999, 12, u\"no\"} f(1234 + x, u\"no\") \"1234,\"")
                .scan(),
            expected);
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
    for (const Record& text : SourceScanner(source).scan()) {
      ++found;
      EXPECT_EQ(toBytes(listed[text.id]), toBytes(text.german)) << entry.path() << " " << text.id;
    }
  }
  EXPECT_GT(found, 80U);
}

}  // namespace
}  // namespace ombrelian
