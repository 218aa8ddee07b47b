#pragma once

#include <cstdio>
#include <cstdlib>
#include <memory>

namespace ombrelian::platform {

struct CRelease {
  void operator()(char* text) const { std::free(text); }
  void operator()(FILE* file) const { std::fclose(file); }
};

/// Text and files that the C library hands out, released also where an exception passes.
using CText = std::unique_ptr<char, CRelease>;
using CFile = std::unique_ptr<FILE, CRelease>;

/// Opens a file for reading that no other program inherits; null on failure.
inline CFile openForReading(const char* path) { return CFile(std::fopen(path, "re")); }

}  // namespace ombrelian::platform
