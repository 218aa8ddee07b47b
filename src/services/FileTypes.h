#pragma once

#include <unordered_map>

#include "support/Text.h"

namespace ombrelian {

/// What the desktop knows of files by their extension. The window asks its own services; the
/// extensions come in lower case, without the dot.
class FileTypes {
 public:
  virtual ~FileTypes() = default;

  /// Name of the kind of file in the user's language; empty if nobody knows it.
  virtual Text typeText(TextView extension) = 0;

  /// The program that opens such files; empty if none does, or nobody knows.
  virtual Text associatedProgram(TextView extension) = 0;

  /// Name of the icon in the desktop's icon theme; empty if nobody knows.
  virtual Text iconName(TextView extension) = 0;
};

/// Answers from the system's own database of file types, where there is one, and keeps each
/// answer.
class SystemFileTypes : public FileTypes {
 public:
  Text typeText(TextView extension) override;
  Text associatedProgram(TextView) override { return {}; }
  Text iconName(TextView extension) override;

 private:
  std::unordered_map<Text, Text> typeTexts_;
};

}  // namespace ombrelian
