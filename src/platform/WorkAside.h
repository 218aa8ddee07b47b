#pragma once

#include <functional>

namespace ombrelian::platform {

/// Does `work` on a thread of its own while this one calls `serve` again and again, at least every
/// 30 milliseconds; returns when the work is done. It may touch nothing that `serve` could. What
/// it throws is thrown here. Without `serve`, or where no thread is to be had, this thread does the
/// work.
void WorkAside(const std::function<void()>& work, const std::function<void()>& serve);

}  // namespace ombrelian::platform
