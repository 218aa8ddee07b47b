// Reads each line of the input as a record of a language file, and the whole input as such a file.

#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <string>

#include "settings/z_Translate.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace ombrelian;
  static const std::string path = "/tmp/ombrelian-fuzz-" + std::to_string(getpid()) + ".txt";
  FILE* const file = std::fopen(path.c_str(), "wb");
  if (file == nullptr) return 0;
  std::fwrite(data, 1, size, file);
  std::fclose(file);
  Translation translation;
  translation.LoadTextFromFile(fromBytes(path));
  translation.text(9000);
  translation.TL_Caption(u"12");
  const Text line = fromBytes({reinterpret_cast<const char*>(data), size});
  if (splitRecord(line).empty()) __builtin_trap();  // even an empty line has one empty field
  std::remove(path.c_str());
  return 0;
}
