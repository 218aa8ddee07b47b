#include "support/Guard.h"

#include <new>

#include "support/Translate.h"

namespace ombrelian {
namespace {

FaultSink* faultSink = nullptr;
thread_local std::uint64_t caught = 0;  // see caughtFaults()

constexpr std::int32_t kOutOfMemory = 7;
constexpr std::int32_t kUnknownFault = 51;

Error describeEscaped() {
  try {
    throw;
  } catch (const Fault& fault) {
    return fault.error();
  } catch (const std::bad_alloc&) {
    return {kOutOfMemory, u"", u"Out of memory"};
  } catch (const std::exception& exception) {
    return {kUnknownFault, u"", fromBytes(exception.what())};
  } catch (...) {
    return {kUnknownFault, u"", u"Unknown exception"};
  }
}

}  // namespace

void setFaultSink(FaultSink* sink) { faultSink = sink; }

std::uint64_t caughtFaults() noexcept { return caught; }

void throwIfFaultsSince(std::uint64_t before) {
  if (caught == before) return;
  throw Fault({kUnknownFault, {}, TL(9841, u"Ein Teil konnte nicht verarbeitet werden.")});
}

void reportLine(TextView line) noexcept {
  if (faultSink != nullptr) faultSink->errorLine(line);
}

void reportTrace(TextView text, const std::vector<Text>& params) noexcept {
  if (faultSink != nullptr) faultSink->LogDebug(text, params);
}

void reportFault(TextView module, TextView name, const Error& error,
                 const std::vector<Text>& params, CodeLine line) noexcept {
  if (faultSink == nullptr) return;
  Error told = error;
  told.line = line;
  faultSink->Debug(name, module, told, params);
}

Error reportEscaped(TextView module, TextView name, std::initializer_list<TextView> params,
                    CodeLine guard) noexcept {
  ++caught;  // also if there is no memory for anything else
  try {
    Error error = describeEscaped();
    if (error.line == 0) error.line = guard;
    if (faultSink != nullptr) faultSink->Debug(name, module, error, {params.begin(), params.end()});
    return error;
  } catch (...) {  // no memory for the report: the process continues without it
    return {kOutOfMemory, {}, {}};
  }
}

Failure failureOf(const Error& error) {
  return Error{error.number, error.source, errorTextOf(error), error.line};
}

/// The text without a system text is short, so that it needs no heap memory.
Text errorTextOf(const Error& error) {
  if (error.text.empty()) return u"#" + toText(error.number);
  return u"#" + toText(error.number) + u" - " + error.text;
}

}  // namespace ombrelian
