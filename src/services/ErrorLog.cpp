#include "services/ErrorLog.h"

#include <cmath>
#include <cstdio>

#include "fs/z_Filesystem.h"
#include "platform/Accounts.h"
#include "platform/FatalFaults.h"
#include "platform/Process.h"
#include "platform/Removal.h"
#include "platform/Time.h"
#include "platform/WholeFile.h"
#include "support/Translate.h"

namespace ombrelian {
namespace {

constexpr TextView kFaults = u"error.log";
constexpr std::uint64_t kLongestLog = std::uint64_t(16) << 20;  // bytes
constexpr TextView kErrorLog = u"error.log";
constexpr TextView kFatalNotice = u"fatal.txt";  // until the next start with a window
constexpr TextView kLineEnd = u"\r\n";
constexpr std::int32_t kMissingComponent = 429;

Text formatted(const char* pattern, auto... values) {
  char buffer[64];
  const int length = std::snprintf(buffer, sizeof buffer, pattern, values...);
  return fromAscii({buffer, std::size_t(length)});
}

/// The fixed form of dates in both logs; it does not follow the user's settings.
Text timeStamp(const DateParts& parts) {
  return formatted("%04d-%02d-%02d %02d:%02d:%02d", parts.year, parts.month, parts.day, parts.hour,
                   parts.minute, parts.second);
}

Text now() { return timeStamp(platform::GetLocalTime()); }

Text duration(std::uint64_t seconds) {
  const auto days = unsigned(seconds / 86400);
  return formatted("%ud %02u:%02u:%02u", days, unsigned(seconds / 3600 % 24),
                   unsigned(seconds / 60 % 60), unsigned(seconds % 60));
}

Text megabytes(std::uint64_t bytes) { return toText(std::int64_t(bytes >> 20)) + u" MB"; }

Text freeOfTotal(std::uint64_t free, std::uint64_t total) {
  return megabytes(free) + u" Free / " + megabytes(total) + u" Total";
}

std::uint64_t secondsSince(Date start) {
  const double days = toDate(platform::GetLocalTime()) - start;
  return days > 0 ? std::uint64_t(std::llround(days * 86400)) : 0;
}

/// Collects the lines of a report.
class Report {
 public:
  void line(TextView prefix, TextView value) {
    text_.append(prefix).append(value).append(kLineEnd);
  }
  Text take() { return std::move(text_); }

 private:
  Text text_;
};

void addMachine(Report& report, TextView screen) {
  const platform::SystemFacts facts = platform::GetSystemFacts();
  const std::uint64_t used = facts.physicalTotal - facts.physicalFree;
  const std::uint64_t load = facts.physicalTotal == 0 ? 0 : used * 100 / facts.physicalTotal;
  report.line(u"SysUp: ", duration(facts.upTimeSeconds));
  report.line(u"OS: ", facts.osName + u" Version: " + facts.osVersion + u" ID: " +
                           (platform::kNativeSeparator == u'\\' ? u"2" : u"0"));
  report.line(u"64bit: ", facts.is64Bit ? u"True" : u"False");
  report.line(u"IE: ", facts.desktop.empty() ? u"-" : facts.desktop);
  report.line(u"PhysRAM: ", freeOfTotal(facts.physicalFree, facts.physicalTotal));
  report.line(u"MemLoad: ", toText(std::int64_t(load)) + u"%");
  report.line(u"RAM used: ", megabytes(facts.processMemory));
  report.line(u"Pagefile: ", freeOfTotal(facts.pageFileFree, facts.pageFileTotal));
  report.line(u"VirtMem: ", freeOfTotal(facts.virtualFree, facts.virtualTotal));
  report.line(u"CPU: ", facts.cpuName);
  report.line(u"Screen: ", screen.empty() ? u"-" : screen);
}

}  // namespace

Text ErrorLog::SystemReport(TextView proc, TextView module, const Error& error) const {
  Report report;
  if (error.number == kMissingComponent) {
    report.line(TL(9011,
                   u"Eine benötigte Systemkomponente (OCX/DLL) fehlt,%!ist veraltert oder "
                   u"ungültig. Bitte das Setup der Anwendung erneut installieren um den Fehler zu "
                   u"beheben."),
                u"");
  }
  Text iniCreated;
  if (const Date created = xGetFileCreateDate(facts_.iniFile); created != 0) {
    iniCreated = timeStamp(toParts(created));
  }
  report.line(u"Now: ", now());
  report.line(u"App: ", facts_.title + u" " + facts_.version);
  Text program = platform::GetModuleFolder();
  report.line(u"ExeInst: ", appendName(program, asciiLower(facts_.title)));
  report.line(u"IniCreate: ", iniCreated);
  report.line(u"Modul: ", module);
  report.line(u"Func: ", proc);
  report.line(u"Line: ", error.line == 0 ? u"-" : toText(error.line));
  report.line(u"Err: ", toText(error.number) + u" - " + error.text);
  report.line(u"Path: ", platform::GetCurrentDirectoryW());
  report.line(u"AppUp: ", duration(secondsSince(facts_.started)));
  addMachine(report, screen_);
  report.line(u"Command: ", facts_.commandLine);
  report.line(u"User: ", platform::GetUserNameW());
  report.line(u"Comp: ", platform::GetSystemFacts().computerName);
  return report.take();
}

void ErrorLog::Debug(TextView proc, TextView module, const Error& error,
                     const std::vector<Text>& params) noexcept {
  try {
    ++errcount_;
    Report report;
    report.line(u"Apptitle: ", facts_.title);
    report.line(u"Datapath: ", facts_.dataPath);
    report.line(u"Admin: ", platform::IsNTAdmin() ? u"True" : u"False");
    report.line(u"Errcount: ", toText(errcount_));
    report.line(u"Lang: ", toText(facts_.languageId));
    const std::int64_t stop = stopReason_ != nullptr ? *stopReason_ : 0;
    report.line(u"Stop:", toText(stop) + u"," + toText(stop));
    std::int64_t index = 0;
    for (const Text& param : params)
      report.line(u"Debug" + toText(index++) + u": ", param);
    const Text text = SystemReport(proc, module, error) + report.take();
    errorLine(text);
    if (present_) present_(text);
  } catch (...) {  // a fault of the logger must not end the program
  }
}

void ErrorLog::errorLine(TextView line) noexcept {
  try {
    appendTo(kFaults, now().append(u" - ").append(line).append(kLineEnd).append(kLineEnd));
  } catch (...) {
  }
}

void ErrorLog::LogDebug(TextView text, const std::vector<Text>& params) noexcept {
  try {
    Text line = now().append(u" - ").append(text);
    for (const Text& param : params)
      line.append(u", ").append(param);
    appendTo(u"debug.log", onOneLine(line).append(kLineEnd));
  } catch (...) {
  }
}

void ErrorLog::appendTo(TextView file, TextView text) const noexcept {
  try {
    Text path = facts_.dataPath;
    if (path.empty()) return;
    platform::AppendToLog(appendName(path, file), toBytes(text), file == kFaults ? kLongestLog : 0);
  } catch (...) {
  }
}

ErrorLog::~ErrorLog() {
  if (watchesFaults_) platform::RemoveExceptionFilter();
}

void ErrorLog::setScreen(int width, int height) {
  screen_ = toText(width) + u"x" + toText(height);
  if (watchesFaults_) watchFatalFaults();  // entries name the screen too
}

void ErrorLog::watchFatalFaults() {
  watchesFaults_ = !facts_.dataPath.empty();
  if (!watchesFaults_) return;
  Text log = facts_.dataPath;
  Text notice = facts_.dataPath;
  Report facts;
  facts.line(u"App: ", facts_.title + u" " + facts_.version);
  addMachine(facts, screen_);
  facts.line(u"Command: ", facts_.commandLine);
  platform::InstallExceptionFilter(
      {appendName(log, kErrorLog), appendName(notice, kFatalNotice), facts.take()});
}

Text ErrorLog::takeFatalReport() {
  if (facts_.dataPath.empty()) return {};
  Text path = facts_.dataPath;
  std::string bytes;
  if (platform::ReadOwnFile(appendName(path, kFatalNotice), bytes) != platform::kSuccess) return {};
  platform::DeleteFileW({path});
  return fromBytes(bytes);
}

}  // namespace ombrelian
