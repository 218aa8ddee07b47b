#pragma once

#include "platform/FindData.h"
#include "settings/IniText.h"
#include "support/Error.h"

namespace ombrelian {

/// End mark: the value after the last entry of a numbered list. No entry can have this text.
inline constexpr TextView kListEnd = u"!(nix].-.";

/// First bytes of a profile file.
inline constexpr std::string_view kIniByteOrderMark = "\xFF\xFE";

/// The bytes of a profile file with this text.
std::string encodeIni(TextView text);

/// A profile file, kept in memory. flush() writes all changes to the disk at once. Before that it
/// locks the file, reads it again and applies only the changes that were made here, so that two
/// programs with the same file lose only values that both of them wrote. The file is UTF-16 with a
/// byte order mark; a file without the mark is read in the system's code page. A missing file is
/// made if its folder exists; a link to the file is kept.
class IniStore {
 public:
  /// Greatest length of a text that a read returns, in UTF-16 units.
  static constexpr std::size_t kLongestValue = 4095;

  explicit IniStore(Text path);
  /// Calls flush().
  ~IniStore();
  IniStore(const IniStore&) = delete;
  IniStore& operator=(const IniStore&) = delete;

  const Text& path() const { return path_; }

  /// The value without outer blanks and one pair of quotes, cut to kLongestValue. It is empty if
  /// the key has no value, and `defaultText` if there is no such key.
  Text INI_ReadString(TextView section, TextView key, TextView defaultText) const;

  /// Puts `value` into the file without changes. A value that begins or ends with blanks needs
  /// quotes, see IniText::quoted. Nothing is changed if a line cannot contain the text.
  void INI_WriteString(TextView section, TextView key, TextView value);

  /// The same with a conversion to the system's code page; characters that it does not contain are
  /// lost.
  void INI_WriteStringAnsi(TextView section, TextView key, TextView value);

  void INI_DeleteSection(TextView section);

  /// Reads the changes that other programs made since the file was read. On failure nothing
  /// changes.
  Failure refresh();

  /// Writes the changes to the file. On failure they are kept for the next call. A read-only file
  /// is not replaced.
  Failure flush();

 private:
  struct Change {
    Text section;
    std::optional<Text> key;  // none: the section is deleted
    Text value;
  };
  /// Data that identify one version of a file.
  struct Stamp {
    bool isKnown = false;
    bool isThere = false;
    std::uint64_t size = 0;
    FileTime written = 0;
    platform::FileIdentity identity;

    bool operator==(const Stamp&) const = default;
  };

  Result<Stamp> readStamp() const;
  Result<std::string> readBytes(const Stamp& stamp) const;
  void change(Change change);
  void apply(const Change& change);
  Failure replaceFile() const;

  const Text path_;
  IniText text_;
  std::vector<Change> changes_;  // changes since the last flush, with the oldest first
  bool isChanged_ = false;       // text_ differs from the file that was read
  Stamp stamp_;                  // stamp of the file when it was read
};

/// INI_ReadString that hides faults from the caller.
Text GetSettings(TextView section, TextView key, TextView defaultText, const IniStore& file);

/// INI_WriteStringAnsi that hides faults from the caller.
void StoreSettings(TextView section, TextView key, TextView value, IniStore& file);

}  // namespace ombrelian
