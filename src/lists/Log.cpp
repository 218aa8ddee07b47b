#include "lists/Log.h"

#include "platform/Time.h"

namespace ombrelian {

void Log::LogProtokoll(TextView text, bool isError) {
  rows_.push_back({toDate(platform::GetLocalTime()), Text(text), isError, group_});
  if (listener_ != nullptr) listener_->logged(rows_.back());
}

}  // namespace ombrelian
