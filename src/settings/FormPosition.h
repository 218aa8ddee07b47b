#pragma once

#include "settings/z_INI.h"

namespace ombrelian {

/// Where a window stands, in twips, and how: 0 normal, 1 minimised, 2 maximised.
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

/// Where the window that is called `form` in the file belongs; it stands at `present` now. One that
/// is not known is centred. With `positionOnly` the size stays. `present` where the file holds no
/// numbers.
FormPosition LoadFormPosition(TextView form, bool positionOnly, const FormPosition& present,
                              const ScreenSize& screen, const IniStore& file);

/// `position` with the rectangle that the window has when it is neither minimised nor maximised.
void SaveFormPosition(TextView form, const FormPosition& position, IniStore& file);

}  // namespace ombrelian
