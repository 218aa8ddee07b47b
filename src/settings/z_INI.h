#pragma once

#include "platform/FindData.h"
#include "settings/IniText.h"
#include "support/Error.h"

namespace ombrelian {

/// What a numbered list gives for the number behind its last; no entry can be this text.
inline constexpr TextView kListEnd = u"!(nix].-.";

/// How the file of a profile begins.
inline constexpr std::string_view kIniByteOrderMark = "\xFF\xFE";

/// A profile file, kept in memory. Changes reach the disk at flush(), all at once; before that,
/// what others wrote meanwhile is read again and only what was changed here is put on top, so that
/// two programs on one file lose nothing but what both of them wrote. The file is UTF-16 with a
/// byte order mark; one without is read as the system's code page. Made if missing, in a folder
/// that is there; a link to it stays.
class IniStore {
 public:
  /// Longest text that a read gives, in UTF-16 units.
  static constexpr std::size_t kLongestValue = 4095;

  explicit IniStore(Text path);
  /// Flushes.
  ~IniStore();
  IniStore(const IniStore&) = delete;
  IniStore& operator=(const IniStore&) = delete;

  const Text& path() const { return path_; }

  /// The value without outer blanks and one pair of quotes; empty where the key has none,
  /// `defaultText` where there is no such key. Cut to kLongestValue.
  Text INI_ReadString(TextView section, TextView key, TextView defaultText) const;

  /// Puts `value` into the file as it is: one that begins or ends in blanks needs quotes, see
  /// IniText::quoted. Nothing is changed where a line cannot hold the text.
  void INI_WriteString(TextView section, TextView key, TextView value);

  /// The same by way of the system's code page; what that cannot hold is lost.
  void INI_WriteStringAnsi(TextView section, TextView key, TextView value);

  void INI_DeleteSection(TextView section);

  /// Takes in what others wrote since the file was read. On failure all stays as it is.
  Failure refresh();

  /// Puts the changes into the file. On failure they stay for the next time. A file that is
  /// read-only is not replaced.
  Failure flush();

 private:
  struct Change {
    Text section;
    std::optional<Text> key;  // none: the section is deleted
    Text value;
  };
  /// Marks by which a file is recognised.
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
  std::vector<Change> changes_;  // since the last flush, oldest first
  bool isChanged_ = false;       // text_ is not what the file held when it was read
  Stamp stamp_;                  // stamp of the file when it was read
};

/// INI_ReadString for whoever is not to see what goes wrong.
Text GetSettings(TextView section, TextView key, TextView defaultText, const IniStore& file);

/// INI_WriteStringAnsi for whoever is not to see what goes wrong.
void StoreSettings(TextView section, TextView key, TextView value, IniStore& file);

}  // namespace ombrelian
