#include "support/Translate.h"

namespace ombrelian {
namespace {

const LanguageTexts* languageTexts = nullptr;

}  // namespace

void setLanguageTexts(const LanguageTexts* texts) { languageTexts = texts; }

Text TL(int id, TextView german, std::initializer_list<TextView> args) {
  Text text;
  if (id > 0 && languageTexts != nullptr) text = languageTexts->text(id);
  if (text.empty()) text = german;
  text = replaceAll(text, u"%!", u"\r\n");
  Text placeholder;
  std::int64_t number = 0;
  for (const TextView arg : args) {
    placeholder = u"%" + toText(++number);
    text = replaceAll(text, placeholder, arg);
  }
  return text;
}

}  // namespace ombrelian
