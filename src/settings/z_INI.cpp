#include "settings/z_INI.h"

#include "platform/FilePlace.h"
#include "platform/Time.h"
#include "platform/WholeFile.h"
#include "support/Guard.h"

namespace ombrelian {
namespace {

using platform::ErrorCode;
using platform::kSuccess;

constexpr TextView kModule = u"z_INI";
constexpr TextView kMainModule = u"modMain";

Text decode(std::string_view bytes) {
  if (!bytes.starts_with(kIniByteOrderMark)) return fromBytes(bytes);
  bytes.remove_prefix(kIniByteOrderMark.size());
  Text text(bytes.size() / 2, u'\0');
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto low = static_cast<unsigned char>(bytes[2 * i]);
    const auto high = static_cast<unsigned char>(bytes[2 * i + 1]);
    text[i] = char16_t(low | high << 8);
  }
  return text;
}

/// Locks the folder of a file while programs change the file in turns. After half a second, or
/// without a lock of the file system, the caller continues without the lock.
platform::FileHandle lockFolderOf(TextView path) {
  constexpr int kTries = 100;
  constexpr std::uint32_t kPollMs = 5;
  ErrorCode error = kSuccess;
  const TextView folder = path.substr(0, path.rfind(platform::kNativeSeparator) + 1);
  platform::FileHandle lock = platform::CreateFileW(folder, platform::kOpenRead, error);
  if (error != kSuccess) return lock;
  for (int i = 0; i < kTries && platform::LockFile(lock) == platform::kSharingViolation; ++i)
    platform::Sleep(kPollMs);
  return lock;
}

}  // namespace

std::string encodeIni(TextView text) {
  std::string bytes(kIniByteOrderMark);
  std::size_t at = bytes.size();
  bytes.resize(at + 2 * text.size());
  for (const char16_t unit : text) {
    bytes[at++] = char(unit & 0xFF);
    bytes[at++] = char(unit >> 8);
  }
  return bytes;
}

IniStore::IniStore(Text path) : path_(std::move(path)) { refresh(); }

IniStore::~IniStore() { flush(); }

Text IniStore::INI_ReadString(TextView section, TextView key, TextView defaultText) const {
  return Text(text_.value(section, key).value_or(defaultText).substr(0, kLongestValue));
}

void IniStore::INI_WriteString(TextView section, TextView key, TextView value) {
  if (!IniText::isLine(section) || !IniText::isLine(key) || !IniText::isLine(value)) return;
  change({Text(section), Text(key), Text(value)});
}

void IniStore::INI_WriteStringAnsi(TextView section, TextView key, TextView value) {
  const auto byCodePage = [](TextView text) { return fromBytes(toBytes(text)); };
  INI_WriteString(byCodePage(section), byCodePage(key), byCodePage(value));
}

void IniStore::INI_DeleteSection(TextView section) { change({Text(section), {}, {}}); }

void IniStore::change(Change change) {
  apply(change);
  changes_.push_back(std::move(change));
}

void IniStore::apply(const Change& change) {
  isChanged_ |= change.key ? text_.setValue(change.section, *change.key, change.value)
                           : text_.deleteSection(change.section);
}

Failure IniStore::refresh() {
  return GuardedOr(
      kModule, u"refresh",
      [&]() -> Failure {
        const Result<Stamp> stamp = readStamp();
        if (!stamp) return stamp.error();
        if (*stamp == stamp_) return {};
        const Result<std::string> bytes = readBytes(*stamp);
        if (!bytes) return bytes.error();
        text_ = IniText(decode(*bytes));
        stamp_ = *stamp;
        isChanged_ = false;
        for (const Change& change : changes_)
          apply(change);
        return {};
      },
      failureOf);
}

Failure IniStore::flush() {
  return GuardedOr(
      kModule, u"flush",
      [&]() -> Failure {
        if (changes_.empty()) return {};
        const platform::FileHandle lock = lockFolderOf(path_);
        stamp_ = {};  // the stamps of two versions can be equal, so the file is read in any case
        if (Failure failure = refresh()) return failure;
        if (isChanged_) {
          if (Failure failure = replaceFile()) return failure;
          // The next refresh checks whether this file still has the name.
          stamp_ = {};
          isChanged_ = false;
        }
        changes_.clear();
        return {};
      },
      failureOf);
}

Result<IniStore::Stamp> IniStore::readStamp() const {
  platform::FindData data;
  const ErrorCode error = platform::GetFileInformation(path_, data);
  Stamp stamp;
  stamp.isKnown = true;
  if (platform::isMissing(error)) return stamp;
  if (error != kSuccess) return systemError(error, path_);
  stamp.isThere = true;
  stamp.size = std::uint64_t(data.nFileSizeHigh) << 32 | data.nFileSizeLow;
  stamp.written = data.ftLastWriteTime;
  stamp.identity = data.identity;
  return stamp;
}

Result<std::string> IniStore::readBytes(const Stamp& stamp) const {
  std::string bytes;
  if (!stamp.isThere) return bytes;
  const ErrorCode error = platform::ReadOwnFile(path_, bytes);
  if (error != kSuccess) return systemError(error, path_);
  return bytes;
}

Failure IniStore::replaceFile() const {
  if (stamp_.isThere) {
    ErrorCode error = kSuccess;
    platform::FindData data;
    platform::GetFileInformation(path_, data);
    const bool isReadOnly = (data.dwFileAttributes & platform::kAttributeReadOnly) != 0;
    if (isReadOnly) return systemError(platform::kAccessDenied, path_);
    // The folder decides whether the file can be replaced, but the file itself decides whether it
    // may be changed.
    const auto writable = platform::OpenOwnFile(path_, platform::kOpenExisting, error);
    if (error != kSuccess) return systemError(error, path_);
  }
  return platform::ReplaceOwnFile(path_, encodeIni(text_.text()));
}

Text GetSettings(TextView section, TextView key, TextView defaultText, const IniStore& file) {
  return GuardedOr(
      kMainModule, u"GetSettings", [&] { return file.INI_ReadString(section, key, defaultText); },
      [&](const Error&) { return Text(defaultText); });
}

void StoreSettings(TextView section, TextView key, TextView value, IniStore& file) {
  Guarded(kMainModule, u"StoreSettings", [&] { file.INI_WriteStringAnsi(section, key, value); });
}

}  // namespace ombrelian
