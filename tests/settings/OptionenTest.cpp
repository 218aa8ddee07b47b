#include "settings/Optionen.h"

#include <algorithm>
#include <set>

#include "platform/Locale.h"
#include "settings/FormPosition.h"
#include "settings/SavedFolders.h"
#include "tests/testing/RecordingSink.h"
#include "tests/testing/Testing.h"

namespace ombrelian {
namespace {

constexpr TextView kOptionen = u"Optionen";

class OptionenTest : public ::testing::Test {
 protected:
  /// Sets keys of the section "Optionen", each given as "key=value", and reads the options.
  Options load(TextView settings) {
    store.INI_DeleteSection(kOptionen);
    for (const TextView setting : testing::fields(settings)) {
      const auto sign = setting.find(u'=');
      store.INI_WriteString(kOptionen, setting.substr(0, sign), setting.substr(sign + 1));
    }
    Options options;
    Optionen_Laden(false, store, options);
    return options;
  }
  bool has(TextView section, TextView key) const {
    return store.INI_ReadString(section, key, kListEnd) != kListEnd;
  }

  const testing::TestFolder folder{testing::TestFolder::Place::Memory};
  IniStore store{folder.text("f.ini")};
  testing::RecordingSink sink;
};

/// A value different from `text`, for every kind of field; positions are exchanged in pairs.
Text anotherValue(const SettingRow& row, const Text& text, int column) {
  if (row.form == SettingForm::NotZero) return text == u"0" ? u"1" : u"0";
  if (row.form == SettingForm::Position) {
    if (row.columns.last % 2 == 1 && column == row.columns.last) return text;
    return toText(column % 2 == 1 ? column + 1 : column - 1);
  }
  if (std::holds_alternative<FieldOf<double>>(row.field)) return u"8.25";
  if (std::holds_alternative<FieldOf<std::uint8_t>>(row.field)) return text == u"1" ? u"0" : u"1";
  if (std::holds_alternative<FieldOf<std::int32_t>>(row.field)) return u"-2147483648";
  if (std::holds_alternative<FieldOf<std::int64_t>>(row.field)) return u"-9223372036854775808";
  return u" \"\u4E16 = ; " + text + u"\\ ";
}

TEST_F(OptionenTest, EveryKeySurvivesAndNoTwoAreOne) {
  Options changed;
  std::set<std::pair<Text, Text>> names;
  std::set<SettingOwner> owners;
  for (const SettingRow& row : settingsTable()) {
    owners.insert(row.owner);
    forEachKey(row, [&](int list, int column) {
      const Text key = settingKey(row, list, column);
      EXPECT_TRUE(names.emplace(asciiLower(row.section), asciiLower(key)).second) << toBytes(key);
      const Text value = settingText(row, Options(), list, column);
      const Text other = anotherValue(row, value, column);
      EXPECT_TRUE(setSetting(row, changed, list, column, other)) << toBytes(key);
      EXPECT_EQ(settingText(row, changed, list, column), other) << toBytes(key);
      return true;
    });
  }
  EXPECT_EQ(names.size(), 465U) << "a key more or less";
  for (const SettingOwner owner : owners)
    storeSettings(owner, changed, store);
  ASSERT_FALSE(store.flush());

  const IniStore reopened(store.path());
  Options loaded;
  for (const SettingOwner owner : owners)
    loadSettings(owner, reopened, loaded);
  Optionen_Laden(false, reopened, loaded);
  EXPECT_EQ(sink.faults, std::vector<Text>{});
  for (const SettingRow& row : settingsTable()) {
    const bool isLost = row.use == SettingUse::NeverRead || row.use == SettingUse::NeverWritten;
    const Options expected = isLost ? Options() : changed;
    forEachKey(row, [&](int list, int column) {
      const Text key = settingKey(row, list, column);
      EXPECT_EQ(settingText(row, loaded, list, column), settingText(row, expected, list, column))
          << toBytes(key);
      EXPECT_EQ(has(row.section, key), row.use != SettingUse::NeverWritten) << toBytes(key);
      return true;
    });
  }
}

TEST_F(OptionenTest, EachOwnerWritesItsOwnKeys) {
  const struct {
    SettingOwner owner;
    TextView section, key;
  } cases[] = {
      {SettingOwner::MainWindow, kOptionen, u"TopColumnVisibleL5C9"},
      {SettingOwner::MainWindow, kOptionen, u"ComboText"},
      {SettingOwner::OptionsDialog, kOptionen, u"Kontextmenu"},
      {SettingOwner::SaveDialog, u"SaveFolders", u"LevelOpt"},
      {SettingOwner::SaveDialog, u"FolderReport", u"LastSaveDir"},
      {SettingOwner::SaveFilesDialog, u"Report", u"LastSaveFileName"},
      {SettingOwner::PrintDialog, u"PrintFolders", u"BlankColumns"},
      {SettingOwner::PrintFilesDialog, u"PrintFiles", u"DataOpt"},
      {SettingOwner::UpdateDialog, u"InternetUpdate", u"Dpath"},
  };
  for (const auto& written : cases) {
    for (const auto& c : cases)
      store.INI_DeleteSection(c.section);
    storeSettings(written.owner, Options(), store);
    for (const auto& c : cases)
      EXPECT_EQ(has(c.section, c.key), c.owner == written.owner) << toBytes(c.key);
    EXPECT_FALSE(has(kOptionen, u"FolderColumnIndex0") || has(u"Form", u"TVW"));
  }
}

TEST_F(OptionenTest, OddValues) {
  EXPECT_EQ(load(u"FontSize=8,25").FontSize, 8.25);
  EXPECT_EQ(load(u"FontName=").FontName, u"") << "empty is not missing";
  EXPECT_EQ(load(u"DontCreateLogFile=99").DontCreateLogFile, 0);
  EXPECT_EQ(load(u"TopShowIcons2=0").TopShowIcons[2], 1);
  const Options columns = load(
      u"FolderColumnVisible1=0|FolderColumnVisible2=2|FolderColumnVisible3=2|"
      u"TopColumnVisibleL3C4=2|TopColumnVisibleL3C5=7");
  EXPECT_EQ(columns.FolderColumnVisible[1], 0);
  EXPECT_EQ(columns.FolderColumnVisible[2], 1);
  EXPECT_EQ(columns.FolderColumnVisible[3], 0);
  EXPECT_EQ(columns.TopColumnVisible[3][4], 1);
  EXPECT_EQ(columns.TopColumnVisible[3][5], 7);
  for (const auto& [index, list] : {std::pair(0, 0), {1, 1}, {5, 5}, {6, 0}, {-1, 0}})
    EXPECT_EQ(selectedTopList(load(u"ToplistVisibleIndex=" + toText(index))), list);
  EXPECT_EQ(load(u"FilePreviewIE=a,b").FilePreviewIELookup, u"/a/b/");
  EXPECT_EQ(load(u"none=").FilePreviewGrafikLookup, u"/bmp/jpg/jpeg/ico/cur/emf/wmf/rle/pcx/png/");
  for (const TextView value : {u"0", u"1", u"", u"no"}) {
    Options options;
    store.INI_WriteString(u"DonateOMB", u"ShowButton", value);
    loadSettings(SettingOwner::DonateButton, store, options);
    EXPECT_EQ(options.DonateOMB.ShowButton, value == u"0" ? 0 : 1) << toBytes(value);
  }
  store.INI_WriteString(u"SaveFolders", u"DelimiterChars", u"\"\"");
  Options options;
  loadSettings(SettingOwner::SaveDialog, store, options);
  EXPECT_EQ(options.DelimiterChars, u"");
  storeSettings(SettingOwner::SaveDialog, Options(), store);
  ASSERT_FALSE(store.flush());
  EXPECT_NE(testing::readReport(folder.path("f.ini")).find(u"DelimiterChars=\" | \"\r\n"),
            Text::npos);
  EXPECT_EQ(sink.faults, std::vector<Text>{});
}

TEST_F(OptionenTest, AFaultyValueEndsTheReadAndIsNamed) {
  for (const TextView value : {u"abc", u"", u"256", u"-1", u"1.5", u"0x1"}) {
    sink.faults.clear();
    sink.trace.clear();
    const Options options = load(u"FontName=Sans|BigIcons=1|GridLineStyle=" + Text(value) +
                                 u"|FolderColorFade=1|FolderColumnIndex1=2");
    EXPECT_EQ(options.BigIcons, 1) << toBytes(value);
    EXPECT_EQ(options.GridLineStyle, 3);
    EXPECT_EQ(options.FolderColorFade, 0);
    EXPECT_EQ(options.FilePreviewTextLookup.substr(0, 5), u"/txt/");
    EXPECT_EQ(sink.faults, std::vector<Text>{u"frmMain.Optionen_Laden 13"});
    EXPECT_EQ(sink.trace,
              std::vector<Text>{u"Faulty setting: [Optionen] GridLineStyle=" + Text(value)});
  }
  Options options;
  store.INI_WriteString(u"PrintFiles", u"Zoom", u"3000000000");
  store.INI_WriteString(u"PrintFiles", u"Printers", u"4");
  loadSettings(SettingOwner::PrintFilesDialog, store, options);
  EXPECT_EQ(options.PrintFiles.Zoom, 100);
  EXPECT_EQ(options.PrintFiles.Printers, 0);
  EXPECT_EQ(sink.faults.back(), u"frmPrintFiles.Form_Load 13");
}

TEST_F(OptionenTest, ALayoutIsTakenWholeOrNotAtAll) {
  const struct {
    TextView values;  // values of the three columns; empty: no key
    bool isWhole = false;
    std::size_t faults = 0;
  } cases[] = {{u"3|1|2", true}, {u"|1|2"},  {u"3|1|"},  {u"3|-1|2"},
               {u"3|1|3"},       {u"3|1|4"}, {u"3|1|0"}, {u"3|x|2", false, 1}};
  for (const auto& c : cases) {
    sink.faults.clear();
    store.INI_DeleteSection(kOptionen);
    const std::vector<Text> values = testing::fields(c.values);
    for (std::size_t i = 0; i < values.size(); ++i) {
      const Text key = u"JunctionColumnIndex" + toText(std::int64_t(i) + 1);
      if (!values[i].empty()) store.INI_WriteString(kOptionen, key, values[i]);
    }
    for (int i = 1; i < kTopColumns; ++i)
      store.INI_WriteString(kOptionen, u"TopColumnIndexL4I" + toText(i), toText(kTopColumns - i));
    Options options;
    options.JunctionColumnIndex = {0, 2, 1, 3};
    Optionen_Laden(false, store, options);
    const ColumnPositions<kJunctionColumns> whole = {0, 3, 1, 2};
    EXPECT_EQ(options.JunctionColumnIndex, c.isWhole ? whole : builtInOrder<kJunctionColumns>())
        << toBytes(c.values);
    EXPECT_EQ(options.TopColumnIndex[4][1], 9) << toBytes(c.values);
    EXPECT_EQ(options.TopColumnIndex[3][1], 1) << toBytes(c.values);
    EXPECT_EQ(sink.faults.size(), c.faults) << toBytes(c.values);
  }
}

TEST_F(OptionenTest, TheDialogHasItsOwnDefaultsAndWhatItWritesIsInForceAtOnce) {
  Options dialog;
  OptionenLaden(store, dialog);
  EXPECT_EQ(dialog.DateFormat, u"dd/MM/yyyy hh:nn:ss");
  EXPECT_EQ(dialog.FilePreviewGrafik, u"bmp,gif,jpg,jpeg,ico,cur,emf,wmf,rle,pcx");
  EXPECT_EQ(dialog.Kontextmenu, 1);
  EXPECT_EQ(dialog.FilePreviewText, Options().FilePreviewText);
  dialog.UnicodeSupport = 1;
  dialog.ToolbarTheme = 3;
  dialog.WOW64 = 0;
  OptionenSpeichern(dialog, store);
  store.INI_WriteString(kOptionen, u"BigIcons", u"1");

  Options options;
  Optionen_Laden(true, store, options);
  EXPECT_EQ(options.DateFormat, u"dd/MM/yyyy hh:nn:ss");
  EXPECT_EQ(options.WOW64, 0);
  EXPECT_EQ(options.FilePreviewIELookup, u"/htm/html/png/pdf/doc/docx/xls/xlsx/ppt/pps/swf/");
  EXPECT_EQ(options.UnicodeSupport, 0) << "from the next start on";
  EXPECT_EQ(options.ToolbarTheme, 7);
  EXPECT_EQ(options.BigIcons, 0) << "the main window's own";
  Optionen_Laden(false, store, options);
  EXPECT_TRUE(options.UnicodeSupport == 1 && options.BigIcons == 1);
}

TEST_F(OptionenTest, SavedFolders) {
  const std::vector<Text> items =
      testing::fields(u"/b|/|/A/\u4E16\xDC80|/B||/c |/gone|/line\nbreak|/\"q\"|'");
  store.INI_WriteString(u"ComboOrdner", u"O99", u"/old");
  Optionen_Speichern_SaveAllComboFolders(items, store);
  EXPECT_FALSE(has(u"ComboOrdner", u"O99"));
  ASSERT_FALSE(store.flush());
  const IniStore reopened(store.path());
  EXPECT_EQ(reopened.INI_ReadString(u"ComboOrdner", u"O0", {}), u"/b");
  EXPECT_EQ(reopened.INI_ReadString(u"ComboOrdner", u"O6", {}), u"'") << "no gaps";
  const auto exists = [](TextView path) { return path.starts_with(u"/") && path != u"/gone"; };
  const ComboFolders combo = GetAllSavedComboFolders(reopened, u"/B", exists);
  EXPECT_TRUE(std::is_sorted(combo.folders.begin(), combo.folders.end(), [](auto& a, auto& b) {
    return platform::localeTextRules().compare(a, b, false) < 0;
  })) << "so that /b and /B, which no order sets apart, are neighbours";
  const std::multiset<Text> paths = {u"/b", u"/B", u"/c ", u"/\"q\"", u"/A/\u4E16\xDC80"};
  EXPECT_EQ(std::multiset<Text>(combo.folders.begin(), combo.folders.end()), paths);
  ASSERT_GE(combo.selected, 0);
  EXPECT_EQ(combo.folders[std::size_t(combo.selected)], u"/B");

  const ComboFolders other = GetAllSavedComboFolders(reopened, u"typed text", exists);
  EXPECT_EQ(other.selected, -1);
  EXPECT_EQ(other.text, u"typed text");
}

TEST_F(OptionenTest, NetworkFolders) {
  const auto rows = testing::fields(u"/|\\\\srv\\share|C:\\|//srv/s|host:/data|C:/x|/a/b:/c");
  Optionen_Speichern_Drives_SaveNetworkFolders(rows, store);
  const std::vector<Text> saved = {u"\\\\srv\\share", u"//srv/s", u"host:/data"};
  EXPECT_EQ(Drives_LoadSavedNetworkFolders(store), saved);
  Optionen_Speichern_Drives_SaveNetworkFolders({}, store);
  EXPECT_EQ(Drives_LoadSavedNetworkFolders(store), saved) << "without rows nothing is known";
  Optionen_Speichern_Drives_SaveNetworkFolders({u"/"}, store);
  EXPECT_TRUE(Drives_LoadSavedNetworkFolders(store).empty());
}

TEST_F(OptionenTest, WindowPositions) {
  const FormPosition present = {7, 8, 600, 400, 1};
  const ScreenSize screen = {1000, 800};
  const struct {
    const char* what;
    std::optional<FormPosition> saved;
    bool positionOnly;
    FormPosition expected;
  } cases[] = {
      {"unknown: centred", {}, false, {200, 200, 600, 400, 0}},
      {"its size stays", {{10, 20, 300, 200, 0}}, true, {10, 20, 600, 400, 0}},
      {"at the edge", {{1000, 800, 1000, 800, 0}}, false, {1000, 800, 1000, 800, 0}},
      {"beyond the left", {{-1, 20, 300, 200, 0}}, false, {0, 20, 300, 200, 0}},
      {"beyond the right and the foot", {{1001, 801, 300, 200, 0}}, false, {0, 0, 300, 200, 0}},
      {"too large", {{10, 20, 1001, 9999, 0}}, false, {10, 20, 1000, 800, 0}},
      {"none starts minimised", {{10, 20, 300, 200, 1}}, false, {10, 20, 300, 200, 0}},
      {"maximised, with its rectangle", {{10, 20, 300, 200, 2}}, false, {10, 20, 300, 200, 2}},
  };
  for (const auto& c : cases) {
    store.INI_DeleteSection(u"frmMain");
    if (c.saved) SaveFormPosition(u"frmMain", *c.saved, store);
    EXPECT_EQ(LoadFormPosition(u"frmMain", c.positionOnly, present, screen, store), c.expected)
        << c.what;
  }
  EXPECT_EQ(LoadFormPosition(u"frmSave", false, present, screen, store).Left, 200);
  for (const TextView bad : {u"wide", u"", u"2147483648"}) {
    store.INI_WriteString(u"frmMain", u"Width", bad);
    EXPECT_EQ(LoadFormPosition(u"frmMain", false, present, screen, store), present) << toBytes(bad);
    EXPECT_EQ(sink.trace.back(), u"Faulty setting: [frmMain] Width=" + Text(bad));
  }
}

}  // namespace
}  // namespace ombrelian
