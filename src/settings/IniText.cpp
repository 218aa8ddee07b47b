#include "settings/IniText.h"

#include <algorithm>

#include "platform/Locale.h"

namespace ombrelian {
namespace {

bool isBlank(char16_t unit) { return unit == u' ' || unit == u'\t'; }
bool isLineEnd(char16_t unit) { return unit == u'\r' || unit == u'\n'; }
bool isAscii(TextView text) {
  return std::all_of(text.begin(), text.end(), [](char16_t unit) { return unit < 0x80; });
}

TextView trimmed(TextView text) {
  while (!text.empty() && isBlank(text.front()))
    text.remove_prefix(1);
  while (!text.empty() && isBlank(text.back()))
    text.remove_suffix(1);
  return text;
}

/// The first line of `text` with its line end: CR LF, CR or LF.
TextView firstLine(TextView text) {
  const auto end = std::find_if(text.begin(), text.end(), isLineEnd);
  auto size = std::size_t(end - text.begin());
  if (size < text.size()) size += text.substr(size).starts_with(u"\r\n") ? 2 : 1;
  return text.substr(0, size);
}

TextView withoutLineEnd(TextView line) {
  while (!line.empty() && isLineEnd(line.back()))
    line.remove_suffix(1);
  return line;
}

TextView lineEndOf(TextView line) { return line.substr(withoutLineEnd(line).size()); }

/// The name in a header "[name]".
std::optional<TextView> sectionName(TextView line) {
  const TextView header = trimmed(withoutLineEnd(line));
  const auto end = header.rfind(u']');
  if (!header.starts_with(u'[') || end == TextView::npos) return {};
  return trimmed(header.substr(1, end - 1));
}

/// The key of a line "key=value"; empty for any other line.
TextView keyOf(TextView line) {
  const auto sign = line.find(u'=');
  if (sign == TextView::npos) return {};
  const TextView key = trimmed(line.substr(0, sign));
  return key.starts_with(u';') ? TextView() : key;
}

TextView stripped(TextView value) {
  value = trimmed(value);
  const bool isQuoted = value.size() > 1 && value.front() == value.back() &&
                        (value.front() == u'"' || value.front() == u'\'');
  return isQuoted ? value.substr(1, value.size() - 2) : value;
}

/// Lower case of a name. ASCII letters are folded the same way in every locale, so that a dotless i
/// does not split a key into two.
Text folded(TextView name) {
  const Text lower = asciiLower(name);
  return isAscii(lower) ? lower : platform::localeTextRules().lower(lower);
}

}  // namespace

std::size_t IniText::Hash::operator()(TextView name) const {
  constexpr std::uint64_t kOffset = 14695981039346656037U;
  constexpr std::uint64_t kPrime = 1099511628211U;
  std::uint64_t hash = kOffset;
  const auto add = [&](char16_t unit) { hash = (hash ^ asciiLower(unit)) * kPrime; };
  if (isAscii(name)) {
    std::for_each(name.begin(), name.end(), add);
  } else {
    const Text lower = folded(name);
    std::for_each(lower.begin(), lower.end(), add);
  }
  return std::size_t(hash ^ hash >> 32);
}

std::size_t IniText::Hash::operator()(const SectionKey& name) const {
  constexpr std::size_t kSpread = 0x9E3779B97F4A7C15U;
  return (*this)(name.key) ^ (name.section + 1) * kSpread;
}

bool IniText::Equal::operator()(TextView a, TextView b) const {
  if (!isAscii(a) || !isAscii(b)) return folded(a) == folded(b);
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char16_t x, char16_t y) { return asciiLower(x) == asciiLower(y); });
}

bool IniText::Equal::operator()(const SectionKey& a, const SectionKey& b) const {
  return a.section == b.section && (*this)(a.key, b.key);
}

IniText::IniText(Text text) : sections_(1) {
  TextView left = keep(std::move(text));
  if (const TextView end = lineEndOf(firstLine(left)); !end.empty()) lineEnd_ = end;
  while (!left.empty()) {
    const TextView line = firstLine(left);
    addLine(line);
    left.remove_prefix(line.size());
  }
}

void IniText::addLine(TextView line) {
  if (const auto name = sectionName(line)) {
    addSection(line, *name);
    return;
  }
  Section& section = sections_.back();
  section.lines.push_back(line);
  const TextView key = keyOf(line);
  if (key.empty()) return;
  section.keysEnd = section.lines.size();
  index_.try_emplace({section.number, key}, Place{std::uint32_t(sections_.size() - 1),
                                                  std::uint32_t(section.keysEnd - 1)});
}

void IniText::addSection(TextView header, TextView name) {
  // In this order, a lack of memory leaves no number without a section.
  const auto number = std::uint32_t(sections_.size());
  sections_.push_back({header, number, {}, 0});
  sections_.back().number = numbers_.try_emplace(name, number).first->second;
}

std::optional<IniText::Place> IniText::find(TextView section, TextView key) const {
  const auto number = numbers_.find(section);
  if (number == numbers_.end()) return {};
  const auto place = index_.find({number->second, trimmed(key)});
  if (place == index_.end()) return {};
  return place->second;
}

std::optional<TextView> IniText::value(TextView section, TextView key) const {
  const auto place = find(trimmed(section), key);
  if (!place) return {};
  const TextView line = withoutLineEnd(sections_[place->section].lines[place->line]);
  return stripped(line.substr(line.find(u'=') + 1));
}

bool IniText::setValue(TextView section, TextView key, TextView value) {
  const auto place = find(trimmed(section), key);
  if (!place) {
    addKey(sectionNamed(trimmed(section)), trimmed(key), value);
    return true;
  }
  TextView& line = sections_[place->section].lines[place->line];
  Text changed(line.substr(0, line.find(u'=') + 1));
  changed.append(value).append(lineEndOf(line));
  if (changed == line) return false;
  line = keep(std::move(changed));
  return true;
}

/// The section with this name. A deleted section gets its header again, and a missing section is
/// made.
IniText::Section& IniText::sectionNamed(TextView name) {
  const TextView header = keep(Text(u"[").append(name).append(u"]").append(lineEnd_));
  const auto number = numbers_.find(name);
  if (number == numbers_.end()) {
    addSection(header, header.substr(1, name.size()));
    return sections_.back();
  }
  Section& section = sections_[number->second];
  if (section.header.empty()) section.header = header;
  return section;
}

void IniText::addKey(Section& section, TextView key, TextView value) {
  const TextView line = keep(Text(key).append(u"=").append(value).append(lineEnd_));
  section.lines.insert(section.lines.begin() + std::ptrdiff_t(section.keysEnd), line);
  index_[{section.number, line.substr(0, key.size())}] = {section.number,
                                                          std::uint32_t(section.keysEnd)};
  ++section.keysEnd;  // last, so that a lack of memory leaves only a line without effect
}

bool IniText::deleteSection(TextView section) {
  const auto number = numbers_.find(trimmed(section));
  if (number == numbers_.end()) return false;
  bool isChanged = false;
  for (Section& candidate : sections_) {
    if (candidate.number != number->second || candidate.header.empty()) continue;
    const auto first = candidate.lines.begin();
    candidate.lines.erase(first, first + std::ptrdiff_t(candidate.keysEnd));
    candidate.keysEnd = 0;
    candidate.header = {};
    isChanged = true;
  }
  std::erase_if(index_, [&](const auto& entry) { return entry.first.section == number->second; });
  return isChanged;
}

Text IniText::text() const {
  Text result;
  const auto add = [&](TextView line) {
    // Only the last line of the file that was read may have no line end.
    if (!result.empty() && !line.empty() && !isLineEnd(result.back())) result += lineEnd_;
    result += line;
  };
  for (const Section& section : sections_) {
    add(section.header);
    std::for_each(section.lines.begin(), section.lines.end(), add);
  }
  return result;
}

Text IniText::quoted(TextView value) {
  if (stripped(value) == value) return Text(value);
  return Text(u"\"").append(value).append(u"\"");
}

bool IniText::isLine(TextView text) {
  return text.find_first_of(TextView(u"\r\n\0", 3)) == TextView::npos;
}

}  // namespace ombrelian
