#include "services/FileTypes.h"

#include "platform/MimeDatabase.h"
#include "support/Guard.h"

namespace ombrelian {

Text SystemFileTypes::typeText(TextView extension) {
  return GuardedOr(
      u"FileTypes", u"typeText",
      [&] {
        const auto [known, isNew] = typeTexts_.try_emplace(Text(extension));
        if (isNew) known->second = platform::GetFileTypeName(extension);
        return known->second;
      },
      nothing<Text>);
}

Text SystemFileTypes::associatedProgram(TextView extension) {
  return GuardedOr(
      u"FileTypes", u"associatedProgram",
      [&] {
        const auto [known, isNew] = programs_.try_emplace(Text(extension));
        if (isNew) known->second = platform::GetAssociatedProgram(extension);
        return known->second;
      },
      nothing<Text>);
}

Text SystemFileTypes::iconName(TextView extension) {
  return GuardedOr(
      u"FileTypes", u"iconName", [&] { return platform::GetFileTypeIcon(extension); },
      nothing<Text>);
}

}  // namespace ombrelian
