#pragma once

#include <optional>
#include <vector>

#include "support/CStringCollection.h"
#include "support/Translate.h"

namespace ombrelian {

inline constexpr int kGerman = 7;  // built in, needs no file
inline constexpr int kEnglish = 9;

/// Input for the choice of the language.
struct LanguageStart {
  Text programFolder;           // its folder "lang" contains the language files
  std::optional<int> stored;    // key `Lang` of section `Allgemein`; none or 0: the user's language
  bool translatorMode = false;  // the command line contained "-TLMODUS"
};

/// The language of a run, and its texts by number. A language other than German has a file of
/// records (see splitRecord); in translator mode "OmbrelianTL.txt" in the program's folder, a file
/// of the same shape, replaces all texts at once.
class Translation : public LanguageTexts {
 public:
  Translation();

  /// Chooses the language and loads its texts; called once at start. Returns an empty path, or the
  /// path of a language file that could not be loaded. In the second case the texts are German, and
  /// LanguageId is German for an English user and English for all others, on purpose: their next
  /// start is in English.
  Text Init_Sprache(const LanguageStart& start);

  /// The current language as a Windows primary language number. `Lang` must have this value from
  /// now on, so that the choice of the first start is kept.
  int LanguageId() const { return LanguageId_; }

  /// Whether translator mode was requested, even if there are no texts for it.
  bool TranslatorMode() const { return TranslatorMode_; }

  /// Uses the texts of a translator's file; nothing happens if the file does not exist. If several
  /// records have the same number, the last one counts. A broken file is reported to the fault log.
  void LoadTextFromFile(TextView path);

  Text text(int id) const override;

  /// The caption of a marked control; neither "%!" nor "%1" is replaced. It is empty if `idText` is
  /// not a number or has no text; the control then keeps its caption.
  Text TL_Caption(TextView idText) const;

 private:
  Text loadLanguageFile(TextView programFolder);
  const CStringCollection& textsInForce() const;

  int LanguageId_ = kGerman;
  bool TranslatorMode_ = false;
  CStringCollection languageFile_;    // key "T" + number; empty: none is loaded
  CStringCollection translatorFile_;  // key "T" + number; empty: none is loaded
};

/// The fields of one line of a language file: a number, the German text, which is not used, and the
/// translation.
///
///   9075, "GELÖSCHT: %1", "DELETED: %1"
///
/// Commas separate the fields. A field in double quotes may contain commas and outer blanks, and a
/// quote in it is written twice. Text after a closing quote is ignored, and a quote that is not
/// closed ends at the end of the line.
std::vector<Text> splitRecord(TextView line);

}  // namespace ombrelian
