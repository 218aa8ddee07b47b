#include "platform/SystemError.h"

#include "support/Translate.h"

namespace ombrelian {

using platform::ErrorCode;

namespace {

/// Texts for the errors that only this program distinguishes.
Text ownText(ErrorCode code) {
  switch (code) {
    case platform::kIsMountPoint:
      return TL(9610, u"Dort ist ein Dateisystem eingehängt.");
    case platform::kObjectReplaced:
      return TL(9611,
                u"An dieser Stelle liegt inzwischen etwas anderes als angezeigt; bitte neu "
                u"einlesen.");
    case platform::kUntrustedLink:
      return TL(9872,
                u"Dort ist eine Verknüpfung, die ein anderer Benutzer angelegt hat; ihr wird nicht "
                u"gefolgt.");
    case platform::kNotOwnFile:
      return TL(9873, u"Das ist keine gewöhnliche Datei des Benutzers, der das Programm ausführt.");
    case platform::kTimeout:
      return TL(9840, u"Das Dateisystem antwortet nicht.");
    default:
      return {};
  }
}

}  // namespace

Text xGetErrorText(bool addNumber, ErrorCode code) {
  if (code == platform::kSuccess) return u"#0 - No information available";
  Text text = ownText(code);
  if (text.empty()) text = platform::FormatMessageW(code);
  if (text.empty()) text = u"Error " + toText(code);
  return addNumber ? u"#" + toText(code) + u" - " + text : text;
}

Error systemError(ErrorCode code, TextView source) {
  return {std::int32_t(code), Text(source), xGetErrorText(false, code)};
}

}  // namespace ombrelian
