// Decodes the message of a later start, and encodes what was understood.

#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "frame/Instance.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace ombrelian;
  const auto message = decodeMessage({reinterpret_cast<const char*>(data), size});
  if (!message) return 0;
  const auto again = decodeMessage(encodeMessage(*message));
  if (!again || again->sources.size() != message->sources.size()) std::abort();
  return 0;
}
