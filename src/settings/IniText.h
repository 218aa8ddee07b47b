#pragma once

#include <deque>
#include <optional>
#include <unordered_map>
#include <vector>

#include "support/Text.h"

namespace ombrelian {

/// The text of a profile file: sections of lines "key=value". A change affects only the lines that
/// it names; comments, unknown lines, repeated keys, the order and the line ends do not change.
/// Names are compared without case; of equal names, the first counts.
///
///   storage_:  [the whole file] [changed line] [new line] ...   never moves
///   sections_: [lines before any header] [section] [section] ...   views into storage_
///   index_:    section number, key  ->  section and line that hold it
class IniText {
 public:
  explicit IniText(Text text = {});
  IniText(IniText&&) = default;
  IniText& operator=(IniText&&) = default;

  /// The value without outer blanks and without one pair of quotes around it; none: there is no
  /// such key. Valid as long as the object exists.
  std::optional<TextView> value(TextView section, TextView key) const;

  /// Puts `value` into the file without changes; see quoted(). A new key is added after the last
  /// key of its section, a new section at the end. Returns whether anything changed. Precondition:
  /// isLine() is true for all three texts.
  bool setValue(TextView section, TextView key, TextView value);

  /// Removes the section from its header to its last key. Lines after the last key stay, because
  /// they usually belong to the next section. Returns whether anything changed.
  bool deleteSection(TextView section);

  Text text() const;

  /// `value`, in quotes if a read would change it without them.
  static Text quoted(TextView value);

  /// Whether `text` can be a part of one line.
  static bool isLine(TextView text);

 private:
  struct Section {
    TextView header;  // the whole line; empty: the section is deleted or has no header (the first)
    std::uint32_t number = 0;     // number of the first section of this name
    std::vector<TextView> lines;  // lines with their line ends
    std::size_t keysEnd = 0;      // lines from here on contain no keys
  };
  struct Place {
    std::uint32_t section;
    std::uint32_t line;
  };
  struct SectionKey {
    std::uint32_t section;  // Section::number
    TextView key;
  };
  struct Hash {
    std::size_t operator()(TextView name) const;
    std::size_t operator()(const SectionKey& name) const;
  };
  struct Equal {
    bool operator()(TextView a, TextView b) const;
    bool operator()(const SectionKey& a, const SectionKey& b) const;
  };

  TextView keep(Text text) { return storage_.emplace_back(std::move(text)); }
  void addLine(TextView line);
  void addSection(TextView header, TextView name);
  std::optional<Place> find(TextView section, TextView key) const;
  Section& sectionNamed(TextView name);
  void addKey(Section& section, TextView key, TextView value);

  std::deque<Text> storage_;
  std::vector<Section> sections_;
  std::unordered_map<TextView, std::uint32_t, Hash, Equal> numbers_;
  std::unordered_map<SectionKey, Place, Hash, Equal> index_;
  TextView lineEnd_ = u"\r\n";  // line end of new lines
};

}  // namespace ombrelian
