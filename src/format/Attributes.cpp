#include "format/Attributes.h"

#include "platform/FindData.h"
#include "support/Translate.h"

namespace ombrelian {
namespace {

using namespace platform;  // attribute bits

struct AttributeLetter {
  char16_t letter;
  std::uint32_t bit;
  int textId;
  TextView word;
};

/// The attributes in the order in which their letters are shown.
constexpr AttributeLetter kLetters[] = {
    {u'A', kAttributeArchive, 2956, u"Archiv"},
    {u'S', kAttributeSystem, 2957, u"System"},
    {u'H', kAttributeHidden, 2958, u"Versteckt"},
    {u'R', kAttributeReadOnly, 2959, u"Schreibgeschützt"},
    {u'E', kAttributeEncrypted, 2960, u"Verschlüsselt"},
    {u'L', kAttributeReparsePoint, 2961, u"Symbolischer Link"},
    {u'T', kAttributeTemporary, 2962, u"Temporär"},
    {u'C', kAttributeCompressed, 2963, u"Komprimiert"},
    {u'O', kAttributeOffline, 2964, u"Offline"},
    {u'I', kAttributeNotIndexed, 2965, u"Indiziert"},  // kept, since users know this word
    {u'P', kAttributeSparse, 2966, u"Sparse"},
};

}  // namespace

Text xFormatFileAttribute(std::uint32_t attributes, bool brackets, TextView prefix) {
  Text letters;
  if (attributes == kAttributesInvalid) return letters;
  for (const AttributeLetter& known : kLetters) {
    if ((attributes & known.bit) != 0) letters += known.letter;
  }
  if (!brackets || letters.empty()) return letters;
  return Text(prefix).append(u"<").append(letters).append(u">");
}

Text FormatToolTipText_Attribute(TextView letters) {
  Text text;
  for (const char16_t letter : letters) {
    for (const AttributeLetter& known : kLetters) {
      if (known.letter != letter) continue;
      if (!text.empty()) text += u"\r\n";
      text.append(1, letter).append(u": ").append(TL(known.textId, known.word));
    }
  }
  return text;
}

}  // namespace ombrelian
