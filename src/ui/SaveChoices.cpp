#include "ui/SaveChoices.h"

namespace ombrelian::ui {

SaveChoices folderSaveChoices(Options& options) {
  Options& o = options;
  return {o,
          SettingOwner::SaveDialog,
          u"frmSave",
          o.FolderReport,
          o.FileFormat,
          o.Delimiter,
          o.DelimiterChars,
          o.DividingLine,
          o.OpenFile,
          TreeChoices{o.ShowIndent, o.FolderOpt, o.LevelOpt, o.Levels}};
}

SaveChoices listSaveChoices(Options& options) {
  SaveFilesOptions& o = options.SaveFiles;
  return {options,          SettingOwner::SaveFilesDialog,
          u"frmSaveFiles",  options.Report,
          o.FileFormat,     o.Delimiter,
          o.DelimiterChars, o.DividingLine,
          o.OpenFile,       std::nullopt};
}

}  // namespace ombrelian::ui
