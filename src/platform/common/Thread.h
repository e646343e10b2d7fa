#pragma once

#include <functional>

namespace amberquill {

// Runs the work on a detached thread: for work that may hang, such as a read from a mount that does not
// answer. All that the work refers to outlives the thread. Any thread. False: the system cannot create a
// thread, and the work does not run.
//
// All threads of the program start here. Work with a result goes through `MainQueue`; values that are needed
// before there is a queue are an `AsyncValue`.
[[nodiscard]] bool startThread(std::function<void()> work);

} // namespace amberquill
