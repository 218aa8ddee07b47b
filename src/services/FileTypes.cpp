#include "services/FileTypes.h"

#include "platform/MimeDatabase.h"
#include "support/Guard.h"

namespace ombrelian {
namespace {

/// What `ask` knows of an extension; it is asked once, and `known` keeps the answer.
template <class Ask>
Text askOnce(std::unordered_map<Text, Text>& known, TextView extension, TextView proc, Ask ask) {
  return GuardedOr(
      u"FileTypes", proc,
      [&] {
        const auto [entry, isNew] = known.try_emplace(Text(extension));
        if (isNew) entry->second = ask(extension);
        return entry->second;
      },
      nothing<Text>);
}

}  // namespace

Text SystemFileTypes::typeText(TextView extension) {
  return askOnce(typeTexts_, extension, u"typeText", platform::GetFileTypeName);
}

Text SystemFileTypes::associatedProgram(TextView extension) {
  return askOnce(programs_, extension, u"associatedProgram", platform::GetAssociatedProgram);
}

Text SystemFileTypes::iconName(TextView extension) {
  return GuardedOr(
      u"FileTypes", u"iconName", [&] { return platform::GetFileTypeIcon(extension); },
      nothing<Text>);
}

}  // namespace ombrelian
