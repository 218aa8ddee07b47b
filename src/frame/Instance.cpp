#include "frame/Instance.h"

#include <algorithm>

#include "platform/Files.h"
#include "platform/Time.h"
#include "support/Guard.h"
#include "support/Translate.h"

namespace ombrelian {
namespace {

constexpr TextView kModule = u"VBinstance";
constexpr TextView kMark = u"Ombrelian_APPLICATION_MUTEX";
constexpr std::size_t kHeaderBytes = 8;
constexpr std::size_t kMostLineBytes = std::size_t(1) << 20;
constexpr std::size_t kMostSources = 10'000;
constexpr int kTries = 5;  // to find the window of the other instance
constexpr int kRestartTries = 10;
constexpr std::uint32_t kPauseMs = 500;
constexpr unsigned kAnswerMs = 5000;
constexpr unsigned kLongestMs = 5800;  // all tries and the answer together

std::uint32_t numberAt(std::string_view bytes, std::size_t at) {
  std::uint32_t number = 0;
  for (std::size_t i = 4; i-- > 0;)
    number = number << 8 | std::uint8_t(bytes[at + i]);
  return number;
}

void appendNumber(std::uint32_t number, std::string& bytes) {
  for (int i = 0; i < 4; ++i)
    bytes.push_back(char(number >> (8 * i)));
}

Error unreadable(TextView reason) { return {0, Text(kModule), Text(reason)}; }

Text truth(bool value) { return value ? u"True" : u"False"; }

Text lineOf(const std::deque<Text>& sources) {
  return commandText({sources.begin(), sources.end()});
}

/// Reads the sources behind the token.
std::deque<Text> sourcesIn(std::string_view rest) {
  std::deque<Text> sources;
  for (std::size_t at = rest.find('\0'); at != std::string_view::npos;) {
    const std::size_t next = rest.find('\0', at + 1);
    sources.push_back(fromBytes(rest.substr(at + 1, next - at - 1)));
    at = next;
  }
  return sources;
}

bool waitForOldInstance(InstancePlace& place, ErrorLog& trace) {
  for (std::int64_t i = 1; i <= kRestartTries; ++i) {
    trace.LogDebug(u"WeAreAlone Try: " + toText(i));
    const bool alone = place.WeAreAlone();
    trace.LogDebug(u"WeAreAlone=" + truth(alone));
    if (alone) return true;
    if (i < kRestartTries) platform::Sleep(kPauseMs);
  }
  return false;
}

void handOver(const CommandLine& line, ErrorLog& trace) {
  const std::uint64_t start = platform::GetTickCount();
  const InstanceMessage message = {
      line.sources, toBytes(platform::GetEnvironmentVariableW(u"XDG_ACTIVATION_TOKEN"))};
  trace.LogDebug(u"command:" + lineOf(line.sources));
  const std::string bytes = encodeMessage(message);
  for (std::int64_t i = 1; i <= kTries; ++i) {
    trace.LogDebug(u"Try:" + toText(i));
    const auto left = std::int64_t(kLongestMs) - std::int64_t(platform::GetTickCount() - start);
    const auto limit = unsigned(std::clamp<std::int64_t>(left, 0, kAnswerMs));
    if (platform::SendToInstance(kMark, bytes, limit) != platform::Delivery::NobodyThere) {
      trace.LogDebug(u"SendMessageTimeout");
      trace.LogDebug(u"RestoreAndActivate");
      return;
    }
    trace.LogDebug(u"pre window hwnd not found");
    if (i < kTries) platform::Sleep(kPauseMs);
  }
}

}  // namespace

std::string encodeMessage(const InstanceMessage& message) {
  std::string payload;
  for (const char16_t unit : lineOf(message.sources)) {
    payload.push_back(char(unit & 0xFF));
    payload.push_back(char(unit >> 8));
  }
  if (payload.empty()) payload.push_back('\0');
  std::string bytes;
  appendNumber(0, bytes);
  appendNumber(std::uint32_t(payload.size()), bytes);
  bytes.append(payload).append(message.activationToken);
  for (const Text& source : message.sources)
    bytes.append(1, '\0').append(toBytes(source));
  return bytes;
}

Result<InstanceMessage> decodeMessage(std::string_view bytes) {
  if (bytes.size() < kHeaderBytes) return unreadable(u"it is too short");
  const std::size_t size = numberAt(bytes, 4);
  if (numberAt(bytes, 0) != 0) return unreadable(u"it is not of this program");
  if (size == 0) return unreadable(u"its command line is missing");
  if (size > kMostLineBytes) return unreadable(u"its command line is too long");
  if (size > bytes.size() - kHeaderBytes) return unreadable(u"its end is missing");
  const std::string_view payload = bytes.substr(kHeaderBytes, size);
  const bool isEmpty = size == 1 && payload[0] == '\0';
  if (size % 2 != 0 && !isEmpty) return unreadable(u"its command line has half a character");
  Text line;
  for (std::size_t at = 0; at + 1 < size; at += 2)
    line.push_back(char16_t(std::uint8_t(payload[at]) | std::uint8_t(payload[at + 1]) << 8));
  const std::string_view rest = bytes.substr(kHeaderBytes + size);
  InstanceMessage message = {sourcesIn(rest), std::string(rest.substr(0, rest.find('\0')))};
  if (message.sources.empty()) message.sources = KZ_GetFoldersFromCommand(line);
  if (message.sources.size() > kMostSources) return unreadable(u"it has too many sources");
  const bool hasBadSource =
      std::any_of(message.sources.begin(), message.sources.end(), [](const Text& source) {
        return !source.starts_with(platform::kNativeSeparator) || source.find(u'\0') != Text::npos;
      });
  if (hasBadSource) return unreadable(u"a source is not an absolute path");
  return message;
}

bool InstancePlace::WeAreAlone() {
  if (mutex_.isHeld()) return true;
  bool isTaken = false;
  mutex_ = platform::TakeMutexW(kMark, isTaken);
  if (mutex_.isHeld()) listener_.open(kMark);
  return !isTaken;
}

bool CheckVBinstance(const CommandLine& line, TextView commandText, const IniStore& settings,
                     ErrorLog& trace, InstancePlace& place) {
  return GuardedOr(
      kModule, u"CheckVBinstance",
      [&] {
        const bool alone = place.WeAreAlone();
        const bool isOnlyOne = settings.INI_ReadString(u"Optionen", u"Instanz", u"1") != u"0";
        trace.LogDebug(u"WeAreAlone=" + truth(alone));
        if (alone && !place.listener().isOpen())
          trace.LogDebug(u"No safe place for the lock: every start has a window");
        trace.LogDebug(u"Command$=" + Text(commandText));
        const bool isRestart = line.mode == CommandLine::Mode::Restart;
        if (!alone && isOnlyOne && !isRestart) {
          handOver(line, trace);
          return false;
        }
        if (!alone && isRestart) waitForOldInstance(place, trace);
        trace.LogDebug(u"Start OMB: frmMain.Show");
        return true;
      },
      [](const Error&) { return true; });
}

}  // namespace ombrelian
