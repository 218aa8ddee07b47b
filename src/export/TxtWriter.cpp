#include "export/TxtWriter.h"

#include <algorithm>

#include "format/DatePattern.h"
#include "fs/z_Filesystem.h"
#include "platform/Locale.h"
#include "platform/Volumes.h"
#include "support/Translate.h"

namespace ombrelian {
namespace {

/// A source's path for the head of its block; a drive's with its label.
Text describeSource(const Text& name) {
  Text path = xRemoveBackslash(name);
  if (!platform::IsDriveRoot(name)) return path;
  Text ignored;
  const Text label = xGetDriveLabelW(name, ignored);
  return label.empty() ? path : path + u" [" + label + u"]";
}

}  // namespace

Text FormatTextWithSpacer(TextView text, std::size_t width, bool leftAlign) {
  Text padded(text);
  if (padded.size() < width) {
    padded.insert(leftAlign ? padded.size() : 0, width - padded.size(), u' ');
  }
  return padded;
}

TxtWriter::TxtWriter(ReportFile& file, const FolderReport& report, SaveSettings settings)
    : file_(file), report_(report), settings_(std::move(settings)) {
  for (const FolderColumn* const column : report.visibleColumns()) {
    Text caption = report.caption(*column);
    const std::size_t width = caption.size();
    slots_.push_back({column, std::move(caption), width});
  }
}

void TxtWriter::measure(NodeIndex node, const Text& name) {
  for (Slot& slot : slots_) {
    std::size_t width = 0;
    if (slot.column->id == FolderColumnId::Name) {
      width = name.size() + (settings_.indent ? report_.tree()[node].level : 0);
    } else {
      width = report_.cellText(*slot.column, node).size();
    }
    slot.width = std::max(slot.width, width);
  }
}

void TxtWriter::beginDocument() {
  header_ = composeHeader();
  dividingLine_ = composeDividingLine();
  file_.SaveLineToFile(u"Ombrelian - " + TL(2232, u"Ordnerliste"), true);
}

Text TxtWriter::composeHeader() const {
  Text line;
  for (const Slot& slot : slots_) {
    if (!line.empty()) line += settings_.delimiter;
    const Text padded = FormatTextWithSpacer(slot.caption, slot.width, true);
    line += platform::localeTextRules().upper(padded);
  }
  const bool endsInTarget = !slots_.empty() && slots_.back().column->id == FolderColumnId::Target;
  if (endsInTarget) line.erase(line.find_last_not_of(u' ') + 1);
  return line;
}

Text TxtWriter::composeDividingLine() const {
  Text line;
  for (const Slot& slot : slots_) {
    if (!line.empty()) line += settings_.delimiter;
    line.append(slot.width, u'-');
  }
  return line;
}

void TxtWriter::beginSource(NodeIndex source, const Text& name) {
  const Text created = formatGeneralDate(report_.tree().created(source));
  file_.SaveLineToFile(u"", true);
  file_.SaveLineToFile(TL(2245, u"Pfad: %1", {describeSource(name)}), true);
  file_.SaveLineToFile(TL(2246, u"Erstellt: %1", {created}) + u"\r\n", true);
  file_.SaveLineToFile(header_, true);
  writeDividingLine();
  writeRow(source, name);
}

void TxtWriter::row(NodeIndex node, const Text& name) { writeRow(node, name); }

void TxtWriter::writeRow(NodeIndex node, const Text& name) {
  file_.SaveLineToFile(FormatPrintValuesForTXT(node, name), true);
  writeDividingLine();
}

void TxtWriter::writeDividingLine() {
  if (settings_.dividingLine) file_.SaveLineToFile(dividingLine_, true);
}

Text TxtWriter::FormatPrintValuesForTXT(NodeIndex node, const Text& name) const {
  Text line;
  bool isFirst = true;
  for (const Slot& slot : slots_) {
    if (!isFirst) line += settings_.delimiter;
    isFirst = false;
    const FolderColumn& column = *slot.column;
    if (column.id == FolderColumnId::Name) {
      line += formatName(node, name, slot.width);
    } else if (column.id == FolderColumnId::Percent) {
      line += xFormatFileSizeWithSpacer(report_.percent(node), std::int32_t(slot.width));
    } else {
      line +=
          FormatTextWithSpacer(report_.cellText(column, node), slot.width, column.isLeftAligned());
    }
  }
  return line;
}

Text TxtWriter::formatName(NodeIndex node, const Text& name, std::size_t width) const {
  if (!settings_.indent) return FormatTextWithSpacer(name, width, true);
  const std::size_t level = report_.tree()[node].level;
  return Text(level, u' ') + FormatTextWithSpacer(name, width - level, true);
}

}  // namespace ombrelian
