#include "platform/posix/TrashRecord.h"

#include <limits.h>

#include <cstdio>

namespace ombrelian::platform {
namespace {

constexpr std::size_t kMaxName = NAME_MAX - kTrashInfoEnding.size();
constexpr std::size_t kMaxExtension = 32;  // length with the dot; longer endings are not extensions

/// The part of `name` from the last dot on; empty: `name` has no extension.
std::string_view extensionOf(std::string_view name) {
  const auto dot = name.rfind('.');
  if (dot == std::string_view::npos || dot == 0 || name.size() - dot > kMaxExtension) return {};
  return name.substr(dot);
}

bool continuesCharacter(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) == 0x80; }

std::string_view shortened(std::string_view text, std::size_t size) {
  if (text.size() <= size) return text;
  constexpr std::size_t kLongestCharacter = 4;  // longer sequences are not UTF-8
  std::size_t cut = size;
  while (cut > 0 && size - cut < kLongestCharacter && continuesCharacter(text[cut]))
    --cut;
  return text.substr(0, cut);
}

bool staysAsItIs(char c) {
  const bool isAlphanumeric =
      (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
  return isAlphanumeric || std::string_view("/-_.~").find(c) != std::string_view::npos;
}

void appendEncoded(char c, std::string& out) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  const auto byte = static_cast<unsigned char>(c);
  out.push_back('%');
  out.push_back(kDigits[byte >> 4]);
  out.push_back(kDigits[byte & 15]);
}

}  // namespace

std::string trashName(std::string_view name, std::uint64_t number) {
  const std::string_view extension = extensionOf(name);
  std::string ending = number > 1 ? "." + std::to_string(number) : std::string();
  ending.append(extension);
  name.remove_suffix(extension.size());
  return std::string(shortened(name, kMaxName - ending.size())) + ending;
}

std::string trashRecord(std::string_view path, const DateParts& when) {
  std::string record = "[Trash Info]\nPath=";
  for (const char c : path)
    staysAsItIs(c) ? record.push_back(c) : appendEncoded(c, record);
  char date[64];
  std::snprintf(date, sizeof date, "%04d-%02d-%02dT%02d:%02d:%02d", when.year, when.month, when.day,
                when.hour, when.minute, when.second);
  return record.append("\nDeletionDate=").append(date).append("\n");
}

}  // namespace ombrelian::platform
