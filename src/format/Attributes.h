#pragma once

#include <cstdint>

#include "support/Text.h"

namespace ombrelian {

/// What a failed read of attributes answers: every bit.
inline constexpr std::uint32_t kAttributesInvalid = UINT32_MAX;

/// The letters of the attribute bits (platform/FindData.h) that are set, in a fixed order. With
/// `brackets`, letters that are there stand as prefix + "<" + letters + ">". kAttributesInvalid
/// gives an empty text.
Text xFormatFileAttribute(std::uint32_t attributes, bool brackets, TextView prefix);

/// One line a letter, saying what it means; unknown letters are left out.
Text FormatToolTipText_Attribute(TextView letters);

}  // namespace ombrelian
