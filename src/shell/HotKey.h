#pragma once

#include "platform/GlobalShortcut.h"

#include <cstdint>
#include <functional>

namespace amberquill {

// One registered global shortcut, for as long as it lives. Presses run its action on the main thread. The
// service outlives it. Main thread only.
class HotKey {
public:
    using Action = std::function<void()>;

    // Registers at once; a refusal is silent. An action that is there under the same id is replaced.
    HotKey(GlobalShortcut& service, const KeyChord& chord, std::uint32_t id, Action action);
    ~HotKey();

    HotKey(const HotKey&) = delete;
    HotKey& operator=(const HotKey&) = delete;

private:
    static void installHandlerIfNeeded(GlobalShortcut& service);

    GlobalShortcut& service_;
    std::uint32_t id_;
};

} // namespace amberquill
