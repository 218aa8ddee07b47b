#include "lists/ListTables.h"

#include "support/Translate.h"

namespace ombrelian {
namespace {

constexpr TextView kCountMask = u"*###,###,##0*;;;";

constexpr Column kTopFileTable[] = {
    {1, 3582, u"Dateiname", u"name", CellKind::PlainText},
    {2, 3583, u"Größe", u"size", CellKind::Size},
    {3, 3584, u"Endung", u"ext", CellKind::PlainText},
    {4, 3585, u"Typ", u"type", CellKind::PlainText},
    {5, 3586, u"Attribute", u"attr", CellKind::Attributes},
    {6, 3587, u"Änderungsdatum", u"datemodified", CellKind::Timestamp},
    {7, 3588, u"Erstellungsdatum", u"datecreate", CellKind::Timestamp},
    {8, 3589, u"Letzter Zugriff", u"dateaccess", CellKind::Timestamp},
    {9, 3728, u"Pfad", u"path", CellKind::PlainText},
};

constexpr Column kTopFolderTable[] = {
    {1, 3880, u"Ordnername", u"name", CellKind::PlainText},
    {2, 3583, u"Größe", u"size", CellKind::Size},
    {3, 3819, u"Dateien", u"files", CellKind::Count, kCountMask},
    {4, 3574, u"Ordner", u"folders", CellKind::Count, kCountMask},
    {5, 3586, u"Attribute", u"attr", CellKind::Attributes},
    {6, 3587, u"Änderungsdatum", u"datemodified", CellKind::Timestamp},
    {7, 3588, u"Erstellungsdatum", u"datecreate", CellKind::Timestamp},
    {8, 3589, u"Letzter Zugriff", u"dateaccess", CellKind::Timestamp},
    {9, 3728, u"Pfad", u"path", CellKind::PlainText},
};

constexpr Column kHardlinkTable[] = {
    {1, 3582, u"Dateiname", u"name", CellKind::PlainText},
    {2, 9112, u"ID", u"id", CellKind::PlainText},
    {3, 3790, u"Hardlinks", u"links", CellKind::Count, kCountMask},
    {4, 9113, u"Dateipfad", u"path", CellKind::PlainText},
    {5, 3583, u"Größe", u"size", CellKind::Size},
    {6, 3584, u"Endung", u"ext", CellKind::PlainText},
    {7, 3585, u"Typ", u"type", CellKind::PlainText},
    {8, 3586, u"Attribute", u"attr", CellKind::Attributes},
    {9, 3587, u"Änderungsdatum", u"datemodified", CellKind::Timestamp},
    {10, 3588, u"Erstellungsdatum", u"datecreate", CellKind::Timestamp},
    {11, 3589, u"Letzter Zugriff", u"dateaccess", CellKind::Timestamp},
};

constexpr Word kJunctionTypes[] = {
    {3736, u"Abzweigungspunkt"}, {3750, u"Verknüpfung"}, {3735, u"Symbolischer Link"}};

constexpr Column kJunctionTable[] = {
    {1, 3737, u"Junction", u"junction", CellKind::PlainText},
    {2, 3738, u"Zielordner", u"target", CellKind::PlainText},
    {3, 3585, u"Typ", u"type", CellKind::Choice, {}, kJunctionTypes},
};

constexpr Column kOwnerTable[] = {
    {1, 3801, u"Besitzer", u"owner", CellKind::PlainText},
    {2, 3583, u"Größe", u"size", CellKind::Size},
    {3, 3698, u"Prozent", u"percent", CellKind::Percent},
    {4, 3573, u"Dateien", u"files", CellKind::Count, kCountMask},
    {5, 3574, u"Ordner", u"folders", CellKind::Count, kCountMask},
};

constexpr Column kExtensionTable[] = {
    {1, 9110, u"Dateiendung", u"extname", CellKind::PlainText},
    {2, 3583, u"Größe", u"size", CellKind::Size},
    {3, 3698, u"Prozent", u"percent", CellKind::Percent},
    {4, 3573, u"Dateien", u"files", CellKind::Count, kCountMask},
    {5, 3585, u"Typ", u"type", CellKind::PlainText},
    {6, 9111, u"Verknüpfung", u"exe", CellKind::PlainText},
};

static_assert(idsCountFromOne(kTopFileTable, kTopColumns));
static_assert(idsCountFromOne(kTopFolderTable, kTopColumns));
static_assert(idsCountFromOne(kHardlinkTable, kHardlinkColumns));
static_assert(idsCountFromOne(kJunctionTable, kJunctionColumns));
static_assert(idsCountFromOne(kOwnerTable, kOwnerColumns));
static_assert(idsCountFromOne(kExtensionTable, kExtensionColumns));

constexpr ListFacts kListTable[] = {
    {u"largestFiles", 2238, u"Liste mit den größten Dateien", kTopFileTable, u"size", true},
    {u"smallestFiles", 2239, u"Liste mit den kleinsten Dateien", kTopFileTable, u"size", false},
    {u"newestFiles", 2240, u"Liste mit den neusten Dateien sortiert nach %1", kTopFileTable,
     u"datemodified", true},
    {u"oldestFiles", 2241, u"Liste mit den ältesten Dateien sortiert nach %1", kTopFileTable,
     u"datemodified", false},
    {u"largestFolders", 2242, u"Liste mit den größten Ordnern", kTopFolderTable, u"size", true},
    {u"smallestFolders", 2243, u"Liste mit den kleinsten Ordnern", kTopFolderTable, u"size", false},
    {u"hardlinks", 2237, u"Liste mit Hardlinks", kHardlinkTable, u"id", false},
    {u"junctions", 2236, u"Liste mit Junctions", kJunctionTable, u"junction", false},
    {u"owners", 2235, u"Liste mit Besitzern", kOwnerTable, u"size", true},
    {u"extensions", 2234, u"Liste mit Dateiendungen", kExtensionTable, u"size", true},
};
static_assert(std::size(kListTable) == kLists);

}  // namespace

const ListFacts& listFacts(ListId list) { return kListTable[std::size_t(list)]; }

ColumnLayout listLayout(const Options& options, ListId list) {
  switch (list) {
    case ListId::Hardlinks:
      return {options.HardlinkColumnVisible, options.HardlinkColumnIndex};
    case ListId::Junctions:
      return {{}, options.JunctionColumnIndex};
    case ListId::Owners:
      return {options.OwnerColumnVisible, options.OwnerColumnIndex};
    case ListId::Extensions:
      return {options.ExtensionColumnVisible, options.ExtensionColumnIndex};
    default:
      return {options.TopColumnVisible[std::size_t(list)],
              options.TopColumnIndex[std::size_t(list)]};
  }
}

SizeSettings listSizes(const Options& options, ListId list) {
  const auto settings = [](std::uint8_t unit, std::uint8_t decimals, std::uint8_t unitText) {
    return SizeSettings{unit, decimals != 0, unitText == 1};
  };
  switch (list) {
    case ListId::Hardlinks:
      return settings(options.FileSizeFormatHardlinks, options.SizeFormatNachkommastellenHardlinks,
                      options.SizeFormatShowSizeTextHardlinks);
    case ListId::Junctions:
      return {};
    case ListId::Owners:
      return settings(options.FileSizeFormatOwner, options.SizeFormatNachkommastellenOwner,
                      options.SizeFormatShowSizeTextOwner);
    case ListId::Extensions:
      return settings(options.FileSizeFormatExt, options.SizeFormatNachkommastellenExt,
                      options.SizeFormatShowSizeTextExt);
    default: {
      const auto top = std::size_t(list);
      return settings(options.FileSizeFormatTop[top], options.SizeFormatNachkommastellenTop[top],
                      options.SizeFormatShowSizeTextTop[top]);
    }
  }
}

void sortAsOpened(Grid& grid, ListId list) {
  const ListFacts& facts = listFacts(list);
  grid.sort(grid.column(facts.sortKey), facts.sortDescending);
}

void turnAllListsOn(Options& options) {
  for (std::uint8_t* const list :
       {&options.CreateList100LargestFiles, &options.CreateList100SmallestFiles,
        &options.CreateList100NewestFiles, &options.CreateList100OldestFiles,
        &options.CreateList100LargestFolders, &options.CreateList100SmallestFolders,
        &options.CreateListHardlink, &options.CreateListJunction, &options.CreateListOwner,
        &options.CreateListExt})
    *list = 1;
}

Text listTitle(const Options& options, ListId list) {
  const ListFacts& facts = listFacts(list);
  Text kind;
  if (list == ListId::NewestFiles) kind = dateKindCaption(options.CreateList100NewestFilesDate);
  if (list == ListId::OldestFiles) kind = dateKindCaption(options.CreateList100OldestFilesDate);
  return TL(facts.titleId, facts.title, {kind});
}

Text dateKindCaption(std::uint8_t kind) {
  switch (kind) {
    case 2:
      return TL(3588, u"Erstellungsdatum");
    case 3:
      return TL(3589, u"Letzter Zugriff");
    default:
      return TL(3587, u"Änderungsdatum");
  }
}

TextView dateKindColumn(std::uint8_t kind) {
  return kind == 2 ? u"datecreate" : kind == 3 ? u"dateaccess" : u"datemodified";
}

}  // namespace ombrelian
