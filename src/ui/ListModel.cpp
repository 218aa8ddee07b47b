#include "ui/ListModel.h"

#include <QMimeData>
#include <QUrl>
#include <exception>
#include <set>
#include <unordered_map>

#include "support/Translate.h"
#include "ui/Desktop.h"
#include "ui/Icons.h"
#include "ui/Messages.h"
#include "ui/QtText.h"

namespace ombrelian::ui {

ListModel::ListModel(RowSource& rows, QObject* parent) : QAbstractTableModel(parent), rows_(rows) {}

int ListModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() || isFrozen_ ? 0 : int(rows_.count());
}

int ListModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : int(rows_.columns().size()) + 1;
}

const Column* ListModel::column(int section) const {
  return section > 0 ? &rows_.columns()[std::size_t(section - 1)] : nullptr;
}

QVariant ListModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const auto row = std::size_t(index.row());
  const Column* const shown = column(index.column());
  switch (role) {
    case Qt::DisplayRole:
      if (shown == nullptr) return {};  // the view draws the row number
      return shownOnOneLine(rows_.shown(row, *shown));
    case Qt::EditRole:
      return shown == nullptr ? QVariant()
                              : toQString(rows_.cells().text(rows_.cellRow(row), *shown));
    case Qt::ToolTipRole:
      return shown == nullptr ? QVariant()
                              : plainToolTip(toQString(rows_.toolTip(row, *shown)).remove(u'\r'));
    case Qt::TextAlignmentRole:
      return int(shown != nullptr && shown->isLeftAligned() ? Qt::AlignLeft | Qt::AlignVCenter
                                                            : Qt::AlignRight | Qt::AlignVCenter);
    case Qt::DecorationRole:
      if (const char* const name = rows_.look(row).icon; index.column() == 1 && *name != '\0')
        return icon(name);
      return {};
    case Qt::AccessibleTextRole:
      return shown == nullptr ? QString::number(index.row() + 1) : accessibleText(row, *shown);
    default:
      return {};
  }
}

/// The text of a cell for a screen reader, which reads cells one by one: the column, the value, and
/// in a tree the level of the row and whether the row is expanded.
QString ListModel::accessibleText(std::size_t row, const Column& column) const {
  QString value = toQString(rows_.shown(row, column));
  if (column.id != 1)
    return toQString(rows_.format().caption(column)) + QStringLiteral(": ") + value;
  const RowLook look = rows_.look(row);
  if (!look.canExpand) return value;
  const Text state = look.isExpanded ? TL(9540, u"aufgeklappt") : TL(9541, u"zugeklappt");
  return value + QStringLiteral(", ") +
         toQString(TL(9542, u"Ebene %1, %2", {ombrelian::toText(look.level), state}));
}

QVariant ListModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation == Qt::Vertical) return {};
  const Column* const shown = column(section);
  switch (role) {
    case Qt::DisplayRole:
      return shown == nullptr ? QStringLiteral("#") : toQString(rows_.format().caption(*shown));
    case Qt::TextAlignmentRole:
      return int(shown != nullptr && shown->isLeftAligned() ? Qt::AlignLeft | Qt::AlignVCenter
                                                            : Qt::AlignRight | Qt::AlignVCenter);
    default:
      return {};
  }
}

Qt::ItemFlags ListModel::flags(const QModelIndex& index) const {
  if (!index.isValid()) return Qt::NoItemFlags;
  Qt::ItemFlags flags =
      Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren | Qt::ItemIsDragEnabled;
  if (canEdit(index)) flags |= Qt::ItemIsEditable;
  return flags;
}

bool ListModel::canEdit(const QModelIndex& index) const {
  const Column* const shown = column(index.column());
  return !isReadOnly_ && shown != nullptr && rows_.canRename(std::size_t(index.row()), *shown);
}

QStringList ListModel::mimeTypes() const { return {QStringLiteral("text/uri-list")}; }

QMimeData* ListModel::mimeData(const QModelIndexList& indexes) const {
  std::set<int> rows;
  for (const QModelIndex& index : indexes)
    rows.insert(index.row());
  QList<QUrl> urls;
  for (const int row : rows) {
    const Text path = rows_.path(std::size_t(row));
    if (!path.empty()) urls.append(urlOf(path));
  }
  if (urls.isEmpty()) return nullptr;
  auto* const dragged = new QMimeData;
  dragged->setUrls(urls);
  return dragged;
}

bool ListModel::setData(const QModelIndex& index, const QVariant& value, int role) {
  if (role != Qt::EditRole || !canEdit(index)) return false;
  const Column* const shown = column(index.column());
  const auto row = std::size_t(index.row());
  const Text name = toText(value.toString());
  if (name.empty() || name == rows_.cells().text(rows_.cellRow(row), *shown)) return false;
  bool replaces = false;
  if (rows_.isNameTaken(row, name)) {
    Q_EMIT nameTaken(value.toString(), &replaces);
    if (!replaces) return false;
  }
  Text error;
  const auto rename = [&] { error = rows_.rename(row, name); };
  // The row of the replaced object is removed.
  replaces ? rearrange(rename) : rename();
  if (!error.empty()) {
    Q_EMIT renameFailed(toQString(error));
    return false;
  }
  Q_EMIT dataChanged(this->index(index.row(), 0), this->index(index.row(), columnCount() - 1));
  Q_EMIT renamed();
  return true;
}

void ListModel::rearrange(const std::function<void()>& change) {
  Q_EMIT layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
  const QModelIndexList before = persistentIndexList();
  std::vector<RowSource::Id> ids;
  for (const QModelIndex& index : before)
    ids.push_back(rows_.id(std::size_t(index.row())));
  // The views must hear of the end of the change even if it failed.
  std::exception_ptr failure;
  try {
    change();
  } catch (...) {
    failure = std::current_exception();
  }
  QModelIndexList after;
  std::unordered_map<RowSource::Id, std::size_t> places;
  for (qsizetype i = 0; i < before.size(); ++i) {
    const auto [place, isNew] = places.try_emplace(ids[std::size_t(i)]);
    if (isNew) place->second = rows_.rowOf(place->first);
    after.append(place->second == RowSource::kNoRow
                     ? QModelIndex()
                     : index(int(place->second), before[i].column()));
  }
  changePersistentIndexList(before, after);
  Q_EMIT layoutChanged({}, QAbstractItemModel::VerticalSortHint);
  if (failure) std::rethrow_exception(failure);
}

void ListModel::sortBy(const Column& column, bool descending) {
  rearrange([&] { rows_.sort(column, descending); });
}

void ListModel::replace(const std::function<void()>& change) {
  beginResetModel();
  change();
  endResetModel();
}

void ListModel::insertRowsAt(std::size_t first, std::size_t count,
                             const std::function<void()>& change) {
  if (count > 0) beginInsertRows({}, int(first), int(first + count) - 1);
  change();
  if (count > 0) endInsertRows();
}

void ListModel::removeRowsAt(std::size_t first, std::size_t count,
                             const std::function<void()>& change) {
  if (count > 0) beginRemoveRows({}, int(first), int(first + count) - 1);
  change();
  if (count > 0) endRemoveRows();
}

void ListModel::setFrozen(bool frozen) {
  if (frozen == isFrozen_) return;
  replace([&] { isFrozen_ = frozen; });
}

void ListModel::showAnew() {
  Q_EMIT headerDataChanged(Qt::Horizontal, 0, columnCount() - 1);
  if (rowCount() > 0) Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
}

}  // namespace ombrelian::ui
