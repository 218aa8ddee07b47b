#include "platform/MimeDatabase.h"

#include <fstream>
#include <iterator>
#include <string>
#include <unordered_map>

#include "platform/Locale.h"

namespace ombrelian::platform {
namespace {

// The shared MIME database: "globs2" has a line "weight:type:pattern[:flags]" for each pattern,
// with the greatest weight first; "TYPE.xml" has the names of a type, with one element <comment>
// for each language.
const std::string kDatabase = "/usr/share/mime/";

using Types = std::unordered_map<std::string, std::string>;

/// Reads the type of each extension, only from the patterns "*.extension".
Types readTypes() {
  Types types;
  std::ifstream file(kDatabase + "globs2");
  for (std::string line; std::getline(file, line);) {
    const std::size_t type = line.find(':') + 1;
    const std::size_t pattern = line.find(":*.", type);
    if (type == 0 || pattern == std::string::npos) continue;
    const std::size_t begin = pattern + 3;
    const std::string extension = line.substr(begin, line.find(':', begin) - begin);
    if (extension.find_first_of("*?[") != std::string::npos) continue;
    types.try_emplace(extension, line, type, pattern - type);
  }
  return types;
}

/// Type of an extension; empty: unknown.
const std::string& typeOf(TextView extension) {
  static const Types types = readTypes();
  static const std::string none;
  const auto found = types.find(toBytes(extension));
  return found != types.end() ? found->second : none;
}

std::string readFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

/// Content of the element that begins with `tag`, with its entities resolved; empty: there is no
/// such element.
std::string elementText(const std::string& xml, const std::string& tag) {
  const std::size_t at = xml.find(tag);
  if (at == std::string::npos) return {};
  const std::size_t begin = at + tag.size();
  std::string text = xml.substr(begin, xml.find('<', begin) - begin);
  const std::pair<std::string_view, std::string_view> entities[] = {
      {"&lt;", "<"}, {"&gt;", ">"}, {"&quot;", "\""}, {"&apos;", "'"}, {"&amp;", "&"}};
  for (const auto& [entity, character] : entities) {
    for (std::size_t place = 0; (place = text.find(entity, place)) != std::string::npos; ++place)
      text.replace(place, entity.size(), character);
  }
  return text;
}

}  // namespace

Text GetFileType(TextView extension) { return fromBytes(typeOf(extension)); }

Text GetFileTypeName(TextView extension) {
  constexpr int kGerman = 7;
  const std::string& type = typeOf(extension);
  if (type.empty()) return {};
  const std::string xml = readFile(kDatabase + type + ".xml");
  std::string name;
  if (GetUserDefaultLangID() == kGerman) name = elementText(xml, "<comment xml:lang=\"de\">");
  if (name.empty()) name = elementText(xml, "<comment>");
  return fromBytes(name);
}

Text GetFileTypeIcon(TextView extension) {
  std::string name = typeOf(extension);
  for (char& unit : name) {
    if (unit == '/') unit = '-';
  }
  return fromBytes(name);
}

}  // namespace ombrelian::platform
