#pragma once

#include "frame/StartUp.h"
#include "platform/Instance.h"

namespace ombrelian {

/// What a later start passes to the running instance.
struct InstanceMessage {
  std::deque<Text> sources;     // absolute paths
  std::string activationToken;  // permission of the desktop to come to the front; empty: none
};

/// The bytes of a message: two little-endian numbers of 32 bits (always 0; the size of the command
/// line in bytes), the command line in UTF-16, little-endian, or one zero byte if it is empty, and
/// the token. Behind a zero byte each, the sources follow once more as the disk has them, because
/// a command line cannot contain every name.
std::string encodeMessage(const InstanceMessage& message);

/// Reads the bytes of a message; an error says what is wrong with them.
Result<InstanceMessage> decodeMessage(std::string_view bytes);

/// The mark of a running instance, and the place where it gets messages. They exist together.
class InstancePlace {
 public:
  /// Takes the mark and begins to listen. Does nothing while another process has the mark.
  bool WeAreAlone();

  platform::InstanceListener& listener() { return listener_; }

 private:
  platform::NamedMutex mutex_;
  platform::InstanceListener listener_;
};

/// Decides whether this process shows a window. If another instance runs and the user wants only
/// one, that instance gets the sources of `line`, and the result is false. `trace` gets each step.
bool CheckVBinstance(const CommandLine& line, TextView commandText, const IniStore& settings,
                     ErrorLog& trace, InstancePlace& place);

}  // namespace ombrelian
