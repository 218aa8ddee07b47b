#pragma once

#include <unordered_map>

#include "support/Text.h"

namespace ombrelian {

/// Data of the desktop about files with an extension. The window uses its own services. Extensions
/// are in lower case, without the dot.
class FileTypes {
 public:
  virtual ~FileTypes() = default;

  /// Name of the file type in the user's language; empty if it is unknown.
  virtual Text typeText(TextView extension) = 0;

  /// The program that opens such files; empty if there is none or it is unknown.
  virtual Text associatedProgram(TextView extension) = 0;

  /// Name of the icon in the desktop's icon theme; empty if it is unknown.
  virtual Text iconName(TextView extension) = 0;
};

/// Reads the system's own database of file types, if there is one, and keeps each result.
class SystemFileTypes : public FileTypes {
 public:
  Text typeText(TextView extension) override;
  Text associatedProgram(TextView extension) override;
  Text iconName(TextView extension) override;

 private:
  std::unordered_map<Text, Text> typeTexts_;
  std::unordered_map<Text, Text> programs_;
};

}  // namespace ombrelian
