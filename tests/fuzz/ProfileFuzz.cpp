// Reads the input as a profile file, changes it, and checks that the changes can be read and that
// the rest is unchanged.

#include <cstdint>
#include <string_view>

#include "settings/IniText.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace ombrelian;
  const Text content = fromBytes({reinterpret_cast<const char*>(data), size});
  IniText file(content);
  if (file.text() != content) __builtin_trap();
  const auto before = file.value(u"Other", u"key");
  const Text kept = before ? Text(*before) : Text();
  file.setValue(u"Optionen", u"Delimiter", IniText::quoted(u" | "));
  const IniText again(file.text());
  const auto value = again.value(u"OPTIONEN", u"delimiter");
  if (!value || *value != u" | ") __builtin_trap();
  const auto after = again.value(u"Other", u"key");
  if (before.has_value() != after.has_value() || (after && *after != kept)) __builtin_trap();
  IniText shorter(again.text());
  shorter.deleteSection(u"Optionen");
  if (IniText(shorter.text()).value(u"Optionen", u"Delimiter")) __builtin_trap();
  return 0;
}
