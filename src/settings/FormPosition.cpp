#include "settings/FormPosition.h"

#include <algorithm>
#include <utility>

#include "settings/Optionen.h"
#include "support/Guard.h"

namespace ombrelian {
namespace {

constexpr TextView kModule = u"modMain";
constexpr TextView kLoad = u"LoadFormPosition";
constexpr std::int32_t kMaximised = 2;

/// The keys in the order in which they are written.
constexpr struct {
  TextView key;
  std::int32_t FormPosition::*member;
} kKeys[] = {{u"WindowState", &FormPosition::WindowState},
             {u"Left", &FormPosition::Left},
             {u"Top", &FormPosition::Top},
             {u"Width", &FormPosition::Width},
             {u"Height", &FormPosition::Height}};

/// Reads all keys into `position`; false: a value is faulty.
bool readKeys(TextView form, FormPosition& position, const IniStore& file) {
  for (const auto& [key, member] : kKeys) {
    const Text value = file.INI_ReadString(form, key, toText(position.*member));
    std::int64_t number = 0;
    if (!parseNumber(trimBlanks(value), number) || !std::in_range<std::int32_t>(number)) {
      reportFaultySetting(kModule, kLoad, form, key, value);
      return false;
    }
    position.*member = std::int32_t(number);
  }
  return true;
}

std::int32_t onScreen(std::int32_t edge, std::int32_t size) {
  return edge < 0 || edge > size ? 0 : edge;
}

}  // namespace

FormPosition LoadFormPosition(TextView form, bool positionOnly, const FormPosition& present,
                              const ScreenSize& screen, const IniStore& file) {
  return GuardedOr(
      kModule, kLoad,
      [&] {
        FormPosition position = present;
        position.Left = screen.Width / 2 - present.Width / 2;
        position.Top = screen.Height / 2 - present.Height / 2;
        position.WindowState = 0;
        if (!readKeys(form, position, file)) return present;
        position.Left = onScreen(position.Left, screen.Width);
        position.Top = onScreen(position.Top, screen.Height);
        position.Width = positionOnly ? present.Width : std::min(position.Width, screen.Width);
        position.Height = positionOnly ? present.Height : std::min(position.Height, screen.Height);
        // A window never starts minimised.
        if (position.WindowState != kMaximised) position.WindowState = 0;
        return position;
      },
      [&](const Error&) { return present; });
}

void SaveFormPosition(TextView form, const FormPosition& position, IniStore& file) {
  Guarded(kModule, u"SaveFormPosition", [&] {
    for (const auto& [key, member] : kKeys)
      file.INI_WriteString(form, key, toText(position.*member));
  });
}

}  // namespace ombrelian
