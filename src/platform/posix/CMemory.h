#pragma once

#include <cstdio>
#include <cstdlib>
#include <memory>

namespace ombrelian::platform {

struct CRelease {
  void operator()(char* text) const { std::free(text); }
  void operator()(FILE* file) const { std::fclose(file); }
};

/// Owners of text and files from the C library; an exception releases them too.
using CText = std::unique_ptr<char, CRelease>;
using CFile = std::unique_ptr<FILE, CRelease>;

/// Opens a file for reading. Programs that this process starts do not inherit it. Null on failure.
inline CFile openForReading(const char* path) { return CFile(std::fopen(path, "re")); }

}  // namespace ombrelian::platform
