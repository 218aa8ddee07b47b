#include "filters/FilterText.h"

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

}  // namespace ombrelian
