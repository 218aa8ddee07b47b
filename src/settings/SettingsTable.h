#pragma once

#include <span>
#include <variant>

#include "settings/Options.h"

namespace ombrelian {

/// Who writes a setting into the file.
enum class SettingOwner : std::uint8_t {
  MainWindow,  // at its end
  OptionsDialog,
  SaveDialog,
  SaveFilesDialog,
  PrintDialog,
  PrintFilesDialog,
  UpdateDialog,
  DonateButton,
  LanguageMenu,
  FirstStart,  // nobody: an older version did
};

/// When a setting passes between the file and the options.
enum class SettingUse : std::uint8_t {
  Always,
  NotAgain,    // a reload after the options dialog leaves it: it is in force from a start on
  NotAtStart,  // the options dialog alone reads it into the options
  NeverRead,   // each start begins with the default
  NeverWritten,
};

/// How a value stands in the file. Numbers are decimal, a fraction follows a point.
enum class SettingForm : std::uint8_t {
  Plain,     // a text gets quotes where it would lose something without them
  Quoted,    // a text that is always inside quotes
  NotZero,   // a flag that any text but "0" sets
  Position,  // position of a column; those of a list are read together or not at all
};

/// Where a value is in the options; of a family, by list and by column (0 where it has none).
template <class T>
using FieldOf = const T& (*)(const Options& options, int list, int column);
using SettingField =
    std::variant<FieldOf<std::uint8_t>, FieldOf<std::int32_t>, FieldOf<double>, FieldOf<Text>>;

/// The first and the last index of a family.
struct IndexRange {
  int first = 0;
  int last = 0;
};

/// A setting, or a family of them. The type of the field is that of the value, with its range; the
/// default is what a new Options has there.
struct SettingRow {
  TextView section;
  TextView key;  // "%1" stands for the list, "%2" for the column
  SettingField field;
  SettingOwner owner;
  SettingUse use = SettingUse::Always;
  SettingForm form = SettingForm::Plain;
  IndexRange lists = {};
  IndexRange columns = {};
  int unset = -1;               // a number that says in the file: take the default
  TextView dialogDefault = {};  // default of the options dialog, if it differs
};

/// All settings but those of window positions and lists of folders, in the order in which they are
/// read.
std::span<const SettingRow> settingsTable();

/// The key with its indices.
Text settingKey(const SettingRow& row, int list, int column);

/// The value as text.
Text settingText(const SettingRow& row, const Options& options, int list, int column);

/// The same as it has to stand in the file.
Text storedSettingText(const SettingRow& row, const Options& options, int list, int column);

/// Takes a value that was read. Returns false, and leaves the options, where `text` is no such
/// value.
bool setSetting(const SettingRow& row, Options& options, int list, int column, TextView text);

/// Calls `visit(list, column)` for each key of the row, until one returns false; returns false
/// then.
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
