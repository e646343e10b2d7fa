#pragma once

#include <functional>

namespace amberquill {

// Runs the work on a thread of its own, which nothing waits for: for work that may hang, such as a read from
// a mount that does not answer. What the work uses outlives it, or is shared with it. Any thread. False: the
// system has no thread to give, and the work does not run.
//
// All threads of the program begin here. Work that belongs to a lane is given to `MainQueue`; a value that is
// needed before there is a queue is an `AsyncValue`.
[[nodiscard]] bool startThread(std::function<void()> work);

} // namespace amberquill
