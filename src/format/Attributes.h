#pragma once

#include <cstdint>

#include "support/Text.h"

namespace ombrelian {

/// Attribute bits of files and folders, numbered as Windows numbers them on every system.
inline constexpr std::int32_t kAttributeReadOnly = 0x1;
inline constexpr std::int32_t kAttributeHidden = 0x2;
inline constexpr std::int32_t kAttributeSystem = 0x4;
inline constexpr std::int32_t kAttributeDirectory = 0x10;
inline constexpr std::int32_t kAttributeArchive = 0x20;
inline constexpr std::int32_t kAttributeDevice = 0x40;
inline constexpr std::int32_t kAttributeNormal = 0x80;
inline constexpr std::int32_t kAttributeTemporary = 0x100;
inline constexpr std::int32_t kAttributeSparse = 0x200;
inline constexpr std::int32_t kAttributeReparsePoint = 0x400;
inline constexpr std::int32_t kAttributeCompressed = 0x800;
inline constexpr std::int32_t kAttributeOffline = 0x1000;
inline constexpr std::int32_t kAttributeNotContentIndexed = 0x2000;
inline constexpr std::int32_t kAttributeEncrypted = 0x4000;

/// What a failed read of attributes answers: every bit.
inline constexpr std::int32_t kAttributesInvalid = -1;

/// The letters of the bits that are set, in a fixed order. With `brackets`, letters that are there
/// stand as prefix + "<" + letters + ">". kAttributesInvalid gives an empty text.
Text xFormatFileAttribute(std::int32_t attributes, bool brackets, TextView prefix);

/// One line a letter, saying what it means; unknown letters are left out.
Text FormatToolTipText_Attribute(TextView letters);

}  // namespace ombrelian
