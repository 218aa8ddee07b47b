#pragma once

#include <cstdint>

#include "support/Text.h"

namespace ombrelian {

/// Value for attributes that could not be read: every bit is set.
inline constexpr std::uint32_t kAttributesInvalid = UINT32_MAX;

/// The letters of the attribute bits (platform/FindData.h) that are set, in a fixed order. With
/// `brackets`, the result is prefix + "<" + letters + ">" if there are letters. kAttributesInvalid
/// gives an empty text.
Text xFormatFileAttribute(std::uint32_t attributes, bool brackets, TextView prefix);

/// One line for each letter, with its meaning; unknown letters are left out.
Text FormatToolTipText_Attribute(TextView letters);

}  // namespace ombrelian
