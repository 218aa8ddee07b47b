#include "frame/ViewSettings.h"

namespace ombrelian {
namespace {

ViewSettings topSettings(Options& options, std::size_t top) {
  return {&options.FileSizeFormatTop[top],
          &options.SizeFormatNachkommastellenTop[top],
          &options.SizeFormatShowSizeTextTop[top],
          &options.OptimizeColumnWidthAll_Top[top],
          &options.SearchVisibleReportTOP[top],
          options.TopColumnVisible[top],
          options.TopColumnIndex[top]};
}

}  // namespace

ViewSettings viewSettings(Options& options, ViewId view) {
  Options& o = options;
  switch (view) {
    case ViewId::Folders:
      return {&o.FileSizeFormat,
              &o.SizeFormatNachkommastellenFolders,
              &o.SizeFormatShowSizeTextFolders,
              &o.OptimizeColumnWidthAll_Folders,
              &o.SearchVisibleReportFolders,
              o.FolderColumnVisible,
              o.FolderColumnIndex};
    case ViewId::Drives:
      return {&o.FileSizeFormatDrive,
              &o.SizeFormatNachkommastellenDrive,
              &o.SizeFormatShowSizeTextDrive,
              nullptr,
              nullptr,
              o.DriveColumnVisible,
              o.DriveColumnIndex};
    case ViewId::Files:
      return {&o.FileSizeFormatFiles,
              &o.SizeFormatNachkommastellenFiles,
              &o.SizeFormatShowSizeTextFiles,
              &o.OptimizeColumnWidthAll_Files,
              &o.SearchVisibleReportFiles,
              o.FileColumnVisible,
              o.FileColumnIndex};
    case ViewId::Hardlinks:
      return {&o.FileSizeFormatHardlinks,
              &o.SizeFormatNachkommastellenHardlinks,
              &o.SizeFormatShowSizeTextHardlinks,
              &o.OptimizeColumnWidthAll_Hardlinks,
              &o.SearchVisibleReportHardlinks,
              o.HardlinkColumnVisible,
              o.HardlinkColumnIndex};
    case ViewId::Junctions:
      return {nullptr,
              nullptr,
              nullptr,
              &o.OptimizeColumnWidthAll_Junctions,
              &o.SearchVisibleReportJunctions,
              {},
              o.JunctionColumnIndex};
    case ViewId::Owners:
      return {&o.FileSizeFormatOwner,
              &o.SizeFormatNachkommastellenOwner,
              &o.SizeFormatShowSizeTextOwner,
              nullptr,
              nullptr,
              o.OwnerColumnVisible,
              o.OwnerColumnIndex};
    case ViewId::Extensions:
      return {&o.FileSizeFormatExt,         &o.SizeFormatNachkommastellenExt,
              &o.SizeFormatShowSizeTextExt, &o.OptimizeColumnWidthAll_Ext,
              &o.SearchVisibleReportExt,    o.ExtensionColumnVisible,
              o.ExtensionColumnIndex};
    case ViewId::Log:
      return {nullptr, nullptr, nullptr, &o.OptimizeColumnWidthAll_Log, &o.SearchVisibleReportLog,
              {},      {}};
    default:
      return topSettings(options, topIndex(view));
  }
}

std::uint8_t& viewFlag(Options& options, ViewId view) {
  switch (view) {
    case ViewId::Drives:
      return options.DiskinfoVisible;
    case ViewId::Files:
      return options.FilelistVisible;
    case ViewId::Hardlinks:
      return options.HardlinksVisible;
    case ViewId::Junctions:
      return options.JunctionsVisible;
    case ViewId::Owners:
      return options.OwnerListVisible;
    case ViewId::Extensions:
      return options.ExtListVisible;
    case ViewId::Log:
      return options.LogListVisible;
    default:
      return options.ToplistVisible;
  }
}

ViewId visibleView(const Options& options) {
  if (options.DiskinfoVisible == 1) return ViewId::Drives;
  if (options.FilelistVisible == 1) return ViewId::Files;
  if (options.ToplistVisible == 1) {
    return ViewId(int(ViewId::LargestFiles) + selectedTopList(options));
  }
  if (options.HardlinksVisible == 1) return ViewId::Hardlinks;
  if (options.JunctionsVisible == 1) return ViewId::Junctions;
  if (options.OwnerListVisible == 1) return ViewId::Owners;
  if (options.ExtListVisible == 1) return ViewId::Extensions;
  if (options.LogListVisible == 1) return ViewId::Log;
  return ViewId::Drives;
}

void showView(Options& options, ViewId view) {
  for (const ViewId other : {ViewId::Drives, ViewId::Files, ViewId::LargestFiles, ViewId::Hardlinks,
                             ViewId::Junctions, ViewId::Owners, ViewId::Extensions, ViewId::Log}) {
    viewFlag(options, other) = 0;
  }
  viewFlag(options, view) = 1;
  if (isTopList(view)) options.ToplistVisibleIndex = std::int32_t(topIndex(view));
}

}  // namespace ombrelian
