#include <fstream>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/Locale.h"
#include "platform/MimeDatabase.h"
#include "platform/Process.h"
#include "platform/posix/Home.h"

namespace ombrelian::platform {
namespace {

// The desktop's associations: in several folders, "mimeapps.list" has a line "type=entry;entry" for
// each type, with what users and distributors chose, and "mimeinfo.cache" has what is installed. An
// entry is the name of a desktop file in a folder "applications" of a data folder.

constexpr std::size_t kMostTypes =
    16;  // types that are tried for one type and what it is a kind of

std::vector<std::string> split(const std::string& text, char separator) {
  std::vector<std::string> parts;
  for (std::size_t at = 0; at <= text.size();) {
    const std::size_t end = std::min(text.find(separator, at), text.size());
    if (end > at) parts.push_back(text.substr(at, end - at));
    at = end + 1;
  }
  return parts;
}

std::string inFolder(const std::string& folder, const std::string& name) {
  return std::string(folder).append("/").append(name);
}

std::string variable(TextView name) { return toBytes(GetEnvironmentVariableW(name)); }

/// The user's folder, then those of the system.
std::vector<std::string> baseFolders(const char* userName, const char* inHome, TextView systemName,
                                     const char* system) {
  std::vector<std::string> folders = {userFolder(userName, inHome)};
  const std::string others = variable(systemName);
  for (std::string& folder : split(others.empty() ? system : others, ':')) {
    if (folder.starts_with('/')) folders.push_back(std::move(folder));
  }
  return folders;
}

std::vector<std::string> applicationFolders() {
  std::vector<std::string> folders = baseFolders("XDG_DATA_HOME", "/.local/share", u"XDG_DATA_DIRS",
                                                 "/usr/local/share:/usr/share");
  for (std::string& folder : folders)
    folder += "/applications";
  return folders;
}

/// Calls `visit(section, key, value)` for each line of a file of keys.
template <class Visit>
void forEachKey(const std::string& path, Visit visit) {
  std::ifstream file(path);
  std::string section;
  for (std::string line; std::getline(file, line);) {
    const std::size_t equals = line.find('=');
    if (line.starts_with('[')) {
      section = line.substr(1, line.find(']') - 1);
    } else if (equals != std::string::npos && !line.starts_with('#')) {
      visit(section, line.substr(0, equals), line.substr(equals + 1));
    }
  }
}

/// The name that a desktop file shows; empty: there is no such file, or it is hidden.
std::string nameOf(const std::string& entry) {
  constexpr int kGerman = 7;
  const std::string localKey = GetUserDefaultLangID() == kGerman ? "Name[de]" : "Name";
  for (const std::string& folder : applicationFolders()) {
    std::string plain;
    std::string local;
    bool isHidden = false;
    forEachKey(inFolder(folder, entry),
               [&](const std::string& section, const std::string& key, const std::string& value) {
                 if (section != "Desktop Entry") return;
                 if (key == "Name") plain = value;
                 if (key == localKey) local = value;
                 isHidden = isHidden || (key == "Hidden" && value == "true");
               });
    if (isHidden) return {};
    if (!plain.empty()) return local.empty() ? plain : local;
  }
  return {};
}

/// The files with associations, from the most important one.
std::vector<std::string> associationFiles() {
  std::vector<std::string> folders =
      baseFolders("XDG_CONFIG_HOME", "/.config", u"XDG_CONFIG_DIRS", "/etc/xdg");
  const std::vector<std::string> applications = applicationFolders();
  folders.insert(folders.end(), applications.begin(), applications.end());
  std::vector<std::string> names;
  for (const std::string& desktop : split(variable(u"XDG_CURRENT_DESKTOP"), ':'))
    names.push_back(toBytes(asciiLower(fromBytes(desktop))) + "-mimeapps.list");
  names.emplace_back("mimeapps.list");
  std::vector<std::string> files;
  for (const std::string& folder : folders) {
    for (const std::string& name : names)
      files.push_back(inFolder(folder, name));
  }
  for (const std::string& folder : applications)
    files.push_back(folder + "/mimeinfo.cache");
  return files;
}

/// All associations, read once: the entries of each type, with the preferred ones first, and the
/// types that types are a kind of.
class Associations {
 public:
  explicit Associations(const std::vector<std::string>& files) {
    for (const std::string& file : files) {
      forEachKey(file,
                 [&](const std::string& section, const std::string& key, const std::string& value) {
                   if (section == "Removed Associations") return;
                   std::vector<std::string>& entries = entries_[key];
                   for (std::string& entry : split(value, ';'))
                     entries.push_back(std::move(entry));
                 });
    }
    std::ifstream parents("/usr/share/mime/subclasses");
    for (std::string type, parent; parents >> type >> parent;)
      parents_.emplace(type, parent);
  }

  /// Name of the program for a type or for what it is a kind of; empty: there is none.
  std::string programOf(const std::string& type) {
    std::vector<std::string> types = {type};
    for (std::size_t at = 0; at < std::min(types.size(), kMostTypes); ++at) {
      for (const std::string& entry : entries_[types[at]]) {
        const auto [name, isNew] = names_.try_emplace(entry);
        if (isNew) name->second = nameOf(entry);
        if (!name->second.empty()) return name->second;
      }
      const auto [first, last] = parents_.equal_range(types[at]);
      for (auto parent = first; parent != last; ++parent)
        types.push_back(parent->second);
    }
    return {};
  }

 private:
  std::unordered_map<std::string, std::vector<std::string>> entries_;
  std::unordered_map<std::string, std::string> names_;
  std::unordered_multimap<std::string, std::string> parents_;
};

}  // namespace

Text GetAssociatedProgram(TextView extension) {
  static std::vector<std::string> files;
  static std::optional<Associations> associations;
  const std::string type = toBytes(GetFileType(extension));
  if (type.empty()) return {};
  if (std::vector<std::string> now = associationFiles(); !associations || now != files) {
    files = std::move(now);
    associations.emplace(files);
  }
  return fromBytes(associations->programOf(type));
}

}  // namespace ombrelian::platform
