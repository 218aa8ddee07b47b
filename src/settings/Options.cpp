#include "settings/Options.h"

#include "platform/Files.h"
#include "platform/Process.h"

namespace ombrelian {

Text systemDrive() {
  Text drive = platform::GetEnvironmentVariableW(u"systemdrive");
  if (drive.empty()) drive = platform::kNativeSeparator == u'/' ? u"/" : u"C:";
  return drive;
}

}  // namespace ombrelian
