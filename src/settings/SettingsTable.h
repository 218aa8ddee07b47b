#pragma once

#include <span>
#include <variant>

#include "settings/Options.h"

namespace ombrelian {

/// The part of the program that writes a setting into the file.
enum class SettingOwner : std::uint8_t {
  MainWindow,  // written when the window closes
  OptionsDialog,
  SaveDialog,
  SaveFilesDialog,
  PrintDialog,
  PrintFilesDialog,
  UpdateDialog,
  DonateButton,
  LanguageMenu,
  FirstStart,  // written only by an older version
};

/// When a setting passes between the file and the options.
enum class SettingUse : std::uint8_t {
  Always,
  NotAgain,    // read only at a start, not after the options dialog
  NotAtStart,  // only the options dialog reads it into the options
  NeverRead,   // every start uses the default
  NeverWritten,
};

/// Form of a value in the file. Numbers are decimal, with a point before a fraction.
enum class SettingForm : std::uint8_t {
  Plain,     // a text has quotes only if a read would change it without them
  Quoted,    // a text that always has quotes
  NotZero,   // a flag that every text except "0" sets
  Position,  // position of a column; all positions of a list are read, or none
};

/// Reference to a value in the options. For a family, `list` and `column` select the value (0 if
/// the family has no such index).
template <class T>
using FieldOf = const T& (*)(const Options& options, int list, int column);
using SettingField = std::variant<FieldOf<std::uint8_t>, FieldOf<std::int32_t>,
                                  FieldOf<std::int64_t>, FieldOf<double>, FieldOf<Text>>;

/// The first and the last index of a family.
struct IndexRange {
  int first = 0;
  int last = 0;
};

/// A setting, or a family of settings. The type of the field is the type of the value and gives its
/// range; the default is the value in a new Options.
struct SettingRow {
  TextView section;
  TextView key;  // "%1" is replaced by the list, "%2" by the column
  SettingField field;
  SettingOwner owner;
  SettingUse use = SettingUse::Always;
  SettingForm form = SettingForm::Plain;
  IndexRange lists = {};
  IndexRange columns = {};
  int unset = -1;               // number in the file that means the default
  TextView dialogDefault = {};  // default of the options dialog, if it differs
};

/// All settings except window positions and lists of folders, in the order in which they are read.
std::span<const SettingRow> settingsTable();

/// The key with its indices.
Text settingKey(const SettingRow& row, int list, int column);

/// The value as text.
Text settingText(const SettingRow& row, const Options& options, int list, int column);

/// The value as it is written to the file.
Text storedSettingText(const SettingRow& row, const Options& options, int list, int column);

/// Sets a value that was read. Returns false and does not change the options if `text` is not a
/// valid value.
bool setSetting(const SettingRow& row, Options& options, int list, int column, TextView text);

/// Calls `visit(list, column)` for each key of the row until a call returns false; returns false in
/// that case.
template <class Visit>
bool forEachKey(const SettingRow& row, Visit&& visit) {
  for (int list = row.lists.first; list <= row.lists.last; ++list) {
    for (int column = row.columns.first; column <= row.columns.last; ++column) {
      if (!visit(list, column)) return false;
    }
  }
  return true;
}

}  // namespace ombrelian
