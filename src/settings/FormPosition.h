#pragma once

#include "settings/z_INI.h"

namespace ombrelian {

/// Position and size of a window in twips, and its state: 0 normal, 1 minimised, 2 maximised.
struct FormPosition {
  std::int32_t Left = 0;
  std::int32_t Top = 0;
  std::int32_t Width = 0;
  std::int32_t Height = 0;
  std::int32_t WindowState = 0;

  bool operator==(const FormPosition&) const = default;
};

struct ScreenSize {
  std::int32_t Width = 0;  // twips
  std::int32_t Height = 0;
};

/// The stored position of the window that is called `form` in the file; its current position is
/// `present`. An unknown window is centred. With `positionOnly` the size does not change. The
/// result is `present` if the values in the file are not numbers.
FormPosition LoadFormPosition(TextView form, bool positionOnly, const FormPosition& present,
                              const ScreenSize& screen, const IniStore& file);

/// Stores a position. `position` has the rectangle of the window in its normal state.
void SaveFormPosition(TextView form, const FormPosition& position, IniStore& file);

}  // namespace ombrelian
