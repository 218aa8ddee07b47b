#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "format/Sizes.h"
#include "support/Text.h"

namespace ombrelian {

/// What a cell's raw value is, which decides how it is shown, compared and exported.
enum class CellKind : std::uint8_t {
  PlainText,
  Size,        // bytes; kNoNumber: none
  Percent,     // a real number; kNoReal: none
  Count,       // shown by the column's mask; kNoNumber: none
  Number,      // shown as it is
  Timestamp,   // a Date; 0: none
  Attributes,  // bits; kAttributesInvalid: none
  Choice,      // one of the column's three words
};

/// A text with its number.
struct Word {
  int id;
  TextView german;
};

/// One column of a list. A list is a table of these, in the order of their ids from 1 on; the row
/// number in front of them, kRowNumberColumn, is no part of the table.
struct Column {
  int id;  // its number in the settings file
  int captionId;
  TextView caption;
  TextView key;  // name of the field in formats that name fields
  CellKind kind;
  TextView mask = {};           // mask of a Count
  const Word* words = nullptr;  // words of a Choice for values above zero, below zero, and zero
  SizeKind sizeKind = SizeKind::OfRow;  // which size a Size column shows

  bool isText() const { return kind == CellKind::PlainText; }
  bool isReal() const { return kind == CellKind::Percent || kind == CellKind::Timestamp; }

  /// Texts and dates are aligned at the left, numbers at the right.
  bool isLeftAligned() const {
    return isText() || kind == CellKind::Timestamp || kind == CellKind::Attributes ||
           kind == CellKind::Choice;
  }
};

/// The columns of one list.
using Columns = std::span<const Column>;

/// Whether the ids of a table count from 1, and fill `slots` of settings with the row number's.
constexpr bool idsCountFromOne(Columns columns, int slots) {
  int id = 0;
  for (const Column& column : columns) {
    if (column.id != ++id) return false;
  }
  return id + 1 == slots;
}

/// Where a row stands, counted from 1; no list keeps it among its values.
inline constexpr Column kRowNumberColumn = {0, 0, u"#", u"linenumber", CellKind::Number};

/// What the settings say of a list's columns, each by column id.
struct ColumnLayout {
  std::span<const std::uint8_t> visible;    // 1: shown; empty: all are
  std::span<const std::int32_t> positions;  // empty: as in the table
};

/// The columns to show, in display order. The first column of the table is always there.
std::vector<const Column*> visibleColumns(Columns columns, const ColumnLayout& layout);

/// The same with the row number where the user has it shown.
std::vector<const Column*> visibleColumnsAndNumber(Columns columns, const ColumnLayout& layout);

}  // namespace ombrelian
