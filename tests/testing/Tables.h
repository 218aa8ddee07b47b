#pragma once

#include <vector>

#include "support/Text.h"

namespace ombrelian::testing {

/// The texts between the bars of a line.
inline std::vector<Text> fields(TextView line) {
  std::vector<Text> result;
  for (auto bar = line.find(u'|'); bar != TextView::npos; bar = line.find(u'|')) {
    result.emplace_back(line.substr(0, bar));
    line.remove_prefix(bar + 1);
  }
  result.emplace_back(line);
  return result;
}

/// The results of `write` for all values, with bars between them.
template <class Values, class Write>
Text each(const Values& values, Write write) {
  Text line;
  for (const auto& value : values)
    line += (&value == &*std::begin(values) ? u"" : u"|") + Text(write(value));
  return line;
}

template <class Value, class Write>
Text each(std::initializer_list<Value> values, Write write) {
  return each(std::vector<Value>(values), write);
}

}  // namespace ombrelian::testing
