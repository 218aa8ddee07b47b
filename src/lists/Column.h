#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "format/Sizes.h"
#include "support/Text.h"

namespace ombrelian {

/// Kind of the raw value of a cell. It decides how the cell is shown, compared and exported.
enum class CellKind : std::uint8_t {
  PlainText,
  Size,        // bytes; kNoNumber: none
  Percent,     // a real number; kNoReal: none
  Count,       // shown with the mask of the column; kNoNumber: none
  Number,      // shown without a mask
  Timestamp,   // a Date; 0: none
  Attributes,  // bits; kAttributesInvalid: none
  Choice,      // one of the three words of the column
};

/// A text and its text number.
struct Word {
  int id;
  TextView german;
};

/// One column of a list. A list has a table of columns, in the order of their ids from 1 on. The
/// row number in front of them, kRowNumberColumn, is not part of the table.
struct Column {
  int id;  // number of the column in the settings file
  int captionId;
  TextView caption;
  TextView key;  // name of the field in formats with named fields
  CellKind kind;
  TextView mask = {};           // mask of a Count
  const Word* words = nullptr;  // words of a Choice for values above zero, below zero, and zero
  SizeKind sizeKind = SizeKind::OfRow;  // which size a Size column shows

  bool isText() const { return kind == CellKind::PlainText; }
  bool isReal() const { return kind == CellKind::Percent || kind == CellKind::Timestamp; }

  /// Whether cells are aligned at the left, as texts and dates are; numbers are aligned at the
  /// right.
  bool isLeftAligned() const {
    return isText() || kind == CellKind::Timestamp || kind == CellKind::Attributes ||
           kind == CellKind::Choice;
  }
};

/// The columns of one list.
using Columns = std::span<const Column>;

/// Whether the ids of a table count from 1, and whether there are `slots` settings, including the
/// row number.
constexpr bool idsCountFromOne(Columns columns, int slots) {
  int id = 0;
  for (const Column& column : columns) {
    if (column.id != ++id) return false;
  }
  return id + 1 == slots;
}

/// The row number, counted from 1. It is not stored with the values of a list.
inline constexpr Column kRowNumberColumn = {0, 0, u"#", u"linenumber", CellKind::Number};

/// Settings for the columns of a list, with the column ids as indices.
struct ColumnLayout {
  std::span<const std::uint8_t> visible;    // 1: the column is shown; empty: all columns are
  std::span<const std::int32_t> positions;  // position of each column; empty: order of the table
};

/// The columns to show, in display order. The first column of the table is always shown.
std::vector<const Column*> visibleColumns(Columns columns, const ColumnLayout& layout);

/// The same, and the row number if the user shows it.
std::vector<const Column*> visibleColumnsAndNumber(Columns columns, const ColumnLayout& layout);

}  // namespace ombrelian
