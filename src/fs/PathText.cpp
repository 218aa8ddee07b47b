#include "fs/PathText.h"

namespace ombrelian {
namespace {

bool endsIn(TextView path, char16_t unit) { return !path.empty() && path.back() == unit; }

TextView trimmed(TextView path, char16_t separator) {
  return separator == u'\\' ? trimBlanks(path) : path;
}

/// Position of the dot before the extension; npos: none. The dot of a hidden name is none.
std::size_t dotOfExtension(TextView name) {
  const auto dot = name.rfind(u'.');
  return dot == 0 ? TextView::npos : dot;
}

}  // namespace

Text LongPathPrefix(TextView path, char16_t separator) {
  if (separator != u'\\') return Text(path);
  if (path.starts_with(u"\\\\")) return Text(u"\\\\?\\UNC").append(path.substr(1));
  return Text(u"\\\\?\\").append(path);
}

bool isAbsolute(TextView path, char16_t separator) {
  if (separator == u'/') return path.starts_with(u'/');
  return path.starts_with(u"\\\\") || (path.size() >= 3 && path.substr(1, 2) == u":\\");
}

TextView xCutAtNull(TextView text) { return text.substr(0, text.find(u'\0')); }

TextView xGetPath(TextView path, char16_t separator) {
  const auto last = path.rfind(separator);
  if (last == TextView::npos) return {};
  return path.substr(0, last == 0 && separator == u'/' ? 1 : last);
}

TextView xGetFileName(TextView path, char16_t separator) {
  const auto last = path.rfind(separator);
  return last == TextView::npos ? path : path.substr(last + 1);
}

TextView xGetExtension(TextView name) {
  const auto dot = dotOfExtension(name);
  return dot == TextView::npos ? TextView() : name.substr(dot + 1);
}

TextView xGetFileNameWithoutExtension(TextView path, char16_t separator) {
  const TextView name = xGetFileName(path, separator);
  return name.substr(0, dotOfExtension(name));
}

Text& xAddBackslash(Text& path, char16_t separator) {
  if (!endsIn(path, separator)) path = Text(trimmed(path, separator)) + separator;
  return path;
}

Text xGetPathWithBackslash(TextView path, char16_t separator) {
  Text copy(path);
  if (!copy.empty()) xAddBackslash(copy, separator);
  return copy;
}

Text xRemoveBackslash(TextView path, char16_t separator) {
  if (!endsIn(path, separator) || path == u"/") return Text(path);
  return Text(trimmed(path.substr(0, path.size() - 1), separator));
}

Text& appendName(Text& path, TextView name, char16_t separator) {
  if (!endsIn(path, separator)) path.push_back(separator);
  return path.append(name);
}

}  // namespace ombrelian
