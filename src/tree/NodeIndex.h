#pragma once

#include <cstdint>

namespace ombrelian {

/// A folder of the tree by its place in the array of nodes. The index is valid as long as the
/// folder is in the tree; afterwards the place may be given to another folder.
using NodeIndex = std::uint32_t;
inline constexpr NodeIndex kNoNode = UINT32_MAX;

}  // namespace ombrelian
