#include "settings/z_Translate.h"

#include <algorithm>

#include "platform/Locale.h"
#include "platform/WholeFile.h"
#include "support/Guard.h"

namespace ombrelian {
namespace {

constexpr TextView kModule = u"z_Translate";
constexpr TextView kLanguageFolder = u"lang";
constexpr TextView kTranslatorFile = u"OmbrelianTL.txt";
constexpr int kBinaryKeys = 0;

struct Language {
  int id;
  TextView file;  // name in the language folder; empty: built in
};

constexpr Language kLanguages[] = {
    {kGerman, u""},   {kEnglish, u"eng.txt"}, {12, u"fre.txt"}, {16, u"ita.txt"}, {18, u"kor.txt"},
    {19, u"dut.txt"}, {21, u"pol.txt"},       {25, u"rus.txt"}, {29, u"swe.txt"},
};

/// Finds the language `id`. A language without a translation gives English, not German.
const Language& findLanguage(int id) {
  const Language* english = nullptr;
  for (const Language& language : kLanguages) {
    if (language.id == id) return language;
    if (language.id == kEnglish) english = &language;
  }
  return *english;
}

Text joinPath(TextView folder, TextView name) {
  Text path(folder);
  if (!path.ends_with(platform::kNativeSeparator)) path += platform::kNativeSeparator;
  return path.append(name);
}

Text packPath(TextView programFolder, const Language& language) {
  return joinPath(joinPath(programFolder, kLanguageFolder), language.file);
}

bool isBlank(char16_t unit) { return unit == u' ' || unit == u'\t'; }

std::size_t skipBlanks(TextView line, std::size_t at) {
  while (at < line.size() && isBlank(line[at]))
    ++at;
  return at;
}

/// Reads a quoted field from after the opening quote. At the end, `at` is after the closing quote
/// or at the end of the line.
Text takeQuoted(TextView line, std::size_t& at) {
  Text field;
  while (at < line.size()) {
    const char16_t unit = line[at++];
    if (unit != u'"') {
      field += unit;
    } else if (at < line.size() && line[at] == u'"') {
      field += line[at++];
    } else {
      break;
    }
  }
  return field;
}

Text takePlain(TextView line, std::size_t& at) {
  const std::size_t begin = at;
  at = std::min(line.find(u',', at), line.size());
  std::size_t end = at;
  while (end > begin && isBlank(line[end - 1]))
    --end;
  return Text(line.substr(begin, end - begin));
}

/// The number at the beginning of a field; 0: none.
int Val(TextView field) {
  constexpr int kNoTextHasMore = 100'000'000;
  int number = 0;
  for (const char16_t unit : field) {
    if (unit < u'0' || unit > u'9' || number >= kNoTextHasMore) break;
    number = number * 10 + (unit - u'0');
  }
  return number;
}

Text keyOf(std::int64_t id) { return u"T" + toText(id); }

void addRecord(TextView line, CStringCollection& texts) {
  const std::vector<Text> fields = splitRecord(line);
  if (fields.size() < 3 || fields[0].starts_with(u'#')) return;
  const int id = Val(fields[0]);
  if (id == 0) return;
  const Text key = keyOf(id);
  if (texts.Add(fields[2], key, 0).ExistingNode > 0) texts.setItem(key, fields[2]);
}

/// The language of the user if this program has a file for it. Speakers of other languages get
/// English, not German.
int usersLanguage(TextView programFolder) {
  const Language& language = findLanguage(platform::GetUserDefaultLangID());
  platform::FindData data;
  const bool isHere =
      language.file.empty() ||
      platform::FindFirstFileW(packPath(programFolder, language), data) == platform::kSuccess;
  return isHere ? language.id : kEnglish;
}

/// Adds the texts of a file, which is UTF-8 with or without a byte order mark.
platform::ErrorCode readTexts(TextView path, CStringCollection& texts) {
  std::string bytes;
  const platform::ErrorCode error = platform::ReadWholeFile(path, bytes);
  if (error != platform::kSuccess) return error;
  const Text content = fromBytes(bytes);
  TextView rest = content;
  if (rest.starts_with(u'\uFEFF')) rest.remove_prefix(1);
  while (!rest.empty()) {
    const std::size_t end = std::min(rest.find_first_of(u"\r\n"), rest.size());
    addRecord(rest.substr(0, end), texts);
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  return platform::kSuccess;
}

Text itemOf(const CStringCollection& texts, std::int64_t id) {
  const Result<TextView> item = texts.Item(keyOf(id));
  return item ? Text(*item) : Text();
}

}  // namespace

Translation::Translation()
    : languageFile_(platform::localeTextRules()), translatorFile_(platform::localeTextRules()) {
  languageFile_.setCompareMode(kBinaryKeys);
  translatorFile_.setCompareMode(kBinaryKeys);
}

Text Translation::Init_Sprache(const LanguageStart& start) {
  return GuardedOr(
      kModule, u"Init_Sprache",
      [&] {
        const int stored = start.stored.value_or(0);
        LanguageId_ = stored != 0 ? findLanguage(stored).id : usersLanguage(start.programFolder);
        Text missing = loadLanguageFile(start.programFolder);
        if (start.translatorMode) {
          TranslatorMode_ = true;
          LoadTextFromFile(joinPath(start.programFolder, kTranslatorFile));
        }
        return missing;
      },
      nothing<Text>);
}

/// Loads the file of the language. A file without any text counts as missing.
Text Translation::loadLanguageFile(TextView programFolder) {
  if (LanguageId_ == kGerman) return {};
  Text path = packPath(programFolder, findLanguage(LanguageId_));
  readTexts(path, languageFile_);
  if (languageFile_.Count() > 0) return {};
  LanguageId_ = LanguageId_ == kEnglish ? kGerman : kEnglish;
  return path;
}

void Translation::LoadTextFromFile(TextView path) {
  Guarded(
      kModule, u"LoadTextFromFile",
      [&] {
        translatorFile_.Clear();
        const platform::ErrorCode error = readTexts(path, translatorFile_);
        if (platform::isMissing(error)) return;
        TranslatorMode_ = true;
        if (error == platform::kSuccess) return;
        throw Fault({std::int32_t(error), u"LoadTextFromFile", platform::FormatMessageW(error)});
      },
      {path});
}

const CStringCollection& Translation::textsInForce() const {
  return translatorFile_.Count() > 0 ? translatorFile_ : languageFile_;
}

Text Translation::text(int id) const { return itemOf(textsInForce(), id); }

Text Translation::TL_Caption(TextView idText) const {
  std::int64_t id = 0;
  return parseNumber(idText, id) ? itemOf(textsInForce(), id) : Text();
}

std::vector<Text> splitRecord(TextView line) {
  std::vector<Text> fields;
  std::size_t at = 0;
  do {
    at = skipBlanks(line, at);
    if (at < line.size() && line[at] == u'"') {
      fields.push_back(takeQuoted(line, ++at));
      at = std::min(line.find(u',', at), line.size());
    } else {
      fields.push_back(takePlain(line, at));
    }
  } while (at++ < line.size());
  return fields;
}

}  // namespace ombrelian
