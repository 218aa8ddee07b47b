#include "platform/FatalFaults.h"

#include <elf.h>
#include <execinfo.h>
#include <fcntl.h>
#include <link.h>
#include <signal.h>
#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>

#include <atomic>
#include <cstring>
#include <string>

namespace ombrelian::platform {
namespace {

constexpr int kSignals[] = {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGTRAP, SIGABRT, SIGSYS};
constexpr int kMostCalls = 64;
constexpr unsigned kLongestSeconds = 10;  // for the entry, for example on a disk that hangs
constexpr int kLogFlags = O_WRONLY | O_CREAT | O_APPEND | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;

/// Everything that the handler needs. It is written before the handlers are installed.
struct Prepared {
  std::string log;
  std::string notice;
  std::string facts;
  std::string buildId;
  long secondsFromUtc = 0;  // local time minus UTC
};
Prepared prepared;
std::atomic<pid_t> writer = 0;  // the thread that writes an entry; 0: none
alignas(16) char handlersStack[64 * 1024];

/// A short text that is built without memory from the heap.
class Line {
 public:
  Line& add(const char* text) {
    while (*text != '\0' && size_ < sizeof text_)
      text_[size_++] = *text++;
    return *this;
  }
  Line& number(std::uint64_t value, unsigned base, int digits) {
    char buffer[20];
    int count = 0;
    do {
      buffer[count++] = "0123456789ABCDEF"[value % base];
      value /= base;
    } while (value != 0 && count < int(sizeof buffer));
    for (int missing = count; missing < digits; ++missing)
      add("0");
    while (count > 0 && size_ < sizeof text_)
      text_[size_++] = buffer[--count];
    return *this;
  }
  /// What cannot be written is lost; there is nobody who could be told.
  void writeTo(int file) const {
    [[maybe_unused]] const ssize_t written = write(file, text_, size_);
  }

 private:
  char text_[512];
  std::size_t size_ = 0;
};

/// Date and time of day of a time in seconds since 1970; localtime() may not be called here.
void addTime(std::int64_t seconds, Line& line) {
  const std::int64_t days = seconds / 86400;
  const std::int64_t shifted = days + 719468;  // days since 1 March of year 0
  const std::int64_t era = shifted / 146097;
  const std::int64_t day = shifted % 146097;
  const std::int64_t year = (day - day / 1460 + day / 36524 - day / 146096) / 365;
  const std::int64_t dayOfYear = day - (365 * year + year / 4 - year / 100);
  const std::int64_t month = (5 * dayOfYear + 2) / 153;  // 0: March
  const std::int64_t isNextYear = month < 10 ? 0 : 1;
  const std::int64_t second = seconds % 86400;
  line.number(std::uint64_t(era * 400 + year + isNextYear), 10, 4).add("-");
  line.number(std::uint64_t(month < 10 ? month + 3 : month - 9), 10, 2).add("-");
  line.number(std::uint64_t(dayOfYear - (153 * month + 2) / 5 + 1), 10, 2).add(" ");
  line.number(std::uint64_t(second / 3600), 10, 2).add(":");
  line.number(std::uint64_t(second / 60 % 60), 10, 2).add(":");
  line.number(std::uint64_t(second % 60), 10, 2);
}

const char* nameOfArithmetic(int code) {
  switch (code) {
    case FPE_INTDIV:
      return "EXCEPTION_INT_DIVIDE_BY_ZERO";
    case FPE_INTOVF:
      return "EXCEPTION_INT_OVERFLOW";
    case FPE_FLTDIV:
      return "EXCEPTION_FLT_DIVIDE_BY_ZERO";
    case FPE_FLTOVF:
      return "EXCEPTION_FLT_OVERFLOW";
    case FPE_FLTINV:
      return "EXCEPTION_FLT_INVALID_OPERATION";
    case FPE_FLTSUB:
      return "EXCEPTION_ARRAY_BOUNDS_EXCEEDED";
    default:
      return "Unknown exception type";
  }
}

const char* nameOf(int signal, int code) {
  switch (signal) {
    case SIGSEGV:
    case SIGBUS:
      return "EXCEPTION_ACCESS_VIOLATION";
    case SIGFPE:
      return nameOfArithmetic(code);
    case SIGILL:
      return code == ILL_PRVOPC || code == ILL_PRVREG ? "EXCEPTION_PRIV_INSTRUCTION"
                                                      : "EXCEPTION_ILLEGAL_INSTRUCTION";
    case SIGTRAP:
      return "EXCEPTION_BREAKPOINT";
    default:
      return "Unknown exception type";
  }
}

/// Opens a file for an entry, as far as it is there.
int openFile(const std::string& path, int flags) {
  return path.empty() ? -1 : open(path.c_str(), kLogFlags | flags, 0600);
}

/// Writes the fault and the build to each of the files, before anything that may fail in its turn.
void writeHeads(const int (&files)[2], int signal, const siginfo_t& information) {
  struct timespec now;
  clock_gettime(CLOCK_REALTIME, &now);
  Line head;
  addTime(now.tv_sec + prepared.secondsFromUtc, head);
  head.add(" - An unhandled error (").add(nameOf(signal, information.si_code)).add(") \r\n");
  head.add("occurred at: ").number(std::uint64_t(information.si_addr), 16, 1);
  head.add(". NOT ok to continue.\r\nSignal: ").number(std::uint64_t(signal), 10, 1);
  head.add("\r\nBuild: ").add(prepared.buildId.c_str()).add("\r\n");
  for (const int file : files) {
    head.writeTo(file);
    [[maybe_unused]] const ssize_t written =
        write(file, prepared.facts.data(), prepared.facts.size());
  }
}

/// Writes one entry to the log, and to the notice with the facts. The calls come last, because the
/// search for them faults itself if the fault destroyed the stack.
void writeEntries(int signal, const siginfo_t& information) {
  const int files[] = {openFile(prepared.log, 0), openFile(prepared.notice, O_TRUNC)};
  writeHeads(files, signal, information);
  void* calls[kMostCalls];
  const int number = backtrace(calls, kMostCalls);
  for (const int file : files) {
    if (file < 0) continue;
    backtrace_symbols_fd(calls, number, file);
    Line().add("\r\n").writeTo(file);
    close(file);
  }
}

/// Writes the entry and lets the signal take its usual end. A second fault in the same thread comes
/// from the entry itself; a second thread waits for the end of the process.
void onFault(int number, siginfo_t* information, void*) {
  const int before = errno;
  const pid_t self = pid_t(syscall(SYS_gettid));
  pid_t nobody = 0;
  if (writer.compare_exchange_strong(nobody, self)) {
    alarm(kLongestSeconds);
    writeEntries(number, *information);
  } else if (nobody != self) {
    sleep(kLongestSeconds);
  }
  signal(number, SIG_DFL);
  errno = before;
  // A fault of the code happens again when the handler returns, with the state that it had; a
  // signal that was sent has to be sent again.
  if (information->si_code <= 0) syscall(SYS_tgkill, getpid(), self, number);
}

/// The build id of the program, as the linker wrote it; "-" if there is none.
std::string readBuildId() {
  std::string id = "-";
  const auto look = [](dl_phdr_info* module, std::size_t, void* result) {
    for (int i = 0; i < module->dlpi_phnum; ++i) {
      const ElfW(Phdr)& header = module->dlpi_phdr[i];
      if (header.p_type != PT_NOTE) continue;
      const ElfW(Addr) begin = module->dlpi_addr + header.p_vaddr;
      const char* at = reinterpret_cast<const char*>(begin);  // NOLINT(performance-no-int-to-ptr)
      const char* const end = at + header.p_memsz;
      while (at + sizeof(ElfW(Nhdr)) < end) {
        ElfW(Nhdr) note;
        std::memcpy(&note, at, sizeof note);
        const char* const content = at + sizeof note + ((note.n_namesz + 3) & ~3U);
        if (note.n_type == NT_GNU_BUILD_ID) {
          auto& text = *static_cast<std::string*>(result);
          text.clear();
          for (std::size_t byte = 0; byte < note.n_descsz; ++byte) {
            text += "0123456789abcdef"[std::uint8_t(content[byte]) >> 4];
            text += "0123456789abcdef"[std::uint8_t(content[byte]) & 15];
          }
        }
        at = content + ((note.n_descsz + 3) & ~3U);
      }
    }
    return 1;  // the first module is the program
  };
  dl_iterate_phdr(look, &id);
  return id;
}

}  // namespace

void InstallExceptionFilter(const FaultPlaces& places) {
  const time_t now = time(nullptr);
  struct tm local = {};
  localtime_r(&now, &local);
  prepared = {toBytes(places.log), toBytes(places.notice), toBytes(places.facts), readBuildId(),
              local.tm_gmtoff};
  writer = 0;
  void* first[1];
  backtrace(first, 1);  // the first call loads a library, which a handler may not do
  stack_t stack = {};
  stack.ss_sp = handlersStack;
  stack.ss_size = sizeof handlersStack;
  sigaltstack(&stack, nullptr);  // a full stack is a fault too
  struct sigaction action = {};
  action.sa_sigaction = onFault;
  action.sa_flags = SA_SIGINFO | SA_ONSTACK | SA_NODEFER;
  sigemptyset(&action.sa_mask);
  for (const int number : kSignals)
    sigaction(number, &action, nullptr);
}

void RemoveExceptionFilter() {
  for (const int number : kSignals)
    signal(number, SIG_DFL);
}

}  // namespace ombrelian::platform
