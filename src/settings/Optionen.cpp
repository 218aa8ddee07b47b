#include "settings/Optionen.h"

#include <algorithm>

#include "support/Guard.h"

namespace ombrelian {
namespace {

constexpr std::int32_t kTypeMismatch = 13;
constexpr TextView kMainModule = u"frmMain";
constexpr TextView kNoPosition = u"-1";

/// Place of a fault, for the log.
struct Procedure {
  TextView module;
  TextView name;
};

/// The procedure of each SettingOwner.
constexpr Procedure kProcedures[] = {
    {kMainModule, u"Optionen_Laden"},     {u"frmOptionen", u"OptionenLaden"},
    {u"frmSave", u"Form_Load"},           {u"frmSaveFiles", u"Form_Load"},
    {u"frmPrint", u"Form_Load"},          {u"frmPrintFiles", u"Form_Load"},
    {u"frmInternetUpdate", u"Form_Load"}, {kMainModule, u"Init_Toolbar_Main"},
    {u"z_Translate", u"Init_Sprache"},    {kMainModule, u"Form_Load"},
};

/// The lists of extensions, and the texts that are searched instead of them.
constexpr struct {
  Text Options::*list;
  Text Options::*lookup;
} kLookups[] = {{&Options::FilePreviewText, &Options::FilePreviewTextLookup},
                {&Options::FilePreviewIE, &Options::FilePreviewIELookup},
                {&Options::FilePreviewGrafik, &Options::FilePreviewGrafikLookup},
                {&Options::FilePreviewMedia, &Options::FilePreviewMediaLookup}};

class Loader {
 public:
  Loader(const IniStore& file, Options& options, const Procedure& procedure)
      : file_(file), options_(options), procedure_(procedure) {}

  /// Reads all keys of the row; false: a value is faulty.
  bool load(const SettingRow& row, bool byDialog = false) {
    if (row.form == SettingForm::Position) return loadPositions(row);
    return forEachKey(row, [&](int list, int column) {
      const Text key = settingKey(row, list, column);
      const Text value =
          file_.INI_ReadString(row.section, key, defaultOf(row, list, column, byDialog));
      if (setSetting(row, options_, list, column, value)) return true;
      reportFaultySetting(procedure_.module, procedure_.name, row.section, key, value);
      return false;
    });
  }

  void takeDefault(const SettingRow& row) {
    forEachKey(row, [&](int list, int column) {
      return setSetting(row, options_, list, column, settingText(row, defaults_, list, column));
    });
  }

 private:
  Text defaultOf(const SettingRow& row, int list, int column, bool byDialog) const {
    if (byDialog && !row.dialogDefault.empty()) return Text(row.dialogDefault);
    return settingText(row, defaults_, list, column);
  }

  /// Reads the layouts of lists. A faulty layout affects only its own list.
  bool loadPositions(const SettingRow& row) {
    for (int list = row.lists.first; list <= row.lists.last; ++list) {
      SettingRow one = row;
      one.lists = {list, list};
      if (!readPositions(one)) takeDefault(one);
    }
    return true;
  }

  /// Reads the positions of the columns of one list; false unless each column has a different
  /// position.
  bool readPositions(const SettingRow& row) {
    std::vector<bool> isTaken(std::size_t(row.columns.last) + 1);
    return forEachKey(row, [&](int list, int column) {
      const Text key = settingKey(row, list, column);
      const Text value = file_.INI_ReadString(row.section, key, kNoPosition);
      if (value == kNoPosition) return false;
      if (!setSetting(row, options_, list, column, value)) {
        reportFaultySetting(kMainModule, u"Init_List_Load_Column_Positions", row.section, key,
                            value);
        return false;
      }
      std::int64_t position = 0;
      parseNumber(settingText(row, options_, list, column), position);
      if (position < row.columns.first || position > row.columns.last) return false;
      if (isTaken[std::size_t(position)]) return false;
      isTaken[std::size_t(position)] = true;
      return true;
    });
  }

  const IniStore& file_;
  Options& options_;
  const Procedure& procedure_;
  const Options defaults_;
};

bool isOfMainWindow(const SettingRow& row, bool onlyDialogOptions) {
  if (row.owner == SettingOwner::MainWindow) return !onlyDialogOptions;
  if (row.owner != SettingOwner::OptionsDialog || row.use == SettingUse::NotAtStart) return false;
  return !onlyDialogOptions || row.use != SettingUse::NotAgain;
}

void loadOptions(bool onlyDialogOptions, const IniStore& file, Options& options) {
  Loader loader(file, options, kProcedures[std::size_t(SettingOwner::MainWindow)]);
  for (const SettingRow& row : settingsTable()) {
    if (row.use == SettingUse::NeverRead && !onlyDialogOptions) loader.takeDefault(row);
  }
  for (const SettingRow& row : settingsTable()) {
    if (row.use == SettingUse::NeverRead || !isOfMainWindow(row, onlyDialogOptions)) continue;
    if (!loader.load(row)) return;
  }
}

}  // namespace

void Optionen_Laden(bool onlyDialogOptions, const IniStore& file, Options& options) {
  Guarded(kMainModule, u"Optionen_Laden", [&] {
    loadOptions(onlyDialogOptions, file, options);
    for (const auto& [list, lookup] : kLookups)
      options.*lookup = u"/" + replaceAll(options.*list, u",", u"/") + u"/";
  });
}

void Optionen_Speichern(const Options& options, IniStore& file) {
  Guarded(kMainModule, u"Optionen_Speichern",
          [&] { storeSettings(SettingOwner::MainWindow, options, file); });
}

void OptionenLaden(const IniStore& file, Options& dialogOptions) {
  loadSettings(SettingOwner::OptionsDialog, file, dialogOptions);
}

void OptionenSpeichern(const Options& dialogOptions, IniStore& file) {
  Guarded(u"frmOptionen", u"OptionenSpeichern",
          [&] { storeSettings(SettingOwner::OptionsDialog, dialogOptions, file); });
}

void loadSettings(SettingOwner owner, const IniStore& file, Options& options) {
  const Procedure& procedure = kProcedures[std::size_t(owner)];
  Guarded(procedure.module, procedure.name, [&] {
    Loader loader(file, options, procedure);
    for (const SettingRow& row : settingsTable()) {
      if (row.owner == owner && !loader.load(row, true)) return;
    }
  });
}

void storeSettings(SettingOwner owner, const Options& options, IniStore& file) {
  for (const SettingRow& row : settingsTable()) {
    if (row.owner != owner || row.use == SettingUse::NeverWritten) continue;
    forEachKey(row, [&](int list, int column) {
      file.INI_WriteString(row.section, settingKey(row, list, column),
                           storedSettingText(row, options, list, column));
      return true;
    });
  }
}

void reportFaultySetting(TextView module, TextView name, TextView section, TextView key,
                         TextView value) {
  const Text setting = Text(u"[").append(section).append(u"] ").append(key);
  reportTrace(u"Faulty setting: " + setting + u"=" + Text(value), {Text(module), Text(name)});
  reportFault(module, name, {kTypeMismatch, {}, u"Type mismatch"});
}

}  // namespace ombrelian
