#pragma once

#include <optional>
#include <vector>

#include "support/CStringCollection.h"
#include "support/Translate.h"

namespace ombrelian {

inline constexpr int kGerman = 7;  // built in, needs no file
inline constexpr int kEnglish = 9;

/// What the choice of the language depends on.
struct LanguageStart {
  Text programFolder;           // language files lie in its folder "lang"
  std::optional<int> stored;    // key `Lang` of section `Allgemein`; none or 0: the user's language
  bool translatorMode = false;  // "-TLMODUS" stood in the command line
};

/// The language of a run, and its texts by number. A language other than German has a file of
/// records (see splitRecord); in translator mode "OmbrelianTL.txt" in the program's folder, a file
/// of the same shape, replaces all texts at once.
class Translation : public LanguageTexts {
 public:
  Translation();

  /// Chooses the language and loads its texts; once, at start. Returns the path of the language
  /// file that could not be had, empty when all is well. Then the texts are the German ones, and
  /// LanguageId is German for an English user and English for all others, on purpose: their next
  /// start is in English.
  Text Init_Sprache(const LanguageStart& start);

  /// The language in force as a Windows primary language number; what `Lang` has to hold from now
  /// on, so that the choice of the first start stays.
  int LanguageId() const { return LanguageId_; }

  /// Whether the translator's texts were asked for, be there any or not.
  bool TranslatorMode() const { return TranslatorMode_; }

  /// Puts the texts of a translator's file in force; nothing happens where there is none. The last
  /// record with a number wins; a broken file is reported to the fault log.
  void LoadTextFromFile(TextView path);

  Text text(int id) const override;

  /// The caption of a marked control, raw: neither "%!" nor "%1" is replaced. Empty, and the
  /// control keeps the caption that it has, where `idText` is no number or has no text.
  Text TL_Caption(TextView idText) const;

 private:
  Text loadLanguageFile(TextView programFolder);
  const CStringCollection& textsInForce() const;

  int LanguageId_ = kGerman;
  bool TranslatorMode_ = false;
  CStringCollection languageFile_;    // key "T" + number; empty: none is loaded
  CStringCollection translatorFile_;  // likewise
};

/// The fields of one line of a language file: a number, the German text, which nobody reads, and
/// the translation.
///
///   9075, "GELÖSCHT: %1", "DELETED: %1"
///
/// Fields are parted by commas. In double quotes a field may hold commas and outer blanks, and a
/// quote is written twice. What follows a closing quote is dropped, and a quote that is not closed
/// ends with the line.
std::vector<Text> splitRecord(TextView line);

}  // namespace ombrelian
