#include "settings/SettingsTable.h"

#include <charconv>
#include <cmath>
#include <concepts>
#include <limits>

#include "settings/IniText.h"

namespace ombrelian {
namespace {

using Form = SettingForm;
using Owner = SettingOwner;
using Use = SettingUse;

constexpr TextView kOptionen = u"Optionen";
constexpr int kLastTopList = kTopLists - 1;

/// The field at the end of a chain of members.
template <auto... members>
const auto& at(const Options& options, int list, int column) {
  const auto& field = (options.*....*members);
  if constexpr (
      requires { field[0][0]; } && !requires { field.npos; } && !requires { field[0].npos; }) {
    return field[std::size_t(list)][std::size_t(column)];
  } else if constexpr (
      requires { field[0]; } && !requires { field.npos; }) {
    return field[std::size_t(list) + std::size_t(column)];  // one of the two is 0
  } else {
    return field;
  }
}

constexpr SettingRow in(Owner owner, TextView section, TextView key, SettingField field,
                        Form form = Form::Plain, Use use = Use::Always) {
  return {section, key, field, owner, use, form};
}

constexpr SettingRow mine(TextView key, SettingField field, Use use = Use::Always) {
  return in(Owner::MainWindow, kOptionen, key, field, Form::Plain, use);
}

constexpr SettingRow dialog(TextView key, SettingField field, Use use = Use::Always) {
  return in(Owner::OptionsDialog, kOptionen, key, field, Form::Plain, use);
}

constexpr SettingRow dialog(TextView key, SettingField field, TextView dialogDefault) {
  SettingRow row = dialog(key, field);
  row.dialogDefault = dialogDefault;
  return row;
}

constexpr SettingRow top(TextView key, SettingField field, Use use = Use::Always) {
  SettingRow row = mine(key, field, use);
  row.lists = {0, kLastTopList};
  return row;
}

constexpr SettingRow each(TextView key, SettingField field) {
  SettingRow row = mine(key, field);
  row.lists = {0, kLists - 1};
  return row;
}

constexpr SettingRow unsetBy(int value, SettingRow row) {
  row.unset = value;
  return row;
}

constexpr SettingRow visible(TextView key, SettingField field, int columns, int lastList = 0) {
  SettingRow row = unsetBy(2, mine(key, field));
  row.lists = {0, lastList};
  row.columns = {0, columns - 1};
  return row;
}

/// A row for the positions of columns. The row number is left out, because it is always the first.
constexpr SettingRow order(TextView key, SettingField field, int columns, int lastList = 0) {
  SettingRow row = mine(key, field);
  row.form = Form::Position;
  row.lists = {0, lastList};
  row.columns = {1, columns - 1};
  return row;
}

// A field has the same name as its key, so each name is written only once.
#define KEY(name) u"" #name, &at<&Options::name>
#define TOP_KEY(name) u"" #name "%1", &at<&Options::name>
#define COLUMN_KEY(name) u"" #name "%2", &at<&Options::name>
#define KEY_IN(section, name) \
  u"" #section, u"" #name, &at<&Options::section, &decltype(Options::section)::name>
#define SAVE_FOLDERS_KEY(name) u"SaveFolders", KEY(name)

constexpr SettingRow kTable[] = {
    in(Owner::LanguageMenu, KEY_IN(Allgemein, Lang)),

    dialog(KEY(Kontextmenu), Use::NotAtStart),
    dialog(KEY(Instanz), Use::NotAtStart),
    dialog(KEY(WOW64)),
    dialog(KEY(UnicodeSupport), Use::NotAgain),
    dialog(KEY(DateFormat), u"dd/MM/yyyy hh:nn:ss"),
    dialog(KEY(ToolbarTheme), Use::NotAgain),
    unsetBy(99, dialog(KEY(DontCreateLogFile))),
    dialog(KEY(FilePreviewText)),
    dialog(KEY(FilePreviewIE), u"htm,html,png,pdf,doc,docx,xls,xlsx,ppt,pps,swf"),
    dialog(KEY(FilePreviewGrafik), u"bmp,gif,jpg,jpeg,ico,cur,emf,wmf,rle,pcx"),
    dialog(KEY(FilePreviewMedia),
           u"mp3,wav,snd,au,aif,aifc,aiff,wma,mid,rmi,midi,avi,mpeg,mpg,m1v,mp2,mpa,mpe,wmv,asf,"
           u"wm,mov,mp4"),

    mine(KEY(FontSize)),
    mine(KEY(FontName)),
    mine(KEY(BigIcons)),
    mine(KEY(SymbolText)),
    mine(KEY(GridLineStyle)),
    mine(KEY(DontShowBackgroundPictureAtGrid)),
    mine(KEY(DontShowButtonHideToolbars)),
    mine(KEY(ChangeFolderReportWidthAutomatically)),

    mine(KEY(CreateList100LargestFolders)),
    mine(KEY(CreateList100SmallestFolders)),
    mine(KEY(CreateList100SmallestFoldersIgnore)),
    mine(KEY(CreateList100SmallestFoldersIgnoreNumber)),
    mine(KEY(CreateList100LargestFiles)),
    mine(KEY(CreateList100LargestFilesInclude)),
    mine(KEY(CreateList100LargestFilesIncludeText)),
    mine(KEY(CreateList100SmallestFiles)),
    mine(KEY(CreateList100SmallestFilesIgnore)),
    mine(KEY(CreateList100SmallestFilesIgnoreNumber)),
    mine(KEY(CreateList100NewestFiles)),
    mine(KEY(CreateList100NewestFilesDate)),
    mine(KEY(CreateList100OldestFiles)),
    mine(KEY(CreateList100OldestFilesDate)),
    mine(KEY(CreateListHardlink)),
    mine(KEY(CreateListJunction)),
    mine(KEY(CreateListOwner)),
    mine(KEY(CreateListExt)),
    mine(KEY(CreateListExtInclude)),
    mine(KEY(CreateListExtIncludeText)),
    mine(KEY(ShowFolderOwner)),
    mine(KEY(AddHardlinksOnlyOnce)),
    mine(KEY(ShowHardlinkCount)),
    mine(KEY(NoHardlinks)),
    mine(KEY(ScanHardlinks)),

    mine(KEY(FolderColorFade)),
    mine(KEY(FolderShowPercentBar)),
    mine(KEY(FolderShowDriveLabel)),
    mine(KEY(FolderShowCreateDate)),
    mine(KEY(ShownSides)),
    mine(KEY(DiskinfoVisible)),
    mine(KEY(FilelistVisible)),
    mine(KEY(ToplistVisible)),
    mine(KEY(ToplistVisibleIndex)),
    mine(KEY(HardlinksVisible)),
    mine(KEY(JunctionsVisible)),
    mine(KEY(OwnerListVisible)),
    mine(KEY(ExtListVisible)),
    mine(KEY(LogListVisible)),
    mine(KEY(FilelistTile)),
    mine(KEY(FilePreview)),
    mine(KEY(HardlinksTile)),
    mine(KEY(HardlinkPreview)),

    mine(KEY(FileSizeFormat)),
    mine(KEY(FileSizeFormatDrive)),
    mine(KEY(FileSizeFormatFiles)),
    mine(KEY(FileSizeFormatHardlinks)),
    mine(KEY(FileSizeFormatOwner)),
    mine(KEY(FileSizeFormatExt)),
    top(TOP_KEY(FileSizeFormatTop)),
    mine(KEY(SizeFormatNachkommastellenFolders)),
    mine(KEY(SizeFormatNachkommastellenDrive)),
    mine(KEY(SizeFormatNachkommastellenFiles)),
    mine(KEY(SizeFormatNachkommastellenHardlinks)),
    mine(KEY(SizeFormatNachkommastellenOwner)),
    mine(KEY(SizeFormatNachkommastellenExt)),
    top(TOP_KEY(SizeFormatNachkommastellenTop)),
    mine(KEY(SizeFormatShowSizeTextFolders)),
    mine(KEY(SizeFormatShowSizeTextDrive)),
    mine(KEY(SizeFormatShowSizeTextFiles)),
    mine(KEY(SizeFormatShowSizeTextHardlinks)),
    mine(KEY(SizeFormatShowSizeTextOwner)),
    mine(KEY(SizeFormatShowSizeTextExt)),
    top(TOP_KEY(SizeFormatShowSizeTextTop)),
    mine(KEY(OptimizeColumnWidthAll_Folders)),
    mine(KEY(OptimizeColumnWidthAll_Files)),
    mine(KEY(OptimizeColumnWidthAll_Hardlinks)),
    mine(KEY(OptimizeColumnWidthAll_Junctions)),
    mine(KEY(OptimizeColumnWidthAll_Ext)),
    mine(KEY(OptimizeColumnWidthAll_Log)),
    top(TOP_KEY(OptimizeColumnWidthAll_Top)),
    mine(KEY(SearchVisibleReportFolders)),
    mine(KEY(SearchVisibleReportFiles)),
    mine(KEY(SearchVisibleReportHardlinks)),
    mine(KEY(SearchVisibleReportJunctions)),
    mine(KEY(SearchVisibleReportExt)),
    mine(KEY(SearchVisibleReportLog)),
    top(TOP_KEY(SearchVisibleReportTOP)),

    mine(KEY(FolderList_FilterFolderExclude_Active)),
    mine(KEY(FolderList_FilterFolderExclude_Text)),
    mine(KEY(FolderList_FilterFolderInclude_Active)),
    mine(KEY(FolderList_FilterFolderInclude_Text)),
    mine(KEY(FolderList_FilterFilesInclude_Active)),
    mine(KEY(FolderList_FilterFilesInclude_Text)),
    mine(KEY(FolderList_FilterFilesExclude_Active)),
    mine(KEY(FolderList_FilterFilesExclude_Text)),
    mine(KEY(FileList_Filter_Active)),
    mine(KEY(FileList_Filter_Text)),

    top(TOP_KEY(TopMaxCount)),
    top(TOP_KEY(TopShowIcons), Use::NeverRead),
    top(TOP_KEY(TopFilePreview)),
    top(TOP_KEY(TopSplitterOrientation)),
    mine(KEY(ComboText)),

    each(TOP_KEY(ColumnWidths)),
    visible(COLUMN_KEY(FolderColumnVisible), kFolderColumns),
    visible(COLUMN_KEY(DriveColumnVisible), kDriveColumns),
    visible(COLUMN_KEY(FileColumnVisible), kFileColumns),
    visible(COLUMN_KEY(HardlinkColumnVisible), kHardlinkColumns),
    visible(COLUMN_KEY(OwnerColumnVisible), kOwnerColumns),
    visible(COLUMN_KEY(ExtensionColumnVisible), kExtensionColumns),
    visible(COLUMN_KEY(JunctionColumnVisible), kJunctionColumns),
    visible(COLUMN_KEY(LogColumnVisible), kLogColumns),
    visible(u"TopColumnVisibleL%1C%2", &at<&Options::TopColumnVisible>, kTopColumns, kLastTopList),
    order(COLUMN_KEY(FolderColumnIndex), kFolderColumns),
    order(COLUMN_KEY(DriveColumnIndex), kDriveColumns),
    order(COLUMN_KEY(FileColumnIndex), kFileColumns),
    order(COLUMN_KEY(HardlinkColumnIndex), kHardlinkColumns),
    order(COLUMN_KEY(OwnerColumnIndex), kOwnerColumns),
    order(COLUMN_KEY(ExtensionColumnIndex), kExtensionColumns),
    order(COLUMN_KEY(JunctionColumnIndex), kJunctionColumns),
    order(COLUMN_KEY(LogColumnIndex), kLogColumns),
    order(u"TopColumnIndexL%1I%2", &at<&Options::TopColumnIndex>, kTopColumns, kLastTopList),

    in(Owner::DonateButton, KEY_IN(DonateOMB, ShowButton), Form::NotZero),
    in(Owner::FirstStart, KEY_IN(Form, TVW), Form::Plain, Use::NeverWritten),

    in(Owner::UpdateDialog, KEY_IN(InternetUpdate, UseProxy)),
    in(Owner::UpdateDialog, KEY_IN(InternetUpdate, ProxyName)),
    in(Owner::UpdateDialog, KEY_IN(InternetUpdate, ProxyPort)),
    in(Owner::UpdateDialog, KEY_IN(InternetUpdate, ProxyBenutzer)),
    in(Owner::UpdateDialog, KEY_IN(InternetUpdate, ProxyPasswort)),
    in(Owner::UpdateDialog, KEY_IN(InternetUpdate, Dpath)),
    in(Owner::UpdateDialog, KEY_IN(InternetUpdate, PrgStartVersionPruefen)),
    in(Owner::UpdateDialog, KEY_IN(InternetUpdate, UpdateBenutzeroberflaeche)),

    in(Owner::SaveDialog, SAVE_FOLDERS_KEY(Delimiter)),
    in(Owner::SaveDialog, SAVE_FOLDERS_KEY(DelimiterChars), Form::Quoted),
    in(Owner::SaveDialog, SAVE_FOLDERS_KEY(ShowIndent)),
    in(Owner::SaveDialog, SAVE_FOLDERS_KEY(FileFormat)),
    in(Owner::SaveDialog, SAVE_FOLDERS_KEY(DividingLine)),
    in(Owner::SaveDialog, SAVE_FOLDERS_KEY(OpenFile)),
    in(Owner::SaveDialog, SAVE_FOLDERS_KEY(FolderOpt)),
    in(Owner::SaveDialog, SAVE_FOLDERS_KEY(LevelOpt)),
    in(Owner::SaveDialog, SAVE_FOLDERS_KEY(Levels)),
    in(Owner::SaveDialog, KEY_IN(FolderReport, LastSaveDir)),
    in(Owner::SaveDialog, KEY_IN(FolderReport, LastSaveFileName)),

    in(Owner::SaveFilesDialog, KEY_IN(SaveFiles, Delimiter)),
    in(Owner::SaveFilesDialog, KEY_IN(SaveFiles, DelimiterChars), Form::Quoted),
    in(Owner::SaveFilesDialog, KEY_IN(SaveFiles, FileFormat)),
    in(Owner::SaveFilesDialog, KEY_IN(SaveFiles, DividingLine)),
    in(Owner::SaveFilesDialog, KEY_IN(SaveFiles, OpenFile)),
    in(Owner::SaveFilesDialog, KEY_IN(Report, LastSaveDir)),
    in(Owner::SaveFilesDialog, KEY_IN(Report, LastSaveFileName)),

    in(Owner::PrintDialog, KEY_IN(PrintFolders, FolderOpt)),
    in(Owner::PrintDialog, KEY_IN(PrintFolders, LevelOpt)),
    in(Owner::PrintDialog, KEY_IN(PrintFolders, HeaderOpt)),
    in(Owner::PrintDialog, KEY_IN(PrintFolders, PrinterOpt)),
    in(Owner::PrintDialog, KEY_IN(PrintFolders, Zoom)),
    in(Owner::PrintDialog, KEY_IN(PrintFolders, BlankColumns)),
    in(Owner::PrintDialog, KEY_IN(PrintFolders, Levels)),
    in(Owner::PrintDialog, KEY_IN(PrintFolders, Printers)),

    in(Owner::PrintFilesDialog, KEY_IN(PrintFiles, DataOpt)),
    in(Owner::PrintFilesDialog, KEY_IN(PrintFiles, HeaderOpt)),
    in(Owner::PrintFilesDialog, KEY_IN(PrintFiles, PrinterOpt)),
    in(Owner::PrintFilesDialog, KEY_IN(PrintFiles, Zoom)),
    in(Owner::PrintFilesDialog, KEY_IN(PrintFiles, Printers)),
};

#undef SAVE_FOLDERS_KEY
#undef KEY_IN
#undef COLUMN_KEY
#undef TOP_KEY
#undef KEY

// Conversion of values to text, with one overload for each type.

Text textOf(std::integral auto value) { return toText(std::int64_t(value)); }
Text textOf(const Text& value) { return value; }
Text textOf(double value) {
  char digits[32];
  return Text(digits, std::to_chars(digits, digits + sizeof digits, value).ptr);
}

template <class Integer>
bool parse(TextView text, Integer& value) {
  std::int64_t number = 0;
  if (!parseNumber(trimBlanks(text), number)) return false;
  using Limits = std::numeric_limits<Integer>;
  if (number < Limits::min() || number > Limits::max()) return false;
  value = Integer(number);
  return true;
}

bool parse(TextView text, Text& value) {
  value = text;
  return true;
}

/// Reads a fraction. A comma counts as a point, because files of German and other systems contain
/// it.
bool parse(TextView text, double& value) {
  std::string digits;
  for (const char16_t unit : trimBlanks(text))
    digits.push_back(unit == u',' ? '.' : unit < 0x80 ? char(unit) : '?');
  double number = 0;
  const char* const end = digits.data() + digits.size();
  const auto [stop, error] = std::from_chars(digits.data(), end, number);
  if (error != std::errc() || stop != end || !std::isfinite(number)) return false;
  value = number;
  return true;
}

}  // namespace

std::span<const SettingRow> settingsTable() { return kTable; }

Text settingKey(const SettingRow& row, int list, int column) {
  return replaceAll(replaceAll(row.key, u"%1", toText(list)), u"%2", toText(column));
}

Text settingText(const SettingRow& row, const Options& options, int list, int column) {
  return std::visit([&](auto field) { return textOf(field(options, list, column)); }, row.field);
}

Text storedSettingText(const SettingRow& row, const Options& options, int list, int column) {
  const Text text = settingText(row, options, list, column);
  return row.form == Form::Quoted ? u"\"" + text + u"\"" : IniText::quoted(text);
}

bool setSetting(const SettingRow& row, Options& options, int list, int column, TextView text) {
  if (row.form == Form::NotZero) text = text == u"0" ? u"0" : u"1";
  const Text unset = row.unset < 0 ? Text() : toText(row.unset);
  return std::visit(
      [&](auto field) {
        // The cast is safe, because `options` is not const here; the field returns const because
        // readers use it too.
        auto& value = const_cast<std::remove_cvref_t<decltype(field(options, 0, 0))>&>(
            field(options, list, column));
        if (!parse(text, value)) return false;
        if (!unset.empty() && textOf(value) == unset) value = field(Options(), list, column);
        return true;
      },
      row.field);
}

}  // namespace ombrelian
