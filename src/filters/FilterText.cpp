#include "filters/FilterText.h"

#include <algorithm>

#include "filters/LikePattern.h"
#include "support/Translate.h"

namespace ombrelian {

Text tidyPatterns(TextView patterns) {
  Text tidy;
  while (true) {
    const std::size_t comma = patterns.find(u',');
    tidy += trimBlanks(patterns.substr(0, comma));
    if (comma == TextView::npos) return tidy;
    tidy += u',';
    patterns.remove_prefix(comma + 1);
  }
}

Text patternHint(TextView patterns, bool needsAll, const TextRules& rules) {
  std::size_t count = 0;
  for (TextView rest = patterns; !rest.empty();) {
    const TextView pattern = rest.substr(0, rest.find(u','));
    rest.remove_prefix(std::min(pattern.size() + 1, rest.size()));
    ++count;
    if (LikePattern(trimBlanks(pattern), rules).isMalformed())
      return TL(9867, u"'%1' ist kein gültiges Muster: Zu '[' gehört ein ']'.", {pattern});
  }
  if (!needsAll || count < 2) return {};
  return TL(9868, u"Es bleibt nur, was zu allen Mustern passt.");
}

}  // namespace ombrelian
